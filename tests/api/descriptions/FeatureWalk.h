#pragma once
/// Every feature that has an identifier, read and written in one form.

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "OvIAPI.h"
#include "support/FeatureRows.h"

using FeatureValue = std::variant<int64_t, double, bool, std::string, std::vector<uint8_t>>;

/// What a call gave: a value, or the status and the message of its failure.
template <class T>
struct Answer {
    OV_STATUS status = OV_STATUS_SUCCESS;
    std::string message;
    T value{};
    bool IsGood() const { return status == OV_STATUS_SUCCESS; }
};

/// The calls on one feature of a camera.
class Feature {
public:
    Feature(OV_DEV_HANDLE camera, const FeatureRow& row) : m_camera(camera), m_row(row) {}

    const char* Name() const { return m_row.name; }
    OV_FEATURE_ID Id() const { return m_row.id; }
    OV_FEATURE_TYPE Type() const { return m_row.id & OV_FEATURE_TYPE_MASK; }
    bool IsCommand() const { return Type() == OV_FEATURE_TYPE_COMMAND; }

    Answer<bool> IsImplemented() const;
    Answer<bool> IsReadable() const;
    Answer<bool> IsWritable() const;
    /// Not of a command.
    Answer<FeatureValue> Read() const;
    Answer<bool> Write(const FeatureValue& value) const;
    Answer<OV_INT_RANGE> IntRange() const;
    Answer<OV_FLOAT_RANGE> FloatRange() const;
    Answer<std::vector<OV_ENUM_DESCRIPTION>> Entries() const;

private:
    Answer<FeatureValue> ReadText() const;
    Answer<FeatureValue> ReadBytes() const;

    OV_DEV_HANDLE m_camera;
    const FeatureRow& m_row;
};

std::string ToText(const FeatureValue& value);
