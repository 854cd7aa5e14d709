#include <algorithm>
#include <ctime>

#include "TLClassModule/IInterface.h"
#include "TLClassModule/ITL.h"
#include "TLClassUpdate/Updater.h"

namespace OVTLClass {

namespace {

using List = CUpdaterManager::List;

int64_t MonotonicMilliseconds() {
    timespec now{};
    // The time of day may be set while somebody waits.
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

template <class Condition>
int WaitFor(const Condition& condition, unsigned milliseconds) {
    const int64_t begin = MonotonicMilliseconds();
    while (!condition()) {
        if (milliseconds != CUpdaterManager::kNoLimit &&
            MonotonicMilliseconds() - begin >= milliseconds) {
            return 0;
        }
        CVxThread::VxSleep(1);
    }
    return 1;
}

template <class Updater, class Target>
List MakeUpdaters(const std::vector<std::shared_ptr<Target>>& targets) {
    List list;
    for (const auto& target : targets) {
        if (target) {
            // Each has a thread of its own: producers block until their time-out.
            list.push_back(std::make_shared<Updater>(target));
        }
    }
    return list;
}

}  // namespace

void CUpdaterManager::StartAllUpdater(const List& list, unsigned timeout, unsigned interval) {
    for (size_t i = 0; i < list.size(); ++i) {
        if (!list[i]) {
            continue;
        }
        list[i]->DoUpdate(timeout);
        // Spreads broadcasts, whose answers come all at once otherwise.
        if (interval != 0 && i + 1 < list.size()) {
            CVxThread::VxSleep(interval);
        }
    }
}

bool CUpdaterManager::IsAllUpdaterFinished(const List& list) {
    return std::all_of(list.begin(), list.end(),
                       [](const auto& updater) { return !updater || updater->DoIsFinished(); });
}

bool CUpdaterManager::IsOneUpdaterFinished(const List& list) {
    return std::any_of(list.begin(), list.end(),
                       [](const auto& updater) { return updater && updater->DoIsFinished(); });
}

bool CUpdaterManager::IsOneUpdaterListChanged(const List& list) {
    return std::any_of(list.begin(), list.end(),
                       [](const auto& updater) { return updater && updater->IsListChanged(); });
}

int CUpdaterManager::WaitForAllUpdaterFinished(const List& list, unsigned milliseconds) {
    return WaitFor([&list] { return IsAllUpdaterFinished(list); }, milliseconds);
}

int CUpdaterManager::WaitForOneUpdaterFinished(const List& list, unsigned milliseconds) {
    if (!__DoesHaveValidElements(list)) {
        return 1;
    }
    return WaitFor([&list] { return IsOneUpdaterFinished(list); }, milliseconds);
}

void CUpdaterManager::StopAllUpdater(const List& list) {
    for (const auto& updater : list) {
        if (updater && !updater->DoIsFinished()) {
            updater->DoStopUpdate();
        }
    }
}

bool CUpdaterManager::__DoesHaveValidElements(const List& list) {
    return std::any_of(list.begin(), list.end(),
                       [](const auto& updater) { return updater != nullptr; });
}

void CStaticParalledUpdater::UpdateInterfaceList(const std::vector<std::shared_ptr<ITL>>& tls,
                                                 unsigned timeout, bool& changed) {
    changed = false;
    OV_RUN_LOGGED([&] {
        const List list = MakeUpdaters<CTLUpdater>(tls);
        CUpdaterManager::StartAllUpdater(list, timeout, 0);
        CUpdaterManager::WaitForAllUpdaterFinished(list, CUpdaterManager::kNoLimit);
        changed = CUpdaterManager::IsOneUpdaterListChanged(list);
    });
}

void CStaticParalledUpdater::UpdateDeviceList(
    const std::vector<std::shared_ptr<IInterface>>& interfaces, unsigned timeout, unsigned interval,
    bool& changed) {
    changed = false;
    OV_RUN_LOGGED([&] {
        const List list = MakeUpdaters<CIFUpdater>(interfaces);
        CUpdaterManager::StartAllUpdater(list, timeout, interval);
        // All searches began together, so that cameras had the same time to answer on each when
        // the first one ends. The others needn't run into their time-outs.
        CUpdaterManager::WaitForOneUpdaterFinished(list, CUpdaterManager::kNoLimit);
        CUpdaterManager::StopAllUpdater(list);
        CUpdaterManager::WaitForAllUpdaterFinished(list, CUpdaterManager::kNoLimit);
        changed = CUpdaterManager::IsOneUpdaterListChanged(list);
    });
}

}  // namespace OVTLClass
