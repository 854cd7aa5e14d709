#pragma once
/// The registers behind a port: ranges of addresses, each with a reader and
/// perhaps a writer. Numbers are little-endian.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace OvProducer {

/// What lies at a range of addresses. Offsets count from the range's start and
/// accesses never leave it.
class RegisterRange {
public:
    virtual ~RegisterRange() = default;
    virtual size_t Length() const = 0;
    virtual void Read(size_t offset, std::span<std::byte> out) const = 0;
    /// -1005 unless the range can be written.
    virtual void Write(size_t offset, std::span<const std::byte> in);
};

/// Registers of one port. Built before the port is used and not changed then,
/// so reading and writing need no lock of its own: the readers and writers
/// guard whatever they touch.
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
    /// Four bytes that read 0; writing anything but 0 runs the action.
    void AddCommand(uint64_t address, std::function<void()> action);
    /// A float of 4 bytes, read-only.
    void AddFloat(uint64_t address, std::function<float()> read);
    /// Read-only bytes.
    void AddConstant(uint64_t address, std::vector<std::byte> content);

    /// Accesses may span neighbouring ranges. -1015 when an address of the
    /// access holds nothing; nothing is then written.
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
