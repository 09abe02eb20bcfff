#pragma once

#include "Containers/UnrealString.h"
#include <chrono>
#include <thread>

struct FPlatformProcess
{
	static void Sleep(float Seconds) { std::this_thread::sleep_for(std::chrono::duration<float>(Seconds)); }
	static uint32 GetCurrentProcessId();
};
