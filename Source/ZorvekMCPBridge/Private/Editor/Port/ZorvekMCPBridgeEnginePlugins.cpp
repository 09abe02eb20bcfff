// Plug-in and module state in the Unreal Editor, for the tools that use an optional plug-in (PCG)
// only through reflection and must first ask whether it is there.
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"

#include "Interfaces/IPluginManager.h"
#include "Modules/ModuleManager.h"

FZorvekMCPBridgePluginState FZorvekMCPBridgeEngineWorld::GetPluginState(const FString& PluginName) const
{
	FZorvekMCPBridgePluginState State;
	// FindPlugin knows every discovered plug-in, enabled or not: found means installed.
	const TSharedPtr<IPlugin> Plugin = IPluginManager::Get().FindPlugin(PluginName);
	State.bInstalled = Plugin.IsValid();
	State.bEnabled = Plugin.IsValid() && Plugin->IsEnabled();
	return State;
}

bool FZorvekMCPBridgeEngineWorld::ModuleExists(const FString& ModuleName) const
{
	return FModuleManager::Get().ModuleExists(*ModuleName);
}

bool FZorvekMCPBridgeEngineWorld::IsModuleLoaded(const FString& ModuleName) const
{
	return FModuleManager::Get().IsModuleLoaded(FName(*ModuleName));
}
