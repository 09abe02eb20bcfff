#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// The composite Blueprint tools that build a line of nodes from an event in one call: component
// motion from Event Tick, and a dynamic material parameter set up at BeginPlay.
namespace ZorvekMCPBridgeBlueprintCompositeTools
{
	TSharedPtr<FJsonObject> HandleAddComponentMotion(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleAddDynamicMaterialParameterUpdate(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
