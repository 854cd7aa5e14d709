#include "image_table.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "image_machine.h"

namespace ImageBench {

namespace {

constexpr int kNameWidth = 40;

/// Prints the lines and keeps in mind what was missed.
class Table {
public:
    void PrintHead() {
        std::printf("%-*s", kNameWidth, "");
        for (const Size& size : kSizes) {
            std::printf("   %-30s", SizeText(size).c_str());
        }
        std::printf("\n%-*s", kNameWidth, "");
        for (size_t i = 0; i < kSizes.size(); ++i) {
            std::printf("   %9s %7s %5s %6s", "ns/pixel", "ratio", "goal", "");
        }
        std::printf("\n");
    }

    void Print(const Measured& measured) {
        PrintRow(measured);
        for (size_t i = 0; i < measured.rivals.size(); ++i) {
            PrintRival(measured, i);
        }
    }

    void PrintMissed() const {
        std::printf("\n%zu of %zu goals are missed%s\n", m_missed.size(), m_goals,
                    m_missed.empty() ? "." : ":");
        for (const std::string& line : m_missed) {
            std::printf("  %s\n", line.c_str());
        }
    }

private:
    static std::string SizeText(Size size) {
        return std::to_string(size.width) + "x" + std::to_string(size.height);
    }

    static double PerPixel(double time, Size size) { return time / size.width / size.height; }

    static bool IsFastest(double time, const Times& times) {
        return !times.rivals.empty() && time <= times.row &&
               std::all_of(times.rivals.begin(), times.rivals.end(),
                           [time](double other) { return time <= other; });
    }

    void PrintRow(const Measured& measured) {
        std::printf("%-*s", kNameWidth, measured.row.name);
        for (size_t i = 0; i < kSizes.size(); ++i) {
            const Times& times = measured.times[i];
            const double ratio = times.row / times.copy;
            const double goal = measured.row.goal[i];
            PrintTime(times.row, times, kSizes[i]);
            PrintRatio(ratio, goal, ratio > goal);
            NoteGoal(measured.row.name, i, ratio, goal, ratio > goal);
        }
        std::printf("\n");
    }

    void PrintRival(const Measured& measured, size_t which) {
        const Rival& rival = measured.rivals[which];
        std::printf("  %-*s", kNameWidth - 2, rival.name);
        for (size_t i = 0; i < kSizes.size(); ++i) {
            const Times& times = measured.times[i];
            const double ratio = times.rivals[which] / times.row;
            PrintTime(times.rivals[which], times, kSizes[i]);
            PrintRatio(ratio, rival.goal, ratio < rival.goal);
            NoteGoal(std::string(measured.row.name) + " beside " + rival.name, i, ratio, rival.goal,
                     ratio < rival.goal);
        }
        std::printf("\n");
    }

    static void PrintTime(double time, const Times& times, Size size) {
        std::printf("   %8.4f%c", PerPixel(time, size), IsFastest(time, times) ? '*' : ' ');
    }

    static void PrintRatio(double ratio, double goal, bool isMissed) {
        if (goal == 0) {
            std::printf(" %7.2f %5s %6s", ratio, "-", "");
        } else {
            std::printf(" %7.2f %5.1f %6s", ratio, goal, isMissed ? "missed" : "");
        }
    }

    void NoteGoal(const std::string& name, size_t size, double ratio, double goal, bool isMissed) {
        m_goals += goal == 0 ? 0 : 1;
        if (goal == 0 || !isMissed) {
            return;
        }
        char ratios[64];
        std::snprintf(ratios, sizeof ratios, ": %.2f instead of %.1f", ratio, goal);
        m_missed.push_back(name + ", " + SizeText(kSizes[size]) + ratios);
    }

    size_t m_goals = 0;
    std::vector<std::string> m_missed;
};

}  // namespace

void PrintTable(const std::vector<Measured>& all, int passes) {
    std::printf("%s\n", MachineText().c_str());
    std::printf(
        "The best of %d pass%s, in time of one thread. A ratio is, for the library's functions,\n"
        "how many times as long as a copy they take that reads and writes as many bytes: at\n"
        "most the goal; for those indented below, how many times as long as the library they\n"
        "take: at least the goal. * is the fastest of its kind.\n\n",
        passes, passes == 1 ? "" : "es");
    Table table;
    table.PrintHead();
    for (const Measured& measured : all) {
        table.Print(measured);
    }
    table.PrintMissed();
}

}  // namespace ImageBench
