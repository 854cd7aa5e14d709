#include "support/ApiTest.h"

extern "C" int OpenCloseInC(void);

class HeaderInC : public ApiTest {};

TEST_F(HeaderInC, OpensReadsFailsAndCloses) {
    EXPECT_EQ(OpenCloseInC(), 0);
}
