#pragma once
/// What is told of a picture.

#include <string>

#include "Json.h"
#include "Picture.h"

/// As in "64x32, 3 channels of 8 bits", with the white balance if it was measured.
std::string ToText(const Picture& picture);
Json ToJson(const Picture& picture);
