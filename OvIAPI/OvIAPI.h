#ifndef OVI_API_H
#define OVI_API_H

/**
 * @file
 * The camera interface of liboviapi.so.
 *
 * - A handle (OV_DEV_HANDLE) stands for one open camera, from OVOpenDevice() to
 *   OVCloseDevice().
 * - Memory belongs to whoever made it: the caller owns what it passes, the
 *   library owns frames on loan, and texts go out by copy.
 * - A size is asked for before a buffer is filled: call with a null buffer for
 *   the size, then with memory of that size. A size argument is in bytes, both
 *   ways, and counts the terminating zero of a text.
 * - Every function but OVGetLibVersion() returns a status, OV_STATUS_SUCCESS or
 *   a negative value; OVGetLastError() on the same thread tells the text. An
 *   output argument is written only after success, where nothing else is said.
 *   Every function but OVGetLibVersion(), OVInitLib(), OVCloseLib() and
 *   OVGetLastError() gives OV_STATUS_NOT_INIT_API before OVInitLib(), and those
 *   that take a handle give OV_STATUS_INVALID_HANDLE for one that isn't open. A
 *   null pointer where memory is needed gives OV_STATUS_INVALID_PARAMETER. A
 *   camera that is gone gives OV_STATUS_OFFLINE from whatever must reach it.
 * - Any thread may call anything at any time, but for closing what another
 *   thread still uses. OVInitLib(), OVCloseLib() and the two list updates
 *   exclude one another. What a callback may not call stands at that call.
 */

#include "OvIDef.h"

#define OV_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/** @name Library */
/** @{ */

/** The version text of the library. Needs no initialisation; never fails. */
OV_API const char* OVGetLibVersion(void);

/** Loads the producers that stand beside the library and opens them.
 *  Success when that is done already, or when another thread is doing it, after a
 *  wait for its end; calls aren't counted. Fails with
 *  OV_STATUS_NOT_FOUND_TL when there is no producer. When one producer fails,
 *  all are taken down again, and the next call starts afresh. */
OV_API OV_STATUS OVInitLib(void);

/** Closes all cameras and producers, and resets the calling thread's last
 *  error. Success when nothing is open. Cameras close from the last opened to
 *  the first; in a callback of one of them its turn ends the call with
 *  OV_STATUS_INVALID_CALL, and it, those before it and the library stay. */
OV_API OV_STATUS OVCloseLib(void);

/** The last failure of the calling thread. It stays until the next failure of
 *  that thread, whatever succeeds in between.
 *  @param pErrorCode  takes its status; may be null
 *  @param pszErrText  takes its text; null to ask for the size
 *  @param pSize       size of pszErrText in, size of the text out; not null
 *  @return OV_STATUS_NEED_MORE_BUFFER, with *pSize set to 0, when the text
 *          doesn't fit */
OV_API OV_STATUS OVGetLastError(int32_t* pErrorCode, char* pszErrText, size_t* pSize);

/** @} */
/** @name Device list and opening */
/** @{ */

/** Searches for cameras in the subnets of this machine's adapters and renews
 *  the device list. Open cameras aren't touched.
 *  @param pnDeviceNum  takes the number of cameras
 *  @param nTimeOut     how long a producer may search, in milliseconds */
OV_API OV_STATUS OVUpdateDeviceList(uint32_t* pnDeviceNum, uint32_t nTimeOut);

/** As OVUpdateDeviceList(), but finds GigE Vision cameras in any subnet. */
OV_API OV_STATUS OVUpdateAllDeviceList(uint32_t* pnDeviceNum, uint32_t nTimeOut);

/** The device list; an empty one is searched for first (200 ms).
 *  @param pDeviceInfo  takes one record for each camera; null to ask for the size
 *  @param pSize        size in bytes, in and out
 *  @return OV_STATUS_NEED_MORE_BUFFER, with *pSize set to 0, when it is too small */
OV_API OV_STATUS OVGetAllDeviceBaseInfo(OV_DEVICE_BASE_INFO* pDeviceInfo, size_t* pSize);

/** Addresses of a GigE Vision camera of the list.
 *  @param nIndex  place in the list, from 1
 *  @return OV_STATUS_OUT_OF_RANGE for no such place, OV_STATUS_INVALID_PARAMETER
 *          for a camera of another kind */
