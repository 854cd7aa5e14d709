#ifndef OVI_NODES_H
#define OVI_NODES_H

/**
 * @file
 * All features of a camera, by their names.
 *
 * The identifiers of OvIDef.h name what many cameras have in common. Most features of a
 * camera have none. Here a feature is found by the name that the camera's description
 * gives it, and so is everything else that the description consists of: a node is a
 * feature, a category of features, an entry of an enumeration, a register or a formula.
 *
 * - OvNodeFind() makes a handle from a name, and all other functions take the handle. A
 *   handle is valid until its camera is closed. It is checked at each call: a handle
 *   that is no longer valid, and a number that never was one, returns
 *   OV_STATUS_INVALID_HANDLE. Asking again for the same node returns the same handle.
 * - The functions use the same nodes as those of OvIAPI.h: what one of them sets, the
 *   other sees, and both run the same callbacks.
 * - Texts and arrays are returned as copies. To learn how much memory a result needs,
 *   call the function with a null buffer; then call it again with memory of that size.
 *   Sizes of texts and of registers are in bytes, in both directions, and include the
 *   terminating zero of a text; arrays are counted by their elements.
 * - Arguments are checked in the order: library, handle, type, pointers. Only then is
 *   the camera asked. Output arguments are written only on success.
 *
 * Every function returns a status. Besides what a function says itself:
 *
 * - OV_STATUS_NOT_INIT_API: before OVInitLib().
 * - OV_STATUS_INVALID_HANDLE: the handle isn't that of an open camera, or of a node of
 *   an open camera.
 * - OV_STATUS_ERROR_TYPE: the node is of another type than the function is for.
 * - OV_STATUS_INVALID_PARAMETER: a pointer is null, or a module, relation or text is
 *   unknown; in a setter, the node can't have this value.
 * - OV_STATUS_NOT_IMPLEMENTED: this camera doesn't have the feature.
 * - OV_STATUS_INVALID_ACCESS: the feature can't be read or written at present.
 * - OV_STATUS_OUT_OF_RANGE: the value is outside the limits or not a multiple of the
 *   increment. The feature keeps its value.
 * - OV_STATUS_NEED_MORE_BUFFER: the memory is smaller than the result. Memory and size
 *   keep their values.
 * - OV_STATUS_OFFLINE: the camera is gone. Values in the library's cache can still be
 *   read.
 * - OV_STATUS_ERROR: the description is faulty in what concerns this node.
 *
 * OVGetLastError() returns the text. Any thread may call these functions, also from a
 * callback, with one exception: don't close a camera that another thread is still using.
 * Calls on one module run one after another, and each takes as long as the module takes
 * to answer.
 */

#include "OvIAPI.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A node of an open camera. 0 is never a handle. */
typedef uint64_t OV_NODE_HANDLE;

/** Whose description a node is from. */
typedef int32_t OV_NODE_MODULE;
enum {
    OV_NODE_MODULE_CAMERA = 0,      /**< the camera itself */
    OV_NODE_MODULE_SYSTEM = 1,      /**< the producer */
    OV_NODE_MODULE_INTERFACE = 2,   /**< the adapter that the camera is connected to */
    OV_NODE_MODULE_HOST_DEVICE = 3, /**< the host's view of the camera */
    OV_NODE_MODULE_STREAM = 4       /**< the data stream */
};

/** What a node is. The first seven have the numbers of the types of OvIDef.h. */
typedef int32_t OV_NODE_TYPE;
enum {
    OV_NODE_TYPE_OTHER = 0,       /**< none of the others */
    OV_NODE_TYPE_INTEGER = 1,     /**< OvNodeGetInteger() */
    OV_NODE_TYPE_FLOAT = 2,       /**< OvNodeGetFloat() */
    OV_NODE_TYPE_ENUMERATION = 3, /**< OvNodeGetSymbolic(), OvNodeGetNumber() */
    OV_NODE_TYPE_BOOLEAN = 4,     /**< OvNodeGetBoolean() */
    OV_NODE_TYPE_STRING = 5,      /**< OvNodeGetString() */
    OV_NODE_TYPE_REGISTER = 6,    /**< OvNodeGetRegister() */
    OV_NODE_TYPE_COMMAND = 7,     /**< OvNodeExecute() */
    OV_NODE_TYPE_CATEGORY = 8,    /**< holds features and categories */
    OV_NODE_TYPE_ENTRY = 9,       /**< one choice of an enumeration */
    OV_NODE_TYPE_PORT = 10        /**< the way to the registers */
};

