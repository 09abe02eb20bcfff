#include "Blueprint/ZorvekMCPBridgeEventChaining.h"

#include "Blueprint/ZorvekMCPBridgeBlueprintNodes.h"
#include "Blueprint/ZorvekMCPBridgePinTypes.h"
#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeBlueprintNodeTools.h"

namespace
{
	using namespace ZorvekMCPBridgeEventChaining;

	const TCHAR* const EventChainingActorClassPath = TEXT("/Script/Engine.Actor");
	const TCHAR* const EventChainingThenPin = TEXT("then");
	const TCHAR* const EventChainingExecutePin = TEXT("execute");
	// The free row under a graph's nodes, as the member tools place new events.
	constexpr int32 EventChainingRowGap = 200;
	constexpr int32 EventChainingGrid = 16;

	bool EventChainingSameType(const FZorvekMCPBridgePinType& Left, const FZorvekMCPBridgePinType& Right)
	{
		// float and double variables are one real type to a designer; the precision is not checked.
		return Left.PinCategory == Right.PinCategory && Left.ContainerType == Right.ContainerType
			&& (Left.PinCategory == FZorvekMCPBridgePinCategories::PC_Real || Left.PinSubCategory == Right.PinSubCategory)
			&& Left.PinSubCategoryObject.PathName.Equals(Right.PinSubCategoryObject.PathName, ESearchCase::IgnoreCase);
	}

	const FZorvekMCPBridgeVariableSnapshot* EventChainingFindVariable(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FName& Name)
	{
		return Blueprint.Variables.FindByPredicate([&Name](const FZorvekMCPBridgeVariableSnapshot& Variable) { return Variable.VarName == Name; });
	}

	const FZorvekMCPBridgeGraphPinSnapshot* EventChainingFindPin(const TArray<FZorvekMCPBridgeGraphPinSnapshot>& Pins, const FString& PinName)
	{
		return Pins.FindByPredicate([&PinName](const FZorvekMCPBridgeGraphPinSnapshot& Pin) { return Pin.Pin.PinName.ToString().Equals(PinName, ESearchCase::IgnoreCase); });
	}

