/// @file
/// Who may open a virtual camera that others have open. A lock belongs to an open file, so that
/// two in one process are as those of two.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "framework/Failure.h"
#include "virtual/CameraLock.h"

using namespace OvVirtual;

namespace fs = std::filesystem;

namespace {

constexpr GenTL::DEVICE_ACCESS_FLAGS kReading = GenTL::DEVICE_ACCESS_READONLY;
constexpr GenTL::DEVICE_ACCESS_FLAGS kControl = GenTL::DEVICE_ACCESS_CONTROL;
constexpr GenTL::DEVICE_ACCESS_FLAGS kExclusive = GenTL::DEVICE_ACCESS_EXCLUSIVE;

class CameraLockTest : public testing::Test {
protected:
    ~CameraLockTest() override { fs::remove_all(folder); }

    static fs::path NewFolder() {
        std::string name = (fs::temp_directory_path() / "ov-lock-XXXXXX").string();
        return mkdtemp(name.data());
    }
    void ExpectDenied(GenTL::DEVICE_ACCESS_FLAGS access) {
        try {
            second.Take(access);
            ADD_FAILURE() << access << " is allowed";
            second.Release();
        } catch (const OvProducer::Failure& failure) {
            EXPECT_EQ(failure.Code(), GenTL::GC_ERR_ACCESS_DENIED);
            EXPECT_EQ(std::string(failure.what()),
                      "The camera is in use by " + std::string(program_invocation_short_name) +
                          " (process " + std::to_string(getpid()) + ")");
        }
    }
    void ExpectAllowed(GenTL::DEVICE_ACCESS_FLAGS access) {
        EXPECT_NO_THROW(second.Take(access));
        second.Release();
    }

    const fs::path folder = NewFolder();
    CameraLock first{folder / "sub" / "VC.lock"};
    CameraLock second{folder / "sub" / "VC.lock"};
};

TEST_F(CameraLockTest, ControlLeavesReadingToOthers) {
    first.Take(kControl);
    ExpectAllowed(kReading);
    ExpectDenied(kControl);
    ExpectDenied(kExclusive);
    EXPECT_EQ(second.Status(), GenTL::DEVICE_ACCESS_STATUS_READONLY);
}

TEST_F(CameraLockTest, ExclusiveAccessLeavesNothing) {
    first.Take(kExclusive);
    ExpectDenied(kReading);
    ExpectDenied(kControl);
    ExpectDenied(kExclusive);
    EXPECT_EQ(second.Status(), GenTL::DEVICE_ACCESS_STATUS_NOACCESS);
}

TEST_F(CameraLockTest, ReadersKeepNobodyOut) {
    first.Take(kReading);
    EXPECT_EQ(second.Status(), GenTL::DEVICE_ACCESS_STATUS_READWRITE);
    for (const auto access : {kReading, kControl, kExclusive}) {
        ExpectAllowed(access);
    }
}

TEST_F(CameraLockTest, GivesTheCameraBack) {
    EXPECT_EQ(second.Status(), GenTL::DEVICE_ACCESS_STATUS_READWRITE) << "no file yet";
    first.Take(kExclusive);
    first.Release();
    EXPECT_EQ(second.Status(), GenTL::DEVICE_ACCESS_STATUS_READWRITE);
    ExpectAllowed(kExclusive);
}

TEST_F(CameraLockTest, WithoutAFolderEverybodyHasTheCamera) {
    CameraLock off{""};
    CameraLock other{""};
    off.Take(kExclusive);
    EXPECT_NO_THROW(other.Take(kExclusive));
    EXPECT_EQ(other.Status(), GenTL::DEVICE_ACCESS_STATUS_READWRITE);
    CameraLock nowhere{"/proc/none/VC.lock"};
    EXPECT_NO_THROW(nowhere.Take(kExclusive));
}

}  // namespace
