#include "Setup/ZorvekMCPBridgeClientCli.h"

#include "Async/Async.h"
#include "Containers/StringConv.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformMisc.h"
#include "HAL/PlatformProcess.h"
#include "HAL/PlatformTime.h"
#include "Misc/Paths.h"
#include "Setup/ZorvekMCPBridgeAISetup.h"
#include "Setup/ZorvekMCPBridgeConfiguredEndpoint.h"

#include <atomic>

const double ZorvekMCPBridgeAISetup::DefaultClientCommandTimeoutSeconds = 60.0;
const double ZorvekMCPBridgeAISetup::FindCliTimeoutSeconds = 15.0;

namespace
{
	const TCHAR* const FallbackCommandShell = TEXT("C:\\Windows\\System32\\cmd.exe");

	// cmd.exe treats these as separators or operators in an unquoted file name.
	const TCHAR* const ShellCharactersNeedingQuotes = TEXT(" \t&()[]{}^=;!'+,`~");

	// How often a running program's pipe is read and its clock checked.
	const float ProcessPollSeconds = 0.01f;

	// Background actions still running, and whether the module asked them to stop: their code
	// lives in the module, so none may outlive it.
	std::atomic<int32> RunningBackgroundActions{0};
	std::atomic<bool> bStopBackgroundActions{false};

	FString DescribeOutput(const FZorvekMCPBridgeProcessResult& Result)
	{
		const FString StdOut = Result.StdOut.TrimStartAndEnd();
		const FString StdErr = Result.StdErr.TrimStartAndEnd();
		if (StdOut.IsEmpty() || StdErr.IsEmpty())
		{
			return StdOut + StdErr;
		}
		return StdOut + TEXT("\n") + StdErr;
	}

	// "60 seconds", "0.5 seconds".
	FString DescribeSeconds(double Seconds)
	{
		// The engine checks Printf formats at compile time, so each is a literal of its own.
		const int32 WholeSeconds = (int32)Seconds;
		if (WholeSeconds == 1 && Seconds == 1.0)
		{
			return TEXT("1 second");
		}
		if ((double)WholeSeconds == Seconds)
		{
			return FString::Printf(TEXT("%d seconds"), WholeSeconds);
		}
		return FString::Printf(TEXT("%.1f seconds"), Seconds);
	}

	void AppendPipe(void* ReadPipe, TArray<uint8>& Output, TArray<uint8>& Chunk, bool& bOutRead)
	{
		// Not in the reference notes; check against the engine: ReadPipeToArray replaces Chunk
		// with what the pipe holds and never waits.
		bOutRead = FPlatformProcess::ReadPipeToArray(ReadPipe, Chunk);
		if (bOutRead)
		{
			Output.Append(Chunk);
		}
	}
}

FZorvekMCPBridgeProcessResult FZorvekMCPBridgePlatformProcessRunner::Run(const FString& Executable, const FString& Arguments,
	const FZorvekMCPBridgeProcessOptions& Options)
{
	// ExecProcess cannot be given a time limit, so the program runs through CreateProc with a
	// pipe that is read while the clock is watched.
	FZorvekMCPBridgeProcessResult Result;
	void* ReadPipe = nullptr;
	void* WritePipe = nullptr;
	// Not in the reference notes; check against the engine: CreatePipe and ClosePipe.
	if (!FPlatformProcess::CreatePipe(ReadPipe, WritePipe))
	{
		return Result;
	}
	const TCHAR* WorkingDirectory = Options.WorkingDirectory.IsEmpty() ? nullptr : *Options.WorkingDirectory;
	// Not in the reference notes; check against the engine: CreateProc(URL, Parms, bLaunchDetached,
	// bLaunchHidden, bLaunchReallyHidden, OutProcessID, PriorityModifier, OptionalWorkingDirectory,
	// PipeWriteChild, PipeReadChild). Hidden, so no console window flashes up.
	FProcHandle Process = FPlatformProcess::CreateProc(*Executable, *Arguments, false, true, true, nullptr, 0, WorkingDirectory, WritePipe, nullptr);
	if (!Process.IsValid())
	{
		FPlatformProcess::ClosePipe(ReadPipe, WritePipe);
		return Result;
	}
	Result.bLaunched = true;

	TArray<uint8> Output;
	TArray<uint8> Chunk;
	bool bRead = false;
	const double StartSeconds = FPlatformTime::Seconds();
	// Not in the reference notes; check against the engine: IsProcRunning, TerminateProc (with
	// KillTree), GetProcReturnCode and CloseProc.
	while (FPlatformProcess::IsProcRunning(Process))
	{
		AppendPipe(ReadPipe, Output, Chunk, bRead);
		if (bStopBackgroundActions)
		{
			FPlatformProcess::TerminateProc(Process, true);
			Result.bStopped = true;
			break;
		}
		if (Options.TimeoutSeconds > 0.0 && FPlatformTime::Seconds() - StartSeconds >= Options.TimeoutSeconds)
		{
			// The shell's children (the client's node process, say) go with it.
			FPlatformProcess::TerminateProc(Process, true);
			Result.bTimedOut = true;
			break;
		}
		if (!bRead)
		{
			FPlatformProcess::Sleep(ProcessPollSeconds);
		}
	}
	// What it wrote just before it ended.
	AppendPipe(ReadPipe, Output, Chunk, bRead);
	// A terminated process reports the exit code it was ended with, which says nothing.
	FPlatformProcess::GetProcReturnCode(Process, &Result.ExitCode);
	FPlatformProcess::CloseProc(Process);
	FPlatformProcess::ClosePipe(ReadPipe, WritePipe);

	Output.Add(0);
	Result.StdOut = UTF8_TO_TCHAR(Output.GetData());
	return Result;
}

