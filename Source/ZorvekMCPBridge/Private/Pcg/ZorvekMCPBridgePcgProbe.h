// Whether the PCG plug-in can be used in the open project, and the one answer every PCG tool gives
// when it cannot. The bridge never links against PCG: it asks the plug-in manager and the module
// manager, and reaches PCG classes by class path through reflection.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

class IZorvekMCPBridgeWorld;

struct FZorvekMCPBridgePcgStatus
{
	bool bInstalled = false;
	bool bEnabled = false;
	bool bModuleExists = false;
	bool bModuleLoaded = false;

	// Installed, enabled and the module exists; a module that is not loaded yet still counts,
	// because the PCG classes load it on first use.
	bool IsAvailable() const { return bInstalled && bEnabled && bModuleExists; }
};

namespace ZorvekMCPBridgePcgProbe
{
	// The plug-in and module are both named "PCG".
	extern const TCHAR* const PluginName;

	FZorvekMCPBridgePcgStatus Probe(const IZorvekMCPBridgeWorld& World);

	// "pcg_installed", "pcg_enabled", "pcg_module_exists", "pcg_module_loaded", "pcg_available",
	// "plugin_name", in that order.
	TSharedPtr<FJsonObject> MakeStatusObject(const FZorvekMCPBridgePcgStatus& Status);

	// The arguments of a PCG call as the forest tools report their request: the forest actor
	// argument trimmed, the number of arguments, and every argument with scalars as trimmed
	// text (every scalar parameter is declared as a string) and objects and arrays as given.
	TSharedPtr<FJsonObject> MakeForestRequestSummary(const TSharedPtr<FJsonObject>& Arguments);

	// The payload of the answer when PCG cannot be used: the success flags false, the tool and
	// its operation word, "pcg_unavailable", the fixed error, a fresh probe, the request summary
	// and three next steps.
	TSharedPtr<FJsonObject> MakeUnavailablePayload(const IZorvekMCPBridgeWorld& World, const FString& ToolName, const TSharedPtr<FJsonObject>& Arguments, const FString& Operation);

	// The same payload as a tool result marked as an error.
	TSharedPtr<FJsonObject> MakeUnavailableResult(const IZorvekMCPBridgeWorld& World, const FString& ToolName, const TSharedPtr<FJsonObject>& Arguments, const FString& Operation);
}
