#pragma once

#include "Containers/UnrealString.h"
#include "Containers/Array.h"
#include <chrono>
#include <thread>

// A started process. The engine's handle wraps the Windows process handle; this one the child's
// process id and, once it has ended, its exit status.
struct FProcHandle
{
	FProcHandle() = default;

	bool IsValid() const { return ProcessId > 0; }
	void Reset() { *this = FProcHandle(); }

private:
	friend struct FPlatformProcess;

	explicit FProcHandle(int32 InProcessId) : ProcessId(InProcessId) {}
	// Collects the exit status once the process has ended; never waits.
	void Poll();
	void RecordExit(int WaitStatus);

	int32 ProcessId = 0;
	bool bEnded = false;
	bool bTerminated = false;
	int32 ExitCode = -1;
};

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

	// Starts URL without waiting for it; an invalid handle when it cannot be started (a missing
	// program or working folder). URL and Params are read as ExecProcess reads them. The child
	// writes both its output and its error output to PipeWriteChild when given, and reads
	// PipeReadChild (or nothing) as its input. The window flags and the priority change nothing
	// here; the process starts in a process group of its own so that TerminateProc can end what
	// it started too.
	static FProcHandle CreateProc(const TCHAR* URL, const TCHAR* Parms, bool bLaunchDetached, bool bLaunchHidden, bool bLaunchReallyHidden,
		uint32* OutProcessID, int32 PriorityModifier, const TCHAR* OptionalWorkingDirectory, void* PipeWriteChild, void* PipeReadChild = nullptr);
	static bool IsProcRunning(FProcHandle& ProcessHandle);
	// False while the process runs. A process ended by TerminateProc reports exit code 0, as the
	// engine's Windows TerminateProc ends it with that code: a killed program must not be judged
	// by its exit code.
	static bool GetProcReturnCode(FProcHandle& ProcHandle, int32* ReturnCode);
	// Ends the process at once; with KillTree also every process it started.
	static void TerminateProc(FProcHandle& ProcessHandle, bool KillTree = false);
	// Lets go of the handle; a process that still runs keeps running.
	static void CloseProc(FProcHandle& ProcessHandle);

	// An anonymous pipe: the child writes into WritePipe, the parent reads ReadPipe without ever
	// blocking. Both ends are closed together by ClosePipe (either may be null).
	static bool CreatePipe(void*& ReadPipe, void*& WritePipe, bool bWritePipeLocal = false);
	static void ClosePipe(void* ReadPipe, void* WritePipe);
	// Replaces Output with whatever the pipe holds right now; false when it held nothing.
	static bool ReadPipeToArray(void* ReadPipe, TArray<uint8>& Output);

	// Opens the address with the desktop's default handler (xdg-open here); a failure is
	// described in Error when given.
	static void LaunchURL(const TCHAR* URL, const TCHAR* Parms, FString* Error);
};
