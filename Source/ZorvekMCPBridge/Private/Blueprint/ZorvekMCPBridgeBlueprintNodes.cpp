#include "Blueprint/ZorvekMCPBridgeBlueprintNodes.h"

#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	const TCHAR* const BlueprintNodesActorComponentClassPath = TEXT("/Script/Engine.ActorComponent");

	// Words clients use for a node's exec output and exec input when the pin has another name.
	const TCHAR* const BlueprintNodesSourceExecWords[] = {TEXT("then"), TEXT("exec"), TEXT("execute"), TEXT("out"), TEXT("output")};
	const TCHAR* const BlueprintNodesTargetExecWords[] = {TEXT("execute"), TEXT("exec"), TEXT("then"), TEXT("in"), TEXT("input")};

	bool IsBlueprintNodesExecPin(const FZorvekMCPBridgeGraphPinSnapshot& Pin)
	{
		return Pin.Pin.PinType.PinCategory == FName(TEXT("exec"));
	}

	FString GetBlueprintNodesGraphName(const FString& GraphName)
	{
		return GraphName.IsEmpty() ? FString(ZorvekMCPBridgeBlueprintLoading::DefaultGraphName) : GraphName;
	}

	const FZorvekMCPBridgeGraphPinSnapshot* FindBlueprintNodesPinByName(const TArray<FZorvekMCPBridgeGraphPinSnapshot>& Pins, const FString& PinName)
	{
		if (PinName.IsEmpty())
		{
			return nullptr;
		}
		return Pins.FindByPredicate([&PinName](const FZorvekMCPBridgeGraphPinSnapshot& Pin) { return Pin.Pin.PinName.ToString().Equals(PinName, ESearchCase::IgnoreCase); });
	}

	// The only exec pin of the node in that direction; null when it has none or several.
	const FZorvekMCPBridgeGraphPinSnapshot* FindBlueprintNodesOnlyExecPin(const TArray<FZorvekMCPBridgeGraphPinSnapshot>& Pins, EZorvekMCPBridgePinDirection Direction)
	{
		const FZorvekMCPBridgeGraphPinSnapshot* Found = nullptr;
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Pins)
		{
			if (IsBlueprintNodesExecPin(Pin) && Pin.Pin.Direction == Direction)
			{
				if (Found)
				{
					return nullptr;
				}
				Found = &Pin;
			}
		}
		return Found;
	}

	template <int32 WordCount>
	bool IsBlueprintNodesWordOf(const FString& Name, const TCHAR* const (&Words)[WordCount])
	{
		for (const TCHAR* Word : Words)
		{
			if (Name.Equals(Word, ESearchCase::IgnoreCase))
			{
				return true;
			}
		}
		return false;
	}

	// The first pin in pin order with that direction whose exec-ness is as asked; null when none.
	const FZorvekMCPBridgeGraphPinSnapshot* FindBlueprintNodesPinAt(const FZorvekMCPBridgeNodeSnapshot& Node, EZorvekMCPBridgePinDirection Direction, bool bExec, int32 Skip = 0)
	{
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
		{
			if (Pin.Pin.Direction == Direction && IsBlueprintNodesExecPin(Pin) == bExec && Skip-- == 0)
			{
				return &Pin;
			}
		}
		return nullptr;
	}

	FString GetBlueprintNodesPinName(const FZorvekMCPBridgeGraphPinSnapshot* Pin)
	{
		return Pin ? Pin->Pin.PinName.ToString() : FString();
	}

	void AddBlueprintNodesCastKeys(const FZorvekMCPBridgeNodeSnapshot& Node, FJsonObject& Result)
	{
		// Cast To X: execute, then, CastFailed, Object, As<X> (and bSuccess when pure)
		// (unreal-behaviour-blueprints.md §2.4).
		const FZorvekMCPBridgeGraphPinSnapshot* CastResult = nullptr;
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
		{
			const FName Category = Pin.Pin.PinType.PinCategory;
			if (Pin.Pin.Direction == EZorvekMCPBridgePinDirection::Output && (Category == FName(TEXT("object")) || Category == FName(TEXT("interface"))))
			{
				CastResult = &Pin;
				break;
			}
		}
		Result.SetStringField(TEXT("cast_result_pin"), GetBlueprintNodesPinName(CastResult));
		Result.SetStringField(TEXT("cast_source_pin"), GetBlueprintNodesPinName(FindBlueprintNodesPinAt(Node, EZorvekMCPBridgePinDirection::Input, false)));
		Result.SetStringField(TEXT("valid_cast_pin"), GetBlueprintNodesPinName(FindBlueprintNodesPinAt(Node, EZorvekMCPBridgePinDirection::Output, true)));
		Result.SetStringField(TEXT("invalid_cast_pin"), GetBlueprintNodesPinName(FindBlueprintNodesPinAt(Node, EZorvekMCPBridgePinDirection::Output, true, 1)));
	}

	// The component a variable node reads or writes: a construction-script component of the
	// Blueprint, or any variable whose type is an actor component class. Null otherwise.
	TSharedPtr<FJsonObject> MakeBlueprintNodesComponentReference(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint,
		const FZorvekMCPBridgeNodeSnapshot& Node, const FZorvekMCPBridgeGraphPinSnapshot* ValuePin, ZorvekMCPBridgeSpawnerIds::EVariableScope Scope)
	{
		TSharedPtr<FJsonObject> Reference = MakeShared<FJsonObject>();
		if (Scope == ZorvekMCPBridgeSpawnerIds::EVariableScope::Self)
		{
			for (const FZorvekMCPBridgeComponentSnapshot& Component : Blueprint.Components)
			{
				if (Component.Name.Equals(Node.Data.VariableName, ESearchCase::IgnoreCase))
				{
					Reference->SetStringField(TEXT("component_name"), Component.Name);
					Reference->SetStringField(TEXT("component_class_path"), Component.ComponentClassPath);
					Reference->SetStringField(TEXT("component_class_name"), Component.ComponentClassName);
					Reference->SetBoolField(TEXT("construction_script_component"), true);
					return Reference;
				}
			}
		}
		if (!ValuePin || ValuePin->Pin.PinType.PinCategory != FName(TEXT("object")) || ValuePin->Pin.PinType.IsContainer())
		{
			return nullptr;
		}
		const FZorvekMCPBridgeTypeIdentity& Class = ValuePin->Pin.PinType.PinSubCategoryObject;
		if (Class.PathName.IsEmpty() || !Port.GetObjects().IsChildOf(Class.PathName, BlueprintNodesActorComponentClassPath))
		{
			return nullptr;
		}
		Reference->SetStringField(TEXT("component_name"), Node.Data.VariableName);
		Reference->SetStringField(TEXT("component_class_path"), Class.PathName);
		Reference->SetStringField(TEXT("component_class_name"), Class.Name);
		Reference->SetBoolField(TEXT("construction_script_component"), false);
		return Reference;
	}

	void AddBlueprintNodesVariableKeys(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node,
		FJsonObject& Result)
	{
		const ZorvekMCPBridgeSpawnerIds::EVariableScope Scope = ZorvekMCPBridgeSpawnerIds::GetVariableScope(Blueprint, Node);
		const bool bSet = Node.Kind == EZorvekMCPBridgeNodeKind::VariableSet;
		// A get shows the value as its output, a set takes it as an input named like the variable.
		const FZorvekMCPBridgeGraphPinSnapshot* ValuePin = Node.Pins.FindByPredicate([&Node, bSet](const FZorvekMCPBridgeGraphPinSnapshot& Pin)
		{
			return Pin.Pin.Direction == (bSet ? EZorvekMCPBridgePinDirection::Input : EZorvekMCPBridgePinDirection::Output)
				&& Pin.Pin.PinName.ToString().Equals(Node.Data.VariableName, ESearchCase::IgnoreCase);
		});
		Result.SetStringField(TEXT("variable_name"), Node.Data.VariableName);
		Result.SetStringField(TEXT("variable_scope"), ZorvekMCPBridgeSpawnerIds::GetVariableScopeWord(Scope));
		Result.SetStringField(TEXT("variable_owner_class_path"), Node.Data.VariableOwnerClassPath);
		Result.SetStringField(TEXT("variable_value_pin"), GetBlueprintNodesPinName(ValuePin));
		Result.SetStringField(TEXT("variable_target_pin"), GetBlueprintNodesPinName(FindBlueprintNodesPinByName(Node.Pins, TEXT("self"))));
		Result.SetStringField(TEXT("variable_exec_input_pin"), GetBlueprintNodesPinName(FindBlueprintNodesPinAt(Node, EZorvekMCPBridgePinDirection::Input, true)));
		Result.SetStringField(TEXT("variable_exec_output_pin"), GetBlueprintNodesPinName(FindBlueprintNodesPinAt(Node, EZorvekMCPBridgePinDirection::Output, true)));
		if (const TSharedPtr<FJsonObject> Component = MakeBlueprintNodesComponentReference(Port, Blueprint, Node, ValuePin, Scope))
		{
			Result.SetObjectField(TEXT("component_reference"), Component);
		}
	}

	bool IsBlueprintNodesEventSpawn(EZorvekMCPBridgeNodeSpawnKind Kind)
	{
		return Kind == EZorvekMCPBridgeNodeSpawnKind::CustomEvent || Kind == EZorvekMCPBridgeNodeSpawnKind::Event || Kind == EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent;
	}

	// The message for a node the engine would not place where the request says.
	FString MakeBlueprintNodesIncompatibleGraphMessage(const FZorvekMCPBridgeNodeSpawnRequest& Request, const FString& SpawnerId, const FString& GraphName, const FString& BlueprintPath)
	{
		if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent)
		{
			return FString::Printf(TEXT("Input axis key event '%s' is not compatible with graph '%s'."), *Request.KeyName, *GraphName);
		}
		if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InputKey)
		{
			return FString::Printf(TEXT("Input key event '%s' is not compatible with graph '%s'."), *Request.KeyName, *GraphName);
		}
		if (IsBlueprintNodesEventSpawn(Request.Kind))
		{
			// The wording of the member tools that add events.
			return FString::Printf(TEXT("Graph '%s' in %s is not an event graph; events can only be added to event graphs."), *GraphName, *BlueprintPath);
		}
		return FString::Printf(TEXT("Spawner id %s cannot be placed in graph '%s'."), *SpawnerId, *GraphName);
	}

	FString MakeBlueprintNodesSpawnFailureMessage(const FZorvekMCPBridgeNodeSpawnResult& Spawned, const FZorvekMCPBridgeNodeSpawnRequest& Request, const FString& SpawnerId,
		const FString& GraphName, const FString& BlueprintPath)
	{
		switch (Spawned.Failure)
		{
		case EZorvekMCPBridgeNodeSpawnFailure::GraphNotFound:
			return ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(GraphName, BlueprintPath);
		case EZorvekMCPBridgeNodeSpawnFailure::IncompatibleGraph:
			return MakeBlueprintNodesIncompatibleGraphMessage(Request, SpawnerId, GraphName, BlueprintPath);
		case EZorvekMCPBridgeNodeSpawnFailure::UnknownPin:
			return FString::Printf(TEXT("Pin default '%s' does not name a pin of the new node. Pins: %s"), *Spawned.FailedPinName, *FString::Join(Spawned.PinNames, TEXT(", ")));
		case EZorvekMCPBridgeNodeSpawnFailure::InvalidPinDefault:
			return FString::Printf(TEXT("Pin default '%s' was refused: %s"), *Spawned.FailedPinName, *Spawned.FailureReason);
		case EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound:
			// Something the id names was there when it was parsed but not when the node was made.
			return FString::Printf(TEXT("Could not resolve what spawner id %s names when the node was made."), *SpawnerId);
		default:
			return FString::Printf(TEXT("Unreal did not create a node for spawner id: %s"), *SpawnerId);
		}
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintNodes::MakeAddResult(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint,
	const FZorvekMCPBridgeGraphSnapshot& Graph, const FZorvekMCPBridgeNodeSnapshot& Node)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetBoolField(TEXT("success"), true);
	Result->SetStringField(TEXT("node_guid"), Node.NodeGuid);
	Result->SetStringField(TEXT("title"), Node.Title);
	Result->SetStringField(TEXT("spawner_id"), ZorvekMCPBridgeSpawnerIds::GetNodeSpawnerId(Blueprint, Graph, Node));
	Result->SetNumberField(TEXT("node_pos_x"), Node.PosX);
	Result->SetNumberField(TEXT("node_pos_y"), Node.PosY);
	if (Node.Kind == EZorvekMCPBridgeNodeKind::DynamicCast)
	{
		AddBlueprintNodesCastKeys(Node, *Result);
	}
	else if (Node.Kind == EZorvekMCPBridgeNodeKind::VariableGet || Node.Kind == EZorvekMCPBridgeNodeKind::VariableSet)
	{
		AddBlueprintNodesVariableKeys(Port, Blueprint, Node, *Result);
	}
	return Result;
}

