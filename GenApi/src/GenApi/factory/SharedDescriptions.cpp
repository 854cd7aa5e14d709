// Where cameras of one model find the description that another one has loaded. Only cameras and
// factories own data: with the last of them it goes.

#include "factory/SharedDescriptions.h"

#include <xxhash.h>

#include <random>

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::AutoLock;

namespace {

uint64_t RandomSeed() {
    std::random_device random;
    return uint64_t{random()} << 32 | random();
}

}  // namespace

/// Never destroyed: a program's static objects may still load descriptions when it ends.
CSharedDescriptions& CSharedDescriptions::Get() {
    static auto* const shared =
        std::unique_ptr<CSharedDescriptions>(new CSharedDescriptions).release();
    return *shared;
}

CSharedDescriptions::CSharedDescriptions()
    : m_Seed(RandomSeed()), m_Lock(OvBase::LockRank::SharedDescriptions) {}

/// The hash has 128 bits, so that different texts have different ones. The seed is one that no
/// camera knows: a text that is made to have the hash of another would be taken for it.
auto CSharedDescriptions::KeyOf(std::string_view document, bool suppressStrings) const -> Key {
    const XXH128_hash_t hash = XXH3_128bits_withSeed(document.data(), document.size(), m_Seed);
    return {hash.low64, hash.high64, document.size(), suppressStrings};
}

auto CSharedDescriptions::Find(std::string_view document, bool suppressStrings) -> Data {
    const Key key = KeyOf(document, suppressStrings);
    const AutoLock lock(m_Lock);
    const auto found = m_Descriptions.find(key);
    return found == m_Descriptions.end() ? nullptr : found->second.lock();
}

/// Also forgets the descriptions that have gone, whose number would grow otherwise.
auto CSharedDescriptions::Enter(std::string_view document, bool suppressStrings, Data data)
    -> Data {
    const Key key = KeyOf(document, suppressStrings);
    const AutoLock lock(m_Lock);
    std::erase_if(m_Descriptions, [](const auto& entry) { return entry.second.expired(); });
    std::weak_ptr<const CNodeDataMap>& slot = m_Descriptions[key];
    Data other = slot.lock();
    if (other == nullptr) {
        slot = data;
        other = std::move(data);
    }
    return other;
}

}  // namespace GenApi_3_0_ORVANE
