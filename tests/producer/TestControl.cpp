/// @file
/// The exported control functions; see OvTestControl.h.
#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "OvTestControl.h"
#include "TestWorld.h"

#define OV_TEST_DECLARE(result, name, parameters) \
    extern "C" __attribute__((visibility("default"))) result OvTest_##name parameters;
OV_TEST_FUNCTIONS(OV_TEST_DECLARE)
#undef OV_TEST_DECLARE

using namespace OvTest;
using OvProducer::Function;

namespace {

TestWorld& World() {
    return TestWorld::Instance();
}

constexpr int kOk = 0;
constexpr int kUnknown = -1;

/// Runs `act` on the faults if the function name is known.
template <typename Act>
int OnFunction(const char* name, Act act) {
    const Function function = OvProducer::FunctionNamed(name);
    if (function == Function::Count) {
        return kUnknown;
    }
    act(World().faults, function);
    return kOk;
}

template <typename Act>
int OnInterface(unsigned iface, Act act) {
    const std::shared_ptr<TestInterface> found = World().Interface(iface);
    if (!found) {
        return kUnknown;
    }
    act(*found);
    return kOk;
}

template <typename Act>
int OnCamera(unsigned iface, unsigned device, Act act) {
    const std::shared_ptr<TestCamera> camera = World().Camera(iface, device);
    if (!camera) {
        return kUnknown;
    }
    return act(*camera) ? kOk : kUnknown;
}

template <typename Act>
int OnStreams(unsigned iface, unsigned device, Act act) {
    return OnCamera(iface, device, [&](TestCamera& camera) {
        bool known = true;
        for (const auto& stream : camera.AllStreams()) {
            known = act(*stream) && known;
        }
        return known;
    });
}

template <typename Facts, typename Value>
struct Field {
    const char* key;
    Value Facts::*member;
};

/// Sets the field that has the key, in the record that `change` returns.
template <typename Facts, typename Value, std::size_t count, typename Change, typename Input>
int SetField(const Field<Facts, Value> (&fields)[count], const char* key, const Input& value,
             Change change) {
    for (const auto& field : fields) {
        if (std::strcmp(field.key, key) == 0) {
            change([&](Facts& facts) { facts.*field.member = static_cast<Value>(value); });
            return kOk;
        }
    }
    return kUnknown;
}

struct AddressField {
    const char* key;
    std::int64_t OvProducer::NetworkAddress::*member;
};
constexpr AddressField kAddressFields[] = {{"MAC", &OvProducer::NetworkAddress::mac},
                                           {"IP", &OvProducer::NetworkAddress::ip},
                                           {"Mask", &OvProducer::NetworkAddress::mask},
                                           {"Gateway", &OvProducer::NetworkAddress::gateway}};

template <typename Object>
int SetAddress(Object& object, const char* key, std::int64_t value) {
    for (const AddressField& field : kAddressFields) {
        if (std::strcmp(field.key, key) == 0) {
            object.ChangeFacts([&](auto& facts) { facts.address.*field.member = value; });
            return kOk;
        }
    }
    return kUnknown;
}

int GiveText(const std::string& value, char* text, std::size_t* size) {
    const std::size_t needed = value.size() + 1;
    if (text != nullptr && *size < needed) {
        *size = needed;
        return kUnknown;
    }
    if (text != nullptr) {
        std::memcpy(text, value.c_str(), needed);
    }
    *size = needed;
    return kOk;
}

struct Balance {
    const char* kind;
    Function open;
    Function alsoOpen;
    Function close;
};
constexpr Balance kBalances[] = {
    {"Library", Function::GCInitLib, Function::Count, Function::GCCloseLib},
    {"System", Function::TLOpen, Function::Count, Function::TLClose},
    {"Interface", Function::TLOpenInterface, Function::Count, Function::IFClose},
    {"Device", Function::IFOpenDevice, Function::Count, Function::DevClose},
    {"Stream", Function::DevOpenDataStream, Function::Count, Function::DSClose},
    {"Buffer", Function::DSAnnounceBuffer, Function::DSAllocAndAnnounceBuffer,
     Function::DSRevokeBuffer},
    {"Event", Function::GCRegisterEvent, Function::Count, Function::GCUnregisterEvent},
    {"Acquisition", Function::DSStartAcquisition, Function::Count, Function::DSStopAcquisition},
};

std::int64_t Successes(Function function) {
    return function == Function::Count
               ? 0
               : static_cast<std::int64_t>(World().faults.SuccessCount(function));
}

struct CommandRegister {
    const char* name;
    std::size_t offset;
};
constexpr CommandRegister kCommands[] = {{"AcquisitionStart", 0x0500},
                                         {"AcquisitionStop", 0x0504},
                                         {"TriggerSoftware", 0x0508},
                                         {"UserSetLoad", 0x050C},
                                         {"UserSetSave", 0x0510}};

}  // namespace

