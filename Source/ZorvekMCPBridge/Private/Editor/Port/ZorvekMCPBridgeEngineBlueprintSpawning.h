// Making the node a spawn request describes, shared by the node placement and the action
// catalogue's pin preview of the engine Blueprint port.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

class UBlueprint;
class UEdGraph;
class UEdGraphNode;
class UFunction;

namespace ZorvekMCPBridgeEngineBlueprintSpawning
{
	UBlueprint* ToBlueprint(FZorvekMCPBridgeObjectHandle Handle);

	// Graph names compare as FNames do: without regard to case.
	UEdGraph* FindGraph(const UBlueprint& Blueprint, const FString& GraphName);

	// The node of the graph with that GUID (any letter case); null when none.
	UEdGraphNode* FindNode(const UEdGraph& Graph, const FString& NodeGuid);

	// The node the request describes, made inside the graph the way the action menu's spawners
	// make it: NewObject in the graph, a new GUID, the position, the kind's settings,
	// RF_Transactional, AllocateDefaultPins. It is not in the graph's node list yet. Null with
	// TargetNotFound when what the request names does not exist (class, function, variable,
	// macro graph, key), NodeNotCreated when the engine made nothing.
	UEdGraphNode* NewNodeForRequest(UBlueprint& Blueprint, UEdGraph& Graph, const FZorvekMCPBridgeNodeSpawnRequest& Request, int32 PosX, int32 PosY,
		EZorvekMCPBridgeNodeSpawnFailure& OutFailure);

	// A node that never entered its graph's node list goes to the transient package, so nothing
	// of it stays in the Blueprint's package (its name is free again) and the package is not
	// dirtied. DestroyNode would first Modify the graph, which dirties the package.
	void DiscardUnplacedNode(UEdGraphNode& Node);

	// The event function the request names: the parent class's event (Event) or the interface's
	// (InterfaceEvent); null for other kinds or when it does not exist.
	const UFunction* FindRequestedEventFunction(const UBlueprint& Blueprint, const FZorvekMCPBridgeNodeSpawnRequest& Request);
}
