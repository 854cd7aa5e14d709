#pragma once
/// What became of a stream's frames and packets, where the producer keeps an account of it.

#include <cstdint>
#include <optional>
#include <string>

#include "OvIAPI.h"
#include "support/Json.h"

/// Counts since the start of the stream. Every frame that the camera numbered is in one of the
/// first five.
struct StreamAccount {
    int64_t delivered = 0;  ///< with all packets
    int64_t incomplete = 0;
    int64_t noBuffer = 0;
    int64_t lostOnWire = 0;
    int64_t lostInSocket = 0;

    int64_t asked = 0;
    int64_t answered = 0;
    int64_t refused = 0;
    int64_t doubled = 0;
    int64_t ignored = 0;
    int64_t missing = 0;
    int64_t dropped = 0;

    // What the remedy depends on.
    int64_t resends = 0;  ///< whether they are switched on
    int64_t socketBuffer = 0;
    int64_t socketBufferGranted = 0;

    /// Nothing from a producer that keeps none. It stays after the end of the stream.
    static std::optional<StreamAccount> Read(OV_DEV_HANDLE camera);

    Json ToJson() const;
    void Print() const;
    /// What helps against the largest loss, in a sentence; empty if nothing was lost.
    std::string Remedy() const;
};
