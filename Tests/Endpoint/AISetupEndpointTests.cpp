// The setup texts follow the live endpoint: with port 8765 taken the bridge starts on 8766, and
// every text the host offers says so until the bridge stops.
#include "HAL/IConsoleManager.h"
#include "Modules/ModuleManager.h"
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
