// zelk mpeg, zelk adc: what cards with an MPEG encoder have beside the others.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cctype>
#include <iostream>
#include <sstream>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/parse.h"
#include "cli/session.h"

namespace zelk::cli {
namespace {

using Word = std::uint32_t ZELK_MpegParams::*;

// One setting of the encoder. The values are the numbers of ZELK_MpegParams; a setting takes either
// those listed or all up to the highest.
struct Setting {
  const char* key;
  Word word;
  const char* unit;
  std::uint32_t lowest;
  std::uint32_t highest;
  std::array<std::uint32_t, 5> listed = {};
  // The card shows what was set. The options are selectors that it turns into codes of its own.
  bool readsBack = true;

  bool IsListed(std::uint32_t value) const {
    return listed[0] == 0 || std::find(listed.begin(), listed.end(), value) != listed.end();
  }
};

constexpr std::uint32_t kHighestSize = 4096;
constexpr std::uint32_t kHighestRate = 0xFFFF;  // the library keeps 16 bits

constexpr std::array<Setting, 11> kSettings{{
    {"stream-type", &ZELK_MpegParams::StreamType, "", 0, 4},
    {"width", &ZELK_MpegParams::Width, "pixels", 1, kHighestSize},
    {"height", &ZELK_MpegParams::Height, "pixels", 1, kHighestSize},
    {"bit-rate", &ZELK_MpegParams::BitRate, "kbit/s", 1, kHighestRate},
    {"max-bit-rate", &ZELK_MpegParams::MaxBitRate, "kbit/s", 1, kHighestRate},
    {"variable-bit-rate", &ZELK_MpegParams::VariableBitRate, "", 0, 1},
    {"option9", &ZELK_MpegParams::Option9, "", 0, 0xFF, {}, false},
    {"option10", &ZELK_MpegParams::Option10, "", 0, 0xFF, {}, false},
    {"audio-sample-rate", &ZELK_MpegParams::AudioSampleRate, "Hz", 0, 48000, {32000, 44100, 48000}},
    {"audio-bit-rate", &ZELK_MpegParams::AudioBitRate, "kbit/s", 0, 384, {192, 224, 256, 320, 384}},
    {"audio-mode", &ZELK_MpegParams::AudioMode, "", 0, 3},
}};

struct Assignment {
  const Setting* setting;
  std::uint32_t value;
};

// "bit-rate" and the parameter block's own "BitRate" are the same.
std::string Plain(std::string_view key) {
  std::string plain;
  for (const char letter : key) {
    if (letter != '-') plain += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return plain;
}

const Setting& FindSetting(const std::string& key) {
  std::string keys;
  for (const Setting& setting : kSettings) {
    if (Plain(setting.key) == Plain(key)) return setting;
    keys += (keys.empty() ? "" : ", ") + std::string(setting.key);
  }
  throw UsageError('"' + key + "\" is none of " + keys);
}

std::string WantedText(const Setting& setting) {
  std::ostringstream text;
  if (setting.listed[0] == 0) {
    text << setting.lowest << " to " << setting.highest;
  } else {
    const char* between = "";
    for (const std::uint32_t value : setting.listed) {
      if (value == 0) break;
      text << between << value;
      between = ", ";
    }
  }
  if (setting.unit[0] != '\0') text << ' ' << setting.unit;
  return text.str();
}

Assignment ParseAssignment(const std::string& text) {
  const std::size_t sign = text.find('=');
  if (sign == std::string::npos) {
    throw UsageError('"' + text + "\" is no KEY=VALUE, such as bit-rate=6000");
  }
  const Setting& setting = FindSetting(text.substr(0, sign));
  const std::string number = text.substr(sign + 1);
  const std::uint32_t value = ParseNumber(number, setting.highest, setting.key);
  if (value < setting.lowest || !setting.IsListed(value)) {
    throw UsageError(std::string(setting.key) + ": " + number + ", wanted " + WantedText(setting));
  }
  return {&setting, value};
}

ZELK_MpegParams ReadParams(const Session& session) {
  ZELK_MpegParams params = {};
  const HRESULT code = ZELK_GetMPEGParam(&params);
  if (code == ZELK_E_NOTIMPL) throw Failure("this card has no MPEG encoder");
  session.Check(code, "read the encoder's settings");
  return params;
}

void Print(const Options& options, const Session& session, const char* command,
           const ZELK_MpegParams& params) {
  if (options.json) {
    Json values;
    for (const Setting& setting : kSettings) {
      if (setting.word != &ZELK_MpegParams::Option10) values[setting.key] = params.*setting.word;
    }
    PrintJson({{"command", command}, {"card", session.CardDescription()}, {"values", values}});
    return;
  }
  Table table({{"Setting"}, {"Value", true}, {"Unit"}});
  for (const Setting& setting : kSettings) {
    // The card does not report it.
    const bool known = setting.word != &ZELK_MpegParams::Option10;
    table.AddRow({setting.key, known ? std::to_string(params.*setting.word) : "-", setting.unit});
  }
  table.Print(std::cout);
}

int GetParams(const Options& options) {
  const Session session(options);
  Print(options, session, "mpeg get", ReadParams(session));
  return kExitSuccess;
}

// The library calls some refusals a success: what stands afterwards is what counts.
void RequireKept(const std::vector<Assignment>& assignments, const ZELK_MpegParams& kept) {
  for (const Assignment& assignment : assignments) {
    const Setting& setting = *assignment.setting;
    const std::uint32_t value = kept.*setting.word;
    if (!setting.readsBack || value == assignment.value) continue;
    throw Failure("the card has " + std::string(setting.key) + ' ' + std::to_string(value) +
                  " instead of " + std::to_string(assignment.value));
  }
}

int SetParams(const Options& options, const std::vector<std::string>& texts) {
  std::vector<Assignment> assignments;
  for (const std::string& text : texts) assignments.push_back(ParseAssignment(text));
  const Session session(options);
  // The block is set as a whole: what is not named stays what it was.
  ZELK_MpegParams params = ReadParams(session);
  for (const Assignment& assignment : assignments) {
    params.*assignment.setting->word = assignment.value;
  }
  session.Check(ZELK_SetMPEGParam(params), "set the encoder's settings");
  const ZELK_MpegParams kept = ReadParams(session);
  Print(options, session, "mpeg set", kept);
  RequireKept(assignments, kept);
  return kExitSuccess;
}

int SetAdc(const Options& options) {
  const Session session(options);
  if (ZELK_SetAdcVolume() != ZELK_S_OK) throw Failure("this card has no audio converter to set");
  if (options.json) {
    PrintJson({{"command", "adc"}, {"card", session.CardDescription()}});
  } else {
    std::cout << "Audio converter set to its fixed gain\n";
  }
  return kExitSuccess;
}

void AddMpeg(CLI::App& app, Command& chosen) {
  CLI::App* mpeg = app.add_subcommand("mpeg", "Show and set the MPEG encoder's parameters");
  mpeg->require_subcommand(1);
  mpeg->footer(
      "Examples:\n  zelk mpeg get --card virtual:ql2\n"
      "  zelk mpeg set --card virtual:ql2 width=352 height=288 bit-rate=2000");

  CLI::App* get = mpeg->add_subcommand("get", "Show the parameters");
  get->footer("Example:\n  zelk mpeg get --card virtual:ql2 --json");
  get->callback([&chosen] { chosen = GetParams; });

  CLI::App* set = mpeg->add_subcommand("set", "Set parameters, and show what stands then");
  auto texts = std::make_shared<std::vector<std::string>>();
  constexpr std::size_t kKeyColumn = 20;
  std::string keys = "Keys and values:";
  for (const Setting& setting : kSettings) {
    std::string key = setting.key;
    key.resize(kKeyColumn, ' ');
    keys += "\n  " + key + WantedText(setting);
  }
  set->add_option("assignments", *texts, "Parameters; what is not named stays what it was")
      ->type_name("KEY=VALUE")
      ->required();
  set->footer(
      keys +
      "\n\nmax-bit-rate counts with variable-bit-rate=1. The card does not report option10: it is"
      "\n0 unless named.\n\nExamples:\n"
      "  zelk mpeg set --card virtual:ql2 stream-type=0 audio-sample-rate=48000\n"
      "  zelk mpeg set --card virtual:ql2 variable-bit-rate=1 bit-rate=4000 max-bit-rate=8000");
  set->callback([&chosen, texts] {
    chosen = [texts](const Options& options) { return SetParams(options, *texts); };
  });
}

}  // namespace

void AddEncoderCommands(CLI::App& app, Command& chosen) {
  AddMpeg(app, chosen);
  CLI::App* adc = app.add_subcommand("adc", "Set the audio converter to its fixed gain");
  adc->footer("Example:\n  zelk adc --card virtual:ql2");
  adc->callback([&chosen] { chosen = SetAdc; });
}

}  // namespace zelk::cli