/** What can be done with a node at present. */
typedef int32_t OV_NODE_ACCESS;
enum {
    OV_NODE_ACCESS_NOT_IMPLEMENTED = 0, /**< this camera doesn't have it */
    OV_NODE_ACCESS_NOT_AVAILABLE = 1,   /**< nothing at the moment */
    OV_NODE_ACCESS_WRITE_ONLY = 2,      /**< it can be written, or executed */
    OV_NODE_ACCESS_READ_ONLY = 3,       /**< it can be read */
    OV_NODE_ACCESS_READ_WRITE = 4       /**< it can be read and written */
};

/** For which users a node is meant. Later ones see what is meant for earlier ones, too. */
typedef int32_t OV_NODE_VISIBILITY;
enum {
    OV_NODE_VISIBILITY_BEGINNER = 0, /**< for everybody */
    OV_NODE_VISIBILITY_EXPERT = 1,   /**< for those who know cameras */
    OV_NODE_VISIBILITY_GURU = 2,     /**< for those who may spoil one */
    OV_NODE_VISIBILITY_INVISIBLE = 3 /**< for programs */
};

/** How a user interface should show a number. */
typedef int32_t OV_NODE_REPRESENTATION;
enum {
    OV_NODE_REPRESENTATION_LINEAR = 0,      /**< a slider */
    OV_NODE_REPRESENTATION_LOGARITHMIC = 1, /**< a slider with a logarithmic scale */
    OV_NODE_REPRESENTATION_BOOLEAN = 2,     /**< a check box */
    OV_NODE_REPRESENTATION_PURE_NUMBER = 3, /**< decimal digits */
    OV_NODE_REPRESENTATION_HEX_NUMBER = 4,  /**< hexadecimal digits */
    OV_NODE_REPRESENTATION_IPV4 = 5,        /**< a dotted address */
    OV_NODE_REPRESENTATION_MAC = 6,         /**< an address of six bytes */
    OV_NODE_REPRESENTATION_NONE = 7         /**< the node isn't a number */
};

/** Properties of a node, as bits. */
enum {
    OV_NODE_FLAG_FEATURE = 1,    /**< it is in the tree of features */
    OV_NODE_FLAG_SELECTOR = 2,   /**< its value decides what other features show */
    OV_NODE_FLAG_STREAMABLE = 4, /**< it belongs in the saved settings of a camera */
    OV_NODE_FLAG_DEPRECATED = 8, /**< new programs shouldn't use it */
    OV_NODE_FLAG_CACHED = 16,    /**< the library may answer a read without the camera */
    OV_NODE_FLAG_STANDARD = 32   /**< its name is from a standard, not the maker's own */
};

/** What a node is and what can be done with it. */
typedef struct OV_NODE_INFO {
    OV_NODE_TYPE type;                     /**< what it is */
    OV_NODE_ACCESS access;                 /**< at present; not available if the camera fails,
                                                and OvNodeGetAccess() returns why */
    OV_NODE_VISIBILITY visibility;         /**< of a category, that of its most visible feature */
    uint32_t nFlags;                       /**< OV_NODE_FLAG_... */
    OV_NODE_REPRESENTATION representation; /**< of an integer or a float */
    int32_t nPollingTime;                  /**< in milliseconds; -1 if it isn't polled */
    int32_t reserved[10];
} OV_NODE_INFO;

