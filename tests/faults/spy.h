// COM interfaces of drivers and of the system as the library gets them: each one is a stand-in
// through which every call passes (calls.h). Whatever such a call hands out is a stand-in too.
#pragma once

#include "platform/com_ptr.h"

namespace zelk::faults {

// A stand-in for the interface, with a reference of its own to it. Null for null.
IUnknown* StandInFor(IUnknown* object);
// The same for what a call handed out: takes the reference over.
void* StandInOf(REFIID iid, void* object);

// Stand-ins that somebody still holds: all of them, and those for an interface of this identity.
int LiveStandIns();
int LiveStandIns(REFIID iid);

}  // namespace zelk::faults
