#pragma once
/// Name-keyed access to the features of one module.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "TLClassFeature/FeatureName.h"
#include "TLClassSupport/UnCopyable.h"

namespace OVTLClass {

class IFeatureCallback;

/// Limits of an integer feature.
struct FEATURE_INT_RANGE {
    int64_t min = 0;
    int64_t max = 0;
    int64_t inc = 0;
};

/// Limits of a float feature; `inc` counts only when `hasInc`.
struct FEATURE_FLOAT_RANGE {
    double min = 0;
    double max = 0;
    double inc = 0;
    std::string unit;
    bool hasInc = false;
};

/// One entry of an enumeration that can be chosen.
struct FEATURE_ENUM_ENTRY_INFORMATION {
    int64_t value = 0;
    std::string symbolic;
    char reserved[32] = {};
};

/// The only way by which the transport model reaches features. No exception of
/// the node engine leaves it: what fails is thrown in the model's own family,
/// with the engine's text. An unknown feature throws CNotImplementedError.
///
/// Values may be read and written through a constant reference: what is
/// constant is the set of features.
class IFeatureControl : public CUnCopyable {
public:
    /// One registered callback; its address is the handle.
    class IFeatureCallbackHandle : public CUnCopyable {
    public:
        virtual ~IFeatureCallbackHandle() = default;
    };

    virtual ~IFeatureControl() = default;

    virtual std::string DoGetFeatureDisplayName(CFeatureName name) const = 0;
    /// Whether the description has a node of that name.
    virtual bool DoExist(CFeatureName name) const = 0;
    virtual bool DoIsImplemented(CFeatureName name) const = 0;
    virtual bool DoIsReadable(CFeatureName name) const = 0;
    virtual bool DoIsWritable(CFeatureName name) const = 0;
    virtual FEATURE_INT_RANGE DoGetIntRange(CFeatureName name) const = 0;
    virtual int64_t DoGetInt(CFeatureName name) const = 0;
    virtual void DoSetInt(CFeatureName name, int64_t value) const = 0;
    virtual FEATURE_FLOAT_RANGE DoGetFloatRange(CFeatureName name) const = 0;
    virtual double DoGetFloat(CFeatureName name) const = 0;
    virtual void DoSetFloat(CFeatureName name, double value) const = 0;
    /// How many entries can be chosen now.
    virtual uint32_t DoGetEnumEntryNums(CFeatureName name) const = 0;
    /// Appends the entries that can be chosen now.
    virtual void DoGetEnumDescription(
        CFeatureName name, std::vector<FEATURE_ENUM_ENTRY_INFORMATION>& entries) const = 0;
    virtual int64_t DoGetEnum(CFeatureName name) const = 0;
    virtual void DoSetEnum(CFeatureName name, int64_t value) const = 0;
    virtual int64_t DoGetEnumEntryValue(CFeatureName name, const std::string& entry) const = 0;
    virtual bool DoGetBool(CFeatureName name) const = 0;
    virtual void DoSetBool(CFeatureName name, bool value) const = 0;
    /// Without a terminating zero.
    virtual int64_t DoGetMaxStringLength(CFeatureName name) const = 0;
    virtual std::string DoGetString(CFeatureName name) const = 0;
    virtual void DoSetString(CFeatureName name, const std::string& value) const = 0;
    virtual size_t DoGetBufferLength(CFeatureName name) const = 0;
    /// Reads the whole feature into `buffer` of `size` bytes.
    virtual void DoGetBuffer(CFeatureName name, size_t size, uint8_t* buffer) const = 0;
    virtual void DoSetBuffer(CFeatureName name, size_t size, const uint8_t* buffer) const = 0;
    virtual void DoSendCommand(CFeatureName name) const = 0;
    /// Keeps a clone of the callback; the handle is owned here.
    virtual IFeatureCallbackHandle* DoRegisterFeatureCallback(CFeatureName name,
                                                              const IFeatureCallback& callback) = 0;
    /// An unknown handle has no effect. The handle is an address as a number.
    virtual void DoUnregisterFeatureCallback(intptr_t handle) = 0;
    virtual void DoUnregisterAllFeatureCallback() = 0;
    // As DoGetInt and DoGetString, past the caches.
    virtual int64_t DoReadInt(CFeatureName name) const = 0;
    virtual std::string DoReadString(CFeatureName name) const = 0;
};

}  // namespace OVTLClass
