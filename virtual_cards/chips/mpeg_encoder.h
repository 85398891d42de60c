// A hardware MPEG encoder as its firmware's parameters show it.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace zelk::virtual_cards {

class MpegEncoder {
 public:
  // Parameter numbers of the firmware.
  enum Parameter : std::uint32_t {
    kRate = 1,             // three words: 1 constant or 0 variable, bit/s aimed at, bit/s at most
    kGroupFlag = 2,        // goes with the group length
    kGroupLength = 3,      // pictures in a group
    kAudioBitRate = 5,     // layer II code: 10 to 14 are 192, 224, 256, 320, 384 kbit/s
    kAudioMode = 7,        // 0 stereo, 1 joint stereo, 2 dual channel, 3 mono
    kAudioSampleRate = 8,  // 0 to 2: 44100, 48000, 32000 Hz
    kStreamType = 9,
  };

  MpegEncoder();

  // The words of a parameter, empty for a number without a meaning.
  std::span<const std::uint32_t> Words(std::uint32_t parameter) const;
  // False for values that the firmware refuses; they change nothing.
  bool Write(std::uint32_t parameter, std::span<const std::uint32_t> words);
  // Puts a word into the firmware's memory without its check. Nothing happens for a word that
  // there is not.
  void Poke(std::uint32_t parameter, std::uint32_t value, unsigned index = 0);

 private:
  static constexpr std::size_t kParameters = 7;

  std::array<std::array<std::uint32_t, 3>, kParameters> values_;
};

}  // namespace zelk::virtual_cards
