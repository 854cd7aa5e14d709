#include <stdexcept>

#include "Base/OvAssert.h"
#include "settings_fuzz.h"

namespace SettingsFuzz {

namespace {

/// What the splitter makes of a text, found letter by letter.
struct Parts {
    std::vector<std::string> texts;
    size_t brokenLine = 0;  ///< of a banner without end, counted from 1
};

Parts Split(const std::string& text) {
    Parts parts;
    bool isBanner = false;
    size_t line = 1;
    std::string part;
    size_t bannerLine = 0;
    const auto finish = [&] {
        if (!part.empty()) {
            parts.texts.push_back(part);
        }
        part.clear();
    };
    for (size_t i = 0; i < text.size(); ++i) {
        const char letter = text[i];
        if (isBanner) {
            isBanner = letter != '>';
        } else if (letter == '<' && text[i + 1] == '/') {
            finish();
            isBanner = true;
            bannerLine = line;
        } else if (!part.empty() || (letter != '\r' && letter != '\n' && letter != ' ')) {
            part += letter;
        }
        line += letter == '\n' ? 1 : 0;
    }
    finish();
    parts.brokenLine = isBanner ? bannerLine : 0;
    return parts;
}

/// The text of a refusal, or else the notes one after the other.
std::string ImportTellsOf(const std::string& text) {
    std::string told;
    try {
        for (const std::string& note : TheCamera().Import(text, false)) {
            told += note;
        }
    } catch (const std::runtime_error& refusal) {
        told = refusal.what();
    }
    return told;
}

/// The same, from what the parts say.
std::string ExpectedTells(const Parts& parts) {
    if (parts.brokenLine != 0) {
        return "Failed to parse the " + std::to_string(parts.brokenLine) + "th line";
    }
    if (parts.texts.size() != 4) {
        return "Invalid feature file format";
    }
    std::string plain = parts.texts.front();
    for (size_t i = 1; i < parts.texts.size(); ++i) {
        plain += "</>" + parts.texts[i];
    }
    TheCamera().Reset();
    return ImportTellsOf(plain);
}

}  // namespace

}  // namespace SettingsFuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace SettingsFuzz;  // NOLINT(google-build-using-namespace)
    const std::string text = TextOf({data, size});
    TheCamera().Reset();
    const std::string told = ImportTellsOf(text);
    OV_ASSERT(told == ExpectedTells(Split(text)));
    return 0;
}
