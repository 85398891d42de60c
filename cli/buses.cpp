// zelk eeprom, zelk i2c, zelk remote, zelk lock
#include <CLI/CLI.hpp>
#include <iostream>
#include <optional>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/parse.h"
#include "cli/session.h"

namespace zelk::cli {
namespace {

constexpr std::uint32_t kEepromBytes = 256;  // a 24C02
constexpr std::uint32_t kHighestByte = 0xFF;
constexpr std::uint32_t kMostI2cBytes = 256;

struct EepromArguments {
  std::string offset = "0";
  std::string length;  // empty: to the end
};

struct I2cArguments {
  std::string address;
  std::string count;
  std::vector<std::string> bytes;
};

// Bt878 cards refuse the bytes that were never programmed. Where the card gives nothing at all, its
// first refusal is the failure.
std::vector<std::optional<std::uint8_t>> ReadEeprom(const Session& session, std::uint32_t offset,
                                                    std::uint32_t length) {
  std::vector<std::optional<std::uint8_t>> bytes(length);
  HRESULT refusal = ZELK_S_OK;
  bool any = false;
  for (std::uint32_t i = 0; i < length; ++i) {
    std::uint8_t byte = 0;
    const HRESULT code = ZELK_ReadEEPROM(offset + i, &byte);
    if (code >= 0) {
      bytes[i] = byte;
      any = true;
    } else if (refusal >= 0) {
      refusal = code;
    }
  }
  if (!any) session.Check(refusal, "read the EEPROM from byte " + HexText(offset) + " on");
  return bytes;
}

int DumpEeprom(const Options& options, const EepromArguments& arguments) {
  const std::uint32_t offset = ParseNumber(arguments.offset, kEepromBytes - 1, "--offset");
  const std::uint32_t left = kEepromBytes - offset;
  const std::uint32_t length =
      arguments.length.empty() ? left : ParseNumber(arguments.length, left, "--length");

  const Session session(options);
  const auto bytes = ReadEeprom(session, offset, length);
  if (options.json) {
    Json list = Json::array();
    for (const auto& byte : bytes) list.push_back(OrNull(byte));
    PrintJson({{"command", "eeprom"},
               {"card", session.CardDescription()},
               {"offset", offset},
               {"bytes", list}});
  } else {
    PrintHexDump(std::cout, offset, bytes);
  }
  return kExitSuccess;
}

std::string BytesText(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

// Cards of the MPEG-encoder family have a bus access of their own; its calls do nothing on other
// cards.
HRESULT ReadBus(std::uint32_t address, std::vector<std::uint8_t>& bytes) {
  const auto count = static_cast<std::uint32_t>(bytes.size());
  const HRESULT result = ZELK_I2CReadSequence(address, bytes.data(), count);
  if (result >= 0 || ZELK_ReadI2C(address, bytes.data(), count) != ZELK_S_OK) return result;
  return ZELK_S_OK;
}

HRESULT WriteBus(std::uint32_t address, const std::vector<std::uint8_t>& bytes) {
  const auto count = static_cast<std::uint32_t>(bytes.size());
  const HRESULT result = ZELK_I2CWriteSequence(address, bytes.data(), count);
  if (result >= 0 || ZELK_WriteI2C(address, bytes.data(), count) != ZELK_S_OK) return result;
  return ZELK_S_OK;
}

void PrintTransfer(const Options& options, const Session& session, const char* command,
                   std::uint32_t address, const std::vector<std::uint8_t>& bytes) {
  if (options.json) {
    PrintJson({{"command", command},
               {"card", session.CardDescription()},
               {"address", address},
               {"bytes", bytes}});
    return;
  }
  std::cout << HexText(address) << ':';
  for (const std::uint8_t byte : bytes) std::cout << ' ' << HexText(byte);
  std::cout << '\n';
}

int ReadI2c(const Options& options, const I2cArguments& arguments) {
  const std::uint32_t address = ParseNumber(arguments.address, kHighestByte, "address");
  const std::uint32_t count = ParseNumber(arguments.count, kMostI2cBytes, "count");
  if (count == 0) throw UsageError("count must be at least 1");
  Session session(options);
  session.StartTv();
  std::vector<std::uint8_t> bytes(count);
  session.Check(ReadBus(address, bytes),
                "read " + BytesText(count) + " from I2C address " + HexText(address));
  PrintTransfer(options, session, "i2c read", address, bytes);
  return kExitSuccess;
}

int WriteI2c(const Options& options, const I2cArguments& arguments) {
  const std::uint32_t address = ParseNumber(arguments.address, kHighestByte, "address");
  std::vector<std::uint8_t> bytes;
  for (const std::string& text : arguments.bytes)
    bytes.push_back(static_cast<std::uint8_t>(ParseNumber(text, kHighestByte, "byte")));
  Session session(options);
  session.StartTv();
  session.Check(WriteBus(address, bytes),
                "write " + BytesText(bytes.size()) + " to I2C address " + HexText(address));
  PrintTransfer(options, session, "i2c write", address, bytes);
  return kExitSuccess;
}

int ReadRemote(const Options& options, bool chip) {
  const Session session(options);
  std::uint32_t key = 0;
  if (chip) {
    std::uint8_t code = 0;
    session.Check(ZELK_GetRemoteICData(&code), "read the remote-control receiver chip");
    key = code;
  } else {
    session.Check(ZELK_GetRemoteData(&key), "read the remote control");
  }
  if (options.json) {
    PrintJson({{"command", "remote"},
               {"card", session.CardDescription()},
               {"source", chip ? "chip" : "board"},
               {"key_code", key}});
  } else {
    std::cout << "Key code " << HexText(key) << (key == 0 ? " (no key)" : "") << '\n';
  }
  return kExitSuccess;
}

struct LockArguments {
  std::string index;
  std::string state;  // empty: ask
};

int HandleLock(const Options& options, const LockArguments& arguments) {
  constexpr std::uint32_t kHighestLock = 1;
  const std::uint32_t index = ParseNumber(arguments.index, kHighestLock, "index");
  Session session(options);
  // A card takes a lock in a mode alone.
  session.StartTv();
  if (!arguments.state.empty()) {
    session.Check(ZELK_SetHWLock(index, arguments.state == "on" ? 1 : 0),
                  "set lock " + std::to_string(index));
  }
  std::uint32_t value = 0;
  session.Check(ZELK_GetHWLock(index, &value), "read lock " + std::to_string(index));
  if (options.json) {
    PrintJson({{"command", "lock"},
               {"card", session.CardDescription()},
               {"lock", index},
               {"on", value != 0}});
  } else {
    std::cout << "Lock " << index << ": " << (value != 0 ? "on" : "off") << '\n';
  }
  return kExitSuccess;
}

void AddEeprom(CLI::App& app, Command& chosen) {
  CLI::App* eeprom = app.add_subcommand("eeprom", "Dump the board's EEPROM");
  auto arguments = std::make_shared<EepromArguments>();
  eeprom->add_option("--offset", arguments->offset, "First byte")
      ->type_name("N")
      ->capture_default_str();
  eeprom->add_option("--length", arguments->length, "Number of bytes (default: to the end, 256)")
      ->type_name("N");
  eeprom->footer("Examples:\n  zelk eeprom\n  zelk eeprom --offset 0x20 --length 3");
  eeprom->callback([&chosen, arguments] {
    chosen = [arguments](const Options& options) { return DumpEeprom(options, *arguments); };
  });
}

void AddI2c(CLI::App& app, Command& chosen) {
  CLI::App* i2c = app.add_subcommand("i2c", "Talk to a device on the card's I2C bus");
  i2c->require_subcommand(1);
  i2c->footer("Examples:\n  zelk i2c read 0xC3 1\n  zelk i2c write 0x86 0x00 0x16 0x70 0x49");

  CLI::App* read = i2c->add_subcommand("read", "Read bytes from a device");
  auto reading = std::make_shared<I2cArguments>();
  read->add_option("address", reading->address, "8-bit bus address, read bit included (0xC3)")
      ->type_name("ADDR")
      ->required();
  read->add_option("count", reading->count, "Number of bytes, 1 to 256")
      ->type_name("COUNT")
      ->required();
  read->footer("Example:\n  zelk i2c read 0xC3 1");
  read->callback([&chosen, reading] {
    chosen = [reading](const Options& options) { return ReadI2c(options, *reading); };
  });

  CLI::App* write = i2c->add_subcommand("write", "Write bytes to a device in one transfer");
  auto writing = std::make_shared<I2cArguments>();
  write->add_option("address", writing->address, "8-bit bus address (0xC2)")
      ->type_name("ADDR")
      ->required();
  write->add_option("bytes", writing->bytes, "Bytes, 0 to 255 or 0x00 to 0xFF")
      ->type_name("BYTE")
      ->required();
  write->footer("Example:\n  zelk i2c write 0xC2 0x0D 0x62 0xCE 0x90");
  write->callback([&chosen, writing] {
    chosen = [writing](const Options& options) { return WriteI2c(options, *writing); };
  });
}

void AddRemote(CLI::App& app, Command& chosen) {
  CLI::App* remote = app.add_subcommand("remote", "Read the key of the remote control");
  auto chip = std::make_shared<bool>(false);
  remote->add_flag("--chip", *chip, "Ask the receiver chip, whose keys have other codes");
  remote->footer("Examples:\n  zelk remote\n  zelk remote --chip");
  remote->callback([&chosen, chip] {
    chosen = [chip](const Options& options) { return ReadRemote(options, *chip); };
  });
}

void AddLock(CLI::App& app, Command& chosen) {
  CLI::App* lock = app.add_subcommand("lock", "Show or set one of the driver's two locks");
  auto arguments = std::make_shared<LockArguments>();
  lock->add_option("index", arguments->index,
                   "0: the driver leaves the tuner alone; 1: the application's own")
      ->type_name("0|1")
      ->required();
  lock->add_option("state", arguments->state, "New state (default: show the present one)")
      ->check(CLI::IsMember({"on", "off"}))
      ->type_name("on|off");
  lock->footer("Examples:\n  zelk lock 0\n  zelk lock 0 on");
  lock->callback([&chosen, arguments] {
    chosen = [arguments](const Options& options) { return HandleLock(options, *arguments); };
  });
}

}  // namespace

void AddBusCommands(CLI::App& app, Command& chosen) {
  AddEeprom(app, chosen);
  AddI2c(app, chosen);
  AddRemote(app, chosen);
  AddLock(app, chosen);
}

}  // namespace zelk::cli
