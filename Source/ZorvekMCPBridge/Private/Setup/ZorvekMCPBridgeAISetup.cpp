#include "Setup/ZorvekMCPBridgeAISetup.h"

#include "HAL/PlatformMisc.h"
#include "Misc/Paths.h"

const TCHAR* const ZorvekMCPBridgeAISetup::ServerName = TEXT("zorvek-unreal");
const TCHAR* const ZorvekMCPBridgeAISetup::EndpointPlaceholder = TEXT("{endpoint}");

namespace
{
	FZorvekMCPBridgeClientDescriptor MakeClient(const TCHAR* Id, const TCHAR* DisplayName, const TCHAR* TransportLabel, const TCHAR* DocumentationUrl)
	{
		FZorvekMCPBridgeClientDescriptor Client;
		Client.Id = Id;
		Client.DisplayName = DisplayName;
		Client.TransportLabel = TransportLabel;
		Client.DocumentationUrl = DocumentationUrl;
		return Client;
	}

	void SetCli(FZorvekMCPBridgeClientDescriptor& Client, const TCHAR* Executable, const TCHAR* InstallArguments, const TCHAR* VerifyArguments)
	{
		Client.CliExecutable = Executable;
		Client.CliInstallArguments = InstallArguments;
		Client.CliVerifyExecutable = Executable;
		Client.CliVerifyArguments = VerifyArguments;
	}

	// The JSON snippets: "mcpServers" -> "zorvek-unreal" -> members, two spaces per level, LF.
	FString BuildServerEntryJson(const TArray<FString>& MemberLines)
	{
		FString Json = TEXT("{\n  \"mcpServers\": {\n    \"zorvek-unreal\": {\n");
		for (int32 Index = 0; Index < MemberLines.Num(); ++Index)
		{
			Json += TEXT("      ");
			Json += MemberLines[Index];
			Json += Index + 1 < MemberLines.Num() ? TEXT(",\n") : TEXT("\n");
		}
		Json += TEXT("    }\n  }\n}");
		return Json;
	}

	FString QuotedMember(const TCHAR* Name, const FString& Value)
	{
		return FString::Printf(TEXT("\"%s\": \"%s\""), Name, *Value);
	}

	FString JoinLines(const TArray<FString>& Lines)
	{
		return FString::Join(Lines, TEXT("\n"));
	}

	FString BuildIbmBobSnippet(const FString& EndpointUrl)
	{
		TArray<FString> Lines;
		Lines.Add(BuildServerEntryJson({QuotedMember(TEXT("url"), EndpointUrl)}));
		Lines.Add(FString());
		Lines.Add(TEXT("Beginner checklist:"));
		Lines.Add(TEXT("1. Make sure Unreal Editor is open and Zorvek MCP Bridge is running on this machine."));
		Lines.Add(TEXT("2. In IBM Bob, open MCP Servers settings."));
		Lines.Add(TEXT("3. Add this server at the project level, for example in .bob/mcp.json if your Bob version uses project JSON config."));
		Lines.Add(TEXT("4. Restart or refresh Bob so it reloads MCP servers."));
		Lines.Add(TEXT("5. This connects directly to the same local Zorvek MCP Bridge endpoint used by Codex and other clients."));
		Lines.Add(FString());
		Lines.Add(TEXT("First prompt to run in Bob:"));
		Lines.Add(TEXT("Use Zorvek MCP Bridge. First call unreal_get_status, then call unreal_get_capabilities. Then call unreal_recommend_tools with my task before deciding what to do. If the visible tool list seems incomplete, search/list tools again before saying Zorvek cannot do something."));
		Lines.Add(FString());
		Lines.Add(TEXT("Local endpoint reminder:"));
		Lines.Add(FString::Printf(TEXT("This endpoint is local to the user's machine. Bob must run where it can reach the local Unreal Editor endpoint: %s"), *EndpointUrl));
		return JoinLines(Lines);
	}

