#include "support/Interrupts.h"

#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

#include "support/Error.h"

namespace {

sigset_t HeldSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

void Hold(bool on) {
    const sigset_t signals = HeldSignals();
    pthread_sigmask(on ? SIG_BLOCK : SIG_UNBLOCK, &signals, nullptr);
}

}  // namespace

Interrupts::Interrupts() : m_signals(-1) {
    const sigset_t signals = HeldSignals();
    m_signals = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    if (m_signals < 0) {
        throw ToolError("can't listen for signals");
    }
    Hold(true);
}

Interrupts::~Interrupts() {
    close(m_signals);
    Hold(false);
}

bool Interrupts::Came() {
    signalfd_siginfo signal{};
    if (!m_came && read(m_signals, &signal, sizeof signal) == sizeof signal) {
        m_came = true;
        Hold(false);
    }
    return m_came;
}

void Interrupts::Check() {
    if (Came()) {
        throw Interruption();
    }
}
