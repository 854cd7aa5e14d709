#pragma once
/// The place of an exported function in the sources. Exceptions of its helpers name this
/// place instead of their own, because an application knows only the functions that it
/// calls.

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
