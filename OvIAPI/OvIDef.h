#ifndef OVI_DEF_H
#define OVI_DEF_H

/**
 * @file
 * Records, status values and identifiers of the camera interface.
 *
 * Compiles as C11 and as C++17. All records have fixed offsets and sizes,
 * which the assertions at the end of this file hold. Reserved fields are zero
 * in records that the library fills, unless a record says otherwise.
 */

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "OvIFeatureTable.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Result of every call: 0 for success, a negative value for a failure.
 *  OVGetLastError() returns the text of the calling thread's last failure. A negative
 *  value that isn't listed here is a code of the GenTL producer. */
typedef int32_t OV_STATUS;

enum {
    OV_STATUS_SUCCESS = 0,            /**< done */
    OV_STATUS_ERROR = -1,             /**< any other failure */
    OV_STATUS_NOT_FOUND_TL = -2,      /**< there is no producer in the folder of the library */
    OV_STATUS_NOT_FOUND_DEVICE = -3,  /**< no camera has the key */
    OV_STATUS_OFFLINE = -4,           /**< the camera is gone */
    OV_STATUS_INVALID_PARAMETER = -5, /**< an argument is null or invalid */
    OV_STATUS_INVALID_HANDLE = -6,    /**< not the handle of an open camera */
    OV_STATUS_INVALID_CALL = -7,      /**< not allowed in this state or from this thread */
    OV_STATUS_INVALID_ACCESS = -8,    /**< not readable, not writable, or in use elsewhere */
    OV_STATUS_NEED_MORE_BUFFER = -9,  /**< the caller's memory is too small */
    OV_STATUS_ERROR_TYPE = -10,       /**< the identifier has another type */
    OV_STATUS_OUT_OF_RANGE = -11,     /**< the value is outside its limits */
    OV_STATUS_NOT_IMPLEMENTED = -12,  /**< the camera or the library doesn't have it */
    OV_STATUS_NOT_INIT_API = -13,     /**< before OVInitLib() */
    OV_STATUS_TIMEOUT = -14           /**< nothing arrived in time */
};

/** An open camera. OVOpenDevice() and OVOpenDeviceByIndex() return it, and it is valid
 *  until OVCloseDevice() or OVCloseLib(). Using it afterwards is an error of the
 *  application that the library can't always detect. */
typedef void* OV_DEV_HANDLE;

/** A registered event callback: valid until it is removed or the camera is closed. */
typedef void* OV_EVENT_CALLBACK_HANDLE;

/** A registered feature callback: valid until it is removed or the camera is closed. */
typedef void* OV_FEATURE_CALLBACK_HANDLE;

/** How OV_OPEN_PARAM names a camera. */
typedef int32_t OV_OPEN_MODE;
enum {
    OV_OPEN_SN = 0,    /**< by serial number */
    OV_OPEN_IP = 1,    /**< by IP address, dotted */
    OV_OPEN_MAC = 2,   /**< by MAC address, "AA-BB-CC-DD-EE-FF" in capitals */
    OV_OPEN_INDEX = 3, /**< by position in the device list, decimal, from 1 */
    OV_OPEN_USERID = 4 /**< by user ID */
};

/** What the application may do with a camera that it opens. */
typedef int32_t OV_ACCESS_MODE;
enum {
    OV_ACCESS_READONLY = 2, /**< read features */
    OV_ACCESS_CONTROL = 3,  /**< full control, others may still read */
    OV_ACCESS_EXCLUSIVE = 4 /**< full control, nobody else can open the camera */
};

/** Whether a listed camera can be opened, according to its producer. */
typedef int32_t OV_ACCESS_STATUS;
enum {
    OV_ACCESS_STATUS_UNKNOWN = 0,   /**< the producer doesn't know */
    OV_ACCESS_STATUS_READWRITE = 1, /**< it can be opened with any access */
    OV_ACCESS_STATUS_READONLY = 2,  /**< it can be opened for reading only */
    OV_ACCESS_STATUS_NOACCESS = 3   /**< it can't be opened, for instance because it is open */
};

/** The kind of a camera. */
typedef int32_t OV_DEVICE_CLASS;
enum {
    OV_DEVICE_CLASS_UNKNOWN = 0, /**< not set */
    OV_DEVICE_CLASS_CUSTOM = 1,  /**< another transport */
    OV_DEVICE_CLASS_GEV = 2,     /**< GigE Vision */
    OV_DEVICE_CLASS_U3V = 3,     /**< USB3 Vision */
    OV_DEVICE_CLASS_SMART = 4    /**< smart camera */
};

/** IP configuration of a GigE Vision camera: a set of the bits 1 persistent
 *  address, 2 DHCP, 4 link-local address. The last is always on. */
