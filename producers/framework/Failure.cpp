#include "framework/Failure.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "Base/EachFrame.h"
#include "Base/UserLog.h"

namespace OvProducer {
namespace {

// Has no destructor on purpose: a thread-local object with one would keep the producer's
// file loaded until the thread ends.
struct Record {
    GenTL::GC_ERROR code = GenTL::GC_ERR_SUCCESS;
    std::array<char, 512> text{"No Error"};
};

thread_local constinit Record t_record;

}  // namespace

OV_EACH_FRAME void RequirePointer(const void* pointer, std::string_view what) {
    if (pointer == nullptr) {
        throw Failure(GenTL::GC_ERR_INVALID_PARAMETER, std::string(what) + " must not be null");
    }
}

OV_EACH_FRAME OvBase::CUserLog& ProducerLog() {
    static OvBase::CUserLog log = OvBase::CUserLog::FromEnvironment();
    return log;
}

void LogWarning(std::string_view line) {
    ProducerLog().Write("Producer", GenICam_3_0_ORVANE::LogWarning, line);
}

void StoreLastError(GenTL::GC_ERROR code, std::string_view text) noexcept {
    t_record.code = code;
    const size_t length = std::min(text.size(), t_record.text.size() - 1);
    std::memcpy(t_record.text.data(), text.data(), length);
    t_record.text[length] = '\0';
}

LastError ReadLastError() noexcept {
    return {t_record.code, t_record.text.data()};
}

}  // namespace OvProducer