bool ZorvekMCPBridgeBlueprintNodes::PlaceNode(IZorvekMCPBridgeEditorPort& Port, ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FNodePlacement& Placement,
	FPlacedNode& OutPlaced, FString& OutError)
{
	const FString RequestedGraphName = GetBlueprintNodesGraphName(Placement.GraphName);
	const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, RequestedGraphName);
	if (!Graph)
	{
		OutError = ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(RequestedGraphName, Loaded.AssetPath);
		return false;
	}
	FZorvekMCPBridgeNodeSpawnRequest Request;
	if (!ParseSpawnerId(Port, Loaded.Snapshot, Placement.SpawnerId, Request, OutError))
	{
		return false;
	}
	const FString GraphName = Graph->Name;
	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	const FZorvekMCPBridgeNodeSpawnResult Spawned = Blueprints.SpawnNode(Loaded.Blueprint, GraphName, Request, Placement.PosX, Placement.PosY, Placement.PinDefaults);
	if (Spawned.Failure != EZorvekMCPBridgeNodeSpawnFailure::None || Spawned.Node.NodeGuid.IsEmpty())
	{
		OutError = MakeBlueprintNodesSpawnFailureMessage(Spawned, Request, Placement.SpawnerId, GraphName, Loaded.AssetPath);
		return false;
	}
	Blueprints.MarkStructurallyModified(Loaded.Blueprint);

	FPlacedNode Placed;
	Placed.GraphName = GraphName;
	Placed.Node = Spawned.Node;
	Placed.bReusedExistingNode = Spawned.bReusedExistingNode;
	const FZorvekMCPBridgeGraphSnapshot* PlacedGraph = nullptr;
	if (ZorvekMCPBridgeBlueprintLoading::RefreshSnapshot(Port, Loaded))
	{
		PlacedGraph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, GraphName);
		if (const FZorvekMCPBridgeNodeSnapshot* Node = PlacedGraph ? FindNodeByGuid(*PlacedGraph, Spawned.Node.NodeGuid) : nullptr)
		{
			Placed.Node = *Node;
		}
	}
	FZorvekMCPBridgeGraphSnapshot DetachedGraph;
	DetachedGraph.Name = GraphName;
	Placed.AddResult = MakeAddResult(Port, Loaded.Snapshot, PlacedGraph ? *PlacedGraph : DetachedGraph, Placed.Node);
	Placed.SpawnerId = Placed.AddResult->GetStringField(TEXT("spawner_id"));
	if (Placed.SpawnerId.IsEmpty())
	{
		Placed.SpawnerId = ZorvekMCPBridgeSpawnerIds::MakeSpawnRequestId(Request);
		Placed.AddResult->SetStringField(TEXT("spawner_id"), Placed.SpawnerId);
	}
	if (IsBlueprintNodesEventSpawn(Request.Kind))
	{
		Placed.AddResult->SetBoolField(TEXT("reused_existing_node"), Placed.bReusedExistingNode);
	}
	OutPlaced = MoveTemp(Placed);
	return true;
}

