#pragma once
/// Registers that every GigE Vision camera has at fixed addresses, and the meaning of their
/// bits. Four bytes each unless a width is given.

#include <cstddef>
#include <cstdint>

namespace OvGige {

/// A text register.
struct TextRegister {
    uint32_t address;
    size_t width;  ///< in bytes
};

/// Identity. The first 248 bytes of the register space are what a camera answers to a search.
///@{
constexpr uint32_t kRegVersion = 0x0000;  ///< major number in the upper half
constexpr uint32_t kRegDeviceMode = 0x0004;
constexpr uint32_t kRegMacHigh = 0x0008;
constexpr uint32_t kRegMacLow = 0x000C;
constexpr uint32_t kRegSupportedIpConfig = 0x0010;
constexpr uint32_t kRegCurrentIpConfig = 0x0014;
constexpr uint32_t kRegCurrentIp = 0x0024;
constexpr uint32_t kRegCurrentMask = 0x0034;
constexpr uint32_t kRegCurrentGateway = 0x0044;
constexpr TextRegister kRegVendor{0x0048, 32};
constexpr TextRegister kRegModel{0x0068, 32};
constexpr TextRegister kRegDeviceVersion{0x0088, 32};
constexpr TextRegister kRegVendorInfo{0x00A8, 48};
constexpr TextRegister kRegSerialNumber{0x00D8, 16};
constexpr TextRegister kRegUserName{0x00E8, 16};
constexpr TextRegister kRegFirstUrl{0x0200, 512};
constexpr TextRegister kRegSecondUrl{0x0400, 512};
///@}

/// The camera's own network interface.
///@{
constexpr uint32_t kRegInterfaceCount = 0x0600;
constexpr uint32_t kRegPersistentIp = 0x064C;
constexpr uint32_t kRegPersistentMask = 0x065C;
constexpr uint32_t kRegPersistentGateway = 0x066C;
constexpr uint32_t kRegLinkSpeed = 0x0670;  ///< megabits per second
///@}

/// Channels, time, control.
///@{
constexpr uint32_t kRegMessageChannelCount = 0x0900;
constexpr uint32_t kRegStreamChannelCount = 0x0904;
constexpr uint32_t kRegActionSignalCount = 0x0908;
constexpr uint32_t kRegActionDeviceKey = 0x090C;
constexpr uint32_t kRegActiveLinkCount = 0x0910;
constexpr uint32_t kRegStreamCapability = 0x092C;
constexpr uint32_t kRegMessageCapability = 0x0930;
constexpr uint32_t kRegControlCapability = 0x0934;
constexpr uint32_t kRegHeartbeatTimeout = 0x0938;  ///< milliseconds
/// What cameras have there unless they are told otherwise.
constexpr uint32_t kUsualHeartbeatTimeout = 3000;
constexpr uint32_t kRegTickFrequencyHigh = 0x093C;
constexpr uint32_t kRegTickFrequencyLow = 0x0940;
constexpr uint32_t kRegTimestampControl = 0x0944;
constexpr uint32_t kRegTimestampHigh = 0x0948;
constexpr uint32_t kRegTimestampLow = 0x094C;
constexpr uint32_t kRegDiscoveryDelay = 0x0950;  ///< milliseconds
constexpr uint32_t kRegControlConfig = 0x0954;
constexpr uint32_t kRegPendingTimeout = 0x0958;  ///< milliseconds
constexpr uint32_t kRegStreamConfig = 0x0960;
constexpr uint32_t kRegLinkCapability = 0x0964;
constexpr uint32_t kRegLinkConfig = 0x0968;
constexpr uint32_t kRegClockState = 0x096C;       ///< of the synchronised clock
constexpr uint32_t kRegActionQueueSize = 0x0970;  ///< scheduled actions that can wait
constexpr uint32_t kRegPrivilege = 0x0A00;
constexpr uint32_t kRegOwnerPort = 0x0A04;
constexpr uint32_t kRegOwnerIp = 0x0A14;
constexpr uint32_t kRegMessagePort = 0x0B00;
constexpr uint32_t kRegMessageDestination = 0x0B10;
constexpr uint32_t kRegMessageTimeout = 0x0B14;  ///< milliseconds; 0: no answers are wanted
constexpr uint32_t kRegMessageRetries = 0x0B18;
constexpr uint32_t kRegMessageSourcePort = 0x0B1C;
constexpr uint32_t kRegMessageConfig = 0x0B20;
constexpr uint32_t kRegStreamPort = 0x0D00;
constexpr uint32_t kRegStreamPacketSize = 0x0D04;
constexpr uint32_t kRegStreamPacketDelay = 0x0D08;
constexpr uint32_t kRegStreamDestination = 0x0D18;
constexpr uint32_t kRegStreamSourcePort = 0x0D1C;
constexpr uint32_t kRegStreamFeatures = 0x0D20;  ///< what the channel can do
constexpr uint32_t kRegStreamSwitches = 0x0D24;  ///< what of it is on
constexpr uint32_t kRegStreamChannelStride = 0x0040;
constexpr uint32_t kRegActionGroupKey = 0x9800;  ///< of the first signal
constexpr uint32_t kRegActionGroupMask = 0x9804;
constexpr uint32_t kRegActionStride = 0x0010;
///@}

/// Bits of the device mode.
///@{
constexpr uint32_t kModeBigEndian = 0x80000000;
constexpr uint32_t kModeUtf8 = 0x00000001;
///@}

/// Bits of the IP configuration, supported and current.
///@{
constexpr uint32_t kIpPersistent = 0x1;
constexpr uint32_t kIpDhcp = 0x2;
constexpr uint32_t kIpLinkLocal = 0x4;  ///< always on
///@}

/// Bits of the control capability: what isn't offered must not be used.
///@{
constexpr uint32_t kOffersUserName = 0x80000000;
constexpr uint32_t kOffersSerialNumber = 0x40000000;
constexpr uint32_t kOffersHeartbeatOff = 0x20000000;
constexpr uint32_t kOffersLinkSpeed = 0x10000000;
constexpr uint32_t kOffersOwner = 0x08000000;  ///< registers 0x0A04 and 0x0A14
constexpr uint32_t kOffersDiscoveryDelay = 0x01000000;
constexpr uint32_t kOffersExtendedStatus1 = 0x00400000;      ///< status codes since 1.1
constexpr uint32_t kOffersExtendedStatus2 = 0x00040000;      ///< status codes since 2.0
constexpr uint32_t kOffersUnconditionalAction = 0x00100000;  ///< of hosts without control
constexpr uint32_t kOffersSharedClock = 0x00080000;
constexpr uint32_t kOffersScheduledAction = 0x00020000;
constexpr uint32_t kOffersAction = 0x00000040;
constexpr uint32_t kOffersPending = 0x00000020;
constexpr uint32_t kOffersEventData = 0x00000010;
constexpr uint32_t kOffersEvent = 0x00000008;
constexpr uint32_t kOffersResend = 0x00000004;
constexpr uint32_t kOffersWriteMemory = 0x00000002;
constexpr uint32_t kOffersConcatenation = 0x00000001;  ///< several registers per command
///@}

/// Bits of the control configuration.
///@{
constexpr uint32_t kConfigSharedClock = 0x00080000;
constexpr uint32_t kConfigExtendedStatus2 = 0x00040000;
constexpr uint32_t kConfigUnconditionalAction = 0x00000008;
constexpr uint32_t kConfigExtendedStatus1 = 0x00000004;
constexpr uint32_t kConfigPending = 0x00000002;
constexpr uint32_t kConfigHeartbeatOff = 0x00000001;
///@}

/// States of the synchronised clock: others are on the way to one of these.
///@{
constexpr uint32_t kClockOff = 3;
constexpr uint32_t kClockFollows = 9;  ///< has the time of another clock
///@}

/// Bits of the streams' capability and configuration (`kRegStreamCapability`,
/// `kRegStreamConfig`).
///@{
constexpr uint32_t kOffersStreamSourcePort = 0x80000000;
constexpr uint32_t kOffersShortBlockIds = 0x40000000;
constexpr uint32_t kStreamConfigExtendedIds = 0x40000000;
///@}

/// Bits of the message channel's capability and configuration.
///@{
constexpr uint32_t kOffersMessageSourcePort = 0x80000000;
constexpr uint32_t kOffersMessageConfig = 0x40000000;
constexpr uint32_t kOffersSeveralEvents = 0x20000000;
constexpr uint32_t kMessageConfigSeveralEvents = 0x80000000;  ///< in one message
///@}

/// The host's port within the register of the message channel's port. 0 closes the channel.
constexpr uint32_t kMessagePortMask = 0x0000FFFF;

/// Bits of a stream's packet size register. The size counts the headers of IP and UDP.
///@{
constexpr uint32_t kPacketSizeFireTest = 0x80000000;  ///< send a packet of this size now
constexpr uint32_t kPacketSizeDontFragment = 0x40000000;
constexpr uint32_t kPacketSizeBigEndian = 0x20000000;  ///< order of pixels' bytes
constexpr uint32_t kPacketSizeMask = 0x0000FFFF;
///@}

/// The host's port within a stream's port register. 0 closes the stream.
constexpr uint32_t kStreamPortMask = 0x0000FFFF;

/// Bits of a stream's own capability and configuration.
///@{
constexpr uint32_t kStreamChannelBothByteOrders = 0x80000000;
constexpr uint32_t kStreamChannelMultiPart = 0x00000040;
constexpr uint32_t kStreamChannelAllIn = 0x00000004;
constexpr uint32_t kStreamSwitchGenDc = 0x00000080;
///@}

/// Bits of the control channel privilege. 0: nobody has control.
///@{
constexpr uint32_t kPrivilegeExclusive = 0x1;
constexpr uint32_t kPrivilegeControl = 0x2;
constexpr uint32_t kPrivilegeHeld = kPrivilegeExclusive | kPrivilegeControl;
///@}

}  // namespace OvGige
