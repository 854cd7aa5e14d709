#include "gige/producer/Log.h"

#include "Base/UserLog.h"
#include "framework/Failure.h"

namespace OvGige {

void LogWarning(std::string_view line) {
    OvProducer::ProducerLog().Write("Producer", GenICam_3_0_ORVANE::LogWarning, line);
}

}  // namespace OvGige
