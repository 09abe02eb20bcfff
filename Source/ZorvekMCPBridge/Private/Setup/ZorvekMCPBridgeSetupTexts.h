#pragma once

#include "CoreMinimal.h"

// The texts of the preferences page, one per property, made for one endpoint address. The
// reflected settings object copies them; the headless host shows the same texts.
struct FZorvekMCPBridgeSetupTexts
{
	FString ServerStatus;
	FString ServerEndpoint;
	FString CodexConfigSnippet;
	FString CodexInstallCommand;
	FString ClaudeCodeInstallCommand;
	FString GeminiInstallCommand;
	FString GeminiMcpJson;
	FString AntigravityMcpJson;
	FString CursorMcpJson;
	FString JetBrainsMcpJson;
	FString SetupNotes;

	// An empty address means the address the bridge shows while stopped.
	static FZorvekMCPBridgeSetupTexts Build(const FString& EndpointUrl, bool bRunning);
	// Whether a status text made by Build says the bridge runs.
	static bool IsRunningStatus(const FString& ServerStatus);
};
