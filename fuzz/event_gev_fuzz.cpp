#include "GenApi/EventAdapterGEV.h"
#include "event_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return EventFuzz::RunLayout<GenApi_3_0_ORVANE::CEventAdapterGEV>({data, size});
}
