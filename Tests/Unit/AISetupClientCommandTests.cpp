// Finding and running the AI clients' own command-line tools: the command lines handed to
// where.exe and the Windows shell, the folder and time limit they run with, how their output is
// read, and the fallback to the snippet.
#include "AISetupTestSupport.h"
#include "Misc/Paths.h"
#include "ZorvekTestSupport.h"

namespace
{
	const TCHAR* const Endpoint = TEXT("http://127.0.0.1:8766/mcp");

	// How the wizard runs the commands, with a project folder that exists.
	FZorvekMCPBridgeProcessOptions ProjectOptions()
	{
		FZorvekMCPBridgeProcessOptions Options;
		Options.WorkingDirectory = TEXT("/");
		Options.TimeoutSeconds = 60.0;
		return Options;
	}
}

TEST(AISetupFindCli, TakesTheFirstNonEmptyTrimmedLineOfWhere)
{
	FFakeProcessRunner Runner;
	Runner.Answer(TEXT("where.exe"), 0, TEXT("\r\n   \r\n  C:\\Users\\Ada\\AppData\\Roaming\\npm\\codex.cmd  \r\nC:\\Tools\\codex.exe\r\n"));
	FString Path = TEXT("stale");
	EXPECT_TRUE(ZorvekMCPBridgeAISetup::FindCliOnPath(TEXT("codex"), Path, ProjectOptions(), Runner));
	EXPECT_TEXT_EQ(Path, TEXT("C:\\Users\\Ada\\AppData\\Roaming\\npm\\codex.cmd"));
	ASSERT_EQ(Runner.Calls.Num(), 1);
	EXPECT_TEXT_EQ(Runner.Calls[0].Executable, TEXT("where.exe"));
	EXPECT_TEXT_EQ(Runner.Calls[0].Arguments, TEXT("codex"));
}

TEST(AISetupFindCli, NotFoundWhenWhereSucceedsSilentlyFailsOrCannotRun)
{
	FString Path;
	{
		FFakeProcessRunner Runner;
		Runner.Answer(TEXT("where.exe"), 0, TEXT("  \r\n\r\n"));
		EXPECT_FALSE(ZorvekMCPBridgeAISetup::FindCliOnPath(TEXT("codex"), Path, ProjectOptions(), Runner));
		EXPECT_TRUE(Path.IsEmpty());
	}
	{
		// where.exe exits 1 and explains on its error output when nothing matches.
		FFakeProcessRunner Runner;
		Runner.Answer(TEXT("where.exe"), 1, TEXT("C:\\somewhere\\codex.exe"), TEXT("INFO: Could not find files for the given pattern(s)."));
		EXPECT_FALSE(ZorvekMCPBridgeAISetup::FindCliOnPath(TEXT("codex"), Path, ProjectOptions(), Runner));
	}
	{
		FFakeProcessRunner Runner;
		EXPECT_FALSE(ZorvekMCPBridgeAISetup::FindCliOnPath(TEXT("codex"), Path, ProjectOptions(), Runner));
	}
}

TEST(AISetupRunCommand, RunsThroughComSpecWithSlashSSlashCAndOnePairOfQuotes)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("ComSpec"), TEXT("C:\\WINDOWS\\system32\\cmd.exe"));
	FFakeProcessRunner Runner;
	Runner.Answer(TEXT("C:\\WINDOWS\\system32\\cmd.exe"), 0, TEXT("Added"), TEXT("note"));

	const FZorvekMCPBridgeProcessResult Result = ZorvekMCPBridgeAISetup::RunClientCommand(TEXT("codex"), TEXT("mcp list"), ProjectOptions(), Runner);
	EXPECT_TRUE(Result.Succeeded());
	EXPECT_TEXT_EQ(Result.StdOut, TEXT("Added"));
	EXPECT_TEXT_EQ(Result.StdErr, TEXT("note"));
	ASSERT_EQ(Runner.Calls.Num(), 1);
	EXPECT_TEXT_EQ(Runner.Calls[0].Arguments, TEXT("/S /C \"codex mcp list\""));
}

TEST(AISetupRunCommand, FallsBackToCmdInTheSystemFolderWithoutComSpec)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("ComSpec"), TEXT(""));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::GetCommandShell(), TEXT("C:\\Windows\\System32\\cmd.exe"));

	FFakeProcessRunner Runner;
	// No answer for the shell: it cannot be started, which is reported, not hidden.
	EXPECT_FALSE(ZorvekMCPBridgeAISetup::RunClientCommand(TEXT("claude"), TEXT("mcp list"), ProjectOptions(), Runner).bLaunched);
	ASSERT_EQ(Runner.Calls.Num(), 1);
	EXPECT_TEXT_EQ(Runner.Calls[0].Executable, TEXT("C:\\Windows\\System32\\cmd.exe"));
}

