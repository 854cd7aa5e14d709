// The bytes of a cache file as what live nodes are made of. Nothing of the file is copied that
// nodes can use as it is.

#include "cache/CachedDescriptions.h"

#include <utility>

namespace GenApi_3_0_ORVANE {

CCachedDescriptions::CCachedDescriptions(std::shared_ptr<const std::string> bytes,
                                         CCacheReader& reader)
    : m_Bytes(std::move(bytes)), m_Texts({}, 0) {
    CCacheTables tables = ReadCacheTables(reader);
    m_Counts = tables.Count();
    m_NumLinks = tables.numClosureLinks;
    m_Types = std::move(tables.types);
    m_Texts = DirectNodeDataMap(std::move(tables.strings), m_Types.size());
    m_Places.reserve(m_Types.size());
    m_Links.reserve(m_NumLinks);
}

NodeIDSpan CCachedDescriptions::ReadLinks(CCacheReader& reader) {
    const size_t count = ReadCacheLinks(reader, m_Counts, m_NumLinks, m_Links);
    return NodeIDSpan(m_Links).last(count);
}

/// The place of the closure among the properties matters only to those who print them.
auto CCachedDescriptions::ReadClosure(CCacheReader& reader, size_t numProperties) -> Links {
    if (ReadClosurePlace(reader) > numProperties) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
    const NodeIDSpan dependents = ReadLinks(reader);
    return {dependents, ReadLinks(reader)};
}

/// A file may be whole and still not be a map; it may have been made to look like one.
void CCachedDescriptions::CheckEnd(CCacheReader& reader) const {
    if (reader.IsGood() && (m_Links.size() != m_NumLinks || !m_Texts.AreNamesComplete())) {
        reader.Fail(CCacheReader::State::Corrupt);
    }
}

/// Reads the list once more: it is asked for so seldom that keeping it isn't worth the memory.
void CCachedDescriptions::ForEachProperty(NodeID_t nodeID,
                                          const std::function<void(const CProperty&)>& use) const {
    const size_t place = m_Places[static_cast<size_t>(nodeID.ToIndex())];
    CCacheReader reader(std::string_view(*m_Bytes).substr(place));
    ReadCacheProperties(reader, m_Counts, GetType(nodeID), &m_Texts, use);
}

}  // namespace GenApi_3_0_ORVANE
