#include "camera/Features.h"

#include <algorithm>
#include <charconv>

#include "support/Error.h"
#include "support/Text.h"

namespace {

constexpr OV_FEATURE_ID kTypeBits = 0xF0000000U;

OV_FEATURE_TYPE TypeOf(OV_FEATURE_ID id) {
    return id & kTypeBits;
}

std::string NameOf(OV_FEATURE_ID id) {
    const auto& rows = AllFeatures();
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [id](const FeatureRow& row) { return row.id == id; });
    return found == rows.end() ? "?" : found->name;
}

std::string Read(OV_FEATURE_ID id) {
    return "read " + NameOf(id);
}

std::string Write(OV_FEATURE_ID id) {
    return "set " + NameOf(id);
}

template <class T>
T ParseNumber(const std::string& text, OV_FEATURE_ID id) {
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw UsageError("can't " + Write(id) + ": '" + text + "' is not a number");
    }
    return value;
}

std::vector<OV_ENUM_DESCRIPTION> EntriesOf(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    size_t size = 0;
    Check(OVGetEnumDescription(camera, id, nullptr, &size), Read(id));
    std::vector<OV_ENUM_DESCRIPTION> entries(size / sizeof(OV_ENUM_DESCRIPTION));
    Check(OVGetEnumDescription(camera, id, entries.data(), &size), Read(id));
    return entries;
}

int64_t ReadInt(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    int64_t value = 0;
    Check(OVGetInt(camera, id, &value), Read(id));
    return value;
}

double ReadFloat(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    double value = 0;
    Check(OVGetFloat(camera, id, &value), Read(id));
    return value;
}

bool ReadBool(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    bool value = false;
    Check(OVGetBool(camera, id, &value), Read(id));
    return value;
}

std::string ReadEnum(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    int64_t value = 0;
    Check(OVGetEnum(camera, id, &value), Read(id));
    for (const OV_ENUM_DESCRIPTION& entry : EntriesOf(camera, id)) {
        if (entry.nValue == value) {
            return FieldText(entry.szSymbolic);
        }
    }
    return std::to_string(value);
}

std::string ReadString(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    size_t size = 0;
    Check(OVGetString(camera, id, nullptr, &size), Read(id));
    std::vector<char> text(size);
    Check(OVGetString(camera, id, text.data(), &size), Read(id));
    return {text.data(), strnlen(text.data(), text.size())};
}

std::string ReadBuffer(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    size_t size = 0;
    Check(OVGetBuffer(camera, id, nullptr, &size), Read(id));
    std::vector<uint8_t> bytes(size);
    Check(OVGetBuffer(camera, id, bytes.data(), &size), Read(id));
    return ToHex(bytes);
}

int64_t ParseEntry(OV_DEV_HANDLE camera, OV_FEATURE_ID id, const std::string& text) {
    for (const OV_ENUM_DESCRIPTION& entry : EntriesOf(camera, id)) {
        if (FieldText(entry.szSymbolic) == text || std::to_string(entry.nValue) == text) {
            return entry.nValue;
        }
    }
    throw ToolError("can't " + Write(id) + ": it has no entry '" + text +
                    "', but: " + ToText(ReadRange(camera, id)));
}

bool ParseBool(const std::string& text, OV_FEATURE_ID id) {
    if (text == "true" || text == "1") {
        return true;
    }
    if (text == "false" || text == "0") {
        return false;
    }
    throw UsageError("can't " + Write(id) + ": '" + text + "' is neither true nor false");
}

/// The limits, as a hint; what must be told is the failure that it is for.
std::string LimitsText(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    try {
        return "\n" + NameOf(id) + " takes " + ToText(ReadRange(camera, id));
    } catch (const ToolError&) {
        return "";
    }
}

/// Raises a value that the camera refuses, with the limits if it is outside them.
void CheckNumber(OV_STATUS status, OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    if (status != OV_STATUS_OUT_OF_RANGE) {
        Check(status, Write(id));
        return;
    }
    try {
        Check(status, Write(id), "");
    } catch (const ToolError& error) {
        throw ToolError(error.what() + LimitsText(camera, id), error.Code(), error.Detail());
    }
}

}  // namespace

const std::vector<FeatureRow>& AllFeatures() {
    static const std::vector<FeatureRow> rows{
#define OV_TOOL_ROW(name, type, level, number) {#name, OV_FEATURE_##name},
        OV_FEATURE_TABLE(OV_TOOL_ROW)
#undef OV_TOOL_ROW
    };
    return rows;
}

