#include "Tools/ZorvekMCPBridgeNodeSpawnerTools.h"

#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintNodes.h"
#include "Blueprint/ZorvekMCPBridgeNodeSpawnerCatalogue.h"
#include "Blueprint/ZorvekMCPBridgePinTypes.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeBlueprintNodeTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	const TCHAR* const SearchAndConnectToolName = TEXT("blueprint_add_node_by_search_and_connect");

	// UEdGraphSchema_K2::PC_Wildcard: a pin that takes its type from what it is linked to.
	const TCHAR* const SpawnerToolsWildcardCategory = TEXT("wildcard");

	TSharedPtr<FJsonObject> FailSpawnerTool(const FString& Message)
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(Message, true);
	}

	FString ReadSpawnerToolString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key)
	{
		return ZorvekMCPBridgeToolArguments::ReadString(Arguments, Key, FString()).TrimStartAndEnd();
	}

	// An integer argument that may be absent: a value is there when two different defaults
	// read back the same number.
	bool ReadSpawnerToolOptionalInteger(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, int32& OutValue)
	{
		const int32 Value = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, Key, 0);
		if (Value != ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, Key, 1))
		{
			return false;
		}
		OutValue = Value;
		return true;
	}

	// The Blueprint a search is scoped to: none when the name is empty.
	bool LoadSpawnerToolScope(IZorvekMCPBridgeEditorPort& Port, const FString& BlueprintNameOrPath, ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerScope& OutScope, FString& OutError)
	{
		if (BlueprintNameOrPath.IsEmpty())
		{
			return true;
		}
		ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
		if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, BlueprintNameOrPath, Loaded, OutError))
		{
			return false;
		}
		OutScope = ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerScope::FromBlueprint(Loaded.Snapshot, Loaded.AssetPath);
		return true;
	}

	struct FFindNodeSpawnersParams
	{
		FString Query;
		FString BlueprintNameOrPath;
		int32 Limit = ZorvekMCPBridgeNodeSpawnerCatalogue::DefaultFindLimit;

		static FFindNodeSpawnersParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FFindNodeSpawnersParams Params;
			Params.Query = ReadSpawnerToolString(Arguments, TEXT("Query"));
			Params.BlueprintNameOrPath = ReadSpawnerToolString(Arguments, TEXT("BlueprintNameOrPath"));
			Params.Limit = ZorvekMCPBridgeToolArguments::ReadLimit(Arguments, TEXT("Limit"), ZorvekMCPBridgeNodeSpawnerCatalogue::DefaultFindLimit);
			return Params;
		}
	};

	struct FResolveNodeSpawnerParams
	{
		FString Query;
		FString BlueprintNameOrPath;

		static FResolveNodeSpawnerParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FResolveNodeSpawnerParams Params;
			Params.Query = ReadSpawnerToolString(Arguments, TEXT("Query"));
			Params.BlueprintNameOrPath = ReadSpawnerToolString(Arguments, TEXT("BlueprintNameOrPath"));
			return Params;
		}
	};

	struct FSearchAndConnectParams
	{
		FString BlueprintNameOrPath;
		FString GraphName;
		FString Query;
		FString ExistingNodeGuid;
		FString ExistingPinName;
		FString NewNodePinName;
		FString NodeName;
		bool bHasNodePosX = false;
		bool bHasNodePosY = false;
		int32 NodePosX = 0;
		int32 NodePosY = 0;
		TArray<FZorvekMCPBridgePinDefault> PinDefaults;
		// Why PinDefaults cannot be used; the call is refused with it before anything is made.
		FString PinDefaultsError;

		static FSearchAndConnectParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FSearchAndConnectParams Params;
			Params.BlueprintNameOrPath = ReadSpawnerToolString(Arguments, TEXT("BlueprintNameOrPath"));
			Params.GraphName = ReadSpawnerToolString(Arguments, TEXT("GraphName"));
			if (Params.GraphName.IsEmpty())
			{
				Params.GraphName = ZorvekMCPBridgeBlueprintLoading::DefaultGraphName;
			}
			Params.Query = ReadSpawnerToolString(Arguments, TEXT("Query"));
			Params.ExistingNodeGuid = ReadSpawnerToolString(Arguments, TEXT("ExistingNodeGuid"));
			// Pin names are taken as given: macro pins may hold blanks ("Start Closed").
			Params.ExistingPinName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("ExistingPinName"), FString());
			Params.NewNodePinName = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("NewNodePinName"), FString());
			Params.NodeName = ReadSpawnerToolString(Arguments, TEXT("NodeName"));
			if (Params.NodeName.IsEmpty())
			{
				Params.NodeName = ZorvekMCPBridgeBlueprintNodes::DefaultNodeName;
			}
			Params.bHasNodePosX = ReadSpawnerToolOptionalInteger(Arguments, TEXT("NodePosX"), Params.NodePosX);
			Params.bHasNodePosY = ReadSpawnerToolOptionalInteger(Arguments, TEXT("NodePosY"), Params.NodePosY);
			ZorvekMCPBridgeBlueprintNodeTools::ReadPinDefaults(Arguments, Params.PinDefaults, Params.PinDefaultsError);
			return Params;
		}
	};

	const TCHAR* GetSpawnerToolDirectionWord(EZorvekMCPBridgePinDirection Direction)
	{
		return Direction == EZorvekMCPBridgePinDirection::Output ? TEXT("output") : TEXT("input");
	}

	FString DescribeSpawnerToolPins(const TArray<FZorvekMCPBridgeGraphPinSnapshot>& Pins)
	{
		TArray<FString> Names;
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Pins)
		{
			Names.Add(FString::Printf(TEXT("%s (%s %s)"), *Pin.Pin.PinName.ToString(), GetSpawnerToolDirectionWord(Pin.Pin.Direction),
				*ZorvekMCPBridgePinTypes::DescribePinType(Pin.Pin.PinType)));
		}
		return Names.IsEmpty() ? FString(TEXT("(none)")) : FString::Join(Names, TEXT(", "));
	}

	bool AreSpawnerToolPinTypesEqual(const FZorvekMCPBridgePinType& Left, const FZorvekMCPBridgePinType& Right)
	{
		return Left.PinCategory == Right.PinCategory && Left.PinSubCategory == Right.PinSubCategory && Left.ContainerType == Right.ContainerType
			&& Left.PinSubCategoryObject.PathName.Equals(Right.PinSubCategoryObject.PathName, ESearchCase::IgnoreCase);
	}

	// The existing node's pin by name: as a connection's source first (an exec word stands for
	// "then"), then as its target ("execute", self for Target).
	const FZorvekMCPBridgeGraphPinSnapshot* FindExistingSpawnerToolPin(const FZorvekMCPBridgeNodeSnapshot& Node, const FString& PinName)
	{
		using ZorvekMCPBridgeBlueprintNodes::EConnectionEnd;
		const FZorvekMCPBridgeGraphPinSnapshot* Pin = ZorvekMCPBridgeBlueprintNodes::FindConnectionPin(Node.Pins, PinName, EConnectionEnd::Source);
		return Pin ? Pin : ZorvekMCPBridgeBlueprintNodes::FindConnectionPin(Node.Pins, PinName, EConnectionEnd::Target);
	}

	// A pin of the new node for the other end of the link: the named one (with the fallback words
	// of the end it takes), or the one ChooseNewNodePin picks.
	const FZorvekMCPBridgeGraphPinSnapshot* FindNewSpawnerToolPin(const TArray<FZorvekMCPBridgeGraphPinSnapshot>& Pins, const FString& PinName, const FZorvekMCPBridgePinSnapshot& ExistingPin)
	{
		if (PinName.IsEmpty())
		{
			return ZorvekMCPBridgeNodeSpawnerTools::ChooseNewNodePin(Pins, ExistingPin);
		}
		const bool bNewIsTarget = ExistingPin.Direction == EZorvekMCPBridgePinDirection::Output;
		const FZorvekMCPBridgeGraphPinSnapshot* Pin = ZorvekMCPBridgeBlueprintNodes::FindConnectionPin(Pins, PinName,
			bNewIsTarget ? ZorvekMCPBridgeBlueprintNodes::EConnectionEnd::Target : ZorvekMCPBridgeBlueprintNodes::EConnectionEnd::Source);
		return Pin && Pin->Pin.Direction != ExistingPin.Direction ? Pin : nullptr;
	}

	// The report of blueprint_add_node_by_search_and_connect: one entry per step taken.
	class FSearchAndConnectReport
	{
	public:
		FSearchAndConnectReport(const FString& InAssetPath, const FString& InGraphName, const FString& InQuery)
			: AssetPath(InAssetPath)
			, GraphName(InGraphName)
			, Query(InQuery)
		{
		}

		TSharedPtr<FJsonObject> AddStep(const TCHAR* Step, bool bSuccess, const FString& Detail)
		{
			TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
			Entry->SetStringField(TEXT("step"), Step);
			Entry->SetBoolField(TEXT("success"), bSuccess);
			Entry->SetStringField(TEXT("detail"), Detail);
			Steps.Add(MakeShared<FJsonValueObject>(Entry));
			return Entry;
		}

		// The failure answer: what failed and why, every step so far, and whether the graph is as
		// it was (a refused link removes the new node again).
		TSharedPtr<FJsonObject> Fail(const TCHAR* FailedStep, const FString& Message, const TSharedPtr<FJsonObject>& Resolution, const TCHAR* NextStep, bool bGraphUnchanged = true)
		{
			TSharedPtr<FJsonObject> Result = MakeHeader(false);
			Result->SetStringField(TEXT("failed_step"), FailedStep);
			Result->SetStringField(TEXT("error"), Message);
			Result->SetBoolField(TEXT("graph_unchanged"), bGraphUnchanged);
			if (Resolution.IsValid())
			{
				Result->SetObjectField(TEXT("resolution"), Resolution);
			}
			Result->SetArrayField(TEXT("steps"), Steps);
			Result->SetStringField(TEXT("next_step"), NextStep);
			return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, true);
		}

		TSharedPtr<FJsonObject> MakeHeader(bool bSuccess) const
		{
			TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
			Result->SetStringField(TEXT("asset_path"), AssetPath);
			Result->SetStringField(TEXT("graph_name"), GraphName);
			Result->SetStringField(TEXT("query"), Query);
			Result->SetBoolField(TEXT("success"), bSuccess);
			return Result;
		}

		TArray<TSharedPtr<FJsonValue>> Steps;
		FString AssetPath;
		FString GraphName;
		FString Query;
	};

	TSharedPtr<FJsonObject> SearchAndConnect(IZorvekMCPBridgeEditorPort& Port, const FSearchAndConnectParams& Params)
	{
		using namespace ZorvekMCPBridgeBlueprintNodes;
		namespace Catalogue = ZorvekMCPBridgeNodeSpawnerCatalogue;

		// Arguments, Blueprint, graph, the node and pin to wire to: all found before anything else.
		if (Params.Query.IsEmpty())
		{
			return FailSpawnerTool(TEXT("blueprint_add_node_by_search_and_connect requires Query."));
		}
		if (Params.ExistingNodeGuid.IsEmpty() || Params.ExistingPinName.IsEmpty())
		{
			return FailSpawnerTool(TEXT("blueprint_add_node_by_search_and_connect requires ExistingNodeGuid and ExistingPinName."));
		}
		if (!Params.PinDefaultsError.IsEmpty())
		{
			return FailSpawnerTool(Params.PinDefaultsError);
		}
		ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
		FString Error;
		if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
		{
			return FailSpawnerTool(Error);
		}
		const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, Params.GraphName);
		if (!Graph)
		{
			return FailSpawnerTool(ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(Params.GraphName, Loaded.AssetPath));
		}
		const FString GraphName = Graph->Name;
		const FZorvekMCPBridgeNodeSnapshot* ExistingNodeInGraph = FindNodeByGuid(*Graph, Params.ExistingNodeGuid);
		if (!ExistingNodeInGraph)
		{
			return FailSpawnerTool(FString::Printf(TEXT("Could not resolve ExistingNodeGuid in graph '%s': %s"), *GraphName, *Params.ExistingNodeGuid));
		}
		// Copies: the snapshot is read again once the node is placed.
		const FZorvekMCPBridgeNodeSnapshot ExistingNode = *ExistingNodeInGraph;
		const FZorvekMCPBridgeGraphPinSnapshot* ExistingPinInNode = FindExistingSpawnerToolPin(ExistingNode, Params.ExistingPinName);
		if (!ExistingPinInNode)
		{
			return FailSpawnerTool(FString::Printf(TEXT("Could not resolve pin '%s' on node %s. Pins: %s"), *Params.ExistingPinName, *ExistingNode.NodeGuid,
				*DescribeSpawnerToolPins(ExistingNode.Pins)));
		}
		const FZorvekMCPBridgePinSnapshot ExistingPin = ExistingPinInNode->Pin;
		const bool bExistingIsSource = ExistingPin.Direction == EZorvekMCPBridgePinDirection::Output;
		const TCHAR* const NewPinDirection = bExistingIsSource ? TEXT("input") : TEXT("output");

		IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
		FSearchAndConnectReport Report(Loaded.AssetPath, GraphName, Params.Query);

		// 1. Resolve the request, with the Blueprint's own members in the catalogue.
		const Catalogue::FSpawnerScope Scope = Catalogue::FSpawnerScope::FromBlueprint(Loaded.Snapshot, Loaded.AssetPath);
		const Catalogue::FSpawnerResolution Resolution = Catalogue::Resolve(Catalogue::Search(Blueprints, Scope, Params.Query));
		const TSharedPtr<FJsonObject> ResolutionJson = Catalogue::MakeResolutionJson(Blueprints, Scope, Params.Query, Resolution);
		if (!Resolution.bResolved)
		{
			const FString Message = FString::Printf(TEXT("Could not resolve '%s' to one node spawner (%s)."), *Params.Query, *Resolution.RejectedReason);
			Report.AddStep(TEXT("resolve"), false, Message)->SetStringField(TEXT("rejected_reason"), Resolution.RejectedReason);
			return Report.Fail(TEXT("resolve"), Message, ResolutionJson,
				TEXT("Pick a spawner_id from resolution.candidates and use blueprint_add_node plus blueprint_connect_nodes, or add words that tell the candidates apart."));
		}
		const Catalogue::FSpawnerMatch& Best = Resolution.Best;
		const FZorvekMCPBridgeNodeSpawnRequest& Request = Best.Action.Request;
		{
			TSharedPtr<FJsonObject> Step = Report.AddStep(TEXT("resolve"), true, FString::Printf(TEXT("'%s' resolved to '%s'."), *Params.Query, *Best.Action.Title));
			Step->SetStringField(TEXT("spawner_id"), Best.SpawnerId);
			Step->SetStringField(TEXT("confidence"), Resolution.Confidence);
		}

		// 2. Choose the new node's pin on the node the action will make, before making it.
		TArray<FZorvekMCPBridgeGraphPinSnapshot> TemplatePins;
		const bool bHasTemplate = Blueprints.GetNodeActionPins(Loaded.Blueprint, Request, TemplatePins);
		FString ChosenPinName;
		if (bHasTemplate)
		{
			const FZorvekMCPBridgeGraphPinSnapshot* Chosen = FindNewSpawnerToolPin(TemplatePins, Params.NewNodePinName, ExistingPin);
			if (!Chosen)
			{
				const FString Message = Params.NewNodePinName.IsEmpty()
					? FString::Printf(TEXT("'%s' (%s) has no %s pin that fits %s pin '%s' (%s). Pins: %s"), *Best.Action.Title, *Best.SpawnerId, NewPinDirection,
						GetSpawnerToolDirectionWord(ExistingPin.Direction), *ExistingPin.PinName.ToString(), *ZorvekMCPBridgePinTypes::DescribePinType(ExistingPin.PinType),
						*DescribeSpawnerToolPins(TemplatePins))
					: FString::Printf(TEXT("'%s' (%s) has no %s pin named '%s'. Pins: %s"), *Best.Action.Title, *Best.SpawnerId, NewPinDirection, *Params.NewNodePinName,
						*DescribeSpawnerToolPins(TemplatePins));
				Report.AddStep(TEXT("choose_pin"), false, Message);
				return Report.Fail(TEXT("choose_pin"), Message, ResolutionJson, TEXT("Name a pin of the new node with NewNodePinName, or connect another pin of the existing node."));
			}
			ChosenPinName = Chosen->Pin.PinName.ToString();
			Report.AddStep(TEXT("choose_pin"), true, FString::Printf(TEXT("%s pin '%s' of the new node %s %s pin '%s'."), NewPinDirection, *ChosenPinName,
				bExistingIsSource ? TEXT("takes") : TEXT("feeds"), GetSpawnerToolDirectionWord(ExistingPin.Direction), *ExistingPin.PinName.ToString()))
				->SetStringField(TEXT("pin_name"), ChosenPinName);
		}

		// 3. Place the node beside the node it is wired to, unless the client says where.
		const int32 PosX = Params.bHasNodePosX ? Params.NodePosX
			: ExistingNode.PosX + (bExistingIsSource ? ZorvekMCPBridgeNodeSpawnerTools::DefaultNewNodeOffsetX : -ZorvekMCPBridgeNodeSpawnerTools::DefaultNewNodeOffsetX);
		const int32 PosY = Params.bHasNodePosY ? Params.NodePosY : ExistingNode.PosY;
		FPlacedNode Placed;
		if (!PlaceNodeFromRequest(Port, Loaded, GraphName, Request, PosX, PosY, Params.PinDefaults, Placed, Error))
		{
			Report.AddStep(TEXT("add_node"), false, Error);
			return Report.Fail(TEXT("add_node"), Error, ResolutionJson, TEXT("Fix the argument the message names and call again; nothing was added."));
		}
		const FString AddedDetail = Placed.bReusedExistingNode ? FString::Printf(TEXT("Reused the existing '%s' node %s."), *Placed.Node.Title, *Placed.Node.NodeGuid)
			: FString::Printf(TEXT("Added '%s' as node %s."), *Placed.Node.Title, *Placed.Node.NodeGuid);
		Report.AddStep(TEXT("add_node"), true, AddedDetail)->SetStringField(TEXT("node_guid"), Placed.Node.NodeGuid);

		// 4. Wire it. A refused link removes the new node again, so the graph is as it was.
		const FZorvekMCPBridgeGraphPinSnapshot* NewPin = ChosenPinName.IsEmpty() ? nullptr : FindConnectionPin(Placed.Node.Pins, ChosenPinName,
			bExistingIsSource ? EConnectionEnd::Target : EConnectionEnd::Source);
		if (!NewPin)
		{
			NewPin = FindNewSpawnerToolPin(Placed.Node.Pins, Params.NewNodePinName, ExistingPin);
		}
		FConnectedPins Connected;
		bool bConnected = false;
		if (NewPin)
		{
			FPinConnection Connection;
			Connection.GraphName = Placed.GraphName;
			Connection.SourceNodeGuid = bExistingIsSource ? ExistingNode.NodeGuid : Placed.Node.NodeGuid;
			Connection.SourcePinName = bExistingIsSource ? ExistingPin.PinName.ToString() : NewPin->Pin.PinName.ToString();
			Connection.TargetNodeGuid = bExistingIsSource ? Placed.Node.NodeGuid : ExistingNode.NodeGuid;
			Connection.TargetPinName = bExistingIsSource ? NewPin->Pin.PinName.ToString() : ExistingPin.PinName.ToString();
			bConnected = ConnectPins(Port, Loaded, Connection, Connected, Error);
		}
		else
		{
			Error = FString::Printf(TEXT("The new node %s has no %s pin to connect to '%s'. Pins: %s"), *Placed.Node.NodeGuid, NewPinDirection,
				*ExistingPin.PinName.ToString(), *DescribeSpawnerToolPins(Placed.Node.Pins));
		}
		if (!bConnected)
		{
			Report.AddStep(TEXT("connect"), false, Error);
			// A reused event node was there before the call and stays.
			bool bRemoved = true;
			if (!Placed.bReusedExistingNode)
			{
				bRemoved = Blueprints.RemoveNode(Loaded.Blueprint, Placed.GraphName, Placed.Node.NodeGuid);
				Report.AddStep(TEXT("roll_back"), bRemoved, bRemoved ? FString::Printf(TEXT("Removed the new node %s again."), *Placed.Node.NodeGuid)
					: FString::Printf(TEXT("The new node %s could not be removed."), *Placed.Node.NodeGuid));
			}
			return Report.Fail(TEXT("connect"), Error, ResolutionJson,
				TEXT("Connect another pin (see blueprint_read_graph), or add the node with blueprint_add_node and wire it yourself."), bRemoved);
		}
		Report.AddStep(TEXT("connect"), true, Connected.ResultText);
		Blueprints.MarkModified(Loaded.Blueprint);

		TSharedPtr<FJsonObject> Connection = MakeShared<FJsonObject>();
		Connection->SetStringField(TEXT("source_node_guid"), Connected.Source.NodeGuid);
		Connection->SetStringField(TEXT("source_pin"), Connected.Source.PinName.ToString());
		Connection->SetStringField(TEXT("target_node_guid"), Connected.Target.NodeGuid);
		Connection->SetStringField(TEXT("target_pin"), Connected.Target.PinName.ToString());
		Connection->SetStringField(TEXT("result"), Connected.ResultText);

		TSharedPtr<FJsonObject> Result = Report.MakeHeader(true);
		Result->SetStringField(TEXT("spawner_id"), Placed.SpawnerId);
		Result->SetStringField(TEXT("node_guid"), Placed.Node.NodeGuid);
		Result->SetNumberField(TEXT("node_pos_x"), Placed.Node.PosX);
		Result->SetNumberField(TEXT("node_pos_y"), Placed.Node.PosY);
		Result->SetStringField(TEXT("node_name"), Params.NodeName);
		Result->SetObjectField(TEXT("add_result"), Placed.AddResult);
		Result->SetObjectField(TEXT("connection"), Connection);
		Result->SetBoolField(TEXT("connected"), true);
		Result->SetObjectField(TEXT("resolution"), ResolutionJson);
		Result->SetArrayField(TEXT("steps"), Report.Steps);
		Result->SetStringField(TEXT("next_step"), TEXT("Call blueprint_compile, then blueprint_read_graph to verify."));
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
	}
}

