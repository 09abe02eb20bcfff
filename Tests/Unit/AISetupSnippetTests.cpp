// The client catalogue and the setup snippets: the texts users paste into their AI clients, so
// every byte counts.
#include "AISetupTestSupport.h"
#include "Setup/ZorvekMCPBridgeAISetup.h"
#include "Setup/ZorvekMCPBridgeSetupTexts.h"
#include "ZorvekTestSupport.h"

namespace
{
	const TCHAR* const StoppedEndpoint = TEXT("http://127.0.0.1:8765/mcp");
	const TCHAR* const Port8766Endpoint = TEXT("http://127.0.0.1:8766/mcp");

	const TCHAR* const AllClientIds[] = {TEXT("codex"), TEXT("gemini"), TEXT("antigravity"), TEXT("claude-code"), TEXT("cursor"),
		TEXT("jetbrains-rider"), TEXT("ibm-bob"), TEXT("google-jules")};
}

TEST(AISetupCatalogue, ListsTheEightClientsInOrderWithTheirCommandsAndFiles)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("USERPROFILE"), TEXT(""));
	Environment.Set(TEXT("HOME"), TEXT("/home/ada"));

	const TArray<FZorvekMCPBridgeClientDescriptor> Catalogue = ZorvekMCPBridgeAISetup::BuildClientCatalogue();
	ASSERT_EQ(Catalogue.Num(), 8);
	for (int32 Index = 0; Index < 8; ++Index)
	{
		EXPECT_TEXT_EQ(Catalogue[Index].Id, FString(AllClientIds[Index])) << "position " << Index;
		EXPECT_TRUE(Catalogue[Index].DocumentationUrl.StartsWith(TEXT("https://"))) << UECompatToUtf8(Catalogue[Index].Id);
	}

	struct FExpected
	{
		const TCHAR* DisplayName;
		const TCHAR* Transport;
		const TCHAR* Executable;
		const TCHAR* Install;
		const TCHAR* Verify;
		const TCHAR* ConfigPath;
		const TCHAR* UrlKey;
		bool bWritable;
	};
	const FExpected Expected[] = {
		{TEXT("Codex"), TEXT("Streamable HTTP"), TEXT("codex"), TEXT("mcp add zorvek-unreal --url {endpoint}"), TEXT("mcp list"), TEXT(""), TEXT(""), false},
		{TEXT("Gemini CLI"), TEXT("Streamable HTTP"), TEXT("gemini"), TEXT("mcp add --scope user --transport http zorvek-unreal {endpoint}"), TEXT("mcp list"),
			TEXT("/home/ada/.gemini/settings.json"), TEXT("httpUrl"), false},
		{TEXT("Google Antigravity"), TEXT("Streamable HTTP"), TEXT(""), TEXT(""), TEXT(""), TEXT("/home/ada/.gemini/config/mcp_config.json"), TEXT("httpUrl"), true},
		{TEXT("Claude Code"), TEXT("HTTP"), TEXT("claude"), TEXT("mcp add --transport http zorvek-unreal {endpoint}"), TEXT("mcp list"), TEXT(""), TEXT(""), false},
		{TEXT("Cursor"), TEXT("HTTP"), TEXT(""), TEXT(""), TEXT(""), TEXT(""), TEXT(""), false},
		{TEXT("JetBrains / Rider"), TEXT("HTTP"), TEXT(""), TEXT(""), TEXT(""), TEXT(""), TEXT(""), false},
		{TEXT("IBM Bob"), TEXT("Manual setup"), TEXT(""), TEXT(""), TEXT(""), TEXT(""), TEXT(""), false},
		{TEXT("Google Jules"), TEXT("Async / local validation"), TEXT(""), TEXT(""), TEXT(""), TEXT(""), TEXT(""), false},
	};
	for (int32 Index = 0; Index < 8; ++Index)
	{
		const FZorvekMCPBridgeClientDescriptor& Client = Catalogue[Index];
		SCOPED_TRACE(UECompatToUtf8(Client.Id));
		EXPECT_TEXT_EQ(Client.DisplayName, Expected[Index].DisplayName);
		EXPECT_TEXT_EQ(Client.TransportLabel, Expected[Index].Transport);
		EXPECT_TEXT_EQ(Client.CliExecutable, Expected[Index].Executable);
		EXPECT_TEXT_EQ(Client.CliInstallArguments, Expected[Index].Install);
		// The verify command is the same tool as the install command.
		EXPECT_TEXT_EQ(Client.CliVerifyExecutable, Expected[Index].Executable);
		EXPECT_TEXT_EQ(Client.CliVerifyArguments, Expected[Index].Verify);
		EXPECT_TEXT_EQ(Client.ConfigPath, Expected[Index].ConfigPath);
		EXPECT_TEXT_EQ(Client.ConfigUrlKey, Expected[Index].UrlKey);
		EXPECT_EQ(Client.bConfigWriteEnabled, Expected[Index].bWritable);
	}
}

