#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

struct FZorvekMCPBridgeToolContext;

// The node-spawner tools: search the catalogue, resolve a request to one spawner id, and the
// composite that resolves, places and wires a node in one call.
namespace ZorvekMCPBridgeNodeSpawnerTools
{
	// How far beside the node it is wired to the composite places a new node when no position is
	// given: to the right of an output pin's node, to the left of an input pin's node.
	constexpr int32 DefaultNewNodeOffsetX = 400;

	TSharedPtr<FJsonObject> HandleFindNodeSpawners(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleResolveNodeSpawner(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleAddNodeBySearchAndConnect(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

	// The pin of a new node the composite wires to ExistingPin when the client names none: the
	// first visible pin of the other direction that is an exec pin for an exec pin, else of the
	// same type, else of the same category and container, else a wildcard. Null when none fits.
	const FZorvekMCPBridgeGraphPinSnapshot* ChooseNewNodePin(const TArray<FZorvekMCPBridgeGraphPinSnapshot>& NewNodePins, const FZorvekMCPBridgePinSnapshot& ExistingPin);
}
