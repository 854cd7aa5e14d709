#pragma once
/// How a module keeps its list of children like the producer's: systems their
/// interfaces, interfaces their devices.

#include <cstdint>

#include "TLClassLoadTL/GenTLErrrorCodeVerifier.h"
#include "TLClassSupport/OvLock.h"
#include "TLClassSupport/RunLogged.h"
#include "TLClassSupport/UnCopyable.h"

namespace OVTLClass {

/// The updates of one module, of which one runs at a time.
class CListUpdate : public CUnCopyable {
public:
    explicit CListUpdate(LockRank rank) : m_lock(rank) {}

    /// Asks the producer, and then renews or refreshes the list. What goes wrong is
    /// logged with the given place and leaves the list as it was.
    /// @param isOpen   of the module; nothing happens while it is false
    /// @param ask      int32_t(bool8_t* changed): the producer's update, with its status
    /// @param refresh  takes what changed of the children while the list is the same
    /// @param renew    takes a list that changed
    /// @return whether the list was renewed
    template <class Ask, class Refresh, class Renew>
    bool Run(const bool& isOpen, const CGenTLLib& lib, const Ask& ask, const Refresh& refresh,
             const Renew& renew, const char* file, int line, const char* function) {
        const CAutoLock lock(m_lock);
        if (!isOpen) {
            return false;
        }
        GenTL::bool8_t changed = 0;
        const int32_t status = ask(&changed);
        LogIfFailed(status, lib, file, line, function);
        if (status != 0) {
            return false;
        }
        m_isStale = m_isStale || changed != 0;
        if (!m_isStale) {
            RunLogged(refresh, file, line, function);
            return false;
        }
        RunLogged(
            [&] {
                renew();
                m_isStale = false;
            },
            file, line, function);
        return !m_isStale;
    }

private:
    CLock m_lock;
    /// The producer reported a change that the list doesn't show yet. It reports each
    /// change once, so that a renewal that failed has to be repeated without its word.
    bool m_isStale = false;
};

}  // namespace OVTLClass

/// Runs an update of a CListUpdate and logs failures with the place of this line.
#define OV_UPDATE_LIST(update, isOpen, lib, ask, refresh, renew) \
    (update).Run((isOpen), (lib), ask, refresh, renew, __FILE__, __LINE__, __func__)
