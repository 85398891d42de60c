// The settings store behind profile files, registry values and the locale: files of sections and
// keys that a user edits, read afresh at every question.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelk::host {

// Where a settings file of this name lies: a full path as it stands, a plain name in the settings
// folder; empty when there is no such folder.
std::string SettingsPath(std::string_view fileName);

// The value of `key` in the first section of that name, blanks around it removed and then one pair
// of quotes; else what was added with AddProfileValue. Sections and keys compare without case.
std::optional<std::string> FindSetting(std::string_view fileName, std::string_view section,
                                       std::string_view key);

bool HasSettingsSection(std::string_view fileName, std::string_view section);

}  // namespace zelk::host
