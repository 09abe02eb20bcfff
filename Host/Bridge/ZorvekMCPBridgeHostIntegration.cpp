// The headless host's side of the module's editor integration. The host has no Slate, no
// ToolMenus and no Settings module, so it behaves as the editor module does in a process
// without them: no menu, and the preferences page is reported as not registered.
#include "ZorvekMCPBridge.h"

#include "ZorvekMCPBridgeLog.h"

void FZorvekMCPBridgeModule::RegisterMenuStartupCallback()
{
	// Menu start-up callbacks never run in a process without the menu UI.
}

void FZorvekMCPBridgeModule::RegisterMenus()
{
}

void FZorvekMCPBridgeModule::UnregisterMenus()
{
}

void FZorvekMCPBridgeModule::RegisterEditorSettings()
{
	UE_LOG(LogZorvekMCPBridge, Warning, TEXT("Settings module unavailable; Zorvek MCP Bridge editor preferences were not registered"));
}

void FZorvekMCPBridgeModule::UnregisterEditorSettings()
{
	bSettingsRegistered = false;
}

void FZorvekMCPBridgeModule::RefreshEditorSettings()
{
}

void FZorvekMCPBridgeModule::OpenAISetupWizard()
{
	UE_LOG(LogZorvekMCPBridge, Warning, TEXT("The AI setup wizard needs the Unreal Editor; the headless host prints setup snippets instead."));
}
