#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// The forest tools: a PCG forest graph asset made by reflection, a PCG volume that runs it in the
// editor world, its bounds, stand-in tree actors at its generated points, and the one-call recipe
// and update. Each probes PCG first and answers the PCG unavailable result when PCG cannot be used;
// each that changes the level requires AllowCurrentLevel=true and checks everything before the
// first change.
namespace ZorvekMCPBridgePcgForestTools
{
	TSharedPtr<FJsonObject> HandleCreateForestRepro(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandlePlaceForestActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleInspectGraph(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleSetForestBounds(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleCreateVisualReproOutput(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleRunForestRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleUpdateForestRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
