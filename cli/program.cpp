#include "cli/program.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "cli/commands.h"
#include "cli/errors.h"
#include "platform/com_apartment.h"

namespace zelk::cli {
namespace {

void AddGlobalOptions(CLI::App& app, Options& options) {
  app.set_version_flag("--version", "zelk " ZELK_VERSION, "Print the version and leave");
  app.add_option("--card", options.card,
                 "The card: virtual:KIND[,key=value...], or the name of a capture device; 'zelk "
                 "cards' lists both; io: one without filters, behind its maker's I/O library")
      ->type_name("CARD")
      ->capture_default_str();
  app.add_option(
         "--tuner", options.tuner,
         "Tuner device of a card that is named by its capture device, or none (default: the "
         "one that belongs to it)")
      ->type_name("NAME");
  app.add_option("--plug", options.plug,
                 "Plug in a virtual card first, KIND[,key=value...]: the system lists its devices")
      ->type_name("KIND");
  app.add_option("--air", options.air, "What is on the air: the name of a place, or a place file")
      ->type_name("PLACE|FILE")
      ->capture_default_str();
  app.add_option("--raster", options.raster, "Channel plan for names (default: that of the air)")
      ->type_name("ID");
  app.add_option("--standard", options.standard,
                 "Video standard: PAL_B, NTSC_M, SECAM_L... (default: the raster's)")
      ->type_name("NAME");
  app.add_option("--country", options.country,
                 "International dialling code of the country (default: the raster's)")
      ->type_name("CODE")
      ->check(CLI::Range(1, 9999));
  app.add_flag("--eastern-fm", options.easternFm,
               "Let the FM band begin at 62 MHz, for the lower band of Eastern Europe");
  app.add_flag("--json", options.json, "Print one JSON object instead of text");
  app.add_flag("--trace", options.trace,
               "Write what happens on the card's buses to standard error");
  app.add_flag("--realtime", options.realtime,
               "Wait as long as the hardware needs (default: a virtual clock, no real waiting)");
}

// Every command takes the options above, but the parser's help of a command lists its own alone.
void PointToGlobalOptions(CLI::App& app) {
  for (CLI::App* command : app.get_subcommands({})) {
    command->footer(
        command->get_footer() +
        "\n\nThe options of all commands (--card, --air, --json...) are listed by: zelk --help");
    PointToGlobalOptions(*command);
  }
}

// The parser misses a command rather than name the word that is none.
std::string WrongUse(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> unknown = app.remaining(true);
  const std::string what =
      unknown.empty() ? error.what() : '"' + unknown.front() + "\" is no command or argument here";
  return what + " (zelk --help explains the use)";
}

// False for a line that asks for help or the version: the parser has printed that.
bool Parse(CLI::App& app, int argc, char** argv) {
  try {
    app.parse(argc, argv);
    return true;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) throw UsageError(WrongUse(app, error));
    app.exit(error);
    return false;
  }
}

int CarryOut(const Command& command, const Options& options) {
  const ComApartment com;
  return command(options);
}

// Standard output may be a full disk or a closed pipe. A table that nobody received is a failure.
void FlushOutput() {
  if (!std::cout.flush()) throw Failure("cannot write to standard output");
}

int Complain(const std::exception& error, int exitCode) {
  std::cout.flush();
  std::cerr << "zelk: " << error.what() << '\n';
  return exitCode;
}

}  // namespace

int Run(int argc, char** argv) {
  CLI::App app{"Finds, tunes and watches TV cards through the ZElkAPI library.", "zelk"};
  Options options;
  Command chosen;

  app.fallthrough();  // global options may also follow the command
  app.require_subcommand(1);
  app.get_formatter()->column_width(26);
  AddGlobalOptions(app, options);
  AddCardCommands(app, chosen);
  AddTuningCommands(app, chosen);
  AddScanCommands(app, chosen);
  AddRadioCommands(app, chosen);
  AddAudioCommands(app, chosen);
  AddEncoderCommands(app, chosen);
  AddBusCommands(app, chosen);
  PointToGlobalOptions(app);
  // Set last: a command takes over the footer that stands when it is added.
  app.footer(
      "Examples:\n"
      "  zelk scan tv\n"
      "  zelk tune tv E5\n"
      "  zelk scan fm --plot band.svg\n"
      "  zelk --card virtual:saa7134,tuner=5 --air us-city scan tv --json\n"
      "  zelk info --trace\n\n"
      "Exit codes: 0 done, 1 failed, 2 wrong use, 128 + N ended by signal N (130: Ctrl-C).");

  try {
    const int exitCode = Parse(app, argc, argv) ? CarryOut(chosen, options) : kExitSuccess;
    FlushOutput();
    return exitCode;
  } catch (const UsageError& error) {
    return Complain(error, kExitUsage);
  } catch (const std::exception& error) {
    return Complain(error, kExitFailure);
  }
}

}  // namespace zelk::cli