TEST(AISetupRunCommand, QuotesExecutablesTheShellWouldSplitButNotTwice)
{
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::BuildShellArguments(TEXT("C:\\Program Files\\nodejs\\codex.cmd"), TEXT("mcp list")),
		TEXT("/S /C \"\"C:\\Program Files\\nodejs\\codex.cmd\" mcp list\""));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::BuildShellArguments(TEXT("\"C:\\Program Files\\codex.cmd\""), TEXT("mcp list")),
		TEXT("/S /C \"\"C:\\Program Files\\codex.cmd\" mcp list\""));
	// cmd.exe also splits or interprets these in a bare file name.
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::QuoteExecutableForShell(TEXT("C:\\Tools(x86)\\codex.exe")), TEXT("\"C:\\Tools(x86)\\codex.exe\""));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::QuoteExecutableForShell(TEXT("C:\\R&D\\claude.exe")), TEXT("\"C:\\R&D\\claude.exe\""));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::QuoteExecutableForShell(TEXT("C:\\Tools\\codex.exe")), TEXT("C:\\Tools\\codex.exe"));
	// A lone quote character is not an enclosed name.
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::QuoteExecutableForShell(TEXT("\"")), TEXT("\""));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::QuoteExecutableForShell(TEXT("\"C:\\My Tools\\x.exe")), TEXT("\"\"C:\\My Tools\\x.exe\""));
}

TEST(AISetupInstall, RunsTheClientsInstallCommandWithTheEndpointFilledIn)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("ComSpec"), TEXT("C:\\Windows\\system32\\cmd.exe"));
	FFakeProcessRunner Runner;
	Runner.Answer(TEXT("where.exe"), 0, TEXT("C:\\npm\\gemini.cmd\r\n"));
	Runner.Answer(TEXT("C:\\Windows\\system32\\cmd.exe"), 0, TEXT("Added server zorvek-unreal"));

	const FZorvekMCPBridgeSetupActionResult Result = ZorvekMCPBridgeAISetup::InstallWithClientCli(FindCatalogueClient(TEXT("gemini")), Endpoint, ProjectOptions(), Runner);
	EXPECT_TRUE(Result.bSucceeded);
	EXPECT_FALSE(Result.bFallBackToSnippet);
	EXPECT_TEXT_EQ(Result.Output, TEXT("Added server zorvek-unreal"));
	ASSERT_EQ(Runner.Calls.Num(), 2);
	EXPECT_TEXT_EQ(Runner.Calls[0].Arguments, TEXT("gemini"));
	EXPECT_TEXT_EQ(Runner.Calls[1].Arguments, TEXT("/S /C \"gemini mcp add --scope user --transport http zorvek-unreal http://127.0.0.1:8766/mcp\""));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::BuildInstallCommandLine(FindCatalogueClient(TEXT("codex")), Endpoint),
		TEXT("codex mcp add zorvek-unreal --url http://127.0.0.1:8766/mcp"));
}

TEST(AISetupInstall, MissingToolOrFailingCommandFallsBackToTheSnippet)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("ComSpec"), TEXT("cmd.exe"));
	const FZorvekMCPBridgeClientDescriptor Claude = FindCatalogueClient(TEXT("claude-code"));
	{
		FFakeProcessRunner Runner;
		Runner.Answer(TEXT("where.exe"), 1, FString(), TEXT("INFO: Could not find files for the given pattern(s)."));
		const FZorvekMCPBridgeSetupActionResult Result = ZorvekMCPBridgeAISetup::InstallWithClientCli(Claude, Endpoint, ProjectOptions(), Runner);
		EXPECT_FALSE(Result.bSucceeded);
		EXPECT_TRUE(Result.bFallBackToSnippet);
		EXPECT_TRUE(Result.Message.StartsWith(TEXT("claude was not found on PATH.")));
		// Nothing is run when the tool is missing.
		EXPECT_EQ(Runner.Calls.Num(), 1);
	}
	{
		FFakeProcessRunner Runner;
		Runner.Answer(TEXT("where.exe"), 0, TEXT("C:\\bin\\claude.exe"));
		Runner.Answer(TEXT("cmd.exe"), 3, TEXT(""), TEXT("MCP server zorvek-unreal already exists"));
		const FZorvekMCPBridgeSetupActionResult Result = ZorvekMCPBridgeAISetup::InstallWithClientCli(Claude, Endpoint, ProjectOptions(), Runner);
		EXPECT_FALSE(Result.bSucceeded);
		EXPECT_TRUE(Result.bFallBackToSnippet);
		EXPECT_TEXT_EQ(Result.Message, TEXT("\"claude mcp add --transport http zorvek-unreal http://127.0.0.1:8766/mcp\" failed with exit code 3. Copy the snippet instead."));
		EXPECT_TEXT_EQ(Result.Output, TEXT("MCP server zorvek-unreal already exists"));
	}
	{
		// Cursor has no command-line route at all.
		FFakeProcessRunner Runner;
		const FZorvekMCPBridgeSetupActionResult Result = ZorvekMCPBridgeAISetup::InstallWithClientCli(FindCatalogueClient(TEXT("cursor")), Endpoint, ProjectOptions(), Runner);
		EXPECT_FALSE(Result.bSucceeded);
		EXPECT_TRUE(Result.bFallBackToSnippet);
		EXPECT_EQ(Runner.Calls.Num(), 0);
	}
}

