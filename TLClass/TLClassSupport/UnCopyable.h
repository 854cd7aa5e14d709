#pragma once
/// Base of classes whose objects have an identity.

namespace OVTLClass {

class CUnCopyable {
public:
    CUnCopyable(const CUnCopyable&) = delete;
    CUnCopyable& operator=(const CUnCopyable&) = delete;

protected:
    CUnCopyable() = default;
    ~CUnCopyable() = default;
};

}  // namespace OVTLClass