void OvTest_Reset(void) {
    World().Reset();
}

int OvTest_FailCall(const char* function, unsigned nth, std::int32_t code) {
    return OnFunction(function, [&](Faults& f, Function id) { f.FailCall(id, nth, code); });
}

int OvTest_FailAfterCall(const char* function, unsigned nth, std::int32_t code) {
    return OnFunction(function, [&](Faults& f, Function id) { f.FailAfterCall(id, nth, code); });
}

int OvTest_SkipCall(const char* function, unsigned nth) {
    return OnFunction(function, [&](Faults& f, Function id) { f.SkipCall(id, nth); });
}

int OvTest_FailCommand(const char* function, std::int32_t command, std::int32_t code) {
    return OnFunction(function, [&](Faults& f, Function id) { f.FailCommand(id, command, code); });
}

int OvTest_LieAboutSize(const char* function, std::int64_t delta) {
    return OnFunction(function, [&](Faults& f, Function id) { f.LieAboutSize(id, delta); });
}

int OvTest_DelayCall(const char* function, unsigned milliseconds) {
    return OnFunction(function, [&](Faults& f, Function id) { f.DelayCall(id, milliseconds); });
}

void OvTest_WatchCalls(int on) {
    World().faults.Watch(on != 0);
}

void OvTest_OfferStack(int on) {
    World().faults.OfferStack(on != 0);
}

int OvTest_BlockCall(const char* function) {
    return OnFunction(function, [](Faults& f, Function id) { f.BlockCall(id, true); });
}

int OvTest_ReleaseCall(const char* function) {
    return OnFunction(function, [](Faults& f, Function id) { f.BlockCall(id, false); });
}

std::uint64_t OvTest_CallCount(const char* function) {
    std::uint64_t count = 0;
    OnFunction(function, [&](Faults& f, Function id) { count = f.CallCount(id); });
    return count;
}

std::uint64_t OvTest_SuccessCount(const char* function) {
    std::uint64_t count = 0;
    OnFunction(function, [&](Faults& f, Function id) { count = f.SuccessCount(id); });
    return count;
}

int OvTest_WaitForCalls(const char* function, std::uint64_t count, unsigned milliseconds) {
    bool reached = false;
    OnFunction(function,
               [&](Faults& f, Function id) { reached = f.WaitForCalls(id, count, milliseconds); });
    return reached ? kOk : kUnknown;
}

std::int64_t OvTest_OpenCount(const char* kind) {
    for (const Balance& balance : kBalances) {
        if (std::strcmp(balance.kind, kind) == 0) {
            return Successes(balance.open) + Successes(balance.alsoOpen) - Successes(balance.close);
        }
    }
    return kUnknown;
}

int OvTest_GetLog(char* text, std::size_t* size) {
    return GiveText(World().faults.Log(), text, size);
}

void OvTest_ClearLog(void) {
    World().faults.ClearLog();
}

int OvTest_GetExtensionCall(char* text, std::size_t* size) {
    return GiveText(World().ExtensionCall(), text, size);
}

int OvTest_SetInterfaceCount(unsigned count) {
    World().SetInterfaceCount(count);
    return kOk;
}

int OvTest_SetDeviceCount(unsigned iface, unsigned count) {
    return OnInterface(iface, [&](TestInterface& found) { found.SetDeviceCount(count); });
}

int OvTest_SetProducerText(const char* key, const char* text) {
    using Facts = OvProducer::ProducerFacts;
    constexpr Field<Facts, std::string> fields[] = {{"ID", &Facts::id},
                                                    {"Vendor", &Facts::vendor},
                                                    {"Model", &Facts::model},
                                                    {"Version", &Facts::version},
                                                    {"DisplayName", &Facts::displayName}};
    if (std::strcmp(key, "TLType") == 0) {
        World().SetTlType(text);
        return kOk;
    }
    return SetField(fields, key, text, [](const auto& change) { World().ChangeFacts(change); });
}

