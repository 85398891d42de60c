#include "cli/interrupt.h"

#include <csignal>

namespace zelk::cli {
namespace {

volatile std::sig_atomic_t interruptRequested = 0;

extern "C" void NoteInterrupt(int signalNumber) {
  interruptRequested = 1;
  std::signal(signalNumber, SIG_DFL);
}

}  // namespace

Interrupt::Interrupt() : previous_(std::signal(SIGINT, NoteInterrupt)) { interruptRequested = 0; }

Interrupt::~Interrupt() { std::signal(SIGINT, previous_ == SIG_ERR ? SIG_DFL : previous_); }

bool Interrupt::Requested() const { return interruptRequested != 0; }

}  // namespace zelk::cli
