// The form of the text: banners between parts, keys with values in the first.

#include <algorithm>
#include <stdexcept>

#include "TLClassFeature/FeaturePersistance.h"
#include "TLClassSupport/OvString.h"

namespace OVTLClass {

namespace {

constexpr const char* kBannerBegin = "</";
constexpr const char* kBannerEnd = ">";
constexpr size_t kHyphens = 51;

constexpr const char* kGaps = "\r\n ";
constexpr const char* kSeparators = " :\t";
constexpr const char* kValueEnds = "\n\t";

[[noreturn]] void RaiseMissing(const std::string& key) {
    throw std::runtime_error(COvString::MsgComposer("Can not find %s", key.c_str()));
}

}  // namespace

std::string CFeaturePersistance::__GetSeperatorString(const std::string& title) {
    const std::string hyphens(kHyphens, '-');
    return "\n" + (kBannerBegin + hyphens) + title + hyphens + kBannerEnd + "\n";
}

/// A part without text doesn't count.
std::vector<std::string> CFeaturePersistance::__SplitterFeatureString(const std::string& text) {
    std::vector<std::string> parts;
    size_t begin = text.find_first_not_of(kGaps);
    while (begin != std::string::npos) {
        const size_t banner = text.find(kBannerBegin, begin);
        if (banner != begin) {
            parts.push_back(text.substr(begin, banner - begin));
        }
        if (banner == std::string::npos) {
            break;
        }
        const size_t end = text.find(kBannerEnd, banner);
        if (end == std::string::npos) {
            throw std::runtime_error(
                COvString::MsgComposer("Failed to parse the %dth line", __Count(text, banner) + 1));
        }
        begin = text.find_first_not_of(kGaps, end + 1);
    }
    return parts;
}

/// The line feeds before a place.
int CFeaturePersistance::__Count(const std::string& text, size_t end) {
    return static_cast<int>(
        std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
}

std::string CFeaturePersistance::__GetStringByKey(const std::string& text, const std::string& key) {
    const size_t found = text.find(key);
    if (found == std::string::npos) {
        RaiseMissing(key);
    }
    const size_t behind = found + key.size();
    const size_t value = text.find_first_not_of(kSeparators, behind);
    if (value == behind || value == std::string::npos) {
        RaiseMissing(key);
    }
    const size_t end = std::min(text.find_first_of(kValueEnds, value), text.size());
    if (end == value) {
        RaiseMissing(key);
    }
    return text.substr(value, end - value);
}

}  // namespace OVTLClass
