// One thread polls all cameras. It ends by itself when no camera is left, and is joined
// by the next call that is free to wait for it.

#include "events/PollingThread.h"

#include <algorithm>

#include "TLClassEvent/CallbackScope.h"
#include "TLClassSupport/OvException.h"

using namespace OVTLClass;

namespace {

constexpr int kPollingPriority = 50;
/// A node whose time is no multiple of the shortest is late by this at the most.
constexpr int64_t kLongestPeriod = 50;

std::chrono::milliseconds PeriodOf(const CCameraPolling& camera) {
    return std::chrono::milliseconds(std::clamp<int64_t>(camera.GetPeriod(), 1, kLongestPeriod));
}

}  // namespace

std::vector<CPollingThread::Watched>::iterator CPollingThread::__Find(
    const CCameraPolling& camera) {
    return std::find_if(m_cameras.begin(), m_cameras.end(),
                        [&camera](const Watched& watched) { return watched.camera == &camera; });
}

void CPollingThread::__Drop(std::vector<Watched>::iterator watched) {
    watched->camera->SetWatched(false);
    m_cameras.erase(watched);
    m_changed.notify_all();
}

void CPollingThread::AddListener(CCameraPolling& camera) {
    // Only polled features need the thread: writes and events call back by themselves.
    if (camera.GetPeriod() < 0) {
        return;
    }
    const CAutoLock threadLock(m_threadLock);
    {
        const CAutoLock lock(m_lock);
        const auto found = __Find(camera);
        if (found != m_cameras.end()) {
            ++found->listeners;
            return;
        }
        m_cameras.push_back({&camera, 1, Clock::now() + PeriodOf(camera)});
        camera.SetWatched(true);
        m_changed.notify_all();
        if (m_working) {
            return;
        }
        m_working = true;
    }
    // Joins the thread that has ended its work before. Without the lock of the list,
    // which it needs to end.
    m_thread.Destory();
    // The caller gets the failure, so its listener must not count.
    if (!m_thread.Run(this, &__OnThread, kPollingPriority)) {
        const CAutoLock lock(m_lock);
        m_working = false;
        __Drop(__Find(camera));
        OV_RAISE(CUnexpectedError, "Failed to start the polling thread");
    }
}

void CPollingThread::RemoveListener(CCameraPolling& camera) {
    {
        const CAutoLock lock(m_lock);
        const auto found = __Find(camera);
        if (found == m_cameras.end() || --found->listeners != 0) {
            return;
        }
        __Drop(found);
    }
    __JoinIfIdle();
}

void CPollingThread::Detach(CCameraPolling& camera) {
    {
        const CAutoLock lock(m_lock);
        const auto found = __Find(camera);
        if (found != m_cameras.end()) {
            __Drop(found);
        }
        // The thread may be in the midst of this camera's nodes, which go next.
        m_changed.wait(m_lock, [&] { return m_polled != &camera; });
    }
    __JoinIfIdle();
}

void CPollingThread::__JoinIfIdle() {
    // A callback may run on this very thread, or with the lock of a node map held for
    // which the thread waits. The thread is joined by the next call then.
    if (CCallbackScope::IsInsideAny()) {
        return;
    }
    {
        const CAutoLock lock(m_lock);
        m_changed.wait(m_lock, [this] { return !m_working || !m_cameras.empty(); });
    }
    const CAutoLock threadLock(m_threadLock);
    bool isIdle = false;
    {
        const CAutoLock lock(m_lock);
        isIdle = !m_working;
    }
    if (isIdle) {
        m_thread.Destory();
    }
}

void* CPollingThread::__OnThread(void* self) {
    auto* const thread = static_cast<CPollingThread*>(self);
    while (CCameraPolling* const camera = thread->__WaitForNext()) {
        camera->Poll();
        thread->__EndPoll();
    }
    return nullptr;
}

CCameraPolling* CPollingThread::__WaitForNext() {
    const CAutoLock lock(m_lock);
    while (!m_cameras.empty()) {
        const auto next =
            std::min_element(m_cameras.begin(), m_cameras.end(),
                             [](const Watched& a, const Watched& b) { return a.due < b.due; });
        const Clock::time_point due = next->due;
        const Clock::time_point now = Clock::now();
        if (due <= now) {
            next->due = now + PeriodOf(*next->camera);
            // Noted under the lock, so that a close knows for which camera it has to
            // wait.
            m_polled = next->camera;
            return next->camera;
        }
        m_changed.wait_until(m_lock, due);
    }
    // Under the lock: whoever adds a camera next sees a thread that works, or starts
    // another.
    m_working = false;
    m_changed.notify_all();
    return nullptr;
}

void CPollingThread::__EndPoll() {
    const CAutoLock lock(m_lock);
    m_polled = nullptr;
    m_changed.notify_all();
}
