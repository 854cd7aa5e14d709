/// @file
/// How a test steers the test producer.
///
/// The file `test_producer.cti` is copied beside a copy of the library, under
/// the name of a real producer. A test then loads that copy with `TestProducer`
/// before it starts the library: both get the same instance.
///
///     TestProducer producer(folder / "OvGVTL.cti");
///     producer.FailCall("TLOpen", 1, GenTL::GC_ERR_IO);
///
/// The state lives as long as the file is loaded, across `GCInitLib` and
/// `GCCloseLib`; `Reset` brings the defaults back: one interface, one camera of
/// 64 x 48 pixels Mono8, no faults, all counters 0. The TL type follows the file
/// name: "GEV" for `OvGVTL`, "U3V" for `OvU3VTL`, else "Custom".
///
/// All functions may be called from any thread. Those that take a name or an index return
/// 0 on success and -1 if it is unknown. `iface` and `device` count from 0.
#ifndef OV_TEST_CONTROL_H
#define OV_TEST_CONTROL_H

#include <dlfcn.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

// clang-format off
/// All functions of the control interface, as `X(result, name, (parameters))`. The
/// exported name has the prefix `OvTest_`.
#define OV_TEST_FUNCTIONS(X)                                                                       \
    /* All back to the defaults. Waiting and blocked calls are let go. Opened cameras keep         \
       running; close the library first. */                                                        \
    X(void, Reset, (void))                                                                         \
                                                                                                   \
    /* --- Faults. `function` is the name of a GenTL function. --- */                              \
    /* The nth call from now on (1 is the next) fails with `code` and does nothing; nth 0 is       \
       every call. Several faults may be set on one function. */                                   \
    X(int, FailCall, (const char* function, unsigned nth, std::int32_t code))                      \
    /* As above, but the call does its work first and then reports the failure. */                 \
    X(int, FailAfterCall, (const char* function, unsigned nth, std::int32_t code))                 \
    /* The nth call from now on tells of success and does nothing; nth 0 is every call. */         \
    X(int, SkipCall, (const char* function, unsigned nth))                                         \
    /* An information command of that function is refused with `code`; for `DSStopAcquisition`     \
       the flags are the command. */                                                               \
    X(int, FailCommand, (const char* function, std::int32_t command, std::int32_t code))           \
    /* The size that a query with a null buffer reports is off by `delta`; 0 ends it. */           \
    X(int, LieAboutSize, (const char* function, std::int64_t delta))                               \
    /* Every call takes that long; 0 ends it. */                                                   \
    X(int, DelayCall, (const char* function, unsigned milliseconds))                               \
    /* Every call waits at its entry until `ReleaseCall`. */                                       \
    X(int, BlockCall, (const char* function))                                                      \
    X(int, ReleaseCall, (const char* function))                                                    \
    /* Whether calls are watched, by default 1. With 0 no fault strikes and nothing is recorded,   \
       and a call takes as long as in other producers. */                                          \
    X(void, WatchCalls, (int on))                                                                  \
    /* Whether the stacked buffer query is answered; by default it's refused. Its questions can    \
       be refused as those of `DSGetBufferInfo`. */                                                \
    X(void, OfferStack, (int on))                                                                  \
                                                                                                   \
    /* --- What happened. --- */                                                                   \
    /* Calls that entered the function, and those that ended well, since `Reset`. */               \
    X(std::uint64_t, CallCount, (const char* function))                                            \
    X(std::uint64_t, SuccessCount, (const char* function))                                         \
    /* Waits until `count` calls have entered; 0, or -1 after the time-out. */                     \
    X(int, WaitForCalls, (const char* function, std::uint64_t count, unsigned milliseconds))       \
    /* Successful opens minus successful closes. `kind` is "Library", "System", "Interface",       \
       "Device", "Stream", "Buffer", "Event" or "Acquisition". */                                  \
    X(std::int64_t, OpenCount, (const char* kind))                                                 \
    /* The names of all calls since `Reset` or `ClearLog`, a line feed behind each, in the order   \
       of entry. Null `text` asks for the size with the terminator. */                             \
    X(int, GetLog, (char* text, std::size_t* size))                                                \
    X(void, ClearLog, (void))                                                                      \
    /* Name and arguments of the last `IFIpConfiguration`, `IFForceIp` or `IFResetDevice`,         \
       separated by "|"; null `text` asks for the size. */                                         \
    X(int, GetExtensionCall, (char* text, std::size_t* size))                                      \
                                                                                                   \
    /* --- The world. Lists change with the next list update. --- */                               \
    X(int, SetInterfaceCount, (unsigned count))                                                    \
    X(int, SetDeviceCount, (unsigned iface, unsigned count))                                       \
    /* Keys: "ID", "Vendor", "Model", "Version", "TLType", "DisplayName". "TLType" goes to all     \
       interfaces and devices too. Set before `GCInitLib`. */                                      \
    X(int, SetProducerText, (const char* key, const char* text))                                   \
    /* Keys: "ID", "DisplayName", "TLType", "Description". */                                      \
    X(int, SetInterfaceText, (unsigned iface, const char* key, const char* text))                  \
    /* Keys: "MAC", "IP", "Mask", "Gateway". */                                                    \
    X(int, SetInterfaceNumber, (unsigned iface, const char* key, std::int64_t value))              \
    /* Keys: "ID", "Vendor", "Model", "TLType", "DisplayName", "UserID", "SerialNumber",           \
       "Version". */                                                                               \
    X(int, SetDeviceText,                                                                          \
      (unsigned iface, unsigned device, const char* key, const char* text))                        \
    /* Keys: "MAC", "IP", "Mask", "Gateway", "AccessStatus". */                                    \
    X(int, SetDeviceNumber,                                                                        \
      (unsigned iface, unsigned device, const char* key, std::int64_t value))                      \
    /* The camera is gone: its ports answer -10000, frames stop, the offline event fires, and the  \
       next update doesn't list it. `ReturnDevice` brings it back. */                              \
    X(int, LoseDevice, (unsigned iface, unsigned device))                                          \
    X(int, ReturnDevice, (unsigned iface, unsigned device))                                        \
    X(int, LoseInterface, (unsigned iface))                                                        \
    X(int, ReturnInterface, (unsigned iface))                                                      \
    /* Another adapter sees the same camera, as the last of its list. It can be opened through one \
       of them at a time. */                                                                       \
    X(int, ShareDevice, (unsigned iface, unsigned device, unsigned other))                         \
    /* The camera sits in a foreign subnet: only searches of the whole network find it, and it     \
       can be opened by its address. */                                                            \
    X(int, SetForeign, (unsigned iface, unsigned device, int on))                                  \
    /* Searches for cameras on that interface wait until one is asked to stop, before or after it  \
       began, or until this is switched off. */                                                    \
    X(int, HoldSearch, (unsigned iface, int on))                                                   \
    /* The time-out of the last search, in milliseconds; -1 before the first. */                   \
    X(std::int64_t, SearchTimeout, (unsigned iface))                                               \
    /* How many list updates were asked to stop, and the last search mode (GigE Vision). */        \
    X(std::int64_t, StopUpdateCount, (unsigned iface))                                             \
    X(std::int64_t, SearchMode, (unsigned iface))                                                  \
                                                                                                   \
    /* --- Descriptions. `module` is "System", "Interface", "Device", "Stream" or "Remote"; they   \
       hold from the module's next open on. --- */                                                 \
    /* Another description file; `fileName` with its extension is the label in the URL. Null       \
       `data` brings the own one back. */                                                          \
    X(int, SetDescription,                                                                         \
      (const char* module, const char* fileName, const void* data, std::size_t size))              \
    /* Other URLs, a line each, as they stand. "" leaves no URL at all, null brings the own one    \
       back. */                                                                                    \
    X(int, SetUrl, (const char* module, const char* url))                                          \
                                                                                                   \
    /* --- The camera's memory: 64 KiB at address 0, little-endian. The registers of the own       \
       description lie in it (see descriptions/TestCamera.xml), the rest is free. --- */           \
    X(int, ReadMemory,                                                                             \
      (unsigned iface, unsigned device, std::uint64_t address, void* data, std::size_t size))      \
    X(int, WriteMemory, (unsigned iface, unsigned device, std::uint64_t address,                   \
                         const void* data, std::size_t size))                                      \
    /* How often a command register was written: "AcquisitionStart", "AcquisitionStop",            \
       "TriggerSoftware", "UserSetLoad", "UserSetSave". */                                         \
    X(std::int64_t, CommandCount, (unsigned iface, unsigned device, const char* command))          \
                                                                                                   \
    /* --- Frames. They flow while the stream's acquisition runs, whatever the camera's start      \
       command says. Pixel (x, y) of frame n is (x + y + n) modulo 256; n counts from 0 and starts \
       anew with the camera's AcquisitionStart. --- */                                             \
    /* `count` more frames are due. A frame without a free buffer is lost. */                      \
    X(int, Trigger, (unsigned iface, unsigned device, unsigned count))                             \
    /* A frame is due whenever a buffer is free. */                                                \
    X(int, SetFreeRunning, (unsigned iface, unsigned device, int on))                              \
    /* What the following frames say of themselves. Keys: "Width", "Height", "OffsetX",            \
       "OffsetY", "PixelFormat", "Incomplete", "PayloadType", "Timestamp", "SizeFilled";           \
       "Hold" 1 keeps a frame in the making until it is broken off or "Hold" is 0; "Draw" 0        \
       leaves the buffer's memory as it is. -1 gives the natural value back. */                                                                      \
    X(int, SetFrame, (unsigned iface, unsigned device, const char* key, std::int64_t value))       \
    /* Adds a chunk to the list of the following frames; `ClearChunks` empties it. */              \
    X(int, AddChunk, (unsigned iface, unsigned device, std::uint64_t id, std::int64_t offset,      \
                      std::size_t length))                                                         \
    X(int, ClearChunks, (unsigned iface, unsigned device))                                         \
    /* Facts on the stream. Keys: "Count" (streams of the device, up to 4), "AnnounceMinimum",     \
       "Alignment", "ChunksMax". */                                                                \
    X(int, SetStreamNumber,                                                                        \
      (unsigned iface, unsigned device, const char* key, std::int64_t value))                      \
                                                                                                   \
    /* --- Events. --- */                                                                          \
    /* Whether devices offer that event type; by default 2, 4 and 1000. */                         \
    X(int, OfferEvent, (std::int32_t type, int on))                                                \
    X(int, FireRemoteEvent, (unsigned iface, unsigned device, std::uint64_t id,                    \
                             const void* payload, std::size_t size))                               \
    X(int, FireInvalidate, (unsigned iface, unsigned device, const char* feature))                 \
    /* `count` events of the camera's EventExposureEnd (0x9001); the frame IDs count from 0. The   \
       payload is time stamp (64 bits), frame ID (64 bits), event ID (32 bits), 0 (32 bits). */    \
    X(int, FireExposureEnd, (unsigned iface, unsigned device, unsigned count))