	FString BuildGoogleJulesSnippet(const FString& EndpointUrl)
	{
		TArray<FString> Lines;
		Lines.Add(TEXT("Jules task packet for Zorvek MCP Bridge local validation"));
		Lines.Add(FString());
		Lines.Add(TEXT("Context:"));
		Lines.Add(TEXT("- Jules works through cloud/GitHub-oriented coding tasks and should not assume it can reach the user's local Unreal endpoint."));
		Lines.Add(TEXT("- Do not call localhost or 127.0.0.1 from Jules as if it were the user's machine."));
		Lines.Add(FString::Printf(TEXT("- The user will validate locally in Unreal through Zorvek MCP Bridge at: %s"), *EndpointUrl));
		Lines.Add(TEXT("- Existing direct MCP clients such as Codex, Gemini, Antigravity, Bob, Claude, Cursor, and Rider are unchanged."));
		Lines.Add(FString());
		Lines.Add(TEXT("Copyable Jules task packet:"));
		Lines.Add(TEXT("Goal:"));
		Lines.Add(TEXT("<Describe the Unreal-facing feature or content change.>"));
		Lines.Add(FString());
		Lines.Add(TEXT("Repository work for Jules:"));
		Lines.Add(TEXT("1. Make code/content changes in the GitHub repository only."));
		Lines.Add(TEXT("2. Do not assume direct access to Unreal Editor, localhost, 127.0.0.1, or the Zorvek MCP endpoint."));
		Lines.Add(TEXT("3. Do not request a Zorvek-hosted relay, tunnel, cloud service, token, or secret."));
		Lines.Add(TEXT("4. Return changed files, implementation notes, expected Unreal validation steps, and any unsupported assumptions."));
		Lines.Add(FString());
		Lines.Add(TEXT("Local validation packet for the Unreal-capable agent:"));
		Lines.Add(FString::Printf(TEXT("1. Open Unreal locally and make sure Zorvek MCP Bridge is running at: %s"), *EndpointUrl));
		Lines.Add(TEXT("2. Call unreal_get_status."));
		Lines.Add(TEXT("3. Call unreal_get_capabilities."));
		Lines.Add(TEXT("4. Call unreal_recommend_tools with the original user task."));
		Lines.Add(TEXT("5. Use the recommended Zorvek tools to validate assets, graphs, materials, PCG output, screenshots, logs, and known unsupported boundaries."));
		Lines.Add(TEXT("6. Report what was validated locally versus what Jules only changed in the repository."));
		return JoinLines(Lines);
	}
}

TArray<FZorvekMCPBridgeClientDescriptor> ZorvekMCPBridgeAISetup::BuildClientCatalogue()
{
	TArray<FZorvekMCPBridgeClientDescriptor> Catalogue;

	FZorvekMCPBridgeClientDescriptor Codex = MakeClient(TEXT("codex"), TEXT("Codex"), TEXT("Streamable HTTP"),
		TEXT("https://developers.openai.com/codex/mcp"));
	SetCli(Codex, TEXT("codex"), TEXT("mcp add zorvek-unreal --url {endpoint}"), TEXT("mcp list"));
	Catalogue.Add(Codex);

	FZorvekMCPBridgeClientDescriptor Gemini = MakeClient(TEXT("gemini"), TEXT("Gemini CLI"), TEXT("Streamable HTTP"),
		TEXT("https://github.com/google-gemini/gemini-cli/blob/main/docs/tools/mcp-server.md"));
	SetCli(Gemini, TEXT("gemini"), TEXT("mcp add --scope user --transport http zorvek-unreal {endpoint}"), TEXT("mcp list"));
	Gemini.ConfigPath = ExpandHomeFolder(TEXT("~/.gemini/settings.json"));
	Gemini.ConfigUrlKey = TEXT("httpUrl");
	Catalogue.Add(Gemini);

	FZorvekMCPBridgeClientDescriptor Antigravity = MakeClient(TEXT("antigravity"), TEXT("Google Antigravity"), TEXT("Streamable HTTP"),
		TEXT("https://antigravity.google/docs/mcp"));
	Antigravity.ConfigPath = ExpandHomeFolder(TEXT("~/.gemini/config/mcp_config.json"));
	Antigravity.ConfigUrlKey = TEXT("httpUrl");
	Antigravity.bConfigWriteEnabled = true;
	Catalogue.Add(Antigravity);

	FZorvekMCPBridgeClientDescriptor ClaudeCode = MakeClient(TEXT("claude-code"), TEXT("Claude Code"), TEXT("HTTP"),
		TEXT("https://docs.anthropic.com/en/docs/claude-code/mcp"));
	SetCli(ClaudeCode, TEXT("claude"), TEXT("mcp add --transport http zorvek-unreal {endpoint}"), TEXT("mcp list"));
	Catalogue.Add(ClaudeCode);

	Catalogue.Add(MakeClient(TEXT("cursor"), TEXT("Cursor"), TEXT("HTTP"),
		TEXT("https://cursor.com/docs/context/mcp")));
	Catalogue.Add(MakeClient(TEXT("jetbrains-rider"), TEXT("JetBrains / Rider"), TEXT("HTTP"),
		TEXT("https://www.jetbrains.com/help/ai-assistant/mcp.html")));
	Catalogue.Add(MakeClient(TEXT("ibm-bob"), TEXT("IBM Bob"), TEXT("Manual setup"),
		TEXT("https://bob.ibm.com/docs/ide/configuration/mcp")));
	Catalogue.Add(MakeClient(TEXT("google-jules"), TEXT("Google Jules"), TEXT("Async / local validation"),
		TEXT("https://jules.google/docs")));
	return Catalogue;
}

