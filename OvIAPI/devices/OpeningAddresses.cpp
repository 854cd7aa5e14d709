// Keeps two threads from opening one address at once. A list and not one lock for all,
// since an opening takes seconds and others have nothing to do with it.

#include "devices/OpeningAddresses.h"

#include <algorithm>

using namespace OVTLClass;

void COpeningAddresses::Begin(int64_t address) {
    const CAutoLock lock(m_lock);
    m_ended.wait(m_lock, [&] {
        return std::find(m_addresses.begin(), m_addresses.end(), address) == m_addresses.end();
    });
    m_addresses.push_back(address);
}

void COpeningAddresses::End(int64_t address) {
    const CAutoLock lock(m_lock);
    std::erase(m_addresses, address);
    m_ended.notify_all();
}