TEST(AISetupCatalogue, HomeFolderComesFromTheWindowsProfileFirstWithForwardSlashes)
{
	FScopedEnvironment Environment;
	Environment.Set(TEXT("USERPROFILE"), TEXT("C:\\Users\\Ada Lovelace\\"));
	Environment.Set(TEXT("HOME"), TEXT("/home/ada"));

	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::ExpandHomeFolder(TEXT("~/.gemini/settings.json")), FString(TEXT("C:/Users/Ada Lovelace/.gemini/settings.json")));
	// Only a leading "~/" is the home folder.
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::ExpandHomeFolder(TEXT("/etc/~/x.json")), FString(TEXT("/etc/~/x.json")));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::ExpandHomeFolder(TEXT("~user/x.json")), FString(TEXT("~user/x.json")));

	EXPECT_TEXT_EQ(FindCatalogueClient(TEXT("antigravity")).ConfigPath, FString(TEXT("C:/Users/Ada Lovelace/.gemini/config/mcp_config.json")));
}

TEST(AISetupCatalogue, FindsClientsByExactIdOnly)
{
	const TArray<FZorvekMCPBridgeClientDescriptor> Catalogue = ZorvekMCPBridgeAISetup::BuildClientCatalogue();
	ASSERT_NE(ZorvekMCPBridgeAISetup::FindClient(Catalogue, TEXT("claude-code")), nullptr);
	EXPECT_EQ(ZorvekMCPBridgeAISetup::FindClient(Catalogue, TEXT("claude")), nullptr);
	EXPECT_EQ(ZorvekMCPBridgeAISetup::FindClient(Catalogue, TEXT("Codex")), nullptr);
	EXPECT_EQ(ZorvekMCPBridgeAISetup::FindClient(Catalogue, TEXT("")), nullptr);
}

TEST(AISetupSnippets, CodexIsThreeTomlLinesWithTheAddress)
{
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("codex"), Port8766Endpoint),
		FString(TEXT("[mcp_servers.zorvek-unreal]\nurl = \"http://127.0.0.1:8766/mcp\"\nenabled = true")));
}

