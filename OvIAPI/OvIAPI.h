#ifndef OVI_API_H
#define OVI_API_H

/**
 * @file
 * The camera interface of liboviapi.so.
 *
 * - A handle (OV_DEV_HANDLE) refers to one open camera, from OVOpenDevice() to
 *   OVCloseDevice().
 * - Memory belongs to whoever allocated it: the caller owns what it passes, the
 *   library owns frames on loan, and texts are returned as copies.
 * - To learn how much memory a result needs, call the function with a null buffer;
 *   then call it again with memory of that size. Sizes are in bytes, in both
 *   directions, and include the terminating zero of a text.
 * - Every function except OVGetLibVersion() returns a status: OV_STATUS_SUCCESS or a
 *   negative value. After a failure, OVGetLastError() on the same thread returns the
 *   text. Output arguments are written only on success unless the function says
 *   otherwise.
 * - Every function except OVGetLibVersion(), OVInitLib(), OVCloseLib() and
 *   OVGetLastError() returns OV_STATUS_NOT_INIT_API before OVInitLib(). Functions that
 *   take a handle return OV_STATUS_INVALID_HANDLE if it isn't that of an open camera.
 *   A null pointer where memory is needed returns OV_STATUS_INVALID_PARAMETER. Whatever
 *   must reach a camera that is gone returns OV_STATUS_OFFLINE.
 * - Any thread may call any function at any time, with one exception: don't close what
 *   another thread is still using. OVInitLib(), OVCloseLib() and the two list updates
 *   run one at a time. Functions that may not be called from a callback say so.
 */

#include "OvIDef.h"

#define OV_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/** @name Library */
/** @{ */

/** Returns the version of the library as a text. Needs no initialisation and never
 *  fails. */
OV_API const char* OVGetLibVersion(void);

/** Loads and opens the producers (.cti files) in the folder of the library.
 *  Succeeds without effect if the library is initialised already; if another thread
 *  is initialising it, waits until that has finished. Calls aren't counted: one
 *  OVCloseLib() ends them all.
 *  @return OV_STATUS_NOT_FOUND_TL if there is no producer. If one producer fails, all
 *          are closed again, and the next call starts from the beginning */
OV_API OV_STATUS OVInitLib(void);

/** Closes all cameras and producers, and clears the calling thread's last error.
 *  Succeeds without effect if nothing is open. Cameras are closed in reverse order of
 *  their opening.
 *  @return OV_STATUS_INVALID_CALL from a callback of a camera. The cameras that were
 *          opened after that one are closed by then; that camera, those opened before
 *          it and the library stay open */
OV_API OV_STATUS OVCloseLib(void);

/** Returns the last failure of the calling thread. Successful calls leave it as it is.
 *  @param pErrorCode  receives its status; may be null
 *  @param pszErrText  receives its text; null to ask for the size
 *  @param pSize       in: size of pszErrText; out: size of the text. Not null
 *  @return OV_STATUS_NEED_MORE_BUFFER, with *pSize set to 0, if the text doesn't fit */
OV_API OV_STATUS OVGetLastError(int32_t* pErrorCode, char* pszErrText, size_t* pSize);

/** @} */
/** @name Device list and opening */
/** @{ */

/** Searches for cameras in the subnets of this machine's adapters and renews the device
 *  list. Open cameras aren't affected.
 *  @param pnDeviceNum  receives the number of cameras
 *  @param nTimeOut     how long each producer may search, in milliseconds */
OV_API OV_STATUS OVUpdateDeviceList(uint32_t* pnDeviceNum, uint32_t nTimeOut);

/** Like OVUpdateDeviceList(), but finds GigE Vision cameras in any subnet. */
OV_API OV_STATUS OVUpdateAllDeviceList(uint32_t* pnDeviceNum, uint32_t nTimeOut);

