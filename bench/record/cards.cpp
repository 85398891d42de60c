#include "bench/record/cards.h"

#include <algorithm>
#include <set>
#include <utility>

#include "bench/record/recorder.h"
#include "platform/dshow.h"
#include "virtual_cards/cards/bt878_card.h"
#include "virtual_cards/cards/cx2388x_card.h"
#include "virtual_cards/cards/ql2_card.h"
#include "virtual_cards/cards/saa713x_card.h"

namespace zelk::record {

using namespace virtual_cards;

namespace {

std::unique_ptr<VirtualCard> card;
Air air;

template <class Card, class Options>
using Factory = std::unique_ptr<Card> (*)(const Options&, Air);

template <class Card, class Options>
SetUp Made(std::string name, Factory<Card, Options> create, const Options& options) {
  return {std::move(name), [=](Air air) { return create(options, std::move(air)); }};
}

using Eeprom = std::array<std::uint8_t, 256>;

Eeprom EepromWith(std::initializer_list<std::pair<int, int>> bytes) {
  Eeprom image;
  image.fill(0xFF);
  for (const auto& [address, byte] : bytes)
    image[static_cast<std::size_t>(address)] = static_cast<std::uint8_t>(byte);
  return image;
}

// I/O libraries that are out of order. Bt878 and CX2388x boards have options of the same names.
template <class Card, class Options>
void AddFaultyLibraries(std::vector<SetUp>& setUps, const std::string& kind,
                        Factory<Card, Options> create,
                        const std::vector<std::string>& entryPoints) {
  const auto add = [&](const std::string& what, bool initFails, bool i2cFails,
                       const std::vector<std::string>& missing) {
    Options options;
    options.ioLibrary = true;
    options.initFails = initFails;
    options.i2cFails = i2cFails;
    options.missingEntryPoints = missing;
    setUps.push_back(Made(kind + ' ' + what, create, options));
  };
  add("init fails", true, false, {});
  add("i2c fails", false, true, {});
  add("init and i2c fail", true, true, {});
  add("without any entry point", false, false, entryPoints);
  for (const std::string& entryPoint : entryPoints) {
    add("without " + entryPoint, false, false, {entryPoint});
    add("init fails, without " + entryPoint, true, false, {entryPoint});
  }
}

std::vector<unsigned> Range(unsigned first, unsigned last) {
  std::vector<unsigned> numbers;
  for (unsigned number = first; number <= last; ++number) numbers.push_back(number);
  return numbers;
}

}  // namespace

SetUp Described(const std::string& description) {
  return {description, [=](Air air) { return CreateCard(description, std::move(air)); }};
}

std::vector<SetUp> EverySetUp() {
  std::vector<SetUp> setUps;
  const auto describe = [&](const std::string& start, const std::vector<unsigned>& numbers,
                            const std::string& end = "") {
    for (const unsigned number : numbers)
      setUps.push_back(Described(start + std::to_string(number) + end));
  };
  const auto join = [](std::initializer_list<std::vector<unsigned>> parts) {
    std::vector<unsigned> all;
    for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  };
  describe("saa7134,tuner=", join({Range(0, 21), Range(24, 38), Range(40, 48)}));
  describe("saa7134,tunerfilter=0,tuner=", {1, 15, 36, 40, 41, 46, 47});
  describe("saa7134,board=", {0xE1, 0xE3, 0xE9, 0xEE, 0xE0, 0xE2, 0xE8, 0x40, 0x42, 0x1D, 0x1E});
  for (const char* other :
       {"saa7130", "saa7133", "saa7133,tuner=41", "saa7135", "saa7134,eeprom=none",
        "saa7134,remote=gpio,key=1:52", "saa7134,key=3:52"}) {
    setUps.push_back(Described(other));
  }
  const auto bt878Types = join({{0, 1}, Range(4, 15), {20, 21, 40}, Range(42, 45)});
  const auto cx2388xTypes = join({Range(0, 17), {20, 21}, Range(24, 30)});
  for (const char* end : {",tunerfilter=1", ",tunerfilter=0"}) {
    describe("bt878,tuner=", bt878Types, end);
    describe("cx2388x,tuner=", cx2388xTypes, end);
  }
  describe("bt878-io,tuner=", bt878Types);
  describe("cx2388x-io,tuner=", cx2388xTypes);
  for (const char* kind : {"bt878", "bt878-io", "cx2388x", "cx2388x-io"}) {
    for (const char* option : {",key=50", ",eeprom=none", ",eeprom=blank", ",eeprom=dying"}) {
      setUps.push_back(Described(kind + std::string(option)));
    }
  }
  AddFaultyLibraries(
      setUps, "bt878-io", Bt878Card::Create,
      {"INIT_IO", "FREE_IO", "I2CISINITOK", "I2CINITSWMODE", "I2CSWSTART", "I2CSWWRITE",
       "I2CSWREAD", "I2CSWSTOP", "READDECODER", "SETGPIEBIT", "GETGPDATABITS"});
  AddFaultyLibraries(setUps, "cx2388x-io", Cx2388xCard::Create,
                     {"InitIO", "FreeIO", "I2CIsInitOK", "I2CInitSWMode", "I2CSWStart",
                      "I2CSWWrite", "I2CSWRead", "I2CSWStop", "ReadDecoder", "SetGPIEBit",
                      "GetGPDataBits", "SetGPIOPort", "GetGPData", "SetGPData"});
  describe("ql2,tuner=", {10, 11, 16, 17, 24, 25, 26, 48, 49, 50, 51, 52, 53, 60});
  setUps.push_back(Described("ql2,tunerinfo=0"));
  setUps.push_back(Described("ql2,pin=videoinfo2"));
  setUps.push_back(Made("ql2 without capture", Ql2Card::Create, {.captureDevice = false}));
  setUps.push_back(Made("ql2 without tuner", Ql2Card::Create, {.tunerDevice = false}));
  setUps.push_back(Made("ql2 without encoder", Ql2Card::Create, {.encoderDevice = false}));
  setUps.push_back(Made("ql2 without TV audio", Ql2Card::Create, {.tvAudio = false}));
  return setUps;
}

std::vector<SetUp> FewSetUps() {
  std::vector<SetUp> setUps;
  for (const char* description :
       {"saa7134,board=0xE3", "saa7134,tuner=47", "saa7134,tuner=19", "saa7134,tuner=1",
        "saa7134,tuner=15", "saa7133,tuner=40", "saa7133,tuner=41", "bt878,tuner=40",
        "bt878,tuner=1", "bt878,tuner=15,tunerfilter=0", "bt878-io,tuner=1", "cx2388x,tuner=1",
        "cx2388x,tuner=15,tunerfilter=1", "cx2388x-io,tuner=1", "ql2,tuner=11", "ql2,tuner=49"}) {
    setUps.push_back(Described(description));
  }
  setUps.push_back({"saa713x that finds SECAM D", [](Air around) {
                      auto made = Saa713xCard::Create({.tunerType = 41}, std::move(around));
                      made->SetDetectedStandard(AnalogVideo_SECAM_D);
                      return made;
                    }});
  return setUps;
}

std::vector<SetUp> EveryBoard() {
  std::vector<SetUp> boards;
  for (int i = 0; i < 256; ++i) {
    const auto word = static_cast<std::uint32_t>(i);
    const auto add = [&](const std::string& what, auto create, const auto& options) {
      boards.push_back(Made(what + " = " + Hex(word), create, options));
    };
    const auto eeprom = [](int at) { return "eeprom " + Hex(static_cast<std::uint32_t>(at)); };
    add("saa713x board", Saa713xCard::Create, Saa713xOptions{.boardConfig = word});
    add("saa713x option", Saa713xCard::Create, Saa713xOptions{.boardConfig = word << 8 | 1});
    add("ql2 tuner", Ql2Card::Create, Ql2Options{.tunerCode = word});
    for (const int at : {0x20, 0x21, 0x22}) {
      add("saa713x " + eeprom(at), Saa713xCard::Create,
          Saa713xOptions{.tunerType = 5, .eeprom = EepromWith({{at, i}})});
    }
    for (const int at : {0x41, 0x42, 0xFD}) {
      // The installer wrote down what a missing EEPROM would have held.
      const auto image = EepromWith({{0x41, 0x60}, {0x42, 0}, {0xFD, 1}, {at, i}});
      add("bt878 " + eeprom(at), Bt878Card::Create, Bt878Options{.eeprom = image});
      add("bt878-io " + eeprom(at), Bt878Card::Create,
          Bt878Options{.ioLibrary = true, .eeprom = image, .eepromState = EepromState::kMissing});
    }
    for (const int at : {0x06, 0x42}) {
      add("cx2388x " + eeprom(at), Cx2388xCard::Create,
          Cx2388xOptions{.eeprom = EepromWith({{0x06, 1}, {0x42, 0}, {at, i}})});
    }
  }
  return boards;
}

Country HomeOfTuner() {
  static const std::set<std::uint32_t> kAmerican = {4,  5,  12, 13, 24, 29, 30,
                                                    31, 32, 35, 42, 44, 46};
  static const std::set<std::uint32_t> kJapanese = {10, 11, 16, 17, 36, 37, 48, 50};
  static const std::set<std::uint32_t> kEastern = {18, 19, 41, 45};
  std::uint32_t type = 0;
  ZELK_GetTunerType(&type);
  if (kAmerican.contains(type)) return {AnalogVideo_NTSC_M, 1};
  if (kJapanese.contains(type)) return {AnalogVideo_NTSC_M_J, 81};
  if (kEastern.contains(type)) return {AnalogVideo_PAL_D, 86};
  return {AnalogVideo_PAL_B, 49};
}

namespace {

// What is on the air for the live card: carriers from the first probe of its band on, on the raster
// and beside it, and stations so close together and so far apart that every strategy has something
// to find.
Air AirOfTuner() {
  ZELK_HWInfo info = {};
  ZELK_GetHWInfo(&info);
  Air heard;
  const std::uint32_t standard = HomeOfTuner().standard;
  const double low = info.TvLowKHz;
  const double high = std::max(low, double(info.TvHighKHz));
  for (const double carrier :
       {low, low + 7062.5, low + 128000, low + 135020, low + 420000, high - 8000}) {
    heard.tv.push_back({"", "", carrier, carrier > low + 400000 ? 45.0 : 70.0, standard});
  }
  const double fmLow = info.FmLowKHz ? info.FmLowKHz : 87500;
  for (const double offset :
       {100, 700, 1110, 1790, 3000, 5015, 10500, 10650, 10900, 14300, 20400}) {
    const double level = offset == 1790 ? 30 : offset > 10000 ? 55 : 75;
    heard.fm.push_back({"", fmLow + offset, level, offset < 5000});
  }
  return heard;
}

}  // namespace

Air& AirOfCard() { return air; }
VirtualCard* Plugged() { return card.get(); }

void Plug(const SetUp& setUp) {
  // Its bands are known when the card has been asked.
  card.reset();
  card = setUp.make({});
  std::ostream nowhere(nullptr);
  Recorder silent(nowhere);
  Recorder* const listening = std::exchange(recorder, &silent);
  InitCard();
  air = AirOfTuner();
  ZELK_CALLED(ZELK_Free);
  recorder = listening;
  Exchange(setUp);
}

void Exchange(const SetUp& setUp) {
  card.reset();
  card = setUp.make(air);
  card->AttachTrace(recorder);
}

void Unplug() { card.reset(); }

void InitCard(std::uint32_t russiaFlag) {
  const auto capture = card->CaptureFilter();
  const auto tuner = card->TunerFilter();
  ZELK_CALLED(ZELK_HWInit, capture.Get(), capture ? card->FriendlyName().c_str() : nullptr,
              tuner.Get(), russiaFlag);
}

void FreeCard() {
  ZELK_CALLED(ZELK_Free);
  if (card) recorder->Note("held: " + std::to_string(card->LiveReferences()));
}

}  // namespace zelk::record
