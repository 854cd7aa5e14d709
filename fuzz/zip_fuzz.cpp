#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "TLClassXML/Zip.h"
#include "nodes/NodeDataMap.h"
#include "reader/NodeDataMapFactory.h"
#include "tl/ZipBytes.h"

namespace ZipFuzz {

namespace {

using OVTLClass::Bytes;
using OVTLClass::CZip;
using OVTLClass::ZipEntry;

/// The changes to an archive's header that stand before its content.
constexpr size_t kFields = 8;

/// An archive of any bytes, by both ways that descriptions are unpacked.
void RunArchive(const Bytes& archive) {
    Bytes unpacked;
    CZip::Uncompress(archive, unpacked);
    GenApi_3_0_ORVANE::CNodeDataMap map;
    try {
        std::string document;
        GenApi_3_0_ORVANE::CNodeDataMapFactory::ReadXmlBuffer(
            GenApi_3_0_ORVANE::ContentType_ZippedXml, archive.data(), archive.size(), document);
        GenApi_3_0_ORVANE::CNodeDataMapFactory::ParseXml(&map, document, false);
    } catch (const GenICam_3_0_ORVANE::GenericException&) {  // NOLINT(bugprone-empty-catch)
    }
}

/// An archive that is right but for the fields that the input changes.
void RunEntry(std::span<const uint8_t> input) {
    const auto fields = input.first(kFields);
    const std::string content(input.begin() + kFields, input.end());
    ZipEntry entry(content);
    entry.method = static_cast<uint16_t>(entry.method ^ fields[0]);
    entry.packedSize += static_cast<uint32_t>(fields[1] | fields[2] << 8);
    entry.size += static_cast<uint32_t>(fields[3] | fields[4] << 8 | fields[5] << 24);
    entry.name.resize(fields[6], 'n');
    entry.extra.resize(fields[7], 'e');
    Bytes unpacked;
    const bool isDone = CZip::Uncompress(entry.Build(), unpacked);
    // Without content there is nothing to be unpacked to.
    if (!content.empty() &&
        std::all_of(fields.begin(), fields.begin() + 6, [](uint8_t field) { return field == 0; })) {
        OV_ASSERT(isDone && OVTLClass::ToText(unpacked) == content);
    }
}

}  // namespace

}  // namespace ZipFuzz

/// The first byte tells whether the others are an archive, or changes to one and
/// its content.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace ZipFuzz;  // NOLINT(google-build-using-namespace)
    if (size > 0 && (data[0] & 1) != 0) {
        RunArchive(Bytes(data + 1, data + size));
    } else if (size > kFields) {
        RunEntry({data + 1, size - 1});
    }
    return 0;
}
