#pragma once
/// What the calls beneath a call of the interface are, in their order, and what
/// becomes of a failure of each.

#include <cstdint>
#include <string>
#include <vector>

#include "OvIDef.h"

/// What becomes of the failure of one GenTL call.
enum class Fate {
    Raised,               ///< ends the action with the failure's status and text
    RaisedUnlessMissing,  ///< as above; "not implemented" is passed over
    RaisedUnlessUnknown,  ///< as above; so are an unknown ID and a wrong parameter
    Healed,               ///< one failure is made good by the next attempt; three are raised
    ReportedByStop,       ///< the action goes on to its end and then reports
    NotedByImport,        ///< the text notes it; the rest of the file is loaded
    BlankStreamId,        ///< the producer refuses the blank ID that comes of it
    CameraNotFound,       ///< the search goes on without what it was about
    TriesElsewhere,       ///< the address is looked for on the next interface
    Swallowed,            ///< logged or passed over; the action succeeds
    SwallowedListLater,   ///< as above; the list is as before until the next update
    SwallowedListUntold,  ///< as above; the list isn't changed until the producer reports a change
};

/// `count` calls in a row of one function.
struct Step {
    std::string call;
    unsigned count;
    Fate fate;
    /// Why the failure isn't simply raised.
    std::string why;
};
using Steps = std::vector<Step>;

Steps operator+(Steps first, const Steps& second);

/// The steps by which a module's description comes in.
Steps DescriptionSteps(Fate fate, const std::string& why = {});

/// The codes that each call fails with.
inline constexpr int32_t kFaultCodes[] = {-1, -1003, -1005, -1009, -1010, -1011, -10000};

/// Whether the code is a failure of the call. A producer of the first version of the
/// standard lacks the calls that count URLs, and has one call for all.
bool IsFault(const std::string& call, int32_t code);

/// What the caller sees.
struct Outcome {
    OV_STATUS status = OV_STATUS_SUCCESS;
    std::string place;   ///< begin of the last error's text, after the status
    std::string ending;  ///< end of the last error's text
};

/// What comes of a failure with `code` of the function `call`.
/// @param persistent  the call fails as often as it is made
/// @param mute        the producer has no text for it
Outcome OutcomeOf(const Step& step, int32_t code, bool persistent = false, bool mute = false);
