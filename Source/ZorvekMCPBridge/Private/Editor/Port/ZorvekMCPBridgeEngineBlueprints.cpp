#include "Components/ActorComponent.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Editor/Blueprint/ZorvekMCPBridgePinTypeConversion.h"
#include "Editor/Port/ZorvekMCPBridgeEngineBlueprintNodes.h"
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Engine/Blueprint.h"
#include "Engine/BlueprintGeneratedClass.h"
#include "Engine/SCS_Node.h"
#include "Engine/SimpleConstructionScript.h"
#include "K2Node_CustomEvent.h"
#include "K2Node_EditablePinBase.h"
#include "K2Node_Event.h"
#include "K2Node_FunctionEntry.h"
#include "K2Node_FunctionResult.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/Object.h"
#include "UObject/Package.h"
#include "UObject/PropertyPortFlags.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UnrealType.h"

// TSubclassOf::Get(), the class a TSubclassOf member holds: not in the reference notes; check
// against the engine.

// The port's enums carry the engine's values.
static_assert((int32)EZorvekMCPBridgeBlueprintType::Interface == (int32)BPTYPE_Interface, "Blueprint type drift");
static_assert((int32)EZorvekMCPBridgeBlueprintType::FunctionLibrary == (int32)BPTYPE_FunctionLibrary, "Blueprint type drift");
static_assert((int32)EZorvekMCPBridgeBlueprintStatus::UpToDateWithWarnings == (int32)BS_UpToDateWithWarnings, "Blueprint status drift");

namespace ZorvekMCPBridgeEngineBlueprintsLocal
{
	// Every Blueprint tool names its Blueprint calls with this context.
	const TCHAR* const CallingContext = TEXT("ZorvekMCPBridge");

	UBlueprint* ToBlueprint(FZorvekMCPBridgeObjectHandle Handle)
	{
		return Cast<UBlueprint>(FZorvekMCPBridgeEngineEditorPort::ToObject(Handle));
	}

	FString PathOrEmpty(const UObject* Object)
	{
		return Object ? Object->GetPathName() : FString();
	}

	bool ContainsGraph(const TArray<TObjectPtr<UEdGraph>>& Graphs, const UEdGraph* Graph)
	{
		for (const UEdGraph* Candidate : Graphs)
		{
			if (Candidate == Graph)
			{
				return true;
			}
		}
		return false;
	}

	// Graph names compare as FNames do in the engine: without regard to case.
	UEdGraph* FindGraph(const UBlueprint& Blueprint, const FString& GraphName)
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

	// LoadObject also finds a class already in memory. The interface calls need the class loaded:
	// ImplementNewInterface only looks it up.
	UClass* LoadInterfaceClass(const FString& InterfaceClassPath)
	{
		UClass* Class = InterfaceClassPath.IsEmpty() ? nullptr : LoadObject<UClass>(nullptr, *InterfaceClassPath);
		return Class && Class->HasAnyClassFlags(CLASS_Interface) ? Class : nullptr;
	}

	// NewObject of an abstract class is a fatal assert in the engine, so abstract classes are no
	// component classes here.
	UClass* LoadComponentClass(const FString& ComponentClassPath)
	{
		UClass* Class = ComponentClassPath.IsEmpty() ? nullptr : LoadObject<UClass>(nullptr, *ComponentClassPath);
		return Class && Class->IsChildOf(UActorComponent::StaticClass()) && !Class->HasAnyClassFlags(CLASS_Abstract) ? Class : nullptr;
	}

