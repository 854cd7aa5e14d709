#include "TLClassMain/TLFactory.h"

#include "TLClassMain/GevTL.h"

namespace OVTLClass {

std::unique_ptr<CTL> CTLFactory::CreateTL(std::shared_ptr<const CGenTLLib> lib,
                                          const TL_INFO& info) {
    if (info.tlType.value == GenTL::TLTYPE_GEV) {
        return std::make_unique<CGevTL>(std::move(lib), info);
    }
    return std::make_unique<CTL>(std::move(lib), info);
}

}  // namespace OVTLClass
