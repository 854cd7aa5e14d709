#pragma once
/// Where an exported function stands. What its helpers raise names it: an
/// application knows the functions that it calls.

struct OvPlace {
    const char* file;
    int line;
    const char* function;
};

#define OV_HERE                      \
    OvPlace {                        \
        __FILE__, __LINE__, __func__ \
    }

/// Throws the named class with the message and the place of the exported function.
#define OV_RAISE_AT(type, place, message) \
    throw ::OVTLClass::type((message), (place).file, (place).line, (place).function)
