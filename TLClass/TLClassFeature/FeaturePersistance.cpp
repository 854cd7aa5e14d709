#include "TLClassFeature/FeaturePersistance.h"

#include <sstream>
#include <stdexcept>

#include "Base/GCException.h"
#include "GenApi/FeatureBagStream.h"
#include "GenApi/NodeMapRef.h"
#include "GenApi/Pointer.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"

using GenApi_3_0_ORVANE::CFeatureBag;
using GenICam_3_0_ORVANE::gcstring_vector;
using GenICam_3_0_ORVANE::GenericException;

namespace OVTLClass {

namespace {

constexpr const char* kFileVersion = "1.0";
constexpr std::array<const char*, 3> kTitles = {
    "Remote device features are as follows:", "Local device features are as follows:",
    "Stream features are as follows:"};

std::string ReadAll(std::istream& source) {
    // A caller may have looked into the stream.
    source.seekg(0);
    std::ostringstream text;
    text << source.rdbuf();
    return text.str();
}

void LoadPart(const std::string& part, CFeaturePersistance::CNodeMapRef& nodeMap, bool verify,
              std::vector<std::string>& errors) {
    CFeatureBag bag;
    std::istringstream stream(part);
    stream >> bag;
    gcstring_vector notes;
    bag.LoadFromBag(nodeMap.GetMap(), verify, &notes);
    // One feature that can't be written doesn't keep the others from being written: cameras of
    // a model differ in their options.
    for (const auto& note : notes) {
        errors.emplace_back(note.c_str());
    }
}

}  // namespace

const std::string CFeaturePersistance::FILE_VERSION_KEY = "FileVersion";
const std::string CFeaturePersistance::DEVICE_MODEL_KEY = "DeviceModelName";

CFeaturePersistance::CFeaturePersistance(CNodeMapRef& remote, CNodeMapRef& local,
                                         CNodeMapRef& stream)
    : m_nodeMaps{&remote, &local, &stream} {
    for (const CNodeMapRef* const nodeMap : m_nodeMaps) {
        if (nodeMap->GetMap() == nullptr) {
            throw std::runtime_error("Invalid feature node map");
        }
    }
}

void CFeaturePersistance::ExportFeaturesToStream(std::ostream& target) const {
    try {
        __Export(target);
    } catch (const GenericException& error) {
        OV_RAISE(CUnexpectedError, error.GetDescription());
    }
}

std::vector<std::string> CFeaturePersistance::ImportFeaturesFromStream(std::istream& source,
                                                                       bool verify) const {
    try {
        return __Import(ReadAll(source), verify);
    } catch (const GenericException& error) {
        OV_RAISE(CUnexpectedError, error.GetDescription());
    }
}

void CFeaturePersistance::__Export(std::ostream& target) const {
    target << FILE_VERSION_KEY << ": " << kFileVersion << '\n';
    target << DEVICE_MODEL_KEY << ": " << __GetDeviceModelFromDevice() << '\n';
    for (size_t i = 0; i < m_nodeMaps.size(); ++i) {
        // Composed apart: a node that fails leaves no half part in the target.
        std::ostringstream part;
        part << __GetSeperatorString(kTitles[i]);
        CFeatureBag bag;
        bag.StoreToBag(m_nodeMaps[i]->GetMap());
        part << bag;
        target << part.str();
    }
}

std::vector<std::string> CFeaturePersistance::__Import(const std::string& text, bool verify) const {
    const std::vector<std::string> parts = __SplitterFeatureString(text);
    // The header, and a part for each map.
    if (parts.size() != m_nodeMaps.size() + 1) {
        throw std::runtime_error("Invalid feature file format");
    }
    __CheckHeader(parts.front());
    std::vector<std::string> errors;
    for (size_t i = 0; i < m_nodeMaps.size(); ++i) {
        LoadPart(parts[i + 1], *m_nodeMaps[i], verify, errors);
    }
    return errors;
}

void CFeaturePersistance::__CheckHeader(const std::string& header) const {
    const std::string version = __GetStringByKey(header, FILE_VERSION_KEY);
    if (version != kFileVersion) {
        throw std::runtime_error(COvString::MsgComposer(
            "The file with version %s is not supported. Please select a file with version smaller "
            "than or equal to %s",
            version.c_str(), kFileVersion));
    }
    const std::string fileModel = __GetStringByKey(header, DEVICE_MODEL_KEY);
    const std::string model = __GetDeviceModelFromDevice();
    // Settings of another model name features that this one may lack or mean differently.
    if (fileModel != model) {
        throw std::runtime_error(COvString::MsgComposer(
            "The device model(%s) in file is not the same as that in the device(%s)",
            fileModel.c_str(), model.c_str()));
    }
}

std::string CFeaturePersistance::__GetDeviceModelFromDevice() const {
    try {
        const GenApi_3_0_ORVANE::CPointer<GenApi_3_0_ORVANE::IValue> model(
            m_nodeMaps.front()->_GetNode(DEVICE_MODEL_KEY.c_str()));
        if (!model.IsValid()) {
            throw std::runtime_error("Failed to get device model");
        }
        return model->ToString().c_str();
    } catch (const GenericException& error) {
        OV_RAISE(CUnexpectedError, error.GetDescription());
    }
}

}  // namespace OVTLClass
