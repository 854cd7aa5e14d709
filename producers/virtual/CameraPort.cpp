#include "virtual/CameraPort.h"

#include <atomic>
#include <cstring>
#include <string_view>
#include <vector>

#include "framework/RequireRange.h"
#include "framework/Zip.h"
#include "virtual/Chunks.h"
#include "virtual/FileRegisters.h"
#include "virtual/SettingRegisters.h"

namespace OvProducer {
extern const std::string_view kVirtualCameraDescription;
}

namespace OvVirtual {
namespace {

using OvProducer::RegisterSpace;
using OvProducer::RequireRange;

/// Registers that aren't in the tables of SettingRegisters.cpp, CameraSelectors.cpp and
/// FileRegisters.cpp.
namespace Address {
constexpr uint64_t kFirstText = 0x0000;  // one after the other: vendor, model and so on
constexpr uint64_t kUserId = 0x0180;
constexpr uint64_t kTemperature = 0x0204;
constexpr uint64_t kHasColorFilter = 0x0208;
constexpr uint64_t kReset = 0x020C;
constexpr uint64_t kLatchTime = 0x0210;
constexpr uint64_t kResetTime = 0x0214;
constexpr uint64_t kLatchAndResetTime = 0x0218;
constexpr uint64_t kTickFrequency = 0x0220;
constexpr uint64_t kLatchedTime = 0x0228;
constexpr uint64_t kSensorTemperature = 0x0230;
constexpr uint64_t kMainboardTemperature = 0x0234;
constexpr uint64_t kSensorWidth = 0x0300;
constexpr uint64_t kSensorHeight = 0x0304;
constexpr uint64_t kWidthMax = 0x0308;
constexpr uint64_t kHeightMax = 0x030C;
constexpr uint64_t kPixelBits = 0x0340;
constexpr uint64_t kIsBayer = 0x0344;
constexpr uint64_t kFlips = 0x0348;
constexpr uint64_t kStart = 0x0408;
constexpr uint64_t kStop = 0x040C;
constexpr uint64_t kResultingFrameRate = 0x0418;
constexpr uint64_t kSoftwareTrigger = 0x042C;
constexpr uint64_t kSelectedStatus = 0x0444;
constexpr uint64_t kIsAcquiring = 0x0448;
constexpr uint64_t kWaitsForTrigger = 0x044C;
constexpr uint64_t kBalanceRatio = 0x050C;
constexpr uint64_t kBalanceOnce = 0x0510;
constexpr uint64_t kLutEntry = 0x0608;
constexpr uint64_t kLoadUserSet = 0x0704;
constexpr uint64_t kSaveUserSet = 0x0708;
constexpr uint64_t kUserSetDefault = 0x070C;
constexpr uint64_t kBeginLoading = 0x0710;
constexpr uint64_t kEndLoading = 0x0714;
constexpr uint64_t kPayloadSize = 0x0800;
constexpr uint64_t kParamsLocked = 0x0804;
constexpr uint64_t kChunkEnable = 0x0810;
constexpr uint64_t kEventNotification = 0x0A04;
constexpr uint64_t kDropOff = 0x0A20;
constexpr uint64_t kLut = 0x2000;
constexpr uint64_t kDescription = 0x100000;
}  // namespace Address

/// Bytes of each text register.
constexpr size_t kTextLength = 64;

// Places of measurement, by the values of the selector.
constexpr int64_t kSensor = 0;
constexpr int64_t kMainboard = 1;

/// A sensor that works gets warmer. The mainboard next to it stays cooler.
float Temperature(const Camera& camera, int64_t place) {
    const float sensor = camera.IsAcquiring() ? 46.5F : 41.0F;
    return place == kMainboard ? sensor - 5.25F : sensor;
}

int64_t Bool(bool value) {
    return value ? 1 : 0;
}

std::shared_ptr<const LookUpTable> WithEntry(const LookUpTable& table, int64_t index,
                                             int64_t value) {
    auto copy = std::make_shared<LookUpTable>(table);
    (*copy)[static_cast<size_t>(index)] = static_cast<uint16_t>(value);
    return copy;
}

/// The whole look-up table: two little-endian bytes for each entry.
class LutRange : public OvProducer::RegisterRange {
public:
    explicit LutRange(std::shared_ptr<Camera> camera) : m_camera(std::move(camera)) {}

