#include "virtual_cards/cards/ql2/options.h"

#include <utility>

namespace zelk::virtual_cards {

namespace {

void ParseTuner(const OptionText& option, Ql2Options& options) {
  const auto code = ParseNumber(option.value);
  if (!code || *code > 0xFF) RejectOption(option, "the tuner code that the board reports, 0-255");
  options.tunerCode = *code;
}

void ParseTunerInfo(const OptionText& option, Ql2Options& options) {
  options.tunerInfo = ParseFlag(option);
}

void ParsePin(const OptionText& option, Ql2Options& options) {
  options.videoInfo2 = option.value == "videoinfo2";
  if (!options.videoInfo2 && option.value != "videoinfo")
    RejectOption(option, "videoinfo or videoinfo2");
}

// A description's commas part its options, so the names of most boards cannot be written here.
void ParseName(const OptionText& option, Ql2Options& options) {
  if (option.value.empty()) RejectOption(option, "a friendly name");
  options.friendlyName = option.value;
}

constexpr OptionParser<Ql2Options> kParsers[] = {
    {"tuner", ParseTuner},
    {"tunerinfo", ParseTunerInfo},
    {"pin", ParsePin},
    {"name", ParseName},
};

}  // namespace

std::unique_ptr<VirtualCard> CreateQl2(const Ql2Kind&, std::span<const OptionText> options,
                                       Air air) {
  Ql2Options parsed;
  ParseOptions<Ql2Options>(options, kParsers, "a QL2 card", parsed);
  return Ql2Card::Create(parsed, std::move(air));
}

}  // namespace zelk::virtual_cards
