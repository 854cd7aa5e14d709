#pragma once
/// The whole search for cameras, as the device manager starts it.

#include "TLClassSupport/OvLock.h"
#include "TLClassUpdate/ParallelUpdater.h"

namespace OVTLClass {

class IUpdateAgency : public CUnCopyable {
public:
    virtual ~IUpdateAgency() = default;
};

class IGenericUpdateAgency : public IUpdateAgency {
public:
    /// @param timeout   for each producer, in milliseconds
    /// @param interval  pause between the starts of two interfaces, in milliseconds
    virtual void DoUpdate(unsigned timeout, unsigned interval, bool& changed) = 0;
};

class IGevUpdateAgency : public IUpdateAgency {
public:
    virtual void DoUpdate(unsigned timeout, unsigned interval, bool& changed) = 0;
    /// Finds cameras in any subnet.
    virtual void DoUpdateInWholeNetwork(unsigned timeout, unsigned interval, bool& changed) = 0;
    /// Finds cameras in the adapters' own subnets.
    virtual void DoUpdateInLocalNetwork(unsigned timeout, unsigned interval, bool& changed) = 0;
};

/// One search at a time in the process.
class CGenericUpdateAgency : public IGenericUpdateAgency {
public:
    explicit CGenericUpdateAgency(TLList tls) : m_updater(std::move(tls)) {}
    void DoUpdate(unsigned timeout, unsigned interval, bool& changed) override;

private:
    static CLock ms_objGenericUpdateLock;
    CGenericParallelUpdater m_updater;
};

/// One search at a time in the process.
class CGevUpdateAgency : public IGevUpdateAgency {
public:
    explicit CGevUpdateAgency(const GevTLList& tls) : m_updater(tls) {}
    void DoUpdate(unsigned timeout, unsigned interval, bool& changed) override;
    void DoUpdateInWholeNetwork(unsigned timeout, unsigned interval, bool& changed) override;
    void DoUpdateInLocalNetwork(unsigned timeout, unsigned interval, bool& changed) override;

private:
    void __Update(const char* mode, unsigned timeout, unsigned interval, bool& changed);

    static CLock ms_objGevUpdateLock;
    CGevParallelUpdater m_updater;
};

}  // namespace OVTLClass
