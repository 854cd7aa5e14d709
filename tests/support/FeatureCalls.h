#pragma once
/// All calls on features in one form, for tests of the rules that they share.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

#include "OvIAPI.h"
#include "support/DescriptionXml.h"

/// The arguments of a call, which tests spoil one by one, and its results.
class FeatureArguments {
public:
    FeatureArguments(OV_DEV_HANDLE handle, OV_FEATURE_ID id) : camera(handle), feature(id) {
        m_output.fill(kUntouched);
        m_content.fill(kUntouched);
    }

    OV_DEV_HANDLE camera;
    OV_FEATURE_ID feature;
    bool hasPointer = true;

    /// Memory for a result or a size. As a size, its value is larger than any content.
    template <class T>
    T* Output() {
        return hasPointer ? reinterpret_cast<T*>(m_output.data()) : nullptr;
    }
    /// Memory for the content itself, a kilobyte.
    template <class T>
    T* Content() {
        return reinterpret_cast<T*>(m_content.data());
    }
    /// What a setter takes.
    template <class T>
    const T* Input(const T* input) const {
        return hasPointer ? input : nullptr;
    }
    bool IsUntouched() const {
        const auto isUntouched = [](uint8_t byte) { return byte == kUntouched; };
        return std::all_of(m_output.begin(), m_output.end(), isUntouched) &&
               std::all_of(m_content.begin(), m_content.end(), isUntouched);
    }

private:
    static constexpr uint8_t kUntouched = 0x6E;

    alignas(16) std::array<uint8_t, 64> m_output;
    alignas(16) std::array<uint8_t, 1024> m_content;
};

struct FeatureCall {
    const char* name;
    /// The function in the text of a failure.
    const char* function;
    OV_FEATURE_ID feature;
    /// H handle, T type, N name, P pointer, in the order of the checks.
    const char* order;
    OV_STATUS (*run)(FeatureArguments& arguments);
};

inline void PrintTo(const FeatureCall& call, std::ostream* stream) {
    *stream << call.name;
}

/// The name of a parametrised test.
inline std::string NameOf(const FeatureCall& call) {
    return call.name;
}

namespace feature_calls {

using A = FeatureArguments;

inline constexpr uint8_t kTable[256] = {1, 2, 3};

#define OV_NAMED_CALL(name, function, id, checks, ...)                       \
    {                                                                        \
        name, #function, id, checks, [](A& a) -> OV_STATUS {                 \
            return function(a.camera, a.feature __VA_OPT__(, ) __VA_ARGS__); \
        }                                                                    \
    }
#define OV_CALL(function, ...) OV_NAMED_CALL(#function, function, __VA_ARGS__)
#define OV_FILL(function, ...) OV_NAMED_CALL(#function "IntoMemory", function, __VA_ARGS__)

