#include "gige/stream/ThreadTuning.h"

#include <pthread.h>
#include <sched.h>

#include <system_error>

namespace OvGige {
namespace {

std::string Result(const std::string& what, int error) {
    return error == 0 ? std::string() : what + ": " + std::generic_category().message(error);
}

}  // namespace

std::string SetThreadPriority(int priority) {
    if (priority <= 0) {
        return {};
    }
    const sched_param parameters{.sched_priority = priority};
    return Result("The receiving thread's priority stays normal",
                  pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters));
}

std::string SetThreadProcessor(int processor) {
    if (processor < 0) {
        return {};
    }
    if (processor >= CPU_SETSIZE) {
        return Result("The receiving thread stays on any processor", EINVAL);
    }
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(processor, &processors);
    return Result("The receiving thread stays on any processor",
                  pthread_setaffinity_np(pthread_self(), sizeof processors, &processors));
}

}  // namespace OvGige