    size_t Length() const override { return sizeof(LookUpTable); }

    void Read(size_t offset, std::span<std::byte> out) const override {
        const auto table = m_camera->Settings().lut;
        std::memcpy(out.data(), reinterpret_cast<const std::byte*>(table->data()) + offset,
                    out.size());
    }

    void Write(size_t offset, std::span<const std::byte> in) override {
        m_camera->Change(false, [&](CameraSettings& settings) {
            auto table = std::make_shared<LookUpTable>(*settings.lut);
            std::memcpy(reinterpret_cast<std::byte*>(table->data()) + offset, in.data(), in.size());
            for (const uint16_t level : *table) {
                RequireRange(level, 0, kTopLevel);
            }
            settings.lut = std::move(table);
        });
    }

private:
    std::shared_ptr<Camera> m_camera;
};

/// Adds the registers of one camera, group by group.
class Builder {
public:
    Builder(std::shared_ptr<Camera> camera, RegisterSpace& registers)
        : m_camera(std::move(camera)), m_registers(registers) {}

    void AddAll(const OvProducer::PortFacts& facts) {
        AddIdentity(facts);
        AddTime();
        AddSelectors();
        AddSettings();
        AddImageFacts();
        AddAcquisition();
        AddAnalog();
        AddLut();
        AddUserSets();
        AddLoading();
        AddTransport();
        AddChunks();
        AddEvents();
        AddDropOff();
        AddFileRegisters(m_registers, m_camera);
    }

private:
    using Read = std::function<int64_t()>;
    using Write = std::function<void(int64_t)>;

    void Number(uint64_t address, Read read, Write write = {}) {
        m_registers.AddInteger(address, 4, std::move(read), std::move(write));
    }

    /// Adds a register for one bit of a setting that has a bit for each entry of a
    /// selector. The register has the bit of the entry that is selected.
    /// @param fixed  bits that can't be switched off
    void SelectedBit(uint64_t address, SelectorField which, int64_t CameraSettings::*field,
                     bool shapesFrame, int64_t fixed);

    void AddIdentity(const OvProducer::PortFacts& facts);
    void AddTime();
    void AddSelectors();
    void AddSettings();
    void AddFlips();
    void AddBinning(const SettingRegister& entry);
    void AddImageFacts();
    void AddAcquisition();
    void AddAnalog();
    void AddLut();
    void AddUserSets();
    void AddLoading();
    void AddTransport();
    void AddChunks();
    void AddEvents();
    void AddDropOff();

