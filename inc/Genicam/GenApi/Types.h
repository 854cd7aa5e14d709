#pragma once
/// Enumerations and short names of the node engine. Programs and cache files know the enumerators
/// by their numbers, so these never change.

#include <cstdint>

#include "Base/AutoVector.h"
#include "Base/Export.h"
#include "Base/GCString.h"
#include "Base/GCStringVector.h"
#include "Base/Lock.h"

namespace GenApi_3_0_ORVANE {

using GenICam_3_0_ORVANE::AutoLock;
using GenICam_3_0_ORVANE::CLock;
using GenICam_3_0_ORVANE::double_autovector_t;
using GenICam_3_0_ORVANE::gcstring;
using GenICam_3_0_ORVANE::gcstring_vector;
using GenICam_3_0_ORVANE::int64_autovector_t;

/// What can be done with a node at present. The order is that of growing rights.
enum EAccessMode {
    NI = 0,                    ///< not implemented: the device lacks it for good
    NA = 1,                    ///< not available: not at the moment
    WO = 2,                    ///< write only
    RO = 3,                    ///< read only
    RW = 4,                    ///< read and write
    _UndefinedAccesMode = 5,   ///< not computed yet
    _CycleDetectAccesMode = 6  ///< being computed further up the stack
};

/// What the engine may keep of a value, so that a read needs no device.
enum ECachingMode {
    NoCache = 0,       ///< nothing
    WriteThrough = 1,  ///< what was written or read
    WriteAround = 2,   ///< what was read
    _UndefinedCachingMode = 3
};

/// For which users a node is meant. Later ones see what is meant for earlier ones, too; nobody is
/// shown what is invisible.
enum EVisibility { Beginner = 0, Expert = 1, Guru = 2, Invisible = 3, _UndefinedVisibility = 99 };

/// A yes or no of the description, or neither.
enum EYesNo { No = 0, Yes = 1, _UndefinedYesNo = 2 };

/// Whether a name is from a standard or the device maker's own.
enum ENameSpace { Custom = 0, Standard = 1, _UndefinedNameSpace = 2 };

/// The standards that names may be from.
enum EStandardNameSpace {
    None = 0,
    GEV = 1,
    IIDC = 2,
    CL = 3,
    USB = 4,
    _UndefinedStandardNameSpace = 5
};

/// Whether setting a node invalid goes on to the nodes that depend on it.
enum ESetInvalidMode : int { simOnlyMe = 0, simAll = 1 };

/// Whether a callback is called with the map's lock held or after it was released.
enum ECallbackType { cbPostInsideLock = 1, cbPostOutsideLock = 2 };

/// The operation by which a client entered the graph. Failures name it.
enum EMethod {
    meUndefined = 0,
    meGetAccessMode = 1,
    meToString = 2,
    meFromString = 3,
    meGetValue = 4,
    meSetValue = 5,
    meGetMin = 6,
    meGetMax = 7,
    meGetInc = 8,
    meExecute = 9,
    meIsDone = 10,
    meSetIntValue = 11,
    meGetIntValue = 12,
    meSet = 13,
    meGet = 14,
    meGetIncMode = 15,
    meGetListOfValidValues = 16
};

/// Kinds of a node's neighbours.
enum ELinkType {
    ParentNodes = 0,
    ReadingChildren = 1,
    WritingChildren = 2,
    AllChildren = 3,
    DependingNodes = 4,
    TerminalNodes = 5,
    ValueChildren = 6
};

/// The byte order of a number in a register.
enum EEndianess { BigEndian = 0, LittleEndian = 1, _UndefinedEndian = 2 };
/// Whether the number in a register has a sign.
enum ESign { Signed = 0, Unsigned = 1, _UndefinedSign = 2 };

/// How a user interface should show a number.
enum ERepresentation {
    Linear = 0,
    Logarithmic = 1,
    Boolean = 2,
    PureNumber = 3,
    HexNumber = 4,
    IPV4Address = 5,
    MACAddress = 6,
    _UndefinedRepresentation = 7
};

/// How a floating-point number is written as text.
enum EDisplayNotation {
    fnAutomatic = 0,
    fnFixed = 1,
    fnScientific = 2,
    _UndefinedEDisplayNotation = 3
};

/// Whether valid values are any, multiples of an increment, or a list.
enum EIncMode { noIncrement = 0, fixedIncrement = 1, listIncrement = 2 };

/// How a converter's value changes when its source's value rises.
enum ESlope { Increasing = 0, Decreasing = 1, Varying = 2, Automatic = 3, _UndefinedESlope = 4 };

/// Which of a converter's two formulas a formula is: from the source's value, to it, or neither.
enum EInputDirection { idFrom = 0, idTo = 1, idNone = 2 };

/// The interface that shows best what a node is.
enum EInterfaceType {
    intfIValue = 0,
    intfIBase = 1,
    intfIInteger = 2,
    intfIBoolean = 3,
    intfICommand = 4,
    intfIFloat = 5,
    intfIString = 6,
    intfIRegister = 7,
    intfICategory = 8,
    intfIEnumeration = 9,
    intfIEnumEntry = 10,
    intfIPort = 11
};

/// Whether a value can be read.
inline bool IsReadable(EAccessMode mode) {
    return mode == RO || mode == RW;
}
/// Whether a value can be written.
inline bool IsWritable(EAccessMode mode) {
    return mode == WO || mode == RW;
}
/// Whether the device has the node at all.
inline bool IsImplemented(EAccessMode mode) {
    return mode != NI;
}
/// Whether anything can be done with the node at present.
inline bool IsAvailable(EAccessMode mode) {
    return mode > NA;
}

/// Returns the rights that both modes leave. Neither may be undefined.
OV_ENGINE_API EAccessMode Combine(EAccessMode Peter, EAccessMode Paul);
/// Returns the caching that both modes allow.
OV_ENGINE_API ECachingMode Combine(ECachingMode Peter, ECachingMode Paul);
/// Returns the more restricted of the two.
inline EVisibility Combine(EVisibility Peter, EVisibility Paul) {
    return Peter > Paul ? Peter : Paul;
}

/// The texts of access modes.
class OV_ENGINE_API EAccessModeClass {
public:
    /// Returns "RO", for example.
    static const char* ToString(EAccessMode mode);
};

/// The texts of caching modes.
class OV_ENGINE_API ECachingModeClass {
public:
    /// Returns "WriteThrough", for example.
    static const char* ToString(ECachingMode mode);
};

/// The texts of standard name spaces.
class OV_ENGINE_API EStandardNameSpaceClass {
public:
    /// Returns "GEV", for example.
    static const char* ToString(EStandardNameSpace nameSpace);
};

}  // namespace GenApi_3_0_ORVANE
