#include "gige/protocol/Registers.h"

namespace OvGige {
namespace {

constexpr size_t kNumberSize = sizeof(uint32_t);
constexpr size_t kWriteSize = 2 * kNumberSize;
constexpr size_t kRangeSize = 8;
constexpr size_t kCountSize = 4;
constexpr size_t kReservedSize = 2;  // before a 16-bit field

/// The records of a payload, each of `size` bytes. Nothing is returned for a payload without
/// records, or with a part of one.
template <typename Record, typename Parse>
std::optional<std::vector<Record>> ParseRecords(ByteView payload, size_t size, Parse parse) {
    if (payload.empty() || payload.size() % size != 0) {
        return {};
    }
    std::vector<Record> records;
    records.reserve(payload.size() / size);
    for (; !payload.empty(); payload = payload.subspan(size)) {
        records.push_back(parse(payload));
    }
    return records;
}

}  // namespace

Bytes BuildNumbers(std::span<const uint32_t> numbers) {
    Bytes payload;
    for (const uint32_t number : numbers) {
        Append(payload, number);
    }
    return payload;
}

std::optional<std::vector<uint32_t>> ParseNumbers(ByteView payload) {
    return ParseRecords<uint32_t>(payload, kNumberSize, &ReadBig<uint32_t>);
}

Bytes BuildWrites(std::span<const RegisterWrite> writes) {
    Bytes payload;
    for (const RegisterWrite& write : writes) {
        Append(payload, write.address);
        Append(payload, write.value);
    }
    return payload;
}

std::optional<std::vector<RegisterWrite>> ParseWrites(ByteView payload) {
    return ParseRecords<RegisterWrite>(payload, kWriteSize, [](ByteView record) {
        return RegisterWrite{.address = ReadBig<uint32_t>(record),
                             .value = ReadBig<uint32_t>(record.subspan(kNumberSize))};
    });
}

Bytes BuildRange(MemoryRange range) {
    Bytes payload;
    Append(payload, range.address);
    AppendZeros(payload, kReservedSize);
    Append(payload, range.count);
    return payload;
}

std::optional<MemoryRange> ParseRange(ByteView payload) {
    if (payload.size() != kRangeSize) {
        return {};
    }
    return MemoryRange{.address = ReadBig<uint32_t>(payload),
                       .count = ReadBig<uint16_t>(payload.subspan(kNumberSize + kReservedSize))};
}

Bytes BuildMemory(const MemoryBytes& memory) {
    Bytes payload;
    Append(payload, memory.address);
    Append(payload, memory.bytes);
    return payload;
}

std::optional<MemoryBytes> ParseMemory(ByteView payload) {
    if (payload.size() <= kNumberSize) {
        return {};
    }
    return MemoryBytes{.address = ReadBig<uint32_t>(payload),
                       .bytes = payload.subspan(kNumberSize)};
}

Bytes BuildCount(uint16_t count) {
    Bytes payload;
    AppendZeros(payload, kReservedSize);
    Append(payload, count);
    return payload;
}

std::optional<uint16_t> ParseCount(ByteView payload) {
    if (payload.size() < kCountSize) {
        return {};
    }
    return ReadBig<uint16_t>(payload.subspan(kReservedSize));
}

}  // namespace OvGige
