#pragma once
/// Updates the interfaces of several producers, then their devices.

#include <vector>

#include "TLClassMain/Query.h"
#include "TLClassSupport/UnCopyable.h"

namespace OVTLClass {

class IParallelUpdater : public CUnCopyable {
public:
    virtual ~IParallelUpdater() = default;
    virtual void DoUpdateInterfaceList(unsigned timeout, bool& changed) = 0;
    virtual void DoUpdateDeviceList(unsigned timeout, unsigned interval, bool& changed) = 0;
    virtual InterfacePointerList DoGetAllInterfaceList() = 0;
};

class CGenericParallelUpdater : public IParallelUpdater {
public:
    explicit CGenericParallelUpdater(TLList tls) : m_tls(std::move(tls)) {}

    void DoUpdateInterfaceList(unsigned timeout, bool& changed) override;
    void DoUpdateDeviceList(unsigned timeout, unsigned interval, bool& changed) override;
    InterfacePointerList DoGetAllInterfaceList() override;

private:
    TLList m_tls;
};

/// An adapter without an address can't be searched: its list is refreshed in
/// place, without a thread. Interfaces of other types are searched after the
/// adapters: they may have cameras as well.
class CGevParallelUpdater : public IParallelUpdater {
public:
    explicit CGevParallelUpdater(const GevTLList& tls);

    void DoUpdateInterfaceList(unsigned timeout, bool& changed) override;
    void DoUpdateDeviceList(unsigned timeout, unsigned interval, bool& changed) override;
    InterfacePointerList DoGetAllInterfaceList() override;

private:
    static InterfacePointerList __FilterInterfaceForUpdate(const InterfacePointerList& interfaces);
    static InterfacePointerList __FilterOtherInterface(const InterfacePointerList& interfaces);

    TLList m_tls;
};

}  // namespace OVTLClass
