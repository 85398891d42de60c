// A test with a virtual card in it: virtual clock, a working folder of its own for the log files,
// and the certainty that nothing of the card is held when the test ends.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ZElkAPI.h"
#include "backends/saa713x/saa713x_device.h"
#include "tests/support/temp_folder.h"
#include "virtual_cards/cards/saa713x_card.h"

namespace zelk::test {

// What nearly all tests compare with.
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;

using Lines = std::vector<std::string>;
Lines Joined(std::initializer_list<Lines> parts);

// A record of 32-bit words, comparable and printable.
template <class Record>
auto Words(const Record& record) {
  return std::bit_cast<std::array<std::uint32_t, sizeof(Record) / 4>>(record);
}

// What a driver answers that refuses, as no part of the library does of its own.
inline constexpr HRESULT kRefused = static_cast<HRESULT>(0x8007001F);

using EepromImage = std::array<std::uint8_t, 256>;
// Blank but for these bytes.
EepromImage MakeEeprom(std::initializer_list<std::pair<int, std::uint8_t>> bytes);

// One picture carrier of 70 dBuV at each frequency.
virtual_cards::Air MakeAir(const std::vector<double>& pictureKHz,
                           std::uint32_t standard = AnalogVideo_PAL_B);

// Makes a folder and works in it while the object lives.
class WorkingFolder {
 public:
  WorkingFolder();
  ~WorkingFolder();

 private:
  zelk::testing::TempFolder folder_;
  std::filesystem::path before_;
};

// What tests with a card of any family share.
class CardFixture : public ::testing::Test {
 protected:
  CardFixture();
  ~CardFixture() override;

  // Frees and pulls out the card; it is a failure when something of it is still held.
  void Unplug();
  // ZELK_HWInit with the plugged card's filters and name.
  HRESULT Init(std::uint32_t russiaFlag = 0);

  // What the card says of itself.
  static ZELK_HWInfo Info();
  static std::uint32_t TunerType();

  // The trace lines since the last call, or what follows in those that begin so. Tracing begins
  // with the first call.
  Lines TakeTrace(const std::string& beginning = "");
  // The bytes of the I2C writes to a device: "0D 62 CE 90".
  Lines TakeWrites(const std::string& device) { return TakeTrace("i2c write " + device + ": "); }

  // The records of a log file, which is emptied.
  Lines TakeLog(const std::string& name);

  std::unique_ptr<virtual_cards::VirtualCard> plugged;

 private:
  WorkingFolder folder_;
  virtual_cards::RecordedTrace trace_;
};

// `Card` is the interface of the family's virtual cards, `Options` what one is made from.
template <class Card, class Options>
class CardTestOf : public CardFixture {
 protected:
  // Plugs a card in, in place of the one that was there.
  Card& Plug(const Options& options, virtual_cards::Air air = {}) {
    Unplug();
    auto made = Card::Create(options, std::move(air));
    card = made.get();
    plugged = std::move(made);
    return *card;
  }

  Card* card = nullptr;
};

// A test with an SAA713x card.
class CardTest : public CardTestOf<virtual_cards::Saa713xCard, virtual_cards::Saa713xOptions> {
 protected:
  virtual_cards::Saa713xCard& PlugTuner(std::uint32_t tunerType, virtual_cards::Air air = {});
  // Plugs and initialises a card, and forgets what that wrote.
  void PlugReady(const virtual_cards::Saa713xOptions& options = {});
  // Plugs, initialises and switches to TV.
  virtual_cards::Saa713xCard& PlugTv(std::uint32_t tunerType, virtual_cards::Air air = {});

  Lines TakeLog(const std::string& name = "zelkapi_713x.log") { return CardFixture::TakeLog(name); }
};

// A scan's events as text: "1003 175250".
extern std::vector<std::string> scanEvents;
// The third argument is shown when it is not 0.
void ZELK_CALL RecordScanEvent(uint32_t event, uint32_t value, uint32_t extra);
// The same, and then what the test wants done at an event. Nothing, when a test begins.
extern std::function<void(std::uint32_t event, std::uint32_t value)> atScanEvent;
void ZELK_CALL ActOnScanEvent(uint32_t event, uint32_t value, uint32_t extra);
// Runs a whole TV scan and answers the frequencies that it reports.
std::vector<std::uint32_t> ScanTv();

}  // namespace zelk::test
