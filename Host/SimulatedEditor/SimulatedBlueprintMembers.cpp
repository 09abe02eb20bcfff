// Members of simulated Blueprints: graph names, member variables, function, event and macro
// graphs with their terminator nodes and user-defined pins, and implemented interfaces, as
// FBlueprintEditorUtils and UK2Node_EditablePinBase do them.
#include "SimulatedBlueprint.h"

#include "SimulatedEditor.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"

namespace
{
	bool SimMembersFunctionHasOutputs(const FSimulatedFunction& Function)
	{
		for (const std::shared_ptr<FSimulatedProperty>& Parameter : Function.Parameters)
		{
			if ((Parameter->Flags & (SimulatedParameterFlags::OutParm | SimulatedParameterFlags::ReturnParm)) != 0)
			{
				return true;
			}
		}
		return false;
	}

	bool SimMembersIsEventNode(const FSimulatedNode& Node)
	{
		// UK2Node_Event and its subclasses.
		return Node.Kind == EZorvekMCPBridgeNodeKind::Event || Node.Kind == EZorvekMCPBridgeNodeKind::CustomEvent || Node.Kind == EZorvekMCPBridgeNodeKind::InputAxisKeyEvent;
	}
}

bool FSimulatedBlueprints::IsGraphNameUnique(const FSimulatedBlueprint& Blueprint, const FString& Name) const
{
	// An object of that name directly inside the Blueprint (its graphs).
	if (Editor.FindObject(Blueprint.Object->GetPathName() + TEXT(":") + Name))
	{
		return false;
	}
	// A field of the skeleton class as of its last regeneration, inherited ones included.
	if (const FSimulatedType* Skeleton = Blueprint.SkeletonClass)
	{
		if (Skeleton->FindPropertyIndex(Name) != INDEX_NONE || Skeleton->FindFunction(Name))
		{
			return false;
		}
		for (const FString& Member : Blueprint.SkeletonUnreflectedMembers)
		{
			if (Member.Equals(Name, ESearchCase::IgnoreCase))
			{
				return false;
			}
		}
	}
	// An event node that implements or declares a function of that name.
	for (const FSimulatedGraph* Graph : Blueprint.GetAllGraphs())
	{
		for (const std::unique_ptr<FSimulatedNode>& Node : Graph->Nodes)
		{
			if (SimMembersIsEventNode(*Node)
				&& (Node->Data.CustomFunctionName.Equals(Name, ESearchCase::IgnoreCase) || (Node->Kind == EZorvekMCPBridgeNodeKind::Event && Node->Data.EventName.Equals(Name, ESearchCase::IgnoreCase))))
			{
				return false;
			}
		}
	}
	return true;
}

bool FSimulatedBlueprints::AddMemberVariable(FSimulatedBlueprint& Blueprint, const FName& VarName, const FZorvekMCPBridgePinType& PinType, const FString& DefaultValue)
{
	const FString Name = VarName.ToString();
	if (VarName.IsNone() || Name.IsEmpty() || Name.Equals(TEXT("self"), ESearchCase::IgnoreCase))
	{
		return false;
	}
	// GetClassVariableList over the skeleton class: Blueprint-visible, non-parameter properties.
	if (const FSimulatedType* Skeleton = Blueprint.SkeletonClass)
	{
		const int32 Index = Skeleton->FindPropertyIndex(Name);
		if (Index != INDEX_NONE && (Skeleton->AllProperties[(size_t)Index]->Flags & ZorvekMCPBridgePropertyFlags::BlueprintVisible) != 0)
		{
			return false;
		}
		for (const FString& Member : Blueprint.SkeletonUnreflectedMembers)
		{
			if (Member.Equals(Name, ESearchCase::IgnoreCase))
			{
				return false;
			}
		}
	}
	FSimulatedVariable Variable;
	Variable.VarName = VarName;
	Variable.VarGuid = NewGuid();
	const bool bIsBool = PinType.PinCategory == FZorvekMCPBridgePinCategories::PC_Boolean;
	Variable.FriendlyName = NameToDisplayString(Name, bIsBool);
	Variable.VarType = PinType;
	Variable.VarType.bIsConst = false;
	Variable.VarType.bIsWeakPointer = false;
	Variable.VarType.bIsReference = false;
	Variable.PropertyFlags = ZorvekMCPBridgePropertyFlags::Edit | ZorvekMCPBridgePropertyFlags::BlueprintVisible | ZorvekMCPBridgePropertyFlags::DisableEditOnInstance;
	Variable.Category = TEXT("Default");
	Variable.DefaultValue = DefaultValue;
	if (PinType.PinCategory == FZorvekMCPBridgePinCategories::PC_String || PinType.PinCategory == FZorvekMCPBridgePinCategories::PC_Text)
	{
		Variable.MetaData.Add(TEXT("MultiLine"), TEXT("true"));
	}
	Blueprint.NewVariables.push_back(Variable);
	MarkStructurallyModified(Blueprint);
	return true;
}

