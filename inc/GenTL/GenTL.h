/// @file
/// The GenTL interface between a consumer and a producer, as this system
/// declares it: handles, codes, commands, records and the signatures of the
/// entry points.
///
/// A producer is a shared library with the extension `.cti` that exports the
/// functions below with C linkage. Nothing here is linked: a consumer resolves
/// the names at run time, a producer defines them.
///
/// - Handles are untyped pointers that the producer hands out. They belong to
///   the producer; closing a module voids its handle and those of its children.
///   The handle of any module is also the handle of its port and of its events.
/// - Every function returns a `GC_ERROR`; 0 is success. The text of the calling
///   thread's last failure comes from `GCGetLastError`.
/// - A query with a null buffer answers the needed size in `*piSize`; with a
///   buffer it fills it and answers the size used. `piType` is output only.
///   Sizes of texts count the terminating NUL.
/// - Commands and other enumerated arguments travel as `int32_t`, so that a
///   value that one side doesn't know stays well defined.
/// - Time-outs are milliseconds.
/// - Every function may be called from any thread.
#ifndef OV_GENTL_GENTL_H
#define OV_GENTL_GENTL_H

#include <cstddef>
#include <cstdint>

namespace GenTL {

using GC_ERROR = std::int32_t;
using bool8_t = std::uint8_t;

using TL_HANDLE = void*;
using IF_HANDLE = void*;
using DEV_HANDLE = void*;
using DS_HANDLE = void*;
using PORT_HANDLE = void*;
using BUFFER_HANDLE = void*;
using EVENTSRC_HANDLE = void*;
using EVENT_HANDLE = void*;

constexpr void* GENTL_INVALID_HANDLE = nullptr;
/// No limit, for time-outs and for frame counts.
constexpr std::uint64_t GENTL_INFINITE = 0xFFFFFFFFFFFFFFFFULL;

/// Results. Private codes are at or below `GC_ERR_CUSTOM_ID`.
enum : GC_ERROR {
    GC_ERR_SUCCESS = 0,
    GC_ERR_ERROR = -1001,
    GC_ERR_NOT_INITIALIZED = -1002,
    GC_ERR_NOT_IMPLEMENTED = -1003,
    GC_ERR_RESOURCE_IN_USE = -1004,
    GC_ERR_ACCESS_DENIED = -1005,
    GC_ERR_INVALID_HANDLE = -1006,
    GC_ERR_INVALID_ID = -1007,
    GC_ERR_NO_DATA = -1008,
    GC_ERR_INVALID_PARAMETER = -1009,
    GC_ERR_IO = -1010,
    GC_ERR_TIMEOUT = -1011,
    GC_ERR_ABORT = -1012,
    GC_ERR_INVALID_BUFFER = -1013,
    GC_ERR_NOT_AVAILABLE = -1014,
    GC_ERR_INVALID_ADDRESS = -1015,
    GC_ERR_BUFFER_TOO_SMALL = -1016,
    GC_ERR_INVALID_INDEX = -1017,
    GC_ERR_PARSING_CHUNK_DATA = -1018,
    GC_ERR_INVALID_VALUE = -1019,
    GC_ERR_RESOURCE_EXHAUSTED = -1020,
    GC_ERR_OUT_OF_MEMORY = -1021,
    GC_ERR_BUSY = -1022,
    GC_ERR_AMBIGUOUS = -1023,
    /// First private code; between this library and its producers it means
    /// that the device is lost, and nothing else.
    GC_ERR_CUSTOM_ID = -10000
};

/// What a query answered.
using INFO_DATATYPE = std::int32_t;
enum : INFO_DATATYPE {
    INFO_DATATYPE_UNKNOWN = 0,
    INFO_DATATYPE_STRING = 1,
    INFO_DATATYPE_STRINGLIST = 2,
    INFO_DATATYPE_INT16 = 3,
    INFO_DATATYPE_UINT16 = 4,
    INFO_DATATYPE_INT32 = 5,
    INFO_DATATYPE_UINT32 = 6,
    INFO_DATATYPE_INT64 = 7,
    INFO_DATATYPE_UINT64 = 8,
    INFO_DATATYPE_FLOAT64 = 9,
    INFO_DATATYPE_PTR = 10,
    INFO_DATATYPE_BOOL8 = 11,
    INFO_DATATYPE_SIZET = 12,
    INFO_DATATYPE_BUFFER = 13,
    INFO_DATATYPE_PTRDIFF = 14,
    INFO_DATATYPE_CUSTOM_ID = 1000
};

/// Facts on a producer (`GCGetInfo`, `TLGetInfo`).
using TL_INFO_CMD = std::int32_t;
enum : TL_INFO_CMD {
    TL_INFO_ID = 0,
    TL_INFO_VENDOR = 1,
    TL_INFO_MODEL = 2,
    TL_INFO_VERSION = 3,
    TL_INFO_TLTYPE = 4,
    TL_INFO_NAME = 5,
    TL_INFO_PATHNAME = 6,
    TL_INFO_DISPLAYNAME = 7,
    TL_INFO_CHAR_ENCODING = 8,
    TL_INFO_GENTL_VER_MAJOR = 9,
    TL_INFO_GENTL_VER_MINOR = 10,
    TL_INFO_CUSTOM_ID = 1000
};

using TL_CHAR_ENCODING = std::int32_t;
enum : TL_CHAR_ENCODING { TL_CHAR_ENCODING_ASCII = 0, TL_CHAR_ENCODING_UTF8 = 1 };

/// Facts on an interface, all texts.
using INTERFACE_INFO_CMD = std::int32_t;
enum : INTERFACE_INFO_CMD {
    INTERFACE_INFO_ID = 0,
    INTERFACE_INFO_DISPLAYNAME = 1,
    INTERFACE_INFO_TLTYPE = 2,
    INTERFACE_INFO_CUSTOM_ID = 1000
};

/// Facts on a device.
using DEVICE_INFO_CMD = std::int32_t;
enum : DEVICE_INFO_CMD {
    DEVICE_INFO_ID = 0,
    DEVICE_INFO_VENDOR = 1,
    DEVICE_INFO_MODEL = 2,
    DEVICE_INFO_TLTYPE = 3,
    DEVICE_INFO_DISPLAYNAME = 4,
    DEVICE_INFO_ACCESS_STATUS = 5,
    DEVICE_INFO_USER_DEFINED_NAME = 6,
    DEVICE_INFO_SERIAL_NUMBER = 7,
    DEVICE_INFO_VERSION = 8,
    DEVICE_INFO_TIMESTAMP_FREQUENCY = 9,
    DEVICE_INFO_CUSTOM_ID = 1000
};

using DEVICE_ACCESS_FLAGS = std::int32_t;
enum : DEVICE_ACCESS_FLAGS {
    DEVICE_ACCESS_UNKNOWN = 0,
    DEVICE_ACCESS_NONE = 1,
    DEVICE_ACCESS_READONLY = 2,
    DEVICE_ACCESS_CONTROL = 3,
    DEVICE_ACCESS_EXCLUSIVE = 4,
    DEVICE_ACCESS_CUSTOM_ID = 1000
};

using DEVICE_ACCESS_STATUS = std::int32_t;
enum : DEVICE_ACCESS_STATUS {
    DEVICE_ACCESS_STATUS_UNKNOWN = 0,
    DEVICE_ACCESS_STATUS_READWRITE = 1,
    DEVICE_ACCESS_STATUS_READONLY = 2,
    DEVICE_ACCESS_STATUS_NOACCESS = 3,
    DEVICE_ACCESS_STATUS_BUSY = 4,
    DEVICE_ACCESS_STATUS_OPEN_READWRITE = 5,
    DEVICE_ACCESS_STATUS_OPEN_READONLY = 6,
    DEVICE_ACCESS_STATUS_CUSTOM_ID = 1000
};

/// Facts on a data stream.
using STREAM_INFO_CMD = std::int32_t;
enum : STREAM_INFO_CMD {
    STREAM_INFO_ID = 0,
    STREAM_INFO_NUM_DELIVERED = 1,
    STREAM_INFO_NUM_UNDERRUN = 2,
    STREAM_INFO_NUM_ANNOUNCED = 3,
    STREAM_INFO_NUM_QUEUED = 4,
    STREAM_INFO_NUM_AWAIT_DELIVERY = 5,
    STREAM_INFO_NUM_STARTED = 6,
    STREAM_INFO_PAYLOAD_SIZE = 7,
    STREAM_INFO_IS_GRABBING = 8,
    STREAM_INFO_DEFINES_PAYLOADSIZE = 9,
    STREAM_INFO_TLTYPE = 10,
    STREAM_INFO_NUM_CHUNKS_MAX = 11,
    STREAM_INFO_BUF_ANNOUNCE_MIN = 12,
    STREAM_INFO_BUF_ALIGNMENT = 13,
    STREAM_INFO_CUSTOM_ID = 1000
};

/// Facts on a buffer and on the frame in it.
using BUFFER_INFO_CMD = std::int32_t;
enum : BUFFER_INFO_CMD {
    BUFFER_INFO_BASE = 0,
    BUFFER_INFO_SIZE = 1,
    BUFFER_INFO_USER_PTR = 2,
    BUFFER_INFO_TIMESTAMP = 3,
    BUFFER_INFO_NEW_DATA = 4,
    BUFFER_INFO_IS_QUEUED = 5,
    BUFFER_INFO_IS_ACQUIRING = 6,
    BUFFER_INFO_IS_INCOMPLETE = 7,
    BUFFER_INFO_TLTYPE = 8,
    BUFFER_INFO_SIZE_FILLED = 9,
    BUFFER_INFO_WIDTH = 10,
    BUFFER_INFO_HEIGHT = 11,
    BUFFER_INFO_XOFFSET = 12,
    BUFFER_INFO_YOFFSET = 13,
    BUFFER_INFO_XPADDING = 14,
    BUFFER_INFO_YPADDING = 15,
    BUFFER_INFO_FRAMEID = 16,
    BUFFER_INFO_IMAGEPRESENT = 17,
    BUFFER_INFO_IMAGEOFFSET = 18,
    BUFFER_INFO_PAYLOADTYPE = 19,
    BUFFER_INFO_PIXELFORMAT = 20,
    BUFFER_INFO_PIXELFORMAT_NAMESPACE = 21,
    BUFFER_INFO_DELIVERED_IMAGEHEIGHT = 22,
    BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE = 23,
    BUFFER_INFO_CHUNKLAYOUTID = 24,
    BUFFER_INFO_FILENAME = 25,
    BUFFER_INFO_PIXEL_ENDIANNESS = 26,
    BUFFER_INFO_DATA_SIZE = 27,
    BUFFER_INFO_TIMESTAMP_NS = 28,
    BUFFER_INFO_DATA_LARGER_THAN_BUFFER = 29,
    BUFFER_INFO_CONTAINS_CHUNKDATA = 30,
    BUFFER_INFO_CUSTOM_ID = 1000
};

using PAYLOADTYPE_INFO_ID = std::size_t;
enum : PAYLOADTYPE_INFO_ID {
    PAYLOAD_TYPE_UNKNOWN = 0,
    PAYLOAD_TYPE_IMAGE = 1,
    PAYLOAD_TYPE_RAW_DATA = 2,
    PAYLOAD_TYPE_FILE = 3,
    PAYLOAD_TYPE_CHUNK_DATA = 4,
    PAYLOAD_TYPE_JPEG = 5,
    PAYLOAD_TYPE_JPEG2000 = 6,
    PAYLOAD_TYPE_H264 = 7,
    PAYLOAD_TYPE_CHUNK_ONLY = 8,
    PAYLOAD_TYPE_DEVICE_SPECIFIC = 9,
    PAYLOAD_TYPE_MULTI_PART = 10,
    PAYLOAD_TYPE_CUSTOM_ID = 1000
};

using PIXELFORMAT_NAMESPACE_ID = std::uint64_t;
enum : PIXELFORMAT_NAMESPACE_ID {
    PIXELFORMAT_NAMESPACE_UNKNOWN = 0,
    PIXELFORMAT_NAMESPACE_GEV = 1,
    PIXELFORMAT_NAMESPACE_IIDC = 2,
    PIXELFORMAT_NAMESPACE_PFNC_16BIT = 3,
    PIXELFORMAT_NAMESPACE_PFNC_32BIT = 4,
    PIXELFORMAT_NAMESPACE_CUSTOM_ID = 1000
};

using PIXELENDIANNESS_ID = std::int32_t;
enum : PIXELENDIANNESS_ID {
    PIXELENDIANNESS_UNKNOWN = 0,
    PIXELENDIANNESS_LITTLE = 1,
    PIXELENDIANNESS_BIG = 2
};

/// Facts on a port.
using PORT_INFO_CMD = std::int32_t;
enum : PORT_INFO_CMD {
    PORT_INFO_ID = 0,
    PORT_INFO_VENDOR = 1,
    PORT_INFO_MODEL = 2,
    PORT_INFO_TLTYPE = 3,
    PORT_INFO_MODULE = 4,
    PORT_INFO_LITTLE_ENDIAN = 5,
    PORT_INFO_BIG_ENDIAN = 6,
    PORT_INFO_ACCESS_READ = 7,
    PORT_INFO_ACCESS_WRITE = 8,
    PORT_INFO_ACCESS_NA = 9,
    PORT_INFO_ACCESS_NI = 10,
    PORT_INFO_VERSION = 11,
    PORT_INFO_PORTNAME = 12,
    PORT_INFO_CUSTOM_ID = 1000
};

/// Facts on one of a port's descriptions.
using URL_INFO_CMD = std::int32_t;
enum : URL_INFO_CMD {
    URL_INFO_URL = 0,
    URL_INFO_SCHEMA_VER_MAJOR = 1,
    URL_INFO_SCHEMA_VER_MINOR = 2,
    URL_INFO_FILE_VER_MAJOR = 3,
    URL_INFO_FILE_VER_MINOR = 4,
    URL_INFO_FILE_VER_SUBMINOR = 5,
    URL_INFO_FILE_SHA1_HASH = 6,
    URL_INFO_FILE_REGISTER_ADDRESS = 7,
    URL_INFO_FILE_SIZE = 8,
    URL_INFO_SCHEME = 9,
    URL_INFO_FILENAME = 10,
    URL_INFO_CUSTOM_ID = 1000
};

using URL_SCHEME_ID = std::int32_t;
enum : URL_SCHEME_ID { URL_SCHEME_LOCAL = 0, URL_SCHEME_HTTP = 1, URL_SCHEME_FILE = 2 };

/// Events of a module.
using EVENT_TYPE = std::int32_t;
enum : EVENT_TYPE {
    EVENT_ERROR = 0,
    EVENT_NEW_BUFFER = 1,
    EVENT_FEATURE_INVALIDATE = 2,
    EVENT_FEATURE_CHANGE = 3,
    EVENT_REMOTE_DEVICE = 4,
    EVENT_MODULE = 5,
    EVENT_CUSTOM_ID = 1000,
    /// Private to this system, on a device: the device went offline; no data.
    EVENT_DEVICE_OFFLINE = 1000
};

using EVENT_INFO_CMD = std::int32_t;
enum : EVENT_INFO_CMD {
    EVENT_EVENT_TYPE = 0,
    EVENT_NUM_IN_QUEUE = 1,
    EVENT_NUM_FIRED = 2,
    EVENT_SIZE_MAX = 3,
    EVENT_INFO_DATA_SIZE_MAX = 4,
    EVENT_INFO_CUSTOM_ID = 1000
};

using EVENT_DATA_INFO_CMD = std::int32_t;
enum : EVENT_DATA_INFO_CMD {
    EVENT_DATA_ID = 0,
    EVENT_DATA_VALUE = 1,
    EVENT_DATA_NUMID = 2,
    EVENT_DATA_CUSTOM_ID = 1000
};

using ACQ_START_FLAGS = std::int32_t;
enum : ACQ_START_FLAGS { ACQ_START_FLAGS_DEFAULT = 0, ACQ_START_FLAGS_CUSTOM_ID = 1000 };

using ACQ_STOP_FLAGS = std::int32_t;
enum : ACQ_STOP_FLAGS {
    ACQ_STOP_FLAGS_DEFAULT = 0,
    ACQ_STOP_FLAGS_KILL = 1,
    ACQ_STOP_FLAGS_CUSTOM_ID = 1000
};

using ACQ_QUEUE_TYPE = std::int32_t;
enum : ACQ_QUEUE_TYPE {
    ACQ_QUEUE_INPUT_TO_OUTPUT = 0,
    ACQ_QUEUE_OUTPUT_DISCARD = 1,
    ACQ_QUEUE_ALL_TO_INPUT = 2,
    ACQ_QUEUE_UNQUEUED_TO_INPUT = 3,
    ACQ_QUEUE_ALL_DISCARD = 4,
    ACQ_QUEUE_CUSTOM_ID = 1000
};

/// Texts that name a transport layer's technology.
constexpr const char* TLTYPE_GEV = "GEV";
constexpr const char* TLTYPE_U3V = "U3V";
constexpr const char* TLTYPE_CL = "CL";
constexpr const char* TLTYPE_CLHS = "CLHS";
constexpr const char* TLTYPE_CXP = "CXP";
constexpr const char* TLTYPE_MIXED = "Mixed";
constexpr const char* TLTYPE_CUSTOM = "Custom";

#pragma pack(push, 1)

/// One access of a stacked port call.
struct S_PORT_REGISTER_STACK_ENTRY {
    std::uint64_t Address;
    void* pBuffer;
    std::size_t Size;
};
using PORT_REGISTER_STACK_ENTRY = S_PORT_REGISTER_STACK_ENTRY;

/// Entry of the new-buffer event.
struct S_EVENT_NEW_BUFFER {
    BUFFER_HANDLE BufferHandle;
    void* pUserPointer;
};
using EVENT_NEW_BUFFER_DATA = S_EVENT_NEW_BUFFER;

/// Where a chunk lies in its buffer: the offset counts from the buffer's start,
/// the length is that of the data without the chunk's own trailer.
struct S_SINGLE_CHUNK_DATA {
    std::uint64_t ChunkID;
    std::ptrdiff_t ChunkOffset;
    std::size_t ChunkLength;
};
using SINGLE_CHUNK_DATA = S_SINGLE_CHUNK_DATA;

/// One question of a stacked buffer query, with its answer.
struct S_DS_BUFFER_INFO_STACKED {
    BUFFER_INFO_CMD iInfoCmd;
    INFO_DATATYPE iType;
    void* pBuffer;
    std::size_t iSize;
    GC_ERROR iResult;
};
using DS_BUFFER_INFO_STACKED = S_DS_BUFFER_INFO_STACKED;

#pragma pack(pop)

static_assert(sizeof(S_DS_BUFFER_INFO_STACKED) == 28);
static_assert(sizeof(S_PORT_REGISTER_STACK_ENTRY) == 24);
static_assert(sizeof(S_EVENT_NEW_BUFFER) == 16);
static_assert(sizeof(S_SINGLE_CHUNK_DATA) == 24);

}  // namespace GenTL

