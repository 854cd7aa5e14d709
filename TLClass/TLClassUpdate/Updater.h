#pragma once
/// List updates on threads of their own, one for each system or interface.

#include <memory>
#include <vector>

#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/UnCopyable.h"
#include "TLClassSupport/VxThread.h"

namespace OVTLClass {

class ITL;
class IInterface;

/// One list update. What goes wrong in it is logged and leaves the list as it was.
class IUpdater : public CUnCopyable {
public:
    virtual ~IUpdater() = default;

    /// Starts the update; nothing while one runs.
    /// @param timeout  for the producer, in milliseconds
    virtual void DoUpdate(unsigned timeout) = 0;
    virtual bool DoIsFinished() = 0;
    /// Asks a running update to end early.
    virtual void DoStopUpdate() {}
    /// Whether the last update changed the list.
    bool IsListChanged();

protected:
    unsigned _GetTimeout();
    void _SetTimeout(unsigned timeout);
    void _SetListChangedFlag(bool changed);

private:
    CLock m_timeoutLock{LockRank::Updater};
    unsigned m_timeout = 0;
    CLock m_changedLock{LockRank::Updater};
    bool m_changed = false;
};

/// Updates one list of a `Target` on a thread.
template <class Target>
class CThreadUpdater : public IUpdater {
public:
    explicit CThreadUpdater(std::shared_ptr<Target> target) : m_target(std::move(target)) {}

    void DoUpdate(unsigned timeout) override;
    bool DoIsFinished() override { return !m_thread.IsRunning(); }

protected:
    Target& GetTarget() { return *m_target; }

private:
    static void* __OnThread(void* self);

    std::shared_ptr<Target> m_target;
    CVxThread m_thread;
};

/// Updates the interfaces of a system module.
class CTLUpdater : public CThreadUpdater<ITL> {
public:
    using CThreadUpdater::CThreadUpdater;
};

/// Updates the devices of an interface.
class CIFUpdater : public CThreadUpdater<IInterface> {
public:
    using CThreadUpdater::CThreadUpdater;
    void DoStopUpdate() override;
};

/// Works on a row of updaters; null entries are passed over.
class CUpdaterManager {
public:
    using List = std::vector<std::shared_ptr<IUpdater>>;
    static constexpr unsigned kNoLimit = static_cast<unsigned>(-1);

    /// @param interval  pause between two starts, in milliseconds
    static void StartAllUpdater(const List& list, unsigned timeout, unsigned interval);
    static bool IsAllUpdaterFinished(const List& list);
    /// @return 1 when all are finished, 0 when the time ran out
    static int WaitForAllUpdaterFinished(const List& list, unsigned milliseconds);
    static bool IsOneUpdaterFinished(const List& list);
    /// @return 1 when one is finished or there is none, 0 when the time ran out
    static int WaitForOneUpdaterFinished(const List& list, unsigned milliseconds);
    static void StopAllUpdater(const List& list);
    static bool IsOneUpdaterListChanged(const List& list);

private:
    static bool __DoesHaveValidElements(const List& list);
};

/// Updates many lists at once and waits for the end of all.
class CStaticParalledUpdater {
public:
    static void UpdateInterfaceList(const std::vector<std::shared_ptr<ITL>>& tls, unsigned timeout,
                                    bool& changed);
    /// The first interface to end stops all others.
    static void UpdateDeviceList(const std::vector<std::shared_ptr<IInterface>>& interfaces,
                                 unsigned timeout, unsigned interval, bool& changed);
};

}  // namespace OVTLClass
