#pragma once

#include "GenApi/INode.h"

namespace GenApi_3_0_ORVANE {

/// A call that a node makes when its value or its access mode may have changed.
///
/// The node calls it twice for each change: with the map's lock held, and again after the lock
/// was released, where it may block. What it throws leaves through the operation that caused the
/// change. It belongs to the node that it is registered with.
class OV_ENGINE_API CNodeCallback {
public:
    /// @param node  the node to register it with
    explicit CNodeCallback(INode* node) : m_pNode(node) {}
    virtual ~CNodeCallback() = default;
    CNodeCallback(const CNodeCallback&) = delete;
    CNodeCallback& operator=(const CNodeCallback&) = delete;

    /// Called for each change, once with each type. Most callbacks do something for one of them
    /// and nothing for the other.
    virtual void operator()(ECallbackType type) const = 0;
    /// Frees the callback by the means that made it. The node calls this once, when no call of
    /// the callback is under way; the map's lock may or may not be held.
    virtual void Destroy() = 0;

    /// Returns the node.
    INode* GetNode() const { return m_pNode; }

protected:
    /// The node that the callback is registered with; it isn't owned.
    INode* m_pNode;
};

/// Calls a member function of a client with the node.
template <class Client, class Member>
class Member_NodeCallback : public CNodeCallback {
public:
    /// @param type  of the two calls for each change, the one to pass on
    Member_NodeCallback(INode* node, Client& client, Member member, ECallbackType type)
        : CNodeCallback(node), m_Client(client), m_Member(member), m_Type(type) {}

    void operator()(ECallbackType type) const override {
        if (type == m_Type) {
            (m_Client.*m_Member)(m_pNode);
        }
    }
    void Destroy() override { delete this; }

private:
    Client& m_Client;
    Member m_Member;
    ECallbackType m_Type;
};

/// Registers a member function of a client with a node. The client must live until the callback
/// is deregistered, and until calls that other threads then still run have returned.
/// @param type  whether the member function is called with the map's lock held or after it
/// @return the handle for Deregister
template <class Client, class Member>
CallbackHandleType Register(INode* node, Client& client, Member member, ECallbackType type) {
    return node->RegisterCallback(
        new Member_NodeCallback<Client, Member>(node, client, member, type));
}

/// Removes a callback from its node and destroys it. Nothing happens for 0.
OV_ENGINE_API void Deregister(CallbackHandleType handle);

}  // namespace GenApi_3_0_ORVANE
