#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

#include "platform/host/win32.h"

namespace zelk::testing {
namespace {

// What the window procedure of a test does.
std::function<void(HWND, UINT)> onMessage;

LRESULT Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  onMessage(window, message);
  return DefWindowProcA(window, message, wParam, lParam) + 42;
}

HWND Create(const char* name = "target") {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = Procedure;
  windowClass.lpszClassName = "Target";
  RegisterClassA(&windowClass);  // refused when it is there already
  return CreateWindowExA(0, name, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
}

int Pump() {
  int count = 0;
  for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE); ++count) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return count;
}

TEST(Messages, ArriveInOrderAndOnlyWhereTheFilterLooks) {
  const HWND first = Create();
  const HWND second = Create();
  EXPECT_EQ(Create("Unknown"), nullptr);
  PostMessageA(first, WM_APP, 1, -1);
  PostMessageA(second, WM_APP + 1, 2, 0);
  PostMessageA(nullptr, WM_APP + 2, 3, 0);
  MSG message{};
  EXPECT_FALSE(PeekMessageA(&message, first, WM_APP + 1, WM_APP + 9, PM_REMOVE));
  EXPECT_TRUE(PeekMessageA(&message, second, 0, 0, 0));
  EXPECT_TRUE(PeekMessageA(&message, nullptr, WM_APP + 1, WM_APP + 1, PM_REMOVE));
  EXPECT_EQ(message.hwnd, second);
  EXPECT_FALSE(PeekMessageA(&message, second, 0, 0, PM_REMOVE));
  EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.lParam, -1);
  onMessage = [](HWND, UINT) {};
  EXPECT_EQ(DispatchMessageA(&message), 42);
  EXPECT_EQ(Pump(), 1);  // the thread's own message goes to no window
  EXPECT_FALSE(UnregisterClassA("TARGET", nullptr));
  EXPECT_TRUE(DestroyWindow(first) && DestroyWindow(second));
  EXPECT_TRUE(UnregisterClassA("TARGET", nullptr));
}

TEST(Messages, ProcedureMayPostPumpAndDestroyItsWindow) {
  const HWND window = Create();
  std::vector<UINT> seen;
  onMessage = [&](HWND target, UINT message) {
    seen.push_back(message);
    if (message == WM_APP) {
      PostMessageA(target, WM_APP + 1, 0, 0);
      EXPECT_EQ(Pump(), 1);
    } else {
      PostMessageA(target, WM_APP + 2, 0, 0);
      EXPECT_TRUE(DestroyWindow(target));
    }
  };
  PostMessageA(window, WM_APP, 0, 0);
  EXPECT_EQ(Pump(), 1);
  EXPECT_EQ(seen, (std::vector<UINT>{WM_APP, WM_APP + 1}));
  EXPECT_FALSE(PostMessageA(window, WM_APP, 0, 0));
}

TEST(Messages, EachThreadSeesThoseOfItsOwnWindows) {
  const HWND window = Create();
  HWND foreign = nullptr;
  std::thread([&] {
    foreign = Create();
    EXPECT_TRUE(PostMessageA(window, WM_APP, 0, 0));
    EXPECT_EQ(Pump(), 0);
    EXPECT_FALSE(DestroyWindow(window));
  }).join();
  EXPECT_FALSE(PostMessageA(foreign, WM_APP, 0, 0));  // gone with its thread
  UINT seen = 0;
  onMessage = [&](HWND, UINT message) { seen = message; };
  EXPECT_EQ(Pump(), 1);
  EXPECT_EQ(seen, WM_APP);
  DestroyWindow(window);
}

}  // namespace
}  // namespace zelk::testing
