#pragma once
/// The settings of a camera as one text: what it is for, and a part for each of
/// the three node maps in which a camera keeps settings.

#include <array>
#include <iosfwd>
#include <string>
#include <vector>

namespace GenApi_3_0_ORVANE {
class CNodeMapRef;
}

namespace OVTLClass {

/// Writes and reads that text. The node maps stay the caller's and have to
/// outlive the object.
class CFeaturePersistance {
public:
    using CNodeMapRef = GenApi_3_0_ORVANE::CNodeMapRef;

    /// The keys of the format's version, and of the model of the camera that the
    /// settings are from.
    static const std::string FILE_VERSION_KEY;
    static const std::string DEVICE_MODEL_KEY;

    /// std::runtime_error for a reference without a node map.
    CFeaturePersistance(CNodeMapRef& remote, CNodeMapRef& local, CNodeMapRef& stream);

    /// Reads all streamable features. CUnexpectedError when a node fails.
    void ExportFeaturesToStream(std::ostream& target) const;
    /// Writes the features of the text, which begins at the stream's begin.
    /// std::runtime_error for a text of another format or model, CUnexpectedError
    /// when the engine refuses a part of it.
    /// @param verify  writes once more with all checks, and compares
    /// @return what went wrong with single features, in their order
    std::vector<std::string> ImportFeaturesFromStream(std::istream& source, bool verify) const;

private:
    std::string __GetDeviceModelFromDevice() const;
    static std::string __GetSeperatorString(const std::string& title);
    static std::string __GetStringByKey(const std::string& text, const std::string& key);
    static std::vector<std::string> __SplitterFeatureString(const std::string& text);
    static int __Count(const std::string& text, size_t end);

    void __Export(std::ostream& target) const;
    std::vector<std::string> __Import(const std::string& text, bool verify) const;
    void __CheckHeader(const std::string& header) const;

    /// Remote device, local device, stream: the order of the parts.
    std::array<CNodeMapRef*, 3> m_nodeMaps;
};

}  // namespace OVTLClass