void FSimulatedBlueprints::SetVariableCategory(FSimulatedBlueprint& Blueprint, const FName& VarName, const FString& Category)
{
	const FString NewCategory = Category.IsEmpty() ? FString(TEXT("Default")) : Category;
	FString* Current = nullptr;
	const int32 Index = Blueprint.FindNewVariableIndex(VarName.ToString());
	if (Index != INDEX_NONE)
	{
		Current = &Blueprint.NewVariables[(size_t)Index].Category;
	}
	else if (Blueprint.ConstructionScript)
	{
		if (FSimulatedSCSNode* Component = Blueprint.ConstructionScript->FindNode(VarName.ToString()))
		{
			Current = &Component->CategoryName;
		}
	}
	if (!Current || Current->Equals(NewCategory, ESearchCase::CaseSensitive))
	{
		return;
	}
	*Current = NewCategory;
	MarkStructurallyModified(Blueprint);
}

std::unique_ptr<FSimulatedGraph> FSimulatedBlueprints::CreateNewGraph(FSimulatedBlueprint& Blueprint, const FString& Name)
{
	// An existing object of that name is moved out of the way first, as CreateNewGraph does.
	if (FSimulatedObject* Existing = Editor.FindObject(Blueprint.Object->GetPathName() + TEXT(":") + Name))
	{
		RenameAway(*Existing);
	}
	FString Error;
	FSimulatedType* GraphClass = FindOrAddModelClass(TEXT("/Script/Engine.EdGraph"), TEXT("/Script/CoreUObject.Object"));
	FSimulatedObject* Object = Editor.CreateObject(GraphClass, Blueprint.Object, Name, Error);
	if (!Object)
	{
		return nullptr;
	}
	std::unique_ptr<FSimulatedGraph> Graph = std::make_unique<FSimulatedGraph>();
	Graph->Object = Object;
	Graph->Blueprint = &Blueprint;
	return Graph;
}

void FSimulatedBlueprints::CreateFunctionEntryNode(FSimulatedGraph& Graph, const FSimulatedFunction* Signature, const FString& FunctionName)
{
	FSimulatedNode* Entry = NewNode(Graph, TEXT("K2Node_FunctionEntry"), EZorvekMCPBridgeNodeKind::FunctionEntry, 0, 0);
	Entry->Data.FunctionName = FunctionName;
	AddPin(*Entry, TEXT("then"), EZorvekMCPBridgePinDirection::Output, [] { FZorvekMCPBridgePinType Exec; Exec.PinCategory = FZorvekMCPBridgePinCategories::PC_Exec; return Exec; }());
	if (!Signature)
	{
		return;
	}
	Entry->Function = ShareFunction(*Signature);
	for (const std::shared_ptr<FSimulatedProperty>& Parameter : Signature->Parameters)
	{
		const bool bOut = (Parameter->Flags & (SimulatedParameterFlags::OutParm | SimulatedParameterFlags::ReturnParm)) != 0;
		if (bOut && (Parameter->Flags & SimulatedParameterFlags::ReferenceParm) == 0)
		{
			continue;
		}
		FZorvekMCPBridgePinType PinType;
		GetPinTypeFromProperty(*Parameter, PinType);
		AddPin(*Entry, *Parameter->Name, EZorvekMCPBridgePinDirection::Output, PinType);
	}
}

FSimulatedGraph* FSimulatedBlueprints::AddFunctionGraph(FSimulatedBlueprint& Blueprint, std::unique_ptr<FSimulatedGraph> Graph)
{
	if (!Graph)
	{
		return nullptr;
	}
	Graph->Kind = EZorvekMCPBridgeGraphKind::Function;
	Graph->FunctionFlags = SimulatedFunctionFlags::BlueprintCallable | SimulatedFunctionFlags::BlueprintEvent | SimulatedFunctionFlags::Public;
	if (Blueprint.BlueprintType == EZorvekMCPBridgeBlueprintType::FunctionLibrary)
	{
		Graph->FunctionFlags |= SimulatedFunctionFlags::Static;
	}
	if (Blueprint.BlueprintType == EZorvekMCPBridgeBlueprintType::Const)
	{
		Graph->FunctionFlags |= SimulatedFunctionFlags::Const;
	}
	FSimulatedGraph* Result = Graph.get();
	CreateFunctionEntryNode(*Result, nullptr, Result->GetName());
	Blueprint.FunctionGraphs.push_back(std::move(Graph));
	MarkStructurallyModified(Blueprint);
	return Result;
}