#define OV_GENTL_INFO_TAIL GenTL::INFO_DATATYPE *piType, void *pBuffer, std::size_t *piSize

/// The entry points of the standard, as `X(name, (parameters))`, in the order
/// in which a consumer resolves them: those of version 1.0 first, later
/// versions after them.
// clang-format off
#define OV_GENTL_STANDARD_FUNCTIONS(X)                                                             \
    X(GCGetInfo, (GenTL::TL_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL))                                \
    X(GCGetLastError, (GenTL::GC_ERROR * piErrorCode, char* sErrorText, std::size_t* piSize))      \
    X(GCInitLib, (void))                                                                           \
    X(GCCloseLib, (void))                                                                          \
    X(GCReadPort, (GenTL::PORT_HANDLE hPort, std::uint64_t iAddress, void* pBuffer,                \
                   std::size_t* piSize))                                                           \
    X(GCWritePort, (GenTL::PORT_HANDLE hPort, std::uint64_t iAddress, const void* pBuffer,         \
                    std::size_t* piSize))                                                          \
    X(GCGetPortURL, (GenTL::PORT_HANDLE hPort, char* sURL, std::size_t* piSize))                   \
    X(GCGetPortInfo, (GenTL::PORT_HANDLE hPort, GenTL::PORT_INFO_CMD iInfoCmd,                     \
                      OV_GENTL_INFO_TAIL))                                                         \
    X(GCRegisterEvent, (GenTL::EVENTSRC_HANDLE hEventSrc, GenTL::EVENT_TYPE iEventID,              \
                        GenTL::EVENT_HANDLE* phEvent))                                             \
    X(GCUnregisterEvent, (GenTL::EVENTSRC_HANDLE hEventSrc, GenTL::EVENT_TYPE iEventID))           \
    X(EventGetData, (GenTL::EVENT_HANDLE hEvent, void* pBuffer, std::size_t* piSize,               \
                     std::uint64_t iTimeout))                                                      \
    X(EventGetDataInfo, (GenTL::EVENT_HANDLE hEvent, const void* pInBuffer, std::size_t iInSize,   \
                         GenTL::EVENT_DATA_INFO_CMD iInfoCmd, GenTL::INFO_DATATYPE* piType,        \
                         void* pOutBuffer, std::size_t* piOutSize))                                \
    X(EventGetInfo, (GenTL::EVENT_HANDLE hEvent, GenTL::EVENT_INFO_CMD iInfoCmd,                   \
                     OV_GENTL_INFO_TAIL))                                                          \
    X(EventFlush, (GenTL::EVENT_HANDLE hEvent))                                                    \
    X(EventKill, (GenTL::EVENT_HANDLE hEvent))                                                     \
    X(TLOpen, (GenTL::TL_HANDLE * phTL))                                                           \
    X(TLClose, (GenTL::TL_HANDLE hTL))                                                             \
    X(TLGetInfo, (GenTL::TL_HANDLE hTL, GenTL::TL_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL))          \
    X(TLGetNumInterfaces, (GenTL::TL_HANDLE hTL, std::uint32_t* piNumIfaces))                      \
    X(TLGetInterfaceID, (GenTL::TL_HANDLE hTL, std::uint32_t iIndex, char* sIfaceID,               \
                         std::size_t* piSize))                                                     \
    X(TLGetInterfaceInfo, (GenTL::TL_HANDLE hTL, const char* sIfaceID,                             \
                           GenTL::INTERFACE_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL))                \
    X(TLOpenInterface, (GenTL::TL_HANDLE hTL, const char* sIfaceID, GenTL::IF_HANDLE* phIface))    \
    X(TLUpdateInterfaceList, (GenTL::TL_HANDLE hTL, GenTL::bool8_t* pbChanged,                     \
                              std::uint64_t iTimeout))                                             \
    X(IFClose, (GenTL::IF_HANDLE hIface))                                                          \
    X(IFGetInfo, (GenTL::IF_HANDLE hIface, GenTL::INTERFACE_INFO_CMD iInfoCmd,                     \
                  OV_GENTL_INFO_TAIL))                                                             \
    X(IFGetNumDevices, (GenTL::IF_HANDLE hIface, std::uint32_t* piNumDevices))                     \
    X(IFGetDeviceID, (GenTL::IF_HANDLE hIface, std::uint32_t iIndex, char* sDeviceID,              \
                      std::size_t* piSize))                                                        \
    X(IFUpdateDeviceList, (GenTL::IF_HANDLE hIface, GenTL::bool8_t* pbChanged,                     \
                           std::uint64_t iTimeout))                                                \
    X(IFGetDeviceInfo, (GenTL::IF_HANDLE hIface, const char* sDeviceID,                            \
                        GenTL::DEVICE_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL))                      \
    X(IFOpenDevice, (GenTL::IF_HANDLE hIface, const char* sDeviceID,                               \
                     GenTL::DEVICE_ACCESS_FLAGS iOpenFlags, GenTL::DEV_HANDLE* phDevice))          \
    X(DevGetPort, (GenTL::DEV_HANDLE hDevice, GenTL::PORT_HANDLE* phRemoteDevice))                 \
    X(DevGetNumDataStreams, (GenTL::DEV_HANDLE hDevice, std::uint32_t* piNumDataStreams))          \
    X(DevGetDataStreamID, (GenTL::DEV_HANDLE hDevice, std::uint32_t iIndex, char* sDataStreamID,   \
                           std::size_t* piSize))                                                   \
    X(DevOpenDataStream, (GenTL::DEV_HANDLE hDevice, const char* sDataStreamID,                    \
                          GenTL::DS_HANDLE* phDataStream))                                         \
    X(DevGetInfo, (GenTL::DEV_HANDLE hDevice, GenTL::DEVICE_INFO_CMD iInfoCmd,                     \
                   OV_GENTL_INFO_TAIL))                                                            \
    X(DevClose, (GenTL::DEV_HANDLE hDevice))                                                       \
    X(DSAnnounceBuffer, (GenTL::DS_HANDLE hDataStream, void* pBuffer, std::size_t iSize,           \
                         void* pPrivate, GenTL::BUFFER_HANDLE* phBuffer))                          \
    X(DSAllocAndAnnounceBuffer, (GenTL::DS_HANDLE hDataStream, std::size_t iBufferSize,            \
                                 void* pPrivate, GenTL::BUFFER_HANDLE* phBuffer))                  \
    X(DSFlushQueue, (GenTL::DS_HANDLE hDataStream, GenTL::ACQ_QUEUE_TYPE iOperation))              \
    X(DSStartAcquisition, (GenTL::DS_HANDLE hDataStream, GenTL::ACQ_START_FLAGS iStartFlags,       \
                           std::uint64_t iNumToAcquire))                                           \
    X(DSStopAcquisition, (GenTL::DS_HANDLE hDataStream, GenTL::ACQ_STOP_FLAGS iStopFlags))         \
    X(DSGetInfo, (GenTL::DS_HANDLE hDataStream, GenTL::STREAM_INFO_CMD iInfoCmd,                   \
                  OV_GENTL_INFO_TAIL))                                                             \
    X(DSGetBufferID, (GenTL::DS_HANDLE hDataStream, std::uint32_t iIndex,                          \
                      GenTL::BUFFER_HANDLE* phBuffer))                                             \
    X(DSClose, (GenTL::DS_HANDLE hDataStream))                                                     \
    X(DSRevokeBuffer, (GenTL::DS_HANDLE hDataStream, GenTL::BUFFER_HANDLE hBuffer,                 \
                       void** ppBuffer, void** ppPrivate))                                         \
    X(DSQueueBuffer, (GenTL::DS_HANDLE hDataStream, GenTL::BUFFER_HANDLE hBuffer))                 \
    X(DSGetBufferInfo, (GenTL::DS_HANDLE hDataStream, GenTL::BUFFER_HANDLE hBuffer,                \
                        GenTL::BUFFER_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL))                      \
    X(GCGetNumPortURLs, (GenTL::PORT_HANDLE hPort, std::uint32_t* piNumURLs))                      \
    X(GCGetPortURLInfo, (GenTL::PORT_HANDLE hPort, std::uint32_t iURLIndex,                        \
                         GenTL::URL_INFO_CMD iInfoCmd, OV_GENTL_INFO_TAIL))                        \
    X(GCReadPortStacked, (GenTL::PORT_HANDLE hPort, GenTL::PORT_REGISTER_STACK_ENTRY* pEntries,    \
                          std::size_t* piNumEntries))                                              \
    X(GCWritePortStacked, (GenTL::PORT_HANDLE hPort, GenTL::PORT_REGISTER_STACK_ENTRY* pEntries,   \
                           std::size_t* piNumEntries))                                             \
    X(DSGetBufferChunkData, (GenTL::DS_HANDLE hDataStream, GenTL::BUFFER_HANDLE hBuffer,           \
                             GenTL::SINGLE_CHUNK_DATA* pChunkData, std::size_t* piNumChunks))

