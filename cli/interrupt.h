// A signal as a wish, not a blow: while an Interrupt lives, Ctrl-C, SIGTERM and SIGHUP are only
// noted, so that the run can come to an orderly end. The second Ctrl-C ends the program as usual.
// One at a time.
#pragma once

namespace zelk::cli {

class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  bool Requested() const;
  // As shells answer for a program that the signal killed: 130 for Ctrl-C. 0 when none was noted.
  int ExitCode() const;
};

}  // namespace zelk::cli
