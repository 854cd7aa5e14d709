#pragma once

#include "GenApi/INode.h"

namespace GenApi_3_0_ORVANE {

/// Called when a node may have changed: once with the map's lock held and once
/// after it is released. Belongs to the node that it is registered with.
class OV_ENGINE_API CNodeCallback {
public:
    explicit CNodeCallback(INode* node) : m_pNode(node) {}
    virtual ~CNodeCallback() = default;
    CNodeCallback(const CNodeCallback&) = delete;
    CNodeCallback& operator=(const CNodeCallback&) = delete;

    virtual void operator()(ECallbackType type) const = 0;
    /// Frees the callback by the means that made it. No call of it is under way;
    /// the map's lock may or may not be held.
    virtual void Destroy() = 0;

    INode* GetNode() const { return m_pNode; }

protected:
    INode* m_pNode;
};

/// Calls a member function of a client with the node.
template <class Client, class Member>
class Member_NodeCallback : public CNodeCallback {
public:
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

/// Registers a member function of a client with a node. The client must live
/// until the callback is deregistered, and until a call that another thread then
/// runs outside the lock has returned.
template <class Client, class Member>
CallbackHandleType Register(INode* node, Client& client, Member member, ECallbackType type) {
    return node->RegisterCallback(
        new Member_NodeCallback<Client, Member>(node, client, member, type));
}

/// Has the callback's node deregister it.
OV_ENGINE_API void Deregister(CallbackHandleType handle);

}  // namespace GenApi_3_0_ORVANE
