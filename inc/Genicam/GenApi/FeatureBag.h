#pragma once
/// The settings of a device as names and texts, to be kept and written back.

#include "GenApi/INodeMap.h"
#include "GenApi/IValue.h"

namespace GenApi_3_0_ORVANE {

/// Takes features one by one.
struct OV_ENGINE_API IPersistScript {
    virtual void SetInfo(const gcstring& info) = 0;
    virtual void PersistFeature(IValue& feature) = 0;

protected:
    ~IPersistScript() = default;
};

/// Holds the streamable features of a device with every combination of their
/// selectors, in the order in which they are to be written back: before a
/// feature stand its selectors.
///
/// A bag belongs to one thread. Its walks use the public operations of nodes,
/// each of which takes the map's lock; nothing is held in between, so feature
/// traffic of other threads disturbs the selectors.
class OV_ENGINE_API CFeatureBag : public IPersistScript {
public:
    explicit CFeatureBag(const gcstring& bagName = gcstring());

    /// What the bag tells of where it comes from.
    void SetInfo(const gcstring& info) override;
    /// Appends the feature's name and value.
    void PersistFeature(IValue& feature) override;
    /// Ends a bag that was made with new.
    virtual void Destroy();
    virtual ~CFeatureBag();

    CFeatureBag(const CFeatureBag&) = default;
    CFeatureBag& operator=(const CFeatureBag&) = default;

    /// Appends the features of a device and takes the device's text as info.
    /// The selectors are left as found, after a failure too.
    /// @param maxEntries  how many entries to append at most; -1 for all
    /// @param filter      the names of the features to take; null for all
    /// @return the number of entries appended
    /// InvalidArgumentException without a map; failures of nodes as they come.
    int64_t StoreToBag(INodeMap* nodeMap, int64_t maxEntries = -1,
                       const gcstring_vector* filter = nullptr);
    /// Writes the values to a device, in order. A failure is noted and doesn't
    /// stop the rest.
    /// @param verify  writes once more with all checks, and compares
    /// @param errors  the notes are appended here; null when no one asks
    /// @return whether there was nothing to note
    /// InvalidArgumentException without a map.
    bool LoadFromBag(INodeMap* nodeMap, bool verify = true, gcstring_vector* errors = nullptr);

    /// Appends an entry that comes from elsewhere.
    void Append(const gcstring& name, const gcstring& value);
    const gcstring& GetBagName() const { return m_BagName; }
    const gcstring& GetInfo() const { return m_Info; }
    /// The names of the features, one for each value.
    const gcstring_vector& GetNames() const { return m_Names; }
    const gcstring_vector& GetValues() const { return m_Values; }

    /// Whether both hold the same entries; name and info may differ.
    bool operator==(const CFeatureBag& other) const;
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
