// Ctrl-C as a wish, not a blow: while an Interrupt lives, the first one is only noted, so that the
// run can come to an orderly end. The second ends the program as usual.
#pragma once

namespace zelk::cli {

class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  bool Requested() const;

 private:
  void (*previous_)(int);
};

}  // namespace zelk::cli