/// What a producer for GigE Vision offers beside the standard: the addresses of
/// a camera that need not be reachable yet.
#define OV_GENTL_EXTENSION_FUNCTIONS(X)                                                            \
    X(IFIpConfiguration, (GenTL::IF_HANDLE hIface, const char* sDeviceID, std::int32_t iMode,      \
                          const char* sIp, const char* sMask, const char* sGateway,                \
                          const char* sUserID))                                                    \
    X(IFForceIp, (GenTL::IF_HANDLE hIface, const char* sDeviceID, const char* sIp,                 \
                  const char* sMask, const char* sGateway))                                        \
    X(IFResetDevice, (GenTL::IF_HANDLE hIface, const char* sDeviceID, std::int32_t iMode))
/// Entry points of later versions, which only few producers have and nobody misses.
#define OV_GENTL_OPTIONAL_FUNCTIONS(X)                                                             \
    X(DSGetBufferInfoStacked, (GenTL::DS_HANDLE hDataStream, GenTL::BUFFER_HANDLE hBuffer,         \
                               GenTL::DS_BUFFER_INFO_STACKED* pInfoStacked,                        \
                               std::size_t iNumInfos))
// clang-format on

/// All 55 entry points in resolving order.
#define OV_GENTL_FUNCTIONS(X)      \
    OV_GENTL_STANDARD_FUNCTIONS(X) \
    OV_GENTL_EXTENSION_FUNCTIONS(X)

namespace GenTL {

/// `GenTL::PGCInitLib` and so on: the pointer type of each entry point.
// NOLINTBEGIN(bugprone-macro-parentheses): lists of declarations take none.
#define OV_GENTL_POINTER_TYPE(name, parameters) using P##name = GC_ERROR(*) parameters;
OV_GENTL_FUNCTIONS(OV_GENTL_POINTER_TYPE)
OV_GENTL_OPTIONAL_FUNCTIONS(OV_GENTL_POINTER_TYPE)
#undef OV_GENTL_POINTER_TYPE

#define OV_GENTL_COUNT(name, parameters) +1
constexpr std::size_t GENTL_FUNCTION_COUNT = 0 OV_GENTL_FUNCTIONS(OV_GENTL_COUNT);
#undef OV_GENTL_COUNT
// NOLINTEND(bugprone-macro-parentheses)
static_assert(GENTL_FUNCTION_COUNT == 55);

}  // namespace GenTL

#endif
