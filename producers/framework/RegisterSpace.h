#pragma once
/// The registers of a port: ranges of addresses, each with a reader and an optional
/// writer. Numbers are little-endian.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace OvProducer {

/// The content of a range of addresses. Offsets count from the start of the range, and
/// accesses are always within it.
class RegisterRange {
public:
    virtual ~RegisterRange() = default;
    virtual size_t Length() const = 0;
    virtual void Read(size_t offset, std::span<std::byte> out) const = 0;
    /// Fails with -1005 unless the range can be written.
    virtual void Write(size_t offset, std::span<const std::byte> in);
};

/// The registers of one port. They are set up before the port is used and never changed
/// after that, so that accesses need no lock. The readers and writers lock what they use.
class RegisterSpace {
public:
    using ReadInteger = std::function<int64_t()>;
    using WriteInteger = std::function<void(int64_t)>;
    using ReadText = std::function<std::string()>;
    using WriteText = std::function<void(const std::string&)>;

    /// Ranges must not overlap.
    void Add(uint64_t address, std::unique_ptr<RegisterRange> range);

    /// An integer of 1, 2, 4 or 8 bytes; read-only without a writer.
    void AddInteger(uint64_t address, size_t length, ReadInteger read, WriteInteger write = {});
    /// A text with NULs up to `length`; read-only without a writer.
    void AddText(uint64_t address, size_t length, ReadText read, WriteText write = {});
    /// Four bytes that are read as 0. Writing any other number runs the action.
    void AddCommand(uint64_t address, std::function<void()> action);
    /// A float of 4 bytes, read-only.
    void AddFloat(uint64_t address, std::function<float()> read);
    /// Read-only bytes.
    void AddConstant(uint64_t address, std::vector<std::byte> content);

    /// Accesses may span adjacent ranges. They fail with -1015 if one of the addresses
    /// belongs to no range, and write nothing then.
    void Read(uint64_t address, std::span<std::byte> out) const;
    void Write(uint64_t address, std::span<const std::byte> in) const;

private:
    struct Piece {
        RegisterRange* range;
        size_t offset;
        size_t length;
    };
    std::vector<Piece> Split(uint64_t address, size_t length) const;

    std::map<uint64_t, std::unique_ptr<RegisterRange>> m_ranges;
};

}  // namespace OvProducer
