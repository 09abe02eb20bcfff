#include "Editor/Port/ZorvekMCPBridgeEngineBlueprintSpawning.h"

#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Engine/Blueprint.h"
#include "InputCoreTypes.h"
#include "K2Node_CallFunction.h"
#include "K2Node_CustomEvent.h"
#include "K2Node_DynamicCast.h"
#include "K2Node_Event.h"
#include "K2Node_ExecutionSequence.h"
#include "K2Node_IfThenElse.h"
#include "K2Node_InputAxisKeyEvent.h"
#include "K2Node_InputKey.h"
#include "K2Node_MacroInstance.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UnrealType.h"

// TSubclassOf::Get(), the class a TSubclassOf member holds: not in the reference notes; check
// against the engine.

namespace ZorvekMCPBridgeEngineBlueprintSpawningLocal
{
	UClass* LoadClassByPath(const FString& ClassPath)
	{
		return ClassPath.IsEmpty() ? nullptr : LoadObject<UClass>(nullptr, *ClassPath);
	}

	// The macro library is named by its package ("/Engine/EditorBlueprintResources/StandardMacros");
	// the asset inside has the package's short name.
	UEdGraph* FindMacroGraph(const FString& LibraryPackagePath, const FString& MacroName)
	{
		FString ShortName;
		if (!LibraryPackagePath.Split(TEXT("/"), nullptr, &ShortName, ESearchCase::CaseSensitive, ESearchDir::FromEnd) || ShortName.IsEmpty())
		{
			return nullptr;
		}
		const UBlueprint* Library = LoadObject<UBlueprint>(nullptr, *FString::Printf(TEXT("%s.%s"), *LibraryPackagePath, *ShortName));
		if (!Library)
		{
			return nullptr;
		}
		const FName Name(*MacroName);
		for (UEdGraph* MacroGraph : Library->MacroGraphs)
		{
			if (MacroGraph && MacroGraph->GetFName() == Name)
			{
				return MacroGraph;
			}
		}
		return nullptr;
	}

	// A function the Blueprint declares itself (a function graph or a custom event) lives on its
	// skeleton class until the next full compile makes it on the generated class too.
	const UFunction* FindOwnFunction(const UBlueprint& Blueprint, const FString& FunctionName)
	{
		const UClass* Skeleton = Blueprint.SkeletonGeneratedClass.Get();
		return Skeleton && !FunctionName.IsEmpty() ? Skeleton->FindFunctionByName(FName(*FunctionName)) : nullptr;
	}

	// A key the engine knows, by name without regard to case.
	bool FindKey(const FString& KeyName, FKey& OutKey)
	{
		const FKey Key{FName(*KeyName)};
		if (KeyName.IsEmpty() || !Key.IsValid())
		{
			return false;
		}
		OutKey = Key;
		return true;
	}

	// The variable node's reference as the variable spawner sets it: a self member for the
	// Blueprint's own variables (and components), the property of another class otherwise, in
	// self context when the Blueprint derives from that class.
	bool ConfigureVariableNode(const UBlueprint& Blueprint, UK2Node_Variable& Node, const FZorvekMCPBridgeNodeSpawnRequest& Request)
	{
		const FName VariableName(*Request.VariableName);
		if (Request.OwnerClassPath.IsEmpty())
		{
			const UClass* Skeleton = Blueprint.SkeletonGeneratedClass.Get();
			if (!Skeleton || !FindFProperty<FProperty>(Skeleton, VariableName))
			{
				return false;
			}
			Node.VariableReference.SetSelfMember(VariableName);
			return true;
		}
		UClass* OwnerClass = LoadClassByPath(Request.OwnerClassPath);
		const FProperty* Property = OwnerClass ? FindFProperty<FProperty>(OwnerClass, VariableName) : nullptr;
		if (!Property)
		{
			return false;
		}
		const UClass* Skeleton = Blueprint.SkeletonGeneratedClass.Get();
		const bool bSelfContext = Skeleton && Skeleton->IsChildOf(Property->GetOwnerClass());
		Node.SetFromProperty(Property, bSelfContext, Property->GetOwnerClass());
		return true;
	}

	template <typename NodeType>
	NodeType* NewNodeOfType(UEdGraph& Graph)
	{
		return NewObject<NodeType>(&Graph);
	}

