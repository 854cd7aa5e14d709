// Commands: a number written to another node, which the device changes when it is done.

#include "values/CommandImpl.h"

namespace GenApi_3_0_ORVANE {

void CCommandImpl::SetProperty(const CProperty& property) {
    switch (property.GetPropertyID()) {
        case CPropertyID::Value_ID:
            m_Value = property.Integer();
            break;
        case CPropertyID::pValue_ID:
            m_Value = LinkChild(property, ReadRole | WriteRole | ValueRole);
            break;
        case CPropertyID::CommandValue_ID:
            m_CommandValue = property.Integer();
            break;
        case CPropertyID::pCommandValue_ID:
            m_CommandValue = LinkChild(property, ReadRole);
            break;
        default:
            CNodeImpl::SetProperty(property);
    }
}

/// Looks at the two nodes before the write, so that the failure names the one that is in the way.
void CCommandImpl::InternalExecute(bool verify) {
    INodePrivate* const commandValueNode = m_CommandValue.GetNode();
    if (commandValueNode != nullptr && !IsReadable(commandValueNode->GetAccessMode())) {
        LOGICAL_ERROR_EXCEPTION_NODE("Unable to execute because '%s' is not readable",
                                     commandValueNode->InternalGetName().c_str());
    }
    INodePrivate* const valueNode = m_Value.GetNode();
    if (valueNode != nullptr && !IsWritable(valueNode->GetAccessMode())) {
        LOGICAL_ERROR_EXCEPTION_NODE("Unable to execute because '%s' is not writable",
                                     valueNode->InternalGetName().c_str());
    }
    SetOrHold(m_Value, m_CommandValue.GetValue(), verify);
    // If the value can't be read, nothing would ever show that the command is done.
    m_State = m_Value.IsReadable() && IsReadable(GetAccessMode()) ? Busy : Done;
}

/// Asks only while a command is under way: a trigger button that is never pressed costs no reads.
/// The device clears the register in its own time, so the look goes past the cache.
bool CCommandImpl::InternalIsDone(bool verify, bool& fireCallbacks) {
    if (m_State != Busy) {
        return true;
    }
    // A register that can't be read at present, for example because the camera is busy, can't
    // keep the command from ending.
    const bool canLook =
        m_Value.IsReadable() && (m_CommandValue.IsConstant() || m_CommandValue.IsReadable());
    if (canLook && m_Value.GetValue(false, true) == m_CommandValue.GetValue()) {
        return false;
    }
    // Before anything that may throw or call back: the command is done, whatever else happens.
    m_State = Done;
    fireCallbacks = true;
    SetInvalid(simAll);
    if (verify) {
        InternalCheckError();
    }
    return true;
}

/// Callbacks that this look brings about run after the read has succeeded and outside of its
/// frame, just as those of IsDone.
gcstring CCommand::ToString(bool verify, bool ignoreCache) {
    gcstring text;
    CallbackList callbacks;
    {
        const AutoLock lock(GetLock());
        // An attempt that failed may have left callbacks here whose owners are gone by now.
        TakePending();
        text = ValueT::ToString(verify, ignoreCache);
        callbacks = TakePending();
        FireCallbacks(callbacks, cbPostInsideLock);
    }
    FireCallbacks(callbacks, cbPostOutsideLock);
    return text;
}

}  // namespace GenApi_3_0_ORVANE
