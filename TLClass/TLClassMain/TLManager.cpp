#include "TLClassMain/TLManager.h"

#include <stdlib.h>

#include <algorithm>

#include "TLClassInfo/InformationAgency.h"
#include "TLClassLoadTL/CtiRetrival.h"
#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassMain/TLFactory.h"
#include "TLClassSupport/Agency.h"
#include "TLClassSupport/OvException.h"

namespace OVTLClass {

CTLManager* CTLManager::ms_objTLManager = nullptr;
CLock CTLManager::ms_objGetInstanceLock(LockRank::ProducersInstance);

/// Undoes what of a row of producers came up.
class CTLManager::CInitAgency : public CAgency {
public:
    CInitAgency(CTLManager& manager, const std::vector<std::string>& paths) {
        Arm([&manager] { manager.__Uninit(); });
        manager.__Init(paths);
    }
};

class CTLManager::CGCInitLibAgency : public CAgency {
public:
    explicit CGCInitLibAgency(const std::shared_ptr<const CGenTLLib>& lib) {
        OV_VERIFY(lib->GCInitLib(), *lib);
        Arm([lib] { OV_LOG_UNDO_IF_FAILED(CGCInitLibAgency, lib->GCCloseLib(), *lib); });
    }
};

class CTLManager::CMapTLToLibInsertAgency : public CAgency {
public:
    CMapTLToLibInsertAgency(std::vector<Entry>& entries, Entry entry) {
        entries.push_back(std::move(entry));
        Arm([&entries] { entries.pop_back(); });
    }
};

ITLManager* ITLManager::GetInstance() {
    return CTLManager::GetInstance();
}

CTLManager* CTLManager::GetInstance() {
    const CAutoLock lock(ms_objGetInstanceLock);
    if (ms_objTLManager == nullptr) {
        // Never deleted: static objects of the application may use the library to the very end.
        ms_objTLManager = std::unique_ptr<CTLManager>(new CTLManager).release();
    }
    return ms_objTLManager;
}

void CTLManager::DoInit(const std::vector<std::string>& names) {
    const CAutoLock lock(m_lock);
    if (m_initialised) {
        OV_RAISE(CUnexpectedError, "Can not initialize again without uninitialization");
    }
    // One producer that fails takes all down, so that an application never works with some
    // of its cameras without knowing.
    CInitAgency producers(*this, CCtiRetrival::GetCtiListFromGenTLEnv(names));
    producers.Commit();
    m_initialised = true;
}

void CTLManager::__Init(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        __InitOne(path);
    }
}

void CTLManager::__InitOne(const std::string& path) {
    // Shared by all modules of the producer: the last one that goes unloads it.
    const auto lib = std::make_shared<const CGenTLLib>(path);
    CGCInitLibAgency initialised(lib);
    // The class of the system depends on its transport, which is asked before it is opened.
    const TL_INFO info = COvInformationAgency::GetTLInformationFromEmpty(*lib);
    const std::shared_ptr<CTL> tl(CTLFactory::CreateTL(lib, info));
    CMapTLToLibInsertAgency inserted(m_entries, {tl, lib});
    tl->DoOpenTL();
    inserted.Commit();
    initialised.Commit();
}

void CTLManager::__Uninit() {
    while (!m_entries.empty()) {
        const Entry& first = m_entries.front();
        OV_RUN_LOGGED([&first] { first.first->DoCloseTL(); });
        OV_LOG_IF_FAILED(first.second->GCCloseLib(), *first.second);
        // With the last reference the producer's file is unloaded, after its own end.
        m_entries.erase(m_entries.begin());
    }
}

void CTLManager::DoUninit() {
    const CAutoLock lock(m_lock);
    if (!m_initialised) {
        return;
    }
    __Uninit();
    m_initialised = false;
}

std::vector<std::shared_ptr<ITL>> CTLManager::DoGetTLList() {
    std::vector<std::shared_ptr<ITL>> list;
    list.reserve(m_entries.size());
    for (const Entry& entry : m_entries) {
        list.push_back(entry.first);
    }
    return list;
}

std::shared_ptr<CTL> CTLManager::GetTLPointer(const CTL* tl) const {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [tl](const Entry& entry) { return entry.first.get() == tl; });
    return found == m_entries.end() ? nullptr : found->first;
}

void CTLManager::__SetGenICamEnvironment(const std::string& name, const std::string& alias) {
    const char* const value = getenv(name.c_str());
    if (value == nullptr) {
        OV_RAISE(CUnexpectedError, "Failed to get environment");
    }
    if (setenv(alias.c_str(), value, 1) == -1) {
        OV_RAISE(CUnexpectedError, "Failed to set environment");
    }
}

}  // namespace OVTLClass
