#pragma once
#include "platform/control.h"
