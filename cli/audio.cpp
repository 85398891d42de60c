// zelk audio
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <iostream>
#include <limits>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/parse.h"
#include "cli/session.h"

namespace zelk::cli {
namespace {

using Setter = HRESULT(ZELK_CALL*)(std::uint32_t);
using Getter = HRESULT(ZELK_CALL*)(std::uint32_t*);

// What the library offers by name. The values are the card driver's own.
struct AudioProperty {
  const char* key;
  Setter set;
  Getter get;            // null: cannot be asked
  bool needsTv = false;  // the library retunes the card with the new value
};

constexpr std::array<AudioProperty, 7> kProperties{{
    {"volume", ZELK_SetVolume, nullptr},
    {"audio-system", ZELK_SetAUDIOSYSTEM, ZELK_GetAUDIOSYSTEM, true},
    {"fuse", ZELK_SetFUSE, ZELK_GetFUSE},
    {"virtual-mode", ZELK_Set7135VirtualMode, ZELK_Get7135VirtualMode},
    {"stereo-effect", ZELK_Set7135VirtualStereoEffect, ZELK_Get7135VirtualStereoEffect},
    {"bass", ZELK_Set7135Bass, ZELK_Get7135Bass},
    {"treble", ZELK_Set7135Treble, ZELK_Get7135Treble},
}};

// Any other property of the driver, by its id.
constexpr std::string_view kGainPrefix = "gain.";
constexpr std::uint32_t kAnyValue = std::numeric_limits<std::uint32_t>::max();

struct Assignment {
  std::string key;
  std::uint32_t value = 0;
  const AudioProperty* property = nullptr;  // null: `gainId` says which
  std::uint32_t gainId = 0;
};

std::string GainKey(std::uint32_t id) { return std::string(kGainPrefix) + HexText(id); }

[[noreturn]] void RefuseKey(const std::string& key) {
  std::string keys;
  for (const AudioProperty& property : kProperties) keys += std::string(property.key) + ", ";
  throw UsageError('"' + key + "\" is none of " + keys + "gain.0xID");
}

Assignment ParseAssignment(const std::string& text) {
  const std::size_t sign = text.find('=');
  if (sign == std::string::npos)
    throw UsageError('"' + text + "\" is no KEY=VALUE, such as bass=5");
  Assignment assignment;
  assignment.key = text.substr(0, sign);
  const std::string& key = assignment.key;
  const auto row = std::find_if(kProperties.begin(), kProperties.end(),
                                [&](const AudioProperty& property) { return property.key == key; });
  if (row != kProperties.end()) {
    assignment.property = &*row;
  } else if (key.starts_with(kGainPrefix)) {
    assignment.gainId = ParseNumber(key.substr(kGainPrefix.size()), kAnyValue, "property id");
  } else {
    RefuseKey(key);
  }
  assignment.value = ParseNumber(text.substr(sign + 1), kAnyValue, key);
  return assignment;
}

std::optional<std::uint32_t> Read(const Session& session, const AudioProperty& property) {
  if (!property.get) return std::nullopt;
  std::uint32_t value = 0;
  session.Check(property.get(&value), std::string("read ") + property.key);
  return value;
}

std::uint32_t ReadGain(const Session& session, std::uint32_t id) {
  std::uint32_t value = 0;
  session.Check(ZELK_GetGainValue(id, &value), "read " + GainKey(id));
  return value;
}

using Values = std::vector<std::pair<std::string, std::optional<std::uint32_t>>>;

void Print(const Options& options, const Session& session, const char* command,
           const Values& values) {
  if (options.json) {
    Json list;
    for (const auto& [key, value] : values) list[key] = OrNull(value);
    PrintJson({{"command", command}, {"card", session.CardDescription()}, {"values", list}});
    return;
  }
  Table table({{"Property"}, {"Value", true}, {"Hexadecimal", true}});
  for (const auto& [key, value] : values)
    table.AddRow({key, value ? std::to_string(*value) : "-", value ? HexText(*value) : "-"});
  table.Print(std::cout);
}

int GetAudio(const Options& options, const std::vector<std::string>& ids) {
  std::vector<std::uint32_t> gainIds;
  for (const std::string& id : ids) gainIds.push_back(ParseNumber(id, kAnyValue, "--id"));
  const Session session(options);
  Values values;
  for (const AudioProperty& property : kProperties) {
    if (property.get) values.emplace_back(property.key, Read(session, property));
  }
  for (const std::uint32_t id : gainIds) values.emplace_back(GainKey(id), ReadGain(session, id));
  Print(options, session, "audio get", values);
  return kExitSuccess;
}

void Set(const Session& session, const Assignment& assignment) {
  const HRESULT code = assignment.property ? assignment.property->set(assignment.value)
                                           : ZELK_SetGainValue(assignment.gainId, assignment.value);
  session.Check(code, "set " + assignment.key + " to " + std::to_string(assignment.value));
}

int SetAudio(const Options& options, const std::vector<std::string>& texts) {
  std::vector<Assignment> assignments;
  for (const std::string& text : texts) assignments.push_back(ParseAssignment(text));
  Session session(options);
  if (std::any_of(assignments.begin(), assignments.end(),
                  [](const Assignment& one) { return one.property && one.property->needsTv; }))
    session.StartTv();
  for (const Assignment& assignment : assignments) Set(session, assignment);

  // Read back, once all stand: the library calls some of these a success whatever the driver said.
  Values values;
  for (const Assignment& assignment : assignments) {
    values.emplace_back(assignment.key, assignment.property ? Read(session, *assignment.property)
                                                            : ReadGain(session, assignment.gainId));
  }
  Print(options, session, "audio set", values);
  return kExitSuccess;
}

}  // namespace

void AddAudioCommands(CLI::App& app, Command& chosen) {
  CLI::App* audio = app.add_subcommand("audio", "Show and set the card's sound processing");
  audio->require_subcommand(1);
  audio->footer("Examples:\n  zelk audio get\n  zelk audio set bass=5 treble=3");

  CLI::App* get = audio->add_subcommand("get", "Show the values");
  auto ids = std::make_shared<std::vector<std::string>>();
  get->add_option("--id", *ids, "Also show this property of the driver (may be repeated)")
      ->type_name("ID")
      ->allow_extra_args(false);
  get->footer("Examples:\n  zelk audio get\n  zelk audio get --id 0x71 --json");
  get->callback([&chosen, ids] {
    chosen = [ids](const Options& options) { return GetAudio(options, *ids); };
  });

  CLI::App* set = audio->add_subcommand("set", "Set values, and show what stands then");
  auto texts = std::make_shared<std::vector<std::string>>();
  set->add_option("assignments", *texts,
                  "Keys: volume, audio-system, fuse, virtual-mode, stereo-effect, bass, treble, "
                  "gain.0xID; values: 0 to 4294967295, or 0x0 to 0xFFFFFFFF")
      ->type_name("KEY=VALUE")
      ->required();
  set->footer(
      "Values are the card driver's own and are passed on unchanged.\n\n"
      "Examples:\n"
      "  zelk audio set volume=40 audio-system=2\n"
      "  zelk audio set --card virtual:saa7135 bass=5 treble=3\n"
      "  zelk audio set gain.0x72=1");
  set->callback([&chosen, texts] {
    chosen = [texts](const Options& options) { return SetAudio(options, *texts); };
  });
}

}  // namespace zelk::cli
