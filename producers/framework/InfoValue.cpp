#include "framework/InfoValue.h"

#include "Base/EachFrame.h"

namespace OvProducer {

InfoValue InfoValue::Text(std::string_view text) {
    std::string bytes(text);
    bytes.push_back('\0');
    return {GenTL::INFO_DATATYPE_STRING, std::move(bytes)};
}

InfoValue InfoValue::TextList(std::span<const std::string> texts) {
    std::string bytes;
    for (const std::string& text : texts) {
        bytes.append(text).push_back('\0');
    }
    bytes.push_back('\0');
    return {GenTL::INFO_DATATYPE_STRINGLIST, std::move(bytes)};
}

InfoValue InfoValue::Bytes(std::span<const std::byte> bytes) {
    std::string copy(bytes.size(), '\0');
    if (!bytes.empty()) {
        std::memcpy(copy.data(), bytes.data(), bytes.size());
    }
    return {GenTL::INFO_DATATYPE_BUFFER, std::move(copy)};
}

OV_EACH_FRAME void InfoValue::CopyOut(GenTL::INFO_DATATYPE* type, void* buffer,
                                      size_t* size) const {
    RequirePointer(size, "The size");
    const std::string_view data = Data();
    if (buffer != nullptr) {
        if (*size < data.size()) {
            throw Failure(GenTL::GC_ERR_BUFFER_TOO_SMALL,
                          "The buffer holds " + std::to_string(*size) + " bytes, needed are " +
                              std::to_string(data.size()));
        }
        std::memcpy(buffer, data.data(), data.size());
    }
    *size = data.size();
    if (type != nullptr) {
        *type = m_type;
    }
}

void ThrowNotAvailable() {
    throw Failure(GenTL::GC_ERR_NOT_AVAILABLE, "The value isn't available at this time");
}

}  // namespace OvProducer
