#pragma once
/// The system's check of the addresses that packets come from.

#include <filesystem>
#include <string>

namespace OvGige {

/// Whether the system drops what comes by the adapter from addresses that it wouldn't answer by
/// the same adapter: cameras of other subnets are then never heard. False if the system doesn't
/// say.
/// @param settings  the folder with the settings of all adapters
bool DropsForeignSenders(const std::string& adapter,
                         const std::filesystem::path& settings = "/proc/sys/net/ipv4/conf");

}  // namespace OvGige