/** Returns the device list. If the list is empty, searches for cameras first (200 ms).
 *  @param pDeviceInfo  receives one record for each camera; null to ask for the size
 *  @param pSize        in: size of pDeviceInfo; out: size of the records
 *  @return OV_STATUS_NEED_MORE_BUFFER, with *pSize set to 0, if the memory is too small */
OV_API OV_STATUS OVGetAllDeviceBaseInfo(OV_DEVICE_BASE_INFO* pDeviceInfo, size_t* pSize);

/** Returns the addresses of a GigE Vision camera in the list.
 *  @param nIndex           position in the list, from 1
 *  @param pstDeviceIPInfo  receives the addresses
 *  @return OV_STATUS_OUT_OF_RANGE if the list has no such position,
 *          OV_STATUS_INVALID_PARAMETER if the camera isn't a GigE Vision camera */
OV_API OV_STATUS OVGetDeviceIPInfo(uint32_t nIndex, OV_DEVICE_IP_INFO* pstDeviceIPInfo);

/** Opens a camera of the list for exclusive use, and its first stream. If the list is
 *  shorter than nDeviceIndex, searches for cameras first (200 ms).
 *  @param nDeviceIndex  position in the list, from 1
 *  @param phDevice      receives the handle
 *  @return OV_STATUS_OUT_OF_RANGE if the list has no such position,
 *          OV_STATUS_INVALID_ACCESS if the camera is open already, here or elsewhere */
OV_API OV_STATUS OVOpenDeviceByIndex(uint32_t nDeviceIndex, OV_DEV_HANDLE* phDevice);

/** Opens the camera that has the given key (serial number, user ID, address and so on),
 *  and its first stream. If no camera of the list has the key, searches for cameras
 *  first (200 ms); an address is also tried directly.
 *  @param pOpenParam  the key, its kind, and the access that is wanted
 *  @param phDevice    receives the handle
 *  @return OV_STATUS_INVALID_PARAMETER for an empty key, an unknown mode, or an address
 *          that isn't four dotted numbers from 0 to 254, the first not 0;
 *          OV_STATUS_NOT_FOUND_DEVICE if no camera has the key;
 *          OV_STATUS_OUT_OF_RANGE if the list has no such position;
 *          OV_STATUS_INVALID_ACCESS if the camera is open already, here or elsewhere */
OV_API OV_STATUS OVOpenDevice(const OV_OPEN_PARAM* pOpenParam, OV_DEV_HANDLE* phDevice);

/** Stops and closes a camera. The handle is invalid afterwards. Waits for callbacks of
 *  the camera that are running.
 *  @return OV_STATUS_INVALID_CALL from a callback of this camera */
OV_API OV_STATUS OVCloseDevice(OV_DEV_HANDLE hDevice);

/** @} */
/** @name Features
 *
 * An identifier names a feature. It includes the feature's type and the module that
 * has the feature: the camera, the host's view of the camera, or its stream. The
 * camera's description defines what a feature means, its unit and its limits. Limits,
 * entries and access may change whenever another feature changes, so every call asks
 * the camera again. Results are copies in the caller's memory, and a setter doesn't
 * keep the text or buffer that it is given.
 *
 * Arguments are checked before the camera is asked. Besides the failures that all
 * functions have in common:
 *
 * - OV_STATUS_ERROR_TYPE: the identifier's type isn't that of the function.
 * - OV_STATUS_INVALID_PARAMETER: the identifier isn't that of a feature, or a pointer is
 *   null; in a setter, the feature can't have this value.
 * - OV_STATUS_NOT_IMPLEMENTED: this camera doesn't have the feature.
 * - OV_STATUS_INVALID_ACCESS: the feature can't be read or written at present, for
 *   instance because the camera is open for reading only, or because the feature is
 *   locked during an acquisition.
 * - OV_STATUS_OUT_OF_RANGE: the value is outside the limits or not a multiple of the
 *   increment. The feature keeps its value.
 * - OV_STATUS_NEED_MORE_BUFFER: the memory is smaller than the content. Memory and size
 *   keep their values.
 * - OV_STATUS_OFFLINE: the camera is gone. Values in the library's cache can still be
 *   read.
 * - OV_STATUS_ERROR: the camera's description is faulty, or gives the feature a
 *   different type.
 *
 * Any thread may call these functions, also from a callback. Calls on one module run one
 * after another, and each takes as long as the module takes to answer. Only the two
 * commands of the acquisition are restricted: see OVStreamOn() and OVStreamOff().
 */
