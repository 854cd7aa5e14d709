#pragma once
/// Enumerations and short names of the node engine.

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

/// What can be done with a node now. The order is that of growing rights.
enum EAccessMode {
    NI = 0,  ///< not implemented: the device lacks it for good
    NA = 1,  ///< not available: not at the moment
    WO = 2,
    RO = 3,
    RW = 4,
    _UndefinedAccesMode = 5,   ///< not computed yet
    _CycleDetectAccesMode = 6  ///< being computed further up the stack
};

/// What of a register may be answered without asking the device.
enum ECachingMode {
    NoCache = 0,       ///< nothing
    WriteThrough = 1,  ///< what was written or read
    WriteAround = 2,   ///< what was read
    _UndefinedCachingMode = 3
};

/// Whom a node is meant for.
enum EVisibility { Beginner = 0, Expert = 1, Guru = 2, Invisible = 3, _UndefinedVisibility = 99 };

enum EYesNo { No = 0, Yes = 1, _UndefinedYesNo = 2 };

/// Whether a name is the device maker's or the standard's.
enum ENameSpace { Custom = 0, Standard = 1, _UndefinedNameSpace = 2 };

enum EStandardNameSpace {
    None = 0,
    GEV = 1,
    IIDC = 2,
    CL = 3,
    USB = 4,
    _UndefinedStandardNameSpace = 5
};

enum ESetInvalidMode : int { simOnlyMe = 0, simAll = 1 };

/// When a callback is called: with the map's lock held, or after it.
enum ECallbackType { cbPostInsideLock = 1, cbPostOutsideLock = 2 };

/// The operation through which a client entered the graph.
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

/// Lists of a node's neighbours.
enum ELinkType {
    ParentNodes = 0,
    ReadingChildren = 1,
    WritingChildren = 2,
    AllChildren = 3,
    DependingNodes = 4,
    TerminalNodes = 5,
    ValueChildren = 6
};

enum EEndianess { BigEndian = 0, LittleEndian = 1, _UndefinedEndian = 2 };
enum ESign { Signed = 0, Unsigned = 1, _UndefinedSign = 2 };

/// How a number wants to be shown.
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

enum EDisplayNotation {
    fnAutomatic = 0,
    fnFixed = 1,
    fnScientific = 2,
    _UndefinedEDisplayNotation = 3
};

enum EIncMode { noIncrement = 0, fixedIncrement = 1, listIncrement = 2 };

/// How a converter's value moves with its source.
enum ESlope { Increasing = 0, Decreasing = 1, Varying = 2, Automatic = 3, _UndefinedESlope = 4 };

/// Which name the free input of a formula has.
enum EInputDirection { idFrom = 0, idTo = 1, idNone = 2 };

/// The interface that speaks for a node.
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

inline bool IsReadable(EAccessMode mode) {
    return mode == RO || mode == RW;
}
inline bool IsWritable(EAccessMode mode) {
    return mode == WO || mode == RW;
}
inline bool IsImplemented(EAccessMode mode) {
    return mode != NI;
}
/// Above NA: something can be done with it now.
inline bool IsAvailable(EAccessMode mode) {
    return mode > NA;
}

/// The rights that two nodes leave together. Neither may be undefined.
OV_ENGINE_API EAccessMode Combine(EAccessMode Peter, EAccessMode Paul);
/// The caching that two nodes allow together.
OV_ENGINE_API ECachingMode Combine(ECachingMode Peter, ECachingMode Paul);
/// The stricter of the two.
inline EVisibility Combine(EVisibility Peter, EVisibility Paul) {
    return Peter > Paul ? Peter : Paul;
}

class OV_ENGINE_API EAccessModeClass {
public:
    static const char* ToString(EAccessMode mode);
};

class OV_ENGINE_API ECachingModeClass {
public:
    static const char* ToString(ECachingMode mode);
};

class OV_ENGINE_API EStandardNameSpaceClass {
public:
    static const char* ToString(EStandardNameSpace nameSpace);
};

}  // namespace GenApi_3_0_ORVANE
