#include "BareProducer.h"

#include <dlfcn.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr size_t kBuffers = 5;
constexpr uint64_t kLongestWait = 10000;

void RequireSuccess(GenTL::GC_ERROR status, const char* call) {
    if (status != GenTL::GC_ERR_SUCCESS) {
        std::fprintf(stderr, "%s: %d\n", call, status);
        std::exit(1);
    }
}

/// The first ID of a list.
template <class Get>
std::string FirstId(const Get& get, void* parent, const char* call) {
    std::array<char, 256> id{};
    size_t size = id.size();
    RequireSuccess(get(parent, 0, id.data(), &size), call);
    return id.data();
}

/// What changes from frame to frame.
struct Question {
    GenTL::BUFFER_INFO_CMD command;
    GenTL::INFO_DATATYPE type;
    size_t size;
};

constexpr std::array<Question, 4> kQuestions = {{
    {GenTL::BUFFER_INFO_SIZE_FILLED, GenTL::INFO_DATATYPE_SIZET, sizeof(size_t)},
    {GenTL::BUFFER_INFO_TIMESTAMP, GenTL::INFO_DATATYPE_UINT64, sizeof(uint64_t)},
    {GenTL::BUFFER_INFO_FRAMEID, GenTL::INFO_DATATYPE_UINT64, sizeof(uint64_t)},
    {GenTL::BUFFER_INFO_IS_INCOMPLETE, GenTL::INFO_DATATYPE_BOOL8, sizeof(GenTL::bool8_t)},
}};

}  // namespace

BareStream::BareStream(const std::string& path, size_t size) {
    Load(path);
    OpenStream();
    Start(size);
}

BareStream::~BareStream() {
    m_call.DSStopAcquisition(m_stream, GenTL::ACQ_STOP_FLAGS_KILL);
    m_call.GCUnregisterEvent(m_stream, GenTL::EVENT_NEW_BUFFER);
    m_call.DSClose(m_stream);
    m_call.DevClose(m_device);
    m_call.IFClose(m_interface);
    m_call.TLClose(m_system);
    m_call.GCCloseLib();
}

void BareStream::Load(const std::string& path) {
    // Never unloaded: its state belongs to who steers it.
    void* const file = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (file == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        std::exit(1);
    }
#define OV_BENCH_LOAD(name, parameters) \
    m_call.name = reinterpret_cast<GenTL::P##name>(dlsym(file, #name));
    OV_GENTL_FUNCTIONS(OV_BENCH_LOAD)
    OV_GENTL_OPTIONAL_FUNCTIONS(OV_BENCH_LOAD)
#undef OV_BENCH_LOAD
}

void BareStream::OpenStream() {
    RequireSuccess(m_call.GCInitLib(), "GCInitLib");
    RequireSuccess(m_call.TLOpen(&m_system), "TLOpen");
    RequireSuccess(m_call.TLUpdateInterfaceList(m_system, nullptr, kLongestWait),
                   "TLUpdateInterfaceList");
    RequireSuccess(
        m_call.TLOpenInterface(
            m_system, FirstId(m_call.TLGetInterfaceID, m_system, "TLGetInterfaceID").c_str(),
            &m_interface),
        "TLOpenInterface");
    RequireSuccess(m_call.IFUpdateDeviceList(m_interface, nullptr, kLongestWait),
                   "IFUpdateDeviceList");
    RequireSuccess(
        m_call.IFOpenDevice(m_interface,
                            FirstId(m_call.IFGetDeviceID, m_interface, "IFGetDeviceID").c_str(),
                            GenTL::DEVICE_ACCESS_EXCLUSIVE, &m_device),
        "IFOpenDevice");
    RequireSuccess(
        m_call.DevOpenDataStream(
            m_device, FirstId(m_call.DevGetDataStreamID, m_device, "DevGetDataStreamID").c_str(),
            &m_stream),
        "DevOpenDataStream");
}

void BareStream::Start(size_t size) {
    RequireSuccess(m_call.GCRegisterEvent(m_stream, GenTL::EVENT_NEW_BUFFER, &m_event),
                   "GCRegisterEvent");
    m_memory.assign(kBuffers, std::vector<uint8_t>(size));
    for (std::vector<uint8_t>& memory : m_memory) {
        GenTL::BUFFER_HANDLE buffer = nullptr;
        RequireSuccess(m_call.DSAnnounceBuffer(m_stream, memory.data(), size, nullptr, &buffer),
                       "DSAnnounceBuffer");
        RequireSuccess(m_call.DSQueueBuffer(m_stream, buffer), "DSQueueBuffer");
    }
    RequireSuccess(
        m_call.DSStartAcquisition(m_stream, GenTL::ACQ_START_FLAGS_DEFAULT, GenTL::GENTL_INFINITE),
        "DSStartAcquisition");
}

void BareStream::TakeFrame() {
    GenTL::S_EVENT_NEW_BUFFER frame{};
    size_t size = sizeof frame;
    RequireSuccess(m_call.EventGetData(m_event, &frame, &size, kLongestWait), "EventGetData");
    AskAbout(frame.BufferHandle);
    RequireSuccess(m_call.DSQueueBuffer(m_stream, frame.BufferHandle), "DSQueueBuffer");
}

void BareStream::AskAbout(GenTL::BUFFER_HANDLE buffer) const {
    std::array<uint64_t, kQuestions.size()> answers{};
    std::array<GenTL::DS_BUFFER_INFO_STACKED, kQuestions.size()> stack;
    for (size_t i = 0; i < kQuestions.size(); ++i) {
        stack[i] = {kQuestions[i].command, kQuestions[i].type, &answers[i], kQuestions[i].size,
                    GenTL::GC_ERR_ERROR};
    }
    if (m_call.DSGetBufferInfoStacked(m_stream, buffer, stack.data(), stack.size()) == 0) {
        return;
    }
    for (size_t i = 0; i < kQuestions.size(); ++i) {
        GenTL::INFO_DATATYPE type = kQuestions[i].type;
        size_t size = kQuestions[i].size;
        RequireSuccess(m_call.DSGetBufferInfo(m_stream, buffer, kQuestions[i].command, &type,
                                              &answers[i], &size),
                       "DSGetBufferInfo");
    }
}
