#pragma once

#include <cstdio>
#include <cstdlib>

#include "OvIDef.h"

/// Ends the program if a call of the library failed: its figures would mean nothing.
inline void Require(OV_STATUS status) {
    if (status != OV_STATUS_SUCCESS) {
        std::fprintf(stderr, "a call failed with %d\n", status);
        std::exit(1);
    }
}