typedef int32_t OV_IP_CONFIGURE_MODE;
enum {
    OV_IP_CONFIGURE_LLA = 4,                /**< link-local address */
    OV_IP_CONFIGURE_PERSISTENT_LLA = 5,     /**< persistent address, else link-local address */
    OV_IP_CONFIGURE_DHCP_LLA = 6,           /**< DHCP, else link-local address */
    OV_IP_CONFIGURE_PERSISTENT_DHCP_LLA = 7 /**< persistent, else DHCP, else link-local */
};

/** How OVGigEResetDevice() resets; the producer defines the modes. */
typedef int32_t OV_RESET_MODE;
enum {
    OV_RESET_MODE_1 = 1, /**< the producer's first mode */
    OV_RESET_MODE_2 = 2  /**< the producer's second mode */
};

/** Identifies a feature: type in bits 31 to 28, module in bits 27 to 24, number in bits
 *  23 to 0. The enumerators OV_FEATURE_... are all identifiers. */
typedef uint32_t OV_FEATURE_ID;

/** Type of a feature, the top four bits of its identifier. The highest of them is 0
 *  in every type, and so isn't in the mask; an identifier with that bit has no type. */
typedef uint32_t OV_FEATURE_TYPE;
enum {
    OV_FEATURE_TYPE_INT = 0x10000000,     /**< OVGetInt(), OVSetInt(), OVGetIntRange() */
    OV_FEATURE_TYPE_FLOAT = 0x20000000,   /**< OVGetFloat(), OVSetFloat(), OVGetFloatRange() */
    OV_FEATURE_TYPE_ENUM = 0x30000000,    /**< OVGetEnum(), OVSetEnum(), OVGetEnumDescription() */
    OV_FEATURE_TYPE_BOOL = 0x40000000,    /**< OVGetBool(), OVSetBool() */
    OV_FEATURE_TYPE_STRING = 0x50000000,  /**< OVGetString(), OVSetString() */
    OV_FEATURE_TYPE_BUFFER = 0x60000000,  /**< OVGetBuffer(), OVSetBuffer() */
    OV_FEATURE_TYPE_COMMAND = 0x70000000, /**< OVSendCommand() */
    OV_FEATURE_TYPE_MASK = 0x70000000     /**< the bits of the type */
};

/** Module that has a feature, bits 27 to 24 of its identifier. */
typedef uint32_t OV_FEATURE_LEVEL;
enum {
    OV_FEATURE_LEVEL_REMOTE_DEVICE = 0x00000000, /**< the camera itself */
    OV_FEATURE_LEVEL_TL = 0x01000000,            /**< the producer's system module */
    OV_FEATURE_LEVEL_INTERFACE = 0x02000000,     /**< the adapter */
    OV_FEATURE_LEVEL_LOCAL_DEVICE = 0x03000000,  /**< the host's view of the camera */
    OV_FEATURE_LEVEL_STREAM = 0x04000000,        /**< the data stream */
    OV_FEATURE_LEVEL_MASK = 0x0F000000           /**< the bits of the module */
};

/** One enumerator for each feature: OV_FEATURE_ and its GenICam name. */
enum {
#define OV_FEATURE_ENUMERATOR(name, type, level, number) \
    OV_FEATURE_##name = (int)OV_FEATURE_TYPE_##type | (int)OV_FEATURE_LEVEL_##level | (number),
    OV_FEATURE_TABLE(OV_FEATURE_ENUMERATOR)
#undef OV_FEATURE_ENUMERATOR
};

/** One camera of the device list. Texts are zero-terminated and cut to fit. */
typedef struct OV_DEVICE_BASE_INFO {
    char szVendorName[32];         /**< at most 31 characters */
    char szModelName[32];          /**< at most 31 characters */
    char szSN[32];                 /**< serial number, at most 31 characters */
    char szDisplayName[132];       /**< at most 128 characters */
    char szDeviceID[68];           /**< the producer's ID, at most 64 characters */
    char szUserID[68];             /**< the name that a user gave it, at most 64 characters */
    OV_ACCESS_STATUS accessStatus; /**< at the time of the last update */
    OV_DEVICE_CLASS deviceClass;   /**< the kind of its transport */
    char reserved[300];
} OV_DEVICE_BASE_INFO;

