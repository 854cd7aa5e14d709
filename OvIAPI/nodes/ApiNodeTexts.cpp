// Strings, registers, and values of any type as text.

#include <cstring>

#include "GenApi/ICommand.h"
#include "GenApi/INode.h"
#include "GenApi/IRegister.h"
#include "GenApi/IString.h"
#include "TLClassFeature/EngineCall.h"
#include "TLClassFeature/FeatureRange.h"
#include "api/DeviceManager.h"
#include "api/FeatureAccess.h"
#include "errors/OVIError.h"
#include "nodes/CopyOut.h"
#include "nodes/NodeAccess.h"
#include "nodes/NodeCommand.h"

using namespace GenApi_3_0_ORVANE;
using namespace OVTLClass;

namespace {

/// After the camera has accepted a text.
void NoteText(const CNodeRecord& record, const char* text) {
    if (record.role == NodeRole::UserId) {
        TakeUserId(record.camera, text);
    }
}

/// After the camera has accepted bytes. They may be the beginning of a text only, so that the rest
/// is asked for.
void NoteBytes(const CNodeRecord& record) {
    auto* const text = record.As<IString>();
    if (record.role == NodeRole::UserId && text != nullptr &&
        OV_ENGINE_GET(record.node.GetAccessMode()) == RW) {
        NoteText(record, OV_ENGINE_GET(ToStd(text->GetValue(false, false))).c_str());
    }
}

void ExecuteByText(const CNodeRecord& record, const char* text, const OvPlace& place) {
    if (std::strcmp(text, "1") != 0 && std::strcmp(text, "true") != 0) {
        OV_RAISE_AT(
            CInvalidParameterError, place,
            "A command is executed by \"1\" or \"true\", not by \"" + std::string(text) + "\"");
    }
    ExecuteCommand(record, place);
}

std::vector<uint8_t> BytesOf(IRegister& node) {
    // Into own memory: a read that fails halfway must not change the caller's.
    std::vector<uint8_t> bytes(static_cast<size_t>(node.GetLength()));
    node.Get(bytes.data(), static_cast<int64_t>(bytes.size()), false, false);
    return bytes;
}

}  // namespace

OV_STATUS OvNodeGetAsText(OV_NODE_HANDLE hNode, char* pszValue, size_t* pnSize) try {
    const CNodeAccess<IValue> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    const OvPlace place = OV_HERE;
    return StatusOfRead(OV_ENGINE_GET(node.ReadText(
        enginePlace, [&](const gcstring& text) { CopyOut(text, pszValue, pnSize, place); })));
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeSetAsText(OV_NODE_HANDLE hNode, const char* pszValue) try {
    const CNodeAccess<IValue> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pszValue);
    if (node.Record().As<ICommand>() != nullptr) {
        ExecuteByText(node.Record(), pszValue, OV_HERE);
    } else {
        OV_ENGINE_SET(node.Ask().FromString(pszValue, true));
        NoteText(node.Record(), pszValue);
    }
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetString(OV_NODE_HANDLE hNode, char* pszValue, size_t* pnSize) try {
    const CNodeAccess<IString> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    const OvPlace place = OV_HERE;
    return StatusOfRead(OV_ENGINE_GET(node.Read(
        enginePlace, [&](const gcstring& text) { CopyOut(text, pszValue, pnSize, place); })));
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeSetString(OV_NODE_HANDLE hNode, const char* pszValue) try {
    const CNodeAccess<IString> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pszValue);
    OV_ENGINE_SET(node.Ask().SetValue(pszValue, true));
    NoteText(node.Record(), pszValue);
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetStringMaxSize(OV_NODE_HANDLE hNode, size_t* pnSize) try {
    const CNodeAccess<IString> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    *pnSize = static_cast<size_t>(OV_ENGINE_GET(node.Ask().GetMaxLength())) + 1;
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetRegister(OV_NODE_HANDLE hNode, uint8_t* pBuffer, size_t* pnSize) try {
    const CNodeAccess<IRegister> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pnSize);
    if (pBuffer == nullptr) {
        *pnSize = static_cast<size_t>(OV_ENGINE_GET(node.Ask().GetLength()));
    } else {
        CopyOut(OV_ENGINE_GET(BytesOf(node.Ask())), pBuffer, pnSize, OV_HERE);
    }
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeSetRegister(OV_NODE_HANDLE hNode, const uint8_t* pBuffer, size_t nSize) try {
    const CNodeAccess<IRegister> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pBuffer);
    OV_ENGINE_SET(node.Ask().Set(pBuffer, static_cast<int64_t>(nSize), true));
    NoteBytes(node.Record());
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}

OV_STATUS OvNodeGetRegisterPlace(OV_NODE_HANDLE hNode, int64_t* pnAddress, int64_t* pnLength) try {
    const CNodeAccess<IRegister> node(hNode, OV_HERE);
    OV_CHECK_POINTER(pnAddress);
    OV_CHECK_POINTER(pnLength);
    IRegister& bytes = node.Ask();
    const int64_t address = OV_ENGINE_GET(bytes.GetAddress());
    *pnLength = OV_ENGINE_GET(bytes.GetLength());
    *pnAddress = address;
    return OV_STATUS_SUCCESS;
} catch (...) {
    return CaughtStatus();
}
