#pragma once
/// One loaded producer with its entry points.

#include <cstdint>
#include <map>
#include <string>

#include "GenTL/GenTL.h"
#include "TLClassLoadTL/OvLibrary.h"

namespace OVTLClass {

/// An entry point of a producer. Called like the function; returns -1, which no
/// producer uses, when the producer doesn't export it.
template <class Pointer>
class CEntryPoint;

template <class... Arguments>
class CEntryPoint<GenTL::GC_ERROR (*)(Arguments...)> {
public:
    int32_t operator()(Arguments... arguments) const {
        return m_function == nullptr ? -1 : m_function(arguments...);
    }
    void Set(void* address) {
        m_function = reinterpret_cast<GenTL::GC_ERROR (*)(Arguments...)>(address);
    }
    void* GetAddress() const { return reinterpret_cast<void*>(m_function); }

private:
    GenTL::GC_ERROR (*m_function)(Arguments...) = nullptr;
};

/// Loads a producer and binds its entry points. Constant after construction and
/// shared by every object that reaches the producer.
class CGenTLLib {
public:
    /// Throws "Failed to load file ..." when the file doesn't load. A missing
    /// entry point is no failure before it is called.
    explicit CGenTLLib(const std::string& path);
    virtual ~CGenTLLib();
    CGenTLLib(const CGenTLLib&) = delete;
    CGenTLLib& operator=(const CGenTLLib&) = delete;

    /// The address of one of the five calls that other libraries may borrow:
    /// the port calls and GCGetLastError. Null for every other name.
    void* GetFunction(const std::string& name) const;

private:
    COvLibrary m_library;

public:
#define OV_GENTL_MEMBER(name, parameters) CEntryPoint<GenTL::P##name> name;
    OV_GENTL_FUNCTIONS(OV_GENTL_MEMBER)
    OV_GENTL_OPTIONAL_FUNCTIONS(OV_GENTL_MEMBER)
#undef OV_GENTL_MEMBER

private:
    std::map<std::string, void*> m_functions;
};

}  // namespace OVTLClass
