#include "pipeline/PipelinePlan.h"

#include <string>

#include "support/Error.h"

namespace {

/// What an option can work on.
enum Work : unsigned {
    OnGrey = 1,     ///< one channel
    OnColours = 2,  ///< frames that come with three or four channels
    OnFour = 4,     ///< four bytes a pixel
    OnWords = 8     ///< 16 bits a sample
};

struct Trait {
    const char* name;
    bool (*given)(const PipelineOptions&);
    unsigned works;
};

using Options = PipelineOptions;

constexpr Trait kTraits[] = {
    {"--layout", [](const Options& o) { return o.layout.has_value(); }, OnGrey | OnFour | OnWords},
    {"--method", [](const Options& o) { return o.method.has_value(); }, OnFour | OnWords},
    {"--flip", [](const Options& o) { return o.flip; }, OnFour | OnWords},
    {"--order", [](const Options& o) { return o.order.has_value(); }, 0},
    {"--alpha", [](const Options& o) { return o.alpha.has_value(); }, OnFour},
    {"--defects", [](const Options& o) { return o.defects; }, OnGrey | OnFour | OnWords},
    {"--denoise", [](const Options& o) { return o.denoise; }, 0},
    {"--one-pass", [](const Options& o) { return o.onePass; }, 0},
    {"--matrix", [](const Options& o) { return o.matrix.has_value(); }, OnColours | OnFour},
    {"--auto-balance", [](const Options& o) { return o.autoBalance; }, OnColours},
    {"--balance", [](const Options& o) { return o.balance.has_value(); }, OnColours | OnFour},
    {"--gamma", [](const Options& o) { return o.gamma.has_value(); }, OnGrey | OnColours | OnFour},
    {"--contrast-table", [](const Options& o) { return o.contrastTable.has_value(); },
     OnColours | OnFour},
    {"--brightness", [](const Options& o) { return o.brightness.has_value(); }, OnGrey | OnColours},
    {"--contrast", [](const Options& o) { return o.contrast.has_value(); }, OnGrey | OnColours},
    {"--saturation", [](const Options& o) { return o.saturation.has_value(); }, OnColours},
    {"--sharpen", [](const Options& o) { return o.sharpen.has_value(); }, OnGrey | OnColours},
};

/// Raises for the first option that is given and can't do such work.
void Require(const PipelineOptions& options, unsigned work, const std::string& before,
             const std::string& behind) {
    for (const Trait& trait : kTraits) {
        if (trait.given(options) && (trait.works & work) == 0) {
            throw UsageError(std::string(before).append(trait.name).append(behind));
        }
    }
}

bool AsksForBytes(const PipelineOptions& options) {
    for (const Trait& trait : kTraits) {
        if (trait.given(options) && (trait.works & OnWords) == 0) {
            return true;
        }
    }
    return options.validBit.has_value();
}

void RequireNot(bool wrong, const std::string& text) {
    if (wrong) {
        throw UsageError(text);
    }
}

void CheckTogether(const PipelineOptions& o, const PixelFormat& format, QyColorFilter filter) {
    const bool colour = o.matrix || o.balance || o.autoBalance || o.saturation;
    const bool tone = o.brightness || o.contrast || o.gamma;
    RequireNot(o.balance && o.autoBalance, "--balance and --auto-balance exclude each other");
    const bool bgr = o.order.value_or(format.order) == QY_ORDER_BGR;
    RequireNot(bgr && (o.denoise || o.onePass || o.alpha),
               "--denoise, --one-pass and --alpha give pixels in the order rgb alone");
    RequireNot(bgr && o.saturation, "--saturation takes pixels in the order rgb alone");
    RequireNot(o.onePass && o.contrastTable, "--one-pass has one table; use --contrast");
    RequireNot(o.onePass && filter == QY_FILTER_NONE && (colour || tone),
               "--one-pass changes neither colour nor tone with --layout none");
    if (o.alpha || format.channels == 4) {
        Require(o, OnFour, "", " doesn't work on four bytes a pixel");
    }
}

QyValidBit ValidBit(const PipelineOptions& options, const PixelFormat& format) {
    RequireNot(
        options.validBit && format.bits == 8,
        "--valid-bit is for samples of more than 8 bits; " + std::string(format.name) + " has 8");
    RequireNot(!options.validBit && format.bits > 12,
               "say by --valid-bit which eight bits of " + std::string(format.name) +
                   " are kept; the options given work on 8 bits");
    return options.validBit.value_or(format.bits - 8);
}

}  // namespace

PipelinePlan PlanPipeline(const PipelineOptions& options, const PixelFormat& format) {
    const std::string name = format.name;
    PipelinePlan plan;
    plan.filter = options.layout.value_or(format.filter);
    plan.interpolates = format.channels == 1 && (options.layout || format.IsMosaic());
    if (format.channels > 1) {
        Require(options, OnColours, name + " has its colours already: ", " is for raw samples");
    } else if (!plan.interpolates) {
        Require(options, OnGrey, name + " has one channel: ", " needs three, by --layout none");
    }
    CheckTogether(options, format, plan.filter);
    plan.keepsWords = format.bits > 8 && !AsksForBytes(options);
    if (!plan.keepsWords && (format.bits > 8 || options.validBit)) {
        plan.validBit = ValidBit(options, format);
    }
    return plan;
}
