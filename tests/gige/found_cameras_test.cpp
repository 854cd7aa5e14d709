#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "gige/discovery/FoundCameras.h"

namespace {

using namespace OvGige;
using namespace std::chrono_literals;

constexpr FoundCameras::Time kNoon{1h};

Adapter OfSubnet192() {
    return {.name = "eth0",
            .index = 2,
            .mac = {},
            .ip = {0xC0A80101},
            .mask = {0xFFFFFF00},
            .broadcast = {0xC0A801FF},
            .gateway = {},
            .isLoopback = false};
}

FoundCamera Camera(uint8_t number, Ipv4 ip, const char* userName = "") {
    FoundCamera camera;
    camera.identity.mac = {{0, 0, 0, 0, 0, number}};
    camera.identity.ip = ip;
    camera.identity.userName = userName;
    camera.endpoint = {ip, 3956};
    return camera;
}

std::vector<uint64_t> MacsOf(const std::vector<FoundCamera>& cameras) {
    std::vector<uint64_t> macs;
    for (const FoundCamera& camera : cameras) {
        macs.push_back(camera.identity.mac.Value());
    }
    return macs;
}

using Macs = std::vector<uint64_t>;

class FoundCamerasTest : public testing::Test {
protected:
    Macs List(SearchRange range, FoundCameras::Time now) const {
        return MacsOf(m_found.List(OfSubnet192(), range, now));
    }

    FoundCameras m_found;
};

TEST_F(FoundCamerasTest, AreListedByTheirMacAddress) {
    m_found.Note(Camera(7, {0xC0A80107}), kNoon);
    m_found.Note(Camera(3, {0xC0A80103}), kNoon);
    EXPECT_EQ(List(SearchRange::Subnet, kNoon), Macs({3, 7}));
}

TEST_F(FoundCamerasTest, OfOtherSubnetsAreListedOnlyForTheWholeNetwork) {
    m_found.Note(Camera(3, {0x0A000003}), kNoon);
    EXPECT_EQ(List(SearchRange::Subnet, kNoon), Macs());
    EXPECT_EQ(List(SearchRange::Network, kNoon), Macs({3}));
}

TEST_F(FoundCamerasTest, AnswerTwiceAndAreListedOnceAsTheyWereLast) {
    m_found.Note(Camera(3, {0xC0A80103}, "before"), kNoon);
    m_found.Note(Camera(3, {0xC0A80103}, "after"), kNoon + 1s);
    const auto cameras = m_found.List(OfSubnet192(), SearchRange::Subnet, kNoon + 1s);
    ASSERT_EQ(cameras.size(), 1U);
    EXPECT_EQ(cameras.front().identity.userName, "after");
}

TEST_F(FoundCamerasTest, OfOtherSubnetsAreListedWhenTheUserNamedThem) {
    FoundCamera beyondARouter = Camera(3, {0x0A000003});
    beyondARouter.isNamed = true;
    m_found.Note(beyondARouter, kNoon);
    EXPECT_EQ(List(SearchRange::Subnet, kNoon), Macs({3}));
}

TEST_F(FoundCamerasTest, KeepTheirUseUntilTheySayAnother) {
    const auto use = [this] {
        return m_found.List(OfSubnet192(), SearchRange::Subnet, kNoon).front().use;
    };
    m_found.Note(Camera(3, {0xC0A80103}), kNoon);
    EXPECT_EQ(use(), CameraUse::Unknown);
    m_found.NoteUse({{0xC0A80104}, 3956}, CameraUse::Exclusive);
    EXPECT_EQ(use(), CameraUse::Unknown);
    m_found.NoteUse({{0xC0A80103}, 3956}, CameraUse::Controlled);
    m_found.Note(Camera(3, {0xC0A80103}), kNoon);
    EXPECT_EQ(use(), CameraUse::Controlled);
}

TEST_F(FoundCamerasTest, GoAfterThreeSecondsOfSilence) {
    m_found.Note(Camera(3, {0xC0A80103}), kNoon);
    EXPECT_EQ(List(SearchRange::Subnet, kNoon + 3s), Macs({3}));
    EXPECT_EQ(List(SearchRange::Subnet, kNoon + 3s + 1ms), Macs());
}

TEST_F(FoundCamerasTest, ComeBackWithTheirNextAnswer) {
    m_found.Note(Camera(3, {0xC0A80103}), kNoon);
    m_found.Note(Camera(3, {0xC0A80103}), kNoon + 10s);
    EXPECT_EQ(List(SearchRange::Subnet, kNoon + 10s), Macs({3}));
}

}  // namespace
