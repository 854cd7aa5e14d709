#pragma once
/// A node through one of its interfaces.

#include "Base/GCException.h"
#include "GenApi/IBase.h"

namespace GenApi_3_0_ORVANE {

/// Borrows a node, which its map owns. Holds nothing when there is no node or
/// when the node has no interface T; to use that raises LogicalErrorException
/// "NULL pointer dereferenced".
template <class T, class B = IBase>
class CPointer {
public:
    CPointer() = default;
    CPointer(B* base)  // NOLINT(google-explicit-constructor): as for plain pointers
        : m_pT(dynamic_cast<T*>(base)) {}

    bool IsValid() const { return m_pT != nullptr; }
    T& operator*() const {
        if (m_pT == nullptr) {
            LOGICAL_ERROR_EXCEPTION("NULL pointer dereferenced");
        }
        return *m_pT;
    }
    T* operator->() const { return &**this; }
    /// Null when nothing is held.
    operator T*() const { return m_pT; }  // NOLINT(google-explicit-constructor)

private:
    T* m_pT = nullptr;
};

}  // namespace GenApi_3_0_ORVANE
