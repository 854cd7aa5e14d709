#pragma once

#include "GenApi/IPortReplay.h"

namespace GenApi_3_0_ORVANE {

/// A port that can record its writes, so that they can be repeated later in one go.
struct OV_ENGINE_API IPortRecorder : virtual public IPortReplay {
    /// From now on appends each successful write to the list, too. The list isn't owned.
    virtual void StartRecording(IPortWriteList* list) = 0;
    /// Ends the recording. Nothing happens if there is none.
    virtual void StopRecording() = 0;
};

}  // namespace GenApi_3_0_ORVANE
