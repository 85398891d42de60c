#include "virtual_cards/cards/bt878_card.h"

#include <stdexcept>
#include <utility>

#include "virtual_cards/cards/bt878/capture_filter.h"
#include "virtual_cards/cards/bt878/eeprom_image.h"
#include "virtual_cards/cards/bt878/pio_gate.h"
#include "virtual_cards/cards/bt_family/plugged_bt_card.h"
#include "virtual_cards/chips/pll_tuner.h"

namespace zelk::virtual_cards {

namespace {

constexpr char kProfileFile[] = "Telmora2k.ini";
constexpr char kProfileSection[] = "PRODUCTINFO";

struct ProfileByte {
  std::uint8_t address;
  const char* key;
};
constexpr ProfileByte kProfileBytes[] = {
    {kBt878TunerByte, "0x41"}, {kBt878OptionByte, "0x42"}, {kBt878ProductByte, "0xFD"}};

class PluggedBt878 final : public PluggedBtCard<Bt878Card, Bt878Options, Bt878Hardware, PioGate> {
 public:
  PluggedBt878(const Bt878Options& options, const BtBoard& board,
               std::shared_ptr<Bt878Hardware> hardware)
      : PluggedBtCard(options, std::move(hardware), MakeBt878CaptureFilter) {
    if (options.ioLibrary) WriteProfile(board.eeprom);
  }

 private:
  // What the installer of the I/O library noted down of the EEPROM; it skipped erased bytes.
  void WriteProfile(const Eeprom::Image& eeprom) {
    for (const ProfileByte& byte : kProfileBytes) {
      const std::uint8_t content = eeprom[byte.address];
      if (content == Eeprom::kErased) continue;
      profile_.push_back(std::make_unique<ProfileRegistration>(kProfileFile, kProfileSection,
                                                               byte.key, std::to_string(content)));
    }
  }

  std::vector<std::unique_ptr<ProfileRegistration>> profile_;
};

}  // namespace

std::unique_ptr<Bt878Card> Bt878Card::Create(const Bt878Options& options, Air air) {
  const std::optional<Eeprom::Image> image = Bt878EepromImage(options.tunerType);
  if (!image) {
    throw std::invalid_argument("no Bt878 board carries tuner type " +
                                std::to_string(options.tunerType) +
                                "; there are 0, 1, 4 to 15, 20, 21, 40 and 42 to 45");
  }
  const BtBoard board = DescribeBoard(options, *image, ModuleMake::kAmerican, PllTuner::kAddress);
  return std::make_unique<PluggedBt878>(options, board,
                                        std::make_shared<Bt878Hardware>(board, std::move(air)));
}

}  // namespace zelk::virtual_cards
