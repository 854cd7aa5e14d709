#pragma once
/// All settings that a device can hold, with its user and sequencer sets.

#include <iterator>
#include <memory>
#include <vector>

#include "GenApi/FeatureBag.h"

namespace GenApi_3_0_ORVANE {

/// Keeps a bag for the current settings ("All"), one for each user set ("UserSet.<symbolic>") and
/// one for each sequencer set ("SequencerSet.<number>"). Owns its bags; belongs to one thread.
class OV_ENGINE_API CFeatureBagger {
    using Bags = std::vector<std::unique_ptr<CFeatureBag>>;

public:
    /// Visits the bags in order. The bagger owns them.
    class const_iterator {
    public:
        /// @name What standard algorithms expect of an iterator
        /// @{
        using iterator_category = std::input_iterator_tag;
        using value_type = CFeatureBag*;
        using difference_type = std::ptrdiff_t;
        using pointer = CFeatureBag* const*;
        using reference = CFeatureBag*;

        const_iterator() = default;
        explicit const_iterator(Bags::const_iterator position) : m_Position(position) {}
        CFeatureBag* operator*() const { return m_Position->get(); }
        const_iterator& operator++() {
            ++m_Position;
            return *this;
        }
        const_iterator operator++(int) { return const_iterator(m_Position++); }
        bool operator==(const const_iterator& other) const {
            return m_Position == other.m_Position;
        }
        bool operator!=(const const_iterator& other) const { return !(*this == other); }
        /// @}

    private:
        Bags::const_iterator m_Position;
    };

    /// Makes a bagger without bags.
    CFeatureBagger();
    virtual ~CFeatureBagger();

    /// Sets the text that new bags get as info.
    void SetInfo(const gcstring& info) { m_Info = info; }
    /// Appends bags with what a device holds. The device loads its sets one after the other for
    /// that; at the end, after a failure too, the settings from before are written back.
    /// @param maxEntries  how many entries each bag takes at most; -1 for all
    /// @return the number of entries in the new bags
    /// @throws InvalidArgumentException without a map; what nodes throw passes through
    int64_t Bag(INodeMap* nodeMap, bool bagAll = true, bool bagUserSets = true,
                bool bagSequencerSets = true, int64_t maxEntries = -1);
    /// Writes the bags of sets to a device and has it save each set. The bag "All" comes last, so
    /// that its settings are the current ones afterwards. The default user set belongs to the
    /// device maker and is left alone.
    /// @param verify  as for CFeatureBag::LoadFromBag
    /// @param errors  as for CFeatureBag::LoadFromBag
    /// @return whether there was nothing to note
    /// @throws InvalidArgumentException without a map
    bool UnBag(INodeMap* nodeMap, bool verify = true, gcstring_vector* errors = nullptr);

    /// Appends an empty bag and returns it. The bagger owns it.
    CFeatureBag* AddBag(const gcstring& bagName);
    /// Deletes all bags.
    void DeleteAllBags() { m_Bags.clear(); }

    /// Returns the position of the first bag.
    const_iterator begin() const { return const_iterator(m_Bags.begin()); }
    /// Returns the position after the last bag.
    const_iterator end() const { return const_iterator(m_Bags.end()); }
    /// Returns the number of bags.
    size_t size() const { return m_Bags.size(); }
    /// Returns a bag by its position.
    /// @throws OutOfRangeException beyond the last bag
    CFeatureBag* at(size_t index) const;

private:
    struct SetNodes;
    static const SetNodes kUserSets;
    static const SetNodes kSequencerSets;

    int64_t BagAsked(INodeMap& nodeMap, bool bagAll, bool bagUserSets, bool bagSequencerSets,
                     int64_t maxEntries);
    template <class Digit>
    int64_t BagSets(INodeMap& nodeMap, const SetNodes& nodes, int64_t maxEntries);
    template <class SelectorPointer>
    static bool UnBagCustomAction(INodeMap& nodeMap, const CFeatureBag& bag, const SetNodes& nodes,
                                  bool verify, gcstring_vector* errors);

    Bags m_Bags;
    gcstring m_Info;
};

}  // namespace GenApi_3_0_ORVANE
