#pragma once
/// A record of colour correction for a test.

#include <pthread.h>

#include <cstdint>
#include <random>

#include "QyImageProc.h"

/// A record with its lock.
class TestRecord {
public:
    /// @param robustness  PTHREAD_MUTEX_ROBUST for a lock that reports that its owner has
    ///                    ended
    explicit TestRecord(int robustness = PTHREAD_MUTEX_STALLED) {
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_setrobust(&attributes, robustness);
        // A second lock by the same thread fails instead of waiting for ever.
        pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
        pthread_mutex_init(&m_mutex, &attributes);
        pthread_mutexattr_destroy(&attributes);
        record.lock = &m_mutex;
    }
    TestRecord(const TestRecord&) = delete;
    TestRecord& operator=(const TestRecord&) = delete;
    ~TestRecord() { pthread_mutex_destroy(&m_mutex); }

    /// Sets the tables of a matrix by rows, in 16ths.
    void SetMatrix(const int (&matrix)[9]) {
        for (int k = 0; k < 9; ++k) {
            for (int i = 0; i < 256; ++i) {
                record.table[k][i] = static_cast<int16_t>(matrix[k] * i);
            }
        }
    }
    /// Sets random tables.
    void SetNoise(unsigned seed, int least, int most) {
        std::mt19937 random(seed);
        for (auto& table : record.table) {
            for (int16_t& entry : table) {
                entry = static_cast<int16_t>(
                    least + static_cast<int>(random() % static_cast<unsigned>(most - least + 1)));
            }
        }
    }
    pthread_mutex_t* Mutex() { return &m_mutex; }

    QyColorCorrectionRecord record{};

private:
    pthread_mutex_t m_mutex{};
};
