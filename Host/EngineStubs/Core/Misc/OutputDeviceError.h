#pragma once

#include "Misc/OutputDevice.h"

// The device fatal errors go to; GError (CoreGlobals.h) is the global instance.
class FOutputDeviceError : public FOutputDevice
{
};
