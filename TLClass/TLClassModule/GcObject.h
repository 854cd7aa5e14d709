#pragma once
/// Base of every module of the object tree: system, interface, device, stream.

#include <memory>
#include <string>
#include <vector>

#include "TLClassFeature/IFeatureControl.h"
#include "TLClassLoadTL/GenTLLib.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/OvLog.h"
#include "TLClassSupport/RunLogged.h"
#include "TLClassSupport/UnCopyable.h"
#include "TLClassXML/XMLAnalyzer.h"

namespace OVTLClass {

/// Gives a module its producer, its description with the feature control over
/// it, and its children. A parent owns its children; a child reaches its parent
/// through the shared pointer that GetChild of the parent's parent returns.
class CGcObject : public CUnCopyable {
public:
    explicit CGcObject(std::shared_ptr<const CGenTLLib> lib);
    virtual ~CGcObject();

    /// Null until the module is open. Owned by the module.
    IFeatureControl* GetFeatureControl() const { return m_featureControl.get(); }
    /// Null until the module is open. Owned by the module.
    GenApi_3_0_ORVANE::CNodeMapRef* GetNodeMapRef() const { return m_xml.GetNodeMapRef(); }
    /// The text of the module's description, empty until it is open.
    std::string GetXML() const { return m_xml.GetXML(); }

    /// The shared pointer of the child that is that very object; empty for any
    /// other object.
    std::shared_ptr<CGcObject> GetChild(const CGcObject* child);

protected:
    void _AddChild(std::shared_ptr<CGcObject> child);
    void _RemoveChild(const CGcObject* child);
    void _ClearChildrenList();
    void _UpdateChildrenList(std::vector<std::shared_ptr<CGcObject>> children);

    /// The children of the wanted type; another type is logged and left out.
    template <class T>
    std::vector<std::shared_ptr<T>> _GetGcObjectList();

    /// Calls `act` with each child of the wanted type, holding no lock and taking no
    /// memory. What it throws is logged: closing must reach its end.
    template <class T, class Act>
    void _ForEachChild(const Act& act);

    const CGenTLLib& GetLib() const { return *m_lib; }
    const std::shared_ptr<const CGenTLLib>& GetLibPointer() const { return m_lib; }
    CXMLAnalyzer& GetAnalyzer() { return m_xml; }
    CLock& GetChildLock() { return m_childLock; }
    void SetFeatureControl(std::unique_ptr<IFeatureControl> control);

private:
    /// Null beyond the last.
    std::shared_ptr<CGcObject> __GetChildAt(size_t index);

    std::shared_ptr<const CGenTLLib> m_lib;
    CXMLAnalyzer m_xml;
    std::unique_ptr<IFeatureControl> m_featureControl;
    CLock m_childLock{LockRank::Children};
    std::vector<std::shared_ptr<CGcObject>> m_children;
};

template <class T>
std::vector<std::shared_ptr<T>> CGcObject::_GetGcObjectList() {
    std::vector<std::shared_ptr<T>> list;
    const CAutoLock lock(m_childLock);
    list.reserve(m_children.size());
    for (const auto& child : m_children) {
        if (auto object = std::dynamic_pointer_cast<T>(child)) {
            list.push_back(std::move(object));
        } else {
            OV_LOG("Invalid CGcObject type");
        }
    }
    return list;
}

template <class T, class Act>
void CGcObject::_ForEachChild(const Act& act) {
    for (size_t index = 0; const auto child = __GetChildAt(index); ++index) {
        if (auto* const object = dynamic_cast<T*>(child.get())) {
            OV_RUN_LOGGED([&] { act(*object); });
        }
    }
}

}  // namespace OVTLClass
