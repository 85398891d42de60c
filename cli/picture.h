// The picture of a band that a scan leaves behind: measures the curve and writes the file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/band.h"
#include "cli/interrupt.h"
#include "cli/plot.h"
#include "cli/session.h"

namespace zelk::cli {

class Picture {
 public:
  // What is the same in every picture of a band.
  struct Kind {
    const Band& band;
    std::uint32_t stepKHz;  // from one reading to the next
    std::uint32_t rowKHz;
    const char* noun;  // of what is found
    const char* plural;
    bool tellsStereo;
  };

  // Nothing to do for an empty name. Throws Failure for a file that cannot be written, so that this
  // is known before a long scan; a file that exists keeps its content until Write.
  Picture(const Kind& kind, std::string file);
  // Takes away the empty file of a picture that was never written.
  ~Picture();
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;

  bool Wanted() const { return !file_.empty(); }
  const std::string& File() const { return file_; }

  // Asks the card for its reading, step by step from one end to the other. False after a signal.
  bool Measure(const Session& session, std::uint32_t lowKHz, std::uint32_t highKHz,
               const Interrupt& interrupt, bool showProgress);
  // Throws Failure.
  void Write(const Session& session, std::vector<PlotMark> marks);

 private:
  const Kind& kind_;
  const std::string file_;
  bool created_ = false;
  BandPlot plot_;
};

}  // namespace zelk::cli
