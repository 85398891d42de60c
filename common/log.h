// Diagnostic log files: plain text in the current directory, one record for each failure.
#pragma once

namespace zelk {

// Appends one record to `fileName`: a line break (0x0D 0x0A), then `message` without an end of its
// own. A file larger than 1 MiB is started anew first. The file is opened and closed for every
// record. A file that cannot be written changes nothing for the caller: nothing is reported.
void AppendLogMessage(const char* message, const char* fileName);

}  // namespace zelk