/** @{ */

/** Returns the GenICam name of a feature, such as "ExposureTime". Doesn't ask the camera,
 *  which may not have the feature.
 *  @param pszName  receives the name; null to ask for the size
 *  @param pnSize   in: size of pszName; out: size of the name */
OV_API OV_STATUS OVGetFeatureName(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, char* pszName,
                                  size_t* pnSize);

/** Tells whether the camera has the feature. Works for features of any type.
 *  @param pbIsImplemented  receives the answer */
OV_API OV_STATUS OVIsImplemented(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                 bool* pbIsImplemented);
/** Tells whether the feature can be read at present. Works for features of any type.
 *  @param pbIsReadable  receives the answer; false also for a feature that the camera's
 *                       description has but the camera hasn't
 *  @return OV_STATUS_NOT_IMPLEMENTED if the description doesn't have the feature */
OV_API OV_STATUS OVIsReadable(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbIsReadable);
/** Tells whether the feature can be written at present, or the command executed.
 *  Otherwise like OVIsReadable(). */
OV_API OV_STATUS OVIsWritable(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbIsWritable);

/** Returns the present limits of an integer feature.
 *  @param pIntRange  receives them; its reserved bytes aren't changed */
OV_API OV_STATUS OVGetIntRange(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                               OV_INT_RANGE* pIntRange);
/** Returns the value of an integer feature, in the feature's unit. */
OV_API OV_STATUS OVGetInt(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t* pnValue);
/** Sets an integer feature.
 *  @param nValue  within the limits, and nMin plus a multiple of nInc */
OV_API OV_STATUS OVSetInt(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t nValue);

/** Returns the present limits, increment and unit of a float feature.
 *  @param pFloatRange  receives them; its reserved bytes aren't changed */
OV_API OV_STATUS OVGetFloatRange(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                 OV_FLOAT_RANGE* pFloatRange);
/** Sets a float feature. The camera may round the value: OVGetFloat() returns what it
 *  has set.
 *  @param dValue  within the limits, in the unit of OVGetFloatRange() */
OV_API OV_STATUS OVSetFloat(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, double dValue);
/** Returns the value of a float feature, in the unit of OVGetFloatRange(). */
OV_API OV_STATUS OVGetFloat(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, double* pdValue);

/** Returns how many entries of an enumeration can be chosen at present. */
OV_API OV_STATUS OVGetEnumEntryNums(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                    uint32_t* pnEntryNums);
/** Returns the entries of an enumeration that can be chosen at present, in the order of
 *  the camera's description.
 *  @param pEnumDescription  receives a record for each; their reserved bytes aren't
 *                           changed. Null to ask for the size
 *  @param pBufferSize       in: size of pEnumDescription; out: size of the records. Not
 *                           changed if the memory is too small */
OV_API OV_STATUS OVGetEnumDescription(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                      OV_ENUM_DESCRIPTION* pEnumDescription, size_t* pBufferSize);
/** Returns the value of an enumeration: the nValue of one of its entries. */
OV_API OV_STATUS OVGetEnum(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t* pnValue);
/** Sets an enumeration to the entry that has this nValue, which is the camera's number
 *  for the entry and not its position.
 *  @return OV_STATUS_INVALID_PARAMETER if no entry has it */
OV_API OV_STATUS OVSetEnum(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, int64_t nValue);

