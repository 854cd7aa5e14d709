// A function that a class promises and no class has.

#include <gtest/gtest.h>

namespace {

class Promise {
public:
    Promise() { Call(); }
    virtual ~Promise() = default;
    void Call() { Keep(); }
    virtual void Keep() = 0;
};

class Kept : public Promise {
public:
    void Keep() override {}
};

TEST(PureVirtualDeathTest, EndsTheProcessWithATextWhenItIsCalled) {
    EXPECT_DEATH(Kept(), "assertion failed: a pure virtual function isn't called");
}

}  // namespace
