#pragma once
/// A thread of the transport model.

#include <pthread.h>

#include <atomic>

#include "TLClassSupport/VxEvent.h"

namespace OVTLClass {

/// Runs one function on one thread at a time. The identity of the last thread
/// stays readable after its end: callers compare it with their own.
class CVxThread {
public:
    using Function = void* (*)(void*);

    CVxThread() = default;
    ~CVxThread() { Destory(); }
    CVxThread(const CVxThread&) = delete;
    CVxThread& operator=(const CVxThread&) = delete;

    /// Starts `function(argument)`. False for a null function, while a thread
    /// runs, and when the system has no thread left. The priority has no effect.
    bool Run(void* argument, Function function, int priority);
    bool IsRunning() const;
    /// Waits for the end of the thread and joins it.
    void Destory();
    /// 0 before the first run.
    pthread_t GetCurrentObjThreadID() const { return m_threadId.load(); }

    static void VxSleep(unsigned milliseconds);
    static pthread_t PthreadSelf() { return pthread_self(); }

private:
    static void* __OnThreadCallback(void* self);

    Function m_function = nullptr;
    void* m_argument = nullptr;
    std::atomic<pthread_t> m_threadId{0};
    std::atomic<bool> m_ended{true};
    bool m_joinable = false;
    pthread_t m_handle = 0;
    CVxEvent m_endEvent;
};

}  // namespace OVTLClass