	void ClassifyGraph(const UBlueprint& Blueprint, const UEdGraph* Graph, EZorvekMCPBridgeGraphKind& OutKind, FString& OutInterfaceClassPath)
	{
		OutInterfaceClassPath.Reset();
		if (ContainsGraph(Blueprint.FunctionGraphs, Graph))
		{
			OutKind = EZorvekMCPBridgeGraphKind::Function;
			return;
		}
		if (ContainsGraph(Blueprint.UbergraphPages, Graph))
		{
			OutKind = EZorvekMCPBridgeGraphKind::Ubergraph;
			return;
		}
		if (ContainsGraph(Blueprint.MacroGraphs, Graph))
		{
			OutKind = EZorvekMCPBridgeGraphKind::Macro;
			return;
		}
		for (const FBPInterfaceDescription& Interface : Blueprint.ImplementedInterfaces)
		{
			if (ContainsGraph(Interface.Graphs, Graph))
			{
				OutKind = EZorvekMCPBridgeGraphKind::InterfaceImplementation;
				OutInterfaceClassPath = PathOrEmpty(Interface.Interface.Get());
				return;
			}
		}
		OutKind = EZorvekMCPBridgeGraphKind::Other;
	}

	FZorvekMCPBridgeVariableSnapshot MakeVariableSnapshot(const UBlueprint& Blueprint, const FBPVariableDescription& Variable)
	{
		FZorvekMCPBridgeVariableSnapshot Snapshot;
		Snapshot.VarName = Variable.VarName;
		Snapshot.VarGuid = Variable.VarGuid.ToString();
		Snapshot.FriendlyName = Variable.FriendlyName;
		Snapshot.Category = Variable.Category.ToString();
		Snapshot.VarType = ZorvekMCPBridgePinTypeConversion::FromEnginePinType(Variable.VarType);
		Snapshot.DefaultValue = Variable.DefaultValue;
		Snapshot.PropertyFlags = Variable.PropertyFlags;

		// The generated class gains the property at the next full compile; until then there is no
		// class default to report. ExportTextItem_Direct without a delta writes every value, the
		// type's default included.
		UClass* GeneratedClass = Blueprint.GeneratedClass.Get();
		const FProperty* Property = GeneratedClass ? FindFProperty<FProperty>(GeneratedClass, Variable.VarName) : nullptr;
		UObject* DefaultObject = Property ? GeneratedClass->GetDefaultObject(false) : nullptr;
		if (DefaultObject)
		{
			Property->ExportTextItem_Direct(Snapshot.ClassDefaultValue, Property->ContainerPtrToValuePtr<void>(DefaultObject), nullptr, DefaultObject, PPF_None);
			Snapshot.bHasClassDefaultValue = true;
		}
		return Snapshot;
	}

	void AddComponentSnapshots(const USCS_Node& Node, const USCS_Node* Parent, TArray<FZorvekMCPBridgeComponentSnapshot>& OutComponents)
	{
		FZorvekMCPBridgeComponentSnapshot Snapshot;
		Snapshot.Name = Node.GetVariableName().ToString();
		Snapshot.ComponentClassPath = PathOrEmpty(Node.ComponentClass.Get());
		Snapshot.ComponentClassName = Node.ComponentClass ? Node.ComponentClass->GetName() : FString();
		Snapshot.Template = FZorvekMCPBridgeEngineEditorPort::ToHandle(Node.ComponentTemplate.Get());
		Snapshot.TemplatePath = PathOrEmpty(Node.ComponentTemplate.Get());
		Snapshot.bIsRootNode = Parent == nullptr;
		if (Parent)
		{
			Snapshot.ParentComponentName = Parent->GetVariableName().ToString();
		}
		else if (!Node.ParentComponentOrVariableName.IsNone())
		{
			// A root node attached to a component of the parent class.
			Snapshot.ParentComponentName = Node.ParentComponentOrVariableName.ToString();
		}
		OutComponents.Add(Snapshot);
		for (const USCS_Node* Child : Node.GetChildNodes())
		{
			if (Child)
			{
				AddComponentSnapshots(*Child, &Node, OutComponents);
			}
		}
	}

