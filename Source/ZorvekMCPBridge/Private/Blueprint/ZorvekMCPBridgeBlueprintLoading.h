// The steps every Blueprint tool takes before it reads or changes anything: resolve what the
// client typed to a Blueprint asset, load it, read its snapshot, and find a graph in it by name.
// Also the graph summaries tools hand back so a client can read any graph next.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeBlueprintLoading
{
	// The graph tools read when the client names none.
	inline constexpr const TCHAR* DefaultGraphName = TEXT("EventGraph");

	// A loaded Blueprint: the handle, the path it was loaded from ("/Game/A/BP_X.BP_X") and its
	// snapshot at load time.
	struct FLoadedBlueprint
	{
		FZorvekMCPBridgeObjectHandle Blueprint;
		FString AssetPath;
		FZorvekMCPBridgeBlueprintSnapshot Snapshot;
	};

	// Resolves BlueprintNameOrPath with Blueprint as the wanted type, completes a package path to
	// "<package>.<asset name>", loads it and reads its snapshot. False with the tool's message in
	// OutError: "Blueprint asset path is empty." or "Could not load Blueprint: %s" (the object path,
	// or the text as typed when nothing resolved).
	bool LoadBlueprint(IZorvekMCPBridgeEditorPort& Port, const FString& BlueprintNameOrPath, FLoadedBlueprint& OutLoaded, FString& OutError);

	// Reads the snapshot again after a change; false when the object is no longer a Blueprint.
	bool RefreshSnapshot(IZorvekMCPBridgeEditorPort& Port, FLoadedBlueprint& Loaded);

	// The graph of that name among all graphs of the Blueprint, compared as FName compares
	// (without regard to case); null when there is none.
	const FZorvekMCPBridgeGraphSnapshot* FindGraph(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& GraphName);

	// "Could not find graph '%s' in %s." for a graph the Blueprint does not have.
	FString MakeGraphNotFoundMessage(const FString& GraphName, const FString& BlueprintPath);

	// The names of the Blueprint's ubergraph pages, in order.
	TArray<FString> GetUbergraphNames(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint);

	// One summary per graph of the Blueprint ("name", "graph_name", "graph_type", "node_count",
	// "connection_count", "comment_count", "event_names", "read_graph_arguments"), in graph order.
	// ReadArgumentsPath is what read_graph_arguments passes back as BlueprintNameOrPath.
	TArray<TSharedPtr<FJsonValue>> MakeGraphSummaries(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& ReadArgumentsPath);
	TSharedPtr<FJsonObject> MakeGraphSummary(const FZorvekMCPBridgeGraphSnapshot& Graph, const FString& ReadArgumentsPath);

	// Links counted once, from their output side; the graph reader lists the same links.
	int32 CountConnections(const FZorvekMCPBridgeGraphSnapshot& Graph);

	// The function name an event node stands for: its custom function name when it has one (custom
	// events, input axis events), else the event function's name. Empty for other nodes.
	FString GetEventNodeName(const FZorvekMCPBridgeNodeSnapshot& Node);
}
