#include "camera/FeatureTree.h"

#include <unordered_set>

#include "Base/GCException.h"
#include "GenApi/ICategory.h"
#include "GenApi/INode.h"
#include "GenApi/INodeMap.h"
#include "TLClassSupport/OvLog.h"

using namespace GenApi_3_0_ORVANE;
using GenICam_3_0_ORVANE::BadAllocException;
using GenICam_3_0_ORVANE::GenericException;

namespace {

void Collect(ICategory& category, std::vector<INode*>& features) {
    value_vector values;
    category.GetFeatures(values);
    for (IValue* const value : values) {
        features.push_back(value->GetNode());
    }
}

}  // namespace

std::vector<INode*> FeaturesOfCategory(INode& node) {
    std::vector<INode*> features;
    auto* const category = dynamic_cast<ICategory*>(&node);
    if (category == nullptr) {
        return features;
    }
    try {
        Collect(*category, features);
    } catch (const BadAllocException&) {
        throw;
    } catch (const GenericException& error) {
        // The rest of the tree is there for all that.
        OV_LOG(error.what());
    }
    return features;
}

std::vector<INode*> FeaturesInTreeOrder(INodeMap& map) {
    std::vector<INode*> tree;
    std::unordered_set<const INode*> visited;
    std::vector<INode*> next;
    if (INode* const root = map.GetNode("Root")) {
        next.push_back(root);
    }
    // A stack of its own: descriptions may nest as deep as they like, and may hold circles.
    while (!next.empty()) {
        INode* const node = next.back();
        next.pop_back();
        if (visited.insert(node).second) {
            tree.push_back(node);
            const std::vector<INode*> content = FeaturesOfCategory(*node);
            next.insert(next.end(), content.rbegin(), content.rend());
        }
    }
    return tree;
}
