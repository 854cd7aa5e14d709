#include "gige/net/SourceFilter.h"

#include <algorithm>
#include <fstream>

namespace OvGige {
namespace {

constexpr int kOff = 0;
constexpr int kStrict = 1;

int FilterIn(const std::filesystem::path& folder) {
    std::ifstream file(folder / "rp_filter");
    int filter = kOff;
    return file >> filter ? filter : kOff;
}

}  // namespace

// The higher one counts. A loose filter lets those through that any route leads to.
bool DropsForeignSenders(const std::string& adapter, const std::filesystem::path& settings) {
    return std::max(FilterIn(settings / "all"), FilterIn(settings / adapter)) == kStrict;
}

}  // namespace OvGige
