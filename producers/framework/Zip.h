#pragma once
/// Packs a file into a zip archive with one entry, the form in which cameras store their
/// descriptions.

#include <cstddef>
#include <string_view>
#include <vector>

namespace OvProducer {

/// Returns an archive whose only entry is `content` under `name`, deflated. Both sizes
/// are in the local header, so that a reader needs no directory.
std::vector<std::byte> MakeZip(std::string_view name, std::string_view content);

}  // namespace OvProducer
