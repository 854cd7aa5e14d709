// Every call but those of the frame wants an initialised library, whatever its
// arguments are.

#include "support/ApiTest.h"

namespace {

/// Calls a function with nulls and zeros.
template <class... Arguments>
OV_STATUS CallWithNothing(OV_STATUS (*call)(Arguments...)) {
    return call(Arguments{}...);
}

struct CallOfNothing {
    const char* name;
    OV_STATUS (*run)();
};

#define OV_CALL(function)                                      \
    CallOfNothing {                                            \
#function, [] { return CallWithNothing(&(function)); } \
    }

const CallOfNothing kCallsOfNothing[] = {
    OV_CALL(OVUpdateDeviceList),
    OV_CALL(OVUpdateAllDeviceList),
    OV_CALL(OVGetAllDeviceBaseInfo),
    OV_CALL(OVGetDeviceIPInfo),
    OV_CALL(OVOpenDeviceByIndex),
    OV_CALL(OVOpenDevice),
    OV_CALL(OVCloseDevice),
    OV_CALL(OVGetFeatureName),
    OV_CALL(OVIsImplemented),
    OV_CALL(OVIsReadable),
    OV_CALL(OVIsWritable),
    OV_CALL(OVGetIntRange),
    OV_CALL(OVGetInt),
    OV_CALL(OVSetInt),
    OV_CALL(OVGetFloatRange),
    OV_CALL(OVSetFloat),
    OV_CALL(OVGetFloat),
    OV_CALL(OVGetEnumEntryNums),
    OV_CALL(OVGetEnumDescription),
    OV_CALL(OVGetEnum),
    OV_CALL(OVSetEnum),
    OV_CALL(OVGetBool),
    OV_CALL(OVSetBool),
    OV_CALL(OVGetStringLength),
    OV_CALL(OVGetStringMaxLength),
    OV_CALL(OVGetString),
    OV_CALL(OVSetString),
    OV_CALL(OVGetBufferLength),
    OV_CALL(OVGetBuffer),
    OV_CALL(OVSetBuffer),
    OV_CALL(OVSendCommand),
    OV_CALL(OVSetAcqusitionBufferNumber),
    OV_CALL(OVGetAcqusitionBufferNumber),
    OV_CALL(OVRegisterCaptureCallback),
    OV_CALL(OVUnregisterCaptureCallback),
    OV_CALL(OVGetImage),
    OV_CALL(OVFlushQueue),
    OV_CALL(OVStreamOn),
    OV_CALL(OVStreamOff),
    OV_CALL(OVDQBuf),
    OV_CALL(OVQBuf),
    OV_CALL(OVDQAllBufs),
    OV_CALL(OVQAllBufs),
    OV_CALL(OVRegisterDeviceOfflineCallback),
    OV_CALL(OVUnregisterDeviceOfflineCallback),
    OV_CALL(OVRegisterFeatureCallback),
    OV_CALL(OVUnregisterFeatureCallback),
    OV_CALL(OVFlushEvent),
    OV_CALL(OVGetEventNumInQueue),
    OV_CALL(OVGigEIpConfiguration),
    OV_CALL(OVGigEForceIp),
    OV_CALL(OVGigEResetDevice),
    OV_CALL(OVGetDevicePersistentIpAddress),
    OV_CALL(OVSetDevicePersistentIpAddress),
    OV_CALL(OVExportConfigFile),
    OV_CALL(OVImportConfigFile),
    OV_CALL(OVReadRemoteDevicePort),
    OV_CALL(OVWriteRemoteDevicePort),
};

class NotInitialised : public ApiTest, public testing::WithParamInterface<CallOfNothing> {
protected:
    static void ExpectRefused() {
        ExpectFailure(GetParam().run(), OV_STATUS_NOT_INIT_API, "Not init API");
        EXPECT_EQ(LastError::Get().text.find("{-13}{CheckInit:line["), 0U);
    }
};

TEST_P(NotInitialised, IsRefusedBeforeTheStart) {
    ExpectRefused();
}

TEST_P(NotInitialised, IsRefusedAfterTheEnd) {
    Init();
    EXPECT_OV_OK(OVCloseLib());
    producer.ClearLog();
    ExpectRefused();
    EXPECT_TRUE(producer.Log().empty());
}

TEST_P(NotInitialised, IsAnsweredOtherwiseBetweenThem) {
    Init();
    EXPECT_NE(GetParam().run(), OV_STATUS_NOT_INIT_API);
}

INSTANTIATE_TEST_SUITE_P(Call, NotInitialised, testing::ValuesIn(kCallsOfNothing),
                         [](const auto& of) { return std::string(of.param.name); });

}  // namespace
