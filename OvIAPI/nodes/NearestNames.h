#pragma once
/// Names like one that isn't there.

#include <string>
#include <vector>

/// How many letters must be changed, added or left out to make one of the other, whatever their
/// case.
size_t DistanceOf(const std::string& left, const std::string& right);

/// Up to three of the names that are most like the wanted one, the nearest first: those that
/// differ in few letters, and those that contain it.
std::vector<std::string> NearestNames(const std::string& wanted,
                                      const std::vector<std::string>& names);
