#pragma once
/// A node callback that notes its calls.

#include <string>
#include <vector>

#include "GenApi/INode.h"
#include "GenApi/NodeCallback.h"

namespace EngineTest {

/// Notes its calls as "<node> inside" and "<node> outside".
class NotingCallback : public GenApi_3_0_ORVANE::CNodeCallback {
public:
    using Calls = std::vector<std::string>;

    NotingCallback(GenApi_3_0_ORVANE::INode* node, Calls& calls)
        : CNodeCallback(node), m_Calls(calls) {}
    void operator()(GenApi_3_0_ORVANE::ECallbackType type) const override {
        const bool isInside = type == GenApi_3_0_ORVANE::cbPostInsideLock;
        m_Calls.push_back(std::string(m_pNode->GetName()) + (isInside ? " inside" : " outside"));
    }
    void Destroy() override { delete this; }

    static GenApi_3_0_ORVANE::CallbackHandleType On(GenApi_3_0_ORVANE::INode& node, Calls& calls) {
        return node.RegisterCallback(new NotingCallback(&node, calls));
    }

private:
    Calls& m_Calls;
};

}  // namespace EngineTest
