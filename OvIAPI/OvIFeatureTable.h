#ifndef OVI_FEATURE_TABLE_H
#define OVI_FEATURE_TABLE_H

/**
 * @file
 * Every feature that has an identifier: name, type, module, number.
 *
 * This table is the only place that knows them. The identifiers of OvIDef.h,
 * the library's look-up of names and the list in the documentation are made
 * from it. Applications store identifiers: a number is never changed nor used
 * again, so gaps stay.
 */

/* clang-format off */
#define OV_FEATURE_TABLE(ROW) \
    /* device: level 0, numbers from 0 */ \
    ROW(DeviceVendorName, STRING, REMOTE_DEVICE, 0) \
    ROW(DeviceModelName, STRING, REMOTE_DEVICE, 1) \
    ROW(DeviceFirmwareVersion, STRING, REMOTE_DEVICE, 2) \
    ROW(DeviceVersion, STRING, REMOTE_DEVICE, 3) \
    ROW(DeviceSerialNumber, STRING, REMOTE_DEVICE, 4) \
    ROW(FactorySettingVersion, STRING, REMOTE_DEVICE, 6) \
    ROW(DeviceUserID, STRING, REMOTE_DEVICE, 7) \
    ROW(DeviceLinkSelector, INT, REMOTE_DEVICE, 8) \
    ROW(DeviceLinkThroughputLimitMode, ENUM, REMOTE_DEVICE, 9) \
    ROW(DeviceLinkThroughputLimit, INT, REMOTE_DEVICE, 10) \
    ROW(DeviceLinkCurrentThroughput, INT, REMOTE_DEVICE, 11) \
    ROW(DeviceReset, COMMAND, REMOTE_DEVICE, 12) \
    ROW(TimestampTickFrequency, INT, REMOTE_DEVICE, 13) \
    ROW(TimestampLatch, COMMAND, REMOTE_DEVICE, 14) \
    ROW(TimestampReset, COMMAND, REMOTE_DEVICE, 15) \
    ROW(TimestampLatchReset, COMMAND, REMOTE_DEVICE, 16) \
    ROW(TimestampLatchValue, INT, REMOTE_DEVICE, 17) \
    ROW(DevicePHYVersion, STRING, REMOTE_DEVICE, 18) \
    ROW(DeviceTemperatureSelector, ENUM, REMOTE_DEVICE, 19) \
    ROW(DeviceTemperature, FLOAT, REMOTE_DEVICE, 20) \
    /* image format: level 0, numbers from 1000 */ \
    ROW(SensorWidth, INT, REMOTE_DEVICE, 1000) \
    ROW(SensorHeight, INT, REMOTE_DEVICE, 1001) \
    ROW(WidthMax, INT, REMOTE_DEVICE, 1002) \
    ROW(HeightMax, INT, REMOTE_DEVICE, 1003) \
    ROW(OffsetX, INT, REMOTE_DEVICE, 1004) \
    ROW(OffsetY, INT, REMOTE_DEVICE, 1005) \
    ROW(Width, INT, REMOTE_DEVICE, 1006) \
    ROW(Height, INT, REMOTE_DEVICE, 1007) \
    ROW(BinningHorizontal, INT, REMOTE_DEVICE, 1008) \
    ROW(BinningVertical, INT, REMOTE_DEVICE, 1009) \
    ROW(DecimationHorizontal, INT, REMOTE_DEVICE, 1010) \
    ROW(DecimationVertical, INT, REMOTE_DEVICE, 1011) \
    ROW(PixelSize, ENUM, REMOTE_DEVICE, 1012) \
    ROW(PixelColorFilter, ENUM, REMOTE_DEVICE, 1013) \
    ROW(PixelFormat, ENUM, REMOTE_DEVICE, 1014) \
    ROW(ReverseX, BOOL, REMOTE_DEVICE, 1015) \
    ROW(ReverseY, BOOL, REMOTE_DEVICE, 1016) \
    ROW(TestPattern, ENUM, REMOTE_DEVICE, 1017) \
    ROW(TestPatternGeneratorSelector, ENUM, REMOTE_DEVICE, 1018) \
    ROW(RegionSendMode, ENUM, REMOTE_DEVICE, 1019) \
    ROW(RegionMode, ENUM, REMOTE_DEVICE, 1020) \
    ROW(RegionSelector, ENUM, REMOTE_DEVICE, 1021) \
    ROW(CenterWidth, INT, REMOTE_DEVICE, 1022) \
    ROW(CenterHeight, INT, REMOTE_DEVICE, 1023) \
    ROW(BinningHorizontalMode, ENUM, REMOTE_DEVICE, 1024) \
    ROW(BinningVerticalMode, ENUM, REMOTE_DEVICE, 1025) \
    ROW(SensorShutterMode, ENUM, REMOTE_DEVICE, 1026) \
    /* transport layer: level 0, numbers from 2000 */ \
    ROW(PayloadSize, INT, REMOTE_DEVICE, 2000) \
    ROW(GevCurrentIPConfigurationLLA, BOOL, REMOTE_DEVICE, 2001) \
    ROW(GevCurrentIPConfigurationDHCP, BOOL, REMOTE_DEVICE, 2002) \
    ROW(GevCurrentIPConfigurationPersistentIP, BOOL, REMOTE_DEVICE, 2003) \
    ROW(EstimatedBandwidth, INT, REMOTE_DEVICE, 2004) \
    ROW(GevHeartbeatTimeout, INT, REMOTE_DEVICE, 2005) \
    ROW(GevSCPSPacketSize, INT, REMOTE_DEVICE, 2006) \
    ROW(GevSCPD, INT, REMOTE_DEVICE, 2007) \
    ROW(GevLinkSpeed, INT, REMOTE_DEVICE, 2008) \
    /* acquisition and trigger: level 0, numbers from 3000 */ \
    ROW(AcquisitionMode, ENUM, REMOTE_DEVICE, 3000) \
    ROW(AcquisitionStart, COMMAND, REMOTE_DEVICE, 3001) \
    ROW(AcquisitionStop, COMMAND, REMOTE_DEVICE, 3002) \
    ROW(AcquisitionSpeedLevel, INT, REMOTE_DEVICE, 3003) \
    ROW(AcquisitionFrameCount, INT, REMOTE_DEVICE, 3004) \
    ROW(TriggerMode, ENUM, REMOTE_DEVICE, 3005) \
    ROW(TriggerSoftware, COMMAND, REMOTE_DEVICE, 3006) \
    ROW(TriggerActivation, ENUM, REMOTE_DEVICE, 3007) \
    ROW(TriggerSwitch, ENUM, REMOTE_DEVICE, 3008) \
    ROW(ExposureTime, FLOAT, REMOTE_DEVICE, 3009) \
    ROW(ExposureAuto, ENUM, REMOTE_DEVICE, 3010) \
    ROW(TriggerFilterRaisingEdge, FLOAT, REMOTE_DEVICE, 3011) \
    ROW(TriggerFilterFallingEdge, FLOAT, REMOTE_DEVICE, 3012) \
    ROW(TriggerSource, ENUM, REMOTE_DEVICE, 3013) \
    ROW(ExposureMode, ENUM, REMOTE_DEVICE, 3014) \
    ROW(TriggerSelector, ENUM, REMOTE_DEVICE, 3015) \
    ROW(TriggerDelay, FLOAT, REMOTE_DEVICE, 3016) \
    ROW(TransferControlMode, ENUM, REMOTE_DEVICE, 3017) \
    ROW(TransferOperationMode, ENUM, REMOTE_DEVICE, 3018) \
    ROW(TransferStart, COMMAND, REMOTE_DEVICE, 3019) \
    ROW(TransferBlockCount, INT, REMOTE_DEVICE, 3020) \
    ROW(FrameBufferOverwriteActive, BOOL, REMOTE_DEVICE, 3021) \
    ROW(AcquisitionFrameRateMode, ENUM, REMOTE_DEVICE, 3022) \
    ROW(AcquisitionFrameRate, FLOAT, REMOTE_DEVICE, 3023) \
    ROW(CurrentAcquisitionFrameRate, FLOAT, REMOTE_DEVICE, 3024) \
    ROW(FixedPatternNoiseCorrectMode, ENUM, REMOTE_DEVICE, 3025) \
    ROW(AcquisitionBurstFrameCount, INT, REMOTE_DEVICE, 3030) \
    ROW(AcquisitionStatusSelector, ENUM, REMOTE_DEVICE, 3031) \
    ROW(AcquisitionStatus, BOOL, REMOTE_DEVICE, 3032) \
    /* exposure: level 0, numbers from 30000 */ \
    ROW(ExposureDelay, FLOAT, REMOTE_DEVICE, 30300) \
    ROW(ExposureOverlapTimeMax, FLOAT, REMOTE_DEVICE, 30301) \
    ROW(ExposureTimeMode, ENUM, REMOTE_DEVICE, 30302) \
    /* digital I/O: level 0, numbers from 4000 */ \
    ROW(UserOutputSelector, ENUM, REMOTE_DEVICE, 4000) \
    ROW(UserOutputValue, BOOL, REMOTE_DEVICE, 4001) \
    ROW(UserOutputMode, ENUM, REMOTE_DEVICE, 4002) \
    ROW(StrobeSwitch, ENUM, REMOTE_DEVICE, 4003) \
    ROW(LineSelector, ENUM, REMOTE_DEVICE, 4004) \
    ROW(LineMode, ENUM, REMOTE_DEVICE, 4005) \
    ROW(LineInverter, BOOL, REMOTE_DEVICE, 4006) \
    ROW(LineSource, ENUM, REMOTE_DEVICE, 4007) \
    ROW(LineStatus, BOOL, REMOTE_DEVICE, 4008) \
    ROW(LineStatusAll, INT, REMOTE_DEVICE, 4009) \
    ROW(PulseWidth, FLOAT, REMOTE_DEVICE, 4010) \
    /* counter and timer: level 0, numbers from 12000 */ \
    ROW(TimerSelector, ENUM, REMOTE_DEVICE, 12000) \
    ROW(TimerDuration, FLOAT, REMOTE_DEVICE, 12001) \
    ROW(TimerDelay, FLOAT, REMOTE_DEVICE, 12002) \
    ROW(TimerTriggerSource, ENUM, REMOTE_DEVICE, 12003) \
    ROW(CounterSelector, ENUM, REMOTE_DEVICE, 12004) \
    ROW(CounterEventSource, ENUM, REMOTE_DEVICE, 12005) \
    ROW(CounterResetSource, ENUM, REMOTE_DEVICE, 12006) \
    ROW(CounterResetActivation, ENUM, REMOTE_DEVICE, 12007) \
    ROW(CounterReset, COMMAND, REMOTE_DEVICE, 12008) \
    ROW(CounterTriggerSource, ENUM, REMOTE_DEVICE, 12009) \
    ROW(CounterDuration, INT, REMOTE_DEVICE, 12010) \
    ROW(TimerTriggerActivation, ENUM, REMOTE_DEVICE, 12011) \
    /* analog: level 0, numbers from 5000 */ \
    ROW(GainAuto, ENUM, REMOTE_DEVICE, 5000) \
    ROW(GainSelector, ENUM, REMOTE_DEVICE, 5001) \
    ROW(BlackLevelAuto, ENUM, REMOTE_DEVICE, 5003) \
    ROW(BlackLevelSelector, ENUM, REMOTE_DEVICE, 5004) \
    ROW(BalanceWhiteAuto, ENUM, REMOTE_DEVICE, 5006) \
    ROW(BalanceRatioSelector, ENUM, REMOTE_DEVICE, 5007) \
    ROW(BalanceRatio, FLOAT, REMOTE_DEVICE, 5008) \
    ROW(ColorCorrect, ENUM, REMOTE_DEVICE, 5009) \
    ROW(DeadPixelCorrect, ENUM, REMOTE_DEVICE, 5010) \
    ROW(Gain, FLOAT, REMOTE_DEVICE, 5011) \
    ROW(BlackLevel, FLOAT, REMOTE_DEVICE, 5012) \
    ROW(GammaEnable, BOOL, REMOTE_DEVICE, 5013) \
    ROW(GammaMode, ENUM, REMOTE_DEVICE, 5014) \
    ROW(Gamma, FLOAT, REMOTE_DEVICE, 5015) \
    ROW(DigitalShift, INT, REMOTE_DEVICE, 5016) \
    ROW(LightSourcePreset, ENUM, REMOTE_DEVICE, 5017) \
    /* custom: level 0, numbers from 6000 */ \
    ROW(ADCLevel, INT, REMOTE_DEVICE, 6000) \
    ROW(HBlanking, INT, REMOTE_DEVICE, 6001) \
    ROW(VBlanking, INT, REMOTE_DEVICE, 6002) \
    ROW(UserPassword, STRING, REMOTE_DEVICE, 6003) \
    ROW(VerifyPassword, STRING, REMOTE_DEVICE, 6004) \
    ROW(UserData, BUFFER, REMOTE_DEVICE, 6005) \
    ROW(ExpectedGrayValue, INT, REMOTE_DEVICE, 6006) \
    ROW(AALightEnvironment, ENUM, REMOTE_DEVICE, 6007) \
    ROW(AAROIOffsetX, INT, REMOTE_DEVICE, 6008) \
    ROW(AAROIOffsetY, INT, REMOTE_DEVICE, 6009) \
    ROW(AAROIWidth, INT, REMOTE_DEVICE, 6010) \
    ROW(AAROIHeight, INT, REMOTE_DEVICE, 6011) \
    ROW(AutoGainMin, FLOAT, REMOTE_DEVICE, 6012) \
    ROW(AutoGainMax, FLOAT, REMOTE_DEVICE, 6013) \
    ROW(AutoExposureTimeMin, FLOAT, REMOTE_DEVICE, 6014) \
    ROW(AutoExposureTimeMax, FLOAT, REMOTE_DEVICE, 6015) \
    ROW(FrameInformation, BUFFER, REMOTE_DEVICE, 6016) \
    ROW(ContrastParam, INT, REMOTE_DEVICE, 6017) \
    ROW(GammaParam, FLOAT, REMOTE_DEVICE, 6018) \
    ROW(ColorCorrectionParam, INT, REMOTE_DEVICE, 6019) \
    ROW(ImageGrayRaiseSwitch, ENUM, REMOTE_DEVICE, 6020) \
    ROW(AWBLampHouse, ENUM, REMOTE_DEVICE, 6021) \
    ROW(AWBROIOffsetX, INT, REMOTE_DEVICE, 6022) \
    ROW(AWBROIOffsetY, INT, REMOTE_DEVICE, 6023) \
    ROW(AWBROIWidth, INT, REMOTE_DEVICE, 6024) \
    ROW(AWBROIHeight, INT, REMOTE_DEVICE, 6025) \
    ROW(SharpnessMode, ENUM, REMOTE_DEVICE, 6026) \
    ROW(Sharpness, FLOAT, REMOTE_DEVICE, 6027) \
    ROW(DataFieldSelector, ENUM, REMOTE_DEVICE, 6028) \
    ROW(DataFieldValue, BUFFER, REMOTE_DEVICE, 6029) \
    ROW(FlatFieldCorrection, ENUM, REMOTE_DEVICE, 6030) \
    ROW(NoiseReductionMode, ENUM, REMOTE_DEVICE, 6031) \
    ROW(NoiseReduction, FLOAT, REMOTE_DEVICE, 6032) \
    ROW(FFCLoad, BUFFER, REMOTE_DEVICE, 6033) \
    ROW(FFCSave, BUFFER, REMOTE_DEVICE, 6034) \
    ROW(NoiseReductionMode2D, ENUM, REMOTE_DEVICE, 6036) \
    ROW(NoiseReductionMode3D, ENUM, REMOTE_DEVICE, 6037) \
    ROW(CloseISP, COMMAND, REMOTE_DEVICE, 6038) \
    /* user set: level 0, numbers from 7000 */ \
    ROW(UserSetSelector, ENUM, REMOTE_DEVICE, 7000) \
    ROW(UserSetLoad, COMMAND, REMOTE_DEVICE, 7001) \
    ROW(UserSetSave, COMMAND, REMOTE_DEVICE, 7002) \
    ROW(UserSetDefault, ENUM, REMOTE_DEVICE, 7003) \
    /* event: level 0, numbers from 8000 */ \
    ROW(EventSelector, ENUM, REMOTE_DEVICE, 8000) \
    ROW(EventNotification, ENUM, REMOTE_DEVICE, 8001) \
    ROW(EventExposureEnd, INT, REMOTE_DEVICE, 8002) \
    ROW(EventExposureEndTimestamp, INT, REMOTE_DEVICE, 8003) \
    ROW(EventExposureEndFrameID, INT, REMOTE_DEVICE, 8004) \
    ROW(EventBlockDiscard, INT, REMOTE_DEVICE, 8005) \
    ROW(EventBlockDiscardTimestamp, INT, REMOTE_DEVICE, 8006) \
    ROW(EventOverrun, INT, REMOTE_DEVICE, 8007) \
    ROW(EventOverrunTimestamp, INT, REMOTE_DEVICE, 8008) \
    ROW(EventFrameStartOvertrigger, INT, REMOTE_DEVICE, 8009) \
    ROW(EventFrameStartOvertriggerTimestamp, INT, REMOTE_DEVICE, 8010) \
    ROW(EventBlockNotEmpty, INT, REMOTE_DEVICE, 8011) \
    ROW(EventBlockNotEmptyTimestamp, INT, REMOTE_DEVICE, 8012) \
    ROW(EventInternalError, INT, REMOTE_DEVICE, 8013) \
    ROW(EventInternalErrorTimestamp, INT, REMOTE_DEVICE, 8014) \
    ROW(EventFrameBurstStartOvertrigger, INT, REMOTE_DEVICE, 8015) \
    ROW(EventFrameBurstStartOvertriggerFrameID, INT, REMOTE_DEVICE, 8016) \
    ROW(EventFrameBurstStartOvertriggerTimestamp, INT, REMOTE_DEVICE, 8017) \
    ROW(EventFrameStartWait, INT, REMOTE_DEVICE, 8018) \
    ROW(EventFrameStartWaitTimestamp, INT, REMOTE_DEVICE, 8019) \
    ROW(EventFrameBurstStartWait, INT, REMOTE_DEVICE, 8020) \
    ROW(EventFrameBurstStartWaitTimestamp, INT, REMOTE_DEVICE, 8021) \
    ROW(EventBlockDiscardFrameID, INT, REMOTE_DEVICE, 8022) \
    ROW(EventFrameStartOvertriggerFrameID, INT, REMOTE_DEVICE, 8023) \
    ROW(EventBlockNotEmptyFrameID, INT, REMOTE_DEVICE, 8024) \
    ROW(EventFrameStartWaitFrameID, INT, REMOTE_DEVICE, 8025) \
    ROW(EventFrameBurstStartWaitFrameID, INT, REMOTE_DEVICE, 8026) \
    /* look-up table: level 0, numbers from 9000 */ \
    ROW(LUTSelector, ENUM, REMOTE_DEVICE, 9000) \
    ROW(LUTValueAll, BUFFER, REMOTE_DEVICE, 9001) \
    ROW(LUTEnable, BOOL, REMOTE_DEVICE, 9002) \
    ROW(LUTIndex, INT, REMOTE_DEVICE, 9003) \
    ROW(LUTValue, INT, REMOTE_DEVICE, 9004) \
    /* chunk data: level 0, numbers from 10000 */ \
    ROW(ChunkModeActive, BOOL, REMOTE_DEVICE, 10001) \
    ROW(ChunkSelector, ENUM, REMOTE_DEVICE, 10002) \
    ROW(ChunkEnable, BOOL, REMOTE_DEVICE, 10003) \
    /* colour transformation: level 0, numbers from 11000 */ \
    ROW(ColorTransformationMode, ENUM, REMOTE_DEVICE, 11000) \
    ROW(ColorTransformationEnable, BOOL, REMOTE_DEVICE, 11001) \
    ROW(ColorTransformationValueSelector, ENUM, REMOTE_DEVICE, 11002) \
    ROW(ColorTransformationValue, FLOAT, REMOTE_DEVICE, 11003) \
    /* parameter limit: level 0, numbers from 13000 */ \
    ROW(RemoveParameterLimit, ENUM, REMOTE_DEVICE, 13000) \
    /* HDR: level 0, numbers from 14000 */ \
    ROW(HDRMode, ENUM, REMOTE_DEVICE, 14000) \
    ROW(HDRTargetLongValue, INT, REMOTE_DEVICE, 14001) \
    ROW(HDRTargetShortValue, INT, REMOTE_DEVICE, 14002) \
    ROW(HDRTargetMainValue, INT, REMOTE_DEVICE, 14003) \
    /* multi-gray: level 0, numbers from 15000 */ \
    ROW(MultiGrayControlMode, ENUM, REMOTE_DEVICE, 15001) \
    ROW(MGCSelector, INT, REMOTE_DEVICE, 15002) \
    ROW(MGCExposureTime, FLOAT, REMOTE_DEVICE, 15003) \
    ROW(MGCGain, FLOAT, REMOTE_DEVICE, 15004) \
    /* local device: level 3, numbers from 0 */ \
    ROW(DeviceCommandTimeout, INT, LOCAL_DEVICE, 0) \
    ROW(DeviceCommandRetryCount, INT, LOCAL_DEVICE, 1) \
    /* data stream: level 4, numbers from 0 */ \
    ROW(StreamAnnouncedBufferCount, INT, STREAM, 0) \
    ROW(StreamDeliveredFrameCount, INT, STREAM, 1) \
    ROW(StreamLostFrameCount, INT, STREAM, 2) \
    ROW(StreamIncompleteFrameCount, INT, STREAM, 3) \
    ROW(StreamDeliveredPacketCount, INT, STREAM, 4) \
    ROW(StreamResendPacketCount, INT, STREAM, 5) \
    ROW(StreamRescuedPacketCount, INT, STREAM, 6) \
    ROW(StreamResendCommandCount, INT, STREAM, 7) \
    ROW(StreamUnexpectedPacketCount, INT, STREAM, 8) \
    ROW(MaxPacketCountInOneBlock, INT, STREAM, 9) \
    ROW(MaxPacketCountInOneCommand, INT, STREAM, 10) \
    ROW(ResendTimeout, INT, STREAM, 11) \
    ROW(MaxWaitPacketCount, INT, STREAM, 12) \
    ROW(ResendMode, ENUM, STREAM, 13) \
    ROW(StreamMissingBlockIDCount, INT, STREAM, 14) \
    ROW(BlockTimeout, INT, STREAM, 15) \
    ROW(StreamTransferSize, INT, STREAM, 16) \
    ROW(StreamTransferNumberUrb, INT, STREAM, 17) \
    ROW(MaxNumQueueBuffer, INT, STREAM, 18) \
    ROW(PacketTimeout, INT, STREAM, 19) \
    ROW(SocketBufferSize, INT, STREAM, 20) \
    ROW(StopAcquisitionMode, ENUM, STREAM, 21) \
    ROW(StreamBufferHandlingMode, ENUM, STREAM, 22) \
    ROW(AcquisitionBufferCachePrec, INT, STREAM, 23)
/* clang-format on */

#endif