FString ZorvekMCPBridgeAISetup::GetClientCommandWorkingDirectory()
{
	// The engine hands out the project folder relative to its own; a program needs it whole.
	FString Directory = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	// Not in the reference notes; check against the engine: FPaths::NormalizeDirectoryName drops
	// the trailing slash.
	FPaths::NormalizeDirectoryName(Directory);
	return Directory;
}

FZorvekMCPBridgeProcessOptions ZorvekMCPBridgeAISetup::MakeClientCommandOptions()
{
	FZorvekMCPBridgeProcessOptions Options;
	Options.WorkingDirectory = GetClientCommandWorkingDirectory();
	Options.TimeoutSeconds = DefaultClientCommandTimeoutSeconds;
	return Options;
}

FString ZorvekMCPBridgeAISetup::GetCommandShell()
{
	const FString Shell = FPlatformMisc::GetEnvironmentVariable(TEXT("ComSpec"));
	return Shell.IsEmpty() ? FString(FallbackCommandShell) : Shell;
}

FString ZorvekMCPBridgeAISetup::QuoteExecutableForShell(const FString& Executable)
{
	const bool bAlreadyQuoted = Executable.Len() >= 2 && Executable.StartsWith(TEXT("\"")) && Executable.EndsWith(TEXT("\""));
	if (bAlreadyQuoted)
	{
		return Executable;
	}
	bool bNeedsQuotes = false;
	for (const TCHAR* Special = ShellCharactersNeedingQuotes; *Special && !bNeedsQuotes; ++Special)
	{
		int32 Index = INDEX_NONE;
		bNeedsQuotes = Executable.FindChar(*Special, Index);
	}
	return bNeedsQuotes ? TEXT("\"") + Executable + TEXT("\"") : Executable;
}

FString ZorvekMCPBridgeAISetup::BuildShellArguments(const FString& Executable, const FString& Arguments)
{
	// With /S the shell strips exactly the outer pair of quotes and keeps the inner ones, so a
	// quoted executable path survives.
	return FString::Printf(TEXT("/S /C \"%s %s\""), *QuoteExecutableForShell(Executable), *Arguments);
}

bool ZorvekMCPBridgeAISetup::FindCliOnPath(const FString& ExecutableName, FString& OutPath, const FZorvekMCPBridgeProcessOptions& Options,
	IZorvekMCPBridgeProcessRunner& Runner)
{
	OutPath.Reset();
	const FZorvekMCPBridgeProcessResult Result = Runner.Run(TEXT("where.exe"), ExecutableName, Options);
	if (!Result.Succeeded())
	{
		return false;
	}
	TArray<FString> Lines;
	Result.StdOut.ParseIntoArrayLines(Lines, false);
	for (const FString& Line : Lines)
	{
		const FString Trimmed = Line.TrimStartAndEnd();
		if (!Trimmed.IsEmpty())
		{
			OutPath = Trimmed;
			return true;
		}
	}
	return false;
}

