// Times of the image functions, compared to a copy of as many bytes and, if they are
// installed, to other libraries. Usage: image_bench [PASSES [TEXT]]: the number of
// passes, of which the best times count, and a text that names of rows must contain.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <string>

#include "image_table.h"

namespace {

using namespace ImageBench;  // NOLINT(google-build-using-namespace)

template <class T>
void Append(std::vector<T>& all, const std::vector<T>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

std::vector<Row> AllRows() {
    std::vector<Row> all;
    for (const auto rows : {BayerRows, FormatRows, ToneRows, ColourRows, GeometryRows}) {
        Append(all, rows());
    }
    return all;
}

std::vector<Rival> AllRivals() {
    std::vector<Rival> all = PlainRivals();
#ifdef OV_BENCH_OPENCV
    Append(all, OpenCvRivals());
#endif
#ifdef OV_BENCH_DC1394
    Append(all, Dc1394Rivals());
#endif
    return all;
}

std::vector<Measured> WithRivals(const std::string& text) {
    std::vector<Measured> all;
    const std::vector<Rival> rivals = AllRivals();
    for (const Row& row : AllRows()) {
        if (std::string(row.name).find(text) == std::string::npos) {
            continue;
        }
        Measured& measured = all.emplace_back(Measured{row, {}, {}});
        std::copy_if(rivals.begin(), rivals.end(), std::back_inserter(measured.rivals),
                     [&](const Rival& rival) {
                         return rival.kind != Kind::Other && rival.kind == row.kind;
                     });
    }
    return all;
}

void MeasureOnce(std::vector<Measured>& all) {
    for (Measured& measured : all) {
        for (size_t i = 0; i < kSizes.size(); ++i) {
            TimeRow(measured.row, measured.rivals, kSizes[i], measured.times[i]);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    const int passes = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 1;
    std::vector<Measured> all = WithRivals(argc > 2 ? argv[2] : "");
    try {
        for (int pass = 0; pass < passes; ++pass) {
            MeasureOnce(all);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "image_bench: %s\n", error.what());
        return 1;
    }
    PrintTable(all, passes);
    return 0;
}
