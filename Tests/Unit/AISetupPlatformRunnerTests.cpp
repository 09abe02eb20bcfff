// Client commands on real programs through the engine's process API: the time limit ends a
// program and what it started, the working folder is the one asked for, the output arrives, and
// the wizard's actions run off the game thread and report back through it.
#include "AISetupTestSupport.h"
#include "Async/Async.h"
#include "CoreGlobals.h"
#include "HAL/PlatformProcess.h"
#include "HAL/PlatformTime.h"
#include "ZorvekTestSupport.h"

#include <atomic>

namespace
{
	FZorvekMCPBridgeProcessResult RunShell(const std::string& Script, const FZorvekMCPBridgeProcessOptions& Options)
	{
		FZorvekMCPBridgePlatformProcessRunner Runner;
		return Runner.Run(TEXT("sh"), TEXT("-c \"") + UECompatFromUtf8(Script) + TEXT("\""), Options);
	}

	FZorvekMCPBridgeProcessOptions InFolder(const FString& Folder, double TimeoutSeconds)
	{
		FZorvekMCPBridgeProcessOptions Options;
		Options.WorkingDirectory = Folder;
		Options.TimeoutSeconds = TimeoutSeconds;
		return Options;
	}
}

TEST(AISetupPlatformRunner, RunsInTheGivenFolderAndCollectsOutputErrorsAndExitCode)
{
	FTemporaryFolder Folder;
	std::filesystem::create_directories(Folder.Path("Jos\xC3\xA9's Project"));
	const FString ProjectFolder = Folder.PathText("Jos\xC3\xA9's Project");

	const FZorvekMCPBridgeProcessResult Result = RunShell("printf 'in '; pwd -P; printf 'caf\xC3\xA9' >&2; exit 4", InFolder(ProjectFolder, 10.0));
	EXPECT_TRUE(Result.bLaunched);
	EXPECT_FALSE(Result.bTimedOut);
	EXPECT_EQ(Result.ExitCode, 4);
	EXPECT_FALSE(Result.Succeeded());
	// Both streams share one pipe, in the order the program wrote them.
	EXPECT_TEXT_EQ(Result.StdOut, TEXT("in ") + UECompatFromUtf8(std::filesystem::canonical(Folder.Path("Jos\xC3\xA9's Project")).string()) + TEXT("\ncaf\u00E9"));
	EXPECT_TRUE(Result.StdErr.IsEmpty());

	EXPECT_TRUE(RunShell("exit 0", InFolder(ProjectFolder, 0.0)).Succeeded());
}

TEST(AISetupPlatformRunner, AProgramThatOutlivesItsTimeIsEndedWithWhatItStarted)
{
	FTemporaryFolder Folder;
	const double StartSeconds = FPlatformTime::Seconds();
	// The shell starts a child that would leave a mark after a second, then waits far longer.
	const FZorvekMCPBridgeProcessResult Result = RunShell("echo started; (sleep 1; touch late) & sleep 30", InFolder(Folder.PathText("."), 0.3));
	const double ElapsedSeconds = FPlatformTime::Seconds() - StartSeconds;

	EXPECT_TRUE(Result.bLaunched);
	EXPECT_TRUE(Result.bTimedOut);
	EXPECT_FALSE(Result.Succeeded());
	EXPECT_TEXT_EQ(Result.StdOut, TEXT("started\n"));
	// Ended at the limit, not waited for.
	EXPECT_LT(ElapsedSeconds, 10.0);
	FPlatformProcess::Sleep(1.2f);
	EXPECT_FALSE(Folder.Exists("late"));
}

TEST(AISetupPlatformRunner, ChattyProgramsAreReadWhileTheyRun)
{
	FTemporaryFolder Folder;
	// Far more than a pipe holds: a runner that only read at the end would wait for ever.
	const FZorvekMCPBridgeProcessResult Result = RunShell("yes o | head -c 300000; yes e | head -c 300000 >&2", InFolder(Folder.PathText("."), 20.0));
	EXPECT_TRUE(Result.Succeeded());
	EXPECT_EQ(Result.StdOut.Len(), 600000);
}

TEST(AISetupPlatformRunner, MissingProgramOrFolderCannotBeStarted)
{
	FTemporaryFolder Folder;
	FZorvekMCPBridgePlatformProcessRunner Runner;
	EXPECT_FALSE(Runner.Run(TEXT("zorvek-no-such-program"), TEXT("--help"), InFolder(Folder.PathText("."), 5.0)).bLaunched);
	EXPECT_FALSE(Runner.Run(TEXT("sh"), TEXT("-c true"), InFolder(Folder.PathText("missing"), 5.0)).bLaunched);
}

