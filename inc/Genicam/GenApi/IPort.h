#pragma once
/// The way from the nodes to the memory of a device.

#include "GenApi/IBase.h"

namespace GenApi_3_0_ORVANE {

/// A range of addresses that can be read and written. A program derives its transport from this
/// and connects it to a port node by INodeMap::Connect; the port nodes have the interface, too.
///
/// The engine calls the transport with the lock of the map held. What the transport throws passes
/// through the engine unchanged.
struct OV_ENGINE_API IPort : virtual public IBase {
    /// Reads `length` bytes from an address.
    /// @param buffer  receives the bytes in the order of the device's memory
    virtual void Read(void* buffer, int64_t address, int64_t length) = 0;
    /// Writes `length` bytes to an address.
    /// @param buffer  holds the bytes in the order of the device's memory
    virtual void Write(const void* buffer, int64_t address, int64_t length) = 0;
};

}  // namespace GenApi_3_0_ORVANE
