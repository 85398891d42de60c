// GoogleTest's place for adaptations to a system. The Windows compiler in use has no threads in its
// standard library; GoogleTest wants them for this class alone, which no test here needs.
#pragma once

#define GTEST_HAS_NOTIFICATION_ 1

namespace testing::internal {

class Notification {
 public:
  void Notify() {}
  void WaitForNotification() {}
};

}  // namespace testing::internal