	// The enabled node of the event override in any ubergraph page, and that page.
	const FZorvekMCPBridgeNodeSnapshot* EventChainingFindEvent(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& EventFunctionName, FString& OutGraphName)
	{
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			if (Graph.Kind != EZorvekMCPBridgeGraphKind::Ubergraph)
			{
				continue;
			}
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
			{
				if (Node.Kind == EZorvekMCPBridgeNodeKind::Event && Node.bEnabled && Node.Data.EventName.Equals(EventFunctionName, ESearchCase::IgnoreCase))
				{
					OutGraphName = Graph.Name;
					return &Node;
				}
			}
		}
		return nullptr;
	}

	FZorvekMCPBridgeNodeSpawnRequest EventChainingEventRequest(const FString& EventFunctionName)
	{
		FZorvekMCPBridgeNodeSpawnRequest Request;
		Request.Kind = EZorvekMCPBridgeNodeSpawnKind::Event;
		Request.FunctionName = EventFunctionName;
		return Request;
	}

	// The pins of a planned node before it exists; false for a Get or Set of a variable the call
	// has yet to add (its pins are the variable's own and need no check).
	bool EventChainingTemplatePins(IZorvekMCPBridgeEditorPort& Port, const ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FGraphPlan& Plan,
		const FZorvekMCPBridgeNodeSpawnRequest& Request, TArray<FZorvekMCPBridgeGraphPinSnapshot>& OutPins, bool& bOutPlanned, FString& OutError)
	{
		bOutPlanned = false;
		const bool bVariable = Request.Kind == EZorvekMCPBridgeNodeSpawnKind::VariableGet || Request.Kind == EZorvekMCPBridgeNodeSpawnKind::VariableSet;
		if (bVariable && Request.OwnerClassPath.IsEmpty() && !EventChainingFindVariable(Loaded.Snapshot, FName(Request.VariableName)))
		{
			for (const FPlannedVariable& Variable : Plan.Variables)
			{
				if (Variable.Name == FName(Request.VariableName))
				{
					bOutPlanned = true;
					return true;
				}
			}
		}
		const FString SpawnerId = ZorvekMCPBridgeSpawnerIds::MakeSpawnRequestId(Request);
		FZorvekMCPBridgeNodeSpawnRequest Parsed;
		if (!ZorvekMCPBridgeBlueprintNodes::ParseSpawnerId(Port, Loaded.Snapshot, SpawnerId, Parsed, OutError))
		{
			return false;
		}
		if (!Port.GetBlueprints().GetNodeActionPins(Loaded.Blueprint, Parsed, OutPins))
		{
			OutError = FString::Printf(TEXT("Unreal cannot make a node for spawner id: %s"), *SpawnerId);
			return false;
		}
		return true;
	}

	// Where the free row under the graph's nodes begins, on the grid.
	void EventChainingFindOrigin(const FZorvekMCPBridgeGraphSnapshot& Graph, int32& OutX, int32& OutY)
	{
		OutX = 0;
		OutY = 0;
		if (Graph.Nodes.IsEmpty())
		{
			return;
		}
		int32 Bottom = Graph.Nodes[0].PosY + Graph.Nodes[0].Height;
		int32 Left = Graph.Nodes[0].PosX;
		for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
		{
			Bottom = FMath::Max(Bottom, Node.PosY + Node.Height);
			Left = FMath::Min(Left, Node.PosX);
		}
		const int32 Wanted = Bottom + EventChainingRowGap;
		OutX = Left;
		OutY = ((Wanted + EventChainingGrid - 1) / EventChainingGrid) * EventChainingGrid;
	}

	// The report and the taking back of one ApplyPlan call.
	class FEventChainingRun
	{
	public:
		FEventChainingRun(IZorvekMCPBridgeEditorPort& InPort, ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& InLoaded, const FPreparedPlan& InPrepared)
			: Port(InPort)
			, Loaded(InLoaded)
			, Prepared(InPrepared)
		{
		}

		TSharedPtr<FJsonObject> AddStep(const TCHAR* Step, bool bSuccess, const FString& Detail)
		{
			TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
			Entry->SetStringField(TEXT("step"), Step);
			Entry->SetBoolField(TEXT("success"), bSuccess);
			Entry->SetStringField(TEXT("detail"), Detail);
			Applied.Steps.Add(MakeShared<FJsonValueObject>(Entry));
			return Entry;
		}

		// Records the refusal and takes back the nodes, then the variables, this call added.
		FAppliedPlan Fail(const TCHAR* Step, const FString& Error)
		{
			AddStep(Step, false, Error);
			Applied.bSuccess = false;
			Applied.FailedStep = Step;
			Applied.Error = Error;
			IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
			for (int32 Index = AddedNodes.Num() - 1; Index >= 0; --Index)
			{
				const bool bRemoved = Blueprints.RemoveNode(Loaded.Blueprint, Prepared.GraphName, AddedNodes[Index]);
				Applied.bBlueprintUnchanged &= bRemoved;
				AddStep(TEXT("roll_back"), bRemoved, bRemoved ? FString::Printf(TEXT("Removed node %s again."), *AddedNodes[Index])
					: FString::Printf(TEXT("Node %s could not be removed."), *AddedNodes[Index]));
			}
			for (int32 Index = AddedVariables.Num() - 1; Index >= 0; --Index)
			{
				const bool bRemoved = Blueprints.RemoveMemberVariable(Loaded.Blueprint, AddedVariables[Index]);
				Applied.bBlueprintUnchanged &= bRemoved;
				const FString Name = AddedVariables[Index].ToString();
				AddStep(TEXT("roll_back"), bRemoved, bRemoved ? FString::Printf(TEXT("Removed variable '%s' again."), *Name)
					: FString::Printf(TEXT("Variable '%s' could not be removed."), *Name));
			}
			if (bReplacedGhost)
			{
				// The editor deleted the ghost when the event was placed; it is not put back.
				Applied.bBlueprintUnchanged = false;
			}
			ZorvekMCPBridgeBlueprintLoading::RefreshSnapshot(Port, Loaded);
			return MoveTemp(Applied);
		}

		bool PlaceNode(const FString& Key, const FZorvekMCPBridgeNodeSpawnRequest& Request, int32 PosX, int32 PosY, const TArray<FZorvekMCPBridgePinDefault>& PinDefaults,
			FString& OutError)
		{
			ZorvekMCPBridgeBlueprintNodes::FPlacedNode Placed;
			if (!ZorvekMCPBridgeBlueprintNodes::PlaceNodeFromRequest(Port, Loaded, Prepared.GraphName, Request, PosX, PosY, PinDefaults, Placed, OutError))
			{
				return false;
			}
			if (!Placed.bReusedExistingNode)
			{
				AddedNodes.Add(Placed.Node.NodeGuid);
			}
			Applied.NodeGuids.Add(Key, Placed.Node.NodeGuid);
			TSharedPtr<FJsonObject> Node = MakeShared<FJsonObject>();
			Node->SetStringField(TEXT("key"), Key);
			Node->SetStringField(TEXT("node_guid"), Placed.Node.NodeGuid);
			Node->SetStringField(TEXT("title"), Placed.Node.Title);
			Node->SetStringField(TEXT("spawner_id"), Placed.SpawnerId);
			Node->SetBoolField(TEXT("reused_existing_node"), Placed.bReusedExistingNode);
			Applied.Nodes.Add(MakeShared<FJsonValueObject>(Node));
			const FString Title = Placed.Node.Title.Replace(TEXT("\n"), TEXT(" "));
			const FString Detail = Placed.bReusedExistingNode ? FString::Printf(TEXT("Reused '%s' (%s) as %s."), *Title, *Key, *Placed.Node.NodeGuid)
				: FString::Printf(TEXT("Added '%s' (%s) as %s."), *Title, *Key, *Placed.Node.NodeGuid);
			AddStep(TEXT("add_node"), true, Detail)->SetStringField(TEXT("node_guid"), Placed.Node.NodeGuid);
			return true;
		}

		bool Connect(const FString& SourceGuid, const FString& SourcePin, const FString& TargetGuid, const FString& TargetPin, FString& OutError)
		{
			ZorvekMCPBridgeBlueprintNodes::FPinConnection Connection;
			Connection.GraphName = Prepared.GraphName;
			Connection.SourceNodeGuid = SourceGuid;
			Connection.SourcePinName = SourcePin;
			Connection.TargetNodeGuid = TargetGuid;
			Connection.TargetPinName = TargetPin;
			ZorvekMCPBridgeBlueprintNodes::FConnectedPins Connected;
			if (!ZorvekMCPBridgeBlueprintNodes::ConnectPins(Port, Loaded, Connection, Connected, OutError))
			{
				return false;
			}
			TSharedPtr<FJsonObject> Link = MakeShared<FJsonObject>();
			Link->SetStringField(TEXT("source_node_guid"), Connected.Source.NodeGuid);
			Link->SetStringField(TEXT("source_pin"), Connected.Source.PinName.ToString());
			Link->SetStringField(TEXT("target_node_guid"), Connected.Target.NodeGuid);
			Link->SetStringField(TEXT("target_pin"), Connected.Target.PinName.ToString());
			Applied.Connections.Add(MakeShared<FJsonValueObject>(Link));
			AddStep(TEXT("connect"), true, Connected.ResultText);
			return true;
		}

		IZorvekMCPBridgeEditorPort& Port;
		ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded;
		const FPreparedPlan& Prepared;
		FAppliedPlan Applied;
		TArray<FString> AddedNodes;
		TArray<FName> AddedVariables;
		bool bReplacedGhost = false;
	};

	const TCHAR* GetEventChainingStatusWord(EZorvekMCPBridgeBlueprintStatus Status)
	{
		switch (Status)
		{
		case EZorvekMCPBridgeBlueprintStatus::Dirty:
			return TEXT("dirty");
		case EZorvekMCPBridgeBlueprintStatus::Error:
			return TEXT("error");
		case EZorvekMCPBridgeBlueprintStatus::UpToDate:
			return TEXT("up_to_date");
		case EZorvekMCPBridgeBlueprintStatus::BeingCreated:
			return TEXT("being_created");
		case EZorvekMCPBridgeBlueprintStatus::UpToDateWithWarnings:
			return TEXT("up_to_date_with_warnings");
		default:
			return TEXT("unknown");
		}
	}

	bool EventChainingHasGhost(const FZorvekMCPBridgeGraphSnapshot& Graph, const FString& EventFunctionName)
	{
		return Graph.Nodes.ContainsByPredicate([&EventFunctionName](const FZorvekMCPBridgeNodeSnapshot& Node)
		{
			return Node.Kind == EZorvekMCPBridgeNodeKind::Event && !Node.bEnabled && Node.Data.EventName.Equals(EventFunctionName, ESearchCase::IgnoreCase);
		});
	}
}