OV_API OV_STATUS OVGetDeviceIPInfo(uint32_t nIndex, OV_DEVICE_IP_INFO* pstDeviceIPInfo);

/** Opens a camera of the list exclusively, with its first stream. A place beyond
 *  the list is searched for first (200 ms).
 *  @param nDeviceIndex  place in the list, from 1
 *  @param phDevice      takes the handle
 *  @return OV_STATUS_OUT_OF_RANGE for no such place, OV_STATUS_INVALID_ACCESS
 *          for a camera that is open already or held elsewhere */
OV_API OV_STATUS OVOpenDeviceByIndex(uint32_t nDeviceIndex, OV_DEV_HANDLE* phDevice);

/** Opens the camera that a key names, with its first stream. A camera that is
 *  not in the list is searched for (200 ms); by address it is tried directly.
 *  @return OV_STATUS_INVALID_PARAMETER for an empty key, a mode that doesn't exist,
 *          or an address that isn't dotted numbers from 0 to 254, the first not 0;
 *          OV_STATUS_NOT_FOUND_DEVICE when no camera has the key,
 *          OV_STATUS_OUT_OF_RANGE when the list has no such place;
 *          OV_STATUS_INVALID_ACCESS for one that is open already or held elsewhere */
OV_API OV_STATUS OVOpenDevice(const OV_OPEN_PARAM* pOpenParam, OV_DEV_HANDLE* phDevice);

/** Stops and closes a camera; the handle is void afterwards. Not from one of
 *  its own callbacks: OV_STATUS_INVALID_CALL. */
OV_API OV_STATUS OVCloseDevice(OV_DEV_HANDLE hDevice);

/** @} */
/** @name Features
 *
 * A feature is named by an identifier, which carries its type and the module
 * that has it: the camera, the host's side of it, or its stream. What a feature
 * means, its unit and its limits come from the camera's description; limits,
 * entries and access may change with every other feature. Every call asks anew,
 * and nothing is owned by the library: results are copies in the caller's
 * memory, written only on success, and a text or a buffer given to a setter may
 * go when the call returns.
 *
 * Arguments are checked before the camera is asked. What fails, besides what
 * fails everywhere:
 *
 * - OV_STATUS_ERROR_TYPE: the identifier is of another type than the function's.
 * - OV_STATUS_INVALID_PARAMETER: no feature has the identifier, or a pointer is
 *   null; in a setter, the camera has no such value.
 * - OV_STATUS_NOT_IMPLEMENTED: this camera lacks the feature.
 * - OV_STATUS_INVALID_ACCESS: it can't be read, or written, as things are: a
 *   camera opened for reading, or one whose size is locked while frames flow.
 * - OV_STATUS_OUT_OF_RANGE: a setter's value is outside the limits or off the
 *   increment. The feature keeps its value.
 * - OV_STATUS_NEED_MORE_BUFFER: the memory is smaller than the content. Memory
 *   and size stay as they were.
 * - OV_STATUS_OFFLINE: the camera is gone. A value that the library holds in its
 *   cache is still read, as that takes no camera.
 * - OV_STATUS_ERROR: the camera's description is at fault; it may have the
 *   feature with another type.
 *
 * Any thread may call, callbacks included; the calls on one module follow one
 * another, each as long as the module takes to answer. Only the two commands of
 * the acquisition have limits of their own, see OVStreamOn() and OVStreamOff().
 */
/** @{ */

/** The GenICam name of a feature, as "ExposureTime". Doesn't ask the camera, and
 *  doesn't say that it has the feature.
 *  @param pszName  takes the name with its zero; null to ask for the size
 *  @param pnSize   bytes of pszName in, of the name with its zero out */
OV_API OV_STATUS OVGetFeatureName(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, char* pszName,
                                  size_t* pnSize);

/** Whether the camera has the feature at all; false is a success. For any type.
 *  @param pbIsImplemented  takes the answer */
OV_API OV_STATUS OVIsImplemented(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                 bool* pbIsImplemented);
/** Whether the feature can be read now. For any type.
 *  @param pbIsReadable  takes the answer; false, too, for a feature that is in
 *                       the camera's description but not in the camera
 *  @return OV_STATUS_NOT_IMPLEMENTED for one that isn't in the description */
OV_API OV_STATUS OVIsReadable(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbIsReadable);
/** Whether the feature can be written now, or the command run. As
 *  OVIsReadable() otherwise. */