    const std::shared_ptr<Camera> m_camera;
    RegisterSpace& m_registers;
};

void Builder::AddIdentity(const OvProducer::PortFacts& facts) {
    const std::string texts[] = {facts.vendor, facts.model, facts.version, "1.2.0",
                                 m_camera->Identity().serialNumber};
    uint64_t address = Address::kFirstText;
    for (const std::string& text : texts) {
        m_registers.AddText(address, kTextLength, [text] { return text; });
        address += kTextLength;
    }
    m_registers.AddText(
        Address::kUserId, kTextLength, [c = m_camera] { return c->UserId(); },
        [c = m_camera](const std::string& text) { c->SetUserId(text); });
    m_registers.AddFloat(Address::kTemperature,
                         [c = m_camera] { return Temperature(*c, c->Selectors().temperature); });
    m_registers.AddFloat(Address::kSensorTemperature,
                         [c = m_camera] { return Temperature(*c, kSensor); });
    m_registers.AddFloat(Address::kMainboardTemperature,
                         [c = m_camera] { return Temperature(*c, kMainboard); });
    Number(Address::kHasColorFilter, [c = m_camera] { return Bool(c->Identity().color); });
    m_registers.AddCommand(Address::kReset, [c = m_camera] { c->Reset(); });
}

void Builder::AddTime() {
    const auto latched = std::make_shared<std::atomic<int64_t>>(0);
    const auto latch = [c = m_camera, latched] { *latched = c->Ticks(); };
    m_registers.AddCommand(Address::kLatchTime, latch);
    m_registers.AddCommand(Address::kResetTime, [c = m_camera] { c->ResetTicks(); });
    m_registers.AddCommand(Address::kLatchAndResetTime, [c = m_camera, latch] {
        latch();
        c->ResetTicks();
    });
    m_registers.AddInteger(Address::kTickFrequency, 8, [] { return Camera::kTicksPerSecond; });
    m_registers.AddInteger(Address::kLatchedTime, 8, [latched] { return latched->load(); });
}

void Builder::AddSelectors() {
    for (const SelectorRegister& entry : SelectorRegisters()) {
        Number(
            entry.address, [c = m_camera, field = entry.field] { return c->Selectors().*field; },
            [c = m_camera, entry](int64_t value) { c->Select(entry, value); });
    }
}

void Builder::AddSettings() {
    for (const SettingRegister& entry : SettingRegisters()) {
        Number(
            entry.address,
            [c = m_camera, field = entry.range.field] { return c->Settings().*field; },
            [c = m_camera, range = entry.range](int64_t value) { c->Set(range, value); });
    }
    for (const SettingRegister& entry : BinningRegisters()) {
        AddBinning(entry);
    }
    AddFlips();
}

/// Adds a register with both mirrors as bits, in addition to the register of each.
void Builder::AddFlips() {
    Number(
        Address::kFlips,
        [c = m_camera] {
            const CameraSettings settings = c->Settings();
            return settings.reverseX | settings.reverseY << 1;
        },
        [c = m_camera](int64_t value) {
            RequireRange(value, 0, 3);
            c->Change(false, [&](CameraSettings& settings) {
                settings.reverseX = value & 1;
                settings.reverseY = value >> 1;
            });
        });
}

/// Settings that are loaded one by one may contradict each other meanwhile.
void Builder::AddLoading() {
    m_registers.AddCommand(Address::kBeginLoading, [c = m_camera] { c->BeginLoading(); });
    m_registers.AddCommand(Address::kEndLoading, [c = m_camera] { c->EndLoading(); });
}

void Builder::AddBinning(const SettingRegister& entry) {
    const SettingRange range = entry.range;
    Number(
        entry.address, [c = m_camera, range] { return c->Settings().*range.field; },
        [c = m_camera, range](int64_t value) {
            RequireRange(value, range.min, range.max);
            const bool isLoading = c->IsLoading();
            c->Change(true, [&](CameraSettings& settings) {
                const CameraSettings before = settings;
                settings.*range.field = value;
                if (!isLoading) {
                    FitToBinning(settings, before);
                }
            });
        });
}

void Builder::AddImageFacts() {
    Number(Address::kSensorWidth, [] { return kFullWidth; });
    Number(Address::kSensorHeight, [] { return kFullHeight; });
    Number(Address::kWidthMax, [c = m_camera] {
        const int64_t whole = kFullWidth / c->Settings().binningX;
        return whole - whole % 4;
    });
    Number(Address::kHeightMax, [c = m_camera] { return kFullHeight / c->Settings().binningY; });
    Number(Address::kPixelBits, [c = m_camera] {
        return static_cast<int64_t>(BitsOf(static_cast<PixelFormat>(c->Settings().pixelFormat)));
    });
    Number(Address::kIsBayer, [c = m_camera] {
        return Bool(IsBayer(static_cast<PixelFormat>(c->Settings().pixelFormat)));
    });
}

void Builder::AddAcquisition() {
    m_registers.AddCommand(Address::kStart, [c = m_camera] { c->Start(); });
    m_registers.AddCommand(Address::kStop, [c = m_camera] { c->Stop(); });
    m_registers.AddFloat(Address::kResultingFrameRate, [c = m_camera] {
        return static_cast<float>(1 / FrameTime(c->Settings()));
    });
    m_registers.AddCommand(Address::kSoftwareTrigger,
                           [c = m_camera] { c->Trigger(TriggerSource::Software); });
    const auto isActive = [c = m_camera] { return Bool(c->IsAcquiring()); };
    const auto waits = [c = m_camera] { return Bool(c->WaitsForTrigger()); };
    Number(Address::kSelectedStatus, [c = m_camera, isActive, waits] {
        return c->Selectors().status == 0 ? isActive() : waits();
    });
    Number(Address::kIsAcquiring, isActive);
    Number(Address::kWaitsForTrigger, waits);
}

void Builder::AddAnalog() {
    const auto selected = [c = m_camera] { return static_cast<size_t>(c->Selectors().balance); };
    Number(
        Address::kBalanceRatio,
        [c = m_camera, selected] { return c->Settings().balance[selected()]; },
        [c = m_camera, selected](int64_t value) {
            RequireRange(value, 0, 65535);
            const size_t channel = selected();
            c->Change(false, [&](CameraSettings& settings) { settings.balance[channel] = value; });
        });
    // The colour of white is known here without measuring a frame.
    m_registers.AddCommand(Address::kBalanceOnce, [c = m_camera] {
        c->Change(false, [color = c->Identity().color](CameraSettings& settings) {
            settings.balance = FactorySettings(color).balance;
        });
    });
}

void Builder::AddLut() {
    Number(
        Address::kLutEntry,
        [c = m_camera] {
            const auto table = c->Settings().lut;
            return static_cast<int64_t>((*table)[static_cast<size_t>(c->Selectors().lutIndex)]);
        },
        [c = m_camera](int64_t value) {
            RequireRange(value, 0, kTopLevel);
            const int64_t index = c->Selectors().lutIndex;
            c->Change(false, [&](CameraSettings& settings) {
                settings.lut = WithEntry(*settings.lut, index, value);
            });
        });
    m_registers.Add(Address::kLut, std::make_unique<LutRange>(m_camera));
}

void Builder::AddUserSets() {
    constexpr int64_t kLast = Camera::kUserSets - 1;
    m_registers.AddCommand(Address::kLoadUserSet,
                           [c = m_camera] { c->LoadUserSet(c->Selectors().userSet); });
    m_registers.AddCommand(Address::kSaveUserSet,
                           [c = m_camera] { c->SaveUserSet(c->Selectors().userSet); });
    Number(
        Address::kUserSetDefault, [c = m_camera] { return c->UserSetDefault(); },
        [c = m_camera](int64_t value) {
            RequireRange(value, 0, kLast);
            c->SetUserSetDefault(value);
        });
}

void Builder::AddTransport() {
    Number(Address::kPayloadSize,
           [c = m_camera] { return static_cast<int64_t>(c->PayloadSize()); });
    Number(
        Address::kParamsLocked, [c = m_camera] { return Bool(c->ParamsLocked()); },
        [c = m_camera](int64_t value) {
            RequireRange(value, 0, 1);
            c->SetParamsLocked(value != 0);
        });
}

void Builder::AddChunks() {
    SelectedBit(Address::kChunkEnable, &CameraSelectors::chunk, &CameraSettings::chunksEnabled,
                true, BitOf(Chunk::Image));
}

void Builder::AddEvents() {
    SelectedBit(Address::kEventNotification, &CameraSelectors::event,
                &CameraSettings::eventsEnabled, false, 0);
}

void Builder::AddDropOff() {
    m_registers.AddCommand(Address::kDropOff, [c = m_camera] { c->DropOff(); });
}

void Builder::SelectedBit(uint64_t address, SelectorField which, int64_t CameraSettings::*field,
                          bool shapesFrame, int64_t fixed) {
    Number(
        address,
        [c = m_camera, which, field] { return c->Settings().*field >> c->Selectors().*which & 1; },
        [c = m_camera, which, field, shapesFrame, fixed](int64_t value) {
            const int64_t bit = c->Selectors().*which;
            RequireRange(value, fixed >> bit & 1, 1);
            c->Change(shapesFrame, [&](CameraSettings& settings) {
                settings.*field &= ~BitOf(bit);
                settings.*field |= value << bit;
            });
        });
}

}  // namespace

void AddCameraRegisters(RegisterSpace& registers, const std::shared_ptr<Camera>& camera,
                        const OvProducer::PortFacts& facts) {
    Builder(camera, registers).AddAll(facts);
}

std::unique_ptr<OvProducer::Port> MakeCameraPort(const std::shared_ptr<Camera>& camera,
                                                 const OvProducer::PortFacts& facts) {
    auto port = std::make_unique<OvProducer::Port>(facts);
    AddCameraRegisters(port->Registers(), camera, facts);
    // Packed once for all cameras: that takes longer than all else that an opening does here.
    static const std::vector<std::byte> packed =
        OvProducer::MakeZip("OvVirtualCamera_1_0_0.xml", OvProducer::kVirtualCameraDescription);
    port->AddFile("OvVirtualCamera_1_0_0.zip", packed, Address::kDescription);
    return port;
}

}  // namespace OvVirtual