int OvTest_SetInterfaceText(unsigned iface, const char* key, const char* text) {
    using Facts = OvProducer::InterfaceFacts;
    constexpr Field<Facts, std::string> fields[] = {{"ID", &Facts::id},
                                                    {"DisplayName", &Facts::displayName},
                                                    {"TLType", &Facts::tlType},
                                                    {"Description", &Facts::description}};
    const auto found = World().Interface(iface);
    return found ? SetField(fields, key, text,
                            [&](const auto& change) { found->ChangeFacts(change); })
                 : kUnknown;
}

int OvTest_SetInterfaceNumber(unsigned iface, const char* key, std::int64_t value) {
    const auto found = World().Interface(iface);
    return found ? SetAddress(*found, key, value) : kUnknown;
}

int OvTest_SetDeviceText(unsigned iface, unsigned device, const char* key, const char* text) {
    using Facts = OvProducer::DeviceFacts;
    constexpr Field<Facts, std::string> fields[] = {
        {"ID", &Facts::id},           {"Vendor", &Facts::vendor},
        {"Model", &Facts::model},     {"TLType", &Facts::tlType},
        {"UserID", &Facts::userId},   {"DisplayName", &Facts::displayName},
        {"Version", &Facts::version}, {"SerialNumber", &Facts::serialNumber}};
    const auto camera = World().Camera(iface, device);
    return camera ? SetField(fields, key, text,
                             [&](const auto& change) { camera->ChangeFacts(change); })
                  : kUnknown;
}

int OvTest_SetDeviceNumber(unsigned iface, unsigned device, const char* key, std::int64_t value) {
    using Facts = OvProducer::DeviceFacts;
    constexpr Field<Facts, GenTL::DEVICE_ACCESS_STATUS> fields[] = {
        {"AccessStatus", &Facts::accessStatus}};
    const auto camera = World().Camera(iface, device);
    if (!camera) {
        return kUnknown;
    }
    if (SetAddress(*camera, key, value) == kOk) {
        return kOk;
    }
    return SetField(fields, key, value, [&](const auto& change) { camera->ChangeFacts(change); });
}

int OvTest_LoseDevice(unsigned iface, unsigned device) {
    return OnCamera(iface, device, [](TestCamera& camera) {
        camera.Lose();
        return true;
    });
}

int OvTest_ReturnDevice(unsigned iface, unsigned device) {
    return OnCamera(iface, device, [](TestCamera& camera) {
        camera.Return();
        return true;
    });
}

int OvTest_LoseInterface(unsigned iface) {
    return OnInterface(iface, [](TestInterface& found) { World().SetInterfaceLost(found, true); });
}

int OvTest_ReturnInterface(unsigned iface) {
    return OnInterface(iface, [](TestInterface& found) { World().SetInterfaceLost(found, false); });
}

int OvTest_ShareDevice(unsigned iface, unsigned device, unsigned other) {
    const auto camera = World().Camera(iface, device);
    if (!camera) {
        return kUnknown;
    }
    return OnInterface(other, [&](TestInterface& found) { found.AddCamera(camera); });
}

int OvTest_SetForeign(unsigned iface, unsigned device, int on) {
    return OnCamera(iface, device, [&](TestCamera& camera) {
        camera.SetForeign(on != 0);
        return true;
    });
}

int OvTest_HoldSearch(unsigned iface, int on) {
    return OnInterface(iface, [&](TestInterface& found) { found.HoldSearch(on != 0); });
}

std::int64_t OvTest_SearchTimeout(unsigned iface) {
    const auto found = World().Interface(iface);
    return found ? found->SearchTimeout() : kUnknown;
}

std::int64_t OvTest_StopUpdateCount(unsigned iface) {
    const auto found = World().Interface(iface);
    return found ? found->StopCount() : kUnknown;
}

std::int64_t OvTest_SearchMode(unsigned iface) {
    const auto found = World().Interface(iface);
    return found ? found->SearchMode() : kUnknown;
}

int OvTest_SetDescription(const char* module, const char* fileName, const void* data,
                          std::size_t size) {
    const bool known = World().ChangeDescription(module, [&](DescriptionOverride& description) {
        description.file = nullptr;
        if (data != nullptr) {
            const auto* first = static_cast<const std::byte*>(data);
            description.file =
                std::make_unique<FileOverride>(FileOverride{fileName, {first, first + size}});
        }
    });
    return known ? kOk : kUnknown;
}

int OvTest_SetUrl(const char* module, const char* url) {
    const bool known = World().ChangeDescription(module, [&](DescriptionOverride& description) {
        description.url = url != nullptr ? std::make_unique<std::string>(url) : nullptr;
    });
    return known ? kOk : kUnknown;
}

