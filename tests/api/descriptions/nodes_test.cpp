/// @file
/// Whatever a description says, nodes by name say it.

#include <set>

#include "Base/GCException.h"
#include "FileCameraTest.h"
#include "GenApi/ICategory.h"
#include "OvINodes.h"

namespace {

using GenICam_3_0_ORVANE::GenericException;
using Names = std::vector<std::string>;

/// The categories and features of a map as its tree has them, by the engine alone.
void CollectTree(GenApi::INode& node, std::set<GenApi::INode*>& visited, Names& names) {
    if (!visited.insert(&node).second) {
        return;
    }
    names.emplace_back(node.GetName().c_str());
    if (auto* const category = dynamic_cast<GenApi::ICategory*>(&node)) {
        GenApi::value_vector features;
        category->GetFeatures(features);
        for (GenApi::IValue* const feature : features) {
            CollectTree(*feature->GetNode(), visited, names);
        }
    }
}

/// What was returned or refused, as a text.
std::string Outcome(OV_STATUS status, const std::string& text) {
    return status == OV_STATUS_SUCCESS ? "= " + text : "! " + LastError::Get().message;
}

template <class Call>
std::string OutcomeOfEngine(const Call& call) {
    try {
        return "= " + call();
    } catch (const GenericException& failure) {
        return std::string("! ") + failure.GetDescription();
    }
}

std::string ReadByHandle(OV_NODE_HANDLE node) {
    size_t size = 0;
    OV_STATUS status = OvNodeGetAsText(node, nullptr, &size);
    std::string text(size, '\0');
    if (status == OV_STATUS_SUCCESS) {
        status = OvNodeGetAsText(node, text.data(), &size);
    }
    return Outcome(status, text.c_str());
}

std::string NameOf(OV_NODE_HANDLE node) {
    char name[256] = {};
    size_t size = sizeof name;
    EXPECT_OV_OK(OvNodeGetText(node, OV_NODE_TEXT_NAME, name, &size));
    return name;
}

/// Holds the nodes of a camera against another map of its description.
class NodeComparison {
public:
    explicit NodeComparison(const ReferenceMap& reference) : m_map(reference.Map()) {}

    void ExpectTree(const std::vector<OV_NODE_HANDLE>& nodes) const {
        Names expected;
        std::set<GenApi::INode*> visited;
        if (GenApi::INode* const root = m_map.GetNode("Root")) {
            CollectTree(*root, visited, expected);
        }
        Names names;
        for (const OV_NODE_HANDLE node : nodes) {
            names.push_back(NameOf(node));
        }
        EXPECT_EQ(names, expected);
    }

    void Compare(OV_NODE_HANDLE handle) {
        const std::string name = NameOf(handle);
        SCOPED_TRACE(name);
        GenApi::INode& node = *m_map.GetNode(name.c_str());
        OV_NODE_INFO info{};
        EXPECT_OV_OK(OvNodeGetInfo(handle, &info));
        EXPECT_EQ(info.access, node.GetAccessMode());
        EXPECT_EQ(info.visibility, node.GetVisibility());
        auto* const value = dynamic_cast<GenApi::IValue*>(&node);
        const bool hasValue = value != nullptr && info.type != OV_NODE_TYPE_CATEGORY &&
                              info.type != OV_NODE_TYPE_COMMAND;
        if (hasValue) {
            ++m_features;
            CompareValue(handle, info.access, *value);
        }
    }

    void Print(const std::string& name) const {
        std::printf("%-30s features %4u, read %4u, refused %3u, set back %4u, refused %3u\n",
                    name.c_str(), m_features, m_read, m_unread, m_set, m_unset);
    }

private:
    void CompareValue(OV_NODE_HANDLE handle, OV_NODE_ACCESS access, GenApi::IValue& value) {
        if (access != OV_NODE_ACCESS_READ_ONLY && access != OV_NODE_ACCESS_READ_WRITE) {
            return;
        }
        const std::string read = ReadByHandle(handle);
        EXPECT_EQ(read, OutcomeOfEngine(
                            [&] { return std::string(value.ToString(false, true).c_str()); }));
        const bool isRead = read[0] == '=';
        ++(isRead ? m_read : m_unread);
        if (isRead && access == OV_NODE_ACCESS_READ_WRITE) {
            CompareSetting(handle, value, read.substr(2));
        }
    }

    /// The value that it has, so that the camera stays as it is.
    void CompareSetting(OV_NODE_HANDLE handle, GenApi::IValue& value, const std::string& text) {
        const std::string set = Outcome(OvNodeSetAsText(handle, text.c_str()), "");
        EXPECT_EQ(set, OutcomeOfEngine([&] {
                      value.FromString(text.c_str(), true);
                      return std::string();
                  }));
        ++(set[0] == '=' ? m_set : m_unset);
    }

    GenApi::INodeMap& m_map;
    unsigned m_features = 0;
    unsigned m_read = 0;
    unsigned m_unread = 0;
    unsigned m_set = 0;
    unsigned m_unset = 0;
};

TEST_P(FileCamera, NodesAreListedReadAndSetBackAsByAMapWithoutACache) {
    const ReferenceMap reference = Reference();
    NodeComparison comparison(reference);
    size_t number = 0;
    ASSERT_OV_OK(OvNodeGetAll(camera, OV_NODE_MODULE_CAMERA, nullptr, &number));
    std::vector<OV_NODE_HANDLE> nodes(number);
    ASSERT_OV_OK(OvNodeGetAll(camera, OV_NODE_MODULE_CAMERA, nodes.data(), &number));
    comparison.ExpectTree(nodes);
    for (const OV_NODE_HANDLE node : nodes) {
        comparison.Compare(node);
    }
    comparison.Print(GetParam());
}

}  // namespace
