// The editor side of the module: the Tools-menu section, the preferences page and the setup
// wizard. The headless host has its own version of these functions.
#include "ZorvekMCPBridge.h"

#include "CoreGlobals.h"
#include "Editor/ZorvekMCPBridgeEditorSettings.h"
#include "Editor/ZorvekMCPBridgeSetupWizard.h"
#include "Framework/Commands/UIAction.h"
#include "ISettingsModule.h"
#include "Modules/ModuleManager.h"
#include "Textures/SlateIcon.h"
#include "ToolMenus.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"
#include "ZorvekMCPBridgeLog.h"

#define LOCTEXT_NAMESPACE "FZorvekMCPBridgeModule"

namespace
{
	const TCHAR* const SettingsContainerName = TEXT("Editor");
	const TCHAR* const SettingsCategoryName = TEXT("Plugins");
	const TCHAR* const SettingsSectionName = TEXT("ZorvekMCPBridge");
	const TCHAR* const ToolsMenuName = TEXT("LevelEditor.MainMenu.Tools");

	// During engine exit other modules and UObjects may already be gone.
	bool IsEngineExiting()
	{
		return GExitPurge || IsEngineExitRequested();
	}
}

void FZorvekMCPBridgeModule::RegisterMenuStartupCallback()
{
	UToolMenus::RegisterStartupCallback(FSimpleMulticastDelegate::FDelegate::CreateRaw(this, &FZorvekMCPBridgeModule::RegisterMenus));
}

void FZorvekMCPBridgeModule::RegisterMenus()
{
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Registering Zorvek MCP Bridge editor menu entries"));

	FToolMenuOwnerScoped OwnerScoped(this);
	UToolMenu* ToolsMenu = UToolMenus::Get()->ExtendMenu(ToolsMenuName);
	if (!ToolsMenu)
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("Could not extend LevelEditor.MainMenu.Tools for Zorvek MCP Bridge"));
		return;
	}

	FToolMenuSection& Section = ToolsMenu->FindOrAddSection(TEXT("ZorvekMCPBridge"), LOCTEXT("ZorvekMCPBridgeSection", "Zorvek MCP Bridge"));
	// Label and tooltip are bound, so the menu shows the bridge's state each time it opens.
	Section.AddMenuEntry(
		TEXT("ZorvekMCPBridgeToggle"),
		MakeAttributeRaw(this, &FZorvekMCPBridgeModule::GetToggleBridgeLabel),
		MakeAttributeRaw(this, &FZorvekMCPBridgeModule::GetBridgeStatusLabel),
		FSlateIcon(),
		FUIAction(FExecuteAction::CreateRaw(this, &FZorvekMCPBridgeModule::ToggleBridge)));
	Section.AddMenuEntry(
		TEXT("ZorvekMCPBridgeAISetup"),
		LOCTEXT("ZorvekMCPBridgeAISetupLabel", "Connect AI Assistant..."),
		LOCTEXT("ZorvekMCPBridgeAISetupTooltip", "Open a setup wizard for connecting Codex, Gemini, Antigravity, Claude Code, Cursor, and Rider to this local MCP bridge."),
		FSlateIcon(),
		FUIAction(FExecuteAction::CreateRaw(this, &FZorvekMCPBridgeModule::OpenAISetupWizard)));
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Registered Tools menu entry for Zorvek MCP Bridge"));
}

void FZorvekMCPBridgeModule::UnregisterMenus()
{
	if (IsEngineExiting())
	{
		return;
	}
	SZorvekMCPBridgeSetupWizard::CloseWindow();
	if (!FModuleManager::Get().IsModuleLoaded(TEXT("ToolMenus")))
	{
		return;
	}
	UToolMenus::UnRegisterStartupCallback(this);
	UToolMenus::UnregisterOwner(this);
}

void FZorvekMCPBridgeModule::RegisterEditorSettings()
{
	if (!SettingsObject)
	{
		SettingsObject = NewObject<UZorvekMCPBridgeEditorSettings>(GetTransientPackage(), TEXT("ZorvekMCPBridgeEditorSettings"), RF_Transient);
		// The module holds it by a plain pointer, which does not keep it from the garbage collector.
		SettingsObject->AddToRoot();
		RefreshEditorSettings();
	}

	ISettingsModule* SettingsModule = FModuleManager::GetModulePtr<ISettingsModule>(TEXT("Settings"));
	if (!SettingsModule)
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("Settings module unavailable; Zorvek MCP Bridge editor preferences were not registered"));
		return;
	}
	SettingsModule->RegisterSettings(SettingsContainerName, SettingsCategoryName, SettingsSectionName,
		LOCTEXT("ZorvekMCPBridgeSettingsName", "Zorvek MCP Bridge"),
		LOCTEXT("ZorvekMCPBridgeSettingsDescription", "Connect AI assistants or copy MCP setup snippets for Codex, Gemini, Antigravity, Claude Code, Cursor, and JetBrains/Rider."),
		SettingsObject);
	bSettingsRegistered = true;
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("Registered Zorvek MCP Bridge editor preferences"));
}

void FZorvekMCPBridgeModule::UnregisterEditorSettings()
{
	if (!IsEngineExiting() && bSettingsRegistered)
	{
		if (ISettingsModule* SettingsModule = FModuleManager::GetModulePtr<ISettingsModule>(TEXT("Settings")))
		{
			SettingsModule->UnregisterSettings(SettingsContainerName, SettingsCategoryName, SettingsSectionName);
		}
	}
	bSettingsRegistered = false;

	if (SettingsObject && !GExitPurge && UObjectInitialized() && IsValid(SettingsObject))
	{
		SettingsObject->RemoveFromRoot();
	}
}

void FZorvekMCPBridgeModule::RefreshEditorSettings()
{
	if (SettingsObject)
	{
		SettingsObject->RefreshFromBridge(GetCurrentEndpointUrl(), IsBridgeRunning());
	}
}

void FZorvekMCPBridgeModule::OpenAISetupWizard()
{
	SZorvekMCPBridgeSetupWizard::OpenWindow(
		FZorvekMCPBridgeGetEndpointUrl::CreateRaw(this, &FZorvekMCPBridgeModule::GetCurrentEndpointUrl),
		FSimpleDelegate::CreateRaw(this, &FZorvekMCPBridgeModule::StartBridge));
}

#undef LOCTEXT_NAMESPACE
