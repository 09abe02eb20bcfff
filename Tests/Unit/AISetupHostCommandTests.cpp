// The headless host's setup commands, run as a user types them, through the loaded module.
#include "AISetupTestSupport.h"
#include "HAL/IConsoleManager.h"
#include "Misc/OutputDevice.h"
#include "Modules/ModuleManager.h"
#include "ZorvekMCPBridgeHostSetup.h"
#include "ZorvekTestSupport.h"

namespace
{
	class FNullOutput : public FOutputDevice
	{
	public:
		void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) override {}
	};

	// Loads the bridge module without letting its automatic start run (the core ticker is not
	// ticked here), and unloads it afterwards.
	class AISetupHostCommands : public ::testing::Test
	{
	protected:
		void SetUp() override
		{
			Environment.Set(TEXT("USERPROFILE"), TEXT(""));
			Environment.Set(TEXT("HOME"), *Folder.PathText("home"));
			ASSERT_NE(FModuleManager::Get().LoadModule(TEXT("ZorvekMCPBridge")), nullptr);
		}
		void TearDown() override
		{
			FModuleManager::Get().UnloadModule(TEXT("ZorvekMCPBridge"));
		}

		bool Run(const TCHAR* Command)
		{
			FNullOutput Output;
			return IConsoleManager::Get().ProcessUserConsoleInput(Command, Output, nullptr);
		}

		bool LogHasLineContaining(const FString& Text, ELogVerbosity::Type Verbosity) const
		{
			for (const FLogCapture::FLine& Line : Log.GetLines())
			{
				if (Line.Verbosity == Verbosity && Line.Text.Contains(Text, ESearchCase::CaseSensitive))
				{
					return true;
				}
			}
			return false;
		}

		FScopedEnvironment Environment;
		FTemporaryFolder Folder;
		FLogCapture Log;
	};
}

TEST_F(AISetupHostCommands, SnippetCommandPrintsTheStoppedAddressAndTheSnippetOnItsOwnLines)
{
	ASSERT_TRUE(Run(TEXT("ZorvekMCPBridge.Snippet codex")));
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge: Not running. Expected endpoint: http://127.0.0.1:8765/mcp")));
	EXPECT_TRUE(LogHasLineContaining(TEXT("Setup snippet for Codex (codex):\n[mcp_servers.zorvek-unreal]\nurl = \"http://127.0.0.1:8765/mcp\"\nenabled = true"),
		ELogVerbosity::Display));
}

TEST_F(AISetupHostCommands, UnknownClientIsNamedWithTheKnownIds)
{
	ASSERT_TRUE(Run(TEXT("ZorvekMCPBridge.Snippet vscode")));
	EXPECT_TRUE(LogHasLineContaining(TEXT("Unknown AI client id: vscode. Known ids: codex, gemini, antigravity, claude-code, cursor, jetbrains-rider, ibm-bob, google-jules"),
		ELogVerbosity::Warning));
	Log.Clear();
	ASSERT_TRUE(Run(TEXT("ZorvekMCPBridge.WriteConfig vscode")));
	EXPECT_TRUE(LogHasLineContaining(TEXT("Unknown AI client id: vscode."), ELogVerbosity::Warning));
	EXPECT_FALSE(Folder.Exists("home"));
}

TEST_F(AISetupHostCommands, WriteConfigWritesAntigravityAndRefusesClientsItMayNotWrite)
{
	ASSERT_TRUE(Run(TEXT("ZorvekMCPBridge.WriteConfig codex")));
	EXPECT_TRUE(LogHasLineContaining(TEXT("The bridge does not write the configuration of Codex"), ELogVerbosity::Warning));
	EXPECT_FALSE(Folder.Exists("home"));

	ASSERT_TRUE(Run(TEXT("ZorvekMCPBridge.WriteConfig antigravity")));
	const FString ConfigPath = Folder.PathText("home/.gemini/config/mcp_config.json");
	EXPECT_TRUE(LogHasLineContaining(FString::Printf(TEXT("Updated %s. Restart or refresh the AI client."), *ConfigPath), ELogVerbosity::Display));
	const TSharedPtr<FJsonObject> Config = ParseJsonObject(Folder.ReadBytes("home/.gemini/config/mcp_config.json"));
	ASSERT_TRUE(Config.IsValid());
	EXPECT_TEXT_EQ(Config->GetObjectField(TEXT("mcpServers"))->GetObjectField(TEXT("zorvek-unreal"))->GetStringField(TEXT("httpUrl")),
		TEXT("http://127.0.0.1:8765/mcp"));
}

TEST_F(AISetupHostCommands, WithoutAnIdListsTheClientsAndUnloadingRemovesTheCommands)
{
	Log.Clear();
	ASSERT_TRUE(Run(TEXT("ZorvekMCPBridge.Snippet")));
	EXPECT_TRUE(LogHasLineContaining(TEXT("\n  antigravity - Google Antigravity (Streamable HTTP), ZorvekMCPBridge.WriteConfig can add it"), ELogVerbosity::Display));

	FModuleManager::Get().UnloadModule(TEXT("ZorvekMCPBridge"));
	EXPECT_EQ(IConsoleManager::Get().FindConsoleObject(FZorvekMCPBridgeHostSetup::SnippetCommandName), nullptr);
	EXPECT_EQ(IConsoleManager::Get().FindConsoleObject(FZorvekMCPBridgeHostSetup::WriteConfigCommandName), nullptr);
}
