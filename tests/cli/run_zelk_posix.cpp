#include "run_zelk.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace zelk::test {
namespace {

struct Channel {
  int reading = -1;
  int writing = -1;
};

Channel OpenPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe2 failed");
  return {ends[0], ends[1]};
}

Channel OpenTerminal() {
  const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0)
    throw std::runtime_error("no pseudo-terminal");
  const int slave = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (slave < 0) throw std::runtime_error("cannot open the pseudo-terminal");
  return {master, slave};
}

std::vector<std::string> Words(std::string_view line) {
  std::istringstream in{std::string(line)};
  std::vector<std::string> words;
  for (std::string word; in >> std::quoted(word);) words.push_back(word);
  return words;
}

// Takes what has arrived. False at the end, which a terminal reports as an error.
bool Take(int file, std::string& text) {
  std::array<char, 65536> buffer;
  const ssize_t count = read(file, buffer.data(), buffer.size());
  if (count <= 0) return false;
  text.append(buffer.data(), static_cast<std::size_t>(count));
  return true;
}

pid_t Start(const std::string& folder, std::vector<std::string> words, int out, int err) {
  words.insert(words.begin(), ZELK_PROGRAM);
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child != 0) return child;
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  if (chdir(folder.c_str()) == 0) execv(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

ZelkRun Zelk::Run(std::string_view line) const {
  const Channel out = OpenPipe();
  const Channel err = terminal ? OpenTerminal() : OpenPipe();
  // The program inherits what this one does with the signal, which itself may run under nohup.
  const auto before = signal(signalNumber, ignoresSignal ? SIG_IGN : SIG_DFL);
  const pid_t child = Start(folder_.Path(), Words(line), out.writing, err.writing);
  signal(signalNumber, before);
  if (child < 0) throw std::runtime_error("fork failed");
  close(out.writing);
  close(err.writing);

  ZelkRun run;
  bool interrupted = interruptAt.empty();
  std::array<pollfd, 2> files{{{out.reading, POLLIN, 0}, {err.reading, POLLIN, 0}}};
  while (files[0].fd >= 0 || files[1].fd >= 0) {
    // A hung program must not hang the tests.
    if (poll(files.data(), files.size(), 30'000) <= 0) {
      kill(child, SIGKILL);
      break;
    }
    if (files[0].revents != 0 && !Take(out.reading, run.out)) files[0].fd = -1;
    if (files[1].revents != 0 && !Take(err.reading, run.err)) files[1].fd = -1;
    if (!interrupted && run.err.find(interruptAt) != std::string::npos) {
      kill(child, signalNumber);
      interrupted = signalNumber == SIGINT;
    }
  }
  close(out.reading);
  close(err.reading);
  int status = 0;
  waitpid(child, &status, 0);
  run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return run;
}

}  // namespace zelk::test
