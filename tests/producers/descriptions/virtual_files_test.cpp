/// @file
/// The files of the virtual cameras, as a client of the engine reaches them.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "GenApi/FileProtocolAdapter.h"
#include "GenApi/ICommand.h"
#include "GenApi/IEnumeration.h"
#include "GenApi/IFloat.h"
#include "GenApi/IInteger.h"
#include "GenApi/IRegister.h"
#include "GenApi/ISelector.h"
#include "LiveDescription.h"
#include "virtual/CameraFiles.h"

namespace fs = std::filesystem;

namespace {

constexpr auto kRead = std::ios_base::in;
constexpr auto kWrite = std::ios_base::out;
constexpr const char* kUser = "UserFile";
constexpr const char* kFactory = "FactoryCalibration";
constexpr auto kBuffer = static_cast<std::int64_t>(OvVirtual::CameraFiles::kBufferLength);
constexpr auto kMax = static_cast<std::int64_t>(OvVirtual::CameraFiles::kUserFileMax);

/// Bytes that differ from piece to piece.
std::string Pattern(std::int64_t length) {
    std::string text;
    for (std::int64_t i = 0; i < length; ++i) {
        text += static_cast<char>(i % 251);
    }
    return text;
}

/// A virtual camera that is opened and closed as often as a test likes.
class VirtualFiles : public testing::Test {
protected:
    void Open(std::uint32_t device = 0) {
        Close();
        camera.emplace(api);
        camera->OpenDevice(device);
        live.emplace(api, camera->port);
        ASSERT_TRUE(files.attach(&live->Map()));
    }
    void Close() {
        live.reset();
        camera.reset();
    }

    std::int64_t Write(const std::string& bytes, std::int64_t offset = 0,
                       const char* name = kUser) {
        return files.write(bytes.data(), offset, static_cast<std::int64_t>(bytes.size()), name);
    }
    std::string Read(std::int64_t offset, std::int64_t length, const char* name = kUser) {
        std::string bytes(static_cast<std::size_t>(length), '?');
        bytes.resize(static_cast<std::size_t>(files.read(bytes.data(), offset, length, name)));
        return bytes;
    }
    /// The whole user's file anew.
    void Store(const std::string& bytes) {
        ASSERT_TRUE(files.openFile(kUser, kWrite));
        ASSERT_EQ(Write(bytes), static_cast<std::int64_t>(bytes.size()));
        ASSERT_TRUE(files.closeFile(kUser));
    }
    std::string WholeFile(const char* name) {
        EXPECT_TRUE(files.openFile(name, kRead));
        std::string bytes = Read(0, kMax + 1, name);
        EXPECT_TRUE(files.closeFile(name));
        return bytes;
    }

    std::string Text(const char* name) { return live->As<GenApi::IValue>(name).ToString().c_str(); }
    std::string Status() { return Text("FileOperationStatus"); }
    std::int64_t Number(const char* name) { return live->As<GenApi::IInteger>(name).GetValue(); }