/** Returns the value of a boolean feature. */
OV_API OV_STATUS OVGetBool(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool* pbValue);
/** Sets a boolean feature. */
OV_API OV_STATUS OVSetBool(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, bool bValue);

/** Returns the size of a text feature's present value. */
OV_API OV_STATUS OVGetStringLength(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, size_t* pnSize);
/** Returns the largest size that the value of a text feature can have. Memory of that
 *  size is always enough for OVGetString(). */
OV_API OV_STATUS OVGetStringMaxLength(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                      size_t* pnSize);
/** Returns the value of a text feature. If the value grows during the call, it is cut to
 *  the size that it had at first.
 *  @param pszContent  receives the text; null to ask for the size
 *  @param pnSize      in: size of pszContent; out: size of the text */
OV_API OV_STATUS OVGetString(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, char* pszContent,
                             size_t* pnSize);
/** Sets a text feature. A new "DeviceUserID" is in the device list at once, and opens the
 *  camera, unless the camera was opened by its address.
 *  @param pszContent  zero-terminated; may be empty but not null
 *  @return OV_STATUS_OUT_OF_RANGE for a text that is too long; in a register, the zero
 *          must fit, too */
OV_API OV_STATUS OVSetString(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                             const char* pszContent);

/** Returns the size of a buffer feature. */
OV_API OV_STATUS OVGetBufferLength(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, size_t* pnSize);
/** Returns the content of a buffer feature, always all of it.
 *  @param pBuffer  receives the bytes; null to ask for the size
 *  @param pnSize   in: size of pBuffer; out: size of the feature */
OV_API OV_STATUS OVGetBuffer(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, uint8_t* pBuffer,
                             size_t* pnSize);
/** Sets the first nSize bytes of a buffer feature and leaves the others.
 *  @param pBuffer  nSize bytes; not null
 *  @return OV_STATUS_OUT_OF_RANGE if the feature has fewer bytes */
OV_API OV_STATUS OVSetBuffer(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID, const uint8_t* pBuffer,
                             size_t nSize);

/** Executes a command. Returns as soon as the camera has accepted it, which may be before
 *  it is done. "AcquisitionStart" and "AcquisitionStop" do what OVStreamOn() and
 *  OVStreamOff() do. */
OV_API OV_STATUS OVSendCommand(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID);

/** @} */
/** @name Acquisition
 *
 * There are three ways to receive frames: by callback, by copy with OVGetImage(), or on
 * loan with OVDQBuf(). Copies and loans are possible only without a callback. Functions
 * that are called in the wrong state return OV_STATUS_INVALID_CALL.
 */
/** @{ */

/** Sets how many buffers the next acquisition uses. The default is 5, or what the
 *  producer needs if that is more.
 *  @return OV_STATUS_INVALID_PARAMETER for 0, OV_STATUS_INVALID_CALL during an
 *          acquisition, OV_STATUS_OUT_OF_RANGE if the producer needs more */
OV_API OV_STATUS OVSetAcqusitionBufferNumber(OV_DEV_HANDLE hDevice, uint64_t nBufferNum);
/** Returns how many buffers the next acquisition uses. */
OV_API OV_STATUS OVGetAcqusitionBufferNumber(OV_DEV_HANDLE hDevice, uint64_t* pBufferNum);

/** Registers the function that receives every frame of the following acquisitions.
 *  Replaces the one that was registered before.
 *  @param pUserParam  passed to the function with each frame; may be null
 *  @return OV_STATUS_INVALID_CALL during an acquisition */
OV_API OV_STATUS OVRegisterCaptureCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                           OVCaptureCallback callBackFun);
/** Removes the capture callback. Succeeds without effect if there is none.
 *  @return OV_STATUS_INVALID_CALL during an acquisition */
OV_API OV_STATUS OVUnregisterCaptureCallback(OV_DEV_HANDLE hDevice);

