#pragma once

#include <vector>

#include "GenApi/ICategory.h"
#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"

namespace GenApi_3_0_ORVANE {

/// A group of features. Whoever may see one of them sees the group, so its visibility comes from
/// the features alone, whatever the description says.
class CCategoryImpl : public CNodeImpl, virtual public ICategory {
public:
    CCategoryImpl() { m_Visibility = Invisible; }

    void SetProperty(const CProperty& property) override;
    void FinalConstruct() override;
    EAccessMode InternalGetAccessMode() override;
    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfICategory; }
    void SetInvisibleIfHigher(EVisibility visibility) override;
    CCategoryImpl* AsCategory() override { return this; }

    void GetFeatures(value_vector& features) override;

private:
    void AddFeature(INodePrivate& feature);
    EAccessMode ComputeMode() const;
    void Construct();
    void TellParents();
    static void PassUp(std::vector<CCategoryImpl*> told, EVisibility visibility);

    /// Those with a value.
    NodeList m_Features;
    /// The categories that list this one. Nodes may be its parents for other reasons; their
    /// visibility doesn't depend on this one.
    std::vector<CCategoryImpl*> m_Outer;
    bool m_IsConstructed = false;
};

class CCategory : public BaseT<ValueT<NodeT<CCategoryImpl>>> {};

}  // namespace GenApi_3_0_ORVANE
