// The I/O libraries from outside: calls out of their order, the installer's profile file, and the
// remote control's port.
#include <stdexcept>
#include <string>
#include <vector>

#include "card_client.h"
#include "platform/win32.h"
#include "virtual_cards/cards/bt878_card.h"
#include "virtual_cards/cards/cx2388x_card.h"

namespace zelk::virtual_cards {
namespace {

using Bt878IoTest = CardModelTest<Bt878Card, Bt878Options>;
using Cx2388xIoTest = CardModelTest<Cx2388xCard, Cx2388xOptions>;

// A library as GetProcAddress finds it.
class IoClient {
 public:
  explicit IoClient(const char* file) : module_(LoadLibraryA(file)) {}
  ~IoClient() { FreeLibrary(module_); }
  IoClient(const IoClient&) = delete;
  IoClient& operator=(const IoClient&) = delete;

  template <class Result, class... Arguments>
  Result Call(const char* name, Arguments... arguments) const {
    const FARPROC address = GetProcAddress(module_, name);
    if (!address) throw std::runtime_error(std::string(name) + " is missing");
    return reinterpret_cast<Result (*)(Arguments...)>(reinterpret_cast<void (*)()>(address))(
        arguments...);
  }

 private:
  const HMODULE module_;
};

struct PioGateClient : IoClient {
  PioGateClient() : IoClient("PioGate.dll") {}

  // A whole write; how many bytes were acknowledged, the address among them.
  int Transfer(const std::vector<int>& bytes) const {
    int acknowledged = 0;
    Call<void>("I2CSWSTART");
    for (const int byte : bytes) acknowledged += Call<int>("I2CSWWRITE", byte);
    Call<void>("I2CSWSTOP");
    return acknowledged;
  }
};

TEST_F(Bt878IoTest, CallsOutOfOrderDoNothing) {
  Plug({.tunerType = 0, .ioLibrary = true});
  const PioGateClient io;
  EXPECT_EQ(io.Transfer({0xC2}), 0);
  EXPECT_EQ(io.Call<int>("READDECODER", 0), 0);
  EXPECT_EQ(io.Call<int>("INIT_IO"), 1);
  EXPECT_EQ(io.Transfer({0xC2}), 0) << "the bus is not in software mode";
  io.Call<void>("I2CINITSWMODE", 0);
  EXPECT_EQ(io.Transfer({0xC2}), 0) << "at no speed";
  io.Call<void>("I2CINITSWMODE", 100000);
  card_->Refuse("io I2CSWWRITE 62", E_FAIL);
  EXPECT_EQ(io.Transfer({0xC2, 0x0D, 0x62, 0xCE, 0x90}), 2);
  EXPECT_EQ(card_->TunedKHz(), 0);
  std::uint32_t pins = 7;
  io.Call<void, int, int, std::uint32_t*, int>("GETGPDATABITS", 15, 24, &pins, 0);
  EXPECT_EQ(pins, 7u) << "no such pin: nothing is stored";
  io.Call<void>("FREE_IO");
  io.Call<int>("INIT_IO");
  EXPECT_EQ(io.Transfer({0xC2}), 0) << "the mode has to be set anew";
}

TEST_F(Bt878IoTest, TheInstallerWroteTheBoardDown) {
  // The board's own EEPROM, and one that somebody gave it. Erased bytes are skipped.
  for (const auto& [options, profile] :
       {std::pair(Bt878Options{.tunerType = 15, .ioLibrary = true}, "104 160 1 "),
        {{.ioLibrary = true, .eeprom = std::array<std::uint8_t, 256>{}}, "0 0 0 "},
        {{.ioLibrary = true, .eepromState = EepromState::kBlank}, "   "}}) {
    Plug(options);
    std::string found;
    for (const char* key : {"0x41", "0x42", "0xFD"}) {
      char text[16];
      GetPrivateProfileStringA("PRODUCTINFO", key, "", text, sizeof text, "Telmora2k.ini");
      found += text + std::string(" ");
    }
    EXPECT_EQ(found, profile);
  }
}

TEST_F(Cx2388xIoTest, KeysAreReadAtTheirPort) {
  Plug({.ioLibrary = true});
  card_->PressKey(0x8F);
  const IoClient io("PioGate880.dll");
  io.Call<int>("InitIO");
  // A port that is not there leaves the last one selected.
  for (const auto& [port, keys] : {std::pair{0, 0u}, {2, 0x1Fu}, {3, 0x1Fu}}) {
    io.Call<void, int>("SetGPIOPort", port);
    std::uint32_t data = 7;
    EXPECT_EQ((io.Call<int, std::uint32_t*, int, int>("GetGPData", &data, 0, 0)), 1);
    EXPECT_EQ(data, keys) << port;
  }
}

}  // namespace
}  // namespace zelk::virtual_cards
