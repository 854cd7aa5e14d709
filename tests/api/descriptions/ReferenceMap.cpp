#include "ReferenceMap.h"

#include <type_traits>

#include "Base/GCException.h"
#include "GenApi/IBoolean.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"
#include "GenApi/IString.h"
#include "GenApi/Pointer.h"
#include "PowerUp.h"
#include "support/ApiTest.h"
#include "support/WhyReadOnly.h"

namespace {

using GenICam_3_0_ORVANE::GenericException;
using namespace GenApi;  // NOLINT(google-build-using-namespace)

/// Fails with the text that the library has for the same.
void RequireSuccess(OV_STATUS status) {
    if (status != OV_STATUS_SUCCESS) {
        RUNTIME_EXCEPTION("%s", LastError::Get().message.c_str());
    }
}

FeatureValue ValueOf(IInteger& node) {
    return node.GetValue(false, true);
}

FeatureValue ValueOf(IFloat& node) {
    return node.GetValue(false, true);
}

FeatureValue ValueOf(IEnumeration& node) {
    return node.GetIntValue(false, true);
}

FeatureValue ValueOf(IBoolean& node) {
    return node.GetValue(false, true);
}

FeatureValue ValueOf(IString& node) {
    return std::string(node.GetValue(false, true).c_str());
}

FeatureValue ValueOf(IRegister& node) {
    std::vector<uint8_t> bytes(static_cast<size_t>(node.GetLength()));
    node.Get(bytes.data(), static_cast<int64_t>(bytes.size()), false, true);
    return bytes;
}

/// Calls with the interface of an identifier's type.
template <class Call>
auto WithInterface(OV_FEATURE_TYPE type, const Call& call) {
    switch (type) {
        case OV_FEATURE_TYPE_INT:
            return call(std::type_identity<IInteger>());
        case OV_FEATURE_TYPE_FLOAT:
            return call(std::type_identity<IFloat>());
        case OV_FEATURE_TYPE_ENUM:
            return call(std::type_identity<IEnumeration>());
        case OV_FEATURE_TYPE_BOOL:
            return call(std::type_identity<IBoolean>());
        case OV_FEATURE_TYPE_STRING:
            return call(std::type_identity<IString>());
        default:
            return call(std::type_identity<IRegister>());
    }
}

/// A value, or the text of the engine's failure.
template <class T, class Call>
Answer<T> AskEngine(Call call) {
    Answer<T> answer;
    try {
        answer.value = call();
    } catch (const GenericException& failure) {
        answer.status = OV_STATUS_ERROR;
        answer.message = failure.GetDescription();
    }
    return answer;
}

}  // namespace

void RawPort::Read(void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    RequireSuccess(OVReadRemoteDevicePort(m_camera, static_cast<uint64_t>(address), buffer, &size));
}

void RawPort::Write(const void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    RequireSuccess(
        OVWriteRemoteDevicePort(m_camera, static_cast<uint64_t>(address), buffer, &size));
}

ReferenceMap::ReferenceMap(OV_DEV_HANDLE camera, CNodeMapFactory& factory)
    : m_port(camera), m_map(factory.CreateNodeMap("Device", false)) {
    ConnectDevicePorts(*m_map, m_port);
}

Answer<EAccessMode> ReferenceMap::AccessMode(const Feature& feature) const {
    return AskEngine<EAccessMode>([&] {
        INode* const node = m_map->GetNode(feature.Name());
        return node == nullptr ? NI : node->GetAccessMode();
    });
}

bool ReferenceMap::HasTypeOf(const Feature& feature) const {
    INode* const node = m_map->GetNode(feature.Name());
    return WithInterface(feature.Type(), [&]<class T>(std::type_identity<T>) {
        return dynamic_cast<T*>(node) != nullptr;
    });
}

Answer<FeatureValue> ReferenceMap::Read(const Feature& feature) const {
    INode* const node = m_map->GetNode(feature.Name());
    return AskEngine<FeatureValue>([&] {
        return WithInterface(feature.Type(), [&]<class T>(std::type_identity<T>) {
            return ValueOf(dynamic_cast<T&>(*node));
        });
    });
}

bool ReferenceMap::IsSelector(const Feature& feature) const {
    const CPointer<ISelector> selector(m_map->GetNode(feature.Name()));
    return selector.IsValid() && selector->IsSelector();
}

std::string ReferenceMap::WhyFixed(const Feature& feature) const {
    return GenApi::WhyFixed(*m_map->GetNode(feature.Name()));
}