const FZorvekMCPBridgeGraphPinSnapshot* ZorvekMCPBridgeNodeSpawnerTools::ChooseNewNodePin(const TArray<FZorvekMCPBridgeGraphPinSnapshot>& NewNodePins, const FZorvekMCPBridgePinSnapshot& ExistingPin)
{
	const bool bExec = ExistingPin.PinType.PinCategory == FZorvekMCPBridgePinCategories::PC_Exec;
	const auto FindFirst = [&NewNodePins, &ExistingPin](auto Fits) -> const FZorvekMCPBridgeGraphPinSnapshot*
	{
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : NewNodePins)
		{
			if (!Pin.bHidden && Pin.Pin.Direction != ExistingPin.Direction && Fits(Pin.Pin.PinType))
			{
				return &Pin;
			}
		}
		return nullptr;
	};
	if (bExec)
	{
		return FindFirst([](const FZorvekMCPBridgePinType& Type) { return Type.PinCategory == FZorvekMCPBridgePinCategories::PC_Exec; });
	}
	const FZorvekMCPBridgePinType& Wanted = ExistingPin.PinType;
	if (const FZorvekMCPBridgeGraphPinSnapshot* Same = FindFirst([&Wanted](const FZorvekMCPBridgePinType& Type) { return AreSpawnerToolPinTypesEqual(Type, Wanted); }))
	{
		return Same;
	}
	if (const FZorvekMCPBridgeGraphPinSnapshot* SameCategory = FindFirst([&Wanted](const FZorvekMCPBridgePinType& Type)
		{
			return Type.PinCategory == Wanted.PinCategory && Type.ContainerType == Wanted.ContainerType;
		}))
	{
		return SameCategory;
	}
	return FindFirst([](const FZorvekMCPBridgePinType& Type) { return Type.PinCategory == FName(SpawnerToolsWildcardCategory); });
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeNodeSpawnerTools::HandleFindNodeSpawners(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_find_node_spawners"));
	}
	const FFindNodeSpawnersParams Params = FFindNodeSpawnersParams::Read(Arguments);
	ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerScope Scope;
	FString Error;
	if (!LoadSpawnerToolScope(*Context.EditorPort, Params.BlueprintNameOrPath, Scope, Error))
	{
		return FailSpawnerTool(Error);
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(ZorvekMCPBridgeNodeSpawnerCatalogue::FindNodeSpawners(Context.EditorPort->GetBlueprints(), Scope, Params.Query, Params.Limit), false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeNodeSpawnerTools::HandleResolveNodeSpawner(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_resolve_node_spawner"));
	}
	const FResolveNodeSpawnerParams Params = FResolveNodeSpawnerParams::Read(Arguments);
	if (Params.Query.IsEmpty())
	{
		return FailSpawnerTool(TEXT("blueprint_resolve_node_spawner requires Query."));
	}
	namespace Catalogue = ZorvekMCPBridgeNodeSpawnerCatalogue;
	Catalogue::FSpawnerScope Scope;
	FString Error;
	if (!LoadSpawnerToolScope(*Context.EditorPort, Params.BlueprintNameOrPath, Scope, Error))
	{
		return FailSpawnerTool(Error);
	}
	IZorvekMCPBridgeBlueprints& Blueprints = Context.EditorPort->GetBlueprints();
	const Catalogue::FSpawnerResolution Resolution = Catalogue::Resolve(Catalogue::Search(Blueprints, Scope, Params.Query));
	// A refused resolution is an answer, not a failure: its candidates are what the client needs.
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Catalogue::MakeResolutionJson(Blueprints, Scope, Params.Query, Resolution), false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeNodeSpawnerTools::HandleAddNodeBySearchAndConnect(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(SearchAndConnectToolName);
	}
	return SearchAndConnect(*Context.EditorPort, FSearchAndConnectParams::Read(Arguments));
}