OV_API OV_STATUS OVIsWritable(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbIsWritable);

/** Limits of an integer feature as they are now.
 *  @param pIntRange  takes them; its reserved bytes stay */
OV_API OV_STATUS OVGetIntRange(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                               OV_INT_RANGE* pIntRange);
/** Value of an integer feature, in the feature's unit. */
OV_API OV_STATUS OVGetInt(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t* pnValue);
/** Sets an integer feature.
 *  @param nValue  within the limits, and nMin plus a multiple of nInc */
OV_API OV_STATUS OVSetInt(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t nValue);

/** Limits, increment and unit of a float feature as they are now.
 *  @param pFloatRange  takes them; its reserved bytes stay */
OV_API OV_STATUS OVGetFloatRange(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                 OV_FLOAT_RANGE* pFloatRange);
/** Sets a float feature. The camera may round to what it can do: OVGetFloat()
 *  tells what became of it.
 *  @param dValue  within the limits, in the unit of OVGetFloatRange() */
OV_API OV_STATUS OVSetFloat(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, double dValue);
/** Value of a float feature, in the unit of OVGetFloatRange(). */
OV_API OV_STATUS OVGetFloat(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, double* pdValue);

/** Number of entries of an enumeration that can be chosen now. */
OV_API OV_STATUS OVGetEnumEntryNums(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                    uint32_t* pnEntryNums);
/** The entries of an enumeration that can be chosen now, in the order of the
 *  camera's description.
 *  @param pEnumDescription  takes a record for each, whose reserved bytes stay;
 *                           null to ask for the size
 *  @param pBufferSize       bytes of the records in and out; no other size is
 *                           written for memory that is too small */
OV_API OV_STATUS OVGetEnumDescription(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                      OV_ENUM_DESCRIPTION* pEnumDescription, size_t* pBufferSize);
/** Value of an enumeration: the nValue of one of its entries. */
OV_API OV_STATUS OVGetEnum(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t* pnValue);
/** Sets an enumeration to the entry with that nValue; the number is the camera's
 *  own, not the entry's place.
 *  @return OV_STATUS_INVALID_PARAMETER when no entry has it */
OV_API OV_STATUS OVSetEnum(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t nValue);

/** Value of a boolean feature. */
OV_API OV_STATUS OVGetBool(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbValue);
/** Sets a boolean feature. */
OV_API OV_STATUS OVSetBool(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool bValue);

/** Bytes of a text feature's value now, with the terminating zero. */
OV_API OV_STATUS OVGetStringLength(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, size_t* pnSize);
/** Bytes that the value of a text feature takes at most, with the terminating
 *  zero. Memory of that size always does for OVGetString(). */
OV_API OV_STATUS OVGetStringMaxLength(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                      size_t* pnSize);
/** Value of a text feature. A value that changes meanwhile comes cut to the
 *  size that it had at first.
 *  @param pszContent  takes the text with its zero; null to ask for the size
 *  @param pnSize      bytes of pszContent in, of the text with its zero out */
OV_API OV_STATUS OVGetString(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, char* pszContent,
                             size_t* pnSize);
/** Sets a text feature. A new "DeviceUserID" shows in the device list, and opens
 *  the camera by it, at once; not so when the camera was opened by its address.
 *  @param pszContent  zero-terminated; it may be empty but not null
 *  @return OV_STATUS_OUT_OF_RANGE for a text that the feature can't hold; where
 *          it is a register, the zero must fit in, too */
OV_API OV_STATUS OVSetString(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                             const char* pszContent);

/** Bytes of a buffer feature. */
OV_API OV_STATUS OVGetBufferLength(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, size_t* pnSize);
/** Content of a buffer feature; it is always read whole.
 *  @param pBuffer  takes the bytes; null to ask for the size
 *  @param pnSize   bytes of pBuffer in, of the feature out */
OV_API OV_STATUS OVGetBuffer(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, uint8_t* pBuffer,
                             size_t* pnSize);
/** Sets the first nSize bytes of a buffer feature; the rest stays.
 *  @param pBuffer  nSize bytes; not null
 *  @return OV_STATUS_OUT_OF_RANGE for more bytes than the feature has */
OV_API OV_STATUS OVSetBuffer(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, const uint8_t* pBuffer,
                             size_t nSize);