/** A text of a node that doesn't change. */
typedef int32_t OV_NODE_TEXT;
enum {
    OV_NODE_TEXT_NAME = 0,         /**< for OvNodeFind(); never empty */
    OV_NODE_TEXT_DISPLAY_NAME = 1, /**< to show to users; never empty */
    OV_NODE_TEXT_TOOL_TIP = 2,     /**< one line of help */
    OV_NODE_TEXT_DESCRIPTION = 3,  /**< the long help */
    OV_NODE_TEXT_UNIT = 4,         /**< of an integer or a float */
    OV_NODE_TEXT_DOCUMENT = 5,     /**< address of a page about it */
    OV_NODE_TEXT_EVENT = 6         /**< the event that updates it, in hexadecimal digits */
};

/** Part of what a description says of a node. */
typedef int32_t OV_NODE_PROPERTY_PART;
enum {
    OV_NODE_PROPERTY_VALUE = 0,    /**< what the element contains */
    OV_NODE_PROPERTY_ATTRIBUTE = 1 /**< what qualifies it, such as the name of a variable */
};

/** How other nodes are related to a node. */
typedef int32_t OV_NODE_RELATION;
enum {
    OV_NODE_RELATION_FEATURES = 0,   /**< what a category holds */
    OV_NODE_RELATION_ENTRIES = 1,    /**< all entries of an enumeration, also those that
                                          can't be chosen at present */
    OV_NODE_RELATION_SELECTORS = 2,  /**< on whose values it depends what the node shows */
    OV_NODE_RELATION_SELECTED = 3,   /**< what the node's value selects */
    OV_NODE_RELATION_PARENTS = 4,    /**< the nodes that use this one */
    OV_NODE_RELATION_SOURCES = 5,    /**< the nodes that this one uses: values, limits and
                                          conditions */
    OV_NODE_RELATION_DEPENDENTS = 6, /**< what may change when the node is written */
    OV_NODE_RELATION_REGISTERS = 7   /**< where its value is kept in the end */
};

/** @name Nodes
 *
 * What a description says of its nodes doesn't change while a camera is open. Only the
 * access of a node does.
 */
/** @{ */

/** Returns a node by its name.
 *  @param module   whose node
 *  @param pszName  the name, with "Std::" or "Cust::" before it if a standard and the
 *                  maker have the same name; a plain name prefers the maker's own node
 *  @param phNode   receives the handle
 *  @return OV_STATUS_NOT_IMPLEMENTED if the description doesn't have the name; the text
 *          names features with names like it */
OV_API OV_STATUS OvNodeFind(OV_DEV_HANDLE hDevice, OV_NODE_MODULE module, const char* pszName,
                            OV_NODE_HANDLE* phNode);

/** Returns the features of a module in the order of their tree: the category "Root", and
 *  then each category before its content. What several categories hold is there once.
 *  A node that fails is in the list as well; the calls on it fail.
 *  @param phNodes   receives the handles; null to ask for their number
 *  @param pnNumber  in: number of elements of phNodes; out: number of features */
OV_API OV_STATUS OvNodeGetAll(OV_DEV_HANDLE hDevice, OV_NODE_MODULE module, OV_NODE_HANDLE* phNodes,
                              size_t* pnNumber);

/** Returns nodes that are related to a node, in the order of the description.
 *  @param relation  which nodes. There are none if the node has no such relation
 *  @param phNodes   receives the handles; null to ask for their number
 *  @param pnNumber  in: number of elements of phNodes; out: number of nodes */
OV_API OV_STATUS OvNodeGetRelated(OV_NODE_HANDLE hNode, OV_NODE_RELATION relation,
                                  OV_NODE_HANDLE* phNodes, size_t* pnNumber);

/** Returns what a node is.
 *  @param pInfo  receives it; reserved fields are set to 0 */
OV_API OV_STATUS OvNodeGetInfo(OV_NODE_HANDLE hNode, OV_NODE_INFO* pInfo);

/** Returns what can be done with a node at present. May ask the camera. */
OV_API OV_STATUS OvNodeGetAccess(OV_NODE_HANDLE hNode, OV_NODE_ACCESS* pAccess);

/** Returns a text of a node. A text that the node doesn't have is empty.
 *  @param text     which text
 *  @param pszText  receives the text; null to ask for the size
 *  @param pnSize   in: size of pszText; out: size of the text */
