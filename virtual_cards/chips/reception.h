// How a picture travels from the antenna socket to the video decoder, and a radio station to its
// detector.
#pragma once

#include "virtual_cards/air.h"

namespace zelk::virtual_cards {

// What a detector finds around the frequency to which its tuner is set.
struct Reception {
  double tunedKHz = 0;  // RF whose carrier lies exactly on the picture IF, 0: not tuned
  const TvCarrier* carrier = nullptr;  // null: nothing strong enough within the AFC window

  // Carrier minus tuned frequency.
  double OffsetKHz() const { return carrier ? carrier->pictureKHz - tunedKHz : 0; }
};

// A detector's AFC follows a carrier this far to either side.
inline constexpr double kAfcWindowKHz = 1000;
// A picture is clean enough for sync separation this far beside the carrier.
inline constexpr double kSyncWindowKHz = 600;
// Below this level the picture drowns in noise.
inline constexpr double kSensitivityDbuV = 40;

// What a receiver finds that is tuned to an RF frequency.
Reception ReceiveAt(const Air& air, double tunedKHz);

// Turns the IF into a picture: a chip of its own or a section of the tuner module.
class PictureDetector {
 public:
  virtual ~PictureDetector() = default;
  // What the detector would show once everything has settled. Empty while it is not set up for TV.
  virtual Reception Detect() const = 0;
};

// What an FM detector finds around the frequency to which its tuner is set.
struct FmReception {
  double tunedKHz = 0;                 // RF whose carrier lies exactly on the FM IF, 0: not tuned
  const FmStation* station = nullptr;  // null: nothing strong enough within reach

  // Carrier minus tuned frequency.
  double OffsetKHz() const { return station ? station->carrierKHz - tunedKHz : 0; }
  // The same for a circuit that follows a carrier less far.
  FmReception Within(double windowKHz) const;
  // The station when it lies in the flat part of the IF filter, where level and pilot are
  // detected.
  const FmStation* Centred() const { return Within(kFmFlatKHz).station; }

  static constexpr double kFmFlatKHz = 75;
};

// A carrier leaves its traces in the FM IF this far beside the tuned frequency…
inline constexpr double kFmReachKHz = 200;
// …and an AFC voltage is fit to be converted to this far.
inline constexpr double kFmAfcWindowKHz = 150;

// What an FM receiver finds that is tuned to an RF frequency. The sensitivity is that for pictures.
FmReception ReceiveFmAt(const Air& air, double tunedKHz);

// Demodulates the FM IF: a chip of its own or a section of the tuner module.
class FmDetector {
 public:
  virtual ~FmDetector() = default;
  // What the detector shows now: empty while it is not set up for FM and until it has settled.
  virtual FmReception DetectFm() const = 0;
};

// A tuner with its picture detector, as the rest of a card sees it.
class FrontEnd {
 public:
  virtual ~FrontEnd() = default;
  // Picture carrier in kHz that the tuner is set to, or the FM station while its FM section is
  // selected; 0 while nothing valid was written to it.
  virtual double TunedKHz() const = 0;
  // The carrier whose picture reaches the video decoder with sync that it can lock to, null for
  // none.
  virtual const TvCarrier* Picture() const = 0;
  // A tuner in power-down receives nothing and does not acknowledge; its registers survive.
  virtual void SetPowered(bool powered) = 0;
};

}  // namespace zelk::virtual_cards