/** Runs a command; returns when the camera has taken it, which needn't be when
 *  it is done. "AcquisitionStart" and "AcquisitionStop" are exactly OVStreamOn()
 *  and OVStreamOff(). */
OV_API OV_STATUS OVSendCommand(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID);

/** @} */
/** @name Acquisition
 *
 * Frames come in one of three ways: by callback, by copy with OVGetImage(), or
 * on loan with OVDQBuf(). The last two exclude a registered callback; calling
 * them in the wrong state gives OV_STATUS_INVALID_CALL.
 */
/** @{ */

/** How many buffers the next start uses; until it is set 5, or what the producer
 *  needs when that is more. Only while stopped.
 *  @return OV_STATUS_INVALID_PARAMETER for 0, OV_STATUS_INVALID_CALL while started,
 *          OV_STATUS_OUT_OF_RANGE when the producer needs more */
OV_API OV_STATUS OVSetAcqusitionBufferNumber(OV_DEV_HANDLE hDevice, uint64_t nBufferNum);
/** How many buffers the next start uses. */
OV_API OV_STATUS OVGetAcqusitionBufferNumber(OV_DEV_HANDLE hDevice, uint64_t* pBufferNum);

/** Has every frame of later starts handed to callBackFun. Replaces an earlier
 *  callback.
 *  @param pUserParam  passed on with each frame; may be null
 *  @return OV_STATUS_INVALID_CALL while started */
OV_API OV_STATUS OVRegisterCaptureCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                           OVCaptureCallback callBackFun);
/** Takes the capture callback away; success when there is none.
 *  @return OV_STATUS_INVALID_CALL while started */
OV_API OV_STATUS OVUnregisterCaptureCallback(OV_DEV_HANDLE hDevice);

/** Waits for a frame and copies it.
 *  @param pFrameData  its pImgBuf must hold "PayloadSize" bytes; nothing checks it
 *  @param nTimeout    in milliseconds
 *  @return OV_STATUS_TIMEOUT when nothing came, which is also so while all frames are
 *          on loan: the producer has no buffer for another */
OV_API OV_STATUS OVGetImage(OV_DEV_HANDLE hDevice, OV_FRAME_DATA* pFrameData, uint32_t nTimeout);

/** Gives the frames that wait by now back to the producer, unseen. Frames on loan
 *  stay on loan. Success without effect while stopped. */
OV_API OV_STATUS OVFlushQueue(OV_DEV_HANDLE hDevice);

/** Starts the acquisition. The camera's transport parameters are locked from
 *  here to OVStreamOff(). Not from a capture or a feature callback of the camera:
 *  OV_STATUS_INVALID_CALL.
 *  @return OV_STATUS_INVALID_ACCESS for a camera that was opened for reading */
OV_API OV_STATUS OVStreamOn(OV_DEV_HANDLE hDevice);
/** Stops the acquisition; frames on loan are void afterwards. The host's side is
 *  stopped even when the camera doesn't answer; its failure is then the result.
 *  A fetch that waits on another thread ends with the producer's -1012.
 *  Not from a capture or a feature callback of the camera: OV_STATUS_INVALID_CALL.
 *  @return OV_STATUS_INVALID_ACCESS for a camera that was opened for reading,
 *          OV_STATUS_OFFLINE for one that is gone, OV_STATUS_ERROR for every other
 *          failure of the camera */
OV_API OV_STATUS OVStreamOff(OV_DEV_HANDLE hDevice);

/** Waits for a frame and lends it.
 *  @param ppFrameBuffer  cleared first, takes the frame
 *  @param nTimeOut       in milliseconds
 *  @return OV_STATUS_TIMEOUT when nothing came, which is also so while all frames are
 *          on loan: the producer has no buffer for another; OV_STATUS_ERROR when the
 *          producer has more buffers than the last start made, and all of those are
 *          on loan */
OV_API OV_STATUS OVDQBuf(OV_DEV_HANDLE hDevice, OV_FRAME_BUFFER** ppFrameBuffer, uint32_t nTimeOut);
/** Gives a frame on loan back.
 *  @return OV_STATUS_INVALID_PARAMETER for a pointer that isn't on loan */
