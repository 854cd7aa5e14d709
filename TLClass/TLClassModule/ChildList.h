#pragma once
/// The children of a module beside the producer's records of them: what systems do with
/// their interfaces, and interfaces with their devices.

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/IDevice.h"
#include "TLClassModule/IInterface.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

template <class Child>
using ChildList = std::vector<std::shared_ptr<Child>>;

// Interfaces and devices have different names for the same.
inline std::string IdOf(IInterface& child) {
    return child.DoGetInterfaceInfo().id.value;
}
inline std::string IdOf(IDevice& child) {
    return child.DoGetDeviceInfo().id.value;
}
inline void TakeInformation(IInterface& child, const IF_INFO& record) {
    child.DoUpdateInterfaceInformation(record);
}
inline void TakeInformation(IDevice& child, const DEV_INFO& record) {
    child.DoUpdateDeviceInformation(record);
}

/// Hands the record to the first child of its ID.
/// @return that child; null for none
template <class Child, class Record>
std::shared_ptr<Child> TakeRecord(const ChildList<Child>& children, const Record& record) {
    const auto found = std::find_if(children.begin(), children.end(), [&record](const auto& child) {
        return IdOf(*child) == record.id.value;
    });
    if (found == children.end()) {
        return nullptr;
    }
    TakeInformation(**found, record);
    return *found;
}

/// Hands each record to its child, if that is known.
template <class Child, class Record>
void TakeRecords(const ChildList<Child>& children, const std::vector<Record>& records) {
    for (const Record& record : records) {
        TakeRecord(children, record);
    }
}

/// The children of the records, in their order. Known ones are kept with their new
/// records, so that handles and callbacks of open ones stay.
/// @param make  makes the child of a record that no known one has
template <class Child, class Records, class Make>
ChildList<Child> MatchChildren(Records& records, const ChildList<Child>& known, const Make& make) {
    ChildList<Child> list;
    list.reserve(records.size());
    for (auto& record : records) {
        auto child = TakeRecord(known, record);
        list.push_back(child ? std::move(child) : make(record));
    }
    return list;
}

/// The members of `known` that aren't in `current`, in the order of `known`.
template <class Child>
ChildList<Child> FindMissing(const ChildList<Child>& known, const ChildList<Child>& current) {
    ChildList<Child> missing;
    std::copy_if(known.begin(), known.end(), std::back_inserter(missing),
                 [&current](const auto& child) {
                     return std::find(current.begin(), current.end(), child) == current.end();
                 });
    return missing;
}

/// Lends each record its special information, for as long as both live.
/// @param differentSize  text of the CUnexpectedError where one has no other
template <class Record>
void LendSpecialInformation(std::vector<Record>& records, const std::vector<SPECIAL_INFO*>& special,
                            const char* differentSize) {
    if (special.size() != records.size()) {
        OV_RAISE(CUnexpectedError, differentSize);
    }
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].pSpecialInfo = special[i];
    }
}

}  // namespace OVTLClass
