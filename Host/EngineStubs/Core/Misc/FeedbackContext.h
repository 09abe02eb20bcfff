#pragma once

#include "Misc/OutputDevice.h"

// The editor's warning and progress device; GWarn is the global instance (declared by the
// engine in CoreGlobals.h).
class FFeedbackContext : public FOutputDevice
{
};

extern CORE_API FFeedbackContext* GWarn;
