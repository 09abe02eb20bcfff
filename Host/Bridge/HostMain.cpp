// zorvek-bridge-host: a tiny editor process around the plug-in module. It loads the module as
// the editor would, ticks the core ticker and runs game-thread tasks in its main loop, reads
// console commands from standard input, and shuts the module down on Ctrl-C or end of input.
#include "Async/Async.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "HAL/IConsoleManager.h"
#include "HAL/PlatformTime.h"
#include "HostConsoleOutput.h"
#include "HttpServerModule.h"
#include "Misc/ConfigCacheIni.h"
#include "Modules/ModuleManager.h"
#include "SimulatedEditorPort.h"

#include <csignal>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <pthread.h>
#include <sstream>
#include <string>
#include <thread>

DEFINE_LOG_CATEGORY_STATIC(LogZorvekBridgeHost, Log, All);

namespace
{
	// Frames of the host's loop: the longest it sleeps when nothing is due.
	constexpr double IdleFrameSeconds = 0.25;
	// Tickers with no delay run every frame; the host's frame rate for them.
	constexpr double BusyFrameSeconds = 1.0 / 60.0;
	// The module's automatic start is due 0.1 s after load; setup commands from the command
	// line run just after it, so they see the live endpoint address.
	constexpr float SetupCommandDelaySeconds = 0.2f;

	struct FHostOptions
	{
		FString EngineIniPath;
		FString ProjectPath;
		TArray<FString> ExecCommands;
		TArray<FString> SetupCommands;
		bool bReadStandardInput = true;
		bool bShowHelp = false;
		FString Error;
	};

	void PrintUsage()
	{
		std::printf(
			"Usage: zorvek-bridge-host [options]\n"
			"\n"
			"Runs the Zorvek MCP Bridge plug-in module headless, over a simulated editor, and serves\n"
			"its MCP endpoint on http://127.0.0.1:8765/mcp (or the next free port up to 8789).\n"
			"\n"
			"Options:\n"
			"  --project FILE      Serve the simulated project described by FILE (JSON) instead of\n"
			"                      the sample project (Host/SimulatedEditor/SampleProject).\n"
			"  --engine-ini FILE   Read engine configuration from FILE, e.g.\n"
			"                      [ZorvekMCPBridge]\n"
			"                      bAutoStart=False\n"
			"  --exec \"COMMAND\"    Run a console command once the module has started (repeatable).\n"
			"  --no-stdin          Do not read console commands from standard input; run until Ctrl-C.\n"
			"  --snippet CLIENT    Print the setup snippet of an AI client (codex, gemini, antigravity,\n"
			"                      claude-code, cursor, jetbrains-rider, ibm-bob, google-jules) for the\n"
			"                      live endpoint, once the bridge has started.\n"
			"  --write-config CLIENT\n"
			"                      Add the bridge to the client's configuration file (antigravity),\n"
			"                      keeping a timestamped backup, once the bridge has started.\n"
			"  --help              Show this text.\n"
			"\n"
			"Console commands (typed on standard input): ZorvekMCPBridge.Start, ZorvekMCPBridge.Stop,\n"
			"ZorvekMCPBridge.Status, ZorvekMCPBridge.Snippet <client>, ZorvekMCPBridge.WriteConfig <client>,\n"
			"help, quit.\n");
	}

	FHostOptions ParseOptions(int ArgumentCount, char** Arguments)
	{
		FHostOptions Options;
		for (int Index = 1; Index < ArgumentCount; ++Index)
		{
			const std::string Argument = Arguments[Index];
			const bool bHasValue = Index + 1 < ArgumentCount;
			if (Argument == "--help" || Argument == "-h")
			{
				Options.bShowHelp = true;
			}
			else if (Argument == "--no-stdin")
			{
				Options.bReadStandardInput = false;
			}
			else if (Argument == "--engine-ini" && bHasValue)
			{
				Options.EngineIniPath = UECompatFromUtf8(Arguments[++Index]);
			}
			else if (Argument == "--project" && bHasValue)
			{
				Options.ProjectPath = UECompatFromUtf8(Arguments[++Index]);
			}
			else if (Argument == "--exec" && bHasValue)
			{
				Options.ExecCommands.Add(UECompatFromUtf8(Arguments[++Index]));
			}
			else if (Argument == "--snippet" && bHasValue)
			{
				Options.SetupCommands.Add(TEXT("ZorvekMCPBridge.Snippet ") + UECompatFromUtf8(Arguments[++Index]));
			}
			else if (Argument == "--write-config" && bHasValue)
			{
				Options.SetupCommands.Add(TEXT("ZorvekMCPBridge.WriteConfig ") + UECompatFromUtf8(Arguments[++Index]));
			}
			else
			{
				Options.Error = UECompatFromUtf8("Unknown or incomplete option: " + Argument);
			}
		}
		return Options;
	}

	bool LoadEngineIni(const FString& Path)
	{
		std::ifstream File(UECompatToUtf8(Path), std::ios::binary);
		if (!File)
		{
			UE_LOG(LogZorvekBridgeHost, Error, TEXT("Cannot read engine configuration file %s"), *Path);
			return false;
		}
		std::stringstream Content;
		Content << File.rdbuf();
		if (!GConfig->LoadFromText(GEngineIni, UECompatFromUtf8(Content.str())))
		{
			UE_LOG(LogZorvekBridgeHost, Error, TEXT("Engine configuration file %s is not an ini file ([Section] then Key=Value lines)"), *Path);
			return false;
		}
		UE_LOG(LogZorvekBridgeHost, Display, TEXT("Read engine configuration from %s"), *Path);
		return true;
	}