FZorvekMCPBridgePinType ZorvekMCPBridgeEventChaining::MakeRealPinType()
{
	FZorvekMCPBridgePinType Type;
	Type.PinCategory = FZorvekMCPBridgePinCategories::PC_Real;
	Type.PinSubCategory = FZorvekMCPBridgePinCategories::PC_Double;
	return Type;
}

FZorvekMCPBridgePinType ZorvekMCPBridgeEventChaining::MakeStructPinType(const FString& StructPath, const FString& StructName)
{
	FZorvekMCPBridgePinType Type;
	Type.PinCategory = FZorvekMCPBridgePinCategories::PC_Struct;
	Type.PinSubCategoryObject = FZorvekMCPBridgeTypeIdentity(StructPath, StructName);
	return Type;
}

FZorvekMCPBridgePinType ZorvekMCPBridgeEventChaining::MakeObjectPinType(const FString& ClassPath, const FString& ClassName)
{
	FZorvekMCPBridgePinType Type;
	Type.PinCategory = FZorvekMCPBridgePinCategories::PC_Object;
	Type.PinSubCategoryObject = FZorvekMCPBridgeTypeIdentity(ClassPath, ClassName);
	return Type;
}

FZorvekMCPBridgeNodeSpawnRequest ZorvekMCPBridgeEventChaining::MakeCallRequest(const FString& ClassPath, const FString& FunctionName)
{
	FZorvekMCPBridgeNodeSpawnRequest Request;
	Request.Kind = EZorvekMCPBridgeNodeSpawnKind::CallFunction;
	Request.ClassPath = ClassPath;
	Request.FunctionName = FunctionName;
	return Request;
}

