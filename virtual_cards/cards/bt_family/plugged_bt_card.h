// A plugged-in Bt878 or CX2388x card in either set-up: with the filters of its drivers, or reached
// through its I/O library.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "virtual_cards/cards/bt_family/io_access.h"
#include "virtual_cards/cards/bt_family/tuner_filter.h"
#include "virtual_cards/cards/plugged_card.h"
#include "virtual_cards/cards/registration.h"

namespace zelk::virtual_cards {

// An I/O library on the machine, at work on a board. `Library` has a kFileName and EntryPoints().
template <class Library, class Hardware>
class PluggedIoLibrary {
 public:
  PluggedIoLibrary(Hardware& hardware, const IoFaults& faults,
                   const std::vector<std::string>& missing)
      : library_(hardware, faults), module_(Library::kFileName, Without(missing)) {
    IoEntryPoints<Library>::plugged = &library_;
  }
  ~PluggedIoLibrary() { IoEntryPoints<Library>::plugged = nullptr; }
  PluggedIoLibrary(const PluggedIoLibrary&) = delete;
  PluggedIoLibrary& operator=(const PluggedIoLibrary&) = delete;

 private:
  static std::vector<ModuleEntryPoint> Without(const std::vector<std::string>& missing) {
    std::vector<ModuleEntryPoint> entries = Library::EntryPoints();
    std::erase_if(entries, [&](const ModuleEntryPoint& entry) {
      return std::find(missing.begin(), missing.end(), entry.name) != missing.end();
    });
    return entries;
  }

  Library library_;
  ModuleRegistration module_;
};

// `Card` is the family's card, `Hardware` its board and `Library` its I/O library.
template <class Card, class Options, class Hardware, class Library>
class PluggedBtCard : public PluggedCard<Card, Hardware> {
 public:
  using MakeFilter = ComPtr<IUnknown> (*)(const std::shared_ptr<Hardware>& hardware);

  PluggedBtCard(const Options& options, std::shared_ptr<Hardware> hardware,
                MakeFilter makeCaptureFilter)
      : PluggedCard<Card, Hardware>(
            options.ioLibrary ? std::string() : options.friendlyName, hardware,
            options.ioLibrary ? ComPtr<IUnknown>() : makeCaptureFilter(hardware),
            options.ioLibrary || !options.tunerFilter ? ComPtr<IUnknown>()
                                                      : MakeBtTunerFilter(hardware)) {
    if (options.ioLibrary) {
      library_ = std::make_unique<PluggedIoLibrary<Library, Hardware>>(
          *hardware, IoFaults{options.initFails, options.i2cFails}, options.missingEntryPoints);
    } else {
      hardware->Driver().Start();
    }
    this->RegisterFilters();
    this->CountOwnReferences();
  }

  void PressKey(std::uint8_t code) override { this->hardware_->ShowKey(code); }
  void ReleaseKey() override { this->hardware_->ShowNoKey(); }
  void FitChip(std::uint8_t address, I2cDevice* chip) override {
    this->hardware_->FitChip(address, chip);
  }
  double TunedKHz() const override { return this->hardware_->TunedKHz(); }
  bool HorizontalLocked() const override { return this->hardware_->HorizontalLocked(); }
  bool Lock(unsigned kind) const override { return this->hardware_->Lock(kind); }

 private:
  std::unique_ptr<PluggedIoLibrary<Library, Hardware>> library_;
};

// The board that a card's options describe. `image` is what the maker would have programmed.
template <class Options>
BtBoard DescribeBoard(const Options& options, const Eeprom::Image& image, ModuleMake make,
                      std::uint8_t pllAddress) {
  BtBoard board{options.tunerType,   make,
                pllAddress,          options.eeprom.value_or(image),
                options.eepromState, options.eepromTransfers};
  if (board.eepromState == EepromState::kBlank) board.eeprom.fill(Eeprom::kErased);
  return board;
}

}  // namespace zelk::virtual_cards
