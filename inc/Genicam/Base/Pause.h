#pragma once

namespace OvBase {

/// Tells the processor that the thread waits for another one in a loop.
inline void Pause() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

}  // namespace OvBase
