#pragma once
/// The settings of an open camera, with all that belongs to it, as one text.

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace OVTLClass {

class IDevice;

/// CFeaturePersistance over the three node maps of a camera.
class CAllFeaturePersistance {
public:
    /// std::runtime_error for no device, and for one that isn't open with its
    /// first stream.
    static void ExportAllFeaturesToStream(const std::shared_ptr<IDevice>& device,
                                          std::ostream& target);
    /// As above, with what CFeaturePersistance::ImportFeaturesFromStream returns.
    static std::vector<std::string> ImportAllFeaturesFromStream(
        const std::shared_ptr<IDevice>& device, std::istream& source, bool verify);
};

}  // namespace OVTLClass
