#include "TLClassInterface/InterfaceFactory.h"

#include "TLClassInterface/GevInterface.h"

namespace OVTLClass {

std::unique_ptr<IInterface> CInterfaceFactory::CreateInterface(std::shared_ptr<const CGenTLLib> lib,
                                                               std::shared_ptr<ITL> tl,
                                                               void* tlHandle,
                                                               const IF_INFO& info) {
    if (info.tlType.value == GenTL::TLTYPE_GEV) {
        return std::make_unique<CGevInterface>(std::move(lib), std::move(tl), tlHandle, info);
    }
    return std::make_unique<CInterface>(std::move(lib), std::move(tl), tlHandle, info);
}

}  // namespace OVTLClass