TEST(AISetupVerify, SucceedsOnlyWhenTheClientListsTheBridge)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("ComSpec"), TEXT("cmd.exe"));
	const FZorvekMCPBridgeClientDescriptor Codex = FindCatalogueClient(TEXT("codex"));
	{
		FFakeProcessRunner Runner;
		Runner.Answer(TEXT("where.exe"), 0, TEXT("C:\\bin\\codex.exe"));
		Runner.Answer(TEXT("cmd.exe"), 0, TEXT("Name           Url\nzorvek-unreal  http://127.0.0.1:8766/mcp\n"));
		const FZorvekMCPBridgeSetupActionResult Result = ZorvekMCPBridgeAISetup::VerifyWithClientCli(Codex, Endpoint, ProjectOptions(), Runner);
		EXPECT_TRUE(Result.bSucceeded);
		EXPECT_TEXT_EQ(Runner.Calls.Last().Arguments, TEXT("/S /C \"codex mcp list\""));
	}
	{
		FFakeProcessRunner Runner;
		Runner.Answer(TEXT("where.exe"), 0, TEXT("C:\\bin\\codex.exe"));
		Runner.Answer(TEXT("cmd.exe"), 0, TEXT("No MCP servers configured yet."));
		const FZorvekMCPBridgeSetupActionResult Result = ZorvekMCPBridgeAISetup::VerifyWithClientCli(Codex, Endpoint, ProjectOptions(), Runner);
		EXPECT_FALSE(Result.bSucceeded);
		EXPECT_TRUE(Result.bFallBackToSnippet);
	}
}

TEST(AISetupCommandOptions, TheWizardRunsCommandsInTheProjectFolderForAMinuteAtMost)
{
	FTemporaryFolder Folder;
	FPaths::SetProjectDirForHost(Folder.PathText("My Project") + TEXT("/"));
	const FZorvekMCPBridgeProcessOptions Options = ZorvekMCPBridgeAISetup::MakeClientCommandOptions();
	FPaths::SetProjectDirForHost(FString());
	// A whole path without the trailing slash, as a program and a user read it.
	EXPECT_TEXT_EQ(Options.WorkingDirectory, Folder.PathText("My Project"));
	EXPECT_EQ(Options.TimeoutSeconds, 60.0);
}

TEST(AISetupCommandOptions, WhereAndTheCommandBothRunInTheFolderWhereIsGivenLessTime)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("ComSpec"), TEXT("cmd.exe"));
	FFakeProcessRunner Runner;
	Runner.Answer(TEXT("where.exe"), 0, TEXT("C:\\bin\\claude.exe"));
	Runner.Answer(TEXT("cmd.exe"), 0, TEXT("Added HTTP MCP server zorvek-unreal to local config"));

	ZorvekMCPBridgeAISetup::InstallWithClientCli(FindCatalogueClient(TEXT("claude-code")), Endpoint, ProjectOptions(), Runner);
	ASSERT_EQ(Runner.Calls.Num(), 2);
	// where.exe looks in the current folder first, as the shell does, so both see the same one.
	EXPECT_TEXT_EQ(Runner.Calls[0].Options.WorkingDirectory, TEXT("/"));
	EXPECT_EQ(Runner.Calls[0].Options.TimeoutSeconds, 15.0);
	EXPECT_TEXT_EQ(Runner.Calls[1].Options.WorkingDirectory, TEXT("/"));
	EXPECT_EQ(Runner.Calls[1].Options.TimeoutSeconds, 60.0);

	// A shorter limit than where.exe's own holds for both.
	FZorvekMCPBridgeProcessOptions Short = ProjectOptions();
	Short.TimeoutSeconds = 2.0;
	Runner.Calls.Reset();
	ZorvekMCPBridgeAISetup::VerifyWithClientCli(FindCatalogueClient(TEXT("claude-code")), Endpoint, Short, Runner);
	ASSERT_EQ(Runner.Calls.Num(), 2);
	EXPECT_EQ(Runner.Calls[0].Options.TimeoutSeconds, 2.0);
	EXPECT_EQ(Runner.Calls[1].Options.TimeoutSeconds, 2.0);
}

