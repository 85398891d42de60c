// What the single commands print.
#include <gmock/gmock.h>

#include <algorithm>
#include "run_zelk.h"

namespace zelk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

// A command, and of its JSON object what no page shows.
constexpr std::pair<const char*, const char*> kObjects[] = {
    {"cards", R"({"command": "cards"})"},
    {"info --card virtual:saa7130,board=0xD01",
     R"-({"command": "info", "card": "virtual:saa7130,board=0xD01", "decoder_chip": "SAA7130",
          "friendly_name": "Korvane, Telmora WDM Video Capture (7130)",
          "tuner": {"type": 1, "name": "FM1216MK2"},
          "hw_info": {"fm_tuner": 1, "board_option_code": 6, "board_option_bit": 1,
                      "fm_low_khz": 87500, "fm_high_khz": 108000, "board_flag_5": 1,
                      "board_code_6": 0, "tv_low_khz": 48250, "tv_high_khz": 855250,
                      "board_code_9": 0}})-"},
    {"info --card virtual:saa7135", R"({"decoder_chip": "SAA7133/7135"})"},
    {"info --card virtual:bt878-io", R"({"friendly_name": null, "decoder_chip": null, "hw_info":
        {"board_flag_5": 0, "board_code_6": 255, "board_code_9": 0}})"},
    {"tune tv K27", R"({"channel": "K27", "present": true, "strength": 3, "decoder_lock": true})"},
    {"tune tv 180.1MHz", R"({"channel": null, "present": false, "decoder_lock": false})"},
    // The driver's offset is signed; the library hands its bits on as an unsigned figure.
    {"tune tv 175.35MHz --card virtual:ql2", R"({"afc_offset_khz": -112})"},
    {"signal", R"({"command": "signal", "frequency_khz": null, "channel": null})"},
    {"signal K27 --count 2 --interval 5000",
     R"({"frequency_khz": 519250, "channel": "K27", "interrupted": false, "readings": [
        {"time_ms": 80, "present": true, "strength": 3, "afc_offset_khz": 62.5},
        {"time_ms": 5160, "present": true, "strength": 3, "decoder_lock": true}]})"},
    {"scan tv --stop-at 50MHz --standard PAL_G --country 43 --raster pal-i",
     R"({"command": "scan", "raster": "pal-i", "standard": "PAL_G", "country": 43})"},
    {"tune fm 90.8MHz", R"({"command": "tune fm", "frequency_khz": 90800, "present": true,
        "strength": 5, "afc_offset_khz": 0.0})"},
    {"fm mode mono 90.8MHz", R"({"command": "fm mode", "frequency_khz": 90800, "mode": "mono"})"},
    {"seek down 95MHz", R"({"command": "seek", "direction": "down", "from_khz": 95000,
        "found": true, "interrupted": false, "frequency_khz": 94200, "stereo": false})"},
    {"seek up 107.9MHz", R"({"found": false, "frequency_khz": null, "stereo": null})"},
    {"audio get", R"({"command": "audio get"})"},
    {"audio set volume=40 bass=5",
     R"({"command": "audio set", "values": {"volume": null, "bass": 5}})"},
    {"mpeg get --card virtual:ql2", R"({"command": "mpeg get", "values": {"width": 720}})"},
    {"mpeg set width=352 option9=1 --card virtual:ql2",
     R"({"command": "mpeg set", "values": {"width": 352, "height": 576}})"},
    {"adc --card virtual:ql2", R"({"command": "adc", "card": "virtual:ql2"})"},
    {"eeprom --offset 0x3F --length 3 --card virtual:bt878",
     R"({"command": "eeprom", "offset": 63, "bytes": [null, null, 10]})"},
    {"i2c read 0xC3 1", R"({"command": "i2c read", "address": 195, "bytes": [132]})"},
    {"i2c read 0x87 2 --card virtual:ql2", R"({"bytes": [15, 15]})"},
    {"i2c write 0xC2 13 98 206 144",
     R"({"command": "i2c write", "address": 194, "bytes": [13, 98, 206, 144]})"},
    {"i2c write 0x34 2 0X1F --card virtual:ql2", R"({"address": 52, "bytes": [2, 31]})"},
    {"remote --card virtual:saa7134,key=2:1",
     R"({"command": "remote", "source": "board", "key_code": 130})"},
    {"remote --chip --card virtual:saa7134,key=2:1", R"({"source": "chip", "key_code": 49})"},
    {"lock 1 on", R"({"command": "lock", "lock": 1, "on": true})"},
    {"lock 0", R"({"lock": 0, "on": false})"},
};

