#include "pipeline/PipelineOptions.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdlib>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "support/Error.h"

namespace {

/// A word of the command line and what it stands for.
template <class T>
struct Word {
    const char* text;
    T value;
};

constexpr Word<QyColorFilter> kLayouts[] = {{"none", QY_FILTER_NONE},
                                            {"rg", QY_BAYER_RG},
                                            {"gb", QY_BAYER_GB},
                                            {"gr", QY_BAYER_GR},
                                            {"bg", QY_BAYER_BG}};
constexpr Word<QyChannelOrder> kOrders[] = {{"rgb", QY_ORDER_RGB}, {"bgr", QY_ORDER_BGR}};
constexpr Word<QyImageMirrorMode> kMirrors[] = {{"horizontal", QY_MIRROR_HORIZONTAL},
                                                {"vertical", QY_MIRROR_VERTICAL}};
constexpr Word<Turn> kTurns[] = {{"cw", Turn::Clockwise}, {"ccw", Turn::CounterClockwise}};

template <class T, size_t Count>
std::string TextsOf(const Word<T> (&words)[Count]) {
    std::string texts;
    for (const Word<T>& word : words) {
        texts.append(texts.empty() ? "" : ", ").append(word.text);
    }
    return texts;
}

template <class T>
std::string TextOf(T value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

template <class T>
void RequireRange(const std::string& name, T value, T low, T high) {
    // Turned round so that what is no number at all fails too.
    if (!(value >= low && value <= high)) {
        throw UsageError(name + " " + TextOf(value) + " is outside " + TextOf(low) + " to " +
                         TextOf(high));
    }
}

/// What stands between commas.
std::vector<double> NumbersFrom(const std::string& name, const std::string& text) {
    std::vector<double> numbers;
    std::istringstream parts(text);
    const std::string complaint = " takes numbers with commas between, not '" + text + "'";
    for (std::string part; std::getline(parts, part, ',');) {
        char* end = nullptr;
        numbers.push_back(std::strtod(part.c_str(), &end));
        if (part.empty() || end != part.c_str() + part.size()) {
            throw UsageError(name + complaint);
        }
    }
    return numbers;
}

/// Adds one option after the other to a group.
class Adder {
public:
    explicit Adder(CLI::Option_group& group) : m_group(group) {}

    void Flag(const std::string& name, bool& flag, const std::string& help) {
        m_group.add_flag(name, flag, help);
    }

    template <class T, size_t Count>
    void OneOf(const std::string& name, std::optional<T>& value, const Word<T> (&words)[Count],
               const std::string& help) {
        m_group.add_option_function<std::string>(
            name,
            [name, &value, &words](const std::string& text) {
                for (const Word<T>& word : words) {
                    if (text == word.text) {
                        value = word.value;
                        return;
                    }
                }
                throw UsageError(name + " '" + text + "' is none of: " + TextsOf(words));
            },
            help + ": " + TextsOf(words));
    }

    template <class T>
    void Number(const std::string& name, std::optional<T>& value, std::type_identity_t<T> low,
                std::type_identity_t<T> high, const std::string& help) {
        m_group.add_option_function<T>(
            name,
            [name, &value, low, high](const T& number) {
                RequireRange(name, number, low, high);
                value = number;
            },
            help + ", " + TextOf(low) + " to " + TextOf(high));
    }

    template <size_t Count>
    void Numbers(const std::string& name, std::optional<std::array<double, Count>>& value,
                 double low, double high, const std::string& help) {
        m_group.add_option_function<std::string>(
            name,
            [name, &value, low, high](const std::string& text) {
                const std::vector<double> numbers = NumbersFrom(name, text);
                if (numbers.size() != Count) {
                    throw UsageError(name + " takes " + std::to_string(Count) + " numbers, not " +
                                     std::to_string(numbers.size()));
                }
                value.emplace();
                for (size_t i = 0; i < Count; ++i) {
                    RequireRange(name, numbers[i], low, high);
                    (*value)[i] = numbers[i];
                }
            },
            help + ", " + TextOf(low) + " to " + TextOf(high) + ", with commas between");
    }

private:
    CLI::Option_group& m_group;
};

void AddRawOptions(Adder& add, PipelineOptions& options) {
    add.OneOf("--layout", options.layout, kLayouts,
              "colours of the first two samples, instead of the format's");
    add.Number("--method", options.method, QY_RAW2RGB_NEIGHBOUR, QY_RAW2RGB_NEIGHBOUR3,
               "interpolation: 0 two by two, 1 along edges, 2 three by three samples");
    add.Flag("--flip", options.flip, "write the picture bottom-up");
    add.OneOf("--order", options.order, kOrders, "order of a pixel's bytes while it is worked on");
    add.Number("--alpha", options.alpha, 0, 255, "a fourth byte for each pixel");
    add.Number("--valid-bit", options.validBit, QY_BIT_0_7, QY_BIT_4_11,
               "lowest of the eight bits that are kept of longer samples");
    add.Flag("--defects", options.defects, "repair bright outliers of the raw frame");
    add.Flag("--denoise", options.denoise, "reduce noise");
    add.Flag("--one-pass", options.onePass,
             "do all in one pass, colours by nine coefficients and tone by one table");
}

void AddToneOptions(Adder& add, PipelineOptions& options) {
    add.Numbers("--matrix", options.matrix, -8, 8, "colour matrix by rows");
    add.Flag("--auto-balance", options.autoBalance, "measure the white balance of each frame");
    add.Numbers("--balance", options.balance, 0, 8, "gains of red, green and blue");
    add.Number("--gamma", options.gamma, 0.1, 10.0, "gamma");
    add.Number("--contrast-table", options.contrastTable, -50, 100, "contrast, of 12 bits");
    add.Number("--brightness", options.brightness, -150, 150, "brightness");
    add.Number("--contrast", options.contrast, -50, 100, "contrast, of 8 bits");
    add.Number("--saturation", options.saturation, 0, 128, "saturation, 64 as it is");
    add.Number("--sharpen", options.sharpen, 0.1F, 5.0F, "sharpening");
    add.OneOf("--mirror", options.mirror, kMirrors, "mirror");
    add.OneOf("--rotate", options.turn, kTurns, "a quarter turn");
    add.Number("--zoom", options.zoom, 1, 16, "squares of so many pixels for each");
}

}  // namespace

CLI::Option_group* AddPipelineOptions(CLI::App& command, PipelineOptions& options) {
    CLI::Option_group* const group = command.add_option_group("Picture");
    Adder add(*group);
    AddRawOptions(add, options);
    AddToneOptions(add, options);
    return group;
}