TEST(AISetupCommandOptions, AMissingProjectFolderIsNamedAndNothingRuns)
{
	FFakeProcessRunner Runner;
	FZorvekMCPBridgeProcessOptions Options = ProjectOptions();
	Options.WorkingDirectory = TEXT("/zorvek-no-such-folder/Project");
	const FZorvekMCPBridgeSetupActionResult Result = ZorvekMCPBridgeAISetup::InstallWithClientCli(FindCatalogueClient(TEXT("codex")), Endpoint, Options, Runner);
	EXPECT_FALSE(Result.bSucceeded);
	EXPECT_TRUE(Result.bFallBackToSnippet);
	EXPECT_TEXT_EQ(Result.Message,
		TEXT("Cannot run \"codex mcp add zorvek-unreal --url http://127.0.0.1:8766/mcp\": its folder /zorvek-no-such-folder/Project does not exist. Copy the snippet instead."));
	EXPECT_EQ(Runner.Calls.Num(), 0);
}

TEST(AISetupCommandTimeout, ACommandThatRanOutOfTimeIsReportedWithWhatItPrintedNotAsSuccess)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("ComSpec"), TEXT("cmd.exe"));
	FFakeProcessRunner Runner;
	Runner.Answer(TEXT("where.exe"), 0, TEXT("C:\\bin\\claude.exe"));
	Runner.AnswerTimedOut(TEXT("cmd.exe"), TEXT("Checking MCP server health...\n"));
	FZorvekMCPBridgeProcessOptions Options = ProjectOptions();
	Options.TimeoutSeconds = 0.5;

	const FZorvekMCPBridgeSetupActionResult Result = ZorvekMCPBridgeAISetup::VerifyWithClientCli(FindCatalogueClient(TEXT("claude-code")), Endpoint, Options, Runner);
	EXPECT_FALSE(Result.bSucceeded);
	EXPECT_TRUE(Result.bFallBackToSnippet);
	EXPECT_TEXT_EQ(Result.Message, TEXT("\"claude mcp list\" did not finish within 0.5 seconds and was stopped. Copy the snippet instead."));
	EXPECT_TEXT_EQ(Result.Output, TEXT("Checking MCP server health..."));

	Options.TimeoutSeconds = 60.0;
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::InstallWithClientCli(FindCatalogueClient(TEXT("claude-code")), Endpoint, Options, Runner).Message,
		TEXT("\"claude mcp add --transport http zorvek-unreal http://127.0.0.1:8766/mcp\" did not finish within 60 seconds and was stopped. Copy the snippet instead."));
}

TEST(AISetupVerify, ListingTheBridgeAtAnotherPortFailsWhileItRunsButNotWhileStopped)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("ComSpec"), TEXT("cmd.exe"));
	const FZorvekMCPBridgeClientDescriptor Claude = FindCatalogueClient(TEXT("claude-code"));
	FFakeProcessRunner Runner;
	Runner.Answer(TEXT("where.exe"), 0, TEXT("C:\\bin\\claude.exe"));
	Runner.Answer(TEXT("cmd.exe"), 0,
		TEXT("Checking MCP server health...\n\ngithub: npx -y @modelcontextprotocol/server-github - \u2713 Connected\n")
		TEXT("zorvek-unreal: http://127.0.0.1:8765/mcp (HTTP) - \u2717 Failed to connect\n"));

	const FZorvekMCPBridgeSetupActionResult Stale = ZorvekMCPBridgeAISetup::VerifyWithClientCli(Claude, Endpoint, ProjectOptions(), Runner);
	EXPECT_FALSE(Stale.bSucceeded);
	EXPECT_TRUE(Stale.bFallBackToSnippet);
	EXPECT_TEXT_EQ(Stale.Message,
		TEXT("Claude Code lists zorvek-unreal at http://127.0.0.1:8765/mcp, but the bridge now runs at http://127.0.0.1:8766/mcp. ")
		TEXT("Remove that entry with the client and run the install command again, or copy the snippet."));

	EXPECT_TRUE(ZorvekMCPBridgeAISetup::VerifyWithClientCli(Claude, TEXT("http://127.0.0.1:8765/mcp"), ProjectOptions(), Runner).bSucceeded);
	// Stopped: the next port is not known, so any listed port may be right.
	EXPECT_TRUE(ZorvekMCPBridgeAISetup::VerifyWithClientCli(Claude, FString(), ProjectOptions(), Runner).bSucceeded);
}
