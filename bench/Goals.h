#pragma once
/// The goals of the benchmarks, which one table has for all programs.

#include <map>
#include <string>

/// The rows of one program. Each goal is a ratio to a reference of the same run: other figures
/// would say more of the machine than of the library.
class Goals {
public:
    /// Reads the table. Ends the program if there is none.
    explicit Goals(const std::string& program);

    /// Prints a row with its figure, its ratio to the reference and the goal. A ratio above the
    /// goal is "missed"; rows without a goal are printed all the same.
    void Print(const std::string& row, double figure, const char* unit, double ratio);

private:
    std::map<std::string, double> m_goals;
};
