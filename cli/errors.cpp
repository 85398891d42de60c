#include "cli/errors.h"

#include <array>
#include <cstdio>
#include <filesystem>

namespace zelk::cli {
namespace {

struct ResultName {
  HRESULT code;
  const char* name;
};

constexpr std::array<ResultName, 5> kResultNames{{
    {ZELK_S_OK, "S_OK"},
    {ZELK_S_FALSE, "S_FALSE"},
    {ZELK_E_FAIL, "E_FAIL"},
    {ZELK_E_NOTIMPL, "E_NOTIMPL"},
    {ZELK_VFW_E_WRONG_STATE, "VFW_E_WRONG_STATE"},
}};

// The FM scan's own two files are not among them: they list every probe of every scan.
constexpr std::array<const char*, 6> kLogFiles{"zelkapi_713x.log",    "zelkapi_713X.log",
                                               "zelkapi_BT878.log",   "zelkapi_BT88X.log",
                                               "zelkapi_Quillon.log", "zelkapi.log"};

// A file that does not exist counts as empty.
std::uintmax_t SizeOf(const char* file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return error ? 0 : size;
}

}  // namespace

std::string ResultText(HRESULT code) {
  char number[16];
  std::snprintf(number, sizeof number, "0x%08X", static_cast<unsigned>(code));
  for (const ResultName& row : kResultNames) {
    if (row.code == code) return std::string(row.name) + " (" + number + ')';
  }
  return number;
}

LogWatch::LogWatch() {
  for (const char* file : kLogFiles) sizes_[file] = SizeOf(file);
}

std::string LogWatch::Hint() const {
  std::string hint;
  const char* before = "";
  for (const char* file : kLogFiles) {
    // Where names do not depend on case, two of them are one file.
    std::error_code error;
    const bool same = std::filesystem::equivalent(file, before, error);
    before = file;
    if (same) continue;
    // The library starts a large file anew, so a smaller size is news as well.
    const std::uintmax_t size = SizeOf(file);
    if (size == 0 || size == sizes_.at(file)) continue;
    hint += (hint.empty() ? "; see " : ", ") + std::string(file);
  }
  return hint;
}

}  // namespace zelk::cli
