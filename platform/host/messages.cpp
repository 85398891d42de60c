// Window messages: one queue for each thread, filled by PostMessageA from any thread. A scan looks
// into its queue between two probes, so an empty queue answers from one atomic counter.
#include <algorithm>
#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/win32.h"
#include "platform/ignore_case.h"

namespace {

constexpr std::size_t kLongestQueue = 10'000;  // Windows' own limit
constexpr ATOM kFirstClassAtom = 0xC000;
constexpr DWORD kVisibleStyle = 0x10000000;
constexpr UINT kPeekNoYield = 2;  // means nothing since windows have threads
const HWND kThreadMessagesOnly = reinterpret_cast<HWND>(static_cast<std::intptr_t>(-1));

struct Queue {
  std::atomic<std::size_t> pending{0};
  std::mutex mutex;
  std::deque<MSG> messages;
};

struct WindowClass {
  std::string name;
  ATOM atom;
  WNDPROC procedure;
};

struct Window {
  ATOM classAtom;
  WNDPROC procedure;
  std::shared_ptr<Queue> queue;
};

struct Desktop {
  std::mutex mutex;
  std::vector<WindowClass> classes;
  ATOM nextAtom = kFirstClassAtom;
  std::map<std::uintptr_t, Window> windows;
  std::uintptr_t nextWindow = 0x10000;  // a handle is never used again
};

Desktop& TheDesktop() {
  static auto* const desktop = new Desktop;  // threads may end after the static destructors ran
  return *desktop;
}

// The windows of a thread end with it.
struct ThreadQueue {
  std::shared_ptr<Queue> queue = std::make_shared<Queue>();
  ThreadQueue();
  ~ThreadQueue();
};

// Costs no call and no check at each use: it has no initialiser that runs code, and lies at a fixed
// place among the thread's variables.
thread_local __attribute__((tls_model("initial-exec"))) Queue* queueOfThread = nullptr;

ThreadQueue::ThreadQueue() { queueOfThread = queue.get(); }

ThreadQueue::~ThreadQueue() {
  queueOfThread = nullptr;
  Desktop& desktop = TheDesktop();
  const std::lock_guard lock(desktop.mutex);
  std::erase_if(desktop.windows, [&](const auto& entry) { return entry.second.queue == queue; });
}

const std::shared_ptr<Queue>& QueueOfThread() {
  thread_local ThreadQueue owner;
  return owner.queue;
}

std::uintptr_t KeyOf(HWND window) { return reinterpret_cast<std::uintptr_t>(window); }

std::optional<Window> FindWindowEntry(HWND handle) {
  Desktop& desktop = TheDesktop();
  const std::lock_guard lock(desktop.mutex);
  const auto found = desktop.windows.find(KeyOf(handle));
  if (found == desktop.windows.end()) return std::nullopt;
  return found->second;
}

// A class is named by its text or by its atom in the place of a pointer.
std::vector<WindowClass>::iterator FindClass(Desktop& desktop, LPCSTR name) {
  constexpr std::uintptr_t kHighestAtom = 0xFFFF;
  const auto atom = reinterpret_cast<std::uintptr_t>(name);
  return std::find_if(
      desktop.classes.begin(), desktop.classes.end(), [&](const WindowClass& entry) {
        return atom <= kHighestAtom ? entry.atom == atom
                                    : zelk::host::EqualIgnoringCase(entry.name, name);
      });
}

bool Matches(const MSG& message, HWND window, UINT lowest, UINT highest) {
  if (window == kThreadMessagesOnly ? message.hwnd != nullptr : window && message.hwnd != window)
    return false;
  return (lowest == 0 && highest == 0) || (message.message >= lowest && message.message <= highest);
}

[[gnu::noinline]] BOOL PeekInto(Queue& queue, MSG* found, HWND window, UINT lowest, UINT highest,
                                UINT remove) {
  if (!found || (remove & ~(PM_REMOVE | kPeekNoYield)) != 0) return FALSE;
  const std::lock_guard lock(queue.mutex);
  const auto message =
      std::find_if(queue.messages.begin(), queue.messages.end(),
                   [&](const MSG& queued) { return Matches(queued, window, lowest, highest); });
  if (message == queue.messages.end()) return FALSE;
  *found = *message;
  if (remove & PM_REMOVE) {
    queue.messages.erase(message);
    queue.pending.store(queue.messages.size(), std::memory_order_release);
  }
  return TRUE;
}

}  // namespace

