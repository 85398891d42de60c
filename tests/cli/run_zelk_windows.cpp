#include <sstream>
#include <stdexcept>

#include "platform/module_path.h"
#include "platform/win32.h"
#include "run_zelk.h"

namespace zelk::test {
namespace {

// A hung program must not hang the tests.
constexpr DWORD kLongestRunMs = 60'000;

// A file that a program can be given in place of its standard output.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path) : path_(path) {
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    handle_ = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inheritable, CREATE_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle_ == INVALID_HANDLE_VALUE) throw std::runtime_error("cannot make " + path);
  }
  ~OutputFile() {
    if (handle_) CloseHandle(handle_);
    DeleteFileA(path_.c_str());
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  HANDLE Handle() const { return handle_; }
  std::string Content() {
    CloseHandle(handle_);
    handle_ = nullptr;
    std::stringstream text;
    text << std::ifstream(path_, std::ios::binary).rdbuf();
    return text.str();
  }

 private:
  const std::string path_;
  HANDLE handle_ = nullptr;
};

// The program stands beside the tests.
std::string ProgramPath() {
  return (ModulePathOf(reinterpret_cast<const void*>(&ProgramPath)).parent_path() / "zelk.exe")
      .string();
}

int RunToTheEnd(std::string line, const std::string& folder, HANDLE out, HANDLE err) {
  STARTUPINFOA start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  start.hStdOutput = out;
  start.hStdError = err;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessA(ProgramPath().c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                      folder.c_str(), &start, &process)) {
    throw std::runtime_error("cannot start " + ProgramPath());
  }
  DWORD exitCode = 0;
  if (WaitForSingleObject(process.hProcess, kLongestRunMs) != WAIT_OBJECT_0)
    TerminateProcess(process.hProcess, 1);
  WaitForSingleObject(process.hProcess, INFINITE);
  GetExitCodeProcess(process.hProcess, &exitCode);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(exitCode);
}

}  // namespace

ZelkRun Zelk::Run(std::string_view line) const {
  if (terminal || !interruptAt.empty())
    throw std::logic_error("there is neither a terminal nor Ctrl-C for tests on Windows");
  OutputFile out(folder_ / "standard-output");
  OutputFile err(folder_ / "standard-error");
  ZelkRun run;
  run.exitCode =
      RunToTheEnd("zelk " + std::string(line), folder_.Path(), out.Handle(), err.Handle());
  run.out = out.Content();
  run.err = err.Content();
  return run;
}

}  // namespace zelk::test
