#include "cli/interrupt.h"

#include <csignal>

namespace zelk::cli {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM,
#ifdef SIGHUP  // not on every system does a terminal hang up
                            SIGHUP
#endif
};

volatile std::sig_atomic_t noted = 0;

extern "C" void Note(int number) {
  if (noted == 0) noted = number;
  // Who presses Ctrl-C twice has lost patience. The others come in twos by themselves: to the
  // program and to its group, from the terminal and from the shell.
  std::signal(number, number == SIGINT ? SIG_DFL : Note);
}

// Those that the program was started to ignore stay ignored: nohup and background jobs rely on it.
void Handle(void (*handler)(int)) {
  for (const int number : kSignals) {
    if (std::signal(number, SIG_IGN) != SIG_IGN) std::signal(number, handler);
  }
}

}  // namespace

Interrupt::Interrupt() {
  noted = 0;
  Handle(Note);
}

Interrupt::~Interrupt() {
  // A run that was asked to end has its last lines still to write.
  if (!Requested()) Handle(SIG_DFL);
}

bool Interrupt::Requested() const { return noted != 0; }

int Interrupt::ExitCode() const { return noted == 0 ? 0 : 128 + noted; }

}  // namespace zelk::cli
