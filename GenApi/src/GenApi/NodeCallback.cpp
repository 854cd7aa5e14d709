#include "GenApi/NodeCallback.h"

#include <algorithm>

#include "GenApi/impl/Node.h"

namespace GenApi_3_0_ORVANE {

void Deregister(CallbackHandleType handle) {
    if (auto* const callback = reinterpret_cast<CNodeCallback*>(handle)) {
        callback->GetNode()->DeregisterCallback(handle);
    }
}

void SortCallbacks(CallbackList& callbacks) {
    std::sort(callbacks.begin(), callbacks.end());
    callbacks.erase(std::unique(callbacks.begin(), callbacks.end()), callbacks.end());
}

void FireCallbacks(const CallbackList& callbacks, ECallbackType type) {
    for (const CNodeCallback* const callback : callbacks) {
        (*callback)(type);
    }
}

}  // namespace GenApi_3_0_ORVANE