FZorvekMCPBridgeNodeSpawnRequest ZorvekMCPBridgeEventChaining::MakeVariableRequest(bool bSet, const FString& VariableName, const FString& OwnerClassPath)
{
	FZorvekMCPBridgeNodeSpawnRequest Request;
	Request.Kind = bSet ? EZorvekMCPBridgeNodeSpawnKind::VariableSet : EZorvekMCPBridgeNodeSpawnKind::VariableGet;
	Request.VariableName = VariableName;
	Request.OwnerClassPath = OwnerClassPath;
	return Request;
}

bool ZorvekMCPBridgeEventChaining::FindActorComponent(IZorvekMCPBridgeEditorPort& Port, const ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded,
	const FString& ComponentName, const TCHAR* RequiredClassPath, const TCHAR* RequiredWord, FBlueprintComponent& OutComponent, FString& OutError)
{
	const FZorvekMCPBridgeBlueprintSnapshot& Blueprint = Loaded.Snapshot;
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	if (Blueprint.BlueprintType != EZorvekMCPBridgeBlueprintType::Normal || Blueprint.ParentClassPath.IsEmpty()
		|| !Objects.IsChildOf(Blueprint.ParentClassPath, EventChainingActorClassPath))
	{
		OutError = FString::Printf(TEXT("%s is not an Actor Blueprint; only Actor Blueprints have components to work on."), *Loaded.AssetPath);
		return false;
	}
	if (ComponentName.IsEmpty())
	{
		OutError = TEXT("ComponentName is required.");
		return false;
	}
	FBlueprintComponent Found;
	if (const FZorvekMCPBridgeComponentSnapshot* Own = Blueprint.Components.FindByPredicate([&ComponentName](const FZorvekMCPBridgeComponentSnapshot& Component)
		{
			return Component.Name.Equals(ComponentName, ESearchCase::IgnoreCase);
		}))
	{
		Found.Name = Own->Name;
		Found.ClassPath = Own->ComponentClassPath;
		Found.Template = Own->Template;
	}
	else
	{
		FZorvekMCPBridgeClassVariableInfo Inherited;
		if (!Port.GetBlueprints().FindClassVariable(Blueprint.ParentClassPath, ComponentName, Inherited) || !Inherited.bIsComponent)
		{
			TArray<FString> Names;
			for (const FZorvekMCPBridgeComponentSnapshot& Component : Blueprint.Components)
			{
				Names.Add(Component.Name);
			}
			OutError = FString::Printf(TEXT("Component '%s' was not found in %s. Its components: %s"), *ComponentName, *Loaded.AssetPath,
				Names.IsEmpty() ? TEXT("(none)") : *FString::Join(Names, TEXT(", ")));
			return false;
		}
		Found.Name = Inherited.Name;
		Found.ClassPath = Inherited.PinType.PinSubCategoryObject.PathName;
		Found.OwnerClassPath = Inherited.OwnerClassPath;
	}
	if (!Objects.IsChildOf(Found.ClassPath, RequiredClassPath))
	{
		OutError = FString::Printf(TEXT("Component '%s' is a %s, not a %s."), *Found.Name, *Found.ClassPath, RequiredWord);
		return false;
	}
	OutComponent = MoveTemp(Found);
	return true;
}

