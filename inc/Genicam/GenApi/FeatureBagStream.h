#pragma once
/// The text form of a bag: a line that marks it, lines of comment that begin
/// with "#", and a line for each entry with a tab between name and value.

#include <iosfwd>

#include "GenApi/FeatureBag.h"

namespace GenApi_3_0_ORVANE {

/// Writes the bag's entries, and what it tells of where it comes from as
/// comment. A text with a line feed in it can't be read back.
OV_ENGINE_API std::ostream& operator<<(std::ostream& stream, const CFeatureBag& bag);

/// Appends the entries of a text to the bag. Up to the next tab is the name,
/// whatever stands there; of a name only 1023 characters count.
/// RuntimeException for a text of another kind; the bag is as before then.
OV_ENGINE_API std::istream& operator>>(std::istream& stream, CFeatureBag& bag);

}  // namespace GenApi_3_0_ORVANE
