// Calls on the nodes of a camera, drawn by the input, whose description the input is as well. The
// first byte is the number of calls, each of which is four bytes: function, node, two arguments.

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "Base/OvAssert.h"
#include "OvINodes.h"
#include "OvTestControl.h"
#include "description_fuzz.h"

namespace NodesFuzz {

namespace {

constexpr size_t kCallSize = 4;
/// No result that is larger is asked for.
constexpr size_t kLargest = size_t{1} << 20;

constexpr int64_t kNumbers[] = {0,
                                1,
                                -1,
                                2,
                                3,
                                8,
                                255,
                                65536,
                                int64_t{1} << 32,
                                std::numeric_limits<int64_t>::max(),
                                std::numeric_limits<int64_t>::min()};
constexpr double kReals[] = {0,
                             1,
                             -1,
                             0.5,
                             1e300,
                             -1e-300,
                             std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()};
const std::string kTexts[] = {"",       "1",       "true",     "0x7F",
                              "-1",     "1.5",     "Value",    "Name",
                              "pValue", "Formula", "UserFile", std::string(300, 'x'),
                              "\xFF\t"};

template <class T, size_t N>
const T& Draw(const T (&values)[N], uint8_t byte) {
    return values[byte % N];
}

/// A result in the two-call form: memory of the size that was asked for must do.
/// @param call  takes memory and its size
template <class T, class Call>
std::vector<T> TwoCalls(const Call& call) {
    size_t number = 0;
    if (call(static_cast<T*>(nullptr), &number) != OV_STATUS_SUCCESS || number > kLargest) {
        return {};
    }
    std::vector<T> elements(number);
    if (call(elements.data(), &number) != OV_STATUS_SUCCESS) {
        return {};
    }
    OV_ASSERT(number <= elements.size());
    elements.resize(number);
    return elements;
}

/// @return without the terminating zero
template <class Call>
std::string Text(const Call& call) {
    const std::vector<char> text = TwoCalls<char>(call);
    OV_ASSERT(text.empty() || text.back() == '\0');
    return text.empty() ? "" : std::string(text.data());
}

/// A result that must stay as it was when the call fails.
template <class T, class Call>
void OneCall(const Call& call) {
    std::array<uint8_t, sizeof(T)> before;
    before.fill(0x6E);
    alignas(T) std::array<uint8_t, sizeof(T)> memory = before;
    const OV_STATUS status = call(reinterpret_cast<T*>(memory.data()));
    OV_ASSERT(status <= 0);
    OV_ASSERT(status == OV_STATUS_SUCCESS || memory == before);
}

/// The library with the one camera that all inputs describe anew.
class Library {
public:
    Library() {
        OV_ASSERT(OVInitLib() == OV_STATUS_SUCCESS);
        uint32_t count = 0;
        OV_ASSERT(OVUpdateDeviceList(&count, 0) == OV_STATUS_SUCCESS && count == 1);
    }

    /// @return null if the camera can't be opened with that description
    OV_DEV_HANDLE Open(const std::string& description) {
        m_producer.Reset();
        m_producer.WatchCalls(0);
        m_producer.SetDescription("Remote", "Fuzz.xml", description.data(), description.size());
        OV_DEV_HANDLE handle = nullptr;
        OVOpenDeviceByIndex(1, &handle);
        return handle;
    }

private:
    TestProducer m_producer{OV_FUZZ_PRODUCER};
};

/// An open camera and the calls on it.
class Camera {
public:
    struct Arguments {
        OV_NODE_HANDLE node;
        uint8_t first;
        uint8_t second;
    };

    explicit Camera(OV_DEV_HANDLE handle) : m_handle(handle) {
        m_nodes = TwoCalls<OV_NODE_HANDLE>([&](OV_NODE_HANDLE* nodes, size_t* number) {
            return OvNodeGetAll(m_handle, OV_NODE_MODULE_CAMERA, nodes, number);
        });
        m_nodes.push_back(0);
    }
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;
    ~Camera() {
        OV_ASSERT(OVCloseDevice(m_handle) == OV_STATUS_SUCCESS);
        for (const OV_NODE_HANDLE node : m_nodes) {
            OV_ASSERT(OvNodeInvalidate(node) == OV_STATUS_INVALID_HANDLE);
        }
    }