/** Waits for a frame and copies it.
 *  @param pFrameData  its pImgBuf must point to "PayloadSize" bytes, which the library
 *                     can't check
 *  @param nTimeout    in milliseconds
 *  @return OV_STATUS_TIMEOUT if no frame arrived; none can arrive while all buffers are
 *          on loan */
OV_API OV_STATUS OVGetImage(OV_DEV_HANDLE hDevice, OV_FRAME_DATA* pFrameData, uint32_t nTimeout);

/** Returns the frames that are waiting to the producer without delivering them. Frames on
 *  loan stay on loan. Succeeds without effect if there is no acquisition. */
OV_API OV_STATUS OVFlushQueue(OV_DEV_HANDLE hDevice);

/** Starts the acquisition. If the camera has a lock for its transport parameters
 *  ("TLParamsLocked"), they are locked until OVStreamOff().
 *  @return OV_STATUS_INVALID_CALL from a capture or feature callback of the camera,
 *          OV_STATUS_INVALID_ACCESS if the camera was opened for reading only */
OV_API OV_STATUS OVStreamOn(OV_DEV_HANDLE hDevice);
/** Stops the acquisition. Frames on loan are invalid afterwards. Calls of OVGetImage(),
 *  OVDQBuf() and OVDQAllBufs() that are waiting on other threads return -1012. If the
 *  camera fails, the host stops all the same and the camera's failure is returned.
 *  @return OV_STATUS_INVALID_CALL from a capture or feature callback of the camera,
 *          OV_STATUS_INVALID_ACCESS if the camera was opened for reading only,
 *          OV_STATUS_OFFLINE if it is gone, OV_STATUS_ERROR for any other failure of
 *          the camera */
OV_API OV_STATUS OVStreamOff(OV_DEV_HANDLE hDevice);

/** Waits for a frame and lends it to the caller, who returns it by OVQBuf().
 *  @param ppFrameBuffer  set to null first; receives the frame
 *  @param nTimeOut       in milliseconds
 *  @return OV_STATUS_TIMEOUT if no frame arrived; none can arrive while all buffers are
 *          on loan. OV_STATUS_ERROR if the producer delivers one more than there are
 *          buffers */
OV_API OV_STATUS OVDQBuf(OV_DEV_HANDLE hDevice, OV_FRAME_BUFFER** ppFrameBuffer, uint32_t nTimeOut);
/** Returns a frame on loan.
 *  @return OV_STATUS_INVALID_PARAMETER if this frame isn't on loan */
OV_API OV_STATUS OVQBuf(OV_DEV_HANDLE hDevice, OV_FRAME_BUFFER* pFrameBuffer);
/** Lends all frames that are waiting, and waits for one if there is none.
 *  @param ppFrameBufferArray     set to nulls first; receives the frames
 *  @param nFrameBufferArraySize  its length, at least the number of buffers
 *  @param pnFrameCount           set to 0 first; receives the number of frames
 *  @param nTimeOut               for each frame, in milliseconds
 *  @return OV_STATUS_NEED_MORE_BUFFER if the array is too short; otherwise like
 *          OVDQBuf(). After a failure no frame is on loan by this call */
OV_API OV_STATUS OVDQAllBufs(OV_DEV_HANDLE hDevice, OV_FRAME_BUFFER** ppFrameBufferArray,
                             uint32_t nFrameBufferArraySize, uint32_t* pnFrameCount,
                             uint32_t nTimeOut);
/** Returns all frames on loan. */
OV_API OV_STATUS OVQAllBufs(OV_DEV_HANDLE hDevice);

/** @} */
/** @name Events
 *
 * Each camera has threads of its own that run callbacks: one for frames, one for events
 * and one for the loss of the camera. Feature callbacks that a write causes run on the
 * thread that writes. While a feature callback runs, feature calls of other threads on
 * that camera wait; a close waits for all callbacks of the camera. A callback must not
 * wait for a thread that waits for the callback, for instance by a list update while
 * that thread is closing the library.
 *
 * Some features have a polling time because their values change without a write. While a
 * camera with such features has feature callbacks, a thread of the library drops the
 * values whenever the time has passed and runs the callbacks, which are restricted like
 * those of the camera's events. Without callbacks, the next read after that time asks
 * the camera.
 */