	// One user-declared pin on an entry, result or custom event node, with the engine's reason when
	// it refuses the type.
	bool AddUserPin(UK2Node_EditablePinBase& Node, const FBlueprintParamSpec& Spec, EEdGraphPinDirection Direction, FString& OutReason)
	{
		FEdGraphPinType PinType;
		if (!ZorvekMCPBridgePinTypeConversion::ToEnginePinType(Spec.PinType, PinType, OutReason))
		{
			return false;
		}
		FText Refusal;
		if (!Node.CanCreateUserDefinedPin(PinType, Direction, Refusal))
		{
			OutReason = Refusal.ToString();
			return false;
		}
		if (!Node.CreateUserDefinedPin(Spec.Name, PinType, Direction))
		{
			OutReason = FString::Printf(TEXT("The node refused the pin %s."), *Spec.Name.ToString());
			return false;
		}
		return true;
	}

	// Places a new node the way the editor's node spawners do: created in the graph, a new GUID,
	// its position, the caller's settings, pins, then PostPlacedNewNode, then into the graph.
	template <typename NodeType, typename SetupType>
	NodeType* PlaceNode(UEdGraph& Graph, int32 PosX, int32 PosY, SetupType Setup)
	{
		Graph.Modify();
		NodeType* Node = NewObject<NodeType>(&Graph, NAME_None, RF_Transactional);
		if (!Node)
		{
			return nullptr;
		}
		Node->CreateNewGuid();
		Node->NodePosX = PosX;
		Node->NodePosY = PosY;
		Setup(*Node);
		Node->AllocateDefaultPins();
		Node->PostPlacedNewNode();
		Graph.AddNode(Node, /*bUserAction*/ false, /*bSelectNewNode*/ false);
		return Node;
	}
}

bool FZorvekMCPBridgeEngineBlueprints::ReadBlueprint(FZorvekMCPBridgeObjectHandle Handle, FZorvekMCPBridgeBlueprintSnapshot& OutSnapshot) const
{
	using namespace ZorvekMCPBridgeEngineBlueprintsLocal;
	const UBlueprint* Blueprint = ToBlueprint(Handle);
	if (!Blueprint)
	{
		return false;
	}
	OutSnapshot = FZorvekMCPBridgeBlueprintSnapshot();
	OutSnapshot.Blueprint = Handle;
	OutSnapshot.Name = Blueprint->GetName();
	OutSnapshot.Path = Blueprint->GetPathName();
	const UClass* ParentClass = Blueprint->ParentClass.Get();
	OutSnapshot.ParentClassPath = PathOrEmpty(ParentClass);
	OutSnapshot.ParentClassName = ParentClass ? ParentClass->GetName() : FString();
	OutSnapshot.GeneratedClassPath = PathOrEmpty(Blueprint->GeneratedClass.Get());
	OutSnapshot.SkeletonClassPath = PathOrEmpty(Blueprint->SkeletonGeneratedClass.Get());
	OutSnapshot.BlueprintType = static_cast<EZorvekMCPBridgeBlueprintType>(static_cast<int32>(Blueprint->BlueprintType.GetValue()));
	OutSnapshot.Status = static_cast<EZorvekMCPBridgeBlueprintStatus>(static_cast<int32>(Blueprint->Status.GetValue()));
	OutSnapshot.bHasConstructionScript = Blueprint->SimpleConstructionScript != nullptr;

	TArray<UEdGraph*> Graphs;
	Blueprint->GetAllGraphs(Graphs);
	for (const UEdGraph* Graph : Graphs)
	{
		if (Graph)
		{
			EZorvekMCPBridgeGraphKind Kind = EZorvekMCPBridgeGraphKind::Other;
			FString InterfaceClassPath;
			ClassifyGraph(*Blueprint, Graph, Kind, InterfaceClassPath);
			OutSnapshot.Graphs.Add(ZorvekMCPBridgeEngineBlueprintNodes::MakeGraphSnapshot(*Blueprint, *Graph, Kind, InterfaceClassPath));
		}
	}

	for (const FBPVariableDescription& Variable : Blueprint->NewVariables)
	{
		OutSnapshot.Variables.Add(MakeVariableSnapshot(*Blueprint, Variable));
	}

	if (const USimpleConstructionScript* ConstructionScript = Blueprint->SimpleConstructionScript.Get())
	{
		for (const USCS_Node* Root : ConstructionScript->GetRootNodes())
		{
			if (Root)
			{
				AddComponentSnapshots(*Root, nullptr, OutSnapshot.Components);
			}
		}
	}

	for (const FBPInterfaceDescription& Interface : Blueprint->ImplementedInterfaces)
	{
		UClass* InterfaceClass = Interface.Interface.Get();
		FZorvekMCPBridgeImplementedInterfaceSnapshot Snapshot;
		Snapshot.InterfaceClassPath = PathOrEmpty(InterfaceClass);
		Snapshot.InterfaceClassName = InterfaceClass ? InterfaceClass->GetName() : FString();
		Snapshot.InterfaceBlueprintPath = ZorvekMCPBridgeEngineBlueprintNodes::GetGeneratingBlueprintPath(InterfaceClass);
		for (const UEdGraph* Graph : Interface.Graphs)
		{
			if (Graph)
			{
				Snapshot.GraphNames.Add(Graph->GetName());
			}
		}
		OutSnapshot.ImplementedInterfaces.Add(Snapshot);
	}
	return true;
}