OV_API OV_STATUS OvNodeGetText(OV_NODE_HANDLE hNode, OV_NODE_TEXT text, char* pszText,
                               size_t* pnSize);

/** Returns the description of a module: the XML that its nodes were made of.
 *  @param pszXml  receives the text, in UTF-8; null to ask for the size
 *  @param pnSize  in: size of pszXml; out: size of the text */
OV_API OV_STATUS OvNodeGetXml(OV_DEV_HANDLE hDevice, OV_NODE_MODULE module, char* pszXml,
                              size_t* pnSize);

/** Returns the names of all that the description says of a node, such as "Formula", "pIsLocked"
 *  or "AccessMode": the names of the elements of its XML. Links that the library has found, such
 *  as "pSelecting" to its selectors, are among them.
 *  @param pszNames  receives the names with a tab between them; null to ask for the size
 *  @param pnSize    in: size of pszNames; out: size of the text */
OV_API OV_STATUS OvNodeGetPropertyNames(OV_NODE_HANDLE hNode, char* pszNames, size_t* pnSize);
/** Returns what the description says of a node under one name. Links are names of nodes.
 *  Several texts have a tab between them.
 *  @param pszName  one of OvNodeGetPropertyNames()
 *  @param part     the text itself, or its attribute
 *  @param pszText  receives the text; null to ask for the size
 *  @param pnSize   in: size of pszText; out: size of the text
 *  @return OV_STATUS_NOT_IMPLEMENTED if the description doesn't say it of this node */
OV_API OV_STATUS OvNodeGetProperty(OV_NODE_HANDLE hNode, const char* pszName,
                                   OV_NODE_PROPERTY_PART part, char* pszText, size_t* pnSize);

/** Drops what the library knows of the node's value and of all that depends on it, and
 *  runs the callbacks. The next read asks the camera. */
OV_API OV_STATUS OvNodeInvalidate(OV_NODE_HANDLE hNode);

/** @} */
/** @name Values as text
 *
 * In the form that the description defines: an integer may be in hexadecimal digits or
 * an address, an enumeration is the symbolic name of its entry, a boolean is "true" or
 * "false", a register is its bytes in hexadecimal digits.
 */
/** @{ */

/** Returns the value of a node of any type that has one.
 *  @param pszValue  receives the text; null to ask for the size
 *  @param pnSize    in: size of pszValue; out: size of the text
 *  @return OV_STATUS_ERROR_TYPE if the node has no value */
OV_API OV_STATUS OvNodeGetAsText(OV_NODE_HANDLE hNode, char* pszValue, size_t* pnSize);
/** Sets a node of any type that has a value. A command is executed by "1" or "true".
 *  @param pszValue  a text as OvNodeGetAsText() returns it
 *  @return OV_STATUS_INVALID_PARAMETER if the text isn't a value of the node,
 *          OV_STATUS_ERROR_TYPE if the node has no value */
OV_API OV_STATUS OvNodeSetAsText(OV_NODE_HANDLE hNode, const char* pszValue);

/** @} */
/** @name Numbers
 *
 * Limits may change whenever another feature changes.
 */
/** @{ */

/** Returns an integer, in its unit. */
OV_API OV_STATUS OvNodeGetInteger(OV_NODE_HANDLE hNode, int64_t* pnValue);
/** Sets an integer.
 *  @param nValue  within the limits, and nMin plus a multiple of nInc, or one of
 *                 OvNodeGetIntegerValues() */
OV_API OV_STATUS OvNodeSetInteger(OV_NODE_HANDLE hNode, int64_t nValue);
/** Returns the present limits of an integer.
 *  @param pRange  receives them; its reserved bytes aren't changed */
OV_API OV_STATUS OvNodeGetIntegerRange(OV_NODE_HANDLE hNode, OV_INT_RANGE* pRange);
/** Returns the values that an integer can have if they are a list instead of multiples
 *  of an increment, within the present limits.
 *  @param pnValues  receives them; null to ask for their number
 *  @param pnNumber  in: number of elements of pnValues; out: number of values, 0 for an
 *                   integer without a list */
