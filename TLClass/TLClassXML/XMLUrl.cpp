#include "TLClassXML/XMLUrl.h"

#include <cctype>
#include <cstdlib>

#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"

namespace OVTLClass {

namespace {

constexpr size_t kLocalPieces = 3;
/// One short of the nine characters of "LOCAL:///": the check then sees a file
/// name that begins with a slash, which it accepts.
constexpr size_t kTripleSlashOffset = 8;

bool EndsIn(const std::string& text, const char* first, const char* second) {
    return text.ends_with(first) || text.ends_with(second);
}

bool IsLocalBody(const std::string& body) {
    const auto pieces = COvString::SplitString(body, ";");
    return pieces.size() == kLocalPieces && EndsIn(pieces[0], ".XML", ".ZIP");
}

bool CheckUrlFormatValid(const std::string& upperUrl) {
    if (upperUrl.starts_with("FILE:")) {
        return EndsIn(upperUrl, ".XML?", ".ZIP?");
    }
    if (upperUrl.starts_with("LOCAL:///")) {
        return IsLocalBody(upperUrl.substr(kTripleSlashOffset));
    }
    const std::string scheme = "LOCAL:";
    return upperUrl.starts_with(scheme) && IsLocalBody(upperUrl.substr(scheme.size() - 1));
}

/// What follows the scheme, with or without three slashes.
std::string BodyOf(const std::string& upperUrl, const std::string& scheme) {
    const std::string slashes = scheme + "///";
    const size_t at = upperUrl.find(slashes);
    return at != std::string::npos ? upperUrl.substr(at + slashes.size())
                                   : upperUrl.substr(upperUrl.find(scheme) + scheme.size());
}

/// Piece of a text; empty when there are fewer.
std::string Piece(const std::string& text, const char* separator, size_t index) {
    const auto pieces = COvString::SplitString(text, separator);
    return index < pieces.size() ? pieces[index] : std::string();
}

uint64_t HexNumber(const std::string& text) {
    return std::strtoull(text.c_str(), nullptr, 16);
}

URL_LOCAL_INFO AnalyzeLocalUrl(const std::string& body) {
    return {Piece(body, ";", 0), HexNumber(Piece(body, ";", 1)),
            HexNumber(Piece(Piece(body, ";", 2), "?", 0))};
}

}  // namespace

std::string ToUpperCase(std::string text) {
    for (char& character : text) {
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    }
    return text;
}

XML_URL_INFO AnalyzeXmlUrl(const std::string& url) {
    const std::string upperUrl = ToUpperCase(url);
    if (!CheckUrlFormatValid(upperUrl)) {
        OV_RAISE(CUnexpectedError, COvString::MsgComposer("XML format error: %s", url.c_str()));
    }
    XML_URL_INFO info;
    const std::string scheme = upperUrl.substr(0, upperUrl.find(':'));
    if (scheme == "FILE") {
        info.location = XmlLocation::File;
        info.file.path = Piece(BodyOf(upperUrl, "FILE:"), "?", 0);
    } else if (scheme == "LOCAL") {
        info.location = XmlLocation::Local;
        info.local = AnalyzeLocalUrl(BodyOf(upperUrl, "LOCAL:"));
    }
    return info;
}

}  // namespace OVTLClass
