#pragma once
/// The producers of this process.

#include <memory>
#include <string>
#include <vector>

#include "TLClassModule/ITL.h"

namespace OVTLClass {

/// Loads producers and takes them down. One per process.
class ITLManager {
public:
    virtual ~ITLManager() = default;
    ITLManager(const ITLManager&) = delete;
    ITLManager& operator=(const ITLManager&) = delete;

    /// Loads and opens those of the named files that lie beside the library.
    /// All of them or none: one that fails undoes the others.
    virtual void DoInit(const std::vector<std::string>& names) = 0;
    /// Closes and unloads all, from first to last. No effect when not initialised.
    virtual void DoUninit() = 0;
    /// The open system modules, in the order of the names.
    virtual std::vector<std::shared_ptr<ITL>> DoGetTLList() = 0;

    static ITLManager* GetInstance();

protected:
    ITLManager() = default;
};

}  // namespace OVTLClass