    void Call(std::span<const uint8_t, kCallSize> bytes) {
        constexpr Function kCalls[] = {
            &Camera::Find,         &Camera::Relate,     &Camera::Facts,       &Camera::Properties,
            &Camera::Descriptions, &Camera::Invalidate, &Camera::Texts,       &Camera::SetTexts,
            &Camera::SetOwnText,   &Camera::Integers,   &Camera::SetIntegers, &Camera::Floats,
            &Camera::Booleans,     &Camera::Registers,  &Camera::Commands,    &Camera::Listen,
            &Camera::Files};
        const Arguments drawn{m_nodes[bytes[1] % m_nodes.size()], bytes[2], bytes[3]};
        (this->*Draw(kCalls, bytes[0]))(drawn);
    }

private:
    using Function = void (Camera::*)(const Arguments& drawn);

    void Find(const Arguments& drawn) {
        OneCall<OV_NODE_HANDLE>([&](OV_NODE_HANDLE* node) {
            return OvNodeFind(m_handle, drawn.first, Draw(kTexts, drawn.second).c_str(), node);
        });
    }
    /// What is found can be used by the calls that follow.
    void Relate(const Arguments& drawn) {
        const auto related = TwoCalls<OV_NODE_HANDLE>([&](OV_NODE_HANDLE* nodes, size_t* number) {
            return OvNodeGetRelated(drawn.node, drawn.first, nodes, number);
        });
        m_nodes.insert(m_nodes.end(), related.begin(), related.end());
        constexpr size_t kMostNodes = 256;
        m_nodes.resize(std::min(m_nodes.size(), kMostNodes));
    }
    void Facts(const Arguments& drawn) {
        OneCall<OV_NODE_INFO>([&](auto* info) { return OvNodeGetInfo(drawn.node, info); });
        OneCall<OV_NODE_ACCESS>([&](auto* access) { return OvNodeGetAccess(drawn.node, access); });
        Text([&](char* text, size_t* size) {
            return OvNodeGetText(drawn.node, drawn.first, text, size);
        });
    }
    void Properties(const Arguments& drawn) {
        Text([&](char* text, size_t* size) {
            return OvNodeGetPropertyNames(drawn.node, text, size);
        });
        Text([&](char* text, size_t* size) {
            return OvNodeGetProperty(drawn.node, Draw(kTexts, drawn.first).c_str(), drawn.second,
                                     text, size);
        });
    }
    void Descriptions(const Arguments& drawn) {
        Text([&](char* text, size_t* size) {
            return OvNodeGetXml(m_handle, drawn.first, text, size);
        });
    }
    void Invalidate(const Arguments& drawn) { OvNodeInvalidate(drawn.node); }
    void Texts(const Arguments& drawn) {
        Text([&](char* text, size_t* size) { return OvNodeGetAsText(drawn.node, text, size); });
        Text([&](char* text, size_t* size) { return OvNodeGetString(drawn.node, text, size); });
        Text([&](char* text, size_t* size) { return OvNodeGetSymbolic(drawn.node, text, size); });
        OneCall<size_t>([&](auto* size) { return OvNodeGetStringMaxSize(drawn.node, size); });
    }
    void SetTexts(const Arguments& drawn) {
        const char* const text = Draw(kTexts, drawn.first).c_str();
        OvNodeSetString(drawn.node, text);
        OvNodeSetSymbolic(drawn.node, text);
        if (!StartsStream(drawn.node)) {
            OvNodeSetAsText(drawn.node, text);
        }
    }
    void SetOwnText(const Arguments& drawn) {
        const std::string text =
            Text([&](char* own, size_t* size) { return OvNodeGetAsText(drawn.node, own, size); });
        if (!StartsStream(drawn.node)) {
            OvNodeSetAsText(drawn.node, text.c_str());
        }
    }
    void Integers(const Arguments& drawn) {
        OneCall<int64_t>([&](auto* value) { return OvNodeGetInteger(drawn.node, value); });
        OneCall<int64_t>([&](auto* value) { return OvNodeGetNumber(drawn.node, value); });
        OneCall<OV_INT_RANGE>(
            [&](auto* range) { return OvNodeGetIntegerRange(drawn.node, range); });
        TwoCalls<int64_t>([&](int64_t* values, size_t* number) {
            return OvNodeGetIntegerValues(drawn.node, values, number);
        });
    }
    void SetIntegers(const Arguments& drawn) {
        OvNodeSetInteger(drawn.node, Draw(kNumbers, drawn.first));
        OvNodeSetNumber(drawn.node, Draw(kNumbers, drawn.second));
    }
    void Floats(const Arguments& drawn) {
        OneCall<double>([&](auto* value) { return OvNodeGetFloat(drawn.node, value); });
        OneCall<OV_FLOAT_RANGE>(
            [&](auto* range) { return OvNodeGetFloatRange(drawn.node, range); });
        TwoCalls<double>([&](double* values, size_t* number) {
            return OvNodeGetFloatValues(drawn.node, values, number);
        });
        OvNodeSetFloat(drawn.node, Draw(kReals, drawn.first));
    }
    void Booleans(const Arguments& drawn) {
        OneCall<bool>([&](auto* value) { return OvNodeGetBoolean(drawn.node, value); });
        OvNodeSetBoolean(drawn.node, drawn.first % 2 != 0);
    }
    void Registers(const Arguments& drawn) {
        TwoCalls<uint8_t>([&](uint8_t* bytes, size_t* size) {
            return OvNodeGetRegister(drawn.node, bytes, size);
        });
        std::array<int64_t, 2> place{-7, -7};
        if (OvNodeGetRegisterPlace(drawn.node, &place[0], &place[1]) != OV_STATUS_SUCCESS) {
            OV_ASSERT(place[0] == -7 && place[1] == -7);
        }
        const std::vector<uint8_t> bytes(drawn.second, drawn.first);
        OvNodeSetRegister(drawn.node, bytes.data(), bytes.size());
    }
    void Commands(const Arguments& drawn) {
        if (!StartsStream(drawn.node)) {
            OvNodeExecute(drawn.node);
        }
        OneCall<bool>([&](auto* isDone) { return OvNodeIsDone(drawn.node, isDone); });
    }
    void Listen(const Arguments& drawn) {
        const auto callback = [](OV_NODE_HANDLE node, void*) {
            OneCall<OV_NODE_ACCESS>([&](auto* access) { return OvNodeGetAccess(node, access); });
        };
        OV_NODE_CALLBACK_HANDLE handle = nullptr;
        if (OvNodeRegisterCallback(drawn.node, nullptr, callback, &handle) == OV_STATUS_SUCCESS &&
            drawn.first % 2 != 0) {
            OV_ASSERT(OvNodeUnregisterCallback(drawn.node, handle) == OV_STATUS_SUCCESS);
        }
    }
    void Files(const Arguments& drawn) {
        const char* const file = Draw(kTexts, drawn.first).c_str();
        std::vector<uint8_t> bytes(drawn.second);
        size_t size = bytes.size();
        OvNodeReadFile(m_handle, file, drawn.first, bytes.data(), &size);
        OV_ASSERT(size <= bytes.size());
        OvNodeWriteFile(m_handle, file, bytes.data(), bytes.size());
        OvNodeDeleteFile(m_handle, file);
    }

    /// A start takes as much memory for its buffers as the description asks for.
    static bool StartsStream(OV_NODE_HANDLE node) {
        return Text([&](char* text, size_t* size) {
                   return OvNodeGetText(node, OV_NODE_TEXT_NAME, text, size);
               }) == "AcquisitionStart";
    }

    OV_DEV_HANDLE m_handle;
    std::vector<OV_NODE_HANDLE> m_nodes;
};

Library& TheLibrary() {
    static Library library;
    return library;
}

}  // namespace

}  // namespace NodesFuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace NodesFuzz;  // NOLINT(google-build-using-namespace)
    std::span<const uint8_t> input(data, size);
    const size_t program = size == 0 ? 0 : input[0] * kCallSize;
    if (size < program + 2) {
        return 0;
    }
    const auto description = input.subspan(program + 1);
    const OV_DEV_HANDLE handle =
        TheLibrary().Open(DescriptionFuzz::Input(description.data(), description.size()).document);
    if (handle != nullptr) {
        Camera camera(handle);
        for (size_t i = 0; i < program; i += kCallSize) {
            camera.Call(input.subspan(1 + i).first<kCallSize>());
        }
    }
    return 0;
}
