#pragma once
/// Notices changes of this machine's adapters.

#include <functional>
#include <thread>

#include "gige/net/WakeFile.h"

namespace OvGige {

/// Calls a function whenever an adapter goes up or down, appears or disappears, or gets or loses
/// an address.
class AdapterWatch {
public:
    /// @param onChange  called on the watch's thread, and once at the beginning, for what changed
    ///                  before. It must not end the watch
    /// @throws OvProducer::Failure GC_ERR_IO if the system doesn't tell of changes
    explicit AdapterWatch(std::function<void()> onChange);
    ~AdapterWatch();
    AdapterWatch(const AdapterWatch&) = delete;
    AdapterWatch& operator=(const AdapterWatch&) = delete;

private:
    void Run() const;
    bool WaitForChange() const;

    const std::function<void()> m_onChange;
    const WakeFile m_end;
    const int m_file;
    std::thread m_thread;  // last, since it uses the others
};

}  // namespace OvGige
