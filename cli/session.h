// One card and the library's hold on it, from the choice of the clock to ZELK_Free.
#pragma once

#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "ZElkAPI.h"
#include "cli/band.h"
#include "cli/errors.h"
#include "cli/options.h"
#include "platform/com_ptr.h"
#include "virtual_cards/bus_trace.h"
#include "virtual_cards/cards/virtual_card.h"

namespace zelk::cli {

// What can be known about the signal at the tuned frequency. A tuner that does not measure a figure
// leaves it empty.
struct Signal {
  bool present = false;
  std::optional<std::uint32_t> strength;
  std::optional<double> afcOffsetKHz;
  std::optional<bool> decoderLock;
};

// The virtual card that --plug asks for, plugged in, and the clock that goes with it; nothing
// without the option. Throws UsageError for a card that does not exist.
std::unique_ptr<virtual_cards::VirtualCard> PlugInBesideTheSystem(const Options& options,
                                                                  virtual_cards::Air air);

class Session {
 public:
  // Plugs in or finds the card and initialises the library with it. Throws UsageError for a card or
  // raster that does not exist, Failure (or std::runtime_error from a data file) for one that
  // cannot be used.
  explicit Session(const Options& options);

  // Switches the card to TV with the standard and country chosen. Commands that look at the board
  // alone do without, so that they still work on a card whose tuner does not answer.
  void StartTv();
  // Switches the card to FM radio. A board that denies having an FM tuner is tried all the same,
  // with a warning on standard error: on some the word that says so is wrong.
  void StartFm();

  const virtual_cards::Raster& Raster() const { return raster_; }
  const std::string& CardDescription() const { return cardDescription_; }
  // Where a virtual card is; nothing for a real one, which is where it is.
  const std::optional<std::string>& PlaceName() const { return placeName_; }
  // The capture filter's; nothing for a card that an I/O library reaches without filters.
  const std::optional<std::string>& FriendlyName() const { return friendlyName_; }
  std::uint32_t VideoStandard() const { return standard_; }
  std::uint32_t CountryCode() const { return country_; }

  ZELK_HWInfo HWInfo() const;
  std::uint32_t TunerType() const;
  std::string TunerName() const;

  // Refuses a frequency outside the card's band. The library itself would try any.
  void RequireInBand(const Band& band, std::uint32_t frequencyKHz) const;
  void Tune(const Band& band, std::uint32_t frequencyKHz) const;
  Signal ReadSignal(const Band& band) const;
  // Both at once, and empty where the card refuses either: one point of many, which may be missing.
  std::optional<Signal> Measure(const Band& band, std::uint32_t frequencyKHz) const;

  // The name of the channel at that carrier, empty when the raster has none there.
  std::optional<std::string> ChannelName(std::uint32_t carrierKHz) const;

  // "; see zelkapi_713x.log" when the library has had something to say, else empty.
  std::string LogHint() const { return logs_.Hint(); }

  // Throws Failure with "cannot `action`", the code and the log that holds the reason.
  void Check(HRESULT code, const std::string& action) const;

 private:
  // Last among the members, so that the library lets go of the card before the filters are released
  // and the card is unplugged.
  struct LibraryHold {
    ~LibraryHold() { ZELK_Free(); }
  };

  // The card's filters and their name, from the virtual card or from the system's devices.
  void TakeFilters(const Options& options);
  void FindFilters(const Options& options);
  HRESULT AskSignal(const Band& band, Signal& signal) const;

  std::string cardDescription_;
  std::optional<std::string> placeName_;
  std::optional<std::string> friendlyName_;
  virtual_cards::Raster raster_;
  std::uint32_t standard_ = 0;
  std::uint32_t country_ = 0;
  LogWatch logs_;
  virtual_cards::StreamTrace trace_{std::cerr};
  std::unique_ptr<virtual_cards::VirtualCard> card_;
  ComPtr<IUnknown> capture_;
  ComPtr<IUnknown> tuner_;
  LibraryHold libraryHold_;
};

}  // namespace zelk::cli
