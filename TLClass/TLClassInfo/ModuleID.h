#pragma once
/// Reads the ID of a child module by its place in the parent's list.

#include <cstdint>
#include <string>

#include "TLClassLoadTL/GenTLLib.h"

namespace OVTLClass {

class CModuleID {
public:
    virtual ~CModuleID() = default;
    CModuleID(const CModuleID&) = delete;
    CModuleID& operator=(const CModuleID&) = delete;

    /// The ID, or an empty text when the producer refuses it.
    std::string GetID();

protected:
    CModuleID() = default;

private:
    virtual int32_t __GetID(char* id, size_t* size) = 0;
    size_t __GetIDLength();
    std::string __GetIDContent(size_t size);
};

/// The ID call `Call` of a producer on a parent handle and an index.
template <auto Call>
class CIndexedModuleID : public CModuleID {
public:
    CIndexedModuleID(const CGenTLLib& lib, void* parent, uint32_t index)
        : m_lib(lib), m_parent(parent), m_index(index) {}

private:
    int32_t __GetID(char* id, size_t* size) override {
        return (m_lib.*Call)(m_parent, m_index, id, size);
    }

    const CGenTLLib& m_lib;
    void* m_parent;
    uint32_t m_index;
};

using CInterfaceID = CIndexedModuleID<&CGenTLLib::TLGetInterfaceID>;
using CDeviceID = CIndexedModuleID<&CGenTLLib::IFGetDeviceID>;
using CDataStreamID = CIndexedModuleID<&CGenTLLib::DevGetDataStreamID>;

}  // namespace OVTLClass