bool FZorvekMCPBridgeEngineBlueprints::IsGraphNameUnique(FZorvekMCPBridgeObjectHandle Handle, const FString& Name) const
{
	UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle);
	return Blueprint && FBlueprintEditorUtils::IsGraphNameUnique(Blueprint, FName(*Name));
}

bool FZorvekMCPBridgeEngineBlueprints::GetInterfaceFunctions(const FString& InterfaceClassPath, TArray<FZorvekMCPBridgeInterfaceFunction>& OutFunctions) const
{
	const UClass* InterfaceClass = ZorvekMCPBridgeEngineBlueprintsLocal::LoadInterfaceClass(InterfaceClassPath);
	if (!InterfaceClass)
	{
		return false;
	}
	OutFunctions.Reset();
	TSet<FName> Listed;
	for (TFieldIterator<UFunction> It(InterfaceClass, EFieldIterationFlags::IncludeSuper); It; ++It)
	{
		const UFunction* Function = *It;
		// ImplementNewInterface's split: a function that can be placed as an event is implemented by
		// an event node, one that can only be overridden by a graph of its own. Functions that are
		// neither cannot be implemented in a Blueprint and are left out; a name the class has
		// already given is not listed again for a super.
		const bool bImplementedAsEvent = UEdGraphSchema_K2::FunctionCanBePlacedAsEvent(Function);
		if ((bImplementedAsEvent || UEdGraphSchema_K2::CanKismetOverrideFunction(Function)) && !Listed.Contains(Function->GetFName()))
		{
			Listed.Add(Function->GetFName());
			FZorvekMCPBridgeInterfaceFunction Entry;
			Entry.Name = Function->GetName();
			Entry.bImplementedAsEvent = bImplementedAsEvent;
			OutFunctions.Add(Entry);
		}
	}
	return true;
}

FString FZorvekMCPBridgeEngineBlueprints::GetGeneratedInterfaceClassPath(FZorvekMCPBridgeObjectHandle Handle) const
{
	const UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle);
	if (!Blueprint || Blueprint->BlueprintType != BPTYPE_Interface)
	{
		return FString();
	}
	return ZorvekMCPBridgeEngineBlueprintsLocal::PathOrEmpty(Blueprint->GeneratedClass.Get());
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineBlueprints::CreateBlueprint(FZorvekMCPBridgeObjectHandle Package, const FString& AssetName, const FString& ParentClassPath, EZorvekMCPBridgeBlueprintType BlueprintType)
{
	UObject* Outer = FZorvekMCPBridgeEngineEditorPort::ToObject(Package);
	UClass* ParentClass = ParentClassPath.IsEmpty() ? nullptr : LoadObject<UClass>(nullptr, *ParentClassPath);
	// The caller has checked both; CreateBlueprint asserts on a resident object of that name, so a
	// second look here costs nothing and can never bring the editor down.
	if (!Outer || !ParentClass || AssetName.IsEmpty() || FindObject<UObject>(Outer, *AssetName))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	UBlueprint* Blueprint = FKismetEditorUtilities::CreateBlueprint(ParentClass, Outer, FName(*AssetName), static_cast<EBlueprintType>(static_cast<int32>(BlueprintType)),
		UBlueprint::StaticClass(), UBlueprintGeneratedClass::StaticClass(), FName(ZorvekMCPBridgeEngineBlueprintsLocal::CallingContext));
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(Blueprint);
}

