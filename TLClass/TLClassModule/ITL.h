#pragma once
/// The open system module of one producer.

#include <memory>
#include <vector>

#include "TLClassInfo/InfoRecords.h"
#include "TLClassModule/GcObject.h"

namespace OVTLClass {

class IInterface;

class ITL : public CGcObject {
public:
    using CGcObject::CGcObject;

    /// Has the producer look for interfaces and renews the children, or only what
    /// changes about them while they are the same. What goes wrong is logged and
    /// leaves the list as it was; the next update renews it.
    /// @param timeout  for the producer, in milliseconds
    /// @param changed  whether the list is another now
    virtual void DoUpdateInterfaceList(unsigned timeout, bool& changed) = 0;
    virtual TL_INFO DoGetTLInfo() = 0;
    virtual std::vector<std::shared_ptr<IInterface>> DoGetInterfaceList() = 0;
    /// Interfaces that the producer no longer lists.
    virtual std::vector<std::shared_ptr<IInterface>> DoGetLostInterfaceList() = 0;
    /// Opens the system with its description. No effect when it is open.
    virtual void DoOpenTL() = 0;
    /// Closes all interfaces, lost ones too, and then the system. What goes wrong is
    /// logged.
    virtual void DoCloseTL() = 0;
    virtual bool DoIsTLOpen() = 0;
};

}  // namespace OVTLClass
