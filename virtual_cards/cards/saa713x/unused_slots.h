// Slots of the Vamp interfaces that no driver library calls. Their arguments are not known.
#pragma once

#include "platform/com.h"

#define ZELK_UNUSED_SLOT(number) \
  HRESULT STDMETHODCALLTYPE Reserved##number() override { return E_NOTIMPL; }