bool FZorvekMCPBridgeEngineBlueprints::AddMemberVariable(FZorvekMCPBridgeObjectHandle Handle, const FName& VarName, const FZorvekMCPBridgePinType& PinType, const FString& DefaultValue)
{
	UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle);
	FEdGraphPinType EnginePinType;
	FString Error;
	if (!Blueprint || !ZorvekMCPBridgePinTypeConversion::ToEnginePinType(PinType, EnginePinType, Error))
	{
		return false;
	}
	return FBlueprintEditorUtils::AddMemberVariable(Blueprint, VarName, EnginePinType, DefaultValue);
}

void FZorvekMCPBridgeEngineBlueprints::SetVariableCategory(FZorvekMCPBridgeObjectHandle Handle, const FName& VarName, const FString& Category)
{
	if (UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle))
	{
		// No local scope: a member variable.
		FBlueprintEditorUtils::SetBlueprintVariableCategory(Blueprint, VarName, nullptr, FText::FromString(Category));
	}
}

FZorvekMCPBridgeFunctionGraphResult FZorvekMCPBridgeEngineBlueprints::CreateFunctionGraph(FZorvekMCPBridgeObjectHandle Handle, const FString& FunctionName,
	const TArray<FBlueprintParamSpec>& Inputs, const TArray<FBlueprintParamSpec>& Outputs)
{
	using namespace ZorvekMCPBridgeEngineBlueprintsLocal;
	FZorvekMCPBridgeFunctionGraphResult Result;
	Result.GraphName = FunctionName;
	UBlueprint* Blueprint = ToBlueprint(Handle);
	UEdGraph* Graph = Blueprint ? FBlueprintEditorUtils::CreateNewGraph(Blueprint, FName(*FunctionName), UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass()) : nullptr;
	if (!Graph)
	{
		Result.Failure = EZorvekMCPBridgeFunctionGraphFailure::GraphNotCreated;
		return Result;
	}
	// A user function without a signature object: the template argument cannot be deduced from nullptr.
	FBlueprintEditorUtils::AddFunctionGraph<UClass>(Blueprint, Graph, /*bIsUserCreated*/ true, nullptr);
	Result.GraphName = Graph->GetName();

	UK2Node_FunctionEntry* Entry = nullptr;
	for (UEdGraphNode* Node : Graph->Nodes)
	{
		Entry = Cast<UK2Node_FunctionEntry>(Node);
		if (Entry)
		{
			break;
		}
	}
	if (!Entry)
	{
		Result.Failure = EZorvekMCPBridgeFunctionGraphFailure::NoEntryNode;
		return Result;
	}
	// Every function made here gets its result node, outputs or not, so clients find both terminals.
	UK2Node_FunctionResult* ResultNode = FBlueprintEditorUtils::FindOrCreateFunctionResultNode(Entry);
	if (!ResultNode)
	{
		Result.Failure = EZorvekMCPBridgeFunctionGraphFailure::NoResultNode;
		return Result;
	}
	// Parameters are outputs of the entry node, return values inputs of the result node.
	for (const FBlueprintParamSpec& Input : Inputs)
	{
		if (!AddUserPin(*Entry, Input, EGPD_Output, Result.FailureReason))
		{
			Result.Failure = EZorvekMCPBridgeFunctionGraphFailure::InputPinNotCreated;
			Result.FailedPinName = Input.Name;
			return Result;
		}
	}
	for (const FBlueprintParamSpec& Output : Outputs)
	{
		if (!AddUserPin(*ResultNode, Output, EGPD_Input, Result.FailureReason))
		{
			Result.Failure = EZorvekMCPBridgeFunctionGraphFailure::OutputPinNotCreated;
			Result.FailedPinName = Output.Name;
			return Result;
		}
	}
	return Result;
}

