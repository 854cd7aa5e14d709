#pragma once
/// A camera with what a start reads and nothing else.

#include "support/FeatureCalls.h"
#include "support/TestFrame.h"

inline std::string DescribeInteger(const std::string& name, int64_t value) {
    return DescriptionXml::IntegerXml(name, "",
                                      DescriptionXml::Element("Value", std::to_string(value)));
}

inline std::string DescribeRegister(const std::string& name, const std::string& address,
                                    const std::string& port) {
    return DescriptionXml::RegXml{.name = name,
                                  .caching = "",
                                  .place = DescriptionXml::Element("Address", address),
                                  .port = port,
                                  .sign = "Unsigned"}();
}

/// A camera that can be started and stopped.
/// @param more  what else it has
inline std::string DescribeStartable(const std::string& more) {
    const auto command = [](const std::string& name) {
        return "<Command Name=\"" + name +
               "\"><pValue>Run</pValue><CommandValue>1</CommandValue></Command>";
    };
    return DescribeCamera(
        DescribeInteger("Width", kTestFrameWidth) + DescribeInteger("Height", kTestFrameHeight) +
        DescribeInteger("OffsetX", 0) + DescribeInteger("OffsetY", 0) +
        DescribeInteger("PayloadSize", static_cast<int64_t>(kTestFrameSize)) +
        command("AcquisitionStart") + command("AcquisitionStop") +
        DescribeRegister("Run", "0x8000", "Device") +
        "<Enumeration Name=\"PixelFormat\"><EnumEntry Name=\"Mono8\"><Value>17301505</Value>"
        "</EnumEntry><Value>17301505</Value></Enumeration>" +
        more);
}
