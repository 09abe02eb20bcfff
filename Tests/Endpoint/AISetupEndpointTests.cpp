// The setup follows the live endpoint: with port 8765 taken the bridge starts on 8766, every
// text the host offers says so until the bridge stops, and a configuration that still names 8765
// is flagged. A client command the wizard runs leaves the bridge free to answer that client.
#include "../Unit/AISetupTestSupport.h"
#include "HAL/IConsoleManager.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "Setup/ZorvekMCPBridgeClientCli.h"
#include "ZorvekTestSupport.h"

namespace
{
	class FNullOutput : public FOutputDevice
	{
	public:
		void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) override {}
	};

	void RunConsoleCommand(const TCHAR* Command)
	{
		FNullOutput Output;
		ASSERT_TRUE(IConsoleManager::Get().ProcessUserConsoleInput(Command, Output, nullptr)) << UECompatToUtf8(FString(Command));
	}

	FString LastLineStartingWith(const FLogCapture& Log, const FString& Prefix)
	{
		FString Found;
		for (const FLogCapture::FLine& Line : Log.GetLines())
		{
			if (Line.Text.StartsWith(Prefix, ESearchCase::CaseSensitive))
			{
				Found = Line.Text;
			}
		}
		return Found;
	}
}

TEST(AISetupLiveEndpoint, SnippetsFollowTheBridgeToPort8766AndBackWhenItStops)
{
	FPortBlocker Blocker(8765);
	ASSERT_TRUE(Blocker.IsHeld());
	FLogCapture Log;
	ASSERT_NE(FModuleManager::Get().LoadModule(TEXT("ZorvekMCPBridge")), nullptr);

	RunConsoleCommand(TEXT("ZorvekMCPBridge.Start"));
	RunConsoleCommand(TEXT("ZorvekMCPBridge.Snippet gemini"));
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge: Running at http://127.0.0.1:8766/mcp")));
	const FString RunningSnippet = LastLineStartingWith(Log, TEXT("Setup snippet for Gemini CLI (gemini):"));
	EXPECT_TRUE(RunningSnippet.Contains(TEXT("\"httpUrl\": \"http://127.0.0.1:8766/mcp\","), ESearchCase::CaseSensitive)) << UECompatToUtf8(RunningSnippet);

	RunConsoleCommand(TEXT("ZorvekMCPBridge.Stop"));
	RunConsoleCommand(TEXT("ZorvekMCPBridge.Snippet gemini"));
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge: Not running. Expected endpoint: http://127.0.0.1:8765/mcp")));
	const FString StoppedSnippet = LastLineStartingWith(Log, TEXT("Setup snippet for Gemini CLI (gemini):"));
	EXPECT_TRUE(StoppedSnippet.Contains(TEXT("\"httpUrl\": \"http://127.0.0.1:8765/mcp\","), ESearchCase::CaseSensitive)) << UECompatToUtf8(StoppedSnippet);

	FModuleManager::Get().UnloadModule(TEXT("ZorvekMCPBridge"));
}

TEST(AISetupLiveEndpoint, AConfigurationThatNamesAnotherPortIsFlaggedWhileTheBridgeRuns)
{
	FScopedEnvironment Environment;
	FTemporaryFolder Folder;
	Environment.Set(TEXT("USERPROFILE"), TEXT(""));
	Environment.Set(TEXT("HOME"), *Folder.PathText("home"));
	Folder.WriteBytes("home/.gemini/config/mcp_config.json", "{\"mcpServers\": {\"zorvek-unreal\": {\"httpUrl\": \"http://127.0.0.1:8765/mcp\"}}}");
	FPortBlocker Blocker(8765);
	ASSERT_TRUE(Blocker.IsHeld());
	FLogCapture Log;
	ASSERT_NE(FModuleManager::Get().LoadModule(TEXT("ZorvekMCPBridge")), nullptr);

	RunConsoleCommand(TEXT("ZorvekMCPBridge.Start"));
	RunConsoleCommand(TEXT("ZorvekMCPBridge.Snippet antigravity"));
	const FString Warning = Folder.PathText("home/.gemini/config/mcp_config.json")
		+ TEXT(" sends Google Antigravity to http://127.0.0.1:8765/mcp for zorvek-unreal, but the bridge now runs at http://127.0.0.1:8766/mcp. Write config updates the entry.");
	EXPECT_EQ(Log.VerbosityOf(Warning), ELogVerbosity::Warning);

	// Writing the configuration again settles it.
	RunConsoleCommand(TEXT("ZorvekMCPBridge.WriteConfig antigravity"));
	Log.Clear();
	RunConsoleCommand(TEXT("ZorvekMCPBridge.Snippet antigravity"));
	EXPECT_FALSE(Log.Contains(TEXT("but the bridge now runs at")));

	// Stopped, the next port is unknown, so nothing is flagged.
	Folder.WriteBytes("home/.gemini/config/mcp_config.json", "{\"mcpServers\": {\"zorvek-unreal\": {\"httpUrl\": \"http://127.0.0.1:8789/mcp\"}}}");
	RunConsoleCommand(TEXT("ZorvekMCPBridge.Stop"));
	Log.Clear();
	RunConsoleCommand(TEXT("ZorvekMCPBridge.Snippet antigravity"));
	EXPECT_FALSE(Log.Contains(TEXT("but the bridge now runs at")));

	FModuleManager::Get().UnloadModule(TEXT("ZorvekMCPBridge"));
}

