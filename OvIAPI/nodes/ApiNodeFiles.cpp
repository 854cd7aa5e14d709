// Files in a camera, by its features of file access.

#include "GenApi/FileProtocolAdapter.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureRange.h"
#include "TLClassModule/IDevice.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvString.h"
#include "api/DeviceManager.h"
#include "errors/CallbackCheck.h"
#include "errors/OVIError.h"
#include "nodes/NodeAccess.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

/// The files of a camera, for the life of the object. Nobody else works on them meanwhile.
class CCameraFiles {
public:
    CCameraFiles(COvDeviceInfo& info, const OvPlace& place)
        : m_place(place),
          m_lock(info.GetFileLock()),
          m_map(MapOfModule(info, OV_NODE_MODULE_CAMERA, place)) {
        if (!OV_ENGINE_GET(m_adapter.attach(&m_map))) {
            OV_RAISE_AT(CNotImplementedError, place, "The camera has no file access");
        }
    }

    size_t Read(const std::string& file, uint64_t offset, uint8_t* buffer, size_t size) {
        const auto opened = Open(file, std::ios_base::in);
        return static_cast<size_t>(OV_ENGINE_SET(
            m_adapter.read(reinterpret_cast<char*>(buffer), static_cast<int64_t>(offset),
                           static_cast<int64_t>(size), file.c_str())));
    }

    void Write(const std::string& file, const uint8_t* buffer, size_t size) {
        const auto opened = Open(file, std::ios_base::out);
        const int64_t written = OV_ENGINE_SET(m_adapter.write(
            reinterpret_cast<const char*>(buffer), 0, static_cast<int64_t>(size), file.c_str()));
        if (static_cast<size_t>(written) != size) {
            Raise("The camera took " + std::to_string(written) + " of " + std::to_string(size) +
                  " bytes of the file \"" + file + "\"");
        }
    }

    void Delete(const std::string& file) {
        if (!OV_ENGINE_SET(m_adapter.deleteFile(file.c_str()))) {
            Raise("The camera doesn't delete the file \"" + file + "\"");
        }
    }

private:
    /// Closes the file whatever happens, or the camera would keep it open.
    CRollback Open(const std::string& file, std::ios_base::openmode mode) {
        if (!OV_ENGINE_SET(m_adapter.openFile(file.c_str(), mode))) {
            Raise("The camera doesn't open the file \"" + file + "\"");
        }
        return CRollback([this, &file] { m_adapter.closeFile(file.c_str()); });
    }

    /// With what the camera says of it.
    [[noreturn]] void Raise(const std::string& text) {
        auto* const status = dynamic_cast<IEnumeration*>(m_map.GetNode("FileOperationStatus"));
        const std::string reason = OV_ENGINE_GET(ToStd(status->ToString(false, false)));
        OV_RAISE_AT(CUnexpectedError, m_place, text + ": " + reason);
    }

    const OvPlace m_place;
    const CAutoLock m_lock;
    INodeMap& m_map;
    FileProtocolAdapter m_adapter;
};

/// In a callback of a feature the thread holds the lock that the steps of another thread's
/// transfer wait for, and that transfer holds the lock of the files.
void CheckMayTransfer(const COvDeviceInfo& info, const OvPlace& place) {
    CheckNotInCallback(*info.GetDevice(), "transfer a file",
                       {CallbackKind::Event, CallbackKind::Feature}, place);
}

}  // namespace

OV_STATUS OvNodeReadFile(OV_DEV_HANDLE hDevice, const char* pszFile, uint64_t nOffset,
                         uint8_t* pBuffer, size_t* pnSize) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pszFile);
    OV_CHECK_POINTER(pBuffer);
    OV_CHECK_POINTER(pnSize);
    CheckMayTransfer(info, OV_HERE);
    *pnSize = CCameraFiles(info, OV_HERE).Read(pszFile, nOffset, pBuffer, *pnSize);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeWriteFile(OV_DEV_HANDLE hDevice, const char* pszFile, const uint8_t* pBuffer,
                          size_t nSize) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pszFile);
    OV_CHECK_POINTER(pBuffer);
    CheckMayTransfer(info, OV_HERE);
    CCameraFiles(info, OV_HERE).Write(pszFile, pBuffer, nSize);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeDeleteFile(OV_DEV_HANDLE hDevice, const char* pszFile) try {
    COvDeviceInfo& info = EnterCamera(hDevice, OV_HERE);
    OV_CHECK_POINTER(pszFile);
    CheckMayTransfer(info, OV_HERE);
    CCameraFiles(info, OV_HERE).Delete(pszFile);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
