#include "virtual_cards/cards/tuner_requests.h"

#include <cstring>

namespace zelk::virtual_cards {

KSPROPERTY_TUNER_FREQUENCY_S ReadTunerFrequency(std::span<const BYTE> content) {
  KSPROPERTY_TUNER_FREQUENCY_S request;
  std::memcpy(&request, content.data(), sizeof request);
  return request;
}

void DescribeTunerFrequency(TraceLine& line, std::span<const BYTE> content) {
  const KSPROPERTY_TUNER_FREQUENCY_S request = ReadTunerFrequency(content);
  line.Text("frequency=").Number(request.Frequency);
  line.Text(" flags=").Number(request.TuningFlags);
  line.Text(" channel=").Number(request.Channel);
  line.Text(" country=").Number(request.Country);
}

void DescribeTunerStatus(TraceLine& line, std::span<const BYTE> content) {
  KSPROPERTY_TUNER_STATUS_S status;
  std::memcpy(&status, content.data(), sizeof status);
  line.Text("frequency=").Number(status.CurrentFrequency);
  line.Text(" offset=").Number(static_cast<LONG>(status.PLLOffset));
  line.Text(" strength=").Number(status.SignalStrength);
  line.Text(" busy=").Number(status.Busy);
}

}  // namespace zelk::virtual_cards
