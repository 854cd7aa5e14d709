#pragma once
/// The producers of this process.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "TLClassMain/TL.h"

namespace OVTLClass {

/// Loads producers and takes them down. One per process.
class ITLManager {
public:
    virtual ~ITLManager() = default;
    ITLManager(const ITLManager&) = delete;
    ITLManager& operator=(const ITLManager&) = delete;

    /// Loads and opens those of the named files that stand beside the library.
    /// All of them or none: one that fails undoes the others.
    virtual void DoInit(const std::vector<std::string>& names) = 0;
    /// Closes and unloads all, from first to last. Nothing when not initialised.
    virtual void DoUninit() = 0;
    /// The open system modules, in the order of the names.
    virtual std::vector<std::shared_ptr<ITL>> DoGetTLList() = 0;

    static ITLManager* GetInstance();

protected:
    ITLManager() = default;
};

class CTLManager : public ITLManager {
public:
    static CTLManager* GetInstance();

    void DoInit(const std::vector<std::string>& names) override;
    void DoUninit() override;
    std::vector<std::shared_ptr<ITL>> DoGetTLList() override;

    /// The shared pointer of that very object; empty when it isn't held here.
    std::shared_ptr<CTL> GetTLPointer(const CTL* tl) const;

    /// Copies the environment variable `name` to `alias`.
    static void __SetGenICamEnvironment(const std::string& name, const std::string& alias);

private:
    class CInitAgency;
    class CGCInitLibAgency;
    class CMapTLToLibInsertAgency;
    using Entry = std::pair<std::shared_ptr<CTL>, std::shared_ptr<const CGenTLLib>>;

    CTLManager() = default;
    void __Init(const std::vector<std::string>& paths);
    void __InitOne(const std::string& path);
    void __Uninit();

    static CTLManager* ms_objTLManager;
    static CLock ms_objGetInstanceLock;

    std::vector<Entry> m_entries;
    bool m_initialised = false;
    CLock m_lock{LockRank::Producers};
};

}  // namespace OVTLClass
