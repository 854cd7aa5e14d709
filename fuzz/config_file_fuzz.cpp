#include <stdexcept>
#include <typeinfo>

#include "Base/OvAssert.h"
#include "TLClassSupport/OvException.h"
#include "settings_fuzz.h"

namespace SettingsFuzz {

namespace {

/// What an application is told of; any other exception would pass it by.
template <class Action>
bool IsDone(const Action& action) {
    try {
        action();
        return true;
    } catch (const OVTLClass::CUnexpectedError&) {
        return false;
    } catch (const std::runtime_error& refusal) {
        OV_ASSERT(typeid(refusal) == typeid(std::runtime_error));
        return false;
    }
}

std::string Export() {
    std::ostringstream text;
    TheCamera().Persistance().ExportFeaturesToStream(text);
    return text.str();
}

/// Numbers without end have a text that is no number.
bool IsFinite(const std::string& settings) {
    return settings.find("\tinf\n") == std::string::npos &&
           settings.find("\t-inf\n") == std::string::npos &&
           settings.find("nan\n") == std::string::npos;
}

/// Whatever settings a text leaves, a file of them gives them back.
void CheckThatSettingsReturn() {
    std::string kept;
    if (!IsDone([&] { kept = Export(); }) || !IsFinite(kept)) {
        return;
    }
    TheCamera().Reset();
    OV_ASSERT(TheCamera().Import(kept, false).empty());
    OV_ASSERT(Export() == kept);
}

}  // namespace

}  // namespace SettingsFuzz

/// The first byte tells whether to verify, the others are the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace SettingsFuzz;  // NOLINT(google-build-using-namespace)
    if (size > 0) {
        const Bytes input(data, size);
        TheCamera().Reset();
        IsDone([&] { TheCamera().Import(TextOf(input.subspan(1)), (input[0] & 1) != 0); });
        CheckThatSettingsReturn();
    }
    return 0;
}
