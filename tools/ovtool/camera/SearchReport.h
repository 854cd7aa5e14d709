#pragma once
/// Where cameras were searched for, for those who find none.

#include <string>

/// The producers that the library looks for, which of them work and why others don't, and the
/// interfaces on which they search. For while the library is closed: producers can be asked
/// only then.
std::string SearchReport();
