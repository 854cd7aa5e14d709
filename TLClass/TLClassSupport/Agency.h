#pragma once
/// The roll-back guard of the transport model.
///
/// A construction of several steps is a row of agencies with one commit at its
/// end: each agency's constructor does a step, and its destructor undoes it
/// unless the construction was committed.

#include <array>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

#include "Base/EachFrame.h"
#include "TLClassSupport/RunLogged.h"
#include "TLClassSupport/UnCopyable.h"

namespace OVTLClass {

/// Undoes in its destructor what the derived class's constructor did. What
/// goes wrong there is logged: no exception leaves.
class CAgency : private CUnCopyable {
public:
    /// Keeps the step for good.
    void Commit() noexcept { __Finish(false); }

protected:
    CAgency() = default;
    ~CAgency() { __Finish(true); }

    /// To be called as soon as the step is done. The undo runs after the
    /// derived class is gone, so it holds what it needs by value. It is kept in
    /// place: if there were no memory for it, the step would stay done.
    template <class Undo>
    void Arm(Undo undo) noexcept {
        // Both sides are the same for some undos.
        // NOLINTNEXTLINE(misc-redundant-expression)
        static_assert(sizeof(Undo) <= kRoom && alignof(Undo) <= alignof(void*));
        static_assert(std::is_nothrow_move_constructible_v<Undo>);
        Commit();
        new (m_undo.data()) Undo(std::move(undo));
        m_finish = &__FinishUndo<Undo>;
    }

private:
    static constexpr size_t kRoom = 8 * sizeof(void*);

    template <class Undo>
    OV_EACH_FRAME static void __FinishUndo(void* place, bool runs) {
        auto& kept = *static_cast<Undo*>(place);
        if (runs) {
            RunLogged(kept, __FILE__, __LINE__, "~CAgency");
        }
        std::destroy_at(&kept);
    }

    void __Finish(bool runs) noexcept {
        if (m_finish != nullptr) {
            std::exchange(m_finish, nullptr)(m_undo.data(), runs);
        }
    }

    alignas(void*) std::array<std::byte, kRoom> m_undo;
    void (*m_finish)(void* undo, bool runs) = nullptr;
};

/// An agency for one place: undoes what its owner did before it.
class CRollback : public CAgency {
public:
    template <class Undo>
    explicit CRollback(Undo undo) noexcept {
        Arm(std::move(undo));
    }
};

}  // namespace OVTLClass