OV_API OV_STATUS OvNodeGetIntegerValues(OV_NODE_HANDLE hNode, int64_t* pnValues, size_t* pnNumber);

/** Returns a float, in its unit. */
OV_API OV_STATUS OvNodeGetFloat(OV_NODE_HANDLE hNode, double* pdValue);
/** Sets a float. The camera may round the value.
 *  @param dValue  within the limits, and one of OvNodeGetFloatValues() if there are any */
OV_API OV_STATUS OvNodeSetFloat(OV_NODE_HANDLE hNode, double dValue);
/** Returns the present limits and the increment of a float. A unit of more than 8
 *  characters is cut: see OV_NODE_TEXT_UNIT.
 *  @param pRange  receives them; its reserved bytes aren't changed */
OV_API OV_STATUS OvNodeGetFloatRange(OV_NODE_HANDLE hNode, OV_FLOAT_RANGE* pRange);
/** Like OvNodeGetIntegerValues(), for a float.
 *  @param pdValues  receives the values; null to ask for their number
 *  @param pnNumber  in: number of elements of pdValues; out: number of values */
OV_API OV_STATUS OvNodeGetFloatValues(OV_NODE_HANDLE hNode, double* pdValues, size_t* pnNumber);

/** Returns a boolean. */
OV_API OV_STATUS OvNodeGetBoolean(OV_NODE_HANDLE hNode, bool* pbValue);
/** Sets a boolean. */
OV_API OV_STATUS OvNodeSetBoolean(OV_NODE_HANDLE hNode, bool bValue);

/** @} */
/** @name Enumerations
 *
 * An entry has a symbolic name, which is the same for all cameras, and a number, which is
 * the camera's own. Entries are nodes: their access shows whether they can be chosen.
 */
/** @{ */

/** Returns the symbolic name of an enumeration's value; of an entry, its own.
 *  @param pszSymbolic  receives the name; null to ask for the size
 *  @param pnSize       in: size of pszSymbolic; out: size of the name
 *  @return OV_STATUS_ERROR if the camera has a number that no entry has;
 *          OvNodeGetNumber() returns that */
OV_API OV_STATUS OvNodeGetSymbolic(OV_NODE_HANDLE hNode, char* pszSymbolic, size_t* pnSize);
/** Chooses an entry of an enumeration by its symbolic name.
 *  @return OV_STATUS_INVALID_PARAMETER if no entry has the name,
 *          OV_STATUS_INVALID_ACCESS if it can't be chosen at present */
OV_API OV_STATUS OvNodeSetSymbolic(OV_NODE_HANDLE hNode, const char* pszSymbolic);
/** Returns the number of an enumeration's value; of an entry, its own. */
OV_API OV_STATUS OvNodeGetNumber(OV_NODE_HANDLE hNode, int64_t* pnValue);
/** Chooses an entry of an enumeration by its number. Fails like OvNodeSetSymbolic(). */
OV_API OV_STATUS OvNodeSetNumber(OV_NODE_HANDLE hNode, int64_t nValue);

/** @} */
/** @name Texts, registers and commands */
/** @{ */

/** Returns a string.
 *  @param pszValue  receives the text; null to ask for the size
 *  @param pnSize    in: size of pszValue; out: size of the text */
OV_API OV_STATUS OvNodeGetString(OV_NODE_HANDLE hNode, char* pszValue, size_t* pnSize);
/** Sets a string. A new "DeviceUserID" of the camera is in the device list at once.
 *  @return OV_STATUS_OUT_OF_RANGE for a text that is too long */
OV_API OV_STATUS OvNodeSetString(OV_NODE_HANDLE hNode, const char* pszValue);
/** Returns the largest size that a string can have, with the terminating zero. */
OV_API OV_STATUS OvNodeGetStringMaxSize(OV_NODE_HANDLE hNode, size_t* pnSize);

/** Returns the bytes of a register, always all of them. Numbers and strings that are
 *  registers have bytes, too.
 *  @param pBuffer  receives the bytes; null to ask for the size
 *  @param pnSize   in: size of pBuffer; out: size of the register */
