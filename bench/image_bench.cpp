// Times of the image functions beside a copy of as many bytes, beside their goals and, if they
// are installed, beside other libraries. Usage: image_bench [ROUNDS [TEXT]]: the number of
// rounds, whose medians count, and a text that names of rows must contain.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <string>

#include "Goals.h"
#include "image_machine.h"
#include "image_row.h"
#include "image_time.h"

namespace {

using namespace ImageBench;  // NOLINT(google-build-using-namespace)

constexpr int kRounds = 9;

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

std::vector<Rival> RivalsOf(const Row& row) {
    std::vector<Rival> rivals;
    const std::vector<Rival> all = AllRivals();
    std::copy_if(all.begin(), all.end(), std::back_inserter(rivals), [&](const Rival& rival) {
        return rival.kind != Kind::Other && rival.kind == row.kind;
    });
    return rivals;
}

/// What `image_bench` prints for the rows whose names have a text.
class Report {
public:
    Report(std::string text, int rounds) : m_text(std::move(text)), m_rounds(rounds) {}

    void Print() {
        std::printf("%s\nmedians of %d rounds, in time of one thread\n", MachineText().c_str(),
                    m_rounds);
        std::printf(
            "nanoseconds of a pixel; of our functions beside a copy of as many bytes, of\n"
            "others how many times as long ours takes beside them\n");
        for (const NamedSize& size : kSizes) {
            PrintRows(size);
            PrintSharedRecord(size);
        }
        PrintMissing();
    }

private:
    bool IsWanted(const std::string& name) const { return name.find(m_text) != std::string::npos; }

    void PrintRows(const NamedSize& size) {
        for (const Row& row : AllRows()) {
            const std::string name = row.name + (", " + std::string(size.name));
            if (!IsWanted(name)) {
                continue;
            }
            const std::vector<Rival> rivals = RivalsOf(row);
            const Times times = TimeRow(row, rivals, size.size, m_rounds);
            const double pixels = static_cast<double>(size.size.width) * size.size.height;
            m_goals.Print(name, times.row / pixels, "ns", times.row / times.copy);
            for (size_t i = 0; i < rivals.size(); ++i) {
                m_goals.Print(name + " : " + rivals[i].name, times.rivals[i] / pixels, "ns",
                              times.row / times.rivals[i]);
            }
        }
    }
    void PrintSharedRecord(const NamedSize& size) {
        const std::string name = std::string("two threads with one record, ") + size.name;
        if (IsWanted(name)) {
            const double ratio = TimeSharedRecord(size.size, m_rounds);
            m_goals.Print(name, 2 / ratio, "x", ratio);
        }
    }
    static void PrintMissing() {
#ifndef OV_BENCH_OPENCV
        std::printf(
            "without OpenCV, which is in libopencv-imgproc-dev: scripts/bench-images"
            " installs it\n");
#endif
#ifndef OV_BENCH_DC1394
        std::printf(
            "without libdc1394, which is in libdc1394-dev: scripts/bench-images installs"
            " it\n");
#endif
    }

    std::string m_text;
    int m_rounds;
    Goals m_goals{"image_bench"};
};

}  // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(std::atoi(argv[1]), 1) : kRounds;
    try {
        Report(argc > 2 ? argv[2] : "", rounds).Print();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "image_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
