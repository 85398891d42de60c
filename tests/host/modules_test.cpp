#include <dlfcn.h>
#include <gmock/gmock.h>

#include <array>
#include <filesystem>

#include "platform/control.h"
#include "platform/module_path.h"
#include "tests/support/temp_folder.h"

namespace zelk::host {
namespace {

using testing::TempFolder;

std::intptr_t One() { return 1; }
std::intptr_t Two() { return 2; }

TEST(Modules, RegisteredOnesAreFoundByFileNameAndCounted) {
  RegisterModule("Gate.dll", {{"ENTRY", One}});
  const HMODULE module = LoadLibraryA("C:\\tv\\GATE");
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(LoadLibraryA("gate.DLL"), module);
  EXPECT_EQ(ModuleLoadCount("gate.dll"), 2);
  EXPECT_EQ(GetProcAddress(module, "entry"), nullptr);

  // What is loaded stays whole when another takes its name.
  RegisterModule("GATE.DLL", {{"ENTRY", Two}});
  EXPECT_EQ(GetProcAddress(module, "ENTRY"), One);
  const HMODULE newer = LoadLibraryA("Gate.dll");
  EXPECT_EQ(GetProcAddress(newer, "ENTRY"), Two);
  EXPECT_TRUE(FreeLibrary(module));
  EXPECT_TRUE(FreeLibrary(module));
  EXPECT_FALSE(FreeLibrary(module));
  EXPECT_EQ(ModuleLoadCount("Gate"), 1);
  UnregisterModule("gate");
  EXPECT_EQ(LoadLibraryA("Gate.dll"), nullptr);
  EXPECT_TRUE(FreeLibrary(newer));
  EXPECT_EQ(ModuleLoadCount("Gate.dll"), 0);
}

// What somebody left in the current folder does not become part of the process.
TEST(Modules, SharedLibrariesAreLoadedByTheirPathAlone) {
  const TempFolder folder;
  const std::string planted = folder / "PioGate.dll";
  std::filesystem::copy_file(ModulePathOf(dlsym(RTLD_DEFAULT, "cos")), planted);
  const std::filesystem::path current = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  for (const char* name : {"PioGate.dll", "PioGate", ".\\PioGate.dll", "libm.so.6"})
    EXPECT_EQ(LoadLibraryA(name), nullptr) << name;
  const HMODULE module = LoadLibraryA(planted.c_str());
  EXPECT_EQ(LoadLibraryA("./PioGate.dll"), module);
  std::filesystem::current_path(current);
  ASSERT_NE(module, nullptr);
  EXPECT_NE(GetProcAddress(module, "cos"), nullptr);
  std::array<char, MAX_PATH> path{};
  EXPECT_GT(GetModuleFileNameA(module, path.data(), path.size()), 0U);
  EXPECT_EQ(path.data(), planted);
  EXPECT_TRUE(FreeLibrary(module));
  EXPECT_TRUE(FreeLibrary(module));
  EXPECT_FALSE(FreeLibrary(module));
}

TEST(Programs, AreRecordedAndNotStarted) {
  TakeExecutedCommands();
  EXPECT_EQ(WinExec("tool /s a.dll", SW_SHOW), 2U);
  EXPECT_EQ(WinExec("tool /s b.dll", SW_SHOW), 2U);
  EXPECT_THAT(TakeExecutedCommands(), ::testing::ElementsAre("tool /s a.dll", "tool /s b.dll"));
  EXPECT_THAT(TakeExecutedCommands(), ::testing::IsEmpty());
}

}  // namespace
}  // namespace zelk::host
