// Snapshots of the graphs, nodes and pins of a Blueprint in the editor, shared by the engine
// Blueprint port's files.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

class UBlueprint;
class UClass;
class UEdGraph;
class UEdGraphNode;
class UEdGraphPin;

namespace ZorvekMCPBridgeEngineBlueprintNodes
{
	// The class tools name for a class: a Blueprint's skeleton class and its generated class both
	// stand for the generated class; native classes stand for themselves. Null stays null.
	UClass* GetAuthoritativeClass(UClass* Class);

	// The path of the Blueprint that generated the class; empty for native classes.
	FString GetGeneratingBlueprintPath(UClass* Class);

	// A pin as the port reports it: type, default, flags and the links whose other node exists.
	FZorvekMCPBridgeGraphPinSnapshot MakeGraphPinSnapshot(const UEdGraphPin& Pin);

	FZorvekMCPBridgeNodeSnapshot MakeNodeSnapshot(const UBlueprint& Blueprint, const UEdGraphNode& Node);
	FZorvekMCPBridgeGraphSnapshot MakeGraphSnapshot(const UBlueprint& Blueprint, const UEdGraph& Graph, EZorvekMCPBridgeGraphKind Kind, const FString& InterfaceClassPath);
}
