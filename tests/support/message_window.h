// A window of the calling thread whose procedure does what an application's might. It gets its
// messages where somebody pumps them: in the middle of a scan's probe, or in a driver's call.
#pragma once

#include <functional>
#include <utility>

#include "platform/win32.h"

namespace zelk::test {

class MessageWindow {
 public:
  MessageWindow() {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.lpszClassName = kClass;
    RegisterClassA(&windowClass);
    window_ =
        CreateWindowExA(0, kClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  }
  ~MessageWindow() {
    DestroyWindow(window_);
    UnregisterClassA(kClass, nullptr);
    action_ = nullptr;
  }
  MessageWindow(const MessageWindow&) = delete;
  MessageWindow& operator=(const MessageWindow&) = delete;

  // Does `action` when the next message is dispatched.
  void AtNextMessage(std::function<void()> action) {
    action_ = std::move(action);
    PostMessageA(window_, WM_APP, 0, 0);
  }

 private:
  static constexpr char kClass[] = "message window of a test";

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_APP) return DefWindowProcA(window, message, wParam, lParam);
    if (const auto action = std::exchange(action_, nullptr)) action();
    return 0;
  }

  static inline std::function<void()> action_;
  HWND window_;
};

}  // namespace zelk::test