OV_FEATURE_ID FeatureByName(const std::string& name) {
    for (const FeatureRow& row : AllFeatures()) {
        if (name == row.name) {
            return row.id;
        }
    }
    throw UsageError("there is no feature '" + name + "'; all that a camera has: ovtool features");
}

bool IsCommand(OV_FEATURE_ID id) {
    return TypeOf(id) == OV_FEATURE_TYPE_COMMAND;
}

const char* TypeName(OV_FEATURE_ID id) {
    static constexpr const char* kNames[] = {"?",    "integer", "float",  "enum",
                                             "bool", "string",  "buffer", "command"};
    const size_t index = id >> 28;
    return index < std::size(kNames) ? kNames[index] : kNames[0];
}

FeatureValue ReadFeature(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    switch (TypeOf(id)) {
        case OV_FEATURE_TYPE_INT:
            return ReadInt(camera, id);
        case OV_FEATURE_TYPE_FLOAT:
            return ReadFloat(camera, id);
        case OV_FEATURE_TYPE_ENUM:
            return ReadEnum(camera, id);
        case OV_FEATURE_TYPE_BOOL:
            return ReadBool(camera, id);
        case OV_FEATURE_TYPE_STRING:
            return ReadString(camera, id);
        case OV_FEATURE_TYPE_BUFFER:
            return ReadBuffer(camera, id);
        default:
            throw ToolError("can't " + Read(id) + ": a command has no value");
    }
}

std::optional<FeatureValue> ReadIfReadable(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    bool readable = false;
    const OV_STATUS status =
        IsCommand(id) ? OV_STATUS_NOT_IMPLEMENTED : OVIsReadable(camera, id, &readable);
    if (status != OV_STATUS_NOT_IMPLEMENTED) {
        Check(status, Read(id));
    }
    return readable ? std::optional(ReadFeature(camera, id)) : std::nullopt;
}

std::optional<FeatureValue> TryReadFeature(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    try {
        return ReadIfReadable(camera, id);
    } catch (const ToolError& error) {
        if (error.Code() == ExitCode::Lost) {
            throw;
        }
        return std::nullopt;
    }
}

FeatureRange ReadRange(OV_DEV_HANDLE camera, OV_FEATURE_ID id) {
    if (TypeOf(id) == OV_FEATURE_TYPE_INT) {
        OV_INT_RANGE range{};
        Check(OVGetIntRange(camera, id, &range), Read(id));
        return range;
    }
    if (TypeOf(id) == OV_FEATURE_TYPE_FLOAT) {
        OV_FLOAT_RANGE range{};
        Check(OVGetFloatRange(camera, id, &range), Read(id));
        return range;
    }
    if (TypeOf(id) == OV_FEATURE_TYPE_ENUM) {
        std::vector<std::string> names;
        for (const OV_ENUM_DESCRIPTION& entry : EntriesOf(camera, id)) {
            names.push_back(FieldText(entry.szSymbolic));
        }
        return names;
    }
    return std::monostate{};
}

void WriteFeature(OV_DEV_HANDLE camera, OV_FEATURE_ID id, const std::string& text) {
    switch (TypeOf(id)) {
        case OV_FEATURE_TYPE_INT:
            CheckNumber(OVSetInt(camera, id, ParseNumber<int64_t>(text, id)), camera, id);
            break;
        case OV_FEATURE_TYPE_FLOAT:
            CheckNumber(OVSetFloat(camera, id, ParseNumber<double>(text, id)), camera, id);
            break;
        case OV_FEATURE_TYPE_ENUM:
            Check(OVSetEnum(camera, id, ParseEntry(camera, id, text)), Write(id));
            break;
        case OV_FEATURE_TYPE_BOOL:
            Check(OVSetBool(camera, id, ParseBool(text, id)), Write(id));
            break;
        case OV_FEATURE_TYPE_STRING:
            Check(OVSetString(camera, id, text.c_str()), Write(id));
            break;
        case OV_FEATURE_TYPE_BUFFER: {
            const std::vector<uint8_t> bytes = ParseHex(text, Write(id));
            Check(OVSetBuffer(camera, id, bytes.data(), bytes.size()), Write(id));
            break;
        }
        default:
            Check(OVSendCommand(camera, id), "run " + NameOf(id));
            break;
    }
}
