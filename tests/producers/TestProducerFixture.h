/// @file
/// A test on the test producer, which is fresh for every test.
#ifndef OV_TESTS_TEST_PRODUCER_FIXTURE_H
#define OV_TESTS_TEST_PRODUCER_FIXTURE_H

#include <gtest/gtest.h>

#include "GenTLApi.h"
#include "OvTestControl.h"

class TestProducerTest : public testing::Test {
protected:
    ~TestProducerTest() override {
        if (camera.library) {
            camera.api.GCCloseLib();
            camera.library = false;
        }
        control.Reset();
    }

    TestProducer control{OV_TEST_PRODUCER};
    GenTLApi api{OV_TEST_PRODUCER};
    OpenCamera camera{api};

    static constexpr std::size_t kFrameSize = std::size_t{64} * 48;
};

#endif