bool FZorvekMCPBridgeEngineBlueprints::CreateEventGraph(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName)
{
	UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle);
	UEdGraph* Graph = Blueprint ? FBlueprintEditorUtils::CreateNewGraph(Blueprint, FName(*GraphName), UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass()) : nullptr;
	if (!Graph)
	{
		return false;
	}
	FBlueprintEditorUtils::AddUbergraphPage(Blueprint, Graph);
	return true;
}

FString FZorvekMCPBridgeEngineBlueprints::AddCustomEvent(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& EventName, bool bCallInEditor,
	const TArray<FBlueprintParamSpec>& Parameters, int32 PosX, int32 PosY, FName& OutFailedParameter)
{
	using namespace ZorvekMCPBridgeEngineBlueprintsLocal;
	OutFailedParameter = NAME_None;
	UBlueprint* Blueprint = ToBlueprint(Handle);
	UEdGraph* Graph = Blueprint ? FindGraph(*Blueprint, GraphName) : nullptr;
	if (!Graph)
	{
		return FString();
	}
	UK2Node_CustomEvent* Node = PlaceNode<UK2Node_CustomEvent>(*Graph, PosX, PosY, [&EventName, bCallInEditor](UK2Node_CustomEvent& NewNode)
	{
		NewNode.CustomFunctionName = FName(*EventName);
		NewNode.bIsEditable = true;
		NewNode.bCallInEditor = bCallInEditor;
	});
	if (!Node)
	{
		return FString();
	}
	for (const FBlueprintParamSpec& Parameter : Parameters)
	{
		FString Reason;
		if (!AddUserPin(*Node, Parameter, EGPD_Output, Reason))
		{
			// The half-made node goes again, so the graph is as it was.
			OutFailedParameter = Parameter.Name;
			FBlueprintEditorUtils::RemoveNode(Blueprint, Node, /*bDontRecompile*/ true);
			return FString();
		}
	}
	return Node->NodeGuid.ToString();
}

bool FZorvekMCPBridgeEngineBlueprints::ImplementInterface(FZorvekMCPBridgeObjectHandle Handle, const FString& InterfaceClassPath)
{
	UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle);
	const UClass* InterfaceClass = ZorvekMCPBridgeEngineBlueprintsLocal::LoadInterfaceClass(InterfaceClassPath);
	return Blueprint && InterfaceClass && FBlueprintEditorUtils::ImplementNewInterface(Blueprint, InterfaceClass->GetClassPathName());
}

