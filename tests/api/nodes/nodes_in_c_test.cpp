#include "support/ApiTest.h"

extern "C" int ReadNodesInC(void);

class NodesInC : public ApiTest {};

TEST_F(NodesInC, FindsReadsAndFails) {
    EXPECT_EQ(ReadNodesInC(), 0);
}
