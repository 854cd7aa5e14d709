#include "TLClassInfo/Information.h"

#include "TLClassLoadTL/GenTLText.h"

namespace OVTLClass {

namespace {

// Types and commands go by the numbers of the GenTL standard.
enum GenTLType : int32_t {
    kString = 1,
    kInt32 = 5,
    kUint64 = 8,
    kPointer = 10,
    kBool8 = 11,
    kSize = 12
};

constexpr InfoRow<TL_INFO> kTLRows[] = {
    {1, kString, &TL_INFO::vendor},      {2, kString, &TL_INFO::model},
    {3, kString, &TL_INFO::version},     {4, kString, &TL_INFO::tlType},
    {5, kString, &TL_INFO::name},        {6, kString, &TL_INFO::pathName},
    {7, kString, &TL_INFO::displayName}, {0, kString, &TL_INFO::id},
};

constexpr InfoRow<IF_INFO> kInterfaceRows[] = {
    {0, kString, &IF_INFO::id},
    {1, kString, &IF_INFO::displayName},
    {2, kString, &IF_INFO::tlType},
};

constexpr InfoRow<DEV_INFO> kDeviceRows[] = {
    {0, kString, &DEV_INFO::id},          {1, kString, &DEV_INFO::vendor},
    {2, kString, &DEV_INFO::model},       {3, kString, &DEV_INFO::tlType},
    {4, kString, &DEV_INFO::displayName}, {5, kInt32, &DEV_INFO::accessStatus},
};

constexpr InfoRow<DS_INFO> kStreamRows[] = {
    {0, kString, &DS_INFO::id},       {7, kSize, &DS_INFO::payloadSize},
    {11, kSize, &DS_INFO::maxChunks}, {12, kSize, &DS_INFO::minAnnounce},
    {13, kSize, &DS_INFO::alignment},
};

constexpr InfoRow<PORT_INFO> kPortRows[] = {
    {0, kString, &PORT_INFO::id},
    {12, kString, &PORT_INFO::portName},
};

constexpr InfoRow<BUFFER_INFO> kBufferRows[] = {
    {8, kString, &BUFFER_INFO::tlType},
    {1, kSize, &BUFFER_INFO::size},
    {9, kSize, &BUFFER_INFO::sizeFilled},
    {10, kSize, &BUFFER_INFO::width},
    {11, kSize, &BUFFER_INFO::height},
    {12, kSize, &BUFFER_INFO::xOffset},
    {13, kSize, &BUFFER_INFO::yOffset},
    {14, kSize, &BUFFER_INFO::xPadding},
    {15, kSize, &BUFFER_INFO::yPadding},
    {18, kSize, &BUFFER_INFO::imageOffset},
    {19, kSize, &BUFFER_INFO::payloadType},
    {3, kUint64, &BUFFER_INFO::timestamp},
    {16, kUint64, &BUFFER_INFO::frameId},
    {20, kUint64, &BUFFER_INFO::pixelFormat},
    {21, kUint64, &BUFFER_INFO::pixelFormatNamespace},
    {0, kPointer, &BUFFER_INFO::base},
    {2, kPointer, &BUFFER_INFO::userPointer},
    {7, kBool8, &BUFFER_INFO::incomplete},
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
