#include <algorithm>

#include "GenApi/EventAdapterGeneric.h"
#include "event_fuzz.h"

namespace EventFuzz {

namespace {

/// A message starts with a byte that is 0 for an identifier in eight bytes, and
/// else the length of an identifier in text; the event follows.
void Deliver(CEventAdapterGeneric& adapter, Bytes message) {
    if (message.empty()) {
        return;
    }
    const bool isText = message[0] != 0;
    const size_t size = std::min<size_t>(isText ? message[0] : 8, message.size() - 1);
    const Bytes id = message.subspan(1, size);
    DeliverExact(message.subspan(1 + size), [&](const uint8_t* bytes, int64_t length) {
        if (isText) {
            const std::string text(id.begin(), id.end());
            adapter.DeliverMessage(bytes, length, gcstring(text.c_str()));
        } else {
            uint64_t number = 0;
            std::copy(id.begin(), id.end(), reinterpret_cast<uint8_t*>(&number));
            adapter.DeliverMessage(bytes, length, number);
        }
    });
}

}  // namespace

}  // namespace EventFuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace EventFuzz;  // NOLINT(google-build-using-namespace)
    CEventAdapterGeneric adapter(TheCamera().Map());
    ForEachMessage({data, size}, [&](Bytes message) {
        Deliver(adapter, message);
        TheCamera().ReadAll(size);
    });
    return 0;
}