FSimulatedGraph* FSimulatedBlueprints::AddUbergraphPage(FSimulatedBlueprint& Blueprint, std::unique_ptr<FSimulatedGraph> Graph)
{
	if (!Graph)
	{
		return nullptr;
	}
	Graph->Kind = EZorvekMCPBridgeGraphKind::Ubergraph;
	FSimulatedGraph* Result = Graph.get();
	Blueprint.UbergraphPages.push_back(std::move(Graph));
	MarkStructurallyModified(Blueprint);
	return Result;
}

FSimulatedGraph* FSimulatedBlueprints::AddMacroGraph(FSimulatedBlueprint& Blueprint, const FString& Name, const std::vector<FSimulatedPinSpec>& Inputs, const std::vector<FSimulatedPinSpec>& Outputs)
{
	std::unique_ptr<FSimulatedGraph> Graph = CreateNewGraph(Blueprint, Name);
	if (!Graph)
	{
		return nullptr;
	}
	Graph->Kind = EZorvekMCPBridgeGraphKind::Macro;
	FSimulatedNode* Entry = NewNode(*Graph, TEXT("K2Node_Tunnel"), EZorvekMCPBridgeNodeKind::Unknown, 0, 0);
	Entry->bTunnelEntry = true;
	for (const FSimulatedPinSpec& Input : Inputs)
	{
		CreateUserDefinedPin(*Entry, Input.Name, Input.PinType, EZorvekMCPBridgePinDirection::Output, Input.DefaultValue);
	}
	FSimulatedNode* Exit = NewNode(*Graph, TEXT("K2Node_Tunnel"), EZorvekMCPBridgeNodeKind::Unknown, 400, 0);
	for (const FSimulatedPinSpec& Output : Outputs)
	{
		CreateUserDefinedPin(*Exit, Output.Name, Output.PinType, EZorvekMCPBridgePinDirection::Input, Output.DefaultValue);
	}
	FSimulatedGraph* Result = Graph.get();
	Blueprint.MacroGraphs.push_back(std::move(Graph));
	MarkStructurallyModified(Blueprint);
	return Result;
}

FSimulatedNode* FSimulatedBlueprints::FindOrCreateFunctionResultNode(FSimulatedGraph& Graph)
{
	if (FSimulatedNode* Existing = Graph.FindNodeOfClass(TEXT("K2Node_FunctionResult")))
	{
		return Existing;
	}
	const FSimulatedNode* Entry = Graph.FindNodeOfClass(TEXT("K2Node_FunctionEntry"));
	if (!Entry)
	{
		return nullptr;
	}
	// Right of the entry. Not in the reference notes (placement read from 5.x behaviour); check
	// against the engine.
	FSimulatedNode* Result = NewNode(Graph, TEXT("K2Node_FunctionResult"), EZorvekMCPBridgeNodeKind::FunctionResult, Entry->PosX + Entry->Width + 400, Entry->PosY);
	Result->Data.FunctionName = Entry->Data.FunctionName;
	FZorvekMCPBridgePinType Exec;
	Exec.PinCategory = FZorvekMCPBridgePinCategories::PC_Exec;
	AddPin(*Result, TEXT("execute"), EZorvekMCPBridgePinDirection::Input, Exec);
	// Pins from the entry's signature: the outputs of the function it implements.
	if (Entry->Function)
	{
		Result->Function = Entry->Function;
		for (const std::shared_ptr<FSimulatedProperty>& Parameter : Entry->Function->Parameters)
		{
			const bool bOut = (Parameter->Flags & (SimulatedParameterFlags::OutParm | SimulatedParameterFlags::ReturnParm)) != 0;
			if (bOut && (Parameter->Flags & SimulatedParameterFlags::ReferenceParm) == 0)
			{
				FZorvekMCPBridgePinType PinType;
				GetPinTypeFromProperty(*Parameter, PinType);
				AddPin(*Result, *Parameter->Name, EZorvekMCPBridgePinDirection::Input, PinType);
			}
		}
	}
	return Result;
}

