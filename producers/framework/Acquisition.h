#pragma once
/// Starts and stops the engine of a stream.

#include <atomic>
#include <cstdint>
#include <mutex>
#include <stop_token>
#include <thread>

#include "framework/BufferPool.h"
#include "framework/FrameEngine.h"

namespace OvProducer {

class Acquisition {
public:
    Acquisition(BufferPool& pool, FrameEngine& engine) : m_pool(pool), m_engine(engine) {}
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;
    ~Acquisition() { Halt(true); }

    /// Runs until `frames` frames were delivered, or until `Stop`. Fails with -1004 if it
    /// runs already, and as the engine's beginning does.
    void Start(uint64_t frames);
    /// Returns when the engine has stopped: after the frame in progress, or with `kill`
    /// at once, which leaves that frame incomplete. Fails with -1004 if it wasn't
    /// started.
    void Stop(bool kill);
    /// Like `Stop`, but does nothing if the engine wasn't started. For closing.
    void Halt(bool kill);

    bool IsGrabbing() const { return m_grabbing; }

private:
    /// Nobody could catch what an engine throws on its thread.
    void RunEngine(const EngineRun& run);
    void EndRun();

    BufferPool& m_pool;
    FrameEngine& m_engine;
    std::mutex m_control;  // serialises starts and stops; the engine's thread never takes it
    std::stop_source m_abort;
    std::jthread m_thread;
    std::atomic<bool> m_grabbing = false;
};

}  // namespace OvProducer
