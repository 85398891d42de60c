// The values that the process itself added to profile files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelk::host {

// The newest value that was added for this file, section and key.
std::optional<std::string> FindAddedValue(std::string_view file, std::string_view section,
                                          std::string_view key);

}  // namespace zelk::host
