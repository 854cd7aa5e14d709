#pragma once
/// The text form of a bag: a first line that marks it, comment lines that begin with "#", and a
/// line for each entry with a tab between name and value.

#include <iosfwd>

#include "GenApi/FeatureBag.h"

namespace GenApi_3_0_ORVANE {

/// Writes the entries, and the bag's info as a comment. An entry with a line feed in it can't be
/// read back.
OV_ENGINE_API std::ostream& operator<<(std::ostream& stream, const CFeatureBag& bag);

/// Appends the entries of a text to the bag. All characters up to a tab are the name, of which
/// the first 1023 count.
/// @throws RuntimeException for a text of another kind; the bag is as before then
OV_ENGINE_API std::istream& operator>>(std::istream& stream, CFeatureBag& bag);

}  // namespace GenApi_3_0_ORVANE
