#pragma once
/// Walks through the combinations of the selectors of a feature.

#include <memory>
#include <vector>

#include "GenApi/IBase.h"
#include "GenApi/NodeVector.h"

namespace GenApi_3_0_ORVANE {

/// A selector, or several of them, that steps through its values like a wheel of an odometer. The
/// steps write to the device; failures are exceptions of the engine's family.
struct OV_ENGINE_API ISelectorDigit {
    /// Goes to the first value. The first call remembers the value from before.
    /// @return false if there is no value to go to
    virtual bool SetFirst() = 0;
    /// Goes to the next value.
    /// @param tick  false only asks whether there is one, and writes nothing
    /// @return false if there is none; the selector stays at the last one
    virtual bool SetNext(bool tick = true) = 0;
    /// Writes back the value that the first SetFirst remembered. Nothing happens before that
    /// call.
    virtual void Restore() = 0;
    /// Returns "Selector=Value", for people to read.
    virtual gcstring ToString() = 0;
    /// Returns the selectors, which their map owns.
    /// @param incremental  appends to the list instead of replacing it
    virtual void GetSelectorList(value_vector& list, bool incremental = false) = 0;
    virtual ~ISelectorDigit() = default;
};

/// All selectors of a feature and the selectors of those, as far as they can be read and written.
/// The first digit changes fastest.
///
/// One thread at a time uses a set. Other threads that change the same selectors spoil the walk.
class OV_ENGINE_API CSelectorSet : public ISelectorDigit {
public:
    /// Finds the selectors of a feature.
    /// @param base  a feature; the set is empty for null, and for what nothing selects
    explicit CSelectorSet(IBase* base);
    ~CSelectorSet() override;

    /// Goes to the first combination. An empty set has one combination.
    /// @return false if a selector has no value to go to; the others are at theirs
    bool SetFirst() override;
    /// Goes to the next combination.
    /// @return false if all were visited; the selectors are at their first values then. Always
    ///         false without a tick
    bool SetNext(bool tick = true) override;
    /// Restores all selectors, from the last digit to the first, whichever fails.
    /// @throws the first failure
    void Restore() override;
    /// Returns "[A=1;B=Off]", for people to read.
    gcstring ToString() override;
    /// As for ISelectorDigit.
    void GetSelectorList(value_vector& list, bool incremental = false) override;
    /// Whether nothing selects the feature.
    bool IsEmpty() const { return m_Digits.empty(); }

private:
    void Create(IBase* base);
    void ExploreSelector(IBase* base, std::vector<INode*>& list);

    std::vector<std::unique_ptr<ISelectorDigit>> m_Digits;
};

}  // namespace GenApi_3_0_ORVANE
