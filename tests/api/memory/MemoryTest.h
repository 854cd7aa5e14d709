#pragma once
/// Every allocation beneath a call is refused in turn, alone and with all that follow.

#include <functional>
#include <iostream>

#include "support/AcquisitionTest.h"
#include "support/FailingMemory.h"

/// What is done with refused memory, and looked at afterwards.
struct Plan {
    std::function<void()> prepare = [] {};
    std::function<OV_STATUS()> action;
    std::function<void(OV_STATUS)> check;
};

class MemoryTest : public AcquisitionTest {
protected:
    ~MemoryTest() override {
        OVCloseLib();
        std::cout << "[  CASES   ] " << m_cases << '\n';
    }

    void RunShort(const Plan& plan, Shortage shortage) {
        bool isOver = false;
        for (size_t before = 0; !isOver && !HasFailure(); ++before) {
            SCOPED_TRACE(
                (shortage == Shortage::Once ? "refused once after " : "refused for good after ") +
                std::to_string(before));
            plan.prepare();
            OV_STATUS status = OV_STATUS_SUCCESS;
            {
                const FailingMemory scarce(before, shortage);
                status = plan.action();
                isOver = !FailingMemory::WasReached();
            }
            EXPECT_TRUE(!isOver || status == OV_STATUS_SUCCESS) << LastError::Get().text;
            plan.check(status);
            ++m_cases;
        }
    }

    void Run(const Plan& plan) {
        RunShort(plan, Shortage::Once);
        RunShort(plan, Shortage::Lasting);
    }

    void ExpectClosed(std::initializer_list<const char*> kinds) {
        for (const char* const kind : kinds) {
            EXPECT_EQ(producer.OpenCount(kind), 0) << kind;
        }
    }

    void ExpectRoundOfFrames() {
        EXPECT_OV_OK(OVStreamOn(camera));
        producer.Trigger(0, 0, 1);
        EXPECT_OV_OK(OVQBuf(camera, Borrow()));
        EXPECT_OV_OK(OVStreamOff(camera));
        ExpectClosed({"Buffer", "Event", "Acquisition"});
    }

    void CloseAndOpenAgain() {
        EXPECT_OV_OK(OVCloseDevice(camera));
        ExpectClosed({"Device", "Stream", "Buffer", "Event", "Acquisition"});
        camera = Open();
        ASSERT_NE(camera, nullptr);
    }

private:
    unsigned m_cases = 0;
};