/** @{ */

/** Registers a function that is called once when the camera is gone; at once if that has
 *  already been noticed.
 *  @param pHCallBack  receives the handle for removing it
 *  @return OV_STATUS_INVALID_CALL from an offline callback of the camera */
OV_API OV_STATUS OVRegisterDeviceOfflineCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                                 OVDeviceOfflineCallback callBackFun,
                                                 OV_EVENT_CALLBACK_HANDLE* pHCallBack);
/** Removes an offline callback. If it is running, waits until it has returned, except
 *  from another callback.
 *  @return OV_STATUS_INVALID_CALL from an offline callback of the camera,
 *          OV_STATUS_INVALID_HANDLE if the callback isn't registered on this camera */
OV_API OV_STATUS OVUnregisterDeviceOfflineCallback(OV_DEV_HANDLE hDevice,
                                                   OV_EVENT_CALLBACK_HANDLE pHCallBack);
/** Registers a function that is called when the feature may have changed; for a feature
 *  that belongs to an event, when the camera sends the event.
 *  @param pHCallBack  receives the handle for removing it
 *  @return OV_STATUS_INVALID_CALL from a feature callback of the camera's events */
OV_API OV_STATUS OVRegisterFeatureCallback(OV_DEV_HANDLE hDevice, void* pUserParam,
                                           OVFeatureCallback callBackFun, OV_FEATURE_ID featureID,
                                           OV_FEATURE_CALLBACK_HANDLE* pHCallBack);
/** Removes a feature callback.
 *  @return OV_STATUS_INVALID_CALL from a feature callback of the camera's events,
 *          OV_STATUS_INVALID_HANDLE if the callback isn't registered on this camera,
 *          OV_STATUS_INVALID_PARAMETER if it is that of another feature */
OV_API OV_STATUS OVUnregisterFeatureCallback(OV_DEV_HANDLE hDevice, OV_FEATURE_ID featureID,
                                             OV_FEATURE_CALLBACK_HANDLE pHCallBack);
/** Drops the events that are waiting.
 *  @return OV_STATUS_INVALID_CALL unless a feature of an event has a callback */
OV_API OV_STATUS OVFlushEvent(OV_DEV_HANDLE hDevice);
/** Returns how many events of the camera are waiting.
 *  @return OV_STATUS_INVALID_CALL unless a feature of an event has a callback */
OV_API OV_STATUS OVGetEventNumInQueue(OV_DEV_HANDLE hDevice, uint32_t* pnEventNum);

/** @} */
/** @name GigE Vision configuration
 *
 * The first three functions search for the camera in all networks by its MAC address,
 * written "AA-BB-CC-DD-EE-FF" in capitals. The camera need not be open. They return
 * OV_STATUS_NOT_FOUND_DEVICE if it doesn't answer, and OV_STATUS_ERROR if its producer
 * doesn't have the call, which isn't part of the GenTL standard.
 */
/** @{ */

/** Sets how the camera obtains its address.
 *  @param emIpConfigFlag     see OV_IP_CONFIGURE_MODE
 *  @param pszIPAddress       needed for the persistent modes, ignored for the others
 *  @param pszSubnetMask      the same
 *  @param pszDefaultGateway  the same
 *  @param pszUserID          new user ID; null means empty
 *  @return OV_STATUS_INVALID_PARAMETER for an unknown mode, or a null address in a
 *          persistent mode. The producer checks the addresses themselves */
