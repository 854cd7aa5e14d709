#include "image_machine.h"

#include <fstream>

#include "support/InstructionSets.h"

#ifdef OV_BENCH_OPENCV
#include <opencv2/core/version.hpp>
#endif

namespace ImageBench {

namespace {

/// The system's name of the first processor, or "" if it has none.
std::string ProcessorField(const std::string& name) {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        const size_t colon = line.find(": ");
        if (colon != std::string::npos &&
            line.find_last_not_of("\t ", colon - 1) + 1 == name.size() && line.starts_with(name)) {
            return line.substr(colon + 2);
        }
    }
    return "";
}

std::string ProcessorText() {
    const std::string model = ProcessorField("model name");
    if (model.empty()) {
        return "unknown processor";
    }
    return model + " (family " + ProcessorField("cpu family") + ", model " +
           ProcessorField("model") + ")";
}

/// The other libraries of the comparison.
std::string RivalText() {
    std::string text;
#ifdef OV_BENCH_OPENCV
    text += "; OpenCV " CV_VERSION;
#endif
#ifdef OV_BENCH_DC1394
    text += "; libdc1394 " OV_BENCH_DC1394;
#endif
    return text;
}

}  // namespace

std::string MachineText() {
    return ProcessorText() + "; vectors up to " + QyVectors::NameOf(QyVectors::BestSet()) +
           "; " OV_BENCH_COMPILER + RivalText();
}

}  // namespace ImageBench
