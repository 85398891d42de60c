#include "platform/process/profile_values.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/control.h"
#include "platform/ignore_case.h"
#include "platform/mutex.h"
#include "platform/process/calls.h"

namespace zelk::host {
namespace {

struct AddedValue {
  std::uint32_t token;
  std::string file;
  std::string section;
  std::string key;
  std::string value;
};

struct AddedValues {
  Mutex mutex;
  std::uint32_t lastToken = 0;
  std::vector<AddedValue> values;
};

AddedValues& Added() {
  static auto* const added = new AddedValues;  // outlives every static object that reads settings
  return *added;
}

}  // namespace

std::uint32_t AddProfileValue(std::string file, std::string section, std::string key,
                              std::string value) {
  TakeOverCalls();
  AddedValues& added = Added();
  const std::lock_guard lock(added.mutex);
  const std::uint32_t token = ++added.lastToken;
  added.values.push_back(
      {token, std::move(file), std::move(section), std::move(key), std::move(value)});
  return token;
}

void RemoveProfileValue(std::uint32_t token) {
  AddedValues& added = Added();
  const std::lock_guard lock(added.mutex);
  std::erase_if(added.values, [token](const AddedValue& value) { return value.token == token; });
}

std::optional<std::string> FindAddedValue(std::string_view file, std::string_view section,
                                          std::string_view key) {
  AddedValues& added = Added();
  const std::lock_guard lock(added.mutex);
  const auto found =
      std::find_if(added.values.rbegin(), added.values.rend(), [&](const AddedValue& value) {
        return value.file == file && EqualIgnoringCase(value.section, section) &&
               EqualIgnoringCase(value.key, key);
      });
  if (found == added.values.rend()) return std::nullopt;
  return found->value;
}

}  // namespace zelk::host