inline const FeatureCall kAll[] = {
    OV_CALL(OVGetFeatureName, OV_FEATURE_Width, "HPN", nullptr, a.Output<size_t>()),
    OV_FILL(OVGetFeatureName, OV_FEATURE_Width, "HPN", a.Content<char>(), a.Output<size_t>()),
    OV_CALL(OVIsImplemented, OV_FEATURE_Width, "HPN", a.Output<bool>()),
    OV_CALL(OVIsReadable, OV_FEATURE_Width, "HNP", a.Output<bool>()),
    OV_CALL(OVIsWritable, OV_FEATURE_Width, "HNP", a.Output<bool>()),
    OV_CALL(OVGetIntRange, OV_FEATURE_Width, "HTNP", a.Output<OV_INT_RANGE>()),
    OV_CALL(OVGetInt, OV_FEATURE_Width, "HTNP", a.Output<int64_t>()),
    OV_CALL(OVSetInt, OV_FEATURE_Width, "HTN", 16),
    OV_CALL(OVGetFloatRange, OV_FEATURE_ExposureTime, "HTNP", a.Output<OV_FLOAT_RANGE>()),
    OV_CALL(OVSetFloat, OV_FEATURE_ExposureTime, "HTN", 1000),
    OV_CALL(OVGetFloat, OV_FEATURE_ExposureTime, "HTNP", a.Output<double>()),
    OV_CALL(OVGetEnumEntryNums, OV_FEATURE_PixelFormat, "HTNP", a.Output<uint32_t>()),
    OV_CALL(OVGetEnumDescription, OV_FEATURE_PixelFormat, "HTNP", nullptr, a.Output<size_t>()),
    OV_FILL(OVGetEnumDescription, OV_FEATURE_PixelFormat, "HTNP", a.Content<OV_ENUM_DESCRIPTION>(),
            a.Output<size_t>()),
    OV_CALL(OVGetEnum, OV_FEATURE_PixelFormat, "HTNP", a.Output<int64_t>()),
    OV_CALL(OVSetEnum, OV_FEATURE_PixelFormat, "HTN", 0x01080001),
    OV_CALL(OVGetBool, OV_FEATURE_ReverseX, "HTNP", a.Output<bool>()),
    OV_CALL(OVSetBool, OV_FEATURE_ReverseX, "HTN", true),
    OV_CALL(OVGetStringLength, OV_FEATURE_DeviceUserID, "HTNP", a.Output<size_t>()),
    OV_CALL(OVGetStringMaxLength, OV_FEATURE_DeviceUserID, "HTNP", a.Output<size_t>()),
    OV_CALL(OVGetString, OV_FEATURE_DeviceUserID, "HTNP", nullptr, a.Output<size_t>()),
    OV_FILL(OVGetString, OV_FEATURE_DeviceUserID, "HTNP", a.Content<char>(), a.Output<size_t>()),
    OV_CALL(OVSetString, OV_FEATURE_DeviceUserID, "HTNP", a.Input("id")),
    OV_CALL(OVGetBufferLength, OV_FEATURE_LUTValueAll, "HTNP", a.Output<size_t>()),
    OV_CALL(OVGetBuffer, OV_FEATURE_LUTValueAll, "HTNP", nullptr, a.Output<size_t>()),
    OV_FILL(OVGetBuffer, OV_FEATURE_LUTValueAll, "HTNP", a.Content<uint8_t>(), a.Output<size_t>()),
    OV_CALL(OVSetBuffer, OV_FEATURE_LUTValueAll, "HTNP", a.Input(kTable), sizeof kTable),
    OV_CALL(OVSendCommand, OV_FEATURE_TriggerSoftware, "HTN"),
};

#undef OV_NAMED_CALL
#undef OV_CALL
#undef OV_FILL

}  // namespace feature_calls

/// A camera's description with the given nodes and a port "Device".
inline std::string DescribeCamera(const std::string& body) {
    return DescriptionXml::DocumentXml{
        .model = "Own",
        .vendor = "oviapi",
        .toolTip = "A test's own camera",
        .nameSpace = "None",
        .versions =
            R"(SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0" SubMinorVersion="0")",
        .productGuid = "3B6F0D21-7E44-4A90-9C15-8D2F61B00002",
        .versionGuid = "3B6F0D21-7E44-4A90-9C15-8D2F61B01002"}("<Port Name=\"Device\"/>" + body);
}

/// Describes the features of kAll without caches, so that every call asks the camera.
/// "Gate" must be 1.
inline std::string DescriptionThatAsksTheCamera() {
    const auto integer = [](const std::string& name, int address) {
        return DescriptionXml::RegXml{
            .name = name, .address = address, .caching = "NoCache", .sign = ""}();
    };
    const std::string gate = "<pIsImplemented>Gate</pIsImplemented>";
    const auto bytes = [&](const std::string& kind, const std::string& name,
                           const std::string& place) {
        return "<" + kind + " Name=\"" + name + "\">" + gate + place +
               "<AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>NoCache</Cachable></" +
               kind + ">";
    };
    const auto value = [&](const std::string& kind, const std::string& name,
                           const std::string& rest) {
        return "<" + kind + " Name=\"" + name + "\">" + gate + rest + "</" + kind + ">";
    };
    const std::string limits = "<pMin>Low</pMin><Max>100000000</Max>";
    return DescribeCamera(
        integer("Gate", 0x1000) + integer("Low", 0x1004) + integer("Raw", 0x1008) +
        integer("Choice", 0x100C) + integer("Switch", 0x1010) + integer("Trigger", 0x1014) +
        value("Integer", "Width", "<pValue>Raw</pValue>" + limits) +
        value("Float", "ExposureTime", "<pValue>Raw</pValue>" + limits) +
        value("Enumeration", "PixelFormat",
              "<EnumEntry Name=\"Mono8\">" + gate + "<Value>0x01080001</Value></EnumEntry>" +
                  "<pValue>Choice</pValue>") +
        value("Boolean", "ReverseX", "<pValue>Switch</pValue>") +
        bytes("StringReg", "DeviceUserID", "<Address>0x1100</Address><Length>32</Length>") +
        bytes("Register", "LUTValueAll", "<Address>0x1200</Address><Length>256</Length>") +
        value("Command", "TriggerSoftware",
              "<pValue>Trigger</pValue><CommandValue>1</CommandValue>"));
}
