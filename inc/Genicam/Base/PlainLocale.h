#pragma once

#include <locale.h>

namespace GenICam_3_0_ORVANE {

/// While it lives, the calling thread writes and reads numbers with a point, whatever locale the
/// application has chosen. Other threads and the process keep theirs.
class CPlainLocale {
public:
    /// Switches the calling thread to the plain locale.
    CPlainLocale() : m_Previous(uselocale(Get())) {}
    ~CPlainLocale() { uselocale(m_Previous); }
    CPlainLocale(const CPlainLocale&) = delete;
    CPlainLocale& operator=(const CPlainLocale&) = delete;

    /// Returns the plain locale, for functions that take one. It is never freed.
    static locale_t Get() {
        static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
        return plain;
    }

private:
    locale_t m_Previous;
};

}  // namespace GenICam_3_0_ORVANE