bool ZorvekMCPBridgeBlueprintNodes::PlaceNodeFromRequest(IZorvekMCPBridgeEditorPort& Port, ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FString& GraphName,
	const FZorvekMCPBridgeNodeSpawnRequest& Request, int32 PosX, int32 PosY, const TArray<FZorvekMCPBridgePinDefault>& PinDefaults, FPlacedNode& OutPlaced, FString& OutError)
{
	FNodePlacement Placement;
	Placement.GraphName = GraphName;
	Placement.SpawnerId = ZorvekMCPBridgeSpawnerIds::MakeSpawnRequestId(Request);
	Placement.PosX = PosX;
	Placement.PosY = PosY;
	Placement.PinDefaults = PinDefaults;
	return PlaceNode(Port, Loaded, Placement, OutPlaced, OutError);
}

const FZorvekMCPBridgeGraphPinSnapshot* ZorvekMCPBridgeBlueprintNodes::FindConnectionPin(const TArray<FZorvekMCPBridgeGraphPinSnapshot>& Pins, const FString& PinName, EConnectionEnd End,
	EPinNameFallback Fallback)
{
	if (const FZorvekMCPBridgeGraphPinSnapshot* Exact = FindBlueprintNodesPinByName(Pins, PinName))
	{
		return Exact;
	}
	const bool bAnyName = Fallback == EPinNameFallback::AnyName;
	if (End == EConnectionEnd::Source)
	{
		const bool bExecWord = IsBlueprintNodesWordOf(PinName, BlueprintNodesSourceExecWords);
		const FZorvekMCPBridgeGraphPinSnapshot* Then = (bAnyName || bExecWord) ? FindBlueprintNodesPinByName(Pins, TEXT("then")) : nullptr;
		return Then ? Then : (bExecWord ? FindBlueprintNodesOnlyExecPin(Pins, EZorvekMCPBridgePinDirection::Output) : nullptr);
	}
	// The self pin is labelled "Target" on the node; these two names never fall back to the exec
	// input, which could not take an object anyway.
	if (PinName.Equals(TEXT("self"), ESearchCase::IgnoreCase))
	{
		return FindBlueprintNodesPinByName(Pins, TEXT("Target"));
	}
	if (PinName.Equals(TEXT("Target"), ESearchCase::IgnoreCase))
	{
		return FindBlueprintNodesPinByName(Pins, TEXT("self"));
	}
	const bool bExecWord = IsBlueprintNodesWordOf(PinName, BlueprintNodesTargetExecWords);
	const FZorvekMCPBridgeGraphPinSnapshot* Execute = (bAnyName || bExecWord) ? FindBlueprintNodesPinByName(Pins, TEXT("execute")) : nullptr;
	return Execute ? Execute : (bExecWord ? FindBlueprintNodesOnlyExecPin(Pins, EZorvekMCPBridgePinDirection::Input) : nullptr);
}

