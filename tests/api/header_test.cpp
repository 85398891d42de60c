#include <gtest/gtest.h>

extern "C" int HeaderFaults(void);

TEST(Header, WorksFromC) { EXPECT_EQ(HeaderFaults(), 0); }
