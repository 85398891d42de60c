#include "backends/bt_family/family_log.h"

#include "common/log.h"
#include "platform/win32.h"

namespace zelk {

void FamilyLog::Say(const char* text, const char* text2, const char* text3) const {
  // wsprintfA stops at 1024 bytes; no line of these families comes near.
  char line[1024];
  wsprintfA(line, "%s%s%s%s", tag, text, text2, text3);
  AppendLogMessage(line, fileName);
}

}  // namespace zelk
