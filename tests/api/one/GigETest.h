#pragma once
/// What the tests of the GigE Vision configuration share: a producer of such
/// cameras.

#include "support/ApiTest.h"

namespace gige {

/// MAC address of the producer's first camera.
inline constexpr const char* kMac = "00-AA-BB-CC-00-64";

class GigETest : public ApiTest {
protected:
    GigETest() { producer.SetProducerText("TLType", "GEV"); }

    /// The library initialised over a producer without faults.
    void StartAnew() {
        OVCloseLib();
        producer.Reset();
        producer.SetProducerText("TLType", "GEV");
        Init();
    }
};

/// Puts the arguments of a call right, spoils two of them and expects that the
/// one that is tested first decides.
/// @tparam Case  has `name`, `order` (a character for each check, first one
///               first) and `run(arguments)`
/// @tparam Base  the fixture
template <class Case, class Arguments, class Base = GigETest>
class CheckOrderTest : public Base, public testing::WithParamInterface<Case> {
protected:
    struct Refusal {
        OV_STATUS status;
        std::string message;
    };

    virtual Arguments Right() = 0;
    virtual void Spoil(Arguments& arguments, char check) = 0;
    virtual Refusal RefusalOf(char check) const = 0;

    void ExpectTheFirstOfTwoDecides() {
        const std::string order = this->GetParam().order;
        for (size_t first = 0; first < order.size(); ++first) {
            for (size_t second = first; second < order.size(); ++second) {
                SCOPED_TRACE(order.substr(first, 1) + order[second]);
                Arguments arguments = Right();
                Spoil(arguments, order[second]);
                Spoil(arguments, order[first]);
                const Refusal refusal = RefusalOf(order[first]);
                ExpectFailure(this->GetParam().run(arguments), refusal.status, refusal.message);
            }
        }
    }
};

}  // namespace gige
