// A Bt878 or CX2388x card, spoken to as a driver library does: by request blocks filled in byte by
// byte.
#pragma once

#include <cstring>
#include <vector>

#include "card_client.h"

namespace zelk::virtual_cards {

inline constexpr GUID kZelkCapture = {
    0xC44A1A10, 0x0A37, 0x11D2, {0x83, 0x28, 0x00, 0x60, 0x97, 0xBA, 0x83, 0xAB}};

class Block {
 public:
  explicit Block(std::size_t bytes) : bytes_(bytes, 0) {}

  Block& Word(std::size_t offset, ULONG value) {
    std::memcpy(&bytes_.at(offset), &value, sizeof value);
    return *this;
  }
  Block& Byte(std::size_t offset, BYTE value) {
    bytes_.at(offset) = value;
    return *this;
  }
  Block& Bytes(std::size_t offset, const std::vector<BYTE>& values) {
    std::copy(values.begin(), values.end(), &bytes_.at(offset));
    return *this;
  }
  ULONG WordAt(std::size_t offset) const {
    ULONG value = 0;
    std::memcpy(&value, &bytes_.at(offset), sizeof value);
    return value;
  }
  BYTE ByteAt(std::size_t offset) const { return bytes_.at(offset); }

  void* Data() { return bytes_.data(); }
  DWORD Size() const { return static_cast<DWORD>(bytes_.size()); }

 private:
  std::vector<BYTE> bytes_;
};

struct BtClient : CardClient {
  using CardClient::CardClient;

  HRESULT Set(DWORD id, Block& block) const {
    return SetProperty(capture.Get(), kZelkCapture, id, block.Data(), block.Size());
  }
  HRESULT Set(DWORD id, Block&& block) const { return Set(id, block); }
  HRESULT Get(DWORD id, Block& block) const {
    DWORD returned = 0;
    const HRESULT code = capture->Get(kZelkCapture, id, block.Data(), block.Size(), block.Data(),
                                      block.Size(), &returned);
    EXPECT_EQ(returned, SUCCEEDED(code) ? block.Size() : 0);
    return code;
  }

  // --- I2C ---
  static Block I2cBlock(ULONG command) { return Block(120).Word(24, command); }
  HRESULT SetUp(ULONG command, ULONG clockHz = 100000) const {
    Block block = I2cBlock(command).Word(16, 4).Word(32, clockHz);
    std::memcpy(block.Data(), &kZelkCapture, sizeof kZelkCapture);
    return Set(4, block);
  }
  // A transfer by hardware as the block that the driver hands back; `code` gets the call's own.
  Block WriteByHardware(BYTE address, const std::vector<BYTE>& bytes, HRESULT& code) const {
    Block block = I2cBlock(0x1100000A).Byte(48, address).Bytes(52, bytes);
    block.Word(116, static_cast<ULONG>(bytes.size()));
    code = Set(4, block);
    return block;
  }
};

}  // namespace zelk::virtual_cards