const FZorvekMCPBridgeNodeSnapshot* ZorvekMCPBridgeBlueprintNodes::FindNodeByGuid(const FZorvekMCPBridgeGraphSnapshot& Graph, const FString& NodeGuid)
{
	if (NodeGuid.IsEmpty())
	{
		return nullptr;
	}
	return Graph.Nodes.FindByPredicate([&NodeGuid](const FZorvekMCPBridgeNodeSnapshot& Node) { return Node.NodeGuid.Equals(NodeGuid, ESearchCase::IgnoreCase); });
}

bool ZorvekMCPBridgeBlueprintNodes::ResolveConnection(const ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FPinConnection& Connection, FConnectedPins& OutPins,
	FString& OutError)
{
	const FString GraphName = GetBlueprintNodesGraphName(Connection.GraphName);
	const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, GraphName);
	if (!Graph)
	{
		OutError = ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(GraphName, Loaded.AssetPath);
		return false;
	}
	const FZorvekMCPBridgeNodeSnapshot* SourceNode = FindNodeByGuid(*Graph, Connection.SourceNodeGuid);
	const FZorvekMCPBridgeNodeSnapshot* TargetNode = FindNodeByGuid(*Graph, Connection.TargetNodeGuid);
	if (!SourceNode || !TargetNode)
	{
		OutError = TEXT("Could not resolve source or target node GUID.");
		return false;
	}
	const FZorvekMCPBridgeGraphPinSnapshot* SourcePin = FindConnectionPin(SourceNode->Pins, Connection.SourcePinName, EConnectionEnd::Source, EPinNameFallback::AnyName);
	const FZorvekMCPBridgeGraphPinSnapshot* TargetPin = FindConnectionPin(TargetNode->Pins, Connection.TargetPinName, EConnectionEnd::Target, EPinNameFallback::AnyName);
	if (!SourcePin || !TargetPin)
	{
		OutError = FString::Printf(TEXT("Could not resolve pins %s -> %s."), *Connection.SourcePinName, *Connection.TargetPinName);
		return false;
	}
	OutPins.GraphName = Graph->Name;
	OutPins.Source.NodeGuid = SourceNode->NodeGuid;
	OutPins.Source.PinName = SourcePin->Pin.PinName;
	OutPins.Source.Direction = SourcePin->Pin.Direction;
	OutPins.Target.NodeGuid = TargetNode->NodeGuid;
	OutPins.Target.PinName = TargetPin->Pin.PinName;
	OutPins.Target.Direction = TargetPin->Pin.Direction;
	return true;
}

