#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	const TCHAR* GetBlueprintSummaryGraphType(EZorvekMCPBridgeGraphKind Kind)
	{
		switch (Kind)
		{
		case EZorvekMCPBridgeGraphKind::Function:
			return TEXT("function");
		case EZorvekMCPBridgeGraphKind::Ubergraph:
			return TEXT("ubergraph");
		case EZorvekMCPBridgeGraphKind::Macro:
			return TEXT("macro");
		default:
			return TEXT("graph");
		}
	}

	bool IsBlueprintEventNode(const FZorvekMCPBridgeNodeSnapshot& Node)
	{
		// UK2Node_CustomEvent and UK2Node_InputAxisKeyEvent are UK2Node_Event subclasses.
		return Node.Kind == EZorvekMCPBridgeNodeKind::Event || Node.Kind == EZorvekMCPBridgeNodeKind::CustomEvent
			|| Node.Kind == EZorvekMCPBridgeNodeKind::InputAxisKeyEvent;
	}
}

bool ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(IZorvekMCPBridgeEditorPort& Port, const FString& BlueprintNameOrPath, FLoadedBlueprint& OutLoaded, FString& OutError)
{
	if (BlueprintNameOrPath.IsEmpty())
	{
		OutError = TEXT("Blueprint asset path is empty.");
		return false;
	}
	FString PackagePath;
	FString ResolveError;
	ZorvekMCPBridgeAssets::ResolveAssetQuery(Port.GetAssetRegistry(), BlueprintNameOrPath, TEXT("Blueprint"), ZorvekMCPBridgeAssets::DefaultResolveLimit, PackagePath, ResolveError);
	if (PackagePath.IsEmpty())
	{
		OutError = FString::Printf(TEXT("Could not load Blueprint: %s"), *BlueprintNameOrPath);
		return false;
	}
	const FString ObjectPath = ZorvekMCPBridgeAssets::MakeAssetObjectPath(PackagePath);
	FLoadedBlueprint Loaded;
	Loaded.Blueprint = Port.GetObjects().LoadObject(ObjectPath);
	Loaded.AssetPath = ObjectPath;
	// ReadBlueprint refuses anything that is not a UBlueprint, as LoadObject<UBlueprint> would.
	if (!Loaded.Blueprint.IsValid() || !Port.GetBlueprints().ReadBlueprint(Loaded.Blueprint, Loaded.Snapshot))
	{
		OutError = FString::Printf(TEXT("Could not load Blueprint: %s"), *ObjectPath);
		return false;
	}
	OutLoaded = MoveTemp(Loaded);
	return true;
}

bool ZorvekMCPBridgeBlueprintLoading::RefreshSnapshot(IZorvekMCPBridgeEditorPort& Port, FLoadedBlueprint& Loaded)
{
	FZorvekMCPBridgeBlueprintSnapshot Snapshot;
	if (!Port.GetBlueprints().ReadBlueprint(Loaded.Blueprint, Snapshot))
	{
		return false;
	}
	Loaded.Snapshot = MoveTemp(Snapshot);
	return true;
}

const FZorvekMCPBridgeGraphSnapshot* ZorvekMCPBridgeBlueprintLoading::FindGraph(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& GraphName)
{
	for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
	{
		if (Graph.Name.Equals(GraphName, ESearchCase::IgnoreCase))
		{
			return &Graph;
		}
	}
	return nullptr;
}

FString ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(const FString& GraphName, const FString& BlueprintPath)
{
	return FString::Printf(TEXT("Could not find graph '%s' in %s."), *GraphName, *BlueprintPath);
}

TArray<FString> ZorvekMCPBridgeBlueprintLoading::GetUbergraphNames(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint)
{
	TArray<FString> Names;
	for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
	{
		if (Graph.Kind == EZorvekMCPBridgeGraphKind::Ubergraph)
		{
			Names.Add(Graph.Name);
		}
	}
	return Names;
}

int32 ZorvekMCPBridgeBlueprintLoading::CountConnections(const FZorvekMCPBridgeGraphSnapshot& Graph)
{
	int32 Count = 0;
	for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
	{
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
		{
			if (Pin.Pin.Direction == EZorvekMCPBridgePinDirection::Output)
			{
				Count += Pin.LinkedTo.Num();
			}
		}
	}
	return Count;
}

FString ZorvekMCPBridgeBlueprintLoading::GetEventNodeName(const FZorvekMCPBridgeNodeSnapshot& Node)
{
	if (!IsBlueprintEventNode(Node))
	{
		return FString();
	}
	return Node.Data.CustomFunctionName.IsEmpty() ? Node.Data.EventName : Node.Data.CustomFunctionName;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintLoading::MakeGraphSummary(const FZorvekMCPBridgeGraphSnapshot& Graph, const FString& ReadArgumentsPath)
{
	int32 CommentCount = 0;
	TArray<TSharedPtr<FJsonValue>> EventNames;
	for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
	{
		if (Node.Kind == EZorvekMCPBridgeNodeKind::Comment)
		{
			++CommentCount;
		}
		else if (IsBlueprintEventNode(Node))
		{
			EventNames.Add(MakeShared<FJsonValueString>(GetEventNodeName(Node)));
		}
	}

	TSharedPtr<FJsonObject> ReadArguments = MakeShared<FJsonObject>();
	ReadArguments->SetStringField(TEXT("BlueprintNameOrPath"), ReadArgumentsPath);
	ReadArguments->SetStringField(TEXT("GraphName"), Graph.Name);

	TSharedPtr<FJsonObject> Summary = MakeShared<FJsonObject>();
	Summary->SetStringField(TEXT("name"), Graph.Name);
	Summary->SetStringField(TEXT("graph_name"), Graph.Name);
	Summary->SetStringField(TEXT("graph_type"), GetBlueprintSummaryGraphType(Graph.Kind));
	Summary->SetNumberField(TEXT("node_count"), Graph.Nodes.Num());
	Summary->SetNumberField(TEXT("connection_count"), CountConnections(Graph));
	Summary->SetNumberField(TEXT("comment_count"), CommentCount);
	Summary->SetArrayField(TEXT("event_names"), EventNames);
	Summary->SetObjectField(TEXT("read_graph_arguments"), ReadArguments);
	return Summary;
}

TArray<TSharedPtr<FJsonValue>> ZorvekMCPBridgeBlueprintLoading::MakeGraphSummaries(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& ReadArgumentsPath)
{
	TArray<TSharedPtr<FJsonValue>> Summaries;
	for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
	{
		Summaries.Add(MakeShared<FJsonValueObject>(MakeGraphSummary(Graph, ReadArgumentsPath)));
	}
	return Summaries;
}
