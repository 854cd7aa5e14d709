// Tests in a network of their own, which no other process of this machine sees.

#include <gtest/gtest.h>

#include "NetworkSpace.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests)) {
        NetworkSpace::Enter();
    }
    return RUN_ALL_TESTS();
}
