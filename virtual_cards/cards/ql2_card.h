// A virtual capture card of the QL2 family: a video decoder, a hardware MPEG encoder behind it, and
// a driver that shows each of its parts as a device of its own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "virtual_cards/cards/virtual_card.h"
#include "virtual_cards/chips/i2c_bus.h"

namespace zelk::virtual_cards {

struct Ql2Options {
  // What the board says of its tuner (low byte of payload word 1 of board property 112). The module
  // that goes with the code is fitted, and on boards of the codes 49, 51 and 53 a separate FM
  // receiver.
  std::uint32_t tunerCode = 11;
  // False: the driver does not know property 112, and the board carries the module of an unknown
  // code.
  bool tunerInfo = true;
  // The format of pin "656": VIDEOINFOHEADER2 instead of VIDEOINFOHEADER.
  bool videoInfo2 = false;
  // Which devices are there to be found in their categories.
  bool captureDevice = true;
  bool tunerDevice = true;
  bool encoderDevice = true;
  bool tvAudio = true;
  // What the application calls the card. The devices' own names stay the ones below.
  std::string friendlyName = "Korvane Telmora Video Capture (QL2)";
};

inline constexpr wchar_t kQl2CaptureName[] = L"Korvane Telmora Video Capture (QL2)";
inline constexpr wchar_t kQl2TunerName[] = L"Korvane Telmora Tuner (QL2)";
inline constexpr wchar_t kQl2EncoderName[] = L"Korvane Telmora Encoder (QL2)";
inline constexpr wchar_t kQl2TvAudioName[] = L"Korvane Telmora TV Audio (QL2)";

struct PictureSize {
  std::int32_t width;
  std::int32_t height;

  friend bool operator==(const PictureSize&, const PictureSize&) = default;
};

class Ql2Card : public VirtualCard {
 public:
  static std::unique_ptr<Ql2Card> Create(const Ql2Options& options, Air air);

  // --- What a person does to the card ---
  // Solders a chip of one's own onto the I2C bus, in place of the one at that address. It must
  // outlive the card's use.
  virtual void FitChip(std::uint8_t address, I2cDevice* chip) = 0;
  // Puts a value into the encoder's firmware without its checks. Property 1 has three words.
  virtual void SetEncoderValue(std::uint32_t property, std::uint32_t value, unsigned word = 0) = 0;

  // --- What can be measured on the card ---
  // 0 for a property or word that the encoder does not have.
  virtual std::uint32_t EncoderValue(std::uint32_t property, unsigned word = 0) const = 0;
  // The size of the picture that pin "656" delivers.
  virtual PictureSize Picture() const = 0;
  // The RF frequency in kHz that the card is tuned to: the picture carrier, or in FM mode the
  // station. 0 while nothing valid was written.
  virtual double TunedKHz() const = 0;
  virtual bool HorizontalLocked() const = 0;
  // The driver's lock flags 0 and 1.
  virtual std::uint32_t Lock(unsigned index) const = 0;
  // The last byte written to board property 111, 0 before the first.
  virtual std::uint32_t BoardOption() const = 0;
  // The last nine bits written to a register of the audio ADC.
  virtual std::uint16_t AdcRegister(unsigned number) const = 0;
};

}  // namespace zelk::virtual_cards
