// The commands of the program. Each group lives in a file of its own, declares its arguments to the
// parser and leaves behind what is to be done once the whole command line has been understood.
#pragma once

#include <functional>

#include "cli/options.h"

namespace CLI {
class App;
}

namespace zelk::cli {

// Exit codes. A run that a signal ended answers with Interrupt::ExitCode.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

// Carries out the command and answers the exit code. Throws UsageError or Failure.
using Command = std::function<int(const Options&)>;

// cards, info
void AddCardCommands(CLI::App& app, Command& chosen);
// tune, signal
void AddTuningCommands(CLI::App& app, Command& chosen);
// tune fm, below `tune`
void AddTuneFm(CLI::App& tune, Command& chosen);
// seek, fm
void AddRadioCommands(CLI::App& app, Command& chosen);
// audio
void AddAudioCommands(CLI::App& app, Command& chosen);
// scan
void AddScanCommands(CLI::App& app, Command& chosen);
// mpeg, adc
void AddEncoderCommands(CLI::App& app, Command& chosen);
// eeprom, i2c, remote, lock
void AddBusCommands(CLI::App& app, Command& chosen);

}  // namespace zelk::cli
