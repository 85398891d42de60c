// The display names of the tuner modules.
#include <cstring>
#include <iterator>

#include "ZElkAPI.h"

namespace {

// Indexed by tuner type code.
constexpr const char* kTunerNames[] = {
    "FI1216MK2",
    "FM1216MK2",
    "FI1216MF",
    "FM1216MF",
    "FI1236MK2",
    "FM1236MK2",
    "FI1246MK2",
    "FM1246MK2",
    "FI1256MK2",
    "FM1256MK2",
    "FI1286MK2",
    "FM1286MK2",
    "FI1236MK3",
    "FM1236MK3",
    "FI1216MEMK3",
    "FM1216MEMK3",
    "FI1286MK3",
    "FM1286MK3",
    "FI1256MK3",
    "FM1256MK3",
    "FQ1216MEMK5",
    "FM1216MEMK5",
    "FQ1236MK5",
    "FM1236MK5",
    "VP2XSR",
    "TCL2002MI_3",
    "TCL2002MI_3F",
    "TCL2002MB_3",
    "TCL2002MB_3F",
    "TCL2002N_5",
    "TCL2002N_5F",
    "TNF_5831_MFI",
    "TNF_5831_MFF",
    "TNF_9531_BDF",
    "TNF_9531_BDFF",
    "VP13 - 45.75MHz for USA",
    "VP13 - 58.75MHz for Japan",
    "VP27 No SAP - 58.75MHz",
    "Double Tuners (K38)",
    "ALPS",
    "Silicon",
    "Silicon",
    "TNF_5533_MF",
    "TNF_9533_BDF",
    "TNF_5833_MFF",
    "TNF_9833_BDFF",
    "ALPS_TSEH1",
    "ALPS_TSEZ1",
    "ALPS_TSEJ1",
    "PARTSNIC_NTSC",
    "PARTSNIC_NTSC_J",
    "PARTSNIC_PAL",
};
static_assert(std::size(kTunerNames) == 52);

}  // namespace

HRESULT ZELK_CALL ZELK_GetTunerName(char* buffer, uint32_t size) {
  if (!buffer) return ZELK_E_FAIL;
  std::memset(buffer, 0, size);
  uint32_t type = 0;
  if (const HRESULT result = ZELK_GetTunerType(&type); result != ZELK_S_OK) return result;
  const char* name = type < std::size(kTunerNames) ? kTunerNames[type] : "Unknow!";
  // Not limited by `size`: applications pass any size and rely on the whole name.
  std::memcpy(buffer, name, std::strlen(name) + 1);
  return ZELK_S_OK;
}
