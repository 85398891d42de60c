// What was once wrong, by the parser that was fed with it: corpus/TARGET/taken/NAME and
// corpus/TARGET/refused/NAME.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/fuzz/targets.h"

namespace zelk::fuzz {
namespace {

TEST(Corpus, IsTakenOrRefusedAsItsFoldersSay) {
  for (const Target& target : Targets()) {
    int cases = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             std::filesystem::path(ZELK_FUZZ_CORPUS) / target.name)) {
      if (!entry.is_regular_file()) continue;
      SCOPED_TRACE(entry.path());
      std::ifstream in(entry.path(), std::ios::binary);
      const std::string text{std::istreambuf_iterator<char>(in), {}};
      const bool taken = entry.path().parent_path().filename() == "taken";
      EXPECT_NO_THROW(EXPECT_EQ(target.takes(text), taken));
      ++cases;
    }
    EXPECT_GT(cases, 0) << target.name;
  }
}

}  // namespace
}  // namespace zelk::fuzz