bool ZorvekMCPBridgeAISetup::FindCliOnPath(const FString& ExecutableName, FString& OutPath)
{
	FZorvekMCPBridgePlatformProcessRunner Runner;
	FZorvekMCPBridgeProcessOptions Options;
	Options.TimeoutSeconds = FindCliTimeoutSeconds;
	return FindCliOnPath(ExecutableName, OutPath, Options, Runner);
}

FZorvekMCPBridgeProcessResult ZorvekMCPBridgeAISetup::RunClientCommand(const FString& Executable, const FString& Arguments,
	const FZorvekMCPBridgeProcessOptions& Options, IZorvekMCPBridgeProcessRunner& Runner)
{
	return Runner.Run(GetCommandShell(), BuildShellArguments(Executable, Arguments), Options);
}

FZorvekMCPBridgeProcessResult ZorvekMCPBridgeAISetup::RunClientCommand(const FString& Executable, const FString& Arguments,
	const FZorvekMCPBridgeProcessOptions& Options)
{
	FZorvekMCPBridgePlatformProcessRunner Runner;
	return RunClientCommand(Executable, Arguments, Options, Runner);
}

namespace
{
	// Finds the client's tool and runs one of its commands; the wording is shared by install and
	// verify, the success message is the caller's.
	FZorvekMCPBridgeSetupActionResult RunClientCliAction(const FZorvekMCPBridgeClientDescriptor& Client, const FString& Executable, const FString& Arguments,
		const FString& SuccessMessage, const FZorvekMCPBridgeProcessOptions& Options, IZorvekMCPBridgeProcessRunner& Runner)
	{
		FZorvekMCPBridgeSetupActionResult Action;
		const FString CommandLine = Executable + TEXT(" ") + Arguments;
		// Otherwise the shell could not start, and the message would blame the shell.
		if (!Options.WorkingDirectory.IsEmpty() && !IFileManager::Get().DirectoryExists(*Options.WorkingDirectory))
		{
			Action.bFallBackToSnippet = true;
			Action.Message = FString::Printf(TEXT("Cannot run \"%s\": its folder %s does not exist. Copy the snippet instead."),
				*CommandLine, *Options.WorkingDirectory);
			return Action;
		}

		FZorvekMCPBridgeProcessOptions FindOptions = Options;
		if (FindOptions.TimeoutSeconds <= 0.0 || FindOptions.TimeoutSeconds > ZorvekMCPBridgeAISetup::FindCliTimeoutSeconds)
		{
			FindOptions.TimeoutSeconds = ZorvekMCPBridgeAISetup::FindCliTimeoutSeconds;
		}
		FString FoundPath;
		if (!ZorvekMCPBridgeAISetup::FindCliOnPath(Executable, FoundPath, FindOptions, Runner))
		{
			Action.bFallBackToSnippet = true;
			Action.Message = FString::Printf(TEXT("%s was not found on PATH. Install the %s command-line tool, or copy the snippet into %s's configuration instead."),
				*Executable, *Client.DisplayName, *Client.DisplayName);
			return Action;
		}

		const FZorvekMCPBridgeProcessResult Result = ZorvekMCPBridgeAISetup::RunClientCommand(Executable, Arguments, Options, Runner);
		Action.Output = DescribeOutput(Result);
		if (!Result.bLaunched)
		{
			Action.bFallBackToSnippet = true;
			Action.Message = FString::Printf(TEXT("Could not start the command shell %s to run \"%s\". Copy the snippet instead."),
				*ZorvekMCPBridgeAISetup::GetCommandShell(), *CommandLine);
			return Action;
		}
		if (Result.bTimedOut)
		{
			Action.bFallBackToSnippet = true;
			Action.Message = FString::Printf(TEXT("\"%s\" did not finish within %s and was stopped. Copy the snippet instead."),
				*CommandLine, *DescribeSeconds(Options.TimeoutSeconds));
			return Action;
		}
		if (Result.ExitCode != 0)
		{
			Action.bFallBackToSnippet = true;
			Action.Message = FString::Printf(TEXT("\"%s\" failed with exit code %d. Copy the snippet instead."), *CommandLine, Result.ExitCode);
			return Action;
		}
		Action.bSucceeded = true;
		Action.Message = SuccessMessage;
		return Action;
	}
}