const FZorvekMCPBridgeClientDescriptor* ZorvekMCPBridgeAISetup::FindClient(const TArray<FZorvekMCPBridgeClientDescriptor>& Catalogue, const FString& ClientId)
{
	return Catalogue.FindByPredicate([&ClientId](const FZorvekMCPBridgeClientDescriptor& Client)
	{
		return Client.Id.Equals(ClientId, ESearchCase::CaseSensitive);
	});
}

FString ZorvekMCPBridgeAISetup::JoinClientIds(const TArray<FZorvekMCPBridgeClientDescriptor>& Catalogue)
{
	TArray<FString> Ids;
	for (const FZorvekMCPBridgeClientDescriptor& Client : Catalogue)
	{
		Ids.Add(Client.Id);
	}
	return FString::Join(Ids, TEXT(", "));
}

FString ZorvekMCPBridgeAISetup::BuildSetupSnippet(const FString& ClientId, const FString& EndpointUrl)
{
	if (ClientId.Equals(TEXT("codex"), ESearchCase::CaseSensitive))
	{
		return FString::Printf(TEXT("[mcp_servers.zorvek-unreal]\nurl = \"%s\"\nenabled = true"), *EndpointUrl);
	}
	if (ClientId.Equals(TEXT("gemini"), ESearchCase::CaseSensitive))
	{
		return BuildServerEntryJson({QuotedMember(TEXT("httpUrl"), EndpointUrl), TEXT("\"trust\": false")});
	}
	if (ClientId.Equals(TEXT("antigravity"), ESearchCase::CaseSensitive))
	{
		return BuildServerEntryJson({QuotedMember(TEXT("httpUrl"), EndpointUrl)});
	}
	if (ClientId.Equals(TEXT("claude-code"), ESearchCase::CaseSensitive))
	{
		return FString::Printf(TEXT("claude mcp add --transport http zorvek-unreal %s"), *EndpointUrl);
	}
	if (ClientId.Equals(TEXT("cursor"), ESearchCase::CaseSensitive))
	{
		return BuildServerEntryJson({QuotedMember(TEXT("url"), EndpointUrl)});
	}
	if (ClientId.Equals(TEXT("jetbrains-rider"), ESearchCase::CaseSensitive))
	{
		return BuildServerEntryJson({TEXT("\"transport\": \"http\""), QuotedMember(TEXT("url"), EndpointUrl)});
	}
	if (ClientId.Equals(TEXT("ibm-bob"), ESearchCase::CaseSensitive))
	{
		return BuildIbmBobSnippet(EndpointUrl);
	}
	if (ClientId.Equals(TEXT("google-jules"), ESearchCase::CaseSensitive))
	{
		return BuildGoogleJulesSnippet(EndpointUrl);
	}
	return FString();
}

FString ZorvekMCPBridgeAISetup::GetHomeFolder()
{
	// Windows names the profile folder in USERPROFILE; HOME covers the other platforms.
	FString Home = FPlatformMisc::GetEnvironmentVariable(TEXT("USERPROFILE"));
	if (Home.IsEmpty())
	{
		Home = FPlatformMisc::GetEnvironmentVariable(TEXT("HOME"));
	}
	FPaths::NormalizeFilename(Home);
	while (Home.Len() > 1 && Home.EndsWith(TEXT("/")))
	{
		Home.LeftChopInline(1);
	}
	return Home;
}

FString ZorvekMCPBridgeAISetup::ExpandHomeFolder(const FString& Path)
{
	if (!Path.StartsWith(TEXT("~/")) && !Path.Equals(TEXT("~")))
	{
		return Path;
	}
	const FString Home = GetHomeFolder();
	if (Home.IsEmpty())
	{
		return Path;
	}
	return Home + Path.RightChop(1);
}

FString ZorvekMCPBridgeAISetup::BuildInstallArguments(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl)
{
	return Client.CliInstallArguments.Replace(EndpointPlaceholder, *EndpointUrl, ESearchCase::CaseSensitive);
}

FString ZorvekMCPBridgeAISetup::BuildInstallCommandLine(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl)
{
	if (!Client.HasInstallCommand())
	{
		return FString();
	}
	return Client.CliExecutable + TEXT(" ") + BuildInstallArguments(Client, EndpointUrl);
}

FString ZorvekMCPBridgeAISetup::BuildVerifyCommandLine(const FZorvekMCPBridgeClientDescriptor& Client)
{
	if (!Client.HasVerifyCommand())
	{
		return FString();
	}
	return Client.CliVerifyExecutable + TEXT(" ") + Client.CliVerifyArguments;
}
