// This process and those it would start.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

#include "platform/host/control.h"

namespace {

constexpr std::size_t kDebugLinesKept = 1000;
constexpr UINT kProgramNotFound = 2;

struct Output {
  std::mutex mutex;
  std::vector<std::string> commands;
  std::deque<std::string> debugLines;
};

Output& TheOutput() {
  static auto* const output = new Output;  // may be written to until the process ends
  return *output;
}

}  // namespace

UINT WinExec(LPCSTR lpCmdLine, UINT) {
  if (!lpCmdLine) return kProgramNotFound;
  Output& output = TheOutput();
  const std::lock_guard lock(output.mutex);
  output.commands.emplace_back(lpCmdLine);
  return kProgramNotFound;
}

DWORD GetCurrentProcessId() { return static_cast<DWORD>(getpid()); }
DWORD GetCurrentThreadId() { return static_cast<DWORD>(gettid()); }

void OutputDebugStringA(LPCSTR lpOutputString) {
  if (!lpOutputString) return;
  if (std::getenv("ZELKAPI_DEBUG_OUTPUT")) std::fprintf(stderr, "%s\n", lpOutputString);
  Output& output = TheOutput();
  const std::lock_guard lock(output.mutex);
  if (output.debugLines.size() == kDebugLinesKept) output.debugLines.pop_front();
  output.debugLines.emplace_back(lpOutputString);
}

namespace zelk::host {

std::vector<std::string> TakeExecutedCommands() {
  Output& output = TheOutput();
  const std::lock_guard lock(output.mutex);
  return std::exchange(output.commands, {});
}

std::vector<std::string> TakeDebugOutput() {
  Output& output = TheOutput();
  const std::lock_guard lock(output.mutex);
  const std::deque<std::string> lines = std::exchange(output.debugLines, {});
  return {lines.begin(), lines.end()};
}

}  // namespace zelk::host
