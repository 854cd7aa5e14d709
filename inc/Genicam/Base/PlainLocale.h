#pragma once

#include <locale.h>

namespace GenICam_3_0_ORVANE {

/// The calling thread writes and reads numbers with a point while it lives,
/// whatever locale the application has chosen. Other threads and the process
/// keep theirs.
class CPlainLocale {
public:
    CPlainLocale() : m_Previous(uselocale(Get())) {}
    ~CPlainLocale() { uselocale(m_Previous); }
    CPlainLocale(const CPlainLocale&) = delete;
    CPlainLocale& operator=(const CPlainLocale&) = delete;

    /// For the functions that take a locale. The C library always has it.
    static locale_t Get() {
        static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
        return plain;
    }

private:
    locale_t m_Previous;
};

}  // namespace GenICam_3_0_ORVANE
