#pragma once
/// Frames of a producer taken by its own functions: what a library that reaches cameras through
/// producers can't stay below.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "GenTL/GenTL.h"

/// The stream of a producer's first camera, acquiring.
class BareStream {
public:
    /// @param path  of a producer that nobody else has started
    /// @param size  of a frame
    BareStream(const std::string& path, size_t size);
    ~BareStream();
    BareStream(const BareStream&) = delete;
    BareStream& operator=(const BareStream&) = delete;

    /// Waits for a frame, asks what changes from frame to frame, and queues its buffer again.
    void TakeFrame();

private:
    struct Functions {
#define OV_BENCH_FUNCTION(name, parameters) GenTL::P##name name = nullptr;
        OV_GENTL_FUNCTIONS(OV_BENCH_FUNCTION)
        OV_GENTL_OPTIONAL_FUNCTIONS(OV_BENCH_FUNCTION)
#undef OV_BENCH_FUNCTION
    };

    void Load(const std::string& path);
    void OpenStream();
    void Start(size_t size);
    void AskAbout(GenTL::BUFFER_HANDLE buffer) const;

    Functions m_call;
    GenTL::TL_HANDLE m_system = nullptr;
    GenTL::IF_HANDLE m_interface = nullptr;
    GenTL::DEV_HANDLE m_device = nullptr;
    GenTL::DS_HANDLE m_stream = nullptr;
    GenTL::EVENT_HANDLE m_event = nullptr;
    std::vector<std::vector<uint8_t>> m_memory;
};