TEST(Output, OfEveryCommandIsOneJsonObjectWhenAskedFor) {
  for (const auto& [line, members] : kObjects) {
    SCOPED_TRACE(line);
    const ZelkRun run = Zelk().Run(std::string(line) + " --json");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const nlohmann::json expected = nlohmann::json::parse(members).flatten();
    const nlohmann::json object = run.Json().flatten();
    for (const auto& [key, value] : expected.items()) EXPECT_EQ(object.at(key), value) << key;
  }
}

// A command, and what it prints that no page shows.
constexpr std::pair<const char*, const char*> kTexts[] = {
    {"tune tv E6", "182.250 MHz (E6 of pal-bg): no signal, strength 0, AFC +125.0 kHz, decoder"},
    {"tune tv 2 --air us-city --card virtual:saa7134,tuner=46",
     "55.250 MHz (2 of ntsc-m-air): signal, strength 5, AFC - kHz, decoder lock yes\n"},
    {"tune tv 175.45MHz", "175.450 MHz (E5 of pal-bg): no signal, "},
    {"tune fm 90.3MHz", "90.300 MHz: no signal, "},
    // These tuners answer with their level figure, or 1, instead of a result code.
    {"tune fm 95.3MHz --card virtual:saa7134,tuner=40", "95.300 MHz: signal, strength 95, "},
    {"tune fm 95.3MHz --card virtual:saa7134,tuner=41", "95.300 MHz: signal, strength 95, "},
    {"signal 180.1MHz", "180.100 MHz\n80 ms: no signal, strength 0, AFC +125.0 kHz, "},
    {"scan tv --stop-at 350MHz", "; 1 min "},
    {"scan tv --stop-at 60MHz", "1 channel, 1 on raster pal-bg; "},
    {"scan fm --to 88.2MHz", "1 station, 0 in stereo; "},
    {"info --card virtual:bt878-io", "virtual:bt878-io\nDecoder chip          -\n"},
    {"eeprom --offset 0x40 --length 3 --card virtual:bt878", "40  -- 0a 00   "},
    {"remote", "Key code 0x00 (no key)\n"},
    {"remote --chip --card virtual:saa7134,key=2:1", "Key code 0x31\n"},
    {"lock 0", "Lock 0: off\n"},
    {"cards --plug bt878,eeprom=none", "\nTelmora Capture   capture  does not accept it\n"},
    {"--version", "zelk "},
};

TEST(Output, OfEveryCommandIsText) {
  for (const auto& [line, text] : kTexts) {
    const ZelkRun run = Zelk().Run(line);
    EXPECT_EQ(run.exitCode, 0) << line;
    EXPECT_THAT(run.out, HasSubstr(text)) << line;
  }
}

TEST(Output, OfTuningIsThatOfTheCarrierHoweverItIsWritten) {
  const Zelk zelk;
  // Options of all commands may stand on either side of the command.
  const nlohmann::json byName = zelk.Run("--json tune tv e5").Json();
  EXPECT_EQ(byName.at("frequency_khz"), 175250);
  for (const char* text : {"175250", "175250kHz", "175.25MHz", "\"175.25 mhz\""})
    EXPECT_EQ(zelk.Run(std::string("tune tv --json ") + text).Json(), byName) << text;
  // A name of the other plan.
  EXPECT_EQ(zelk.Run("tune tv 7 --raster ntsc-m-air --json").Json().at("frequency_khz"), 175250);
}

TEST(Output, OfEepromIsADumpOfItsBytes) {
  const Zelk zelk;
  zelk.Folder().Write("image", std::string(253, '\xFF') + " ~\x7F");
  const std::string whole = zelk.Run("eeprom --card virtual:saa7134,eeprom=image").out;
  EXPECT_EQ(std::count(whole.begin(), whole.end(), '\n'), 16);
  EXPECT_THAT(whole, StartsWith("00  ff "));
  EXPECT_THAT(
      whole,
      HasSubstr("\nf0  ff ff ff ff ff ff ff ff ff ff ff ff ff 20 7e 7f  |............. ~.|\n"));
}

TEST(Output, OfTheTraceGoesToStandardErrorAlone) {
  const Zelk zelk;
  const ZelkRun plain = zelk.Run("tune tv E5");
  const ZelkRun traced = zelk.Run("tune tv E5 --trace");
  EXPECT_EQ(traced.out, plain.out);
  EXPECT_EQ(plain.err, "");
  // (175250 + 38900) * 16 / 1000 = 3426, high band III.
  EXPECT_THAT(traced.err, HasSubstr("0D 62 CE 90"));
}

}  // namespace
}  // namespace zelk::test