TEST(AISetupSnippets, JsonSnippetsUseTwoSpacesLfAndTheirMemberOrder)
{
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("gemini"), Port8766Endpoint), FString(TEXT(
		"{\n"
		"  \"mcpServers\": {\n"
		"    \"zorvek-unreal\": {\n"
		"      \"httpUrl\": \"http://127.0.0.1:8766/mcp\",\n"
		"      \"trust\": false\n"
		"    }\n"
		"  }\n"
		"}")));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("antigravity"), Port8766Endpoint), FString(TEXT(
		"{\n"
		"  \"mcpServers\": {\n"
		"    \"zorvek-unreal\": {\n"
		"      \"httpUrl\": \"http://127.0.0.1:8766/mcp\"\n"
		"    }\n"
		"  }\n"
		"}")));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("cursor"), Port8766Endpoint), FString(TEXT(
		"{\n"
		"  \"mcpServers\": {\n"
		"    \"zorvek-unreal\": {\n"
		"      \"url\": \"http://127.0.0.1:8766/mcp\"\n"
		"    }\n"
		"  }\n"
		"}")));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("jetbrains-rider"), Port8766Endpoint), FString(TEXT(
		"{\n"
		"  \"mcpServers\": {\n"
		"    \"zorvek-unreal\": {\n"
		"      \"transport\": \"http\",\n"
		"      \"url\": \"http://127.0.0.1:8766/mcp\"\n"
		"    }\n"
		"  }\n"
		"}")));
	EXPECT_TEXT_EQ(ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("claude-code"), Port8766Endpoint),
		FString(TEXT("claude mcp add --transport http zorvek-unreal http://127.0.0.1:8766/mcp")));
}

TEST(AISetupSnippets, JsonSnippetsParseAsTheEntryTheConfigWriterWouldMake)
{
	for (const TCHAR* ClientId : {TEXT("gemini"), TEXT("antigravity"), TEXT("cursor"), TEXT("jetbrains-rider")})
	{
		SCOPED_TRACE(UECompatToUtf8(FString(ClientId)));
		const TSharedPtr<FJsonObject> Parsed = ParseJsonObject(ZorvekMCPBridgeAISetup::BuildSetupSnippet(ClientId, Port8766Endpoint));
		ASSERT_TRUE(Parsed.IsValid());
		const TSharedPtr<FJsonObject> Entry = Parsed->GetObjectField(TEXT("mcpServers"))->GetObjectField(TEXT("zorvek-unreal"));
		ASSERT_TRUE(Entry.IsValid());
		FString Url;
		EXPECT_TRUE(Entry->TryGetStringField(TEXT("url"), Url) || Entry->TryGetStringField(TEXT("httpUrl"), Url));
		EXPECT_TEXT_EQ(Url, FString(Port8766Endpoint));
	}
}

TEST(AISetupSnippets, IbmBobIsTheCursorJsonABlankLineAndTheChecklist)
{
	const FString Snippet = ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("ibm-bob"), Port8766Endpoint);
	const FString Expected = ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("cursor"), Port8766Endpoint) + TEXT("\n\n") + TEXT(
		"Beginner checklist:\n"
		"1. Make sure Unreal Editor is open and Zorvek MCP Bridge is running on this machine.\n"
		"2. In IBM Bob, open MCP Servers settings.\n"
		"3. Add this server at the project level, for example in .bob/mcp.json if your Bob version uses project JSON config.\n"
		"4. Restart or refresh Bob so it reloads MCP servers.\n"
		"5. This connects directly to the same local Zorvek MCP Bridge endpoint used by Codex and other clients.\n"
		"\n"
		"First prompt to run in Bob:\n"
		"Use Zorvek MCP Bridge. First call unreal_get_status, then call unreal_get_capabilities. Then call unreal_recommend_tools with my task before deciding what to do. If the visible tool list seems incomplete, search/list tools again before saying Zorvek cannot do something.\n"
		"\n"
		"Local endpoint reminder:\n"
		"This endpoint is local to the user's machine. Bob must run where it can reach the local Unreal Editor endpoint: http://127.0.0.1:8766/mcp");
	EXPECT_TEXT_EQ(Snippet, Expected);
}