TEST(AISetupPlatformRunner, InstallRunsTheClientsToolThroughTheShellInTheProjectFolder)
{
	FFakeClientTools Tools;
	Tools.AddScript("codex", "echo \"codex $* in $(pwd -P)\"\n");
	std::filesystem::create_directories(Tools.GetFolder().Path("Project"));
	const FString ProjectFolder = Tools.GetFolder().PathText("Project");

	FZorvekMCPBridgePlatformProcessRunner Runner;
	const FZorvekMCPBridgeSetupActionResult Result = ZorvekMCPBridgeAISetup::InstallWithClientCli(FindCatalogueClient(TEXT("codex")),
		TEXT("http://127.0.0.1:8765/mcp"), InFolder(ProjectFolder, 10.0), Runner);
	EXPECT_TRUE(Result.bSucceeded) << UECompatToUtf8(Result.Message);
	EXPECT_TEXT_EQ(Result.Output, TEXT("codex mcp add zorvek-unreal --url http://127.0.0.1:8765/mcp in ")
		+ UECompatFromUtf8(std::filesystem::canonical(Tools.GetFolder().Path("Project")).string()));
}

TEST(AISetupBackgroundAction, RunsOffTheGameThreadAndReportsBackThroughTheGameThreadQueue)
{
	FGameThreadTaskQueue::Get().ProcessPendingTasks();
	std::atomic<bool> bRelease{false};
	std::atomic<bool> bActionDone{false};
	std::atomic<bool> bActionRanOnGameThread{true};
	bool bFinished = false;
	bool bFinishedOnGameThread = false;
	FString Message;

	ZorvekMCPBridgeAISetup::RunSetupActionInBackground(
		[&bRelease, &bActionDone, &bActionRanOnGameThread]()
		{
			bActionRanOnGameThread = IsInGameThread();
			while (!bRelease)
			{
				FPlatformProcess::Sleep(0.001f);
			}
			FZorvekMCPBridgeSetupActionResult Result;
			Result.Message = TEXT("done");
			bActionDone = true;
			return Result;
		},
		[&bFinished, &bFinishedOnGameThread, &Message](const FZorvekMCPBridgeSetupActionResult& Result)
		{
			bFinished = true;
			bFinishedOnGameThread = IsInGameThread();
			Message = Result.Message;
		});

	// The call came back while the action still waits, so the game thread is free meanwhile.
	EXPECT_FALSE(bActionDone);
	bRelease = true;
	const double Deadline = FPlatformTime::Seconds() + 10.0;
	while ((!bActionDone || FGameThreadTaskQueue::Get().NumPending() == 0) && FPlatformTime::Seconds() < Deadline)
	{
		FPlatformProcess::Sleep(0.001f);
	}
	// Done, but the result waits for the game thread.
	EXPECT_FALSE(bFinished);
	ASSERT_TRUE(PumpGameThreadUntil([&bFinished]() { return bFinished; }, 10.0));
	EXPECT_FALSE(bActionRanOnGameThread);
	EXPECT_TRUE(bFinishedOnGameThread);
	EXPECT_TEXT_EQ(Message, TEXT("done"));
}

TEST(AISetupBackgroundAction, ShuttingDownEndsTheRunningCommandAndDropsItsResult)
{
	FGameThreadTaskQueue::Get().ProcessPendingTasks();
	FTemporaryFolder Folder;
	std::atomic<bool> bStarted{false};
	FZorvekMCPBridgeProcessResult Ended;
	bool bFinished = false;

	ZorvekMCPBridgeAISetup::RunSetupActionInBackground(
		[&bStarted, &Ended, &Folder]()
		{
			bStarted = true;
			Ended = RunShell("sleep 30", InFolder(Folder.PathText("."), 60.0));
			return FZorvekMCPBridgeSetupActionResult();
		},
		[&bFinished](const FZorvekMCPBridgeSetupActionResult&) { bFinished = true; });
	while (!bStarted)
	{
		FPlatformProcess::Sleep(0.001f);
	}
	FPlatformProcess::Sleep(0.1f);

	// The module's code runs that thread, so shutting down waits for it, ending its program.
	const double StartSeconds = FPlatformTime::Seconds();
	EXPECT_TRUE(ZorvekMCPBridgeAISetup::StopBackgroundActions(10.0));
	EXPECT_LT(FPlatformTime::Seconds() - StartSeconds, 10.0);
	EXPECT_TRUE(Ended.bStopped);
	EXPECT_FALSE(Ended.Succeeded());
	FGameThreadTaskQueue::Get().ProcessPendingTasks();
	EXPECT_FALSE(bFinished);

	// Later actions run as before.
	EXPECT_TRUE(RunShell("exit 0", InFolder(Folder.PathText("."), 10.0)).Succeeded());
}
