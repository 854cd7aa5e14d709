// What tables of virtual functions hold where a class has no function of its own. That of the
// C++ runtime would be looked up by its name for each of 35,000 entries when the library is
// loaded; one of our own is an address like all others.

#include "Base/OvAssert.h"

extern "C" [[noreturn]] void __cxa_pure_virtual();  // NOLINT(bugprone-reserved-identifier)

extern "C" void __cxa_pure_virtual() {  // NOLINT(bugprone-reserved-identifier)
    OvBase::AssertionFailed("a pure virtual function isn't called", __FILE__, __LINE__);
}