bool ZorvekMCPBridgeEventChaining::PreparePlan(IZorvekMCPBridgeEditorPort& Port, const ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FString& GraphName,
	const FGraphPlan& Plan, FPreparedPlan& OutPrepared, FString& OutError)
{
	const FZorvekMCPBridgeBlueprintSnapshot& Blueprint = Loaded.Snapshot;
	const FZorvekMCPBridgeGraphSnapshot* Graph = ZorvekMCPBridgeBlueprintLoading::FindGraph(Blueprint, GraphName);
	if (!Graph)
	{
		OutError = ZorvekMCPBridgeBlueprintLoading::MakeGraphNotFoundMessage(GraphName, Loaded.AssetPath);
		return false;
	}
	if (Graph->Kind != EZorvekMCPBridgeGraphKind::Ubergraph)
	{
		OutError = FString::Printf(TEXT("Graph '%s' in %s is not an event graph; events can only be added to event graphs."), *Graph->Name, *Loaded.AssetPath);
		return false;
	}
	FPreparedPlan Prepared;
	Prepared.GraphName = Graph->Name;
	EventChainingFindOrigin(*Graph, Prepared.OriginX, Prepared.OriginY);

	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	for (const FPlannedVariable& Variable : Plan.Variables)
	{
		const FString Name = Variable.Name.ToString();
		if (const FZorvekMCPBridgeVariableSnapshot* Existing = EventChainingFindVariable(Blueprint, Variable.Name))
		{
			if (!EventChainingSameType(Existing->VarType, Variable.PinType))
			{
				OutError = FString::Printf(TEXT("Variable '%s' already exists as %s; this call needs it as %s. Rename or remove it, or pick another component."),
					*Existing->VarName.ToString(), *ZorvekMCPBridgePinTypes::DescribePinType(Existing->VarType), *ZorvekMCPBridgePinTypes::DescribePinType(Variable.PinType));
				return false;
			}
			continue;
		}
		FZorvekMCPBridgeClassVariableInfo Inherited;
		const bool bComponentName = Blueprint.Components.ContainsByPredicate([&Name](const FZorvekMCPBridgeComponentSnapshot& Component) { return Component.Name.Equals(Name, ESearchCase::IgnoreCase); });
		if (bComponentName || Blueprints.FindClassVariable(Blueprint.ParentClassPath, Name, Inherited) || !Blueprints.IsGraphNameUnique(Loaded.Blueprint, Name))
		{
			OutError = FString::Printf(TEXT("Cannot add variable '%s': %s already has a member, component or graph of that name."), *Name, *Loaded.AssetPath);
			return false;
		}
		Prepared.NewVariables.Add(Variable.Name);
	}

	TMap<FString, TArray<FZorvekMCPBridgeGraphPinSnapshot>> KnownPins;
	for (const FEventLine& Line : Plan.Events)
	{
		FPreparedEvent Event;
		FString EventGraphName;
		if (const FZorvekMCPBridgeNodeSnapshot* Existing = EventChainingFindEvent(Blueprint, Line.EventFunctionName, EventGraphName))
		{
			if (!EventGraphName.Equals(Prepared.GraphName, ESearchCase::IgnoreCase))
			{
				OutError = FString::Printf(TEXT("The %s event of %s is in graph '%s'; call again with GraphName '%s'."), *Existing->Title, *Loaded.AssetPath, *EventGraphName, *EventGraphName);
				return false;
			}
			Event.ExistingNodeGuid = Existing->NodeGuid;
			if (const FZorvekMCPBridgeGraphPinSnapshot* Then = EventChainingFindPin(Existing->Pins, EventChainingThenPin))
			{
				if (!Then->LinkedTo.IsEmpty())
				{
					Event.LinkedNodeGuid = Then->LinkedTo[0].NodeGuid;
					Event.LinkedPinName = Then->LinkedTo[0].PinName;
				}
			}
			KnownPins.Add(Line.EventKey, Existing->Pins);
		}
		else
		{
			TArray<FZorvekMCPBridgeGraphPinSnapshot> Pins;
			bool bPlanned = false;
			if (!EventChainingTemplatePins(Port, Loaded, Plan, EventChainingEventRequest(Line.EventFunctionName), Pins, bPlanned, OutError))
			{
				return false;
			}
			KnownPins.Add(Line.EventKey, MoveTemp(Pins));
		}
		Prepared.Events.Add(Event);
	}

	for (const FPlannedNode& Node : Plan.Nodes)
	{
		TArray<FZorvekMCPBridgeGraphPinSnapshot> Pins;
		bool bPlanned = false;
		if (!EventChainingTemplatePins(Port, Loaded, Plan, Node.Request, Pins, bPlanned, OutError))
		{
			return false;
		}
		if (bPlanned)
		{
			continue;
		}
		for (const FZorvekMCPBridgePinDefault& Default : Node.PinDefaults)
		{
			if (!EventChainingFindPin(Pins, Default.PinName))
			{
				OutError = FString::Printf(TEXT("%s has no pin '%s' in this editor."), *ZorvekMCPBridgeSpawnerIds::MakeSpawnRequestId(Node.Request), *Default.PinName);
				return false;
			}
		}
		KnownPins.Add(Node.Key, MoveTemp(Pins));
	}
	TArray<FPlannedLink> Links = Plan.Links;
	for (const FEventLine& Line : Plan.Events)
	{
		Links.Add({Line.EventKey, EventChainingThenPin, Line.FirstNodeKey, EventChainingExecutePin});
	}
	// Pins of nodes reading a variable the call adds are the variable's own: not checked.
	const auto HasPin = [&KnownPins, &OutError](const FString& Key, const FString& PinName)
	{
		const TArray<FZorvekMCPBridgeGraphPinSnapshot>* Pins = KnownPins.Find(Key);
		if (Pins && !EventChainingFindPin(*Pins, PinName))
		{
			OutError = FString::Printf(TEXT("The node for '%s' has no pin '%s' in this editor."), *Key, *PinName);
			return false;
		}
		return true;
	};
	for (const FPlannedLink& Link : Links)
	{
		if (!HasPin(Link.SourceKey, Link.SourcePin) || !HasPin(Link.TargetKey, Link.TargetPin))
		{
			return false;
		}
	}
	OutPrepared = MoveTemp(Prepared);
	return true;
}

