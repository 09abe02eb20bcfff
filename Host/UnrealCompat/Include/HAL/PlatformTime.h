#pragma once

#include "CoreTypes.h"
#include <chrono>

struct FPlatformTime
{
	static double Seconds()
	{
		return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
	}
	static uint64 Cycles64() { return (uint64)std::chrono::steady_clock::now().time_since_epoch().count(); }
	static double GetSecondsPerCycle64() { return (double)std::chrono::steady_clock::period::num / (double)std::chrono::steady_clock::period::den; }
};