int OvTest_ReadMemory(unsigned iface, unsigned device, std::uint64_t address, void* data,
                      std::size_t size) {
    return OnCamera(iface, device, [&](const TestCamera& camera) {
        if (address > TestCamera::kMemorySize || size > TestCamera::kMemorySize - address) {
            return false;
        }
        camera.ReadMemory(address, {static_cast<std::byte*>(data), size});
        return true;
    });
}

int OvTest_WriteMemory(unsigned iface, unsigned device, std::uint64_t address, const void* data,
                       std::size_t size) {
    return OnCamera(iface, device, [&](TestCamera& camera) {
        if (address > TestCamera::kMemorySize || size > TestCamera::kMemorySize - address) {
            return false;
        }
        camera.WriteMemory(address, {static_cast<const std::byte*>(data), size});
        return true;
    });
}

std::int64_t OvTest_CommandCount(unsigned iface, unsigned device, const char* command) {
    const auto camera = World().Camera(iface, device);
    const auto found = std::find_if(
        std::begin(kCommands), std::end(kCommands),
        [&](const CommandRegister& entry) { return std::strcmp(entry.name, command) == 0; });
    return camera && found != std::end(kCommands) ? camera->CommandCount(found->offset) : kUnknown;
}

int OvTest_Trigger(unsigned iface, unsigned device, unsigned count) {
    return OnCamera(iface, device, [&](const TestCamera& camera) {
        camera.AllStreams().front()->Trigger(count);
        return true;
    });
}

int OvTest_SetFreeRunning(unsigned iface, unsigned device, int on) {
    return OnStreams(iface, device, [&](TestStream& stream) {
        stream.SetFreeRunning(on != 0);
        return true;
    });
}

int OvTest_SetFrame(unsigned iface, unsigned device, const char* key, std::int64_t value) {
    return OnStreams(iface, device,
                     [&](TestStream& stream) { return stream.SetFrameValue(key, value); });
}

int OvTest_AddChunk(unsigned iface, unsigned device, std::uint64_t id, std::int64_t offset,
                    std::size_t length) {
    return OnStreams(iface, device, [&](TestStream& stream) {
        stream.AddChunk({id, offset, length});
        return true;
    });
}

int OvTest_ClearChunks(unsigned iface, unsigned device) {
    return OnStreams(iface, device, [](TestStream& stream) {
        stream.ClearChunks();
        return true;
    });
}

int OvTest_SetStreamNumber(unsigned iface, unsigned device, const char* key, std::int64_t value) {
    return OnCamera(iface, device, [&](TestCamera& camera) {
        if (std::strcmp(key, "Count") == 0) {
            camera.SetStreamCount(static_cast<std::size_t>(value));
            return true;
        }
        const auto streams = camera.AllStreams();
        return std::all_of(streams.begin(), streams.end(),
                           [&](const auto& stream) { return stream->SetFact(key, value); });
    });
}

int OvTest_OfferEvent(std::int32_t type, int on) {
    World().OfferEvent(type, on != 0);
    return kOk;
}

int OvTest_FireRemoteEvent(unsigned iface, unsigned device, std::uint64_t id, const void* payload,
                           std::size_t size) {
    return OnCamera(iface, device, [&](TestCamera& camera) {
        if (size > OvProducer::QueuedEvent::kPayloadMax) {
            return false;
        }
        const auto* first = static_cast<const std::byte*>(payload);
        camera.Post(GenTL::EVENT_REMOTE_DEVICE, OvProducer::MakeMessageEntry(id, {first, size}));
        return true;
    });
}

int OvTest_FireInvalidate(unsigned iface, unsigned device, const char* feature) {
    return OnCamera(iface, device, [&](TestCamera& camera) {
        camera.Post(GenTL::EVENT_FEATURE_INVALIDATE, OvProducer::MakeFeatureEntry(feature));
        return true;
    });
}

int OvTest_FireExposureEnd(unsigned iface, unsigned device, unsigned count) {
    constexpr std::uint64_t id = 0x9001;
    return OnCamera(iface, device, [&](TestCamera& camera) {
        for (std::uint64_t frame = 0; frame < count; ++frame) {
            const std::array<std::uint64_t, 3> payload = {frame * 1000, frame, id};
            camera.Post(GenTL::EVENT_REMOTE_DEVICE,
                        OvProducer::MakeMessageEntry(id, std::as_bytes(std::span(payload))));
        }
        return true;
    });
}
