// Ports with a megabyte of memory that every camera shares, and with a second
// way to it that moves no more than a thousand bytes a call. These take the place
// of the test producer's functions of that name.

#include "PartialPort.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "GenTL/GenTL.h"

namespace {

using namespace PartialPort;

std::byte* Memory() {
    static std::vector<std::byte> memory(kSize);
    return memory.data();
}

/// Null for an address of the camera's own.
std::byte* Find(std::uint64_t address, std::size_t& size) {
    for (const std::uint64_t base : {kWhole, kPartial}) {
        if (address >= base && address - base < kSize) {
            const std::size_t rest = kSize - (address - base);
            size = std::min({size, rest, base == kPartial ? kAtMost : kSize});
            return Memory() + (address - base);
        }
    }
    return nullptr;
}

/// The entry of a list of one.
GenTL::PORT_REGISTER_STACK_ENTRY Entry(std::uint64_t address, void* buffer, std::size_t size) {
    GenTL::PORT_REGISTER_STACK_ENTRY entry{};
    entry.Address = address;
    entry.pBuffer = buffer;
    entry.Size = size;
    return entry;
}

}  // namespace

extern "C" {

GenTL::GC_ERROR GCReadPortStacked(GenTL::PORT_HANDLE port,
                                  GenTL::PORT_REGISTER_STACK_ENTRY* entries, std::size_t* count);
GenTL::GC_ERROR GCWritePortStacked(GenTL::PORT_HANDLE port,
                                   GenTL::PORT_REGISTER_STACK_ENTRY* entries, std::size_t* count);

__attribute__((visibility("default"))) GenTL::GC_ERROR GCReadPort(GenTL::PORT_HANDLE port,
                                                                  std::uint64_t address,
                                                                  void* buffer, std::size_t* size) {
    if (const std::byte* const memory = Find(address, *size)) {
        std::memcpy(buffer, memory, *size);
        return GenTL::GC_ERR_SUCCESS;
    }
    auto entry = Entry(address, buffer, *size);
    std::size_t count = 1;
    return GCReadPortStacked(port, &entry, &count);
}

__attribute__((visibility("default"))) GenTL::GC_ERROR GCWritePort(GenTL::PORT_HANDLE port,
                                                                   std::uint64_t address,
                                                                   const void* buffer,
                                                                   std::size_t* size) {
    if (std::byte* const memory = Find(address, *size)) {
        std::memcpy(memory, buffer, *size);
        return GenTL::GC_ERR_SUCCESS;
    }
    auto entry = Entry(address, const_cast<void*>(buffer), *size);
    std::size_t count = 1;
    return GCWritePortStacked(port, &entry, &count);
}
}