OV_API OV_STATUS OVQBuf(OV_DEV_HANDLE hDevice, OV_FRAME_BUFFER* pFrameBuffer);
/** Lends all frames that wait, at least one.
 *  @param ppFrameBufferArray     cleared first, takes the frames
 *  @param nFrameBufferArraySize  its length, at least the number of buffers
 *  @param pnFrameCount           set to 0 first, takes the number of frames
 *  @param nTimeOut               for each frame, in milliseconds
 *  @return OV_STATUS_NEED_MORE_BUFFER for an array that is too short; others as
 *          OVDQBuf(). No frame is lent after a failure */
OV_API OV_STATUS OVDQAllBufs(OV_DEV_HANDLE hDevice, OV_FRAME_BUFFER** ppFrameBufferArray,
                             uint32_t nFrameBufferArraySize, uint32_t* pnFrameCount,
                             uint32_t nTimeOut);
/** Gives all frames on loan back. */
OV_API OV_STATUS OVQAllBufs(OV_DEV_HANDLE hDevice);

/** @} */
/** @name Events
 *
 * Callbacks come on threads of the camera's own, one for frames, one for its
 * events and one for its loss; those that a write causes come on the writer's.
 * While a feature callback runs, feature calls of other threads on that camera
 * wait, and a close waits for all callbacks. A callback that waits for such a
 * thread waits for ever: by a list update while that thread closes the library.
 *
 * Features with a polling time change by themselves. While feature callbacks are
 * registered on a camera that has such features, a thread drops their values when
 * the time is over, and runs the callbacks; to them applies what is said of those of
 * the camera's events. Otherwise the next call on a feature reads the new value.
 */
/** @{ */

/** Has callBackFun called once when the camera is gone; at once when an earlier
 *  registered one was told so. Not from the offline callback:
 *  OV_STATUS_INVALID_CALL.
 *  @param pHCallBack  takes the handle for unregistering */
OV_API OV_STATUS OVRegisterDeviceOfflineCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                                 OVDeviceOfflineCallback callBackFun,
                                                 OV_EVENT_CALLBACK_HANDLE* pHCallBack);
/** Takes an offline callback away; waits for a running one, except in other
 *  callbacks. Not from the offline callback: OV_STATUS_INVALID_CALL.
 *  @return OV_STATUS_INVALID_HANDLE for a callback that isn't registered (any more)
 *          on this camera */
OV_API OV_STATUS OVUnregisterDeviceOfflineCallback(OV_DEV_HANDLE hDevice,
                                                   OV_EVENT_CALLBACK_HANDLE pHCallBack);
/** Has callBackFun called when the feature may have changed; for a feature of
 *  the event family, when the camera sends that event. Not from a feature
 *  callback of the camera's events: OV_STATUS_INVALID_CALL.
 *  @param pHCallBack  takes the handle for unregistering */
OV_API OV_STATUS OVRegisterFeatureCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                           OVFeatureCallback callBackFun, OV_FEATURE_ID featureID,
                                           OV_FEATURE_CALLBACK_HANDLE* pHCallBack);
/** Takes a feature callback away. Not from a feature callback of the camera's
 *  events: OV_STATUS_INVALID_CALL.
 *  @return OV_STATUS_INVALID_HANDLE for a callback that isn't registered (any more)
 *          on this camera, OV_STATUS_INVALID_PARAMETER for that of another feature */
OV_API OV_STATUS OVUnregisterFeatureCallback(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                             OV_FEATURE_CALLBACK_HANDLE pHCallBack);
/** Drops the waiting events; OV_STATUS_INVALID_CALL before an event feature has a callback. */
OV_API OV_STATUS OVFlushEvent(OV_DEV_HANDLE hDevice);
/** How many of the camera's events wait; OV_STATUS_INVALID_CALL as for OVFlushEvent(). */
OV_API OV_STATUS OVGetEventNumInQueue(OV_DEV_HANDLE hDevice, uint32_t* pnEventNum);

/** @} */
/** @name GigE Vision configuration
 *
 * The first three work on a camera that need not be open: it is searched for in
 * all networks by its MAC address, "AA-BB-CC-DD-EE-FF" in capitals.
 * OV_STATUS_NOT_FOUND_DEVICE when it doesn't answer. OV_STATUS_ERROR when its
 * producer lacks the call, which is none of the GenTL standard's.
 */
/** @{ */