	// The node object with its kind's settings, before GUID, position and pins.
	UEdGraphNode* NewConfiguredNode(UBlueprint& Blueprint, UEdGraph& Graph, const FZorvekMCPBridgeNodeSpawnRequest& Request, bool& bOutTargetFound)
	{
		using namespace ZorvekMCPBridgeEngineBlueprintSpawning;
		bOutTargetFound = true;
		switch (Request.Kind)
		{
		case EZorvekMCPBridgeNodeSpawnKind::Branch:
			return NewNodeOfType<UK2Node_IfThenElse>(Graph);
		case EZorvekMCPBridgeNodeSpawnKind::Sequence:
			return NewNodeOfType<UK2Node_ExecutionSequence>(Graph);
		case EZorvekMCPBridgeNodeSpawnKind::MacroInstance:
		{
			UEdGraph* MacroGraph = FindMacroGraph(Request.MacroLibraryPath, Request.MacroName);
			UK2Node_MacroInstance* Node = MacroGraph ? NewNodeOfType<UK2Node_MacroInstance>(Graph) : nullptr;
			if (Node)
			{
				Node->SetMacroGraph(MacroGraph);
			}
			bOutTargetFound = MacroGraph != nullptr;
			return Node;
		}
		case EZorvekMCPBridgeNodeSpawnKind::DynamicCast:
		{
			UClass* TargetClass = LoadClassByPath(Request.ClassPath);
			UK2Node_DynamicCast* Node = TargetClass ? NewNodeOfType<UK2Node_DynamicCast>(Graph) : nullptr;
			if (Node)
			{
				Node->TargetType = TargetClass;
			}
			bOutTargetFound = TargetClass != nullptr;
			return Node;
		}
		case EZorvekMCPBridgeNodeSpawnKind::CallFunction:
		case EZorvekMCPBridgeNodeSpawnKind::CallBlueprintFunction:
		case EZorvekMCPBridgeNodeSpawnKind::CustomEventCall:
		{
			// FindFunctionByName includes inherited functions. SetFromFunction decides the self
			// context from the node's Blueprint, so the node is made in the graph first.
			const UFunction* Function = nullptr;
			if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::CallFunction)
			{
				const UClass* Class = LoadClassByPath(Request.ClassPath);
				Function = Class && !Request.FunctionName.IsEmpty() ? Class->FindFunctionByName(FName(*Request.FunctionName)) : nullptr;
			}
			else
			{
				Function = FindOwnFunction(Blueprint, Request.Kind == EZorvekMCPBridgeNodeSpawnKind::CustomEventCall ? Request.EventName : Request.FunctionName);
			}
			UK2Node_CallFunction* Node = Function ? NewNodeOfType<UK2Node_CallFunction>(Graph) : nullptr;
			if (Node)
			{
				Node->SetFromFunction(Function);
			}
			bOutTargetFound = Function != nullptr;
			return Node;
		}
		case EZorvekMCPBridgeNodeSpawnKind::CustomEvent:
		{
			bOutTargetFound = !Request.EventName.IsEmpty();
			UK2Node_CustomEvent* Node = bOutTargetFound ? NewNodeOfType<UK2Node_CustomEvent>(Graph) : nullptr;
			if (Node)
			{
				Node->CustomFunctionName = FName(*Request.EventName);
				Node->bIsEditable = true;
			}
			return Node;
		}
		case EZorvekMCPBridgeNodeSpawnKind::Event:
		case EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent:
		{
			// The event names the class that declares the function, as the event spawner sets it
			// from the function.
			const UFunction* Function = FindRequestedEventFunction(Blueprint, Request);
			UK2Node_Event* Node = Function ? NewNodeOfType<UK2Node_Event>(Graph) : nullptr;
			if (Node)
			{
				Node->EventReference.SetExternalMember(Function->GetFName(), Function->GetOuterUClass());
				Node->bOverrideFunction = true;
			}
			bOutTargetFound = Function != nullptr;
			return Node;
		}
		case EZorvekMCPBridgeNodeSpawnKind::VariableGet:
		case EZorvekMCPBridgeNodeSpawnKind::VariableSet:
		{
			UK2Node_Variable* Node = nullptr;
			if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::VariableGet)
			{
				Node = NewNodeOfType<UK2Node_VariableGet>(Graph);
			}
			else
			{
				Node = NewNodeOfType<UK2Node_VariableSet>(Graph);
			}
			if (Node && !ConfigureVariableNode(Blueprint, *Node, Request))
			{
				bOutTargetFound = false;
				DiscardUnplacedNode(*Node);
				return nullptr;
			}
			return Node;
		}
		case EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent:
		case EZorvekMCPBridgeNodeSpawnKind::InputKey:
		{
			FKey Key;
			bOutTargetFound = FindKey(Request.KeyName, Key);
			if (!bOutTargetFound)
			{
				return nullptr;
			}
			if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InputKey)
			{
				UK2Node_InputKey* Node = NewNodeOfType<UK2Node_InputKey>(Graph);
				if (Node)
				{
					Node->InputKey = Key;
				}
				return Node;
			}
			// Initialize names the event function after the node object, so it comes after NewObject.
			UK2Node_InputAxisKeyEvent* Node = NewNodeOfType<UK2Node_InputAxisKeyEvent>(Graph);
			if (Node)
			{
				Node->Initialize(Key);
			}
			return Node;
		}
		}
		bOutTargetFound = false;
		return nullptr;
	}
}

