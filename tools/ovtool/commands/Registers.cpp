#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "commands/Commands.h"
#include "support/Error.h"
#include "support/Json.h"
#include "support/Text.h"

namespace {

constexpr size_t kBytesInALine = 16;

void PrintLines(uint64_t address, const std::vector<uint8_t>& bytes) {
    for (size_t at = 0; at < bytes.size(); at += kBytesInALine) {
        std::printf("%s ", AddressText(address + at).c_str());
        const size_t end = std::min(at + kBytesInALine, bytes.size());
        for (size_t i = at; i < end; ++i) {
            std::printf(" %02x", static_cast<unsigned>(bytes[i]));
        }
        std::printf("\n");
    }
}

}  // namespace

void ReadRegisters(const CameraChoice& choice, uint64_t address, size_t size, bool json) {
    const Camera camera(choice, Access::ReadOnly);
    // The library wants an address even where no byte is asked for.
    std::vector<uint8_t> bytes(std::max(size, size_t{1}));
    Check(OVReadRemoteDevicePort(camera.Handle(), address, bytes.data(), &size),
          "read at " + AddressText(address));
    bytes.resize(std::min(size, bytes.size()));
    if (json) {
        PrintJson({{"address", address}, {"size", bytes.size()}, {"bytes", ToHex(bytes)}});
    } else {
        PrintLines(address, bytes);
    }
}

void WriteRegisters(const CameraChoice& choice, uint64_t address, const std::string& bytes) {
    const std::string what = "write at " + AddressText(address);
    const std::vector<uint8_t> data = ParseHex(bytes, what);
    const Camera camera(choice, Access::Control);
    size_t size = data.size();
    Check(OVWriteRemoteDevicePort(camera.Handle(), address, data.data(), &size), what);
    if (size < data.size()) {
        throw ToolError("can't " + what + ": the camera took " + std::to_string(size) + " of " +
                            std::to_string(data.size()) + " bytes",
                        ExitCode::Incomplete);
    }
}
