#pragma once
/// Invalidations that follow from one another by other ways than the lists of dependents: through
/// bytes that registers share, and down to the sources of values.

#include <cstdint>
#include <vector>

namespace GenApi_3_0_ORVANE {

struct INodePrivate;

/// Something that has made a value of a port's bytes.
struct IBytesUser {
    /// The device may have other bytes now.
    virtual void ForgetBytes() = 0;

protected:
    ~IBytesUser() = default;
};

/// Runs invalidations one after the other and never within one another: a description decides how
/// long a row they make, which the stack couldn't hold.
class CInvalidationQueue {
public:
    /// Whether the owner of the mark is entered for the first time in the present run, or in the
    /// next one if there is none.
    bool IsNew(uint64_t& mark);
    void AddUser(IBytesUser& user) { m_Users.push_back(&user); }
    void AddNode(INodePrivate& node) { m_Nodes.push_back(&node); }
    /// Calls the users, and sets the nodes invalid with their dependents. Within a run, that run
    /// does it.
    void Run();

private:
    class Running;

    std::vector<IBytesUser*> m_Users;
    std::vector<INodePrivate*> m_Nodes;
    bool m_IsRunning = false;
    uint64_t m_NumRuns = 0;
};

}  // namespace GenApi_3_0_ORVANE