UBlueprint* ZorvekMCPBridgeEngineBlueprintSpawning::ToBlueprint(FZorvekMCPBridgeObjectHandle Handle)
{
	return Cast<UBlueprint>(FZorvekMCPBridgeEngineEditorPort::ToObject(Handle));
}

UEdGraph* ZorvekMCPBridgeEngineBlueprintSpawning::FindGraph(const UBlueprint& Blueprint, const FString& GraphName)
{
	const FName Name(*GraphName);
	TArray<UEdGraph*> Graphs;
	Blueprint.GetAllGraphs(Graphs);
	for (UEdGraph* Graph : Graphs)
	{
		if (Graph && Graph->GetFName() == Name)
		{
			return Graph;
		}
	}
	return nullptr;
}

UEdGraphNode* ZorvekMCPBridgeEngineBlueprintSpawning::FindNode(const UEdGraph& Graph, const FString& NodeGuid)
{
	const FString Wanted = NodeGuid.TrimStartAndEnd();
	for (UEdGraphNode* Node : Graph.Nodes)
	{
		// FGuid::ToString writes 32 upper-case digits; the caller may send any case.
		if (Node && Node->NodeGuid.ToString().Equals(Wanted, ESearchCase::IgnoreCase))
		{
			return Node;
		}
	}
	return nullptr;
}

UEdGraphNode* ZorvekMCPBridgeEngineBlueprintSpawning::NewNodeForRequest(UBlueprint& Blueprint, UEdGraph& Graph, const FZorvekMCPBridgeNodeSpawnRequest& Request,
	int32 PosX, int32 PosY, EZorvekMCPBridgeNodeSpawnFailure& OutFailure)
{
	bool bTargetFound = true;
	UEdGraphNode* Node = ZorvekMCPBridgeEngineBlueprintSpawningLocal::NewConfiguredNode(Blueprint, Graph, Request, bTargetFound);
	if (!Node)
	{
		OutFailure = bTargetFound ? EZorvekMCPBridgeNodeSpawnFailure::NodeNotCreated : EZorvekMCPBridgeNodeSpawnFailure::TargetNotFound;
		return nullptr;
	}
	Node->CreateNewGuid();
	Node->NodePosX = PosX;
	Node->NodePosY = PosY;
	Node->SetFlags(RF_Transactional);
	Node->AllocateDefaultPins();
	OutFailure = EZorvekMCPBridgeNodeSpawnFailure::None;
	return Node;
}

void ZorvekMCPBridgeEngineBlueprintSpawning::DiscardUnplacedNode(UEdGraphNode& Node)
{
	Node.Rename(nullptr, GetTransientPackage(), REN_DoNotDirty | REN_DontCreateRedirectors | REN_NonTransactional);
	Node.MarkAsGarbage();
}

const UFunction* ZorvekMCPBridgeEngineBlueprintSpawning::FindRequestedEventFunction(const UBlueprint& Blueprint, const FZorvekMCPBridgeNodeSpawnRequest& Request)
{
	if (Request.FunctionName.IsEmpty())
	{
		return nullptr;
	}
	const UClass* Owner = nullptr;
	if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::Event)
	{
		Owner = Blueprint.ParentClass.Get();
	}
	else if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent)
	{
		const UClass* Interface = ZorvekMCPBridgeEngineBlueprintSpawningLocal::LoadClassByPath(Request.ClassPath);
		Owner = Interface && Interface->HasAnyClassFlags(CLASS_Interface) ? Interface : nullptr;
	}
	const UFunction* Function = Owner ? Owner->FindFunctionByName(FName(*Request.FunctionName)) : nullptr;
	// A Blueprint parent that implements the event holds an override of it; the event node names
	// the function where it was first declared (Actor's ReceiveBeginPlay), as the spawner filed
	// under that class does.
	while (Function && Function->GetSuperFunction())
	{
		Function = Function->GetSuperFunction();
	}
	return Function;
}
