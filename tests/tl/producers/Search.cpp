// The search for producers, callable from outside its library.

#include <cstddef>
#include <cstdio>
#include <string>

#include "TLClassLoadTL/CtiRetrival.h"
#include "TLClassSupport/OvException.h"
#include "TLClassSupport/OvString.h"

/// Puts the paths found, or the text of the failure, each ended by ";" into
/// `text`. 0, -2 when nothing was found, -1 for every other failure.
/// @param names  separated by ";"
extern "C" __attribute__((visibility("default"))) int SearchProducers(const char* names, char* text,
                                                                      size_t size) {
    using namespace OVTLClass;
    try {
        std::string paths;
        const auto list = COvString::SplitString(names, ";");
        for (const std::string& path : CCtiRetrival::GetCtiListFromGenTLEnv(list)) {
            paths += path + ";";
        }
        std::snprintf(text, size, "%s", paths.c_str());
        return 0;
    } catch (const CNotFoundTLError& error) {
        std::snprintf(text, size, "%s;", error.GetDescription().c_str());
        return -2;
    } catch (const COvException& error) {
        std::snprintf(text, size, "%s;", error.GetDescription().c_str());
        return -1;
    }
}