TEST(AISetupSnippets, GoogleJulesPacketCarriesTheAddressInBothPlaces)
{
	const FString Snippet = ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("google-jules"), Port8766Endpoint);
	const FString Expected = TEXT(
		"Jules task packet for Zorvek MCP Bridge local validation\n"
		"\n"
		"Context:\n"
		"- Jules works through cloud/GitHub-oriented coding tasks and should not assume it can reach the user's local Unreal endpoint.\n"
		"- Do not call localhost or 127.0.0.1 from Jules as if it were the user's machine.\n"
		"- The user will validate locally in Unreal through Zorvek MCP Bridge at: http://127.0.0.1:8766/mcp\n"
		"- Existing direct MCP clients such as Codex, Gemini, Antigravity, Bob, Claude, Cursor, and Rider are unchanged.\n"
		"\n"
		"Copyable Jules task packet:\n"
		"Goal:\n"
		"<Describe the Unreal-facing feature or content change.>\n"
		"\n"
		"Repository work for Jules:\n"
		"1. Make code/content changes in the GitHub repository only.\n"
		"2. Do not assume direct access to Unreal Editor, localhost, 127.0.0.1, or the Zorvek MCP endpoint.\n"
		"3. Do not request a Zorvek-hosted relay, tunnel, cloud service, token, or secret.\n"
		"4. Return changed files, implementation notes, expected Unreal validation steps, and any unsupported assumptions.\n"
		"\n"
		"Local validation packet for the Unreal-capable agent:\n"
		"1. Open Unreal locally and make sure Zorvek MCP Bridge is running at: http://127.0.0.1:8766/mcp\n"
		"2. Call unreal_get_status.\n"
		"3. Call unreal_get_capabilities.\n"
		"4. Call unreal_recommend_tools with the original user task.\n"
		"5. Use the recommended Zorvek tools to validate assets, graphs, materials, PCG output, screenshots, logs, and known unsupported boundaries.\n"
		"6. Report what was validated locally versus what Jules only changed in the repository.");
	EXPECT_TEXT_EQ(Snippet, Expected);
}

TEST(AISetupSnippets, EverySnippetFollowsTheEndpointAndNoneHasCarriageReturnsOrTrailingBreaks)
{
	for (const TCHAR* ClientId : AllClientIds)
	{
		SCOPED_TRACE(UECompatToUtf8(FString(ClientId)));
		const FString Stopped = ZorvekMCPBridgeAISetup::BuildSetupSnippet(ClientId, StoppedEndpoint);
		const FString Moved = ZorvekMCPBridgeAISetup::BuildSetupSnippet(ClientId, Port8766Endpoint);
		EXPECT_TRUE(Stopped.Contains(StoppedEndpoint));
		EXPECT_FALSE(Moved.Contains(TEXT(":8765")));
		// Swapping the address is the only difference between the two.
		EXPECT_TEXT_EQ(Moved.Replace(Port8766Endpoint, StoppedEndpoint, ESearchCase::CaseSensitive), Stopped);
		EXPECT_FALSE(Stopped.Contains(TEXT("\r")));
		EXPECT_FALSE(Stopped.EndsWith(TEXT("\n")));
		EXPECT_FALSE(Stopped.Contains(TEXT("{endpoint}")));
	}
}

TEST(AISetupSnippets, UnknownClientIdGivesEmptyText)
{
	EXPECT_TRUE(ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("vim"), StoppedEndpoint).IsEmpty());
	EXPECT_TRUE(ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("CODEX"), StoppedEndpoint).IsEmpty());
	EXPECT_TRUE(ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT(""), StoppedEndpoint).IsEmpty());
}

TEST(AISetupSettingsTexts, StoppedBridgeShowsTheDefaultAddressEverywhere)
{
	// An empty address is what a bridge that never started hands over.
	const FZorvekMCPBridgeSetupTexts Texts = FZorvekMCPBridgeSetupTexts::Build(FString(), false);
	EXPECT_TEXT_EQ(Texts.ServerStatus, FString(TEXT("Not running. Expected endpoint: http://127.0.0.1:8765/mcp")));
	EXPECT_TEXT_EQ(Texts.ServerEndpoint, FString(StoppedEndpoint));
	EXPECT_TEXT_EQ(Texts.CodexInstallCommand, FString(TEXT("codex mcp add zorvek-unreal --url http://127.0.0.1:8765/mcp")));
	EXPECT_TEXT_EQ(Texts.CodexConfigSnippet, ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("codex"), StoppedEndpoint));
	EXPECT_TEXT_EQ(Texts.SetupNotes, FString(TEXT("Use Tools > Zorvek MCP Bridge > Connect AI Assistant... for guided setup. Or add the snippet/run the command for your AI client, then restart that client so it reloads MCP servers. MCP does not currently provide universal OS-level discovery for local Unreal plugins.")));
}

