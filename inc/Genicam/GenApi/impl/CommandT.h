#pragma once

#include <utility>

#include "GenApi/ICommand.h"
#include "GenApi/impl/Frames.h"
#include "text/Value2String.h"

namespace GenApi_3_0_ORVANE {

/// Adds ICommand to an implementation class, which has `InternalExecute(verify)` and
/// `InternalIsDone(verify, fireCallbacks)`.
template <class Base>
class CommandT : public Base, virtual public ICommand {
public:
    void Execute(bool verify = true) override {
        CLogIndent indent;
        RunWrite(
            *this, meExecute,
            [&] {
                GCLOGINFOPUSH(indent, Base::m_pValueLog, "Execute...");
                if (!IsWritable(this->GetAccessModeInside())) {
                    ACCESS_EXCEPTION_NODE("Node is not writable.");
                }
            },
            [&] {
                this->InternalExecute(verify);
                if (verify) {
                    this->InternalCheckError();
                }
            },
            [&] { GCLOGINFOPOP(indent, Base::m_pValueLog, "...Execute"); });
    }
    void operator()() override { Execute(); }

    bool IsDone(bool verify = true) override {
        CallbackList callbacks;
        bool isDone = false;
        {
            const AutoLock lock(Base::GetLock());
            isDone = AskDevice(verify, callbacks);
            FireCallbacks(callbacks, cbPostInsideLock);
        }
        FireCallbacks(callbacks, cbPostOutsideLock);
        return isDone;
    }

    EInterfaceType InternalGetPrincipalInterfaceType() override { return intfICommand; }

protected:
    /// "0" for a command that is done, "1" while it runs.
    gcstring InternalToString(bool verify, bool /*ignoreCache*/) override {
        return AskDevice(verify, m_Pending) ? "0" : "1";
    }
    /// Executes the command for any text that means true.
    void InternalFromString(const gcstring& text, bool /*verify*/) override {
        bool value = false;
        if (!String2Value(text, &value) || !value) {
            INVALID_ARGUMENT_EXCEPTION_NODE("'%s' does not convert to TRUE", text.c_str());
        }
        Execute(true);
    }

    /// Returns the callbacks that became due when the command was last read as text. They run
    /// only once that read has succeeded.
    CallbackList TakePending() { return std::exchange(m_Pending, {}); }

private:
    /// @param callbacks  receives those to be called once everything has succeeded
    bool AskDevice(bool verify, CallbackList& callbacks) {
        const EntryMethodFinalizer entry(*this, meIsDone);
        Base::RequireSound();
        if (!IsImplemented(this->GetAccessModeInside())) {
            ACCESS_EXCEPTION_NODE("Node is not implemented.");
        }
        CLogIndent indent;
        GCLOGINFOPUSH(indent, Base::m_pValueLog, "IsDone...");
        bool fireCallbacks = false;
        const bool isDone = this->InternalIsDone(verify, fireCallbacks);
        GCLOGINFOPOP(indent, Base::m_pValueLog, "...IsDone = %s", isDone ? "true" : "false");
        if (fireCallbacks) {
            this->CollectCallbacksToFire(callbacks, true);
            SortCallbacks(callbacks);
        }
        return isDone;
    }

    CallbackList m_Pending;
};

}  // namespace GenApi_3_0_ORVANE
