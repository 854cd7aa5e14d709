// The text form of a bag. Files of it may be edited by people and come from other programs, so
// reading is lenient about line ends and strict about the mark in the first line.

#include "GenApi/FeatureBagStream.h"

#include <array>
#include <istream>
#include <limits>
#include <ostream>
#include <string>

#include "Base/GCException.h"

namespace GenApi_3_0_ORVANE {

namespace {

/// Marks the text as settings; readers look for it in the first line.
constexpr const char* kBagGuid = "{05D8C294-F295-4dfb-9D01-096BD04049F4}";
/// Marks texts with several bags, which are read elsewhere.
constexpr const char* kBaggerGuid = "{4709CB3C-7322-4460-84C3-DA11DDA09939}";
/// The version of the form, for people.
constexpr std::array<int, 3> kVersion = {3, 0, 2};
constexpr char kComment = '#';
/// Bounds the memory that a file without line ends takes.
constexpr size_t kPieceSize = 1024;

/// Returns what comes before the delimiter, and skips the delimiter. A piece that is too long
/// ends early; the stream then continues after it.
std::string ReadPiece(std::istream& stream, char delimiter) {
    std::array<char, kPieceSize> piece{};
    stream.getline(piece.data(), piece.size(), delimiter);
    // A full buffer counts as a failure of the stream, which would end all reading.
    if (stream.fail() && !stream.eof() && !stream.bad()) {
        stream.clear();
    }
    return piece.data();
}

/// Peeking, because the end of a stream is only known once somebody has tried to read there.
bool IsAtEnd(std::istream& stream) {
    return stream.peek() == std::istream::traits_type::eof();
}

void SkipComments(std::istream& stream) {
    while (stream.peek() == kComment) {
        stream.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
}

/// Anything may come before and after the mark in its line.
void CheckFirstLine(const std::string& line) {
    if (line.find(kBagGuid) != std::string::npos) {
        return;
    }
    if (line.find(kBaggerGuid) != std::string::npos) {
        RUNTIME_EXCEPTION(
            "The stream has been created using the CFeatureBagger class thus must be restored "
            "using the CFeatureBagger class as well");
    }
    RUNTIME_EXCEPTION(
        "The stream is not a GenApi feature stream since it is missing the magic GUID in the "
        "first line");
}

/// Whether the end of a text is only empty lines, as they come before the next part of a
/// file. Any other rest becomes an entry that no device has, so that loading reports it.
bool IsRest(const std::string& name) {
    return name.find_first_not_of("\r\n ") == std::string::npos;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const CFeatureBag& bag) {
    stream << kComment << ' ' << kBagGuid << '\n';
    if (!bag.GetInfo().empty()) {
        stream << kComment << " GenApi persistence file (version " << kVersion[0] << '.'
               << kVersion[1] << '.' << kVersion[2] << ")\n"
               << kComment << ' ' << bag.GetInfo().c_str() << '\n';
    }
    for (size_t i = 0; i < bag.GetNames().size(); ++i) {
        stream << bag.GetNames()[i].c_str() << '\t' << bag.GetValues()[i].c_str() << '\n';
    }
    return stream;
}

std::istream& operator>>(std::istream& stream, CFeatureBag& bag) {
    if (stream.eof()) {
        RUNTIME_EXCEPTION("The stream is eof");
    }
    CheckFirstLine(ReadPiece(stream, '\n'));
    for (SkipComments(stream); !IsAtEnd(stream); SkipComments(stream)) {
        const std::string name = ReadPiece(stream, '\t');
        std::string value;
        // Whole, because values may be longer than a piece: a register is written in
        // hexadecimal.
        std::getline(stream, value);
        if (!stream.eof() || !value.empty() || !IsRest(name)) {
            bag.Append(name.c_str(), value.c_str());
        }
    }
    return stream;
}

}  // namespace GenApi_3_0_ORVANE
