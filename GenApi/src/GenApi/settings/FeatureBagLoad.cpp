// Writing the settings of a bag back to a device. Failures are collected rather than thrown: one
// feature that a new firmware has lost must not keep the others from being set.

#include <unordered_set>

#include "Base/Lock.h"
#include "GenApi/FeatureBag.h"
#include "GenApi/Pointer.h"
#include "core/INodePrivate.h"
#include "settings/FeaturePersistence.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Writes the entries of a bag to a device.
class BagWriter {
public:
    BagWriter(const CFeatureBag& bag, INodeMap& nodeMap, gcstring_vector* errors)
        : m_Bag(bag), m_NodeMap(nodeMap), m_Notes(errors) {}

    /// The commands let a device put off its checks until all is written: on the way,
    /// values may not fit together.
    void WriteAll() {
        Execute("DeviceRegistersStreamingStart");
        ForEachEntry([&](const gcstring& name, const gcstring& value) { Write(name, value); });
        Execute("DeviceRegistersStreamingEnd");
    }
    void VerifyAll() {
        ForEachEntry([&](const gcstring& name, const gcstring& value) { Verify(name, value); });
    }
    void CheckAll();
    bool IsClean() const { return m_Notes.IsEmpty(); }

private:
    template <class Action>
    void ForEachEntry(const Action& action) {
        // In the order of the bag, which has selectors before the features that they select.
        for (size_t i = 0; i < m_Bag.GetNames().size(); ++i) {
            action(m_Bag.GetNames()[i], m_Bag.GetValues()[i]);
        }
    }
    void Execute(const char* commandName) {
        m_Notes.Attempt(LoadNotes::kWriting, commandName,
                        [&] { ExecuteIfPresent(m_NodeMap, gcstring("Std::") + commandName); });
    }
    void Write(const gcstring& name, const gcstring& value);
    void Verify(const gcstring& name, const gcstring& value);
    void Compare(const gcstring& name, const gcstring& value, IValue& feature);

    const CFeatureBag& m_Bag;
    INodeMap& m_NodeMap;
    LoadNotes m_Notes;
};

/// Without checks in the first pass: limits may depend on features that come later in the bag.
/// The second pass verifies.
void BagWriter::Write(const gcstring& name, const gcstring& value) {
    INode* const node = m_NodeMap.GetNode(name);
    if (node == nullptr) {
        // A bag may come from a camera of another version.
        m_Notes.Add("Error while writing node: '" + name + "' not found ");
        return;
    }
    m_Notes.Attempt(LoadNotes::kWriting, name, [&] {
        const CPointer<IValue> feature(node);
        if (feature.IsValid() && IsWritable(feature->GetAccessMode())) {
            feature->FromString(value, false);
        }
    });
}

/// Writes once more, now that all features have their values, and looks at what the device made
/// of it.
void BagWriter::Verify(const gcstring& name, const gcstring& value) {
    const CPointer<IValue> feature(m_NodeMap.GetNode(name));
    m_Notes.Attempt(LoadNotes::kWriting, name, [&] {
        if (feature.IsValid() && IsWritable(feature->GetAccessMode())) {
            // A name without a node has been noted in the first pass.
            feature->FromString(value, true);
            Compare(name, value, *feature);
        }
    });
}

/// Read past the cache: what counts is the device's value, which it may have rounded.
void BagWriter::Compare(const gcstring& name, const gcstring& value, IValue& feature) {
    m_Notes.Attempt(LoadNotes::kVerifying, name, [&] {
        if (!IsReadable(feature.GetAccessMode())) {
            return;
        }
        const gcstring found = feature.ToString(true, true);
        if (found != value) {
            m_Notes.Add("Error while verifying node '" + name + "'. Expected '" + value +
                        "', but found '" + found + "'");
        }
    });
}

/// A feature is in a bag once for each combination of its selectors, but one look at its error
/// flag is enough.
void BagWriter::CheckAll() {
    std::unordered_set<INodePrivate*> checked;
    ForEachEntry([&](const gcstring& name, const gcstring&) {
        const CPointer<INodePrivate> node(m_NodeMap.GetNode(name));
        if (node.IsValid() && checked.insert(node).second) {
            m_Notes.Attempt(LoadNotes::kChecking, name, [&] {
                // InternalCheckError must be called with the lock held.
                const GenICam_3_0_ORVANE::AutoLock lock(m_NodeMap.GetLock());
                node->InternalCheckError();
            });
        }
    });
}

}  // namespace

/// Only a missing map raises. What nodes refuse is in the notes.
bool CFeatureBag::LoadFromBag(INodeMap* nodeMap, bool verify, gcstring_vector* errors) {
    return LoadFromBagInternal(RequireNodeMap(nodeMap), verify, errors);
}

bool CFeatureBag::LoadFromBagInternal(INodeMap& nodeMap, bool verify,
                                      gcstring_vector* errors) const {
    BagWriter writer(*this, nodeMap, errors);
    writer.WriteAll();
    if (verify) {
        writer.VerifyAll();
        writer.CheckAll();
    }
    return writer.IsClean();
}

}  // namespace GenApi_3_0_ORVANE
