// How a picture travels from the antenna socket to the video decoder.
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

// A tuner with its picture detector, as the rest of a card sees it.
class FrontEnd {
 public:
  virtual ~FrontEnd() = default;
  // Picture carrier in kHz that the tuner is set to, 0 while nothing valid was written to it.
  virtual double TunedKHz() const = 0;
  // The carrier whose picture reaches the video decoder with sync that it can lock to, null for
  // none.
  virtual const TvCarrier* Picture() const = 0;
  // A tuner in power-down receives nothing and does not acknowledge; its registers survive.
  virtual void SetPowered(bool powered) = 0;
};

}  // namespace zelk::virtual_cards
