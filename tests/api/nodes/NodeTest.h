#pragma once
/// An open camera whose nodes are found by name.

#include <string>
#include <vector>

#include "OvINodes.h"
#include "support/ApiTest.h"

/// The content of a call in the two-call form, without a text's terminating zero.
template <class Call>
std::string TextFrom(const Call& call) {
    size_t size = 0;
    EXPECT_OV_OK(call(nullptr, &size));
    std::string text(size, '?');
    EXPECT_OV_OK(call(text.data(), &size));
    EXPECT_EQ(text.size(), size);
    if (text.empty() || text.back() != '\0') {
        ADD_FAILURE() << "no terminating zero";
        return text;
    }
    text.pop_back();
    return text;
}

template <class T, class Call>
std::vector<T> ArrayFrom(const Call& call) {
    size_t number = 0;
    EXPECT_OV_OK(call(nullptr, &number));
    std::vector<T> elements(number);
    EXPECT_OV_OK(call(elements.data(), &number));
    EXPECT_EQ(elements.size(), number);
    return elements;
}

class NodeTest : public OpenCameraTest {
protected:
    OV_NODE_HANDLE Node(const std::string& name,
                        OV_NODE_MODULE module = OV_NODE_MODULE_CAMERA) const {
        OV_NODE_HANDLE node = 0;
        EXPECT_OV_OK(OvNodeFind(camera, module, name.c_str(), &node));
        return node;
    }

    static std::string Text(OV_NODE_HANDLE node, OV_NODE_TEXT text) {
        return TextFrom(
            [&](char* memory, size_t* size) { return OvNodeGetText(node, text, memory, size); });
    }
    static std::string Name(OV_NODE_HANDLE node) { return Text(node, OV_NODE_TEXT_NAME); }
    static std::string Value(OV_NODE_HANDLE node) {
        return TextFrom(
            [&](char* memory, size_t* size) { return OvNodeGetAsText(node, memory, size); });
    }

    static std::vector<std::string> Names(const std::vector<OV_NODE_HANDLE>& nodes) {
        std::vector<std::string> names;
        for (const OV_NODE_HANDLE node : nodes) {
            names.push_back(Name(node));
        }
        return names;
    }
    std::vector<OV_NODE_HANDLE> All(OV_NODE_MODULE module = OV_NODE_MODULE_CAMERA) const {
        return ArrayFrom<OV_NODE_HANDLE>([&](OV_NODE_HANDLE* nodes, size_t* number) {
            return OvNodeGetAll(camera, module, nodes, number);
        });
    }
    std::vector<std::string> Related(const std::string& name, OV_NODE_RELATION relation) const {
        return Names(ArrayFrom<OV_NODE_HANDLE>([&](OV_NODE_HANDLE* nodes, size_t* number) {
            return OvNodeGetRelated(Node(name), relation, nodes, number);
        }));
    }
    static OV_NODE_INFO Info(OV_NODE_HANDLE node) {
        OV_NODE_INFO info{};
        EXPECT_OV_OK(OvNodeGetInfo(node, &info));
        return info;
    }

    /// Opens a camera with that description instead.
    void Describe(const std::string& description) {
        ASSERT_OV_OK(OVCloseDevice(camera));
        producer.SetDescription("Remote", "Own.xml", description.data(), description.size());
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }
    void WriteWord(uint64_t address, uint32_t value) const {
        producer.WriteMemory(0, 0, address, &value, sizeof value);
    }
};
