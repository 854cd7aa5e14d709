#pragma once
/// Counts the callbacks of a camera.

#include <atomic>
#include <thread>

#include "support/FrameCounter.h"

/// Counts calls by kind, on any thread.
struct CallbackCounter {
    FrameCounter frames;
    std::atomic<unsigned> losses{0};
    std::atomic<unsigned> events{0};

    static void OnLoss(void* user) { ++static_cast<CallbackCounter*>(user)->losses; }
    static void OnEvent(OV_FEATURE_ID /*feature*/, void* user) {
        ++static_cast<CallbackCounter*>(user)->events;
    }
    static void Await(const std::atomic<unsigned>& count, unsigned wanted) {
        while (count < wanted) {
            std::this_thread::yield();
        }
    }
};
