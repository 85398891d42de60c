#include "cli/signal_text.h"

namespace zelk::cli {

Json FmSignalJson(const Signal& signal) {
  return {{"present", signal.present},
          {"strength", OrNull(signal.strength)},
          {"afc_offset_khz", OrNull(signal.afcOffsetKHz)}};
}

Json TvSignalJson(const Signal& signal) {
  Json json = FmSignalJson(signal);
  json["decoder_lock"] = OrNull(signal.decoderLock);
  return json;
}

std::string FmSignalText(const Signal& signal) {
  return std::string(signal.present ? "signal" : "no signal") + ", strength " +
         (signal.strength ? std::to_string(*signal.strength) : "-") + ", AFC " +
         OffsetText(signal.afcOffsetKHz) + " kHz";
}

std::string TvSignalText(const Signal& signal) {
  return FmSignalText(signal) + ", decoder lock " + YesNoText(signal.decoderLock);
}

}  // namespace zelk::cli