FZorvekMCPBridgeSetupActionResult ZorvekMCPBridgeAISetup::InstallWithClientCli(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl,
	const FZorvekMCPBridgeProcessOptions& Options, IZorvekMCPBridgeProcessRunner& Runner)
{
	if (!Client.HasInstallCommand())
	{
		FZorvekMCPBridgeSetupActionResult Action;
		Action.bFallBackToSnippet = true;
		Action.Message = FString::Printf(TEXT("%s has no install command. Copy the snippet instead."), *Client.DisplayName);
		return Action;
	}
	const FString Success = FString::Printf(TEXT("Added %s to %s at %s. Restart %s so it reloads MCP servers."),
		ServerName, *Client.DisplayName, *EndpointUrl, *Client.DisplayName);
	return RunClientCliAction(Client, Client.CliExecutable, BuildInstallArguments(Client, EndpointUrl), Success, Options, Runner);
}

FZorvekMCPBridgeSetupActionResult ZorvekMCPBridgeAISetup::VerifyWithClientCli(const FZorvekMCPBridgeClientDescriptor& Client, const FString& RunningEndpointUrl,
	const FZorvekMCPBridgeProcessOptions& Options, IZorvekMCPBridgeProcessRunner& Runner)
{
	if (!Client.HasVerifyCommand())
	{
		FZorvekMCPBridgeSetupActionResult Action;
		Action.Message = FString::Printf(TEXT("%s has no command that lists its MCP servers."), *Client.DisplayName);
		return Action;
	}
	FZorvekMCPBridgeSetupActionResult Action = RunClientCliAction(Client, Client.CliVerifyExecutable, Client.CliVerifyArguments,
		FString::Printf(TEXT("%s lists its MCP servers below; look for %s."), *Client.DisplayName, ServerName), Options, Runner);
	if (!Action.bSucceeded)
	{
		return Action;
	}
	FString ListedAddress;
	if (!FindListedAddress(Action.Output, ListedAddress) && !Action.Output.Contains(ServerName))
	{
		Action.bSucceeded = false;
		Action.bFallBackToSnippet = true;
		Action.Message = FString::Printf(TEXT("%s does not list %s yet. Run the install command or copy the snippet."), *Client.DisplayName, ServerName);
	}
	else if (NamesAnotherPort(ListedAddress, RunningEndpointUrl))
	{
		Action.bSucceeded = false;
		Action.bFallBackToSnippet = true;
		Action.Message = FString::Printf(TEXT("%s lists %s at %s, but the bridge now runs at %s. Remove that entry with the client and run the install command again, or copy the snippet."),
			*Client.DisplayName, ServerName, *ListedAddress, *RunningEndpointUrl);
	}
	return Action;
}

void ZorvekMCPBridgeAISetup::RunSetupActionInBackground(TUniqueFunction<FZorvekMCPBridgeSetupActionResult()> Action,
	TUniqueFunction<void(const FZorvekMCPBridgeSetupActionResult&)> OnFinished)
{
	// A thread of its own rather than the pool: the action mostly waits, for up to a minute.
	++RunningBackgroundActions;
	Async(EAsyncExecution::Thread, [Action = MoveTemp(Action), OnFinished = MoveTemp(OnFinished)]() mutable
	{
		FZorvekMCPBridgeSetupActionResult Result = Action();
		if (!bStopBackgroundActions)
		{
			AsyncTask(ENamedThreads::GameThread, [Result = MoveTemp(Result), OnFinished = MoveTemp(OnFinished)]()
			{
				OnFinished(Result);
			});
		}
		--RunningBackgroundActions;
	});
}

bool ZorvekMCPBridgeAISetup::StopBackgroundActions(double TimeoutSeconds)
{
	bStopBackgroundActions = true;
	const double StartSeconds = FPlatformTime::Seconds();
	while (RunningBackgroundActions > 0 && FPlatformTime::Seconds() - StartSeconds < TimeoutSeconds)
	{
		FPlatformProcess::Sleep(ProcessPollSeconds);
	}
	const bool bAllStopped = RunningBackgroundActions == 0;
	bStopBackgroundActions = false;
	return bAllStopped;
}
