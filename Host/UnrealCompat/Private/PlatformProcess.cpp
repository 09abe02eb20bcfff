// FPlatformProcess over posix_spawnp: ExecProcess, with both output pipes drained while the
// child runs so a chatty program cannot block on a full pipe, and CreateProc with the engine's
// non-blocking pipes for callers that watch the clock.
#include "HAL/PlatformProcess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace
{
	// Splits at blanks outside double quotes and drops the quotes, as the engine's Unix
	// process launcher does with its argument text.
	std::vector<std::string> SplitArguments(const TCHAR* Params)
	{
		std::vector<std::string> Arguments;
		if (!Params)
		{
			return Arguments;
		}
		const std::string Text = UECompatToUtf8(FStringView(Params));
		std::string Current;
		bool bInQuotes = false;
		bool bHasArgument = false;
		for (const char Character : Text)
		{
			if (Character == '"')
			{
				bInQuotes = !bInQuotes;
				bHasArgument = true;
			}
			else if ((Character == ' ' || Character == '\t') && !bInQuotes)
			{
				if (bHasArgument)
				{
					Arguments.push_back(Current);
					Current.clear();
					bHasArgument = false;
				}
			}
			else
			{
				Current.push_back(Character);
				bHasArgument = true;
			}
		}
		if (bHasArgument)
		{
			Arguments.push_back(Current);
		}
		return Arguments;
	}

	void DrainPipes(int OutDescriptor, int ErrDescriptor, std::string& OutText, std::string& ErrText)
	{
		pollfd Descriptors[2] = {{OutDescriptor, POLLIN, 0}, {ErrDescriptor, POLLIN, 0}};
		std::string* Targets[2] = {&OutText, &ErrText};
		int32 Open = 2;
		char Buffer[4096];
		while (Open > 0)
		{
			if (::poll(Descriptors, 2, -1) < 0)
			{
				if (errno == EINTR)
				{
					continue;
				}
				break;
			}
			for (int32 Index = 0; Index < 2; ++Index)
			{
				if (Descriptors[Index].fd < 0 || Descriptors[Index].revents == 0)
				{
					continue;
				}
				const ssize_t Count = ::read(Descriptors[Index].fd, Buffer, sizeof(Buffer));
				if (Count > 0)
				{
					Targets[Index]->append(Buffer, (size_t)Count);
				}
				else if (Count == 0 || errno != EINTR)
				{
					::close(Descriptors[Index].fd);
					Descriptors[Index].fd = -1;
					--Open;
				}
			}
		}
	}
}

