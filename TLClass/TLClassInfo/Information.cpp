#include "TLClassInfo/Information.h"

#include "TLClassInfo/BufferRows.h"
#include "TLClassLoadTL/GenTLText.h"

namespace OVTLClass {

namespace {

constexpr auto kString = GenTL::INFO_DATATYPE_STRING;
constexpr auto kInt32 = GenTL::INFO_DATATYPE_INT32;
constexpr auto kSize = GenTL::INFO_DATATYPE_SIZET;

constexpr InfoRow<TL_INFO> kTLRows[] = {
    {GenTL::TL_INFO_VENDOR, kString, &TL_INFO::vendor},
    {GenTL::TL_INFO_MODEL, kString, &TL_INFO::model},
    {GenTL::TL_INFO_VERSION, kString, &TL_INFO::version},
    {GenTL::TL_INFO_TLTYPE, kString, &TL_INFO::tlType},
    {GenTL::TL_INFO_NAME, kString, &TL_INFO::name},
    {GenTL::TL_INFO_PATHNAME, kString, &TL_INFO::pathName},
    {GenTL::TL_INFO_DISPLAYNAME, kString, &TL_INFO::displayName},
    {GenTL::TL_INFO_ID, kString, &TL_INFO::id},
};

constexpr InfoRow<IF_INFO> kInterfaceRows[] = {
    {GenTL::INTERFACE_INFO_ID, kString, &IF_INFO::id},
    {GenTL::INTERFACE_INFO_DISPLAYNAME, kString, &IF_INFO::displayName},
    {GenTL::INTERFACE_INFO_TLTYPE, kString, &IF_INFO::tlType},
};

constexpr InfoRow<DEV_INFO> kDeviceRows[] = {
    {GenTL::DEVICE_INFO_ID, kString, &DEV_INFO::id},
    {GenTL::DEVICE_INFO_VENDOR, kString, &DEV_INFO::vendor},
    {GenTL::DEVICE_INFO_MODEL, kString, &DEV_INFO::model},
    {GenTL::DEVICE_INFO_TLTYPE, kString, &DEV_INFO::tlType},
    {GenTL::DEVICE_INFO_DISPLAYNAME, kString, &DEV_INFO::displayName},
    {GenTL::DEVICE_INFO_ACCESS_STATUS, kInt32, &DEV_INFO::accessStatus},
};

constexpr InfoRow<DS_INFO> kStreamRows[] = {
    {GenTL::STREAM_INFO_ID, kString, &DS_INFO::id},
    {GenTL::STREAM_INFO_PAYLOAD_SIZE, kSize, &DS_INFO::payloadSize},
    {GenTL::STREAM_INFO_NUM_CHUNKS_MAX, kSize, &DS_INFO::maxChunks},
    {GenTL::STREAM_INFO_BUF_ANNOUNCE_MIN, kSize, &DS_INFO::minAnnounce},
    {GenTL::STREAM_INFO_BUF_ALIGNMENT, kSize, &DS_INFO::alignment},
};

constexpr InfoRow<PORT_INFO> kPortRows[] = {
    {GenTL::PORT_INFO_ID, kString, &PORT_INFO::id},
    {GenTL::PORT_INFO_PORTNAME, kString, &PORT_INFO::portName},
};

}  // namespace

template <>
std::span<const InfoRow<TL_INFO>> InfoRowsOf<TL_INFO>() {
    return kTLRows;
}
template <>
std::span<const InfoRow<IF_INFO>> InfoRowsOf<IF_INFO>() {
    return kInterfaceRows;
}
template <>
std::span<const InfoRow<DEV_INFO>> InfoRowsOf<DEV_INFO>() {
    return kDeviceRows;
}
template <>
std::span<const InfoRow<DS_INFO>> InfoRowsOf<DS_INFO>() {
    return kStreamRows;
}
template <>
std::span<const InfoRow<PORT_INFO>> InfoRowsOf<PORT_INFO>() {
    return kPortRows;
}
template <>
std::span<const InfoRow<BUFFER_INFO>> InfoRowsOf<BUFFER_INFO>() {
    return kBufferRows;
}

template <class T>
bool COvInformation::__GetFixed(int32_t command, int32_t type, T& value) {
    // The producer writes to a copy: what it leaves behind at a failure doesn't count.
    T given{};
    size_t size = sizeof(T);
    if (__AcquireInformation(command, &type, &given, &size) != 0) {
        value = T{};
        return false;
    }
    value = given;
    return true;
}

void COvInformation::_Get(int32_t command, int32_t type, InfoInt32& info) {
    info.valid = __GetFixed(command, type, info.value);
}

void COvInformation::_Get(int32_t command, int32_t type, InfoUint64& info) {
    info.valid = __GetFixed(command, type, info.value);
}

void COvInformation::_Get(int32_t command, int32_t type, InfoPointer& info) {
    info.valid = __GetFixed(command, type, info.value);
}

void COvInformation::_Get(int32_t command, int32_t type, InfoBool& info) {
    // A producer's boolean is a byte of any value; only a C++ bool must be 0 or 1.
    uint8_t given = 0;
    info.valid = __GetFixed(command, type, given);
    info.value = given != 0;
}

void COvInformation::_Get(int32_t command, int32_t type, InfoString& info) {
    size_t size = 0;
    info.valid = __GetStringLength(command, type, size) &&
                 __GetStringContent(command, type, size, info.value);
    // The text may be that of an earlier question.
    if (!info.valid) {
        info.value.clear();
    }
}

bool COvInformation::__GetStringLength(int32_t command, int32_t type, size_t& size) {
    return __AcquireInformation(command, &type, nullptr, &size) == 0;
}

bool COvInformation::__GetStringContent(int32_t command, int32_t type, size_t size,
                                        std::string& text) {
    const auto call = [this, command, &type](char* buffer, size_t* given) {
        return __AcquireInformation(command, &type, buffer, given);
    };
    return TryReadGenTLContent(call, size, text);
}

}  // namespace OVTLClass
