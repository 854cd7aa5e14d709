/// @file What the framework asks of the producer's file.
#include <cstdlib>

#include "Base/EachFrame.h"
#include "gige/producer/GigeProducer.h"

namespace {

std::string Setting(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace

namespace OvProducer {

std::unique_ptr<ProducerBackend> MakeProducer() {
    return std::make_unique<OvGige::GigeProducer>(Setting("OV_GIGE_ADAPTERS"),
                                                  Setting("OV_GIGE_ADDRESSES"));
}

OV_EACH_FRAME CallObserver& Observer() {
    static CallObserver observer;
    return observer;
}

}  // namespace OvProducer
