#pragma once
/// What a bad camera does to a block as a whole.

#include "simulator/Account.h"
#include "simulator/Faults.h"
#include "simulator/stream/StreamBlock.h"

namespace OvSimulator {

/// Used by one thread, for one frame after the other.
class BlockSpoiler {
public:
    /// The account must outlive the spoiler.
    BlockSpoiler(const Faults& faults, Account& account) : m_faults(faults), m_account(account) {}

    /// Does to the block what chance has for it, and numbers it.
    /// @param frame  the camera's number of it, which counts from 0
    void Spoil(StreamBlock& block, uint64_t frame);

private:
    const Faults m_faults;
    Account& m_account;
    uint64_t m_firstFrame = 0;  ///< that of the block with the number 1
};

}  // namespace OvSimulator