TEST(AISetupSettingsTexts, RunningOn8766PutsThatAddressInEveryText)
{
	const FZorvekMCPBridgeSetupTexts Texts = FZorvekMCPBridgeSetupTexts::Build(Port8766Endpoint, true);
	EXPECT_TEXT_EQ(Texts.ServerStatus, FString(TEXT("Running at http://127.0.0.1:8766/mcp")));
	EXPECT_TEXT_EQ(Texts.ServerEndpoint, FString(Port8766Endpoint));
	EXPECT_TEXT_EQ(Texts.CodexInstallCommand, FString(TEXT("codex mcp add zorvek-unreal --url http://127.0.0.1:8766/mcp")));
	EXPECT_TEXT_EQ(Texts.ClaudeCodeInstallCommand, FString(TEXT("claude mcp add --transport http zorvek-unreal http://127.0.0.1:8766/mcp")));
	EXPECT_TEXT_EQ(Texts.GeminiInstallCommand, FString(TEXT("gemini mcp add --scope user --transport http zorvek-unreal http://127.0.0.1:8766/mcp")));
	EXPECT_TEXT_EQ(Texts.CodexConfigSnippet, ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("codex"), Port8766Endpoint));
	EXPECT_TEXT_EQ(Texts.GeminiMcpJson, ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("gemini"), Port8766Endpoint));
	EXPECT_TEXT_EQ(Texts.AntigravityMcpJson, ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("antigravity"), Port8766Endpoint));
	EXPECT_TEXT_EQ(Texts.CursorMcpJson, ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("cursor"), Port8766Endpoint));
	EXPECT_TEXT_EQ(Texts.JetBrainsMcpJson, ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("jetbrains-rider"), Port8766Endpoint));
	for (const FString* Text : {&Texts.CodexConfigSnippet, &Texts.CodexInstallCommand, &Texts.ClaudeCodeInstallCommand, &Texts.GeminiInstallCommand,
			 &Texts.GeminiMcpJson, &Texts.AntigravityMcpJson, &Texts.CursorMcpJson, &Texts.JetBrainsMcpJson})
	{
		EXPECT_FALSE(Text->Contains(TEXT(":8765"))) << UECompatToUtf8(*Text);
	}
}

TEST(AISetupSettingsTexts, RefreshingFromTheStatusTextKeepsTheRunningState)
{
	// The preferences page's refresh button rebuilds from its own status and address texts.
	const FZorvekMCPBridgeSetupTexts Running = FZorvekMCPBridgeSetupTexts::Build(Port8766Endpoint, true);
	const FZorvekMCPBridgeSetupTexts Refreshed = FZorvekMCPBridgeSetupTexts::Build(Running.ServerEndpoint, FZorvekMCPBridgeSetupTexts::IsRunningStatus(Running.ServerStatus));
	EXPECT_TEXT_EQ(Refreshed.ServerStatus, Running.ServerStatus);

	const FZorvekMCPBridgeSetupTexts Stopped = FZorvekMCPBridgeSetupTexts::Build(StoppedEndpoint, false);
	EXPECT_FALSE(FZorvekMCPBridgeSetupTexts::IsRunningStatus(Stopped.ServerStatus));
	EXPECT_TRUE(FZorvekMCPBridgeSetupTexts::IsRunningStatus(TEXT("RUNNING at somewhere")));
}
