#pragma once
/// The registers below 0xA000, which every camera has: their values, and who may do what to
/// them.

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "gige/protocol/Bootstrap.h"
#include "gige/protocol/Gvcp.h"

namespace OvSimulator {

/// Bytes of a register. Every access is to whole ones.
constexpr uint32_t kWord = 4;

/// The first address that belongs to the camera's maker.
constexpr uint32_t kBootstrapEnd = 0xA000;

/// Addresses are multiples of 4.
class BootstrapRegisters {
public:
    /// Is called before a host's write takes effect, with what the register would become. May
    /// change that, or refuse it.
    using Check = std::function<OvGige::Status(uint32_t& value)>;
    /// Is called after a host's write took effect.
    using Effect = std::function<void(uint32_t value)>;

    /// All registers, with zeros.
    BootstrapRegisters();

    // The camera's side. The register must exist.

    uint32_t Get(uint32_t address) const;
    void Set(uint32_t address, uint32_t value);
    std::string GetText(OvGige::TextRegister text) const;
    /// Cuts what doesn't fit, a zero at the end included.
    void SetText(OvGige::TextRegister text, std::string_view value);
    void CheckWrites(uint32_t address, Check check);
    /// Effects of the same register take place in the order in which they were added.
    void FollowWrites(uint32_t address, Effect effect);
    /// Takes away a register that not every camera has.
    void Remove(uint32_t address);

    // A host's side.

    OvGige::Status Read(uint32_t address, uint32_t& value) const;
    OvGige::Status Write(uint32_t address, uint32_t value);

private:
    struct Word {
        uint32_t value = 0;
        uint32_t writable = 0;  ///< bits that a host may change
        bool isReadable = true;
        Check check;
        std::vector<Effect> effects;
    };

    Word& At(uint32_t address);
    const Word& At(uint32_t address) const;

    std::map<uint32_t, Word> m_words;
};

}  // namespace OvSimulator
