#include "cli/picture.h"

#include <filesystem>
#include <fstream>

#include "cli/output.h"
#include "cli/progress.h"

namespace zelk::cli {

Picture::Picture(const Kind& kind, std::string file) : kind_(kind), file_(std::move(file)) {
  if (!Wanted()) return;
  std::error_code ignored;
  const bool existed = std::filesystem::exists(file_, ignored);
  if (!std::ofstream(file_, std::ios::app)) throw Failure("cannot write the picture to " + file_);
  created_ = !existed;
}

Picture::~Picture() {
  std::error_code ignored;
  if (created_) std::filesystem::remove(file_, ignored);
}

bool Picture::Measure(const Session& session, std::uint32_t lowKHz, std::uint32_t highKHz,
                      const Interrupt& interrupt, bool showProgress) {
  plot_.lowKHz = lowKHz;
  plot_.highKHz = highKHz;
  Progress progress(showProgress);
  for (std::uint32_t kHz = lowKHz; kHz <= highKHz; kHz += kind_.stepKHz) {
    if (interrupt.Requested()) return false;
    PlotReading reading;
    reading.kHz = kHz;
    if (const auto signal = session.Measure(kind_.band, kHz)) {
      reading.present = signal->present;
      reading.strength = signal->strength;
    }
    plot_.readings.push_back(reading);
    const std::uint64_t done = kHz - lowKHz;
    const auto percent = static_cast<std::uint32_t>(done * 100 / (highKHz - lowKHz + 1));
    progress.Draw(percent, MegahertzText(kHz) + " MHz  measuring for the picture");
  }
  return true;
}

void Picture::Write(const Session& session, std::vector<PlotMark> marks) {
  const std::size_t count = marks.size();
  plot_.title = std::string(kind_.band.name) + ": " + std::to_string(count) + ' ' +
                (count == 1 ? kind_.noun : kind_.plural) + " found";
  if (session.PlaceName()) plot_.notes.push_back(*session.PlaceName());
  plot_.notes.push_back("card " + session.CardDescription() + ", tuner " + session.TunerName());
  plot_.notes.push_back(MegahertzText(plot_.lowKHz) + " to " + MegahertzText(plot_.highKHz) +
                        " MHz, a reading every " + std::to_string(kind_.stepKHz) + " kHz");
  plot_.rowKHz = kind_.rowKHz;
  plot_.stepKHz = kind_.stepKHz;
  plot_.tellsStereo = kind_.tellsStereo;
  plot_.marks = std::move(marks);

  std::ofstream out(file_, std::ios::binary | std::ios::trunc);
  out << PlotSvg(plot_);
  if (!out.flush()) throw Failure("cannot write the picture to " + file_);
  created_ = false;
}

}  // namespace zelk::cli
