#pragma once
/// The roll-back guard of the transport model.
///
/// A construction of several steps is a row of agencies with one commit at its
/// end: each agency's constructor does a step, and its destructor undoes it
/// unless the construction was committed.

#include <functional>

namespace OVTLClass {

/// Base of classes whose objects have an identity.
class CUnCopyable {
public:
    CUnCopyable(const CUnCopyable&) = delete;
    CUnCopyable& operator=(const CUnCopyable&) = delete;

protected:
    CUnCopyable() = default;
    ~CUnCopyable() = default;
};

/// Undoes in its destructor what the derived class's constructor did. What
/// goes wrong there is logged: no exception leaves.
class CAgency : private CUnCopyable {
public:
    /// Keeps the step for good.
    void Commit() noexcept { m_undo = nullptr; }

protected:
    CAgency() = default;
    ~CAgency();

    /// To be called as soon as the step is done. The undo runs after the
    /// derived class is gone, so it holds what it needs by value.
    void Arm(std::function<void()> undo) { m_undo = std::move(undo); }

private:
    std::function<void()> m_undo;
};

/// An agency for one place: undoes what its owner did before it.
class CRollback : public CAgency {
public:
    explicit CRollback(std::function<void()> undo) { Arm(std::move(undo)); }
};

/// Runs `action`, logs an exception of any family, and returns.
void RunLogged(const std::function<void()>& action, const char* file, int line,
               const char* function);

/// Runs one action; what it raises is logged with the place of this line.
#define OV_RUN_LOGGED(...) ::OVTLClass::RunLogged((__VA_ARGS__), __FILE__, __LINE__, __func__)

}  // namespace OVTLClass
