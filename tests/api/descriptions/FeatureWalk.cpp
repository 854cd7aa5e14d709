#include "FeatureWalk.h"

#include <functional>
#include <sstream>

#include "support/ApiTest.h"

namespace {

template <class T, class Call>
Answer<T> Ask(Call call) {
    Answer<T> answer;
    answer.status = call(answer.value);
    if (!answer.IsGood()) {
        answer.message = LastError::Get().message;
    }
    return answer;
}

template <class T, class Call>
Answer<FeatureValue> AskValue(Call call) {
    const Answer<T> answer = Ask<T>(call);
    return {answer.status, answer.message, answer.value};
}

/// A call that returns the size of the memory that it needs.
template <class Element, class Call>
Answer<std::vector<Element>> AskList(Call call) {
    return Ask<std::vector<Element>>([&](std::vector<Element>& list) {
        size_t size = 0;
        OV_STATUS status = call(nullptr, &size);
        if (status == OV_STATUS_SUCCESS) {
            list.resize(size / sizeof(Element));
            status = call(list.data(), &size);
        }
        return status;
    });
}

struct ToTextVisitor {
    std::string operator()(int64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const {
        std::ostringstream text;
        text.precision(17);
        text << value;
        return text.str();
    }
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(const std::string& value) const { return '"' + value + '"'; }
    std::string operator()(const std::vector<uint8_t>& value) const {
        return std::to_string(value.size()) + " bytes, hash " +
               std::to_string(std::hash<std::string>()({value.begin(), value.end()}));
    }
};

}  // namespace

Answer<bool> Feature::IsImplemented() const {
    return Ask<bool>([&](bool& is) { return OVIsImplemented(m_camera, Id(), &is); });
}

Answer<bool> Feature::IsReadable() const {
    return Ask<bool>([&](bool& is) { return OVIsReadable(m_camera, Id(), &is); });
}

Answer<bool> Feature::IsWritable() const {
    return Ask<bool>([&](bool& is) { return OVIsWritable(m_camera, Id(), &is); });
}

Answer<FeatureValue> Feature::ReadText() const {
    const auto text = AskList<char>(
        [&](char* out, size_t* size) { return OVGetString(m_camera, Id(), out, size); });
    return {text.status, text.message, std::string(text.IsGood() ? text.value.data() : "")};
}

Answer<FeatureValue> Feature::ReadBytes() const {
    const auto bytes = AskList<uint8_t>(
        [&](uint8_t* out, size_t* size) { return OVGetBuffer(m_camera, Id(), out, size); });
    return {bytes.status, bytes.message, bytes.value};
}

Answer<FeatureValue> Feature::Read() const {
    switch (Type()) {
        case OV_FEATURE_TYPE_INT:
            return AskValue<int64_t>([&](int64_t& v) { return OVGetInt(m_camera, Id(), &v); });
        case OV_FEATURE_TYPE_FLOAT:
            return AskValue<double>([&](double& v) { return OVGetFloat(m_camera, Id(), &v); });
        case OV_FEATURE_TYPE_ENUM:
            return AskValue<int64_t>([&](int64_t& v) { return OVGetEnum(m_camera, Id(), &v); });
        case OV_FEATURE_TYPE_BOOL:
            return AskValue<bool>([&](bool& v) { return OVGetBool(m_camera, Id(), &v); });
        case OV_FEATURE_TYPE_STRING:
            return ReadText();
        default:
            return ReadBytes();
    }
}

Answer<bool> Feature::Write(const FeatureValue& value) const {
    return Ask<bool>([&](bool&) {
        switch (Type()) {
            case OV_FEATURE_TYPE_INT:
                return OVSetInt(m_camera, Id(), std::get<int64_t>(value));
            case OV_FEATURE_TYPE_FLOAT:
                return OVSetFloat(m_camera, Id(), std::get<double>(value));
            case OV_FEATURE_TYPE_ENUM:
                return OVSetEnum(m_camera, Id(), std::get<int64_t>(value));
            case OV_FEATURE_TYPE_BOOL:
                return OVSetBool(m_camera, Id(), std::get<bool>(value));
            case OV_FEATURE_TYPE_STRING:
                return OVSetString(m_camera, Id(), std::get<std::string>(value).c_str());
            default: {
                const auto& bytes = std::get<std::vector<uint8_t>>(value);
                return OVSetBuffer(m_camera, Id(), bytes.data(), bytes.size());
            }
        }
    });
}

Answer<OV_INT_RANGE> Feature::IntRange() const {
    return Ask<OV_INT_RANGE>([&](OV_INT_RANGE& v) { return OVGetIntRange(m_camera, Id(), &v); });
}

Answer<OV_FLOAT_RANGE> Feature::FloatRange() const {
    return Ask<OV_FLOAT_RANGE>(
        [&](OV_FLOAT_RANGE& v) { return OVGetFloatRange(m_camera, Id(), &v); });
}

Answer<std::vector<OV_ENUM_DESCRIPTION>> Feature::Entries() const {
    return AskList<OV_ENUM_DESCRIPTION>([&](OV_ENUM_DESCRIPTION* out, size_t* size) {
        return OVGetEnumDescription(m_camera, Id(), out, size);
    });
}

std::string ToText(const FeatureValue& value) {
    return std::visit(ToTextVisitor(), value);
}
