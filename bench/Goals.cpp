#include "Goals.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

/// A line has the program, the goal and the name of the row, which may have blanks.
Goals::Goals(const std::string& program) {
    std::ifstream file(OV_BENCH_GOALS);
    if (!file) {
        std::fprintf(stderr, "%s: no goals in %s\n", program.c_str(), OV_BENCH_GOALS);
        std::exit(1);
    }
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string owner;
        double goal = 0;
        std::string row;
        if (words >> owner >> goal && owner == program && std::getline(words >> std::ws, row)) {
            m_goals[row] = goal;
        }
    }
}

void Goals::Print(const std::string& row, double figure, const char* unit, double ratio) {
    std::printf("  %-46s %11.2f %-3s %8.2f times", row.c_str(), figure, unit, ratio);
    const auto goal = m_goals.find(row);
    if (goal != m_goals.end()) {
        std::printf("  goal %6.2f %s", goal->second, ratio <= goal->second ? "met" : "missed");
    }
    std::printf("\n");
}
