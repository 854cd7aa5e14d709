#pragma once
/// Descriptions that are loaded once for all cameras that have them.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <tuple>

#include "Base/Lock.h"
#include "nodes/NodeDataMap.h"

namespace GenApi_3_0_ORVANE {

/// The preprocessed data of every description that somebody in this process still has. It is
/// only read: what a camera sets is in its own nodes. Any thread may use it.
class CSharedDescriptions {
public:
    using Data = std::shared_ptr<const CNodeDataMap>;

    static CSharedDescriptions& Get();

    /// Returns the data of a text; null if nobody has it.
    /// @param suppressStrings  whether the texts that only people read are left out of it
    Data Find(std::string_view document, bool suppressStrings);
    /// Enters data which is complete. Returns what another thread has entered in the meantime,
    /// or else this data.
    Data Enter(std::string_view document, bool suppressStrings, Data data);

private:
    /// What tells descriptions apart: the text's hash, in two halves, and its size, and whether
    /// texts are left out.
    using Key = std::tuple<uint64_t, uint64_t, size_t, bool>;

    CSharedDescriptions();
    Key KeyOf(std::string_view document, bool suppressStrings) const;

    const uint64_t m_Seed;
    GenICam_3_0_ORVANE::CLock m_Lock;
    std::map<Key, std::weak_ptr<const CNodeDataMap>> m_Descriptions;
};

}  // namespace GenApi_3_0_ORVANE
