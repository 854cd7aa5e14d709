#pragma once
/// Mirrors, turns and the repair of outliers, sample by sample.

#include <algorithm>

#include "BayerReference.h"

namespace GeometryReference {

using BayerReference::Raw;

inline Raw MirrorHorizontally(const Raw& raw) {
    Raw out = raw;
    for (int y = 0; y < raw.height; ++y) {
        for (int x = 0; x < raw.width; ++x) {
            out.samples[BayerReference::Place(raw.width, x, y)] = raw.At(raw.width - 1 - x, y);
        }
    }
    return out;
}

inline Raw MirrorVertically(const Raw& raw) {
    Raw out = raw;
    for (int y = 0; y < raw.height; ++y) {
        for (int x = 0; x < raw.width; ++x) {
            out.samples[BayerReference::Place(raw.width, x, y)] = raw.At(x, raw.height - 1 - y);
        }
    }
    return out;
}

inline Raw TurnClockwise(const Raw& raw) {
    Raw out{raw.height, raw.width, raw.samples};
    for (int y = 0; y < raw.height; ++y) {
        for (int x = 0; x < raw.width; ++x) {
            out.samples[BayerReference::Place(raw.height, raw.height - 1 - y, x)] = raw.At(x, y);
        }
    }
    return out;
}

inline Raw TurnCounterClockwise(const Raw& raw) {
    Raw out{raw.height, raw.width, raw.samples};
    for (int y = 0; y < raw.height; ++y) {
        for (int x = 0; x < raw.width; ++x) {
            out.samples[BayerReference::Place(raw.height, y, raw.width - 1 - x)] = raw.At(x, y);
        }
    }
    return out;
}

inline Raw Repair(Raw raw, int bits) {
    const int threshold = 10 << (bits - 8);
    for (int y = 2; y <= raw.height - 3; ++y) {
        for (int x = 2; x <= raw.width - 3; ++x) {
            const int c = raw.At(x, y);
            const int u = raw.At(x, y - 2);
            const int d = raw.At(x, y + 2);
            const int l = raw.At(x - 2, y);
            const int r = raw.At(x + 2, y);
            if (c - u > threshold && c - d > threshold && c - l > threshold && c - r > threshold) {
                raw.samples[BayerReference::Place(raw.width, x, y)] = (u + l + r + d) >> 2;
            }
        }
    }
    return raw;
}

}  // namespace GeometryReference