bool ZorvekMCPBridgeBlueprintNodes::ConnectPins(IZorvekMCPBridgeEditorPort& Port, ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FPinConnection& Connection,
	FConnectedPins& OutConnected, FString& OutError)
{
	FConnectedPins Connected;
	if (!ResolveConnection(Loaded, Connection, Connected, OutError))
	{
		return false;
	}
	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	Connected.Schema = Blueprints.TryCreateConnection(Loaded.Blueprint, Connected.GraphName, Connected.Source, Connected.Target);
	if (!Connected.Schema.bConnected)
	{
		OutError = FString::Printf(TEXT("Unreal rejected connection %s:%s -> %s:%s."), *Connection.SourceNodeGuid, *Connection.SourcePinName,
			*Connection.TargetNodeGuid, *Connection.TargetPinName);
		return false;
	}
	// A new link is not a structural change.
	Blueprints.MarkModified(Loaded.Blueprint);
	ZorvekMCPBridgeBlueprintLoading::RefreshSnapshot(Port, Loaded);

	Connected.ResultText = FString::Printf(TEXT("Connected %s:%s -> %s:%s."), *Connected.Source.NodeGuid, *Connected.Source.PinName.ToString(),
		*Connected.Target.NodeGuid, *Connected.Target.PinName.ToString());
	// The schema names what else it did: links it replaced, a conversion it inserted.
	if (!Connected.Schema.Message.IsEmpty())
	{
		Connected.ResultText += TEXT(" ") + Connected.Schema.Message + (Connected.Schema.Message.EndsWith(TEXT(".")) ? TEXT("") : TEXT("."));
	}
	if (!Connected.Schema.ConversionNodeGuid.IsEmpty())
	{
		Connected.ResultText += FString::Printf(TEXT(" Conversion node: %s."), *Connected.Schema.ConversionNodeGuid);
	}
	OutConnected = MoveTemp(Connected);
	return true;
}
