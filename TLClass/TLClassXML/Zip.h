#pragma once
/// Unpacks a description.

#include <vector>

namespace OVTLClass {

class CZip {
public:
    /// The first entry of a zip archive, or a zlib stream. False only when an
    /// exception came in between; data that doesn't unpack becomes a text or the
    /// input itself, which then fails as a description.
    static bool Uncompress(const std::vector<unsigned char>& in, std::vector<unsigned char>& out);
};

}  // namespace OVTLClass
