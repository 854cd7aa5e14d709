#pragma once
/// Invalidations that follow from one another along more ways than the lists of
/// dependents: over bytes that registers share, and down to where values come
/// from.

#include <cstdint>
#include <vector>

namespace GenApi_3_0_ORVANE {

struct INodePrivate;

/// One that has made a value of a port's bytes.
struct IBytesUser {
    /// The device may have other bytes by now.
    virtual void ForgetBytes() = 0;

protected:
    ~IBytesUser() = default;
};

/// Runs them one after the other and never one within another: a description
/// decides how long a row they make, and the stack would have to bear it.
class CInvalidationQueue {
public:
    /// Whether the owner of the mark is entered for the first time in the run
    /// under way, or in the one that comes next.
    bool IsNew(uint64_t& mark);
    void AddUser(IBytesUser& user) { m_Users.push_back(&user); }
    void AddNode(INodePrivate& node) { m_Nodes.push_back(&node); }
    /// Tells the users, and sets the nodes invalid with their dependents. Within
    /// a run this is left to that run.
    void Run();

private:
    class Running;

    std::vector<IBytesUser*> m_Users;
    std::vector<INodePrivate*> m_Nodes;
    bool m_IsRunning = false;
    uint64_t m_NumRuns = 0;
};

}  // namespace GenApi_3_0_ORVANE
