#pragma once

#include "Containers/UnrealString.h"
#include <chrono>
#include <thread>

struct FPlatformProcess
{
	static void Sleep(float Seconds) { std::this_thread::sleep_for(std::chrono::duration<float>(Seconds)); }
	static uint32 GetCurrentProcessId();

	// Runs URL with the argument text Params and waits for it, collecting its exit code and
	// output. The executable is looked up on PATH when URL names no folder; Params is split at
	// blanks outside double quotes, and the quotes are removed, as the engine does on Unix.
	// Returns false when the process could not be started.
	static bool ExecProcess(const TCHAR* URL, const TCHAR* Params, int32* OutReturnCode, FString* OutStdOut, FString* OutStdErr,
		const TCHAR* OptionalWorkingDirectory = nullptr, bool bShouldEndWithParentProcess = false);

	// Opens the address with the desktop's default handler (xdg-open here); a failure is
	// described in Error when given.
	static void LaunchURL(const TCHAR* URL, const TCHAR* Parms, FString* Error);
};
