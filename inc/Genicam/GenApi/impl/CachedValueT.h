#pragma once
/// What all typed faces of a node do alike: the typed cache and the checks
/// around one read and one write.

#include "GenApi/impl/Frames.h"

namespace GenApi_3_0_ORVANE {

/// Keeps the converted value of a node, so that a read need not convert, nor
/// reach the node behind it, again.
///
/// Traits names the `Value`, the methods that reads and writes are entered by
/// (`GetMethod`, `SetMethod`), the log lines (`SetBegin`, `SetEnd`, `GetBegin`,
/// `GetEnd`, `GetCached`) and `Argument`, which turns a value into what those
/// lines print.
template <class Base, class Traits>
class CachedValueT : public Base {
protected:
    using Value_t = typename Traits::Value;

    void RequireReadable() {
        if (!IsReadable(this->GetAccessModeInside())) {
            Base::RaiseAnyFault();
            ACCESS_EXCEPTION_NODE("Node is not readable.");
        }
    }
    void RequireWritable() {
        if (!IsWritable(this->GetAccessModeInside())) {
            Base::RaiseAnyFault();
            ACCESS_EXCEPTION_NODE("Node is not writable.");
        }
    }
    void RequireAvailable() {
        if (!IsAvailable(this->GetAccessModeInside())) {
            Base::RaiseAnyFault();
            ACCESS_EXCEPTION_NODE("Node is not available.");
        }
    }

    /// One write. When verifying, `check` comes before it and the device's
    /// error flag after it.
    template <class Check, class Write>
    void SetCached(const Value_t& value, bool verify, const Check& check, const Write& write) {
        CLogIndent indent;
        RunWrite(
            *this, Traits::SetMethod,
            [&] {
                Base::m_ValueCacheValid = false;
                GCLOGINFOPUSH(indent, Base::m_pValueLog, Traits::SetBegin, Traits::Argument(value));
                if (verify) {
                    RequireWritable();
                    check();
                }
            },
            [&] {
                write();
                if (verify) {
                    this->InternalCheckError();
                }
                if (this->InternalGetCachingMode() == WriteThrough) {
                    KeepValue(value);
                    // The invalidation that this write brings about would
                    // otherwise take away what it has just left here.
                    Base::m_KeepCache = true;
                }
            },
            [&] { GCLOGINFOPOP(indent, Base::m_pValueLog, Traits::SetEnd); });
    }

    /// One read, from the cache when it may answer. When verifying, `check`
    /// sees the value and the device's error flag is asked.
    template <class Check, class Read>
    Value_t GetCached(bool verify, bool ignoreCache, const Check& check, const Read& read) {
        return RunRead(*this, Traits::GetMethod, ignoreCache, [&]() -> Value_t {
            RequireReadable();
            if (!ignoreCache && !verify && this->InternalIsValueCacheValid()) {
                GCLOGINFO(Base::m_pValueLog, Traits::GetCached, Traits::Argument(m_CachedValue));
                return m_CachedValue;
            }
            CLogIndent indent;
            GCLOGINFOPUSH(indent, Base::m_pValueLog, Traits::GetBegin);
            const Value_t value = read();
            if (verify) {
                check(value);
                this->InternalCheckError();
            }
            if (this->InternalGetCachingMode() != NoCache) {
                KeepValue(value);
            }
            GCLOGINFOPOP(indent, Base::m_pValueLog, Traits::GetEnd, Traits::Argument(value));
            return value;
        });
    }

private:
    void KeepValue(const Value_t& value) {
        m_CachedValue = value;
        Base::m_ValueCacheValid = true;
    }

    Value_t m_CachedValue{};
};

/// For values that any reading or writing leaves as they are.
struct NoCheck {
    template <class... Arguments>
    void operator()(const Arguments&... /*ignored*/) const {}
};

}  // namespace GenApi_3_0_ORVANE
