#pragma once
/// Walks through the combinations of the selectors of a feature.

#include <memory>
#include <vector>

#include "GenApi/IBase.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

/// A selector, or several of them, stepped through all values like the wheel of
/// an odometer. The steps write to the device; a failure is an exception of the
/// engine's family.
struct OV_ENGINE_API ISelectorDigit {
    /// Remembers the value at the first use and goes to the first one. False
    /// when there is none.
    virtual bool SetFirst() = 0;
    /// Goes to the next value. False behind the last one, where the selector
    /// stays.
    /// @param tick  false for a look that writes nothing
    virtual bool SetNext(bool tick = true) = 0;
    /// Writes what was remembered; nothing before the first use.
    virtual void Restore() = 0;
    /// For people to read: "Selector=Value".
    virtual gcstring ToString() = 0;
    /// The selectors, which their map owns.
    /// @param incremental  appends to the list instead of replacing it
    virtual void GetSelectorList(value_vector& list, bool incremental = false) = 0;
    virtual ~ISelectorDigit() = default;
};

/// All selectors of a feature and theirs in turn, as far as they can be read
/// and written. The first digit runs fastest.
///
/// Not for use by several threads at the same time; traffic of others on the
/// same selectors disturbs the walk.
class OV_ENGINE_API CSelectorSet : public ISelectorDigit {
public:
    /// Explores the selectors of a feature. A set of something that nothing
    /// selects, null for example, is empty.
    explicit CSelectorSet(IBase* base);
    ~CSelectorSet() override;

    /// False when a selector has no value to go to; the others have gone to
    /// theirs. An empty set has one combination.
    bool SetFirst() override;
    /// False when all combinations were seen; the selectors are at their first
    /// values then. Without a tick always false.
    bool SetNext(bool tick = true) override;
    /// From the last digit to the first, all of them, whichever fails; the
    /// first failure is told then.
    void Restore() override;
    /// "[A=1;B=Off]".
    gcstring ToString() override;
    void GetSelectorList(value_vector& list, bool incremental = false) override;
    bool IsEmpty() const { return m_Digits.empty(); }

private:
    void Create(IBase* base);
    void ExploreSelector(IBase* base, std::vector<INode*>& list);

    std::vector<std::unique_ptr<ISelectorDigit>> m_Digits;
};

}  // namespace GenApi_3_0_ORVANE
