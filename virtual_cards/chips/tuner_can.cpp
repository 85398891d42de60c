#include "virtual_cards/chips/tuner_can.h"

#include <cmath>
#include <stdexcept>
#include <string>

#include "virtual_cards/chips/tv_standard.h"

namespace zelk::virtual_cards {

namespace {

const TunerModel& ModelOf(std::uint32_t tunerType, ModuleMake make) {
  const TunerModel* model = FindTunerModel(tunerType, make);
  if (!model) {
    throw std::invalid_argument("no PLL module is known for tuner type " +
                                std::to_string(tunerType));
  }
  return *model;
}

}  // namespace

TunerCan::TunerCan(std::uint32_t tunerType, const Air& air, std::uint8_t address, ModuleMake make)
    : model_(ModelOf(tunerType, make)),
      address_(address),
      fm_(FindFmSection(tunerType, make)),
      tuner_(model_, air, fm_) {
  // Without `separateDemodulator` the chip serves the FM section alone: the picture does not pass
  // it.
  if (model_.separateDemodulator || HasFmDemodulator(tunerType)) demodulator_.emplace(tuner_);
  if (model_.afc == AfcReport::kPll && model_.statusAddress == 0) {
    tuner_.ConnectAfc(&Detector());
  }
  if (fm_ && fm_->ByChip()) {
    tuner_.ConnectFm(&*demodulator_);
  } else if (fm_) {
    tuner_.ConnectFm(&builtIn_);
  }
}

void TunerCan::AttachTo(I2cBus& bus) {
  bus.Attach(address_, &tuner_);
  if (model_.statusAddress != 0) bus.Attach(model_.statusAddress, &statusPort_);
  if (demodulator_) bus.Attach(IfDemodulator::kAddress, &*demodulator_);
}

double TunerCan::TunedKHz() const {
  if (tuner_.SelectedFm()) return tuner_.ReceiveFm(fm_->ifKHz).tunedKHz;
  const bool byDemodulator = model_.separateDemodulator && demodulator_->SetUp();
  return tuner_.Receive(byDemodulator ? demodulator_->PictureIfKHz() : model_.ifKHz).tunedKHz;
}

const TvCarrier* TunerCan::Picture() const {
  if (!tuner_.Settled(kSyncSettleMs)) return nullptr;
  if (model_.separateDemodulator && !demodulator_->Settled(kSyncSettleMs)) return nullptr;
  const Reception reception = Detector().Detect();
  if (!reception.carrier || std::abs(reception.OffsetKHz()) > kSyncWindowKHz) return nullptr;
  // A demodulator chip has judged the modulation itself.
  const bool positive = DescribeStandard(reception.carrier->standard).positive;
  if (!model_.separateDemodulator && positive != tuner_.PositiveModulation()) return nullptr;
  return reception.carrier;
}

const PictureDetector& TunerCan::Detector() const {
  if (model_.separateDemodulator) return *demodulator_;
  return builtIn_;
}

FmReception TunerCan::BuiltInDetector::DetectFm() const {
  if (!can_.tuner_.FmSettled()) return {};
  return can_.tuner_.ReceiveFm(can_.fm_->ifKHz);
}

bool TunerCan::StatusPort::Read(std::span<std::uint8_t> bytes) {
  return can_.tuner_.ReadStatus(bytes, &can_.Detector());
}

}  // namespace zelk::virtual_cards
