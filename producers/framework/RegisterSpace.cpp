#include "framework/RegisterSpace.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "framework/Failure.h"

namespace OvProducer {
namespace {

std::string AddressText(uint64_t address) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    do {
        text.insert(text.begin(), kDigits[address % 16]);
        address /= 16;
    } while (address != 0);
    return "0x" + text;
}

/// A value that is always read and written as a whole. Accesses to a part of it work on a
/// copy.
class WholeValue : public RegisterRange {
public:
    explicit WholeValue(size_t length) : m_length(length) {}

    size_t Length() const override { return m_length; }

    void Read(size_t offset, std::span<std::byte> out) const override {
        const std::vector<std::byte> whole = Fetch();
        std::memcpy(out.data(), whole.data() + offset, out.size());
    }

    void Write(size_t offset, std::span<const std::byte> in) override {
        if (!Writable()) {
            RegisterRange::Write(offset, in);
        }
        std::vector<std::byte> whole =
            in.size() == m_length ? std::vector<std::byte>(m_length) : Fetch();
        std::memcpy(whole.data() + offset, in.data(), in.size());
        Store(whole);
    }

protected:
    virtual bool Writable() const = 0;
    virtual std::vector<std::byte> Fetch() const = 0;
    virtual void Store(const std::vector<std::byte>& whole) = 0;

private:
    size_t m_length;
};

class IntegerRange : public WholeValue {
public:
    IntegerRange(size_t length, RegisterSpace::ReadInteger read, RegisterSpace::WriteInteger write)
        : WholeValue(length), m_read(std::move(read)), m_write(std::move(write)) {}

protected:
    bool Writable() const override { return static_cast<bool>(m_write); }

    std::vector<std::byte> Fetch() const override {
        const auto value = static_cast<uint64_t>(m_read());
        std::vector<std::byte> whole(Length());
        for (size_t i = 0; i < whole.size(); ++i) {
            whole[i] = static_cast<std::byte>(value >> (8 * i));
        }
        return whole;
    }

    void Store(const std::vector<std::byte>& whole) override {
        uint64_t value = 0;
        for (size_t i = 0; i < whole.size(); ++i) {
            value |= static_cast<uint64_t>(whole[i]) << (8 * i);
        }
        m_write(static_cast<int64_t>(value));
    }

private:
    RegisterSpace::ReadInteger m_read;
    RegisterSpace::WriteInteger m_write;
};

class TextRange : public WholeValue {
public:
    TextRange(size_t length, RegisterSpace::ReadText read, RegisterSpace::WriteText write)
        : WholeValue(length), m_read(std::move(read)), m_write(std::move(write)) {}

protected:
    bool Writable() const override { return static_cast<bool>(m_write); }

    std::vector<std::byte> Fetch() const override {
        const std::string text = m_read();
        std::vector<std::byte> whole(Length());
        // The last byte is always NUL, so that a text that is cut is terminated.
        std::memcpy(whole.data(), text.data(), std::min(text.size(), whole.size() - 1));
        return whole;
    }

    void Store(const std::vector<std::byte>& whole) override {
        const char* first = reinterpret_cast<const char*>(whole.data());
        m_write(std::string(first, std::find(first, first + whole.size(), '\0')));
    }

private:
    RegisterSpace::ReadText m_read;
    RegisterSpace::WriteText m_write;
};

class FloatRange : public WholeValue {
public:
    explicit FloatRange(std::function<float()> read)
        : WholeValue(sizeof(float)), m_read(std::move(read)) {}

protected:
    bool Writable() const override { return false; }

    std::vector<std::byte> Fetch() const override {
        const float value = m_read();
        std::vector<std::byte> whole(sizeof value);
        std::memcpy(whole.data(), &value, sizeof value);
        return whole;
    }

    void Store(const std::vector<std::byte>& whole) override { static_cast<void>(whole); }

private:
    std::function<float()> m_read;
};

class ConstantRange : public RegisterRange {
public:
    explicit ConstantRange(std::vector<std::byte> content) : m_content(std::move(content)) {}

    size_t Length() const override { return m_content.size(); }

    void Read(size_t offset, std::span<std::byte> out) const override {
        std::memcpy(out.data(), m_content.data() + offset, out.size());
    }

private:
    std::vector<std::byte> m_content;
};

}  // namespace

void RegisterRange::Write(size_t, std::span<const std::byte>) {
    throw Failure(GenTL::GC_ERR_ACCESS_DENIED, "The register is read-only");
}

void RegisterSpace::Add(uint64_t address, std::unique_ptr<RegisterRange> range) {
    const uint64_t end = address + range->Length();
    const auto next = m_ranges.lower_bound(address);
    const bool hitsNext = next != m_ranges.end() && next->first < end;
    const bool hitsPrevious = next != m_ranges.begin() &&
                              std::prev(next)->first + std::prev(next)->second->Length() > address;
    if (hitsNext || hitsPrevious) {
        throw std::logic_error("Registers overlap at " + AddressText(address));
    }
    m_ranges.emplace(address, std::move(range));
}

void RegisterSpace::AddInteger(uint64_t address, size_t length, ReadInteger read,
                               WriteInteger write) {
    Add(address, std::make_unique<IntegerRange>(length, std::move(read), std::move(write)));
}

void RegisterSpace::AddText(uint64_t address, size_t length, ReadText read, WriteText write) {
    Add(address, std::make_unique<TextRange>(length, std::move(read), std::move(write)));
}

void RegisterSpace::AddCommand(uint64_t address, std::function<void()> action) {
    AddInteger(
        address, 4, [] { return 0; },
        [run = std::move(action)](int64_t value) {
            if (value != 0) {
                run();
            }
        });
}

void RegisterSpace::AddFloat(uint64_t address, std::function<float()> read) {
    Add(address, std::make_unique<FloatRange>(std::move(read)));
}

void RegisterSpace::AddConstant(uint64_t address, std::vector<std::byte> content) {
    Add(address, std::make_unique<ConstantRange>(std::move(content)));
}

std::vector<RegisterSpace::Piece> RegisterSpace::Split(uint64_t address, size_t length) const {
    std::vector<Piece> pieces;
    uint64_t at = address;
    size_t left = length;
    while (left != 0) {
        auto found = m_ranges.upper_bound(at);
        const bool before = found != m_ranges.begin();
        if (before) {
            --found;
        }
        const uint64_t offset = before ? at - found->first : 0;
        if (!before || offset >= found->second->Length()) {
            throw Failure(GenTL::GC_ERR_INVALID_ADDRESS, "No register at " + AddressText(at));
        }
        const size_t here = std::min<size_t>(left, found->second->Length() - offset);
        pieces.push_back({found->second.get(), offset, here});
        at += here;
        left -= here;
    }
    return pieces;
}

void RegisterSpace::Read(uint64_t address, std::span<std::byte> out) const {
    for (const Piece& piece : Split(address, out.size())) {
        piece.range->Read(piece.offset, out.first(piece.length));
        out = out.subspan(piece.length);
    }
}

void RegisterSpace::Write(uint64_t address, std::span<const std::byte> in) const {
    for (const Piece& piece : Split(address, in.size())) {
        piece.range->Write(piece.offset, in.first(piece.length));
        in = in.subspan(piece.length);
    }
}

}  // namespace OvProducer
