// The graph reader of blueprint_read_graph: one graph of a Blueprint as a compact text dump for
// reading and as structured JSON, every node with the spawner id that makes it again, plus the
// Blueprint-wide sections (variables, components, custom events, interfaces, functions).
//
// Choices this reader makes where the reply's shape leaves room:
// - A variable line of the text dump is name, pin category, pin subcategory, then the
//   subcategory object's path, the type text (container and map value included) and the
//   default value.
// - Nodes whose class is none of the known kinds are "unknown" with no spawner id; the port
//   decides the kind from the node's class (a subclass counts as its base kind).
// - Comment objects also carry "comment_bubble_visible"; the comment colour is an object with
//   "r", "g", "b", "a" and the engine's "rgba" text.
// - Input events carry the key's name under "axis"; "event_type" is "input_axis_key" or
//   "input_key".
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeBlueprintGraphReader
{
	// What the reader makes of one graph: the "raw_result" text and the "parsed_graph" object.
	struct FGraphReading
	{
		FString RawResult;
		TSharedPtr<FJsonObject> ParsedGraph;
	};

	// Reads one graph of the Blueprint. The port is used only to read the component templates'
	// properties; nothing is changed.
	FGraphReading ReadGraph(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeGraphSnapshot& Graph);

	// "function" for the Blueprint's function graphs, otherwise "ubergraph".
	const TCHAR* GetReaderGraphType(const FZorvekMCPBridgeGraphSnapshot& Graph);

	// An event parameter as tools report it: "name", "pin_category", "pin_subcategory",
	// "pin_subcategory_object", "container_type", "type_string", "type".
	TSharedPtr<FJsonObject> MakeEventParameterJson(const FZorvekMCPBridgePinSnapshot& Pin);
	// The parameters of an event node: its data output pins (exec and delegate pins left out).
	TArray<TSharedPtr<FJsonValue>> MakeEventParametersJson(const FZorvekMCPBridgeNodeSnapshot& Node);
	int32 CountEventParameters(const FZorvekMCPBridgeNodeSnapshot& Node);
}