	void RunConsoleCommand(const FString& Line)
	{
		const FString Command = Line.TrimStartAndEnd();
		if (Command.IsEmpty())
		{
			return;
		}
		if (Command == TEXT("quit") || Command == TEXT("exit"))
		{
			RequestEngineExit(TEXT("quit command"));
			return;
		}
		if (Command == TEXT("help"))
		{
			IConsoleManager::Get().ForEachCommandName([](const FString& Name, const TCHAR* Help)
			{
				UE_LOG(LogZorvekBridgeHost, Display, TEXT("%s - %s"), *Name, Help);
			});
			UE_LOG(LogZorvekBridgeHost, Display, TEXT("quit - Shut the module down and exit."));
			return;
		}
		FHostConsoleOutput Output;
		if (!IConsoleManager::Get().ProcessUserConsoleInput(*Command, Output, nullptr))
		{
			UE_LOG(LogZorvekBridgeHost, Display, TEXT("Command not recognized: %s"), *Command);
		}
	}

	// Ctrl-C and termination requests arrive here, on a thread of their own, and become an
	// exit request for the main loop.
	void StartSignalThread(sigset_t Signals)
	{
		std::thread([Signals]()
		{
			int Received = 0;
			if (::sigwait(&Signals, &Received) == 0)
			{
				RequestEngineExit(Received == SIGINT ? TEXT("Ctrl-C") : TEXT("termination signal"));
			}
		}).detach();
	}

	void StartStandardInputThread()
	{
		std::thread([]()
		{
			std::string Line;
			while (std::getline(std::cin, Line))
			{
				FString Command = UECompatFromUtf8(Line);
				AsyncTask(ENamedThreads::GameThread, [Command]() { RunConsoleCommand(Command); });
			}
			RequestEngineExit(TEXT("end of input"));
		}).detach();
	}
}

int main(int ArgumentCount, char** Arguments)
{
	const FHostOptions Options = ParseOptions(ArgumentCount, Arguments);
	if (Options.bShowHelp)
	{
		PrintUsage();
		return 0;
	}
	if (!Options.Error.IsEmpty())
	{
		std::fprintf(stderr, "%s\n\n", UECompatToUtf8(Options.Error).c_str());
		PrintUsage();
		return 2;
	}

	// Block the signals before any thread starts, so only the signal thread receives them.
	sigset_t Signals;
	sigemptyset(&Signals);
	sigaddset(&Signals, SIGINT);
	sigaddset(&Signals, SIGTERM);
	pthread_sigmask(SIG_BLOCK, &Signals, nullptr);
	std::signal(SIGPIPE, SIG_IGN);

	FHostConsoleOutput ConsoleOutput;
	GLog->AddOutputDevice(&ConsoleOutput);

	UE_LOG(LogZorvekBridgeHost, Display, TEXT("Zorvek MCP Bridge headless host (simulated editor, engine API %s)"), TEXT("5.7"));
	if (!Options.EngineIniPath.IsEmpty() && !LoadEngineIni(Options.EngineIniPath))
	{
		GLog->RemoveOutputDevice(&ConsoleOutput);
		return 2;
	}

	FString ProjectError;
	if (!SelectSimulatedEditorProject(Options.ProjectPath, ProjectError))
	{
		UE_LOG(LogZorvekBridgeHost, Error, TEXT("Cannot serve the simulated project: %s"), *ProjectError);
		GLog->RemoveOutputDevice(&ConsoleOutput);
		return 2;
	}

	StartSignalThread(Signals);
	if (!FModuleManager::Get().LoadModule(TEXT("ZorvekMCPBridge"), ELoadModuleFlags::LogFailures))
	{
		GLog->RemoveOutputDevice(&ConsoleOutput);
		return 1;
	}
	for (const FString& Command : Options.ExecCommands)
	{
		RunConsoleCommand(Command);
	}
	if (Options.SetupCommands.Num() > 0)
	{
		const TArray<FString> SetupCommands = Options.SetupCommands;
		FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateLambda([SetupCommands](float DeltaTime)
		{
			for (const FString& Command : SetupCommands)
			{
				RunConsoleCommand(Command);
			}
			return false;
		}), SetupCommandDelaySeconds);
	}
	if (Options.bReadStandardInput)
	{
		StartStandardInputThread();
	}

	FGameThreadTaskQueue& GameThreadTasks = FGameThreadTaskQueue::Get();
	double LastFrameTime = FPlatformTime::Seconds();
	while (!IsEngineExitRequested())
	{
		const double Now = FPlatformTime::Seconds();
		FTSTicker::GetCoreTicker().Tick((float)(Now - LastFrameTime));
		LastFrameTime = Now;
		GameThreadTasks.ProcessPendingTasks();
		if (IsEngineExitRequested())
		{
			break;
		}
		const double UntilTicker = FTSTicker::GetCoreTicker().GetSecondsUntilNextFire();
		const double Wait = UntilTicker < 0.0 ? IdleFrameSeconds : FMath::Clamp(UntilTicker, BusyFrameSeconds, IdleFrameSeconds);
		GameThreadTasks.WaitForTasks(Wait);
	}

	FModuleManager::Get().UnloadModulesAtShutdown();
	GameThreadTasks.ProcessPendingTasks();
	FHttpServerModule::Get().ShutdownModule();
	UE_LOG(LogZorvekBridgeHost, Display, TEXT("Zorvek MCP Bridge headless host exited"));
	GLog->RemoveOutputDevice(&ConsoleOutput);
	return 0;
}
