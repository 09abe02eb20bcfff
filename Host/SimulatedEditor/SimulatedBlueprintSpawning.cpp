// Placing nodes from spawn requests as the action menu's spawners place them: the lookups, the
// graph compatibility checks, the event spawners' reuse of an existing node, and the template
// nodes the action catalogue reads pins from.
#include "SimulatedBlueprint.h"

#include "SimulatedEditor.h"
#include "SimulatedKeys.h"

namespace
{
	bool SimSpawnIsEventKind(EZorvekMCPBridgeNodeSpawnKind Kind)
	{
		return Kind == EZorvekMCPBridgeNodeSpawnKind::CustomEvent || Kind == EZorvekMCPBridgeNodeSpawnKind::Event || Kind == EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent
			|| Kind == EZorvekMCPBridgeNodeSpawnKind::InputKey || Kind == EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent;
	}

	// The macro graph of a macro library Blueprint, by name without regard to case.
	FSimulatedGraph* SimSpawnFindMacro(const FSimulatedBlueprints& Model, const FString& LibraryPackagePath, const FString& MacroName)
	{
		FString AssetName = LibraryPackagePath;
		int32 Slash = INDEX_NONE;
		if (AssetName.FindLastChar(TEXT('/'), Slash))
		{
			AssetName.RightChopInline(Slash + 1);
		}
		const FSimulatedBlueprint* Library = Model.FindBlueprint(Model.GetEditor().FindObject(LibraryPackagePath + TEXT(".") + AssetName));
		if (!Library)
		{
			return nullptr;
		}
		for (const std::unique_ptr<FSimulatedGraph>& Graph : Library->MacroGraphs)
		{
			if (Graph->GetName().Equals(MacroName, ESearchCase::IgnoreCase))
			{
				return Graph.get();
			}
		}
		return nullptr;
	}
}

FString FSimulatedBlueprints::FindVariableSpelling(const FSimulatedBlueprint& Blueprint, const FString& VariableName) const
{
	const int32 Index = Blueprint.FindNewVariableIndex(VariableName);
	if (Index != INDEX_NONE)
	{
		return Blueprint.NewVariables[(size_t)Index].VarName.ToString();
	}
	if (Blueprint.ConstructionScript)
	{
		if (const FSimulatedSCSNode* Component = Blueprint.ConstructionScript->FindNode(VariableName))
		{
			return Component->VariableName;
		}
	}
	for (const FSimulatedType* Class = Blueprint.ParentClass; Class; Class = Class->Super)
	{
		for (const std::shared_ptr<FSimulatedProperty>& Property : Class->OwnProperties)
		{
			if (Property->Name.Equals(VariableName, ESearchCase::IgnoreCase))
			{
				return Property->Name;
			}
		}
	}
	return FString();
}

