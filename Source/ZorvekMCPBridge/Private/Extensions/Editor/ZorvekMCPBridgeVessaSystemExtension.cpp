#include "Extensions/Editor/ZorvekMCPBridgeVessaSystemExtension.h"

#include "Misc/EngineVersion.h"

UZorvekMCPBridgeVessaSystemExtension::UZorvekMCPBridgeVessaSystemExtension()
{
	Definition.ExtensionName = TEXT("Vessa System");
	Definition.ExtensionDescription = TEXT("Built-in standalone Vessa extension for MCP bridge status and diagnostics.");
	Definition.bIsSystemExtension = true;
}

bool UZorvekMCPBridgeVessaSystemExtension::IsSystemExtension() const
{
	return true;
}

void UZorvekMCPBridgeVessaSystemExtension::GetStatus(FString& Backend, FString& UnrealVersion, bool& bStandalone) const
{
	Backend = TEXT("native_unreal_editor");
	UnrealVersion = FEngineVersion::Current().ToString();
	bStandalone = true;
}
