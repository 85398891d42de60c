// The records of the standard tuner property set.
#pragma once

#include <span>

#include "platform/dshow.h"
#include "virtual_cards/cards/trace_line.h"

namespace zelk::virtual_cards {

// `content` is as long as the record.
KSPROPERTY_TUNER_FREQUENCY_S ReadTunerFrequency(std::span<const BYTE> content);
// Write a record's figures into the trace.
void DescribeTunerFrequency(TraceLine& line, std::span<const BYTE> content);
void DescribeTunerStatus(TraceLine& line, std::span<const BYTE> content);

}  // namespace zelk::virtual_cards
