#pragma once
/// What the library keeps of each GenTL module. A producer may leave anything
/// out, so every value says whether it was answered: a blank text or a 0 may be an
/// answer.

#include <cstddef>
#include <cstdint>
#include <string>

namespace OVTLClass {

/// A value, and whether the producer answered it.
template <class T>
struct InfoValue {
    T value{};
    bool valid = false;

    /// Takes a newer value. One that the producer didn't answer this time leaves
    /// what is known.
    void Renew(const InfoValue& newer) {
        if (newer.valid) {
            *this = newer;
        }
    }
};

using InfoString = InfoValue<std::string>;
using InfoInt32 = InfoValue<int32_t>;
using InfoInt64 = InfoValue<int64_t>;
using InfoUint64 = InfoValue<uint64_t>;
/// Sizes have the width of the standard's 64-bit numbers.
using InfoSize = InfoUint64;
using InfoBool = InfoValue<bool>;
using InfoPointer = InfoValue<void*>;

/// Root of what is read from a module's features for every transport.
struct COMMON_INFO {
    virtual ~COMMON_INFO() = default;

protected:
    COMMON_INFO() = default;
    COMMON_INFO(const COMMON_INFO&) = default;
    COMMON_INFO& operator=(const COMMON_INFO&) = default;
};

struct COMMON_INTERFACE_INFO : COMMON_INFO {
    InfoString description;
};

struct COMMON_DEVICE_INFO : COMMON_INFO {
    InfoString serialNumber;
    InfoString version;
    InfoString userId;
};

/// Root of what only one transport knows; the dynamic type says which.
struct SPECIAL_INFO {
    virtual ~SPECIAL_INFO() = default;

protected:
    SPECIAL_INFO() = default;
    SPECIAL_INFO(const SPECIAL_INFO&) = default;
    SPECIAL_INFO& operator=(const SPECIAL_INFO&) = default;
};

struct GEV_TL_INFO : SPECIAL_INFO {
    InfoInt64 versionMajor;
    InfoInt64 versionMinor;
};

/// Addresses with the first number in the top byte of 32 (MAC: of 48) bits.
struct GEV_ADDRESS_INFO : SPECIAL_INFO {
    InfoInt64 macAddress;
    InfoInt64 ipAddress;
    InfoInt64 subnetMask;
    InfoInt64 gateway;

    void Renew(const GEV_ADDRESS_INFO& newer) {
        macAddress.Renew(newer.macAddress);
        ipAddress.Renew(newer.ipAddress);
        subnetMask.Renew(newer.subnetMask);
        gateway.Renew(newer.gateway);
    }
};

struct GEV_IF_INFO : GEV_ADDRESS_INFO {};
struct GEV_DEV_INFO : GEV_ADDRESS_INFO {};

struct TL_INFO {
    InfoString vendor;
    InfoString model;
    InfoString version;
    InfoString tlType;
    InfoString name;
    InfoString pathName;
    InfoString displayName;
    InfoString id;
    SPECIAL_INFO* pSpecialInfo = nullptr;
};

/// The pointers are borrowed while a list update runs, and null otherwise.
struct IF_INFO {
    InfoString id;
    InfoString displayName;
    InfoString tlType;
    SPECIAL_INFO* pSpecialInfo = nullptr;
    COMMON_INTERFACE_INFO* pCommonInfo = nullptr;
};

/// The pointers are borrowed while a list update runs, and null otherwise.
struct DEV_INFO {
    InfoString id;
    InfoString vendor;
    InfoString model;
    InfoString tlType;
    InfoString displayName;
    InfoInt32 accessStatus;
    COMMON_DEVICE_INFO* pCommonInfo = nullptr;
    SPECIAL_INFO* pSpecialInfo = nullptr;
};

struct DS_INFO {
    InfoString id;
    InfoSize payloadSize;
    InfoSize maxChunks;
    InfoSize minAnnounce;
    InfoSize alignment;
};

struct PORT_INFO {
    InfoString id;
    InfoString portName;
};

/// When a value of a buffer is asked for.
enum class InfoUse : uint8_t {
    /// When somebody needs it.
    Demand,
    /// Once, because it can't change while the buffer is announced.
    Announcement,
    /// With each frame, because the records of the application have it.
    Frame
};

/// One buffer with the frame in it, as the producer describes it. A fetch of a frame
/// leaves blank what no record of an application has: paddings, image offset, payload
/// type, namespace of the pixel format and stream ID.
struct BUFFER_INFO {
    InfoSize size;
    InfoSize sizeFilled;
    InfoSize width;
    InfoSize height;
    InfoSize xOffset;
    InfoSize yOffset;
    InfoSize xPadding;
    InfoSize yPadding;
    InfoSize imageOffset;
    InfoSize payloadType;
    InfoSize expectedPayloadSize;
    InfoUint64 timestamp;
    InfoUint64 frameId;
    InfoUint64 pixelFormat;
    InfoUint64 pixelFormatNamespace;
    InfoBool incomplete;
    InfoPointer base;
    InfoPointer userPointer;
    InfoString tlType;
    InfoString streamId;
};

static_assert(sizeof(size_t) == sizeof(uint64_t));

}  // namespace OVTLClass
