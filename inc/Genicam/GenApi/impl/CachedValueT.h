#pragma once
/// What the interfaces of all typed values share: the cache of the converted value, and the
/// checks around one read and one write.

#include "GenApi/impl/Frames.h"

namespace GenApi_3_0_ORVANE {

/// Keeps the converted value of a node, so that a read neither has to convert again nor to reach
/// the node that the value comes from.
///
/// Traits has the `Value`, the entry points of reads and writes (`GetMethod`, `SetMethod`), the
/// log lines (`SetBegin`, `SetEnd`, `GetBegin`, `GetEnd`, `GetCached`) and `Argument`, which
/// makes of a value what those lines print.
template <class Base, class Traits>
class CachedValueT : public Base {
protected:
    /// The type of the value.
    using Value_t = typename Traits::Value;

    /// @throws AccessException if the value can't be read, or the fault of the node if that is
    ///         why
    void RequireReadable() {
        if (!IsReadable(this->GetAccessModeInside())) {
            Base::RaiseAnyFault();
            ACCESS_EXCEPTION_NODE("Node is not readable.");
        }
    }
    /// @throws AccessException if the value can't be written, or the fault of the node
    void RequireWritable() {
        if (!IsWritable(this->GetAccessModeInside())) {
            Base::RaiseAnyFault();
            ACCESS_EXCEPTION_NODE("Node is not writable.");
        }
    }
    /// @throws AccessException if nothing can be done with the node, or the fault of the node
    void RequireAvailable() {
        if (!IsAvailable(this->GetAccessModeInside())) {
            Base::RaiseAnyFault();
            ACCESS_EXCEPTION_NODE("Node is not available.");
        }
    }

    /// Runs one write. With `verify`, runs `check` before it and looks at the device's error flag
    /// after it.
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

    /// Runs one read, from the cache where that is allowed. With `verify`, passes the value to
    /// `check` and looks at the device's error flag.
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

/// For values of which none is out of range.
struct NoCheck {
    /// Accepts anything.
    template <class... Arguments>
    void operator()(const Arguments&... /*ignored*/) const {}
};

}  // namespace GenApi_3_0_ORVANE
