// COM on the thread that the tests run on, in every test program: Windows wants it initialised
// before a virtual card can be plugged in.
#include <gtest/gtest.h>

#include <optional>

#include "platform/com_apartment.h"

namespace zelk::test {
namespace {

class ComEnvironment : public ::testing::Environment {
 public:
  void SetUp() override { apartment_.emplace(); }
  void TearDown() override { apartment_.reset(); }

 private:
  std::optional<ComApartment> apartment_;
};

[[maybe_unused]] const auto* const environment =
    ::testing::AddGlobalTestEnvironment(new ComEnvironment);

}  // namespace
}  // namespace zelk::test