TEST(AISetupLiveEndpoint, TheBridgeAnswersAClientThatChecksItDuringMcpList)
{
	// A stand-in for "codex mcp list" that, as real clients do, connects to every configured
	// server: it posts a ping to the bridge and prints the answer beside its list.
	FFakeClientTools Tools;
	Tools.AddScript("codex",
		"[ \"$1 $2\" = \"mcp list\" ] || exit 9\n"
		"Body='{\"jsonrpc\":\"2.0\",\"id\":7,\"method\":\"ping\"}'\n"
		"exec 3<>/dev/tcp/127.0.0.1/8765 || exit 2\n"
		"printf 'POST /mcp HTTP/1.1\\r\\nHost: 127.0.0.1:8765\\r\\nContent-Type: application/json\\r\\nContent-Length: %d\\r\\nConnection: close\\r\\n\\r\\n%s' \"${#Body}\" \"$Body\" >&3\n"
		"Answer=$(cat <&3)\n"
		"case \"$Answer\" in *'\"id\": 7,'*'\"result\"'*) echo 'ping answered';; *) echo 'no answer'; exit 3;; esac\n"
		"echo \"zorvek-unreal  http://127.0.0.1:8765/mcp  $(pwd -P)\"\n");
	std::filesystem::create_directories(Tools.GetFolder().Path("Project"));
	FPaths::SetProjectDirForHost(Tools.GetFolder().PathText("Project") + TEXT("/"));

	FLogCapture Log;
	ASSERT_NE(FModuleManager::Get().LoadModule(TEXT("ZorvekMCPBridge")), nullptr);
	RunConsoleCommand(TEXT("ZorvekMCPBridge.Start"));
	ASSERT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge running at http://127.0.0.1:8765/mcp")));

	// As the wizard does: the command on a worker thread, the result back on the game thread,
	// which keeps serving requests meanwhile.
	FZorvekMCPBridgeProcessOptions Options = ZorvekMCPBridgeAISetup::MakeClientCommandOptions();
	Options.TimeoutSeconds = 20.0;
	const FZorvekMCPBridgeClientDescriptor Codex = FindCatalogueClient(TEXT("codex"));
	bool bFinished = false;
	FZorvekMCPBridgeSetupActionResult Result;
	ZorvekMCPBridgeAISetup::RunSetupActionInBackground(
		[Codex, Options]()
		{
			FZorvekMCPBridgePlatformProcessRunner Runner;
			return ZorvekMCPBridgeAISetup::VerifyWithClientCli(Codex, TEXT("http://127.0.0.1:8765/mcp"), Options, Runner);
		},
		[&bFinished, &Result](const FZorvekMCPBridgeSetupActionResult& Finished)
		{
			Result = Finished;
			bFinished = true;
		});
	const bool bDone = PumpGameThreadUntil([&bFinished]() { return bFinished; }, 30.0);
	FPaths::SetProjectDirForHost(FString());
	ASSERT_TRUE(bDone);

	EXPECT_TRUE(Result.bSucceeded) << UECompatToUtf8(Result.Message) << "\n" << UECompatToUtf8(Result.Output);
	EXPECT_TEXT_EQ(Result.Output, TEXT("ping answered\nzorvek-unreal  http://127.0.0.1:8765/mcp  ")
		+ UECompatFromUtf8(std::filesystem::canonical(Tools.GetFolder().Path("Project")).string()));

	FModuleManager::Get().UnloadModule(TEXT("ZorvekMCPBridge"));
}