/** Addresses of a GigE Vision camera and of the adapter that found it. */
typedef struct OV_DEVICE_IP_INFO {
    char szDeviceID[68];        /**< at most 64 characters */
    char szMAC[32];             /**< "AA-BB-CC-DD-EE-FF" */
    char szIP[32];              /**< the camera's present address, dotted */
    char szSubnetMask[32];      /**< dotted */
    char szGateway[32];         /**< default gateway, dotted */
    char szNICMAC[32];          /**< of the adapter, like szMAC */
    char szNICIP[32];           /**< of the adapter, dotted */
    char szNICSubnetMask[32];   /**< of the adapter, dotted */
    char szNICGateway[32];      /**< of the adapter, dotted */
    char szNICDescription[132]; /**< at most 128 characters */
    char reserved[512];
} OV_DEVICE_IP_INFO;

/** Which camera OVOpenDevice() opens, and how. */
typedef struct OV_OPEN_PARAM {
    const char* pszContent;    /**< the key, of the kind that openMode names; not empty */
    OV_OPEN_MODE openMode;     /**< kind of the key */
    OV_ACCESS_MODE accessMode; /**< access that is wanted */
} OV_OPEN_PARAM;

/** Limits of an integer feature. Reserved bytes aren't changed. */
typedef struct OV_INT_RANGE {
    int64_t nMin; /**< smallest value */
    int64_t nMax; /**< largest value */
    int64_t nInc; /**< a legal value is nMin plus a multiple of it */
    int32_t reserved[8];
} OV_INT_RANGE;

/** Limits of a float feature. Reserved bytes aren't changed. */
typedef struct OV_FLOAT_RANGE {
    double dMin;      /**< smallest value */
    double dMax;      /**< largest value */
    double dInc;      /**< 0 unless bIncIsValid */
    char szUnit[8];   /**< a unit of 8 characters has no terminating zero */
    bool bIncIsValid; /**< whether the feature has an increment */
    char reserved[31];
} OV_FLOAT_RANGE;

/** One entry of an enumeration. Reserved bytes aren't changed. */
typedef struct OV_ENUM_DESCRIPTION {
    int64_t nValue;      /**< for OVSetEnum() */
    char szSymbolic[64]; /**< a name of 64 characters has no terminating zero */
    char reserved[32];
} OV_ENUM_DESCRIPTION;

/** Status of a frame. */
typedef int32_t OV_FRAME_STATUS;
enum {
    OV_FRAME_STATUS_SUCCESS = 0,    /**< complete */
    OV_FRAME_STATUS_INCOMPLETE = -1 /**< data is missing, or the producer doesn't know */
};

/** A frame copied by OVGetImage(). All bits of a value are set if the producer doesn't
 *  know it. Reserved fields aren't changed. */
typedef struct OV_FRAME_DATA {
    OV_FRAME_STATUS nStatus; /**< whether the frame is complete */
    void* pImgBuf;           /**< the caller's memory, at least "PayloadSize" bytes */
    int32_t nWidth;          /**< in pixels */
    int32_t nHeight;         /**< in pixels */
    int32_t nPixelFormat;    /**< code of the pixel format naming convention */
    int32_t nImgSize;        /**< bytes that the camera sent */
    uint64_t nFrameID;       /**< number of the frame, from the camera or the producer */
    uint64_t nTimestamp;     /**< ticks of the camera's clock */
    int32_t nOffsetX;        /**< of the image on the sensor, in pixels */
    int32_t nOffsetY;        /**< of the image on the sensor, in pixels */
    int32_t reserved[2];
} OV_FRAME_DATA;

/** A frame on loan from OVDQBuf() or OVDQAllBufs(). Owned by the library; valid
 *  until OVQBuf(), OVQAllBufs(), OVStreamOff() or the closing of the camera. All
 *  bits of a value are set if the producer doesn't know it. */
typedef struct OV_FRAME_BUFFER {
    OV_FRAME_STATUS nStatus; /**< whether the frame is complete */
    void* pImgBuf;           /**< the frame; null if the producer doesn't know its address */
    int32_t nWidth;          /**< in pixels */
    int32_t nHeight;         /**< in pixels */
    int32_t nPixelFormat;    /**< code of the pixel format naming convention */
    int32_t nImgSize;        /**< bytes that the camera sent */
    uint64_t nFrameID;       /**< number of the frame, from the camera or the producer */
    uint64_t nTimestamp;     /**< ticks of the camera's clock */
    uint64_t nBufID;         /**< for the library; don't change it */
    int32_t nOffsetX;        /**< of the image on the sensor, in pixels */
    int32_t nOffsetY;        /**< of the image on the sensor, in pixels */
    char reserved[64];
} OV_FRAME_BUFFER;

/** A frame that is passed to a capture callback, valid until the callback returns. The
 *  size comes before the width here, unlike in the other two records. */
