#pragma once

#include "GenApi/IPortReplay.h"

namespace GenApi_3_0_ORVANE {

/// A port that can record writes instead of making them.
struct OV_ENGINE_API IPortRecorder : virtual public IPortReplay {
    virtual void StartRecording(IPortWriteList* list) = 0;
    virtual void StopRecording() = 0;
};

}  // namespace GenApi_3_0_ORVANE