FSimulatedSpawnOutcome FSimulatedBlueprints::SpawnNode(FSimulatedGraph& Graph, const FZorvekMCPBridgeNodeSpawnRequest& Request, int32 PosX, int32 PosY)
{
	FSimulatedSpawnOutcome Outcome;
	FSimulatedBlueprint* Blueprint = Graph.Blueprint;
	auto Fail = [&Outcome](EZorvekMCPBridgeNodeSpawnFailure Failure)
	{
		Outcome.Failure = Failure;
		Outcome.Node = nullptr;
		return Outcome;
	};

	// IsCompatibleWithGraph: events only in an event graph; input events only where the Blueprint
	// supports input events (actor-based).
	if (SimSpawnIsEventKind(Request.Kind) && Graph.Object && Graph.Kind != EZorvekMCPBridgeGraphKind::Ubergraph)
	{
		return Fail(EZorvekMCPBridgeNodeSpawnFailure::IncompatibleGraph);
	}
	if ((Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InputKey || Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent) && Blueprint && !IsActorBased(*Blueprint))
	{
		return Fail(EZorvekMCPBridgeNodeSpawnFailure::IncompatibleGraph);
	}

	// An event spawner returns the enabled node that implements the event; ghosts are replaced.
	auto ReuseOrReplace = [this, &Outcome, Blueprint](auto&& Matches)
	{
		if (!Blueprint)
		{
			return false;
		}
		for (const std::unique_ptr<FSimulatedGraph>& Page : Blueprint->UbergraphPages)
		{
			for (const std::unique_ptr<FSimulatedNode>& Existing : Page->Nodes)
			{
				if (!Matches(*Existing))
				{
					continue;
				}
				if (Existing->IsAutomaticallyPlacedGhostNode())
				{
					Outcome.GhostsToReplace.push_back(Existing.get());
				}
				else
				{
					Outcome.Node = Existing.get();
					Outcome.bReusedExistingNode = true;
					Outcome.GhostsToReplace.clear();
					return true;
				}
			}
		}
		return false;
	};

	FSimulatedNode* Node = nullptr;
	switch (Request.Kind)
	{
	case EZorvekMCPBridgeNodeSpawnKind::Branch:
		Node = AddBranchNode(Graph, PosX, PosY);
		break;
	case EZorvekMCPBridgeNodeSpawnKind::Sequence:
		Node = AddSequenceNode(Graph, PosX, PosY);
		break;
	case EZorvekMCPBridgeNodeSpawnKind::MacroInstance:
	{
		FSimulatedGraph* Macro = SimSpawnFindMacro(*this, Request.MacroLibraryPath, Request.MacroName);
		if (!Macro)
		{
			return Fail(EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
		}
		Node = AddMacroInstanceNode(Graph, *Macro, PosX, PosY);
		break;
	}
	case EZorvekMCPBridgeNodeSpawnKind::DynamicCast:
	{
		FSimulatedType* Class = Editor.FindTypeByPath(Request.ClassPath);
		if (!Class || Class->Kind != ESimulatedTypeKind::Class)
		{
			return Fail(EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
		}
		Node = AddCastNode(Graph, Class, PosX, PosY);
		break;
	}
	case EZorvekMCPBridgeNodeSpawnKind::CallFunction:
	{
		const FSimulatedType* Class = Editor.FindTypeByPath(Request.ClassPath);
		const FSimulatedFunction* Function = Class && Class->Kind == ESimulatedTypeKind::Class ? Class->FindFunction(Request.FunctionName) : nullptr;
		if (!Function)
		{
			return Fail(EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
		}
		Node = AddCallFunctionNode(Graph, *Function, PosX, PosY);
		break;
	}
	case EZorvekMCPBridgeNodeSpawnKind::CallBlueprintFunction:
	case EZorvekMCPBridgeNodeSpawnKind::CustomEventCall:
	{
		// Bound to the function on the skeleton class, which has every member since the last
		// structural change; the generated class only after a compile.
		const FSimulatedFunction* Function = nullptr;
		const FString& Name = Request.Kind == EZorvekMCPBridgeNodeSpawnKind::CustomEventCall ? Request.EventName : Request.FunctionName;
		for (const FSimulatedType* Class : {Blueprint ? Blueprint->SkeletonClass : nullptr, Blueprint ? Blueprint->GeneratedClass : nullptr})
		{
			for (const std::shared_ptr<FSimulatedFunction>& Candidate : Class ? Class->Functions : std::vector<std::shared_ptr<FSimulatedFunction>>())
			{
				if (!Function && Candidate->Name.Equals(Name, ESearchCase::IgnoreCase))
				{
					Function = Candidate.get();
				}
			}
		}
		if (!Function)
		{
			return Fail(EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
		}
		Node = AddCallFunctionNode(Graph, *Function, PosX, PosY);
		break;
	}
	case EZorvekMCPBridgeNodeSpawnKind::CustomEvent:
		if (ReuseOrReplace([&Request](const FSimulatedNode& Existing)
			{
				return Existing.Kind == EZorvekMCPBridgeNodeKind::CustomEvent && Existing.Data.CustomFunctionName.Equals(Request.EventName, ESearchCase::IgnoreCase);
			}))
		{
			return Outcome;
		}
		Node = AddCustomEventNode(Graph, Request.EventName, PosX, PosY);
		break;
	case EZorvekMCPBridgeNodeSpawnKind::Event:
	case EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent:
	{
		const bool bInterface = Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent;
		// An override event's function is found on the parent class unless the request names the
		// declaring class (the catalogue's actions do).
		const FSimulatedType* Owner = (bInterface || !Request.ClassPath.IsEmpty()) ? Editor.FindTypeByPath(Request.ClassPath) : (Blueprint ? Blueprint->ParentClass : nullptr);
		const FSimulatedFunction* Function = Owner ? Owner->FindFunction(Request.FunctionName) : nullptr;
		if (!Function || !Function->HasAnyFunctionFlags(SimulatedFunctionFlags::BlueprintEvent))
		{
			return Fail(EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
		}
		const FString FunctionName = Function->Name;
		if (ReuseOrReplace([&FunctionName](const FSimulatedNode& Existing)
			{
				return Existing.Kind == EZorvekMCPBridgeNodeKind::Event && Existing.Data.EventName.Equals(FunctionName, ESearchCase::IgnoreCase);
			}))
		{
			return Outcome;
		}
		Node = AddEventNode(Graph, *Function, PosX, PosY);
		break;
	}
	case EZorvekMCPBridgeNodeSpawnKind::VariableGet:
	case EZorvekMCPBridgeNodeSpawnKind::VariableSet:
	{
		const bool bSet = Request.Kind == EZorvekMCPBridgeNodeSpawnKind::VariableSet;
		const FSimulatedType* Owner = Request.OwnerClassPath.IsEmpty() ? nullptr : Editor.FindTypeByPath(Request.OwnerClassPath);
		if (!Request.OwnerClassPath.IsEmpty() && (!Owner || Owner->Kind != ESimulatedTypeKind::Class))
		{
			return Fail(EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
		}
		// A member of a class the Blueprint derives from is read through self.
		const FSimulatedType* Context = Blueprint ? (Blueprint->SkeletonClass ? Blueprint->SkeletonClass : Blueprint->ParentClass) : nullptr;
		const FSimulatedBlueprint* OwnerBlueprint = Owner ? FindBlueprintByClass(Owner) : nullptr;
		const bool bOwnClass = Owner && Blueprint && OwnerBlueprint == Blueprint;
		if (Owner && !bOwnClass && !(Context && Context->IsChildOf(Owner)))
		{
			Node = AddExternalVariableNode(Graph, *Owner, Request.VariableName, bSet, PosX, PosY);
		}
		else if (Blueprint)
		{
			const FString Spelling = FindVariableSpelling(*Blueprint, Request.VariableName);
			Node = Spelling.IsEmpty() ? nullptr : AddVariableNode(Graph, Spelling, bSet, PosX, PosY);
		}
		if (!Node)
		{
			return Fail(EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
		}
		break;
	}
	case EZorvekMCPBridgeNodeSpawnKind::InputKey:
	case EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent:
	{
		const FSimulatedKeyDetails* Key = FSimulatedKeys::Find(Request.KeyName);
		if (!Key)
		{
			return Fail(EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound);
		}
		Node = Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InputKey ? AddInputKeyNode(Graph, Key->Name, PosX, PosY) : AddInputAxisKeyNode(Graph, Key->Name, PosX, PosY);
		break;
	}
	default:
		break;
	}
	if (!Node)
	{
		return Fail(EZorvekMCPBridgeNodeSpawnFailure::NodeNotCreated);
	}
	Outcome.Node = Node;
	return Outcome;
}

void FSimulatedBlueprints::FinishSpawn(FSimulatedGraph& Graph, const FSimulatedSpawnOutcome& Outcome)
{
	(void)Graph;
	for (FSimulatedNode* Ghost : Outcome.GhostsToReplace)
	{
		FSimulatedGraph* GhostGraph = Ghost->Graph;
		// The ghost parent call wired to the ghost goes with it.
		std::vector<FSimulatedNode*> Doomed = {Ghost};
		if (const FSimulatedPin* Then = Ghost->FindPin(TEXT("then"), EZorvekMCPBridgePinDirection::Output))
		{
			for (const FSimulatedPin* Linked : Then->LinkedTo)
			{
				if (Linked->OwningNode && Linked->OwningNode->NodeClass == TEXT("K2Node_CallParentFunction") && Linked->OwningNode->IsAutomaticallyPlacedGhostNode())
				{
					Doomed.push_back(Linked->OwningNode);
				}
			}
		}
		for (FSimulatedNode* Node : Doomed)
		{
			RemoveNode(*GhostGraph, *Node);
		}
	}
}

std::unique_ptr<FSimulatedNode> FSimulatedBlueprints::MakeTemplateNode(FSimulatedBlueprint* Scope, const FZorvekMCPBridgeNodeSpawnRequest& Request)
{
	const uint64 SavedGuidCounter = GuidCounter;
	const TMap<FString, int32> SavedClassUnique = ClassUnique;
	// A private graph that belongs to no list of the Blueprint: the template cache's graph.
	FSimulatedGraph TemplateGraph;
	TemplateGraph.Blueprint = Scope;
	TemplateGraph.Kind = EZorvekMCPBridgeGraphKind::Ubergraph;
	FZorvekMCPBridgeNodeSpawnRequest TemplateRequest = Request;
	if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::CustomEvent || Request.Kind == EZorvekMCPBridgeNodeSpawnKind::Event || Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent)
	{
		// A template never stands for a placed node: no Blueprint to search for one.
		TemplateGraph.Blueprint = nullptr;
		if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::Event && TemplateRequest.ClassPath.IsEmpty() && Scope && Scope->ParentClass)
		{
			TemplateRequest.ClassPath = Scope->ParentClass->GetPathName();
		}
	}
	const FSimulatedSpawnOutcome Outcome = SpawnNode(TemplateGraph, TemplateRequest, 0, 0);
	std::unique_ptr<FSimulatedNode> Template;
	if (Outcome.Node && !Outcome.bReusedExistingNode && !TemplateGraph.Nodes.empty())
	{
		Template = std::move(TemplateGraph.Nodes.back());
		TemplateGraph.Nodes.pop_back();
		Template->Graph = nullptr;
	}
	GuidCounter = SavedGuidCounter;
	ClassUnique = SavedClassUnique;
	return Template;
}
