#include "camera/FeatureValue.h"

#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/Text.h"

namespace {

struct ValueText {
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(const std::string& value) const { return value; }
    template <class T>
    std::string operator()(T value) const {
        std::ostringstream text;
        text << std::setprecision(10) << value;
        return text.str();
    }
};

struct RangeText {
    std::string operator()(std::monostate) const { return ""; }
    std::string operator()(const OV_INT_RANGE& range) const {
        return std::to_string(range.nMin) + " to " + std::to_string(range.nMax) + " by " +
               std::to_string(range.nInc);
    }
    std::string operator()(const OV_FLOAT_RANGE& range) const {
        std::ostringstream text;
        text << range.dMin << " to " << range.dMax;
        if (range.bIncIsValid) {
            text << " by " << range.dInc;
        }
        const std::string unit = FieldText(range.szUnit);
        text << (unit.empty() ? "" : " ") << unit;
        return text.str();
    }
    std::string operator()(const std::vector<std::string>& names) const {
        std::string text;
        for (const std::string& name : names) {
            text += (text.empty() ? "" : " ") + name;
        }
        return text;
    }
};

struct RangeJson {
    Json operator()(std::monostate) const { return nullptr; }
    Json operator()(const OV_INT_RANGE& range) const {
        return {{"min", range.nMin}, {"max", range.nMax}, {"increment", range.nInc}};
    }
    Json operator()(const OV_FLOAT_RANGE& range) const {
        return {{"min", range.dMin},
                {"max", range.dMax},
                {"increment", range.bIncIsValid ? Json(range.dInc) : Json()},
                {"unit", FieldText(range.szUnit)}};
    }
    Json operator()(const std::vector<std::string>& names) const { return {{"entries", names}}; }
};

}  // namespace

std::string ToText(const FeatureValue& value) {
    return std::visit(ValueText(), value);
}

Json ToJson(const FeatureValue& value) {
    return std::visit([](const auto& held) { return Json(held); }, value);
}

std::string ToText(const FeatureRange& range) {
    return std::visit(RangeText(), range);
}

Json ToJson(const FeatureRange& range) {
    return std::visit(RangeJson(), range);
}
