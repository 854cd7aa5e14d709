#include "TLClassModule/GcObject.h"

#include <algorithm>

namespace OVTLClass {

namespace {

auto IsObject(const CGcObject* object) {
    return [object](const std::shared_ptr<CGcObject>& child) { return child.get() == object; };
}

}  // namespace

CGcObject::CGcObject(std::shared_ptr<const CGenTLLib> lib) : m_lib(std::move(lib)), m_xml(*m_lib) {}

CGcObject::~CGcObject() = default;

std::shared_ptr<CGcObject> CGcObject::GetChild(const CGcObject* child) {
    const CAutoLock lock(m_childLock);
    const auto found = std::find_if(m_children.begin(), m_children.end(), IsObject(child));
    return found == m_children.end() ? nullptr : *found;
}

std::shared_ptr<CGcObject> CGcObject::__GetChildAt(size_t index) {
    // One at a time, so that no copy of the list is needed where memory may be short.
    const CAutoLock lock(m_childLock);
    return index < m_children.size() ? m_children[index] : nullptr;
}

void CGcObject::_AddChild(std::shared_ptr<CGcObject> child) {
    const CAutoLock lock(m_childLock);
    m_children.push_back(std::move(child));
}

void CGcObject::_RemoveChild(const CGcObject* child) {
    const CAutoLock lock(m_childLock);
    m_children.erase(std::remove_if(m_children.begin(), m_children.end(), IsObject(child)),
                     m_children.end());
}

void CGcObject::_ClearChildrenList() {
    _UpdateChildrenList({});
}

void CGcObject::_UpdateChildrenList(std::vector<std::shared_ptr<CGcObject>> children) {
    // The old children die after the lock is released: a child's end may reach
    // back to its parent.
    const CAutoLock lock(m_childLock);
    m_children.swap(children);
}

void CGcObject::SetFeatureControl(std::unique_ptr<IFeatureControl> control) {
    m_featureControl = std::move(control);
}

}  // namespace OVTLClass