bool FPlatformProcess::ExecProcess(const TCHAR* URL, const TCHAR* Params, int32* OutReturnCode, FString* OutStdOut, FString* OutStdErr,
	const TCHAR* OptionalWorkingDirectory, bool bShouldEndWithParentProcess)
{
	if (!URL || !*URL)
	{
		return false;
	}
	std::vector<std::string> Arguments = SplitArguments(Params);
	Arguments.insert(Arguments.begin(), UECompatToUtf8(FStringView(URL)));
	std::vector<char*> Argv;
	for (std::string& Argument : Arguments)
	{
		Argv.push_back(Argument.data());
	}
	Argv.push_back(nullptr);

	int OutPipe[2];
	int ErrPipe[2];
	if (::pipe(OutPipe) != 0)
	{
		return false;
	}
	if (::pipe(ErrPipe) != 0)
	{
		::close(OutPipe[0]);
		::close(OutPipe[1]);
		return false;
	}

	posix_spawn_file_actions_t Actions;
	posix_spawn_file_actions_init(&Actions);
	posix_spawn_file_actions_adddup2(&Actions, OutPipe[1], STDOUT_FILENO);
	posix_spawn_file_actions_adddup2(&Actions, ErrPipe[1], STDERR_FILENO);
	posix_spawn_file_actions_addclose(&Actions, OutPipe[0]);
	posix_spawn_file_actions_addclose(&Actions, ErrPipe[0]);
	posix_spawn_file_actions_addopen(&Actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
	std::string WorkingDirectory;
	if (OptionalWorkingDirectory && *OptionalWorkingDirectory)
	{
		WorkingDirectory = UECompatToUtf8(FStringView(OptionalWorkingDirectory));
		posix_spawn_file_actions_addchdir_np(&Actions, WorkingDirectory.c_str());
	}

	pid_t ChildId = 0;
	const int SpawnError = ::posix_spawnp(&ChildId, Argv[0], &Actions, nullptr, Argv.data(), environ);
	posix_spawn_file_actions_destroy(&Actions);
	::close(OutPipe[1]);
	::close(ErrPipe[1]);
	if (SpawnError != 0)
	{
		::close(OutPipe[0]);
		::close(ErrPipe[0]);
		return false;
	}

	std::string OutText;
	std::string ErrText;
	DrainPipes(OutPipe[0], ErrPipe[0], OutText, ErrText);

	int Status = 0;
	while (::waitpid(ChildId, &Status, 0) < 0 && errno == EINTR)
	{
	}
	if (OutReturnCode)
	{
		*OutReturnCode = WIFEXITED(Status) ? WEXITSTATUS(Status) : -1;
	}
	if (OutStdOut)
	{
		*OutStdOut = UECompatFromUtf8(OutText);
	}
	if (OutStdErr)
	{
		*OutStdErr = UECompatFromUtf8(ErrText);
	}
	return true;
}

namespace
{
	// What CreatePipe hands out: one end of a pipe.
	struct FPipeEnd
	{
		int Descriptor = -1;
	};

	int DescriptorOf(void* Pipe)
	{
		return Pipe ? static_cast<FPipeEnd*>(Pipe)->Descriptor : -1;
	}
}

void FProcHandle::RecordExit(int WaitStatus)
{
	bEnded = true;
	if (bTerminated)
	{
		ExitCode = 0;
	}
	else if (WIFEXITED(WaitStatus))
	{
		ExitCode = WEXITSTATUS(WaitStatus);
	}
	else
	{
		ExitCode = -1;
	}
}

void FProcHandle::Poll()
{
	if (!IsValid() || bEnded)
	{
		return;
	}
	int Status = 0;
	pid_t Result = 0;
	do
	{
		Result = ::waitpid(ProcessId, &Status, WNOHANG);
	}
	while (Result < 0 && errno == EINTR);
	if (Result == ProcessId)
	{
		RecordExit(Status);
	}
	else if (Result < 0)
	{
		// Someone else collected it already; it has ended either way.
		bEnded = true;
	}
}

FProcHandle FPlatformProcess::CreateProc(const TCHAR* URL, const TCHAR* Parms, bool bLaunchDetached, bool bLaunchHidden, bool bLaunchReallyHidden,
	uint32* OutProcessID, int32 PriorityModifier, const TCHAR* OptionalWorkingDirectory, void* PipeWriteChild, void* PipeReadChild)
{
	if (!URL || !*URL)
	{
		return FProcHandle();
	}
	std::vector<std::string> Arguments = SplitArguments(Parms);
	Arguments.insert(Arguments.begin(), UECompatToUtf8(FStringView(URL)));
	std::vector<char*> Argv;
	for (std::string& Argument : Arguments)
	{
		Argv.push_back(Argument.data());
	}
	Argv.push_back(nullptr);

	posix_spawn_file_actions_t Actions;
	posix_spawn_file_actions_init(&Actions);
	if (PipeReadChild)
	{
		posix_spawn_file_actions_adddup2(&Actions, DescriptorOf(PipeReadChild), STDIN_FILENO);
	}
	else
	{
		posix_spawn_file_actions_addopen(&Actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
	}
	if (PipeWriteChild)
	{
		posix_spawn_file_actions_adddup2(&Actions, DescriptorOf(PipeWriteChild), STDOUT_FILENO);
		posix_spawn_file_actions_adddup2(&Actions, DescriptorOf(PipeWriteChild), STDERR_FILENO);
	}
	std::string WorkingDirectory;
	if (OptionalWorkingDirectory && *OptionalWorkingDirectory)
	{
		WorkingDirectory = UECompatToUtf8(FStringView(OptionalWorkingDirectory));
		posix_spawn_file_actions_addchdir_np(&Actions, WorkingDirectory.c_str());
	}
	posix_spawnattr_t Attributes;
	posix_spawnattr_init(&Attributes);
	posix_spawnattr_setflags(&Attributes, POSIX_SPAWN_SETPGROUP);
	posix_spawnattr_setpgroup(&Attributes, 0);

	pid_t ChildId = 0;
	const int SpawnError = ::posix_spawnp(&ChildId, Argv[0], &Actions, &Attributes, Argv.data(), environ);
	posix_spawn_file_actions_destroy(&Actions);
	posix_spawnattr_destroy(&Attributes);
	if (SpawnError != 0)
	{
		return FProcHandle();
	}
	if (OutProcessID)
	{
		*OutProcessID = (uint32)ChildId;
	}
	return FProcHandle((int32)ChildId);
}

bool FPlatformProcess::IsProcRunning(FProcHandle& ProcessHandle)
{
	ProcessHandle.Poll();
	return ProcessHandle.IsValid() && !ProcessHandle.bEnded;
}

bool FPlatformProcess::GetProcReturnCode(FProcHandle& ProcHandle, int32* ReturnCode)
{
	if (IsProcRunning(ProcHandle) || !ProcHandle.IsValid())
	{
		return false;
	}
	if (ReturnCode)
	{
		*ReturnCode = ProcHandle.ExitCode;
	}
	return true;
}

void FPlatformProcess::TerminateProc(FProcHandle& ProcessHandle, bool KillTree)
{
	ProcessHandle.Poll();
	if (!ProcessHandle.IsValid() || ProcessHandle.bEnded)
	{
		return;
	}
	ProcessHandle.bTerminated = true;
	// The child leads its own process group (CreateProc), so the group is what it started.
	::kill(KillTree ? -ProcessHandle.ProcessId : ProcessHandle.ProcessId, SIGKILL);
	int Status = 0;
	while (::waitpid(ProcessHandle.ProcessId, &Status, 0) < 0 && errno == EINTR)
	{
	}
	ProcessHandle.RecordExit(Status);
}

void FPlatformProcess::CloseProc(FProcHandle& ProcessHandle)
{
	ProcessHandle.Poll();
	if (ProcessHandle.IsValid() && !ProcessHandle.bEnded)
	{
		// It keeps running; someone has to collect it when it ends.
		const pid_t ChildId = ProcessHandle.ProcessId;
		std::thread([ChildId]()
		{
			int Status = 0;
			while (::waitpid(ChildId, &Status, 0) < 0 && errno == EINTR)
			{
			}
		}).detach();
	}
	ProcessHandle.Reset();
}

bool FPlatformProcess::CreatePipe(void*& ReadPipe, void*& WritePipe, bool bWritePipeLocal)
{
	int Descriptors[2];
	if (::pipe2(Descriptors, O_CLOEXEC) != 0)
	{
		ReadPipe = nullptr;
		WritePipe = nullptr;
		return false;
	}
	::fcntl(Descriptors[0], F_SETFL, ::fcntl(Descriptors[0], F_GETFL) | O_NONBLOCK);
	ReadPipe = new FPipeEnd{Descriptors[0]};
	WritePipe = new FPipeEnd{Descriptors[1]};
	return true;
}

void FPlatformProcess::ClosePipe(void* ReadPipe, void* WritePipe)
{
	for (void* Pipe : {ReadPipe, WritePipe})
	{
		if (Pipe)
		{
			::close(DescriptorOf(Pipe));
			delete static_cast<FPipeEnd*>(Pipe);
		}
	}
}

bool FPlatformProcess::ReadPipeToArray(void* ReadPipe, TArray<uint8>& Output)
{
	Output.Reset();
	const int Descriptor = DescriptorOf(ReadPipe);
	if (Descriptor < 0)
	{
		return false;
	}
	uint8 Buffer[4096];
	while (true)
	{
		const ssize_t Count = ::read(Descriptor, Buffer, sizeof(Buffer));
		if (Count > 0)
		{
			Output.Append(Buffer, (int32)Count);
			continue;
		}
		if (Count < 0 && errno == EINTR)
		{
			continue;
		}
		break;
	}
	return Output.Num() > 0;
}

void FPlatformProcess::LaunchURL(const TCHAR* URL, const TCHAR* Parms, FString* Error)
{
	FString Address = URL ? FString(URL) : FString();
	if (Parms && *Parms)
	{
		Address += TEXT(" ");
		Address += Parms;
	}
	int32 ExitCode = -1;
	FString StdErr;
	const bool bLaunched = ExecProcess(TEXT("xdg-open"), *(TEXT("\"") + Address + TEXT("\"")), &ExitCode, nullptr, &StdErr);
	if (Error)
	{
		*Error = !bLaunched ? FString(TEXT("xdg-open is not available"))
			: (ExitCode != 0 ? StdErr.TrimStartAndEnd() : FString());
	}
}
