// What an application does with a card, from beginning to end.
#pragma once

namespace zelk::record {

// Every export but HWInit, Free and the start of a scan, once.
void EveryExport();
// A whole life: initialised, TV, radio, freed.
void WholeFlow();
// The same in fewer steps, with short scans. It takes the same way whatever the card answers.
void ShortFlow();
// Initialised, asked what it is, tuned once in each mode.
void BoardFlow();

}  // namespace zelk::record