ZorvekMCPBridgeEventChaining::FAppliedPlan ZorvekMCPBridgeEventChaining::ApplyPlan(IZorvekMCPBridgeEditorPort& Port, ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded,
	const FGraphPlan& Plan, const FPreparedPlan& Prepared, bool bCompile)
{
	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	FEventChainingRun Run(Port, Loaded, Prepared);
	FString Error;

	// 1. Variables, so the nodes that read them can be placed.
	for (int32 Index = 0; Index < Plan.Variables.Num(); ++Index)
	{
		const FPlannedVariable& Variable = Plan.Variables[Index];
		const bool bExists = !Prepared.NewVariables.Contains(Variable.Name);
		if (!bExists)
		{
			if (!Blueprints.AddMemberVariable(Loaded.Blueprint, Variable.Name, Variable.PinType, Variable.DefaultValue))
			{
				return Run.Fail(TEXT("add_variable"), FString::Printf(TEXT("Could not add Blueprint variable '%s'."), *Variable.Name.ToString()));
			}
			Run.AddedVariables.Add(Variable.Name);
		}
		ZorvekMCPBridgeBlueprintLoading::RefreshSnapshot(Port, Loaded);
		const FZorvekMCPBridgeVariableSnapshot* Current = EventChainingFindVariable(Loaded.Snapshot, Variable.Name);
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("name"), Current ? Current->VarName.ToString() : Variable.Name.ToString());
		Entry->SetStringField(TEXT("type"), ZorvekMCPBridgePinTypes::DescribePinType(Current ? Current->VarType : Variable.PinType));
		Entry->SetStringField(TEXT("default_value"), Current ? Current->DefaultValue : Variable.DefaultValue);
		Entry->SetStringField(TEXT("purpose"), Variable.Purpose);
		Entry->SetBoolField(TEXT("created"), !bExists);
		Run.Applied.Variables.Add(MakeShared<FJsonValueObject>(Entry));
		Run.AddStep(bExists ? TEXT("reuse_variable") : TEXT("add_variable"), true,
			bExists ? FString::Printf(TEXT("Reused variable '%s' (%s) as it is."), *Variable.Name.ToString(), *Variable.Purpose)
				: FString::Printf(TEXT("Added variable '%s' (%s)."), *Variable.Name.ToString(), *Variable.Purpose));
	}

	// 2. The events: the enabled node the Blueprint has, or a new one that replaces the ghost.
	const FZorvekMCPBridgeGraphSnapshot* GraphBefore = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, Prepared.GraphName);
	for (int32 Index = 0; Index < Plan.Events.Num(); ++Index)
	{
		const FEventLine& Line = Plan.Events[Index];
		const FPreparedEvent& Event = Prepared.Events[Index];
		if (!Event.ExistingNodeGuid.IsEmpty())
		{
			Run.Applied.NodeGuids.Add(Line.EventKey, Event.ExistingNodeGuid);
			Run.AddStep(TEXT("reuse_event"), true, FString::Printf(TEXT("Chained from the existing %s event %s."), *Line.EventFunctionName, *Event.ExistingNodeGuid))
				->SetStringField(TEXT("node_guid"), Event.ExistingNodeGuid);
			continue;
		}
		const bool bHadGhost = GraphBefore && EventChainingHasGhost(*GraphBefore, Line.EventFunctionName);
		if (!Run.PlaceNode(Line.EventKey, EventChainingEventRequest(Line.EventFunctionName), Prepared.OriginX, Prepared.OriginY + Line.Row * RowHeight, {}, Error))
		{
			return Run.Fail(TEXT("add_node"), Error);
		}
		Run.bReplacedGhost |= bHadGhost;
		GraphBefore = ZorvekMCPBridgeBlueprintLoading::FindGraph(Loaded.Snapshot, Prepared.GraphName);
	}

	// 3. The line's nodes and their links.
	for (const FPlannedNode& Node : Plan.Nodes)
	{
		const int32 PosX = Prepared.OriginX + (Node.Column + 1) * ColumnWidth;
		const int32 PosY = Prepared.OriginY + Node.Row * RowHeight;
		if (!Run.PlaceNode(Node.Key, Node.Request, PosX, PosY, Node.PinDefaults, Error))
		{
			return Run.Fail(TEXT("add_node"), Error);
		}
	}
	for (const FPlannedLink& Link : Plan.Links)
	{
		if (!Run.Connect(Run.Applied.NodeGuids.FindRef(Link.SourceKey), Link.SourcePin, Run.Applied.NodeGuids.FindRef(Link.TargetKey), Link.TargetPin, Error))
		{
			return Run.Fail(TEXT("connect"), Error);
		}
	}

	// 4. Each line runs from its event. An exec output holds one link, so an event that already
	// runs something gets a Sequence: its old chain first (then_0), the new line after (then_1).
	// The event's own link is replaced last, so a refusal before it leaves the old chain intact.
	for (int32 Index = 0; Index < Plan.Events.Num(); ++Index)
	{
		const FEventLine& Line = Plan.Events[Index];
		const FPreparedEvent& Event = Prepared.Events[Index];
		const FString EventGuid = Run.Applied.NodeGuids.FindRef(Line.EventKey);
		const FString FirstGuid = Run.Applied.NodeGuids.FindRef(Line.FirstNodeKey);
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("event"), Line.EventFunctionName);
		Entry->SetStringField(TEXT("event_node_guid"), EventGuid);
		Entry->SetStringField(TEXT("first_node_guid"), FirstGuid);
		if (Event.LinkedNodeGuid.IsEmpty())
		{
			if (!Run.Connect(EventGuid, EventChainingThenPin, FirstGuid, EventChainingExecutePin, Error))
			{
				return Run.Fail(TEXT("chain_event"), Error);
			}
			Entry->SetBoolField(TEXT("through_sequence"), false);
		}
		else
		{
			FZorvekMCPBridgeNodeSpawnRequest SequenceRequest;
			SequenceRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::Sequence;
			const FString SequenceKey = Line.EventKey + TEXT("Sequence");
			if (!Run.PlaceNode(SequenceKey, SequenceRequest, Prepared.OriginX, Prepared.OriginY + Line.Row * RowHeight, {}, Error))
			{
				return Run.Fail(TEXT("chain_event"), Error);
			}
			const FString SequenceGuid = Run.Applied.NodeGuids.FindRef(SequenceKey);
			if (!Run.Connect(SequenceGuid, TEXT("then_0"), Event.LinkedNodeGuid, Event.LinkedPinName.ToString(), Error)
				|| !Run.Connect(SequenceGuid, TEXT("then_1"), FirstGuid, EventChainingExecutePin, Error)
				|| !Run.Connect(EventGuid, EventChainingThenPin, SequenceGuid, EventChainingExecutePin, Error))
			{
				return Run.Fail(TEXT("chain_event"), Error);
			}
			Entry->SetBoolField(TEXT("through_sequence"), true);
			Entry->SetStringField(TEXT("sequence_node_guid"), SequenceGuid);
			Entry->SetStringField(TEXT("kept_chain_node_guid"), Event.LinkedNodeGuid);
		}
		Run.Applied.EventLines.Add(MakeShared<FJsonValueObject>(Entry));
	}
	Blueprints.MarkModified(Loaded.Blueprint);
	Run.Applied.bSuccess = true;
	Run.Applied.bBlueprintUnchanged = false;

	// 5. The compile: its errors are an answer, not a refusal, and nothing is taken back for them.
	if (bCompile)
	{
		const FZorvekMCPBridgeCompileResult Compiled = Blueprints.Compile(Loaded.Blueprint, ZorvekMCPBridgeBlueprintNodeTools::CompileFlags);
		ZorvekMCPBridgeBlueprintLoading::RefreshSnapshot(Port, Loaded);
		TArray<TSharedPtr<FJsonValue>> Messages;
		for (const FZorvekMCPBridgeCompileMessage& Message : Compiled.Messages)
		{
			TSharedPtr<FJsonObject> MessageJson = MakeShared<FJsonObject>();
			MessageJson->SetStringField(TEXT("severity"), Message.SeverityText.ToLower());
			MessageJson->SetStringField(TEXT("text"), Message.Text);
			Messages.Add(MakeShared<FJsonValueObject>(MessageJson));
		}
		const FString Status = GetEventChainingStatusWord(Loaded.Snapshot.Status);
		Run.Applied.Compile = MakeShared<FJsonObject>();
		Run.Applied.Compile->SetBoolField(TEXT("compiled"), true);
		Run.Applied.Compile->SetStringField(TEXT("status"), Status);
		Run.Applied.Compile->SetNumberField(TEXT("error_count"), Compiled.NumErrors);
		Run.Applied.Compile->SetNumberField(TEXT("warning_count"), Compiled.NumWarnings);
		Run.Applied.Compile->SetArrayField(TEXT("messages"), Messages);
		Run.AddStep(TEXT("compile"), Compiled.NumErrors == 0, FString::Printf(TEXT("Compiled: %s, %d error(s), %d warning(s)."), *Status, Compiled.NumErrors, Compiled.NumWarnings));
	}
	else
	{
		Run.Applied.Compile = MakeShared<FJsonObject>();
		Run.Applied.Compile->SetBoolField(TEXT("compiled"), false);
		Run.Applied.Compile->SetStringField(TEXT("status"), GetEventChainingStatusWord(Loaded.Snapshot.Status));
	}
	return MoveTemp(Run.Applied);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeEventChaining::MakeToolResult(const TSharedPtr<FJsonObject>& Header, const FAppliedPlan& Applied, const FString& AssetPath, const FString& GraphName)
{
	TSharedPtr<FJsonObject> Result = Header;
	Result->SetBoolField(TEXT("success"), Applied.bSuccess);
	if (!Applied.bSuccess)
	{
		Result->SetStringField(TEXT("failed_step"), Applied.FailedStep);
		Result->SetStringField(TEXT("error"), Applied.Error);
		Result->SetBoolField(TEXT("blueprint_unchanged"), Applied.bBlueprintUnchanged);
		Result->SetArrayField(TEXT("steps"), Applied.Steps);
		Result->SetStringField(TEXT("next_step"), TEXT("Read the graph with blueprint_read_graph, fix what the error names and call again."));
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, true);
	}
	Result->SetArrayField(TEXT("variables"), Applied.Variables);
	Result->SetArrayField(TEXT("nodes"), Applied.Nodes);
	Result->SetArrayField(TEXT("connections"), Applied.Connections);
	Result->SetArrayField(TEXT("event_lines"), Applied.EventLines);
	Result->SetArrayField(TEXT("steps"), Applied.Steps);
	Result->SetObjectField(TEXT("compile"), Applied.Compile);
	TSharedPtr<FJsonObject> ReadArguments = MakeShared<FJsonObject>();
	ReadArguments->SetStringField(TEXT("BlueprintNameOrPath"), AssetPath);
	ReadArguments->SetStringField(TEXT("GraphName"), GraphName);
	TSharedPtr<FJsonObject> ReadGraph = MakeShared<FJsonObject>();
	ReadGraph->SetStringField(TEXT("tool"), TEXT("blueprint_read_graph"));
	ReadGraph->SetObjectField(TEXT("arguments"), ReadArguments);
	ReadGraph->SetStringField(TEXT("reason"), TEXT("Verify the new nodes and links."));
	TArray<TSharedPtr<FJsonValue>> Next;
	Next.Add(MakeShared<FJsonValueObject>(ReadGraph));
	if (!Applied.Compile->GetBoolField(TEXT("compiled")))
	{
		TSharedPtr<FJsonObject> CompileArguments = MakeShared<FJsonObject>();
		CompileArguments->SetStringField(TEXT("BlueprintNameOrPath"), AssetPath);
		TSharedPtr<FJsonObject> Compile = MakeShared<FJsonObject>();
		Compile->SetStringField(TEXT("tool"), TEXT("blueprint_compile"));
		Compile->SetObjectField(TEXT("arguments"), CompileArguments);
		Compile->SetStringField(TEXT("reason"), TEXT("The call did not compile the Blueprint."));
		Next.Add(MakeShared<FJsonValueObject>(Compile));
	}
	Result->SetArrayField(TEXT("recommended_next_tools"), Next);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}
