// Runs invalidations one after the other. Setting a register invalid may make others invalid that
// share its bytes, and so on; as calls within calls, a long row of them would overflow the stack
// of a client's thread.

#include "core/InvalidationQueue.h"

#include "core/INodePrivate.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// From the back, because that is the cheap end of a vector: the order among entries of one kind
/// doesn't matter.
template <class Element>
Element* TakeLast(std::vector<Element*>& list) {
    Element* const last = list.back();
    list.pop_back();
    return last;
}

}  // namespace

/// Whatever ends a run, an exception too, leaves the queue empty: the next run must not continue
/// with nodes of a call that failed.
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

/// Comparing numbers of runs needs no clearing of marks on all nodes after each run.
bool CInvalidationQueue::IsNew(uint64_t& mark) {
    // A mark of 0 has never been in a run.
    const uint64_t run = m_NumRuns + 1;
    const bool isNew = mark != run;
    mark = run;
    return isNew;
}

/// Whoever is called from within a run adds to the queue and returns; the loop out here does the
/// work.
void CInvalidationQueue::Run() {
    if (m_IsRunning || (m_Users.empty() && m_Nodes.empty())) {
        return;
    }
    const Running running(*this);
    while (!m_Users.empty() || !m_Nodes.empty()) {
        // Users come first, so that what is set invalid next finds no value left that was made of
        // forgotten bytes.
        if (m_Users.empty()) {
            TakeLast(m_Nodes)->SetInvalid(simAll);
        } else {
            TakeLast(m_Users)->ForgetBytes();
        }
    }
}

}  // namespace GenApi_3_0_ORVANE