typedef struct OV_FRAME_CALLBACK_PARAM {
    void* pUserParam;       /**< from the registration */
    OV_FRAME_STATUS status; /**< whether the frame is complete */
    const void* pImgBuf;    /**< the frame */
    int32_t nImgSize;       /**< bytes that the camera sent */
    int32_t nWidth;         /**< in pixels */
    int32_t nHeight;        /**< in pixels */
    int32_t nPixelFormat;   /**< code of the pixel format naming convention */
    uint64_t nFrameID;      /**< number of the frame, from the camera or the producer */
    uint64_t nTimestamp;    /**< ticks of the camera's clock */
    int32_t nOffsetX;       /**< of the image on the sensor, in pixels */
    int32_t nOffsetY;       /**< of the image on the sensor, in pixels */
} OV_FRAME_CALLBACK_PARAM;

/** Receives each frame, on the capture thread of the stream. The library returns the
 *  buffer to the producer after the function has returned. */
typedef void (*OVCaptureCallback)(OV_FRAME_CALLBACK_PARAM* pFrameData);

/** Is called once when a camera is gone, on a thread of the library. */
typedef void (*OVDeviceOfflineCallback)(void* pUserParam);

/** Is called when a feature may have changed, with the lock of the camera's features
 *  held. */
typedef void (*OVFeatureCallback)(OV_FEATURE_ID featureID, void* pUserParam);

#ifdef __cplusplus
#define OV_CHECK_LAYOUT(condition) static_assert(condition, #condition)
#else
#define OV_CHECK_LAYOUT(condition) _Static_assert(condition, #condition)
#endif

OV_CHECK_LAYOUT(sizeof(OV_DEVICE_BASE_INFO) == 672);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_BASE_INFO, szModelName) == 32);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_BASE_INFO, szSN) == 64);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_BASE_INFO, szDisplayName) == 96);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_BASE_INFO, szDeviceID) == 228);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_BASE_INFO, szUserID) == 296);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_BASE_INFO, accessStatus) == 364);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_BASE_INFO, deviceClass) == 368);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_BASE_INFO, reserved) == 372);

OV_CHECK_LAYOUT(sizeof(OV_DEVICE_IP_INFO) == 968);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, szMAC) == 68);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, szIP) == 100);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, szSubnetMask) == 132);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, szGateway) == 164);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, szNICMAC) == 196);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, szNICIP) == 228);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, szNICSubnetMask) == 260);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, szNICGateway) == 292);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, szNICDescription) == 324);
OV_CHECK_LAYOUT(offsetof(OV_DEVICE_IP_INFO, reserved) == 456);

OV_CHECK_LAYOUT(offsetof(OV_OPEN_PARAM, openMode) == 8);
OV_CHECK_LAYOUT(offsetof(OV_OPEN_PARAM, accessMode) == 12);

OV_CHECK_LAYOUT(offsetof(OV_FLOAT_RANGE, szUnit) == 24);
OV_CHECK_LAYOUT(offsetof(OV_FLOAT_RANGE, bIncIsValid) == 32);

OV_CHECK_LAYOUT(sizeof(OV_ENUM_DESCRIPTION) == 104);
OV_CHECK_LAYOUT(offsetof(OV_ENUM_DESCRIPTION, szSymbolic) == 8);
OV_CHECK_LAYOUT(offsetof(OV_ENUM_DESCRIPTION, reserved) == 72);

OV_CHECK_LAYOUT(offsetof(OV_FRAME_DATA, pImgBuf) == 8);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_DATA, nWidth) == 16);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_DATA, nHeight) == 20);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_DATA, nPixelFormat) == 24);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_DATA, nImgSize) == 28);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_DATA, nFrameID) == 32);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_DATA, nTimestamp) == 40);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_DATA, nOffsetX) == 48);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_DATA, nOffsetY) == 52);

OV_CHECK_LAYOUT(sizeof(OV_FRAME_BUFFER) == 128);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, pImgBuf) == 8);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, nWidth) == 16);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, nHeight) == 20);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, nPixelFormat) == 24);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, nImgSize) == 28);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, nFrameID) == 32);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, nTimestamp) == 40);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, nBufID) == 48);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, nOffsetX) == 56);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, nOffsetY) == 60);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_BUFFER, reserved) == 64);

OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, status) == 8);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, pImgBuf) == 16);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, nImgSize) == 24);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, nWidth) == 28);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, nHeight) == 32);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, nPixelFormat) == 36);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, nFrameID) == 40);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, nTimestamp) == 48);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, nOffsetX) == 56);
OV_CHECK_LAYOUT(offsetof(OV_FRAME_CALLBACK_PARAM, nOffsetY) == 60);

#undef OV_CHECK_LAYOUT

#ifdef __cplusplus
}
#endif

#endif