// clang-format on

/// The control functions of a loaded test producer, as members. Keeps the file loaded.
class TestProducer {
public:
    /// Throws if the file can't be loaded or isn't a test producer.
    explicit TestProducer(const std::string& path)
        : m_library(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (m_library == nullptr) {
            throw std::runtime_error(dlerror());
        }
#define OV_TEST_RESOLVE(result, name, parameters) Resolve(name, "OvTest_" #name);
        OV_TEST_FUNCTIONS(OV_TEST_RESOLVE)
#undef OV_TEST_RESOLVE
    }
    TestProducer(const TestProducer&) = delete;
    TestProducer& operator=(const TestProducer&) = delete;
    ~TestProducer() {
        dlclose(m_library);
    }

// NOLINTNEXTLINE(bugprone-macro-parentheses): a declaration takes none.
#define OV_TEST_MEMBER(result, name, parameters) result(*name) parameters = nullptr;
    OV_TEST_FUNCTIONS(OV_TEST_MEMBER)
#undef OV_TEST_MEMBER

    /// A GenTL function of the producer.
    template <typename Pointer>
    Pointer Function(const char* name) const {
        return reinterpret_cast<Pointer>(dlsym(m_library, name));
    }

    /// The calls so far, oldest first.
    std::vector<std::string> Log() const {
        std::vector<std::string> calls(1);
        for (const char c : Text(GetLog)) {
            if (c == '\n') {
                calls.emplace_back();
            } else {
                calls.back().push_back(c);
            }
        }
        calls.pop_back();
        return calls;
    }

    std::string ExtensionCall() const {
        return Text(GetExtensionCall);
    }

private:
    template <typename Pointer>
    void Resolve(Pointer& pointer, const char* name) {
        pointer = Function<Pointer>(name);
        if (pointer == nullptr) {
            dlclose(m_library);
            throw std::runtime_error(std::string("The file lacks ") + name);
        }
    }

    static std::string Text(int (*get)(char*, std::size_t*)) {
        std::size_t size = 0;
        get(nullptr, &size);
        std::string text(size, '\0');
        // Another thread may add a call between the two calls. The size is different then.
        while (get(text.data(), &size) != 0) {
            text.resize(size);
        }
        text.resize(size - 1);
        return text;
    }

    void* m_library;
};

#endif
