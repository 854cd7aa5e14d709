#include <cstdint>
#include <string>

#include "Base/OvAssert.h"
#include "NodeMapData/CacheStream.h"
#include "NodeMapData/NodeDataMap.h"

namespace CacheFuzz {

namespace {

using namespace GenApi_3_0_ORVANE;  // NOLINT(google-build-using-namespace)

/// Looks for what ends the process in a file without a checksum: counts beyond
/// those that a file can have, values of a type that there isn't, and nodes whose
/// name is missing or no text.
class Walk {
public:
    explicit Walk(const std::string& bytes) : m_Reader(bytes) {}

    bool IsHarmless() {
        m_Reader.Header();
        for (uint64_t left = Count(); left > 0 && m_Reader.IsGood(); --left) {
            m_Reader.Text();
        }
        const uint64_t numNodes = Count();
        for (uint64_t left = numNodes; left > 0 && m_Reader.IsGood(); --left) {
            m_Reader.Number<6>();
        }
        for (uint64_t left = numNodes; left > 0 && m_Reader.IsGood(); --left) {
            Node();
        }
        return m_IsHarmless;
    }

private:
    uint64_t Count() {
        const uint64_t count = m_Reader.Number<4>();
        m_IsHarmless &= count <= kCacheFileMaxCount;
        return count;
    }
    void Node() {
        bool isNamed = false;
        for (uint64_t left = m_Reader.Number<4>(); left > 0 && m_Reader.IsGood(); --left) {
            const uint64_t id = m_Reader.Number<1>();
            const uint64_t type = Property();
            if (id == CPropertyID::Name_ID && !isNamed) {
                m_IsHarmless &= type == CProperty::String_ID;
                isNamed = true;
            }
        }
        m_IsHarmless &= isNamed || !m_Reader.IsGood();
    }
    /// Passes what follows the identifier. An attribute is a property again.
    uint64_t Property() {
        const uint64_t type = m_Reader.Number<1>();
        bool hasAttribute = m_Reader.Number<1>() == 1;
        Value(type);
        while (hasAttribute && m_Reader.IsGood()) {
            m_Reader.Number<1>();
            const uint64_t attributeType = m_Reader.Number<1>();
            hasAttribute = m_Reader.Number<1>() == 1;
            Value(attributeType);
        }
        return type;
    }
    void Value(uint64_t type) {
        constexpr uint64_t kLastType = 20;
        m_IsHarmless &= type <= kLastType;
        if (type == 0) {
            m_Reader.Number<3>();
        } else if (type < 5) {
            m_Reader.Number<2>();
        } else if (type < 18) {
            m_Reader.Number<4>();
        } else {
            m_Reader.Number<8>();
        }
    }

    CCacheReader m_Reader;
    bool m_IsHarmless = true;
};

std::string BytesOf(const CNodeDataMap& map) {
    CCacheWriter writer;
    map.ToFile(writer);
    return writer.GetBytes();
}

/// What could be read can be written, and read again.
void Run(const std::string& bytes) {
    CCacheReader reader(bytes);
    CNodeDataMap map;
    map.FromFile(reader);
    if (!reader.IsGood()) {
        return;
    }
    const std::string written = BytesOf(map);
    CCacheReader rereader(written);
    CNodeDataMap again;
    again.FromFile(rereader);
    OV_ASSERT(rereader.IsGood() && rereader.GetRest() == 0);
    OV_ASSERT(BytesOf(again) == written);
}

}  // namespace

}  // namespace CacheFuzz

/// The input is what follows the beginning that all files have.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace CacheFuzz;  // NOLINT(google-build-using-namespace)
    const std::string bytes = std::string(GetCacheFileHeader()) + std::string(data, data + size);
    if (Walk(bytes).IsHarmless()) {
        Run(bytes);
    }
    return 0;
}
