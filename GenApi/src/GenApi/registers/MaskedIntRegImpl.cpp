// A field of bits in an integer register. Descriptions count the bits of big-endian registers
// from the most significant one; they are turned once, when the map is made, so that every access
// is a shift and a mask.

#include "registers/MaskedIntRegImpl.h"

#include <utility>

namespace GenApi_3_0_ORVANE {

/// What isn't the number of a bit must not become one by losing its upper half.
uint32_t CMaskedIntRegImpl::BitOf(const CProperty& property) {
    const int64_t bit = property.Integer();
    return bit < 0 || bit >= GC_UINT32_MAX ? GC_UINT32_MAX - 1 : static_cast<uint32_t>(bit);
}

void CMaskedIntRegImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::LSB_ID:
            m_LSB = BitOf(property);
            break;
        case CPropertyID::MSB_ID:
            m_MSB = BitOf(property);
            break;
        default:
            CIntRegImpl::SetProperty(property);
            break;
    }
}

/// The sign and the limits are those of the field: the register around it may be longer.
void CMaskedIntRegImpl::FinalConstruct() {
    CIntRegImpl::FinalConstruct();
    CheckBits();
    const unsigned width = m_MSB - m_LSB + 1;
    m_FieldMasks = MasksOf(width, m_Sign);
    m_Mask = ~m_FieldMasks.extension << m_LSB;
}

/// Runs once, so a description that is wrong here makes a faulty node and costs no access
/// anything. Each text is the broken condition.
void CMaskedIntRegImpl::CheckBits() {
    const auto require = [](bool condition, const char* text) {
        if (!condition) {
            throw NodeFault(text);
        }
    };
    require(!m_Length.IsPointer(),
            "!m_Length.IsPointer() && \"MaskedIntReg cannot deal with pLength because the MSB/LSB "
            "counting depends on the length\"");
    require(m_LSB != GC_UINT32_MAX, "m_LSB != GC_UINT32_MAX");
    require(m_MSB != GC_UINT32_MAX, "m_MSB != GC_UINT32_MAX");
    require(m_LSB < 64, "m_LSB < 64");
    require(m_MSB < 64, "m_MSB < 64");
    // Turns the bits as well; the last condition is about the result.
    CheckBitOrder(static_cast<uint32_t>(8 * CheckedLength()));
    require(m_MSB - m_LSB + 1 < sizeof(int64_t) * 8, "m_MSB - m_LSB + 1 < sizeof(int64_t) * 8");
}

void CMaskedIntRegImpl::CheckBitOrder(uint32_t bits) {
    switch (m_Endianess) {
        case LittleEndian:
            if (m_MSB < m_LSB) {
                RUNTIME_EXCEPTION_NODE(
                    "Node '%s' : For a little endian integer MSB must be "
                    "greater or equal than LSB",
                    m_Name.c_str());
            }
            if (m_MSB >= bits) {
                RUNTIME_EXCEPTION_NODE(
                    "Node '%s' : For a little endian integer MSB must be "
                    "smaller than 8 * Length",
                    m_Name.c_str());
            }
            return;
        case BigEndian:
            if (m_LSB < m_MSB) {
                RUNTIME_EXCEPTION_NODE(
                    "Node '%s' : For a big endian integer LSB must be greater "
                    "or equal than MSB",
                    m_Name.c_str());
            }
            if (m_LSB >= bits) {
                RUNTIME_EXCEPTION_NODE(
                    "Node '%s' : For a big endian integer LSB must be smaller "
                    "than 8 * Length",
                    m_Name.c_str());
            }
            // Bit 0 is the most significant there.
            m_MSB = bits - 1 - m_MSB;
            m_LSB = bits - 1 - m_LSB;
            return;
        default:
            LOGICAL_ERROR_EXCEPTION_NODE("Undefined endianess");
    }
}

/// All bits around the field are read with it. Other fields of the register come from the same
/// bytes in the port's cache.
int64_t CMaskedIntRegImpl::InternalGetValue(bool verify, bool ignoreCache) {
    const uint64_t field = (ReadRaw(verify, ignoreCache) & m_Mask) >> m_LSB;
    return SignExtended(field, m_FieldMasks, m_Sign);
}

/// Reads the bits around the field first, from the cache if possible. Another program on the same
/// device could change them in between, which no register access can exclude.
void CMaskedIntRegImpl::InternalSetValue(int64_t value, bool verify) {
    const uint64_t others = ReadRaw(false, false) & ~m_Mask;
    WriteRaw(((static_cast<uint64_t>(value) << m_LSB) & m_Mask) | others, verify);
}

}  // namespace GenApi_3_0_ORVANE
