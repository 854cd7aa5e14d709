#pragma once
/// Flattens the object tree into lists, in the order of the tree.

#include <memory>
#include <vector>

namespace OVTLClass {

class ITL;
class CGevTL;
class IInterface;
class IDevice;

using TLList = std::vector<std::shared_ptr<ITL>>;
using GevTLList = std::vector<std::shared_ptr<CGevTL>>;
using InterfacePointerList = std::vector<std::shared_ptr<IInterface>>;
using DevicePointerList = std::vector<std::shared_ptr<IDevice>>;

class CTLQuery {
public:
    static bool IsGevTL(const std::shared_ptr<ITL>& tl);
    static TLList QueryAllTL();
    static GevTLList QueryAllGevTL();
    /// The entries that speak GigE Vision.
    static GevTLList QueryGevTLFromTLArray(const TLList& tls);
    static TLList QueryAllGenericTL();
    /// All entries that aren't null, GigE Vision ones too.
    static TLList QueryGenericTLFromTLArray(const TLList& tls);
};

class CInterfaceQuery {
public:
    static InterfacePointerList QueryAllInterface();
    static InterfacePointerList QueryInterfaceFromTLArray(const TLList& tls);
};

class CDeviceQuery {
public:
    static DevicePointerList QueryAllDevice();
    static DevicePointerList QueryDeviceFromTLArray(const TLList& tls);
};

}  // namespace OVTLClass
