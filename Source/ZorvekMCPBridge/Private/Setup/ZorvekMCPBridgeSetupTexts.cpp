#include "Setup/ZorvekMCPBridgeSetupTexts.h"

#include "Setup/ZorvekMCPBridgeAISetup.h"
#include "ZorvekMCPBridge.h"

FZorvekMCPBridgeSetupTexts FZorvekMCPBridgeSetupTexts::Build(const FString& EndpointUrl, bool bRunning)
{
	const FString Endpoint = EndpointUrl.IsEmpty() ? FString(FZorvekMCPBridgeModule::DefaultEndpointUrl) : EndpointUrl;

	FZorvekMCPBridgeSetupTexts Texts;
	Texts.ServerStatus = bRunning
		? FString::Printf(TEXT("Running at %s"), *Endpoint)
		: FString::Printf(TEXT("Not running. Expected endpoint: %s"), *Endpoint);
	Texts.ServerEndpoint = Endpoint;
	Texts.CodexConfigSnippet = ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("codex"), Endpoint);
	Texts.CodexInstallCommand = FString::Printf(TEXT("codex mcp add zorvek-unreal --url %s"), *Endpoint);
	Texts.ClaudeCodeInstallCommand = FString::Printf(TEXT("claude mcp add --transport http zorvek-unreal %s"), *Endpoint);
	Texts.GeminiInstallCommand = FString::Printf(TEXT("gemini mcp add --scope user --transport http zorvek-unreal %s"), *Endpoint);
	Texts.GeminiMcpJson = ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("gemini"), Endpoint);
	Texts.AntigravityMcpJson = ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("antigravity"), Endpoint);
	Texts.CursorMcpJson = ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("cursor"), Endpoint);
	Texts.JetBrainsMcpJson = ZorvekMCPBridgeAISetup::BuildSetupSnippet(TEXT("jetbrains-rider"), Endpoint);
	Texts.SetupNotes = TEXT("Use Tools > Zorvek MCP Bridge > Connect AI Assistant... for guided setup. Or add the snippet/run the command for your AI client, then restart that client so it reloads MCP servers. MCP does not currently provide universal OS-level discovery for local Unreal plugins.");
	return Texts;
}

bool FZorvekMCPBridgeSetupTexts::IsRunningStatus(const FString& ServerStatus)
{
	return ServerStatus.StartsWith(TEXT("Running"), ESearchCase::IgnoreCase);
}
