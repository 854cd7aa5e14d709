#include "Base/GCException.h"
#include "Base/OvAssert.h"
#include "GenApi/FeatureBag.h"
#include "GenApi/FeatureBagStream.h"
#include "settings_fuzz.h"

namespace SettingsFuzz {

namespace {

using GenApi_3_0_ORVANE::CFeatureBag;
using GenICam_3_0_ORVANE::gcstring_vector;
using GenICam_3_0_ORVANE::RuntimeException;

bool Read(const std::string& text, CFeatureBag& bag) {
    std::istringstream stream(text);
    try {
        stream >> bag;
        return true;
    } catch (const RuntimeException&) {
        OV_ASSERT(bag.GetNames().empty());
        return false;
    }
}

/// What could be read can be written, and read again.
void CheckThatEntriesReturn(const CFeatureBag& bag) {
    std::ostringstream text;
    text << bag;
    CFeatureBag again;
    OV_ASSERT(Read(text.str(), again));
    OV_ASSERT(again == bag);
}

void CheckThatNotesTell(CFeatureBag& bag, bool verify) {
    gcstring_vector notes;
    const bool isClean = bag.LoadFromBag(TheCamera().Nodes(0).GetMap(), verify, &notes);
    OV_ASSERT(isClean == notes.empty());
}

}  // namespace

}  // namespace SettingsFuzz

/// The first byte tells whether to verify, the others are the text of a bag.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace SettingsFuzz;  // NOLINT(google-build-using-namespace)
    CFeatureBag bag;
    const Bytes input(data, size);
    if (size > 0 && Read(TextOf(input.subspan(1)), bag)) {
        CheckThatEntriesReturn(bag);
        TheCamera().Reset();
        CheckThatNotesTell(bag, (input[0] & 1) != 0);
    }
    return 0;
}