OV_API OV_STATUS OvNodeGetRegister(OV_NODE_HANDLE hNode, uint8_t* pBuffer, size_t* pnSize);
/** Sets the first nSize bytes of a register and leaves the others. A new "DeviceUserID" of the
 *  camera is in the device list at once.
 *  @param pBuffer  nSize bytes; not null
 *  @return OV_STATUS_OUT_OF_RANGE if the register has fewer bytes */
OV_API OV_STATUS OvNodeSetRegister(OV_NODE_HANDLE hNode, const uint8_t* pBuffer, size_t nSize);
/** Returns where a register is in the memory of its port, in bytes. Both may change with
 *  other features.
 *  @param pnAddress  receives the address of the first byte
 *  @param pnLength   receives the number of bytes */
OV_API OV_STATUS OvNodeGetRegisterPlace(OV_NODE_HANDLE hNode, int64_t* pnAddress,
                                        int64_t* pnLength);

/** Executes a command. Returns as soon as the camera has accepted it. The camera's
 *  "AcquisitionStart" and "AcquisitionStop" do what OVStreamOn() and OVStreamOff() do,
 *  and fail like them. */
OV_API OV_STATUS OvNodeExecute(OV_NODE_HANDLE hNode);
/** Returns whether a command that was executed is done. Asks the camera each time. */
OV_API OV_STATUS OvNodeIsDone(OV_NODE_HANDLE hNode, bool* pbIsDone);

/** @} */
/** @name Callbacks
 *
 * The rules for callbacks are those of OVRegisterFeatureCallback(): a callback runs on the
 * thread that changes the node, or on one of the library's threads for events and polled
 * features, with the lock of the module's nodes held. It may call these functions, but not
 * close its camera.
 */
/** @{ */

/** A registered callback: valid until it is removed or the camera is closed. */
typedef void* OV_NODE_CALLBACK_HANDLE;

/** Is called when a node may have changed. */
typedef void (*OvNodeCallback)(OV_NODE_HANDLE hNode, void* pUserParam);

/** Registers a function that is called when the node may have changed; for a feature that
 *  belongs to an event, when the camera sends the event.
 *  @param pUserParam  passed to the function; may be null
 *  @param callback    the function; not null
 *  @param phCallback  receives the handle for removing it
 *  @return OV_STATUS_INVALID_CALL from a callback of the camera's events */
OV_API OV_STATUS OvNodeRegisterCallback(OV_NODE_HANDLE hNode, void* pUserParam,
                                        OvNodeCallback callback,
                                        OV_NODE_CALLBACK_HANDLE* phCallback);
/** Removes a callback. It may remove itself. A call that is running on another thread isn't
 *  waited for.
 *  @param hCallback  must have been registered for that node
 *  @return OV_STATUS_INVALID_CALL from a callback of the camera's events;
 *          OV_STATUS_INVALID_HANDLE if the callback isn't registered for the node */
OV_API OV_STATUS OvNodeUnregisterCallback(OV_NODE_HANDLE hNode, OV_NODE_CALLBACK_HANDLE hCallback);

/** @} */
/** @name Chunks of frames
 *
 * A camera may append data to its frames, such as the exposure time that a frame was taken
 * with ("ChunkModeActive"). Features show them ("ChunkExposureTime") while the frame is
 * attached to the camera's nodes. At other times these features aren't available, and reading
 * them returns OV_STATUS_INVALID_ACCESS.
 *
 * One frame of a camera can be attached at a time, because each feature has one value:
 * attaching a frame detaches the one before. A frame is also detached when it is given back,
 * when its callback returns, when the acquisition stops and when the camera is closed.
 * Attaching and detaching run the callbacks of the chunk features; these callbacks may read
 * them, but not attach, detach or give back a frame, which returns OV_STATUS_INVALID_CALL.
 * Copies of frames (OVGetImage()) can't be attached.
 *
 * The producer lists where the chunks are. If it can't, the library looks for them in complete
 * frames of GigE Vision and USB3 Vision cameras.
 */
/** @{ */

