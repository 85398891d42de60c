#include "backends/saa713x/boards.h"

#include <cstring>

#include "backends/tuner_modules/tuner_set.h"

namespace zelk {
namespace {

constexpr const char* kAcceptedNames[] = {
    "Grab7134 Capture",
    "Korvane, Telmora WDM Video Capture (7130)",
    "Korvane, Telmora WDM Video Capture (7133/7135)",
    "Korvane, Telmora WDM Video Capture (7133)",
    "Korvane, Telmora WDM Video Capture (7134)",
    "Dravik Pelion (7130) WDM Video Capture",
    "Dravik Pelion (7134) WDM Video Capture",
    "Unknown Boardconfiguration (EEPROM not programmed or missing)",
    "ZElk Q44 WDM Video Capture",
    "HXA 218 WDM Video Capture",
    "HXA 219 WDM Video Capture",
    "Korvane, Telmora WDM Video Capture (Silicon)",
    "Grab7134 Capture Device",
    "Korvane, Telmora WDM Video Capture (K21)",
    "Korvane, Telmora WDM Video Capture (K22)",
};

struct BoardRow {
  std::uint8_t boardCode;
  BoardSettings board;
};

constexpr BoardSettings Tuner(std::uint32_t type) { return {.TunerType = type}; }

constexpr BoardRow kBoards[] = {
    {0x00, Tuner(0)},
    {0x01, Tuner(1)},
    {0x02, Tuner(2)},
    {0x03, Tuner(3)},
    {0x04, Tuner(4)},
    {0x05, Tuner(5)},
    {0x06, Tuner(6)},
    {0x07, Tuner(7)},
    {0x08, Tuner(8)},
    {0x09, Tuner(9)},
    {0x0A, Tuner(14)},
    {0x0B, Tuner(15)},
    {0x0C, Tuner(10)},
    {0x0D, Tuner(11)},
    {0x0E, Tuner(16)},
    {0x0F, Tuner(17)},
    {0x10, Tuner(12)},
    {0x11, Tuner(13)},
    {0x14, Tuner(18)},
    {0x15, Tuner(19)},
    {0x1A, Tuner(20)},
    {0x1B, Tuner(21)},
    {0x1C, {.TunerType = 41, .TunerPowerMode = 1}},
    {0x1D, {.TunerType = 41, .TunerPowerMode = 1}},
    {0x1E, {.TunerType = 40, .TunerPowerMode = 1}},
    {0x1F, {.TunerType = 40, .TunerPowerMode = 1}},
    {0x20, Tuner(24)},
    {0x22, Tuner(35)},
    {0x24, Tuner(36)},
    {0x26, Tuner(37)},
    {0x28, Tuner(38)},
    {0x40, {.TunerType = 48, .AlpsTsehTsej = 1, .TunerPowerMode = 1}},
    {0x42, {.TunerType = 46, .AlpsTsehTsej = 1, .TunerPowerMode = 1}},
    {0x80, Tuner(25)},
    {0x81, Tuner(26)},
    {0x82, Tuner(27)},
    {0x83, Tuner(28)},
    {0x84, Tuner(29)},
    {0x85, Tuner(30)},
    {0xE0, {.TunerType = 48, .AlpsTsehTsej = 1, .TunerPowerMode = 2}},
    {0xE1, {.TunerType = 48, .StandardBoard = false, .AlpsTsehTsej = 1, .TunerPowerMode = 2}},
    {0xE2, {.TunerType = 46, .AlpsTsehTsej = 1, .TunerPowerMode = 2}},
    {0xE3, {.TunerType = 46, .StandardBoard = false, .AlpsTsehTsej = 1, .TunerPowerMode = 2}},
    {0xE8, {.TunerType = 47, .AlpsTsez = 1, .TunerPowerMode = 2}},
    {0xE9, {.TunerType = 47, .StandardBoard = false, .AlpsTsez = 1, .TunerPowerMode = 2}},
    {0xEE, {.TunerType = 40, .TunerPowerMode = 2}},
};

struct EepromTunerRow {
  std::uint8_t byte;
  std::uint32_t tunerType;
};

constexpr EepromTunerRow kEepromTuners[] = {
    {0x10, 31}, {0x11, 32}, {0x12, 33}, {0x13, 34}, {0x18, 42}, {0x19, 43}, {0x1A, 44}, {0x1B, 45},
};

// Modules that no other family carries, and those whose limits are drawn otherwise here.
constexpr TvBandRow kTvBands[] = {
    {{35, 46}, {55250, 801250}},      // USA
    {{36, 37, 48}, {91250, 765250}},  // Japan
    {{47}, {48250, 855250}},          // ALPS TSEZ1
    {{43}, {48250, 863250}},          // TNF 9533
    {{42, 45}, {55250, 863250}},      // TNF 5533, TNF 9833
    {{40}, {40000, 865000}},          // silicon
    {{41}, {66000, 865000}},          // silicon
};

}  // namespace

bool IsAcceptedName(const char* friendlyName) {
  if (!friendlyName) return false;
  for (const char* name : kAcceptedNames) {
    if (std::strcmp(friendlyName, name) == 0) return true;
  }
  return false;
}

void ApplyBoardCode(std::uint32_t boardCode, BoardSettings& board) {
  for (const BoardRow& row : kBoards) {
    if (row.boardCode != boardCode) continue;
    board.TunerType = row.board.TunerType;
    if (!row.board.StandardBoard) board.StandardBoard = false;
    if (row.board.AlpsTsehTsej) board.AlpsTsehTsej = row.board.AlpsTsehTsej;
    if (row.board.AlpsTsez) board.AlpsTsez = row.board.AlpsTsez;
    if (row.board.TunerPowerMode) board.TunerPowerMode = row.board.TunerPowerMode;
  }
}

std::optional<std::uint32_t> TunerFromEeprom(std::uint8_t byte) {
  for (const EepromTunerRow& row : kEepromTuners) {
    if (row.byte == byte) return row.tunerType;
  }
  return std::nullopt;
}

TvBand TvBandOf(std::uint32_t tunerType) { return TvBandOf(kTvBands, tunerType); }

}  // namespace zelk