    GenTLApi api{OV_TEST_VIRTUAL_PRODUCER};
    std::optional<OpenCamera> camera;
    std::optional<LiveDescription> live;
    GenApi::FileProtocolAdapter files;
};

// Whole files.

class VirtualFileLength : public VirtualFiles, public testing::WithParamInterface<std::int64_t> {};

TEST_P(VirtualFileLength, ComesBackAsItWasWritten) {
    Open();
    const std::string bytes = Pattern(GetParam());
    Store(bytes);
    EXPECT_EQ(Number("FileSize"), GetParam());
    EXPECT_EQ(WholeFile(kUser), bytes);
}

INSTANTIATE_TEST_SUITE_P(Bytes, VirtualFileLength,
                         testing::Values(0, 1, 3, 4, 5, kBuffer - 1, kBuffer, kBuffer + 1,
                                         3 * kBuffer, 3 * kBuffer + 2, kMax - 1, kMax),
                         testing::PrintToStringParamName());

/// Bytes that the client asks for at a time.
class VirtualFilePiece : public VirtualFiles, public testing::WithParamInterface<std::int64_t> {};

TEST_P(VirtualFilePiece, IsWrittenAndReadOneAfterTheOther) {
    Open();
    const std::string bytes = Pattern(2 * kBuffer + 100);
    const auto length = static_cast<std::size_t>(GetParam());
    ASSERT_TRUE(files.openFile(kUser, kWrite));
    for (std::size_t at = 0; at < bytes.size(); at += length) {
        const std::string piece = bytes.substr(at, length);
        ASSERT_EQ(Write(piece, static_cast<std::int64_t>(at)),
                  static_cast<std::int64_t>(piece.size()));
    }
    ASSERT_TRUE(files.closeFile(kUser));
    ASSERT_TRUE(files.openFile(kUser, kRead));
    std::string read;
    for (std::string piece = "?"; !piece.empty(); read += piece) {
        piece = Read(static_cast<std::int64_t>(read.size()), GetParam());
    }
    EXPECT_EQ(read, bytes);
}

INSTANTIATE_TEST_SUITE_P(Bytes, VirtualFilePiece,
                         testing::Values(61, 1000, kBuffer - 1, kBuffer, kBuffer + 1,
                                         2 * kBuffer + 3),
                         testing::PrintToStringParamName());

// Ends.

TEST_F(VirtualFiles, ReadShortAtTheEnd) {
    Open();
    Store("0123456789");
    ASSERT_TRUE(files.openFile(kUser, kRead));
    EXPECT_EQ(Read(4, 100), "456789");
    EXPECT_EQ(Status(), "Success");
    for (const std::int64_t offset : {std::int64_t{10}, std::int64_t{11}, kMax, INT64_MAX}) {
        EXPECT_EQ(Read(offset, 1), "") << offset;
        EXPECT_EQ(Status(), "Success");
        EXPECT_EQ(Number("FileOperationResult"), 0);
    }
}

TEST_F(VirtualFiles, TakeNoMoreThanTheyHaveRoomFor) {
    Open();
    ASSERT_TRUE(files.openFile(kUser, kWrite));
    const std::string bytes = Pattern(kMax + kBuffer);
    EXPECT_EQ(Write(bytes), kMax);
    EXPECT_EQ(Status(), "Failure");
    EXPECT_EQ(Write("0123456789", kMax - 3), 3);
    EXPECT_EQ(Write("0123456789", kMax), 0);
    EXPECT_EQ(Number("FileSize"), kMax);
    ASSERT_TRUE(files.closeFile(kUser));
    EXPECT_EQ(WholeFile(kUser), bytes.substr(0, static_cast<std::size_t>(kMax - 3)) + "012");
}

// Refusals.

TEST_F(VirtualFiles, OfTheFactoryAreForReadingAlone) {
    Open();
    EXPECT_FALSE(files.openFile(kFactory, kWrite));
    EXPECT_EQ(Status(), "Failure");
    EXPECT_EQ(Number("FileOperationResult"), 0);
    EXPECT_FALSE(files.deleteFile(kFactory));
    EXPECT_EQ(Status(), "Failure");
    ASSERT_TRUE(files.openFile(kFactory, kRead));
    EXPECT_EQ(Status(), "Success");
    EXPECT_EQ(Write("text", 0, kFactory), 0);
    EXPECT_EQ(Status(), "Failure");
}

TEST_F(VirtualFiles, MoveNothingUnlessTheyAreOpenForIt) {
    Open();
    Store("text");
    EXPECT_EQ(Read(0, 4), "");
    EXPECT_EQ(Status(), "Failure");
    EXPECT_EQ(Write("more"), 0);
    EXPECT_EQ(Status(), "Failure");
    ASSERT_TRUE(files.openFile(kUser, kWrite));
    EXPECT_EQ(Read(0, 4), "");
    EXPECT_EQ(Status(), "Failure");
    EXPECT_TRUE(files.closeFile(kUser));
    EXPECT_FALSE(files.closeFile(kUser));
    EXPECT_EQ(Status(), "Failure");
}

TEST_F(VirtualFiles, AreGoneWhenTheyAreDeleted) {
    Open();
    Store("text");
    EXPECT_TRUE(files.deleteFile(kUser));
    EXPECT_EQ(Number("FileSize"), 0);
    EXPECT_FALSE(files.openFile(kUser, kRead));
    EXPECT_EQ(Status(), "Failure");
    EXPECT_FALSE(files.deleteFile(kUser));
    Store("anew");
    EXPECT_EQ(WholeFile(kUser), "anew");
}

TEST_F(VirtualFiles, HaveNoOtherNames) {
    Open();
    EXPECT_THROW(files.openFile("Other", kRead), GenICam_3_0_ORVANE::InvalidArgumentException);
}

// The files in the camera.

/// The value of a line of the factory's file, "" without such a line.
std::string Fact(const std::string& text, const std::string& key) {
    const std::string start = "\n" + key + "=";
    const std::string lines = "\n" + text;
    const std::size_t at = lines.find(start);
    return at == std::string::npos
               ? ""
               : lines.substr(at + start.size(), lines.find('\n', at + 1) - at - start.size());
}

TEST_F(VirtualFiles, TellWhatTheCameraKnowsOfItself) {
    for (const std::uint32_t device : {0U, 1U}) {
        Open(device);
        const std::string text = WholeFile(kFactory);
        EXPECT_EQ(Number("FileSize"), static_cast<std::int64_t>(text.size()));
        EXPECT_EQ(Fact(text, "Model"), Text("DeviceModelName"));
        EXPECT_EQ(Fact(text, "SerialNumber"), Text("DeviceSerialNumber"));
        EXPECT_EQ(Fact(text, "SensorWidth"), Text("SensorWidth"));
        EXPECT_EQ(Fact(text, "SensorHeight"), Text("SensorHeight"));
        EXPECT_EQ(Fact(text, "ColorFilter"), device == 0 ? "BayerRG" : "None");
        EXPECT_EQ(text.find("Balance") != std::string::npos, device == 0);
    }
}

TEST_F(VirtualFiles, TellTheBalanceThatTheCameraStartsWith) {
    Open();
    const std::string text = WholeFile(kFactory);
    for (const char* color : {"Red", "Green", "Blue"}) {
        live->As<GenApi::IEnumeration>("BalanceRatioSelector").FromString(color);
        const double ratio = live->As<GenApi::IFloat>("BalanceRatio").GetValue();
        EXPECT_NEAR(std::stod(Fact(text, std::string("Balance") + color)), ratio, 1e-4) << color;
        EXPECT_NEAR(std::stod(Fact(text, std::string("Sensitivity") + color)) * ratio, 1, 1e-3);
    }
}

TEST_F(VirtualFiles, AreClosedWithTheCamera) {
    Open();
    ASSERT_TRUE(files.openFile(kUser, kWrite));
    camera->Check(api.DevClose(camera->device), "DevClose");
    camera->Check(api.IFOpenDevice(camera->iface, camera->deviceId.c_str(),
                                   GenTL::DEVICE_ACCESS_EXCLUSIVE, &camera->device),
                  "IFOpenDevice");
    camera->Check(api.DevGetPort(camera->device, &camera->port), "DevGetPort");
    live.emplace(api, camera->port);
    ASSERT_TRUE(files.attach(&live->Map()));
    EXPECT_FALSE(files.closeFile(kUser));
    EXPECT_TRUE(files.openFile(kUser, kRead)) << "the file is still there";
}

TEST_F(VirtualFiles, AreClosedByAResetAndStay) {
    Open();
    Store("text");
    ASSERT_TRUE(files.openFile(kUser, kRead));
    live->As<GenApi::ICommand>("DeviceReset").Execute();
    EXPECT_FALSE(files.closeFile(kUser));
    EXPECT_EQ(WholeFile(kUser), "text");
}

TEST_F(VirtualFiles, AreKeptFromOneProcessToTheNext) {
    const fs::path folder = fs::temp_directory_path() / ("ov-files-" + std::to_string(getpid()));
    setenv("OV_VIRTUAL_STATE", folder.c_str(), 1);
    Open();
    Store("text");
    camera->Check(api.DevClose(camera->device), "DevClose");
    Open();
    EXPECT_EQ(WholeFile(kUser), "text");
    EXPECT_TRUE(files.deleteFile(kUser));
    camera->Check(api.DevClose(camera->device), "DevClose");
    Open();
    EXPECT_FALSE(files.openFile(kUser, kRead));
    Close();
    setenv("OV_VIRTUAL_STATE", "off", 1);
    fs::remove_all(folder);
}

// The description.

TEST_F(VirtualFiles, AreDescribedAsTheyAre) {
    Open();
    EXPECT_EQ(files.getBufSize(kUser, kWrite), kBuffer);
    EXPECT_EQ(live->As<GenApi::IInteger>("FileAccessLength").GetMax(), kBuffer);
    EXPECT_EQ(live->As<GenApi::IInteger>("FileAccessLength").GetMin(), 1);
    EXPECT_EQ(live->As<GenApi::IInteger>("FileAccessOffset").GetMin(), 0);
    EXPECT_EQ(live->As<GenApi::IInteger>("FileAccessOffset").GetMax(), INT64_MAX);
    for (GenApi::IValue* feature : live->Features("FileAccessControl")) {
        EXPECT_EQ(feature->GetNode()->GetVisibility(), GenApi::Guru)
            << feature->GetNode()->GetName().c_str();
    }
    for (const char* name : {"FileOperationStatus", "FileOperationResult", "FileSize"}) {
        EXPECT_EQ(live->As<GenApi::INode>(name).GetAccessMode(), GenApi::RO) << name;
    }
}

TEST_F(VirtualFiles, HaveTheirFeaturesSelected) {
    Open();
    const auto selected = [&](const char* name) {
        GenApi::value_vector features;
        live->As<GenApi::ISelector>(name).GetSelectedFeatures(features);
        std::vector<std::string> names;
        for (GenApi::IValue* feature : features) {
            names.emplace_back(feature->GetNode()->GetName().c_str());
        }
        return names;
    };
    EXPECT_EQ(
        selected("FileSelector"),
        (std::vector<std::string>{"FileOperationSelector", "FileOpenMode", "FileOperationExecute",
                                  "FileAccessOffset", "FileAccessLength", "FileOperationStatus",
                                  "FileOperationResult", "FileSize"}));
    EXPECT_EQ(
        selected("FileOperationSelector"),
        (std::vector<std::string>{"FileOperationExecute", "FileAccessOffset", "FileAccessLength",
                                  "FileOperationStatus", "FileOperationResult"}));
}

// The registers alone.

TEST_F(VirtualFiles, BearAnyNumberInTheirRegisters) {
    Open();
    Store("text");
    const auto write = [&](std::uint64_t address, auto value) {
        std::size_t size = sizeof value;
        return api.GCWritePort(camera->port, address, &value, &size);
    };
    for (const std::uint64_t choice : {0x900U, 0x904U, 0x908U}) {
        for (const std::uint32_t value : {5U, 0x80000000U, 0xFFFFFFFFU}) {
            EXPECT_EQ(write(choice, value), GenTL::GC_ERR_INVALID_VALUE) << choice;
        }
    }
    ASSERT_TRUE(files.openFile(kUser, kWrite));
    for (const std::uint64_t offset : {std::uint64_t{1} << 63, UINT64_MAX, UINT64_MAX / 2}) {
        for (const std::uint32_t operation : {2U, 3U}) {
            EXPECT_EQ(write(0x904, operation), GenTL::GC_ERR_SUCCESS);
            EXPECT_EQ(write(0x910, offset), GenTL::GC_ERR_SUCCESS);
            EXPECT_EQ(write(0x918, UINT32_MAX), GenTL::GC_ERR_SUCCESS);
            EXPECT_EQ(write(0x90C, std::uint32_t{1}), GenTL::GC_ERR_SUCCESS);
            EXPECT_EQ(Status(), "Failure");
        }
    }
    EXPECT_EQ(Number("FileSize"), 0);
    EXPECT_EQ(write(0x4000 + static_cast<std::uint64_t>(kBuffer) - 4, std::uint64_t{0}),
              GenTL::GC_ERR_INVALID_ADDRESS);
}

}  // namespace
