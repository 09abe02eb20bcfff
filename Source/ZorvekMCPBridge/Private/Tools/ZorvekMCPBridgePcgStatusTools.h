// pcg_get_status and pcg_get_road_capabilities: what an agent reads before it builds anything with
// PCG. The status answers whatever the plug-in's state, since it is how an agent learns that PCG
// is off; the road capabilities, like every other PCG tool, answer the PCG unavailable result then.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

namespace ZorvekMCPBridgePcgStatusTools
{
	TSharedPtr<FJsonObject> HandleGetStatus(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleGetRoadCapabilities(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
