#pragma once
/// Where a stream's features are, by the description, as a consumer finds them.

#include <algorithm>
#include <string>

#include "framework/Backend.h"
#include "gige/stream/StreamFeatures.h"

inline uint64_t StreamFeatureAddress(const std::string& name) {
    const std::string xml =
        OvGige::WithStreamFeatures(OvProducer::OwnDescription(OvProducer::ModuleKind::Stream).xml);
    const size_t at = std::min(xml.find("<IntReg Name=\"" + name + "\""),
                               xml.find("<IntReg Name=\"" + name + "Reg\""));
    const std::string mark = "<Address>";
    return std::stoull(xml.substr(xml.find(mark, at) + mark.size(), 6), nullptr, 16);
}
