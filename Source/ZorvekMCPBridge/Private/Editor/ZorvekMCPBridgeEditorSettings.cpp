#include "Editor/ZorvekMCPBridgeEditorSettings.h"

#include "HAL/PlatformApplicationMisc.h"
#include "Setup/ZorvekMCPBridgeSetupTexts.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "ZorvekMCPBridgeLog.h"

namespace
{
	TWeakObjectPtr<UZorvekMCPBridgeEditorSettings> ShownSettings;
}

UZorvekMCPBridgeEditorSettings::UZorvekMCPBridgeEditorSettings()
{
	RefreshFromBridge(FString(), false);
}

void UZorvekMCPBridgeEditorSettings::RefreshFromBridge(const FString& EndpointUrl, bool bRunning)
{
	const FZorvekMCPBridgeSetupTexts Texts = FZorvekMCPBridgeSetupTexts::Build(EndpointUrl, bRunning);
	ServerStatus = Texts.ServerStatus;
	ServerEndpoint = Texts.ServerEndpoint;
	CodexConfigSnippet = Texts.CodexConfigSnippet;
	CodexInstallCommand = Texts.CodexInstallCommand;
	ClaudeCodeInstallCommand = Texts.ClaudeCodeInstallCommand;
	GeminiInstallCommand = Texts.GeminiInstallCommand;
	GeminiMcpJson = Texts.GeminiMcpJson;
	AntigravityMcpJson = Texts.AntigravityMcpJson;
	CursorMcpJson = Texts.CursorMcpJson;
	JetBrainsMcpJson = Texts.JetBrainsMcpJson;
	SetupNotes = Texts.SetupNotes;

	// The class default object is built the same way but is not the module's page.
	if (!HasAnyFlags(RF_ClassDefaultObject))
	{
		ShownSettings = this;
	}
}

bool UZorvekMCPBridgeEditorSettings::IsBridgeShownRunning() const
{
	return FZorvekMCPBridgeSetupTexts::IsRunningStatus(ServerStatus);
}

const UZorvekMCPBridgeEditorSettings* UZorvekMCPBridgeEditorSettings::GetShownSettings()
{
	return ShownSettings.Get();
}

void UZorvekMCPBridgeEditorSettings::RefreshSetupSnippets()
{
	RefreshFromBridge(ServerEndpoint, IsBridgeShownRunning());
}

void UZorvekMCPBridgeEditorSettings::CopyToClipboard(const FString& Text) const
{
	FPlatformApplicationMisc::ClipboardCopy(*Text);
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Copied Zorvek MCP Bridge setup text to clipboard"));
}

void UZorvekMCPBridgeEditorSettings::CopyCodexConfigSnippet()
{
	CopyToClipboard(CodexConfigSnippet);
}

void UZorvekMCPBridgeEditorSettings::CopyCodexInstallCommand()
{
	CopyToClipboard(CodexInstallCommand);
}

void UZorvekMCPBridgeEditorSettings::CopyClaudeCodeInstallCommand()
{
	CopyToClipboard(ClaudeCodeInstallCommand);
}

void UZorvekMCPBridgeEditorSettings::CopyGeminiInstallCommand()
{
	CopyToClipboard(GeminiInstallCommand);
}

void UZorvekMCPBridgeEditorSettings::CopyGeminiMcpJson()
{
	CopyToClipboard(GeminiMcpJson);
}

void UZorvekMCPBridgeEditorSettings::CopyAntigravityMcpJson()
{
	CopyToClipboard(AntigravityMcpJson);
}

void UZorvekMCPBridgeEditorSettings::CopyCursorMcpJson()
{
	CopyToClipboard(CursorMcpJson);
}

void UZorvekMCPBridgeEditorSettings::CopyJetBrainsMcpJson()
{
	CopyToClipboard(JetBrainsMcpJson);
}
