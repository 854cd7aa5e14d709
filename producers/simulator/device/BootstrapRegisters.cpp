#include "simulator/device/BootstrapRegisters.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Base/OvAssert.h"
#include "gige/protocol/BigEndian.h"

namespace OvSimulator {
namespace {

using namespace OvGige;

constexpr uint32_t kAll = 0xFFFFFFFF;

/// Registers in a row that have the same rule.
struct Row {
    uint32_t address;
    uint32_t bytes = kWord;
    uint32_t writable = 0;  ///< bits that a host may change
    bool isReadable = true;
};

constexpr auto kRows = std::to_array<Row>({
    // An answer to a search is a copy of these, with the reserved words between them.
    {.address = kRegVersion, .bytes = kRegCurrentIpConfig},
    {.address = kRegCurrentIpConfig, .writable = kIpPersistent | kIpDhcp},
    {.address = kRegCurrentIpConfig + kWord,
     .bytes = kRegUserName.address - kRegCurrentIpConfig - kWord},
    {.address = kRegUserName.address, .bytes = kRegUserName.width, .writable = kAll},
    {.address = kRegFirstUrl.address, .bytes = kRegFirstUrl.width},
    {.address = kRegSecondUrl.address, .bytes = kRegSecondUrl.width},
    {.address = kRegInterfaceCount},
    {.address = kRegPersistentIp, .writable = kAll},
    {.address = kRegPersistentMask, .writable = kAll},
    {.address = kRegPersistentGateway, .writable = kAll},
    {.address = kRegLinkSpeed},
    {.address = kRegMessageChannelCount},
    {.address = kRegStreamChannelCount},
    {.address = kRegActionSignalCount},
    {.address = kRegActionDeviceKey, .writable = kAll, .isReadable = false},
    {.address = kRegActiveLinkCount},
    {.address = kRegStreamCapability},
    {.address = kRegMessageCapability},
    {.address = kRegControlCapability},
    {.address = kRegHeartbeatTimeout, .writable = kAll},
    {.address = kRegTickFrequencyHigh},
    {.address = kRegTickFrequencyLow},
    {.address = kRegTimestampControl, .writable = 0x3, .isReadable = false},
    {.address = kRegTimestampHigh},
    {.address = kRegTimestampLow},
    {.address = kRegDiscoveryDelay},
    {.address = kRegControlConfig, .writable = kAll},
    {.address = kRegPendingTimeout},
    {.address = kRegStreamConfig, .writable = kAll},
    {.address = kRegLinkCapability},
    {.address = kRegLinkConfig, .writable = kAll},
    {.address = kRegClockState},
    {.address = kRegActionQueueSize},
    {.address = kRegPrivilege},  // written only by way of who asks
    {.address = kRegOwnerPort},
    {.address = kRegOwnerIp},
    {.address = kRegMessagePort, .writable = 0x000FFFFF},
    {.address = kRegMessageDestination, .writable = kAll},
    {.address = kRegMessageTimeout, .writable = kAll},
    {.address = kRegMessageRetries, .writable = kAll},
    {.address = kRegMessageSourcePort},
    {.address = kRegMessageConfig, .writable = kMessageConfigSeveralEvents},
    {.address = kRegStreamPort, .writable = 0x000FFFFF},
    {.address = kRegStreamPacketSize, .writable = kAll},
    {.address = kRegStreamPacketDelay, .writable = kAll},
    {.address = kRegStreamDestination, .writable = kAll},
    {.address = kRegStreamSourcePort},
    {.address = kRegStreamFeatures},
    {.address = kRegStreamSwitches, .writable = kAll},
    {.address = kRegActionGroupKey, .bytes = 2 * kWord, .writable = kAll},
    {.address = kRegActionGroupKey + kRegActionStride, .bytes = 2 * kWord, .writable = kAll},
});

}  // namespace

BootstrapRegisters::BootstrapRegisters() {
    for (const Row& row : kRows) {
        for (uint32_t offset = 0; offset < row.bytes; offset += kWord) {
            Word& word = m_words[row.address + offset];
            word.writable = row.writable;
            word.isReadable = row.isReadable;
        }
    }
}

const BootstrapRegisters::Word& BootstrapRegisters::At(uint32_t address) const {
    const auto found = m_words.find(address);
    OV_ASSERT(found != m_words.end());
    return found->second;
}

BootstrapRegisters::Word& BootstrapRegisters::At(uint32_t address) {
    return const_cast<Word&>(std::as_const(*this).At(address));
}

uint32_t BootstrapRegisters::Get(uint32_t address) const {
    return At(address).value;
}

void BootstrapRegisters::Set(uint32_t address, uint32_t value) {
    At(address).value = value;
}

std::string BootstrapRegisters::GetText(TextRegister text) const {
    Bytes bytes;
    for (uint32_t offset = 0; offset < text.width; offset += kWord) {
        Append(bytes, Get(text.address + offset));
    }
    return ReadText(bytes);
}

void BootstrapRegisters::SetText(TextRegister text, std::string_view value) {
    Bytes bytes(text.width);
    WriteText(std::span(bytes).first(text.width - 1), value);
    for (uint32_t offset = 0; offset < text.width; offset += kWord) {
        Set(text.address + offset, ReadBig<uint32_t>(ByteView(bytes).subspan(offset)));
    }
}

void BootstrapRegisters::CheckWrites(uint32_t address, Check check) {
    At(address).check = std::move(check);
}

void BootstrapRegisters::FollowWrites(uint32_t address, Effect effect) {
    At(address).effects.push_back(std::move(effect));
}

void BootstrapRegisters::Remove(uint32_t address) {
    m_words.erase(address);
}

Status BootstrapRegisters::Read(uint32_t address, uint32_t& value) const {
    const auto found = m_words.find(address);
    if (found == m_words.end()) {
        return Status::InvalidAddress;
    }
    if (!found->second.isReadable) {
        return Status::AccessDenied;
    }
    value = found->second.value;
    return Status::Success;
}

Status BootstrapRegisters::Write(uint32_t address, uint32_t value) {
    const auto found = m_words.find(address);
    if (found == m_words.end()) {
        return Status::InvalidAddress;
    }
    Word& word = found->second;
    if (word.writable == 0) {
        return Status::WriteProtect;
    }
    uint32_t next = (word.value & ~word.writable) | (value & word.writable);
    if (word.check) {
        const Status status = word.check(next);
        if (status != Status::Success) {
            return status;
        }
    }
    word.value = next;
    for (const Effect& effect : word.effects) {
        effect(next);
    }
    return Status::Success;
}

}  // namespace OvSimulator