OV_API OV_STATUS OVGigEIpConfiguration(const char* pszDeviceMacAddress,
                                       OV_IP_CONFIGURE_MODE emIpConfigFlag,
                                       const char* pszIPAddress, const char* pszSubnetMask,
                                       const char* pszDefaultGateway, const char* pszUserID);
/** Assigns the camera an address until it is restarted. The producer checks the
 *  addresses. */
OV_API OV_STATUS OVGigEForceIp(const char* pszDeviceMacAddress, const char* pszIPAddress,
                               const char* pszSubnetMask, const char* pszDefaultGateway);
/** Resets the camera.
 *  @return OV_STATUS_INVALID_PARAMETER for an unknown mode */
OV_API OV_STATUS OVGigEResetDevice(const char* pszDeviceMacAddress, OV_RESET_MODE emResetMode);

/** Returns the persistent address of an open camera as dotted texts. Each text may be
 *  null to ask for its size alone.
 *  @return OV_STATUS_NOT_IMPLEMENTED if the camera doesn't have all three features;
 *          OV_STATUS_NEED_MORE_BUFFER if a text doesn't fit: no text is written then, but
 *          the sizes of null texts are */
OV_API OV_STATUS OVGetDevicePersistentIpAddress(OV_DEV_HANDLE hDevice, char* pszIP,
                                                size_t* pnIPLength, char* pszSubnetMask,
                                                size_t* pnSubnetMaskLength, char* pszDefaultGateway,
                                                size_t* pnDefaultGatewayLength);
/** Sets the persistent address of an open camera: first the address, then the mask, then
 *  the gateway. If one fails, those before it keep their new values.
 *  @param pszIP              dotted numbers from 0 to 254, the first not 0
 *  @param pszSubnetMask      dotted numbers from 0 to 255, the first not 0, not all 255;
 *                            its ones need not be contiguous
 *  @param pszDefaultGateway  like pszIP; it can't be set to none
 *  @return OV_STATUS_INVALID_PARAMETER for texts of another form,
 *          OV_STATUS_NOT_IMPLEMENTED if the camera doesn't have all three features */
OV_API OV_STATUS OVSetDevicePersistentIpAddress(OV_DEV_HANDLE hDevice, const char* pszIP,
                                                const char* pszSubnetMask,
                                                const char* pszDefaultGateway);

/** @} */
/** @name Configuration files and raw port access */
/** @{ */

/** Writes the camera's settings to a file, replacing it. If the settings can't be read,
 *  the file isn't touched.
 *  @return OV_STATUS_INVALID_CALL during an acquisition, OV_STATUS_ERROR for an empty
 *          path or a file that can't be written */
OV_API OV_STATUS OVExportConfigFile(OV_DEV_HANDLE hDevice, const char* pszFilePath);
/** Restores settings from a file. If some of them fail, the others keep their new values,
 *  and the text of the failure names those that failed.
 *  @param bVerify  whether every value is read back and compared
 *  @return OV_STATUS_INVALID_CALL during an acquisition; OV_STATUS_ERROR for an empty
 *          path, a file that can't be read, or settings that failed */
OV_API OV_STATUS OVImportConfigFile(OV_DEV_HANDLE hDevice, const char* pszFilePath, bool bVerify);
/** Reads the camera's registers directly, without features and caches. After a failure,
 *  memory and size have whatever the producer wrote there.
 *  @param piSize  in: bytes to read; out: bytes that were read */
OV_API OV_STATUS OVReadRemoteDevicePort(OV_DEV_HANDLE hDevice, uint64_t ui64Address, void* pBuffer,
                                        size_t* piSize);
/** Writes the camera's registers directly. The caches of features aren't informed, so
 *  that features may have old values afterwards. After a failure, the size has whatever
 *  the producer wrote there.
 *  @param piSize  in: bytes to write; out: bytes that were written */
OV_API OV_STATUS OVWriteRemoteDevicePort(OV_DEV_HANDLE hDevice, uint64_t ui64Address,
                                         const void* pBuffer, size_t* piSize);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
