#pragma once

#include "GenApi/impl/BaseT.h"
#include "GenApi/impl/CommandT.h"
#include "GenApi/impl/NodeT.h"
#include "GenApi/impl/ValueT.h"

namespace GenApi_3_0_ORVANE {

/// A number written to another node to make the device do something. The device changes the
/// number when it is done, which only a read finds out.
class CCommandImpl : public CNodeImpl {
public:
    void SetProperty(const CProperty& property) override;
    EAccessMode InternalGetAccessMode() override {
        return CNodeImpl::InternalGetAccessMode(m_Value.GetNode());
    }

protected:
    void InternalExecute(bool verify);
    /// @param fireCallbacks  set if this call found the command done
    bool InternalIsDone(bool verify, bool& fireCallbacks);

private:
    enum EState { Done = 1, Busy = 2 };

    CIntegerPolyRef m_Value;
    CIntegerPolyRef m_CommandValue;
    EState m_State = Done;
};

class CCommand : public BaseT<ValueT<NodeT<CommandT<CCommandImpl>>>> {
public:
    /// Reading the text can find the command done, and then runs callbacks as
    /// IsDone does.
    gcstring ToString(bool verify = false, bool ignoreCache = false) override;
};

}  // namespace GenApi_3_0_ORVANE
