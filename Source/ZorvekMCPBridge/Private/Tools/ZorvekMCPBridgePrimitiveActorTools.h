#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// Actor Blueprints made of the engine's basic shapes: blueprint_create_primitive_actor (parts or a
// preset) and the city pieces blueprint_create_road_actor, blueprint_create_intersection_actor and
// blueprint_create_skyscraper_actor.
namespace ZorvekMCPBridgePrimitiveActorTools
{
	TSharedPtr<FJsonObject> HandleCreatePrimitiveActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleCreateRoadActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleCreateIntersectionActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleCreateSkyscraperActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
