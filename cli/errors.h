// How a run fails: what people read, and which exit code their scripts see.
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>

#include "ZElkAPI.h"

namespace zelk::cli {

// The command line asks for something that does not exist. Exit code 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The card or the library refused. Exit code 1.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// "E_FAIL (0x80004005)"; a code without a name is its number alone.
std::string ResultText(HRESULT code);

// Watches the library's diagnostic files in the current directory: the reason of a failure stands
// in the one that grew during the run.
class LogWatch {
 public:
  LogWatch();
  // "; see zelkapi_713x.log", empty when the library wrote nothing.
  std::string Hint() const;

 private:
  std::map<std::string, std::uintmax_t> sizes_;
};

}  // namespace zelk::cli
