// The headless host's side of the module's editor integration. The host has no Slate, no
// ToolMenus and no Settings module, so it behaves as the editor module does in a process
// without them: no menu, and the preferences page is reported as not registered. In place of
// the page and the wizard it keeps the setup texts current and offers them as console commands.
#include "ZorvekMCPBridge.h"

#include "ZorvekMCPBridgeHostSetup.h"
#include "ZorvekMCPBridgeLog.h"

namespace
{
	// The host loads one bridge module; its setup texts live as long as its preferences would.
	TUniquePtr<FZorvekMCPBridgeHostSetup>& HostSetup()
	{
		static TUniquePtr<FZorvekMCPBridgeHostSetup> Instance;
		return Instance;
	}
}

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
	if (!HostSetup().IsValid())
	{
		HostSetup() = MakeUnique<FZorvekMCPBridgeHostSetup>();
		RefreshEditorSettings();
	}
	UE_LOG(LogZorvekMCPBridge, Warning, TEXT("Settings module unavailable; Zorvek MCP Bridge editor preferences were not registered"));
}

void FZorvekMCPBridgeModule::UnregisterEditorSettings()
{
	bSettingsRegistered = false;
	HostSetup().Reset();
}

void FZorvekMCPBridgeModule::RefreshEditorSettings()
{
	if (HostSetup().IsValid())
	{
		HostSetup()->Refresh(GetCurrentEndpointUrl(), IsBridgeRunning());
	}
}

void FZorvekMCPBridgeModule::OpenAISetupWizard()
{
	UE_LOG(LogZorvekMCPBridge, Warning, TEXT("The AI setup wizard needs the Unreal Editor; the headless host prints setup snippets instead: ZorvekMCPBridge.Snippet <client-id>."));
}
