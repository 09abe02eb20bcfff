// Placing nodes from spawner ids and wiring pins: the portable half of blueprint_add_node and
// blueprint_connect_nodes, which the composite node tools call too. A spawner id is parsed and
// checked against the editor (classes, functions, macros, the Blueprint's members, keys) before
// the node exists, so a refused id leaves the graph as it was; the ids reported back are built by
// ZorvekMCPBridgeSpawnerIds, so they are the ids the graph reader prints for the same node.
#pragma once

#include "CoreMinimal.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeBlueprintNodes
{
	// What NodeName reads when the client sends none; it is only echoed back.
	inline constexpr const TCHAR* DefaultNodeName = TEXT("MCPAddedNode");

	// Parses a spawner id into the node it asks for, in the fixed order of the id forms (prefixes
	// without regard to case), and checks with the editor what must exist before the node does.
	// Blueprint is the target Blueprint's snapshot (its functions, custom events, variables,
	// components and interfaces). False with the tool's message in OutError.
	bool ParseSpawnerId(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& SpawnerId,
		FZorvekMCPBridgeNodeSpawnRequest& OutRequest, FString& OutError);

	struct FNodePlacement
	{
		// Found without regard to case; the default graph when empty.
		FString GraphName;
		FString SpawnerId;
		int32 PosX = 0;
		int32 PosY = 0;
		TArray<FZorvekMCPBridgePinDefault> PinDefaults;
	};

	struct FPlacedNode
	{
		// The graph's own spelling of its name.
		FString GraphName;
		// The new (or reused event) node as the graph holds it after the spawn.
		FZorvekMCPBridgeNodeSnapshot Node;
		// The canonical id of the node, as the graph reader prints it.
		FString SpawnerId;
		bool bReusedExistingNode = false;
		// The spawn result object ("add_result").
		TSharedPtr<FJsonObject> AddResult;
	};

	// Finds the graph, parses and checks the id, places the node with its pin defaults and marks
	// the Blueprint structurally modified. Loaded's snapshot is read again afterwards. False with
	// the message when anything is refused; the graph is then as it was. Marking the Blueprint
	// modified as well is the calling tool's step.
	bool PlaceNode(IZorvekMCPBridgeEditorPort& Port, ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FNodePlacement& Placement,
		FPlacedNode& OutPlaced, FString& OutError);

	// The same for a request that is already parsed (a catalogue action): its canonical id goes
	// through the same checks, so both ways refuse alike.
	bool PlaceNodeFromRequest(IZorvekMCPBridgeEditorPort& Port, ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FString& GraphName,
		const FZorvekMCPBridgeNodeSpawnRequest& Request, int32 PosX, int32 PosY, const TArray<FZorvekMCPBridgePinDefault>& PinDefaults,
		FPlacedNode& OutPlaced, FString& OutError);

	// Builds "add_result" for a node of the Blueprint: success, node_guid, title, spawner_id,
	// node_pos_x, node_pos_y, then the cast or variable helper keys where they apply.
	TSharedPtr<FJsonObject> MakeAddResult(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint,
		const FZorvekMCPBridgeGraphSnapshot& Graph, const FZorvekMCPBridgeNodeSnapshot& Node);

	// Which end of a connection a pin name is looked up for: the fallback words differ.
	enum class EConnectionEnd : uint8
	{
		Source,
		Target
	};

	// How far a pin name that matches no pin is taken.
	enum class EPinNameFallback : uint8
	{
		// blueprint_connect_nodes: any name falls back - on the source to "then", on the target to
		// "execute" - and on the target "self" and "Target" stand for each other.
		AnyName,
		// Only exec words ("exec", "then", "execute", "in", "out"...) stand for the exec pins, and
		// "self" / "Target" for each other; other names match nothing.
		ExecWordsOnly
	};

	// A pin of the node by name (either direction, without regard to case, first in pin order);
	// when the exact name finds nothing, the fallbacks above, and for an exec word the node's
	// only exec pin of that side when it has no "then" / "execute" (a macro's exec pins have
	// their own names). Null when nothing matches. Works on a template's pins too.
	const FZorvekMCPBridgeGraphPinSnapshot* FindConnectionPin(const TArray<FZorvekMCPBridgeGraphPinSnapshot>& Pins, const FString& PinName, EConnectionEnd End,
		EPinNameFallback Fallback = EPinNameFallback::ExecWordsOnly);

	// The node whose GUID text equals the given text without regard to case; null when none.
	const FZorvekMCPBridgeNodeSnapshot* FindNodeByGuid(const FZorvekMCPBridgeGraphSnapshot& Graph, const FString& NodeGuid);

	struct FPinConnection
	{
		// The default graph when empty.
		FString GraphName;
		FString SourceNodeGuid;
		FString SourcePinName;
		FString TargetNodeGuid;
		FString TargetPinName;
	};

	struct FConnectedPins
	{
		FString GraphName;
		// The pins as found (the engine's spelling, after any fallback).
		FZorvekMCPBridgePinReference Source;
		FZorvekMCPBridgePinReference Target;
		// The schema's verdict.
		FZorvekMCPBridgeConnectResult Schema;
		// The "result" text of the connect answer.
		FString ResultText;
	};

	// Finds the graph, both nodes and both pins without changing anything. False with the tool's
	// message: the graph message, "Could not resolve source or target node GUID." or
	// "Could not resolve pins %s -> %s.".
	bool ResolveConnection(const ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FPinConnection& Connection, FConnectedPins& OutPins, FString& OutError);

	// Resolves, asks the schema to link the pins and marks the Blueprint modified. A refusal is
	// "Unreal rejected connection %s:%s -> %s:%s." and changes nothing. Loaded's snapshot is read
	// again after a link.
	bool ConnectPins(IZorvekMCPBridgeEditorPort& Port, ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FPinConnection& Connection,
		FConnectedPins& OutConnected, FString& OutError);
}
