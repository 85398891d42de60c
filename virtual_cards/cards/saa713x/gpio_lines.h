// The SAA713x's 28 GPIO lines and what a board connects to them.
#pragma once

#include <cstdint>

namespace zelk::virtual_cards {

class GpioLines {
 public:
  static constexpr unsigned kCount = 28;
  static constexpr unsigned kTvFmSwitch = 27;  // high: TV tuner, low: FM receiver
  static constexpr unsigned kRemoteAcknowledge = 2;
  static constexpr unsigned kRemoteFirst = 3;  // eight lines from the remote-control receiver

  // `remoteOnLines`: the board's remote-control receiver sits on the lines and waits for its keys
  // to be acknowledged.
  explicit GpioLines(bool remoteOnLines) : remoteOnLines_(remoteOnLines) {}

  // `line` is below kCount in all of these.
  void Set(unsigned line, bool high);
  bool Read(unsigned line) const;
  bool Output(unsigned line) const { return (outputs_ >> line & 1) != 0; }
  // The level that the board puts on a line that the chip does not drive.
  void Drive(unsigned line, bool high);
  // Shows a key on the remote-control lines: the kind in the first two, least significant bit
  // first, one line low, then five bits of the code, most significant first, as they come in from
  // the air.
  void ShowKey(std::uint8_t kind, std::uint8_t code);

 private:
  // A pull-up holds the TV/FM switch at TV until somebody drives it.
  std::uint32_t outputs_ = 1U << kTvFmSwitch;
  std::uint32_t driven_ = 1U << kTvFmSwitch;  // lines that the chip drives
  std::uint32_t inputs_ = 0;
  bool remoteOnLines_;
};

}  // namespace zelk::virtual_cards