ATOM RegisterClassA(const WNDCLASSA* lpWndClass) {
  if (!lpWndClass || !lpWndClass->lpfnWndProc || !lpWndClass->lpszClassName ||
      lpWndClass->cbClsExtra != 0 || lpWndClass->cbWndExtra != 0)
    return 0;
  Desktop& desktop = TheDesktop();
  const std::lock_guard lock(desktop.mutex);
  if (FindClass(desktop, lpWndClass->lpszClassName) != desktop.classes.end()) return 0;
  desktop.classes.push_back({lpWndClass->lpszClassName, desktop.nextAtom, lpWndClass->lpfnWndProc});
  return desktop.nextAtom++;
}

BOOL UnregisterClassA(LPCSTR lpClassName, HINSTANCE) {
  Desktop& desktop = TheDesktop();
  const std::lock_guard lock(desktop.mutex);
  const auto found = FindClass(desktop, lpClassName);
  if (found == desktop.classes.end()) return FALSE;
  const bool inUse =
      std::any_of(desktop.windows.begin(), desktop.windows.end(),
                  [&](const auto& entry) { return entry.second.classAtom == found->atom; });
  if (inUse) return FALSE;
  desktop.classes.erase(found);
  return TRUE;
}

HWND CreateWindowExA(DWORD, LPCSTR lpClassName, LPCSTR, DWORD dwStyle, int, int, int, int,
                     HWND hWndParent, HMENU hMenu, HINSTANCE, LPVOID lpParam) {
  const bool messagesAlone = (dwStyle & kVisibleStyle) == 0 && !hMenu && !lpParam &&
                             (!hWndParent || hWndParent == HWND_MESSAGE);
  if (!messagesAlone) return nullptr;
  Desktop& desktop = TheDesktop();
  const std::shared_ptr<Queue>& queue = QueueOfThread();
  const std::lock_guard lock(desktop.mutex);
  const auto found = FindClass(desktop, lpClassName);
  if (found == desktop.classes.end()) return nullptr;
  const std::uintptr_t key = desktop.nextWindow++;
  desktop.windows.emplace(key, Window{found->atom, found->procedure, queue});
  return reinterpret_cast<HWND>(key);
}

BOOL DestroyWindow(HWND hWnd) {
  const std::shared_ptr<Queue>& queue = QueueOfThread();
  {
    Desktop& desktop = TheDesktop();
    const std::lock_guard lock(desktop.mutex);
    const auto found = desktop.windows.find(KeyOf(hWnd));
    if (found == desktop.windows.end() || found->second.queue != queue) return FALSE;
    desktop.windows.erase(found);
  }
  const std::lock_guard lock(queue->mutex);
  std::erase_if(queue->messages, [&](const MSG& message) { return message.hwnd == hWnd; });
  queue->pending.store(queue->messages.size(), std::memory_order_release);
  return TRUE;
}

LRESULT DefWindowProcA(HWND, UINT, WPARAM, LPARAM) { return 0; }

BOOL PostMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam) {
  // The table stays locked until the message is in the queue, so that none arrives behind the
  // destruction of its window.
  std::unique_lock<std::mutex> windows;
  std::shared_ptr<Queue> queue;
  if (hWnd) {
    Desktop& desktop = TheDesktop();
    windows = std::unique_lock(desktop.mutex);
    const auto found = desktop.windows.find(KeyOf(hWnd));
    if (found == desktop.windows.end()) return FALSE;
    queue = found->second.queue;
  } else {
    queue = QueueOfThread();
  }
  const std::lock_guard lock(queue->mutex);
  if (queue->messages.size() >= kLongestQueue) return FALSE;
  queue->messages.push_back({hWnd, Msg, wParam, lParam, GetTickCount(), {0, 0}});
  queue->pending.store(queue->messages.size(), std::memory_order_release);
  return TRUE;
}

BOOL PeekMessageA(MSG* lpMsg, HWND hWnd, UINT wMsgFilterMin, UINT wMsgFilterMax, UINT wRemoveMsg) {
  Queue* const queue = queueOfThread;
  if (!queue || queue->pending.load(std::memory_order_acquire) == 0) return FALSE;
  return PeekInto(*queue, lpMsg, hWnd, wMsgFilterMin, wMsgFilterMax, wRemoveMsg);
}

// There is no keyboard whose strokes could become characters.
BOOL TranslateMessage(const MSG*) { return FALSE; }

// The procedure is called with nothing locked and no window at hand: it may post, pump, create
// windows and destroy its own.
LRESULT DispatchMessageA(const MSG* lpMsg) {
  if (!lpMsg || !lpMsg->hwnd) return 0;
  const std::optional<Window> window = FindWindowEntry(lpMsg->hwnd);
  return window ? window->procedure(lpMsg->hwnd, lpMsg->message, lpMsg->wParam, lpMsg->lParam) : 0;
}
