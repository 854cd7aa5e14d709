#pragma once
/// Packs a file into a zip archive of one entry, as cameras keep their
/// descriptions.

#include <cstddef>
#include <string_view>
#include <vector>

namespace OvProducer {

/// A complete archive whose only entry is `content` under `name`, deflated.
/// Both sizes stand in the local header, so that a reader needs no directory.
std::vector<std::byte> MakeZip(std::string_view name, std::string_view content);

}  // namespace OvProducer
