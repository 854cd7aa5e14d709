#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

/// A German user's locale, which writes a comma in numbers. Made for the test:
/// which ones a system has differs.
class CommaLocale {
public:
    CommaLocale() {
        EXPECT_NE(mkdtemp(m_Folder.data()), nullptr);
        const std::string make =
            "localedef --no-archive -i de_DE -f UTF-8 " + m_Folder + "/" + kName;
        EXPECT_EQ(std::system(make.c_str()), 0);
        setenv("LOCPATH", m_Folder.c_str(), 1);
        EXPECT_NE(std::setlocale(LC_ALL, kName), nullptr);
        EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    }
    ~CommaLocale() {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
        std::filesystem::remove_all(m_Folder);
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    /// Whether it is still the locale of the process.
    static bool IsSet() { return std::setlocale(LC_ALL, nullptr) == std::string(kName); }

private:
    static constexpr const char* kName = "de_DE.UTF-8";

    std::string m_Folder = (std::filesystem::temp_directory_path() / "ov_locale_XXXXXX").string();
};
