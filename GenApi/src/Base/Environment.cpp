// Environment variables, folders and file names.

#include "Base/Environment.h"

#include <dlfcn.h>
#include <glob.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "Base/GCException.h"

namespace GenICam_3_0_ORVANE {

namespace {

/// Sixteen times as long as a path can be.
constexpr size_t kExpandedMax = 65536;

std::string_view View(const gcstring& text) {
    return {text.c_str(), text.size()};
}

gcstring ToText(std::string_view text) {
    return {text.data(), text.size()};
}

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

/// An empty value counts: it is how a script switches something off.
bool DoesEnvironmentVariableExist(const gcstring& name) {
    return std::getenv(name.c_str()) != nullptr;
}

bool GetValueOfEnvironmentVariable(const gcstring& name, gcstring& value) {
    const char* const text = std::getenv(name.c_str());
    if (text == nullptr) {
        return false;
    }
    value = text;
    return true;
}

gcstring GetValueOfEnvironmentVariable(const gcstring& name) {
    gcstring value;
    if (!GetValueOfEnvironmentVariable(name, value)) {
        RUNTIME_EXCEPTION("Environment variable '%s' not found", name.c_str());
    }
    return value;
}

/// A macro without its end stays as it is. A value is searched, too, so one that contains its own
/// macro would make the text grow for ever.
void ReplaceEnvironmentVariables(gcstring& text, bool replaceBlanks) {
    std::string result(View(text));
    size_t begin = result.find("$(");
    while (begin != std::string::npos) {
        const size_t end = result.find(')', begin);
        if (end == std::string::npos) {
            break;
        }
        const gcstring value =
            GetValueOfEnvironmentVariable(ToText(result.substr(begin + 2, end - begin - 2)));
        result.replace(begin, end - begin + 1, View(value));
        if (result.size() > kExpandedMax) {
            RUNTIME_EXCEPTION("Environment variables make a text of more than %zu characters",
                              kExpandedMax);
        }
        begin = result.find("$(", std::min(end, result.size()));
    }
    if (replaceBlanks) {
        ReplaceAll(result, " ", "%20");
    }
    text = ToText(result);
}

/// The real path, because callers look for files beside the module and not beside a link to it.
gcstring GetModulePathFromFunction(void* function) {
    Dl_info info{};
    if (dladdr(function, &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    std::array<char, PATH_MAX> path{};
    return realpath(info.dli_fname, path.data()) == nullptr ? "" : path.data();
}

/// The order is that of the system's pattern search, which sorts. The text of the failure is
/// fixed: programs may compare it.
void GetFiles(const gcstring& pattern, gcstring_vector& files, bool onlyDirectories) {
    gcstring expanded = pattern;
    ReplaceEnvironmentVariables(expanded);
    glob_t found{};
    const std::unique_ptr<glob_t, void (*)(glob_t*)> free(&found, &globfree);
    const int result =
        glob(expanded.c_str(), GLOB_ERR | (onlyDirectories ? GLOB_ONLYDIR : 0), nullptr, &found);
    // An empty folder is an answer. A folder that can't be read is a failure.
    if (result == GLOB_NOMATCH) {
        return;
    }
    if (result != 0) {
        RUNTIME_EXCEPTION("CCLPort::GetFiles %s: '%s'", expanded.c_str(), std::strerror(errno));
    }
    for (size_t i = 0; i < found.gl_pathc; ++i) {
        const std::string_view path = found.gl_pathv[i];
        const std::string_view name = path.substr(path.rfind('/') + 1);
        if (name != "." && name != "..") {
            files.push_back(ToText(name));
        }
    }
}

/// Runs of delimiters count as one, so there are no empty pieces.
void Tokenize(const gcstring& text, gcstring_vector& tokens, const gcstring& delimiters) {
    const std::string_view all = View(text);
    for (size_t begin = all.find_first_not_of(View(delimiters)); begin != std::string_view::npos;) {
        const size_t end = std::min(all.find_first_of(View(delimiters), begin), all.size());
        tokens.push_back(ToText(all.substr(begin, end - begin)));
        begin = all.find_first_not_of(View(delimiters), end);
    }
}

}  // namespace GenICam_3_0_ORVANE