FSimulatedPin* FSimulatedBlueprints::CreateUserDefinedPin(FSimulatedNode& Node, const FName& PinName, const FZorvekMCPBridgePinType& PinType, EZorvekMCPBridgePinDirection Direction, const FString& DefaultValue)
{
	// CreateUniquePinName: the name, else the name with a counter from 2. Not in the reference
	// notes; check against the engine.
	const FString BaseName = PinName.ToString();
	FString UniqueName = BaseName;
	for (int32 Counter = 2; Node.FindPin(UniqueName); ++Counter)
	{
		UniqueName = FString::Printf(TEXT("%s%d"), *BaseName, Counter);
	}
	FZorvekMCPBridgeUserPinInfo UserPin;
	UserPin.PinName = FName(*UniqueName);
	UserPin.PinType = PinType;
	UserPin.DesiredPinDirection = Direction;
	UserPin.PinDefaultValue = DefaultValue;
	Node.Data.UserPins.Add(UserPin);
	FSimulatedPin* Pin = AddPin(Node, *UniqueName, Direction, PinType);
	if (!DefaultValue.IsEmpty())
	{
		Pin->DefaultValue = DefaultValue;
	}
	return Pin;
}

bool FSimulatedBlueprints::IsImplementedAsEvent(const FSimulatedFunction& Function)
{
	return !SimMembersFunctionHasOutputs(Function);
}

std::vector<const FSimulatedFunction*> FSimulatedBlueprints::GetInterfaceFunctions(const FSimulatedType& Interface) const
{
	// Field order: the class's own functions first, then its supers'; only those a Blueprint can
	// implement (BlueprintEvent), each name once.
	std::vector<const FSimulatedFunction*> Functions;
	for (const FSimulatedType* Class = &Interface; Class; Class = Class->Super)
	{
		if ((Class->ClassFlags & ZorvekMCPBridgeClassFlags::Interface) == 0 && Class != &Interface)
		{
			break;
		}
		for (const std::shared_ptr<FSimulatedFunction>& Function : Class->Functions)
		{
			if (!Function->HasAnyFunctionFlags(SimulatedFunctionFlags::BlueprintEvent))
			{
				continue;
			}
			bool bSeen = false;
			for (const FSimulatedFunction* Known : Functions)
			{
				bSeen = bSeen || Known->Name.Equals(Function->Name, ESearchCase::IgnoreCase);
			}
			if (!bSeen)
			{
				Functions.push_back(Function.get());
			}
		}
	}
	return Functions;
}

bool FSimulatedBlueprints::ImplementNewInterface(FSimulatedBlueprint& Blueprint, FSimulatedType* Interface, FString& OutMessage)
{
	if (!Interface || (Interface->ClassFlags & ZorvekMCPBridgeClassFlags::Interface) == 0)
	{
		OutMessage = TEXT("Not an interface class.");
		return false;
	}
	for (const FSimulatedImplementedInterface& Existing : Blueprint.ImplementedInterfaces)
	{
		if (Existing.Interface == Interface)
		{
			OutMessage = FString::Printf(TEXT("Blueprint '%s' already implements the interface '%s'"), *Blueprint.GetName(), *Interface->Name);
			return false;
		}
	}
	const std::vector<const FSimulatedFunction*> Functions = GetInterfaceFunctions(*Interface);
	// Every clash is found before anything is added.
	for (const FSimulatedFunction* Function : Functions)
	{
		if (!IsImplementedAsEvent(*Function)
			&& (Blueprint.FindGraph(Function->Name) || Editor.FindObject(Blueprint.Object->GetPathName() + TEXT(":") + Function->Name)))
		{
			OutMessage = FString::Printf(TEXT("Blueprint '%s' has a function or graph which conflicts with function '%s' in interface '%s'"), *Blueprint.GetName(), *Function->Name, *Interface->Name);
			return false;
		}
	}
	FSimulatedImplementedInterface Description;
	Description.Interface = Interface;
	for (const FSimulatedFunction* Function : Functions)
	{
		if (IsImplementedAsEvent(*Function))
		{
			continue;
		}
		std::unique_ptr<FSimulatedGraph> Graph = CreateNewGraph(Blueprint, Function->Name);
		if (!Graph)
		{
			continue;
		}
		Graph->Kind = EZorvekMCPBridgeGraphKind::InterfaceImplementation;
		Graph->InterfaceClass = Interface;
		Graph->bAllowDeletion = false;
		Graph->FunctionFlags = Function->FunctionFlags;
		CreateFunctionEntryNode(*Graph, Function, Function->Name);
		if (SimMembersFunctionHasOutputs(*Function))
		{
			FindOrCreateFunctionResultNode(*Graph);
		}
		Description.Graphs.push_back(std::move(Graph));
	}
	Blueprint.ImplementedInterfaces.push_back(std::move(Description));
	MarkStructurallyModified(Blueprint);
	return true;
}
