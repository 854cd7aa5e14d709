#pragma once
/// The settings of a device as names and texts, to be saved and written back.

#include "GenApi/INodeMap.h"
#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

/// Receives features one by one.
struct OV_ENGINE_API IPersistScript {
    /// Receives a text about where the features come from.
    virtual void SetInfo(const gcstring& info) = 0;
    /// Receives the next feature.
    virtual void PersistFeature(IValue& feature) = 0;

protected:
    ~IPersistScript() = default;
};

/// Holds the streamable features of a device for every combination of their selectors, in the
/// order in which they are to be written back: selectors come before the features that they
/// select.
///
/// A bag belongs to one thread. It uses the public operations of nodes, each of which takes the
/// map's lock for itself. So other threads that change selectors meanwhile spoil the result.
class OV_ENGINE_API CFeatureBag : public IPersistScript {
public:
    /// Makes an empty bag.
    /// @param bagName  of the set of settings that the bag will hold; may be empty
    explicit CFeatureBag(const gcstring& bagName = gcstring());

    /// Sets the text about where the settings come from.
    void SetInfo(const gcstring& info) override;
    /// Appends the feature's name and value.
    void PersistFeature(IValue& feature) override;
    /// Destroys a bag that was made with new.
    virtual void Destroy();
    virtual ~CFeatureBag();

    CFeatureBag(const CFeatureBag&) = default;
    CFeatureBag& operator=(const CFeatureBag&) = default;

    /// Appends the features of a device, and sets its text as info. The selectors are left as
    /// they were found, after a failure too.
    /// @param maxEntries  how many entries to append at most; -1 for all
    /// @param filter      the names of the features to take; null for all
    /// @return the number of entries appended
    /// @throws InvalidArgumentException without a map; what nodes throw passes through
    int64_t StoreToBag(INodeMap* nodeMap, int64_t maxEntries = -1,
                       const gcstring_vector* filter = nullptr);
    /// Writes the values to a device, in order. A failure is noted and doesn't stop the rest.
    /// @param verify  writes a second time with all checks, and compares what the device then has
    /// @param errors  the notes are appended to it; may be null
    /// @return whether there was nothing to note
    /// @throws InvalidArgumentException without a map
    bool LoadFromBag(INodeMap* nodeMap, bool verify = true, gcstring_vector* errors = nullptr);

    /// Appends an entry.
    void Append(const gcstring& name, const gcstring& value);
    /// Returns the name of the bag.
    const gcstring& GetBagName() const { return m_BagName; }
    /// Returns the text about where the settings come from.
    const gcstring& GetInfo() const { return m_Info; }
    /// Returns the names of the features, one for each value.
    const gcstring_vector& GetNames() const { return m_Names; }
    /// Returns the values as text, one for each name.
    const gcstring_vector& GetValues() const { return m_Values; }

    /// Whether both hold the same entries. Name and info may differ.
    bool operator==(const CFeatureBag& other) const;
    /// The opposite.
    bool operator!=(const CFeatureBag& other) const { return !(*this == other); }

private:
    friend class CFeatureBagger;

    int64_t StoreToBagInternal(INodeMap& nodeMap, int64_t maxEntries,
                               const gcstring_vector* filter);
    bool LoadFromBagInternal(INodeMap& nodeMap, bool verify, gcstring_vector* errors) const;
    void RequireWhole() const;

    gcstring m_BagName;
    gcstring_vector m_Names;
    gcstring_vector m_Values;
    gcstring m_Info;
};

}  // namespace GenApi_3_0_ORVANE
