// A signal as the commands show it.
#pragma once

#include <string>

#include "cli/output.h"
#include "cli/session.h"

namespace zelk::cli {

Json TvSignalJson(const Signal& signal);
std::string TvSignalText(const Signal& signal);
// Without the decoder, which has no part in radio.
Json FmSignalJson(const Signal& signal);
std::string FmSignalText(const Signal& signal);

}  // namespace zelk::cli
