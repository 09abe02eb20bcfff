#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"

#include "ZorvekMCPBridgeEditorSettings.generated.h"

// The plug-in's page in the editor preferences: a read-only panel with the endpoint's state and
// ready-made setup texts for the AI clients, each with a button that copies it. Nothing on it is
// saved; the module refreshes it after every start and stop of the bridge.
UCLASS(Transient)
class UZorvekMCPBridgeEditorSettings : public UObject
{
	GENERATED_BODY()

public:
	UZorvekMCPBridgeEditorSettings();

	// Rebuilds every text for this endpoint address (an empty one means the stopped default).
	void RefreshFromBridge(const FString& EndpointUrl, bool bRunning);

	// Whether the page currently shows a running bridge.
	bool IsBridgeShownRunning() const;

	// The instance the module last refreshed, so other editor UI can read the bridge's state
	// from it; null before the module has created one.
	static const UZorvekMCPBridgeEditorSettings* GetShownSettings();

	UPROPERTY(VisibleAnywhere, Category = "Server")
	FString ServerStatus;

	UPROPERTY(VisibleAnywhere, Category = "Server")
	FString ServerEndpoint;

	UPROPERTY(VisibleAnywhere, Category = "Codex", meta = (MultiLine = "TRUE"))
	FString CodexConfigSnippet;

	UPROPERTY(VisibleAnywhere, Category = "Codex")
	FString CodexInstallCommand;

	UPROPERTY(VisibleAnywhere, Category = "Claude Code")
	FString ClaudeCodeInstallCommand;

	UPROPERTY(VisibleAnywhere, Category = "Gemini CLI")
	FString GeminiInstallCommand;

	UPROPERTY(VisibleAnywhere, Category = "Gemini CLI", meta = (MultiLine = "TRUE"))
	FString GeminiMcpJson;

	UPROPERTY(VisibleAnywhere, Category = "Google Antigravity", meta = (MultiLine = "TRUE"))
	FString AntigravityMcpJson;

	UPROPERTY(VisibleAnywhere, Category = "Cursor", meta = (MultiLine = "TRUE"))
	FString CursorMcpJson;

	UPROPERTY(VisibleAnywhere, Category = "JetBrains / Rider", meta = (MultiLine = "TRUE"))
	FString JetBrainsMcpJson;

	UPROPERTY(VisibleAnywhere, Category = "Notes", meta = (MultiLine = "TRUE"))
	FString SetupNotes;

	UFUNCTION(CallInEditor, Category = "AI Setup")
	void CopyCodexConfigSnippet();

	UFUNCTION(CallInEditor, Category = "AI Setup")
	void CopyCodexInstallCommand();

	UFUNCTION(CallInEditor, Category = "AI Setup")
	void CopyClaudeCodeInstallCommand();

	UFUNCTION(CallInEditor, Category = "AI Setup")
	void CopyGeminiInstallCommand();

	UFUNCTION(CallInEditor, Category = "AI Setup")
	void CopyGeminiMcpJson();

	UFUNCTION(CallInEditor, Category = "AI Setup")
	void CopyAntigravityMcpJson();

	UFUNCTION(CallInEditor, Category = "AI Setup")
	void CopyCursorMcpJson();

	UFUNCTION(CallInEditor, Category = "AI Setup")
	void CopyJetBrainsMcpJson();

	// Rebuilds the texts from the page's own address and running state.
	UFUNCTION(CallInEditor, Category = "AI Setup")
	void RefreshSetupSnippets();

private:
	void CopyToClipboard(const FString& Text) const;
};
