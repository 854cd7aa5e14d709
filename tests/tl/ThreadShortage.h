#pragma once
/// A system that has no more threads.

#include <pthread.h>

#include <cstddef>

namespace OVTLClass {

/// No thread can be made while it lives: none has that much memory for a stack.
class ThreadShortage {
public:
    ThreadShortage() {
        pthread_getattr_default_np(&m_before);
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, size_t{1} << 46);
        pthread_setattr_default_np(&attributes);
        pthread_attr_destroy(&attributes);
    }
    ~ThreadShortage() {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }
    ThreadShortage(const ThreadShortage&) = delete;
    ThreadShortage& operator=(const ThreadShortage&) = delete;

private:
    pthread_attr_t m_before{};
};

}  // namespace OVTLClass
