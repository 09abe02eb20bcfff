#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// pcg_generate asks an actor's PCG component to run its graph, pcg_inspect_generated reports what
// it and the bridge's visual output actors produced. The forest tools live in
// ZorvekMCPBridgePcgForestTools, the status, road and city tools in ZorvekMCPBridgePcgStatusTools
// and ZorvekMCPBridgePcgCityTools, the multi-class proof in ZorvekMCPBridgePcgMulticlassTools.

namespace ZorvekMCPBridgePcgTools
{
	TSharedPtr<FJsonObject> HandleGenerate(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleInspectGenerated(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
