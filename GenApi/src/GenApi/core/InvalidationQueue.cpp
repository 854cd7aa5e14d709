#include "core/InvalidationQueue.h"

#include "core/INodePrivate.h"

namespace GenApi_3_0_ORVANE {

namespace {

template <class Element>
Element* TakeLast(std::vector<Element*>& list) {
    Element* const last = list.back();
    list.pop_back();
    return last;
}

}  // namespace

/// A failure ends the run, and nothing of it is left to the next.
class CInvalidationQueue::Running {
public:
    explicit Running(CInvalidationQueue& queue) : m_Queue(queue) { m_Queue.m_IsRunning = true; }
    ~Running() {
        m_Queue.m_IsRunning = false;
        m_Queue.m_Users.clear();
        m_Queue.m_Nodes.clear();
        ++m_Queue.m_NumRuns;
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    CInvalidationQueue& m_Queue;
};

bool CInvalidationQueue::IsNew(uint64_t& mark) {
    // A mark of 0 has never been in a run.
    const uint64_t run = m_NumRuns + 1;
    const bool isNew = mark != run;
    mark = run;
    return isNew;
}

void CInvalidationQueue::Run() {
    if (m_IsRunning || (m_Users.empty() && m_Nodes.empty())) {
        return;
    }
    const Running running(*this);
    while (!m_Users.empty() || !m_Nodes.empty()) {
        if (m_Users.empty()) {
            TakeLast(m_Nodes)->SetInvalid(simAll);
        } else {
            TakeLast(m_Users)->ForgetBytes();
        }
    }
}

}  // namespace GenApi_3_0_ORVANE
