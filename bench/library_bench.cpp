// What it costs to have the library: to load it, its resident memory and its size, compared to
// the C++ library in a process of the same kind. Usage: library_bench

#include <elf.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "Goals.h"
#include "Measure.h"

namespace {

constexpr int kRounds = 41;
constexpr int kFewRounds = 5;

[[noreturn]] void Fail(const std::string& what) {
    std::fprintf(stderr, "library_bench: %s\n", what.c_str());
    std::exit(1);
}

/// The figure that a new process prints.
double Probe(const char* what, const char* file) {
    const std::string command = std::string(OV_BENCH_PROBE " ") + what + " " + file;
    FILE* const output = popen(command.c_str(), "r");
    double figure = 0;
    const bool isRead = output != nullptr && std::fscanf(output, "%lf", &figure) == 1;
    if (!isRead || pclose(output) != 0) {
        Fail("no figure from " + command);
    }
    return figure;
}

/// The medians of a figure for both libraries, by turns.
struct Pair {
    double ours;
    double reference;
};

Pair ProbeBoth(const char* what, int rounds) {
    std::vector<double> ours;
    std::vector<double> reference;
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(Probe(what, OV_BENCH_LIBRARY));
        reference.push_back(Probe(what, OV_BENCH_REFERENCE));
    }
    return {Median(ours), Median(reference)};
}

/// The bytes of a file that are loaded: its size without symbols for debuggers.
double LoadedBytes(const char* path) {
    std::ifstream file(path, std::ios::binary);
    Elf64_Ehdr header{};
    file.read(reinterpret_cast<char*>(&header), sizeof header);
    std::vector<Elf64_Phdr> segments(header.e_phnum);
    file.seekg(static_cast<std::streamoff>(header.e_phoff));
    file.read(reinterpret_cast<char*>(segments.data()),
              static_cast<std::streamsize>(segments.size() * sizeof(Elf64_Phdr)));
    if (!file || segments.empty()) {
        Fail(std::string("no library in ") + path);
    }
    uint64_t end = 0;
    for (const Elf64_Phdr& segment : segments) {
        if (segment.p_type == PT_LOAD) {
            end = std::max(end, segment.p_offset + segment.p_filesz);
        }
    }
    return static_cast<double>(end);
}

}  // namespace

int main() {
    // The cameras of the network are other people's.
    setenv("OV_GIGE_ADAPTERS", "none", 1);
    setenv("OV_VIRTUAL_STATE", "off", 1);
    Goals goals("library_bench");
    const Pair load = ProbeBoth("load", kRounds);
    const Pair memory = ProbeBoth("memory", kFewRounds);
    std::vector<double> camera;
    camera.reserve(kFewRounds);
    for (int round = 0; round < kFewRounds; ++round) {
        camera.push_back(Probe("camera", OV_BENCH_LIBRARY));
    }
    const double open = Median(camera);
    const double size = LoadedBytes(OV_BENCH_LIBRARY);

    std::printf("%s beside %s:\n", OV_BENCH_LIBRARY, OV_BENCH_REFERENCE);
    goals.Print("load", load.ours / 1e6, "ms", load.ours / load.reference);
    goals.Print("resident memory", memory.ours / 1024, "MB", memory.ours / memory.reference);
    goals.Print("resident memory with a camera open", open / 1024, "MB", open / memory.reference);
    goals.Print("size", size / 1e6, "MB", size / LoadedBytes(OV_BENCH_REFERENCE));
    return 0;
}