FString FZorvekMCPBridgeEngineBlueprints::AddInterfaceEvent(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& InterfaceClassPath,
	const FString& FunctionName, int32 PosX, int32 PosY)
{
	using namespace ZorvekMCPBridgeEngineBlueprintsLocal;
	UBlueprint* Blueprint = ToBlueprint(Handle);
	UEdGraph* Graph = Blueprint ? FindGraph(*Blueprint, GraphName) : nullptr;
	const UClass* InterfaceClass = LoadInterfaceClass(InterfaceClassPath);
	const UFunction* Function = InterfaceClass ? InterfaceClass->FindFunctionByName(FName(*FunctionName)) : nullptr;
	if (!Graph || !Function)
	{
		return FString();
	}
	// The event names the class that declares the function (an inherited interface function names
	// the parent interface), as the editor's event spawner sets it from the function.
	UClass* DeclaringClass = Function->GetOuterUClass();
	const FName FunctionFName = Function->GetFName();
	UK2Node_Event* Node = PlaceNode<UK2Node_Event>(*Graph, PosX, PosY, [DeclaringClass, FunctionFName](UK2Node_Event& NewNode)
	{
		NewNode.EventReference.SetExternalMember(FunctionFName, DeclaringClass);
		NewNode.bOverrideFunction = true;
	});
	return Node ? Node->NodeGuid.ToString() : FString();
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineBlueprints::CreateComponentValidationObject(const FString& ComponentClassPath)
{
	UClass* ComponentClass = ZorvekMCPBridgeEngineBlueprintsLocal::LoadComponentClass(ComponentClassPath);
	if (!ComponentClass)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(NewObject<UActorComponent>(GetTransientPackage(), ComponentClass, NAME_None, RF_Transient));
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineBlueprints::CreateComponentNode(FZorvekMCPBridgeObjectHandle Handle, const FString& ComponentClassPath, const FString& ComponentName,
	FZorvekMCPBridgeObjectHandle& OutTemplate)
{
	OutTemplate = FZorvekMCPBridgeObjectHandle();
	const UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle);
	USimpleConstructionScript* ConstructionScript = Blueprint ? Blueprint->SimpleConstructionScript.Get() : nullptr;
	UClass* ComponentClass = ZorvekMCPBridgeEngineBlueprintsLocal::LoadComponentClass(ComponentClassPath);
	if (!ConstructionScript || !ComponentClass)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	USCS_Node* Node = ConstructionScript->CreateNode(ComponentClass, FName(*ComponentName));
	if (!Node)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	OutTemplate = FZorvekMCPBridgeEngineEditorPort::ToHandle(Node->ComponentTemplate.Get());
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(Node);
}

void FZorvekMCPBridgeEngineBlueprints::AttachComponentNode(FZorvekMCPBridgeObjectHandle Handle, FZorvekMCPBridgeObjectHandle NodeHandle, const FString& ParentComponentName)
{
	const UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle);
	USimpleConstructionScript* ConstructionScript = Blueprint ? Blueprint->SimpleConstructionScript.Get() : nullptr;
	USCS_Node* Node = Cast<USCS_Node>(FZorvekMCPBridgeEngineEditorPort::ToObject(NodeHandle));
	if (!ConstructionScript || !Node)
	{
		return;
	}
	if (ParentComponentName.IsEmpty())
	{
		ConstructionScript->AddNode(Node);
		return;
	}
	// The caller has checked the parent exists; FindSCSNode also matches a template's name.
	if (USCS_Node* Parent = ConstructionScript->FindSCSNode(FName(*ParentComponentName)))
	{
		Parent->AddChildNode(Node);
	}
}

void FZorvekMCPBridgeEngineBlueprints::RemoveComponentNode(FZorvekMCPBridgeObjectHandle Handle, FZorvekMCPBridgeObjectHandle NodeHandle)
{
	const UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle);
	USimpleConstructionScript* ConstructionScript = Blueprint ? Blueprint->SimpleConstructionScript.Get() : nullptr;
	USCS_Node* Node = Cast<USCS_Node>(FZorvekMCPBridgeEngineEditorPort::ToObject(NodeHandle));
	if (ConstructionScript && Node)
	{
		ConstructionScript->RemoveNode(Node);
	}
}

void FZorvekMCPBridgeEngineBlueprints::MarkStructurallyModified(FZorvekMCPBridgeObjectHandle Handle)
{
	if (UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle))
	{
		FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(Blueprint);
	}
}

void FZorvekMCPBridgeEngineBlueprints::MarkModified(FZorvekMCPBridgeObjectHandle Handle)
{
	if (UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle))
	{
		FBlueprintEditorUtils::MarkBlueprintAsModified(Blueprint);
	}
}

bool FZorvekMCPBridgeEngineBlueprints::RemoveMemberVariable(FZorvekMCPBridgeObjectHandle Handle, const FName& VarName)
{
	UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintsLocal::ToBlueprint(Handle);
	if (!Blueprint || FBlueprintEditorUtils::FindNewVariableIndex(Blueprint, VarName) == INDEX_NONE)
	{
		return false;
	}
	FBlueprintEditorUtils::RemoveMemberVariable(Blueprint, VarName);
	return true;
}
