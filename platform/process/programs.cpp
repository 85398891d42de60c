// What the process asked others to do: the programs it would start and what it told the debugger.
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

#include "platform/control.h"
#include "platform/mutex.h"
#include "platform/process/calls.h"

namespace zelk::host {
namespace {

constexpr std::size_t kDebugLinesKept = 1000;
constexpr UINT kProgramNotFound = 2;

struct Output {
  Mutex mutex;
  std::vector<std::string> commands;
  std::deque<std::string> debugLines;
};

Output& TheOutput() {
  static auto* const output = new Output;  // may be written to until the process ends
  return *output;
}

}  // namespace

UINT WINAPI NoteCommand(LPCSTR command, UINT) {
  if (!command) return kProgramNotFound;
  Output& output = TheOutput();
  const std::lock_guard lock(output.mutex);
  output.commands.emplace_back(command);
  return kProgramNotFound;
}

void WINAPI NoteDebugOutput(LPCSTR text) {
  if (!text) return;
  if (std::getenv("ZELKAPI_DEBUG_OUTPUT")) std::fprintf(stderr, "%s\n", text);
  Output& output = TheOutput();
  const std::lock_guard lock(output.mutex);
  if (output.debugLines.size() == kDebugLinesKept) output.debugLines.pop_front();
  output.debugLines.emplace_back(text);
}

std::vector<std::string> TakeExecutedCommands() {
  TakeOverCalls();
  Output& output = TheOutput();
  const std::lock_guard lock(output.mutex);
  return std::exchange(output.commands, {});
}

std::vector<std::string> TakeDebugOutput() {
  TakeOverCalls();
  Output& output = TheOutput();
  const std::lock_guard lock(output.mutex);
  const std::deque<std::string> lines = std::exchange(output.debugLines, {});
  return {lines.begin(), lines.end()};
}

}  // namespace zelk::host
