#include "image_table.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "image_machine.h"

namespace ImageBench {

namespace {

constexpr int kNameWidth = 40;

/// The figures of a line for one size.
struct Cell {
    double time;
    double ratio;
    double goal;
    bool isMissed;
};

Cell CellOf(const Row& row, const Times& times, size_t size) {
    const double ratio = times.row / times.copy;
    const double goal = row.goal[size];
    return {times.row, ratio, goal, goal != 0 && ratio > goal};
}

Cell CellOf(const Rival& rival, const Times& times, size_t which) {
    // Measurements of the same function differ by this much.
    constexpr double kSame = 0.98;
    const double ratio = times.rivals[which] / times.row;
    return {times.rivals[which], ratio, rival.goal, ratio < kSame * rival.goal};
}

std::string SizeText(Size size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

/// Prints the lines and collects the goals that were missed.
class Table {
public:
    static void PrintHead() {
        std::printf("%*s", kNameWidth, "");
        for (const Size& size : kSizes) {
            std::printf("%32s", SizeText(size).c_str());
        }
        std::printf("\n%*s", kNameWidth, "");
        for (size_t i = 0; i < kSizes.size(); ++i) {
            std::printf("%11s %7s %5s %6s", "ns/pixel", "ratio", "goal", "");
        }
        std::printf("\n");
    }

    void Print(const Measured& measured) {
        const auto& [row, rivals, times] = measured;
        std::printf("%-*s", kNameWidth, row.name);
        for (size_t i = 0; i < kSizes.size(); ++i) {
            PrintCell(row.name, CellOf(row, times[i], i), times[i], kSizes[i]);
        }
        for (size_t which = 0; which < rivals.size(); ++which) {
            std::printf("\n  %-*s", kNameWidth - 2, rivals[which].name);
            for (size_t i = 0; i < kSizes.size(); ++i) {
                PrintCell(std::string(row.name) + " beside " + rivals[which].name,
                          CellOf(rivals[which], times[i], which), times[i], kSizes[i]);
            }
        }
        std::printf("\n");
    }

    void PrintMissed() const {
        std::printf("\n%zu of %zu goals are missed%s\n", m_missed.size(), m_goals,
                    m_missed.empty() ? "." : ":");
        for (const std::string& line : m_missed) {
            std::printf("  %s\n", line.c_str());
        }
    }

private:
    void PrintCell(const std::string& name, const Cell& cell, const Times& times, Size size) {
        std::printf("%10.4f%c %7.2f ", cell.time / size.width / size.height,
                    IsFastest(cell.time, times) ? '*' : ' ', cell.ratio);
        if (cell.goal == 0) {
            std::printf("%5s %6s", "-", "");
            return;
        }
        std::printf("%5.1f %6s", cell.goal, cell.isMissed ? "missed" : "");
        ++m_goals;
        if (cell.isMissed) {
            char ratio[64];
            std::snprintf(ratio, sizeof ratio, ": %.2f instead of %.1f", cell.ratio, cell.goal);
            m_missed.push_back(name + ", " + SizeText(size) + ratio);
        }
    }

    static bool IsFastest(double time, const Times& times) {
        return !times.rivals.empty() && time <= times.row &&
               std::all_of(times.rivals.begin(), times.rivals.end(),
                           [time](double other) { return time <= other; });
    }

    size_t m_goals = 0;
    std::vector<std::string> m_missed;
};

}  // namespace

void PrintTable(const std::vector<Measured>& all, int passes) {
    std::printf("%s\n", MachineText().c_str());
    std::printf("The best of %d pass%s, in time of one thread.\n", passes, passes == 1 ? "" : "es");
    std::printf(
        "A ratio tells, for the library's functions, how many times as long they take as a\n"
        "copy that reads and writes as many bytes, at most the goal; for indented lines, how\n"
        "many times as long they take as the library, at least the goal. * is the fastest of\n"
        "its kind.\n\n");
    Table table;
    Table::PrintHead();
    for (const Measured& measured : all) {
        table.Print(measured);
    }
    table.PrintMissed();
}

}  // namespace ImageBench
