#pragma once
/// The producers of this process.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "TLClassMain/ITLManager.h"
#include "TLClassMain/TL.h"

namespace OVTLClass {

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