/** Attaches a frame on loan. A frame without chunks can be attached, too.
 *  @param pFrame  a frame of OVDQBuf() or OVDQAllBufs() that was not given back
 *  @return OV_STATUS_INVALID_PARAMETER if the frame isn't on loan; another frame stays
 *          attached then. After any other failure no frame is attached:
 *          OV_STATUS_NOT_IMPLEMENTED if the chunks can't be found, OV_STATUS_ERROR or a
 *          code of the producer if they are faulty */
OV_API OV_STATUS OvNodeAttachFrame(OV_DEV_HANDLE hDevice, const OV_FRAME_BUFFER* pFrame);
/** The same for the frame of a capture callback. It can only be called in that callback, on its
 *  thread.
 *  @param pFrame  what the callback received
 *  @return OV_STATUS_INVALID_PARAMETER if it isn't that frame; otherwise as
 *          OvNodeAttachFrame() */
OV_API OV_STATUS OvNodeAttachCallbackFrame(OV_DEV_HANDLE hDevice,
                                           const OV_FRAME_CALLBACK_PARAM* pFrame);
/** Detaches the frame that is attached. Succeeds without effect if there is none. */
OV_API OV_STATUS OvNodeDetachFrame(OV_DEV_HANDLE hDevice);

/** @} */
/** @name Files in a camera
 *
 * Some cameras keep files: look-up tables, calibrations, firmware. The entries of
 * "FileSelector" are their names. Each call opens the file, transfers it and closes it, and
 * lasts as long as the camera takes; transfers of several threads follow one another. A
 * program shouldn't set the camera's features of file access meanwhile.
 *
 * - OV_STATUS_NOT_IMPLEMENTED: the camera has no file access.
 * - OV_STATUS_INVALID_PARAMETER: the camera doesn't know the file.
 * - OV_STATUS_INVALID_CALL: from a callback of a feature of the camera.
 * - OV_STATUS_ERROR: the camera refuses; the text has its "FileOperationStatus".
 */
/** @{ */

/** Reads a part of a file.
 *  @param pszFile  the name of the file
 *  @param nOffset  of the first byte, in bytes
 *  @param pBuffer  receives the bytes. After a failure its content means nothing
 *  @param pnSize   in: size of pBuffer; out: number of bytes, fewer at the end of the file */
OV_API OV_STATUS OvNodeReadFile(OV_DEV_HANDLE hDevice, const char* pszFile, uint64_t nOffset,
                                uint8_t* pBuffer, size_t* pnSize);
/** Replaces a file. If the camera doesn't take all of it, the text says how much it took.
 *  @param pszFile  the name of the file
 *  @param pBuffer  nSize bytes; not null */
OV_API OV_STATUS OvNodeWriteFile(OV_DEV_HANDLE hDevice, const char* pszFile, const uint8_t* pBuffer,
                                 size_t nSize);
/** Deletes a file.
 *  @param pszFile  the name of the file */
OV_API OV_STATUS OvNodeDeleteFile(OV_DEV_HANDLE hDevice, const char* pszFile);

/** @} */

#ifdef __cplusplus
#define OV_CHECK_LAYOUT(condition) static_assert(condition, #condition)
#else
#define OV_CHECK_LAYOUT(condition) _Static_assert(condition, #condition)
#endif

OV_CHECK_LAYOUT(sizeof(OV_NODE_INFO) == 64);
OV_CHECK_LAYOUT(offsetof(OV_NODE_INFO, access) == 4);
OV_CHECK_LAYOUT(offsetof(OV_NODE_INFO, visibility) == 8);
OV_CHECK_LAYOUT(offsetof(OV_NODE_INFO, nFlags) == 12);
OV_CHECK_LAYOUT(offsetof(OV_NODE_INFO, representation) == 16);
OV_CHECK_LAYOUT(offsetof(OV_NODE_INFO, nPollingTime) == 20);
OV_CHECK_LAYOUT(offsetof(OV_NODE_INFO, reserved) == 24);

#undef OV_CHECK_LAYOUT

#ifdef __cplusplus
}
#endif

#endif