/** Sets how the camera gets its address.
 *  @param emIpConfigFlag  see OV_IP_CONFIGURE_MODE
 *  @param pszIPAddress    with the next two: needed for the persistent modes,
 *                         ignored for the others
 *  @param pszUserID       new user ID; null counts as empty
 *  @return OV_STATUS_INVALID_PARAMETER for another mode, and for a null address in a
 *          persistent one. Whether addresses make sense is the producer's to say */
OV_API OV_STATUS OVGigEIpConfiguration(const char* pszDeviceMacAddress,
                                       OV_IP_CONFIGURE_MODE emIpConfigFlag,
                                       const char* pszIPAddress, const char* pszSubnetMask,
                                       const char* pszDefaultGateway, const char* pszUserID);
/** Gives the camera an address until its next start. Whether the addresses make
 *  sense is the producer's to say. */
OV_API OV_STATUS OVGigEForceIp(const char* pszDeviceMacAddress, const char* pszIPAddress,
                               const char* pszSubnetMask, const char* pszDefaultGateway);
/** Resets the camera.
 *  @return OV_STATUS_INVALID_PARAMETER for a mode that doesn't exist */
OV_API OV_STATUS OVGigEResetDevice(const char* pszDeviceMacAddress, OV_RESET_MODE emResetMode);

/** The persistent address of an open camera, as dotted texts. Each text may be
 *  null to ask for its size alone.
 *  @return OV_STATUS_NOT_IMPLEMENTED when the camera lacks one of the three features,
 *          OV_STATUS_NEED_MORE_BUFFER when a text doesn't fit: no text is written
 *          then, but the sizes of null texts are */
OV_API OV_STATUS OVGetDevicePersistentIpAddress(OV_DEV_HANDLE hDevice, char* pszIP,
                                                size_t* pnIPLength, char* pszSubnetMask,
                                                size_t* pnSubnetMaskLength, char* pszDefaultGateway,
                                                size_t* pnDefaultGatewayLength);
/** Sets the persistent address of an open camera. A failure in the middle
 *  leaves the earlier ones of address, mask, gateway written.
 *  @param pszIP              dotted numbers from 0 to 254, the first not 0
 *  @param pszSubnetMask      dotted numbers from 0 to 255, the first not 0, and not all
 *                            255; whether its ones are in a row isn't looked at
 *  @param pszDefaultGateway  as pszIP: a camera can't be told to have none
 *  @return OV_STATUS_INVALID_PARAMETER for texts of another form,
 *          OV_STATUS_NOT_IMPLEMENTED when the camera lacks one of the three features */
OV_API OV_STATUS OVSetDevicePersistentIpAddress(OV_DEV_HANDLE hDevice, const char* pszIP,
                                                const char* pszSubnetMask,
                                                const char* pszDefaultGateway);

/** @} */
/** @name Configuration files and raw port access */
/** @{ */

/** Writes the camera's settings to a file, replacing it. The file is opened once
 *  all settings are read.
 *  @return OV_STATUS_INVALID_CALL while started, OV_STATUS_ERROR for an empty path and
 *          for a file that can't be written */
OV_API OV_STATUS OVExportConfigFile(OV_DEV_HANDLE hDevice, const char* pszFilePath);
/** Restores settings from a file. What took effect stays, also when others failed;
 *  the text of the failure names those.
 *  @param bVerify  read every value back and compare
 *  @return OV_STATUS_INVALID_CALL while started, OV_STATUS_ERROR for an empty path, a
 *          file that can't be read, and settings that failed */
OV_API OV_STATUS OVImportConfigFile(OV_DEV_HANDLE hDevice, const char* pszFilePath, bool bVerify);
/** Reads the camera's registers, past all features and their caches. After a
 *  failure, memory and size are as the producer left them.
 *  @param piSize  bytes wanted in, bytes read out */
OV_API OV_STATUS OVReadRemoteDevicePort(OV_DEV_HANDLE hDevice, uint64_t ui64Address, void* pBuffer,
                                        size_t* piSize);
/** Writes the camera's registers. Features may show old values until they are
 *  read anew: their caches don't hear of it. After a failure the size is as the
 *  producer left it.
 *  @param piSize  bytes to write in, bytes written out */
OV_API OV_STATUS OVWriteRemoteDevicePort(OV_DEV_HANDLE hDevice, uint64_t ui64Address,
                                         const void* pBuffer, size_t* piSize);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
