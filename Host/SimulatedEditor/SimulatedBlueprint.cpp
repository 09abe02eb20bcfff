#include "SimulatedBlueprint.h"

#include "SimulatedEditor.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"

#include <algorithm>

namespace
{
	// EClassFlags bits the Blueprint model reads beyond ZorvekMCPBridgeClassFlags.
	constexpr uint32 SimBlueprintClassConst = 0x10000;

	const TCHAR* const SimBlueprintGhostComment = TEXT("This node is disabled and will not be called.\nDrag off pins to build functionality.");

	// [DefaultEventNodes] of BaseEditorPerProjectUserSettings.ini: the first class in the chain
	// with registrations supplies every ghost event.
	struct FSimBlueprintDefaultEvents
	{
		const TCHAR* ClassPath;
		TArray<const TCHAR*> Events;
	};

	const TArray<FSimBlueprintDefaultEvents>& GetSimBlueprintDefaultEvents()
	{
		static const TArray<FSimBlueprintDefaultEvents> Registrations = {
			{TEXT("/Script/Engine.Actor"), {TEXT("ReceiveBeginPlay"), TEXT("ReceiveActorBeginOverlap"), TEXT("ReceiveTick")}},
			{TEXT("/Script/Engine.ActorComponent"), {TEXT("ReceiveBeginPlay"), TEXT("ReceiveTick")}},
			{TEXT("/Script/UMG.UserWidget"), {TEXT("PreConstruct"), TEXT("Construct"), TEXT("Tick")}},
			{TEXT("/Script/Engine.AnimInstance"), {TEXT("BlueprintUpdateAnimation")}}};
		return Registrations;
	}

	// FMath::GridSnap with the graph editor's default snap of 16.
	int32 SimBlueprintSnapToGrid(int32 Value)
	{
		const int32 Grid = 16;
		const int32 Shifted = Value + Grid / 2;
		const int32 Cells = Shifted >= 0 ? Shifted / Grid : -((-Shifted + Grid - 1) / Grid);
		return Cells * Grid;
	}

	// splitmix64: a well-mixed, reproducible sequence from a counter.
	bool SimBlueprintIsUpper(TCHAR Character)
	{
		return Character >= TEXT('A') && Character <= TEXT('Z');
	}

	bool SimBlueprintIsLower(TCHAR Character)
	{
		return Character >= TEXT('a') && Character <= TEXT('z');
	}

	uint64 SimBlueprintMix(uint64 Value)
	{
		Value += 0x9E3779B97F4A7C15ull;
		Value = (Value ^ (Value >> 30)) * 0xBF58476D1CE4E5B9ull;
		Value = (Value ^ (Value >> 27)) * 0x94D049BB133111EBull;
		return Value ^ (Value >> 31);
	}

	void SimBlueprintSetObjectValue(FSimulatedObject& Object, const TCHAR* PropertyName, FSimulatedObject* Value)
	{
		const int32 Index = Object.Class->FindPropertyIndex(PropertyName);
		if (Index != INDEX_NONE && Index < (int32)Object.Values.size())
		{
			Object.Values[(size_t)Index].Object = Value;
		}
	}
}

bool FSimulatedPin::IsExec() const
{
	return PinType.PinCategory == FZorvekMCPBridgePinCategories::PC_Exec;
}

FSimulatedPin* FSimulatedNode::FindPin(const FString& Name) const
{
	for (const std::unique_ptr<FSimulatedPin>& Pin : Pins)
	{
		if (Pin->PinName.ToString().Equals(Name, ESearchCase::IgnoreCase))
		{
			return Pin.get();
		}
	}
	return nullptr;
}

FSimulatedPin* FSimulatedNode::FindPin(const FString& Name, EZorvekMCPBridgePinDirection Direction) const
{
	for (const std::unique_ptr<FSimulatedPin>& Pin : Pins)
	{
		if (Pin->Direction == Direction && Pin->PinName.ToString().Equals(Name, ESearchCase::IgnoreCase))
		{
			return Pin.get();
		}
	}
	return nullptr;
}

const FString& FSimulatedGraph::GetName() const
{
	return Object->Name;
}

FSimulatedNode* FSimulatedGraph::FindNodeByGuid(const FString& NodeGuid) const
{
	for (const std::unique_ptr<FSimulatedNode>& Node : Nodes)
	{
		if (Node->NodeGuid.Equals(NodeGuid, ESearchCase::IgnoreCase))
		{
			return Node.get();
		}
	}
	return nullptr;
}

FSimulatedNode* FSimulatedGraph::FindNodeOfClass(const FString& NodeClass) const
{
	for (const std::unique_ptr<FSimulatedNode>& Node : Nodes)
	{
		if (Node->NodeClass == NodeClass)
		{
			return Node.get();
		}
	}
	return nullptr;
}

const FString& FSimulatedBlueprint::GetName() const
{
	return Object->Name;
}

std::vector<FSimulatedGraph*> FSimulatedBlueprint::GetAllGraphs() const
{
	std::vector<FSimulatedGraph*> Graphs;
	for (const std::vector<std::unique_ptr<FSimulatedGraph>>* List : {&FunctionGraphs, &MacroGraphs, &UbergraphPages, &DelegateSignatureGraphs})
	{
		for (const std::unique_ptr<FSimulatedGraph>& Graph : *List)
		{
			Graphs.push_back(Graph.get());
		}
	}
	for (const FSimulatedImplementedInterface& Interface : ImplementedInterfaces)
	{
		for (const std::unique_ptr<FSimulatedGraph>& Graph : Interface.Graphs)
		{
			Graphs.push_back(Graph.get());
		}
	}
	return Graphs;
}

FSimulatedGraph* FSimulatedBlueprint::FindGraph(const FString& GraphName) const
{
	for (FSimulatedGraph* Graph : GetAllGraphs())
	{
		if (Graph->GetName().Equals(GraphName, ESearchCase::IgnoreCase))
		{
			return Graph;
		}
	}
	return nullptr;
}

int32 FSimulatedBlueprint::FindNewVariableIndex(const FString& VarName) const
{
	if (VarName.IsEmpty() || VarName.Equals(TEXT("None"), ESearchCase::IgnoreCase))
	{
		return INDEX_NONE;
	}
	for (int32 Index = 0; Index < (int32)NewVariables.size(); ++Index)
	{
		if (NewVariables[(size_t)Index].VarName.ToString().Equals(VarName, ESearchCase::IgnoreCase))
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

FSimulatedBlueprints::FSimulatedBlueprints(FSimulatedEditor& InEditor)
	: Editor(InEditor)
{
}

FSimulatedBlueprints::~FSimulatedBlueprints() = default;

FString FSimulatedBlueprints::NewGuid()
{
	const uint64 High = SimBlueprintMix(++GuidCounter);
	const uint64 Low = SimBlueprintMix(High ^ GuidCounter);
	return FString::Printf(TEXT("%08X%08X%08X%08X"), (uint32)(High >> 32), (uint32)High, (uint32)(Low >> 32), (uint32)Low);
}

FString FSimulatedBlueprints::NameToDisplayString(const FString& Name, bool bIsBool)
{
	FString Source = Name;
	// Boolean names drop their "b" prefix: bIsReady -> Is Ready.
	if (bIsBool && Source.Len() > 1 && Source[0] == TEXT('b') && SimBlueprintIsUpper(Source[1]))
	{
		Source = Source.Mid(1);
	}
	FString Display;
	bool bInRun = false;
	for (int32 Index = 0; Index < Source.Len(); ++Index)
	{
		TCHAR Character = Source[Index];
		if (Character == TEXT('_'))
		{
			if (!Display.IsEmpty() && !Display.EndsWith(TEXT(" ")))
			{
				Display += TEXT(' ');
			}
			bInRun = false;
			continue;
		}
		const bool bUpper = SimBlueprintIsUpper(Character);
		const bool bDigit = FChar::IsDigit(Character);
		if (Index > 0 && !Display.IsEmpty() && !Display.EndsWith(TEXT(" ")))
		{
			const TCHAR Previous = Source[Index - 1];
			const bool bNextLower = Index + 1 < Source.Len() && SimBlueprintIsLower(Source[Index + 1]);
			const bool bBreakBeforeUpper = bUpper && (SimBlueprintIsLower(Previous) || FChar::IsDigit(Previous) || (SimBlueprintIsUpper(Previous) && bNextLower));
			const bool bBreakBeforeDigit = bDigit && !FChar::IsDigit(Previous);
			if (bBreakBeforeUpper || bBreakBeforeDigit)
			{
				Display += TEXT(' ');
			}
		}
		if (Display.IsEmpty() || Display.EndsWith(TEXT(" ")))
		{
			Character = FChar::ToUpper(Character);
		}
		Display += Character;
		bInRun = bUpper;
	}
	(void)bInRun;
	return Display;
}

bool FSimulatedBlueprints::GetPinTypeFromProperty(const FSimulatedProperty& Property, FZorvekMCPBridgePinType& OutPinType)
{
	OutPinType.ResetToDefaults();
	const FSimulatedProperty* Element = &Property;
	if (Property.Type == ESimulatedPropertyType::Array && Property.Inner)
	{
		OutPinType.ContainerType = EZorvekMCPBridgePinContainerType::Array;
		Element = Property.Inner.get();
	}
	auto SetObject = [&OutPinType](const FSimulatedType* Type)
	{
		if (Type)
		{
			OutPinType.PinSubCategoryObject = FZorvekMCPBridgeTypeIdentity(Type->GetPathName(), Type->Name);
		}
	};
	switch (Element->Type)
	{
	case ESimulatedPropertyType::Bool:
		OutPinType.PinCategory = FZorvekMCPBridgePinCategories::PC_Boolean;
		break;
	case ESimulatedPropertyType::Byte:
	case ESimulatedPropertyType::ByteEnum:
	case ESimulatedPropertyType::Enum:
		OutPinType.PinCategory = FName(TEXT("byte"));
		SetObject(Element->TypeObject);
		break;
	case ESimulatedPropertyType::Int:
		OutPinType.PinCategory = FZorvekMCPBridgePinCategories::PC_Int;
		break;
	case ESimulatedPropertyType::Int64:
		OutPinType.PinCategory = FName(TEXT("int64"));
		break;
	case ESimulatedPropertyType::Float:
		OutPinType.PinCategory = FZorvekMCPBridgePinCategories::PC_Real;
		OutPinType.PinSubCategory = FZorvekMCPBridgePinCategories::PC_Float;
		break;
	case ESimulatedPropertyType::Double:
		OutPinType.PinCategory = FZorvekMCPBridgePinCategories::PC_Real;
		OutPinType.PinSubCategory = FZorvekMCPBridgePinCategories::PC_Double;
		break;
	case ESimulatedPropertyType::String:
		OutPinType.PinCategory = FZorvekMCPBridgePinCategories::PC_String;
		break;
	case ESimulatedPropertyType::Name:
		OutPinType.PinCategory = FZorvekMCPBridgePinCategories::PC_Name;
		break;
	case ESimulatedPropertyType::Text:
		OutPinType.PinCategory = FZorvekMCPBridgePinCategories::PC_Text;
		break;
	case ESimulatedPropertyType::Struct:
		OutPinType.PinCategory = FZorvekMCPBridgePinCategories::PC_Struct;
		SetObject(Element->TypeObject);
		break;
	case ESimulatedPropertyType::Object:
		// A property typed with an interface class is an interface pin.
		OutPinType.PinCategory = (Element->TypeObject && (Element->TypeObject->ClassFlags & ZorvekMCPBridgeClassFlags::Interface) != 0)
			? FName(TEXT("interface"))
			: FZorvekMCPBridgePinCategories::PC_Object;
		SetObject(Element->TypeObject);
		break;
	case ESimulatedPropertyType::SoftObject:
		OutPinType.PinCategory = FName(TEXT("softobject"));
		SetObject(Element->TypeObject);
		break;
	case ESimulatedPropertyType::Class:
		OutPinType.PinCategory = FZorvekMCPBridgePinCategories::PC_Class;
		SetObject(Element->TypeObject);
		break;
	default:
		// uint16 and nested arrays have no Blueprint pin type.
		OutPinType.PinCategory = FName(TEXT("wildcard"));
		return false;
	}
	// As ConvertPropertyToPinType: a reference only when passed out by reference.
	OutPinType.bIsReference = (Property.Flags & (SimulatedParameterFlags::OutParm | SimulatedParameterFlags::ReferenceParm)) == (SimulatedParameterFlags::OutParm | SimulatedParameterFlags::ReferenceParm);
	OutPinType.bIsConst = (Property.Flags & SimulatedParameterFlags::ConstParm) != 0;
	return true;
}

bool FSimulatedBlueprints::GetPropertyTypeText(const FZorvekMCPBridgePinType& PinType, FString& OutTypeText) const
{
	if (PinType.IsSet() || PinType.IsMap())
	{
		return false;
	}
	const FString Category = PinType.PinCategory.ToString().ToLower();
	const FString ObjectPath = PinType.PinSubCategoryObject.PathName;
	FString Text;
	if (Category == TEXT("bool"))
	{
		Text = TEXT("bool");
	}
	else if (Category == TEXT("int"))
	{
		Text = TEXT("int32");
	}
	else if (Category == TEXT("int64"))
	{
		Text = TEXT("int64");
	}
	else if (Category == TEXT("real") || Category == TEXT("float") || Category == TEXT("double"))
	{
		Text = (Category == TEXT("float") || PinType.PinSubCategory.ToString().Equals(TEXT("float"), ESearchCase::IgnoreCase)) ? TEXT("float") : TEXT("double");
	}
	else if (Category == TEXT("string"))
	{
		Text = TEXT("FString");
	}
	else if (Category == TEXT("name"))
	{
		Text = TEXT("FName");
	}
	else if (Category == TEXT("text"))
	{
		Text = TEXT("FText");
	}
	else if (Category == TEXT("byte"))
	{
		Text = ObjectPath.IsEmpty() ? FString(TEXT("uint8")) : TEXT("enum:") + ObjectPath;
	}
	else if ((Category == TEXT("struct") || Category == TEXT("object") || Category == TEXT("class") || Category == TEXT("softobject") || Category == TEXT("interface"))
		&& !ObjectPath.IsEmpty())
	{
		Text = (Category == TEXT("interface") ? FString(TEXT("object")) : Category) + TEXT(":") + ObjectPath;
	}
	else
	{
		return false;
	}
	if (!ObjectPath.IsEmpty() && !Editor.FindTypeByPath(ObjectPath))
	{
		return false;
	}
	OutTypeText = PinType.IsArray() ? TEXT("array:") + Text : Text;
	return true;
}

FSimulatedType* FSimulatedBlueprints::FindOrAddModelClass(const FString& Path, const FString& SuperPath)
{
	if (FSimulatedType* Existing = Editor.FindTypeByPath(Path))
	{
		return Existing->Kind == ESimulatedTypeKind::Class ? Existing : nullptr;
	}
	if (!SuperPath.IsEmpty() && !Editor.FindTypeByPath(SuperPath))
	{
		FindOrAddModelClass(SuperPath, FString());
	}
	FString Error;
	return Editor.AddClass(Path, SuperPath, 0, Error);
}

FSimulatedBlueprint* FSimulatedBlueprints::FindBlueprint(const FSimulatedObject* Object) const
{
	const auto Found = BlueprintsByObject.find(Object);
	return Found == BlueprintsByObject.end() ? nullptr : Found->second;
}

FSimulatedBlueprint* FSimulatedBlueprints::FindBlueprintByClass(const FSimulatedType* Class) const
{
	for (const std::unique_ptr<FSimulatedBlueprint>& Blueprint : Blueprints)
	{
		if (Class && (Blueprint->GeneratedClass == Class || Blueprint->SkeletonClass == Class))
		{
			return Blueprint.get();
		}
	}
	return nullptr;
}

std::vector<FSimulatedBlueprint*> FSimulatedBlueprints::GetBlueprints() const
{
	std::vector<FSimulatedBlueprint*> Result;
	for (const std::unique_ptr<FSimulatedBlueprint>& Blueprint : Blueprints)
	{
		Result.push_back(Blueprint.get());
	}
	return Result;
}

bool FSimulatedBlueprints::IsActorBased(const FSimulatedBlueprint& Blueprint) const
{
	const FSimulatedType* Actor = Editor.FindTypeByPath(TEXT("/Script/Engine.Actor"));
	return Actor && Blueprint.ParentClass && Blueprint.ParentClass->IsChildOf(Actor);
}

bool FSimulatedBlueprints::SupportsConstructionScript(const FSimulatedBlueprint& Blueprint) const
{
	switch (Blueprint.BlueprintType)
	{
	case EZorvekMCPBridgeBlueprintType::Interface:
	case EZorvekMCPBridgeBlueprintType::Const:
	case EZorvekMCPBridgeBlueprintType::LevelScript:
	case EZorvekMCPBridgeBlueprintType::MacroLibrary:
	case EZorvekMCPBridgeBlueprintType::FunctionLibrary:
		return false;
	default:
		return IsActorBased(Blueprint);
	}
}

FSimulatedType* FSimulatedBlueprints::MakeGeneratedClass(FSimulatedBlueprint& Blueprint, const FString& ClassName, FString& OutError)
{
	FSimulatedObject* Package = Blueprint.Object->Outer;
	const FString ClassPath = Package->GetPathName() + TEXT(".") + ClassName;
	const FSimulatedType* Super = Blueprint.ParentClass ? Blueprint.ParentClass : Editor.GetObjectClass();
	uint32 Flags = 0;
	if (Blueprint.BlueprintType == EZorvekMCPBridgeBlueprintType::Interface)
	{
		Flags |= ZorvekMCPBridgeClassFlags::Interface | ZorvekMCPBridgeClassFlags::Abstract;
	}
	if (Blueprint.BlueprintType == EZorvekMCPBridgeBlueprintType::Const)
	{
		Flags |= SimBlueprintClassConst;
	}
	return Editor.AddClass(ClassPath, Super->GetPathName(), Flags, OutError);
}

FSimulatedBlueprint* FSimulatedBlueprints::CreateBlueprint(FSimulatedObject* Package, const FString& Name, FSimulatedType* ParentClass, EZorvekMCPBridgeBlueprintType BlueprintType, FString& OutError)
{
	if (!Package || !Package->IsPackage())
	{
		OutError = TEXT("A Blueprint needs a package.");
		return nullptr;
	}
	// The engine asserts on each of these; the simulation refuses instead.
	for (const FString& Taken : {Name, Name + TEXT("_C"), TEXT("SKEL_") + Name + TEXT("_C"), TEXT("Default__") + Name + TEXT("_C")})
	{
		if (Editor.FindObject(Package->GetPathName() + TEXT(".") + Taken))
		{
			OutError = FString::Printf(TEXT("An object named %s already exists in %s."), *Taken, *Package->GetPathName());
			return nullptr;
		}
	}
	FSimulatedType* BlueprintClass = FindOrAddModelClass(TEXT("/Script/Engine.Blueprint"), TEXT("/Script/CoreUObject.Object"));
	if (!BlueprintClass || !FindOrAddModelClass(TEXT("/Script/Engine.EdGraph"), TEXT("/Script/CoreUObject.Object")))
	{
		OutError = TEXT("The Blueprint classes of the simulated engine are missing.");
		return nullptr;
	}
	FSimulatedObject* Object = Editor.CreateObject(BlueprintClass, Package, Name, OutError);
	if (!Object)
	{
		return nullptr;
	}
	std::unique_ptr<FSimulatedBlueprint> Owned = std::make_unique<FSimulatedBlueprint>();
	FSimulatedBlueprint& Blueprint = *Owned;
	Blueprint.Object = Object;
	Blueprint.ParentClass = ParentClass;
	Blueprint.BlueprintType = BlueprintType;
	if (BlueprintType == EZorvekMCPBridgeBlueprintType::Normal && ParentClass && (ParentClass->ClassFlags & SimBlueprintClassConst) != 0)
	{
		Blueprint.BlueprintType = EZorvekMCPBridgeBlueprintType::Const;
	}
	Blueprint.Status = EZorvekMCPBridgeBlueprintStatus::BeingCreated;
	Blueprint.BlueprintGuid = NewGuid();
	Blueprints.push_back(std::move(Owned));
	BlueprintsByObject[Object] = &Blueprint;

	SimBlueprintSetObjectValue(*Object, TEXT("ParentClass"), ParentClass);
	const int32 TypeIndex = BlueprintClass->FindPropertyIndex(TEXT("BlueprintType"));
	if (TypeIndex != INDEX_NONE)
	{
		Object->Values[(size_t)TypeIndex].Integer = (int64)Blueprint.BlueprintType;
	}

	Blueprint.GeneratedClass = MakeGeneratedClass(Blueprint, Name + TEXT("_C"), OutError);
	Blueprint.SkeletonClass = MakeGeneratedClass(Blueprint, TEXT("SKEL_") + Name + TEXT("_C"), OutError);
	if (!Blueprint.GeneratedClass || !Blueprint.SkeletonClass)
	{
		return nullptr;
	}
	SimBlueprintSetObjectValue(*Object, TEXT("GeneratedClass"), Blueprint.GeneratedClass);
	SimBlueprintSetObjectValue(*Object, TEXT("SkeletonGeneratedClass"), Blueprint.SkeletonClass);

	if (SupportsConstructionScript(Blueprint))
	{
		FSimulatedType* ScsClass = FindOrAddModelClass(TEXT("/Script/Engine.SimpleConstructionScript"), TEXT("/Script/CoreUObject.Object"));
		FSimulatedType* SceneComponent = FindOrAddModelClass(TEXT("/Script/Engine.SceneComponent"), TEXT("/Script/Engine.ActorComponent"));
		Blueprint.ConstructionScript = std::make_unique<FSimulatedConstructionScript>();
		Blueprint.ConstructionScript->Object = Editor.CreateObject(ScsClass, Blueprint.GeneratedClass, TEXT("SimpleConstructionScript_0"), OutError);
		// The construction script's constructor makes the default root node, then validates roots.
		FSimulatedSCSNode* DefaultRoot = CreateComponentNode(Blueprint, SceneComponent, TEXT("DefaultSceneRoot"));
		if (DefaultRoot)
		{
			DefaultRoot->bVisualizeComponent = true;
			Blueprint.ConstructionScript->DefaultSceneRootNode = DefaultRoot;
		}
		ValidateSceneRootNodes(Blueprint);

		std::unique_ptr<FSimulatedGraph> ConstructionGraph = CreateNewGraph(Blueprint, TEXT("UserConstructionScript"));
		ConstructionGraph->Kind = EZorvekMCPBridgeGraphKind::Function;
		ConstructionGraph->bAllowDeletion = false;
		FSimulatedGraph& Graph = *ConstructionGraph;
		Blueprint.FunctionGraphs.push_back(std::move(ConstructionGraph));
		const FSimulatedType* Actor = Editor.FindTypeByPath(TEXT("/Script/Engine.Actor"));
		CreateFunctionEntryNode(Graph, Actor ? Actor->FindFunction(TEXT("UserConstructionScript")) : nullptr, TEXT("UserConstructionScript"));
		if (FSimulatedNode* Entry = Graph.FindNodeOfClass(TEXT("K2Node_FunctionEntry")))
		{
			Entry->Data.MemberParentClassPath = TEXT("/Script/Engine.Actor");
		}
		// A Blueprint parent's construction script is called first.
		if (FindBlueprintByClass(ParentClass))
		{
			if (const FSimulatedFunction* ParentScript = ParentClass->FindFunction(TEXT("UserConstructionScript")))
			{
				FSimulatedNode* ParentCall = AddCallFunctionNode(Graph, *ParentScript, 200, 0);
				ParentCall->NodeClass = TEXT("K2Node_CallParentFunction");
				ParentCall->Data.bSelfContext = false;
				FSimulatedNode* Entry = Graph.FindNodeOfClass(TEXT("K2Node_FunctionEntry"));
				if (Entry && Entry->FindPin(TEXT("then")) && ParentCall->FindPin(TEXT("execute")))
				{
					MakeLink(*Entry->FindPin(TEXT("then")), *ParentCall->FindPin(TEXT("execute")));
				}
			}
		}
	}

	if (Blueprint.BlueprintType == EZorvekMCPBridgeBlueprintType::Normal || Blueprint.BlueprintType == EZorvekMCPBridgeBlueprintType::LevelScript)
	{
		std::unique_ptr<FSimulatedGraph> EventGraph = CreateNewGraph(Blueprint, TEXT("EventGraph"));
		EventGraph->Kind = EZorvekMCPBridgeGraphKind::Ubergraph;
		EventGraph->bAllowDeletion = false;
		Blueprint.UbergraphPages.push_back(std::move(EventGraph));
	}

	// The default object of the generated class lives in the package.
	Blueprint.DefaultObject = Editor.CreateObject(Blueprint.GeneratedClass, Package, TEXT("Default__") + Blueprint.GeneratedClass->Name, OutError);
	Compile(Blueprint);
	AddGhostEvents(Blueprint);
	OutError.Reset();
	return &Blueprint;
}

void FSimulatedBlueprints::AddGhostEvents(FSimulatedBlueprint& Blueprint)
{
	if (Blueprint.UbergraphPages.empty())
	{
		return;
	}
	const FSimBlueprintDefaultEvents* Registration = nullptr;
	for (const FSimulatedType* Class = Blueprint.GeneratedClass; Class && !Registration; Class = Class->Super)
	{
		for (const FSimBlueprintDefaultEvents& Candidate : GetSimBlueprintDefaultEvents())
		{
			if (Class->GetPathName() == Candidate.ClassPath)
			{
				Registration = &Candidate;
				break;
			}
		}
	}
	if (!Registration)
	{
		return;
	}
	FSimulatedGraph& Graph = *Blueprint.UbergraphPages[0];
	int32 NextY = 0;
	for (const TCHAR* EventName : Registration->Events)
	{
		const FSimulatedFunction* Function = Blueprint.ParentClass ? Blueprint.ParentClass->FindFunction(EventName) : nullptr;
		if (!Function)
		{
			continue;
		}
		FSimulatedNode* Event = AddEventNode(Graph, *Function, 0, SimBlueprintSnapToGrid(NextY));
		Event->bCommentBubblePinned = true;
		Event->bCommentBubbleVisible = true;
		// Nodes never drawn have no height: the next one goes 200 further down.
		NextY = Event->PosY + Event->Height + 200;
		Event->EnabledState = ESimulatedNodeEnabledState::Disabled;
		Event->bUserSetEnabledState = false;
		Event->NodeComment = SimBlueprintGhostComment;
		// A parent Blueprint that implements the event gets a ghost call of it beside the event.
		if (FindBlueprintByClass(Function->Owner))
		{
			FSimulatedNode* ParentCall = AddCallFunctionNode(Graph, *Function, Event->PosX + Event->Width + 200, Event->PosY);
			ParentCall->NodeClass = TEXT("K2Node_CallParentFunction");
			ParentCall->Data.bSelfContext = false;
			ParentCall->EnabledState = ESimulatedNodeEnabledState::Disabled;
			ParentCall->NodeComment = SimBlueprintGhostComment;
			if (FSimulatedPin* Then = Event->FindPin(TEXT("then")))
			{
				if (FSimulatedPin* Execute = ParentCall->FindPin(TEXT("execute")))
				{
					MakeLink(*Then, *Execute);
				}
			}
		}
	}
}

void FSimulatedBlueprints::MarkModified(FSimulatedBlueprint& Blueprint)
{
	if (Blueprint.bBeingCompiled || Blueprint.Status == EZorvekMCPBridgeBlueprintStatus::BeingCreated)
	{
		return;
	}
	Blueprint.Status = EZorvekMCPBridgeBlueprintStatus::Dirty;
}

void FSimulatedBlueprints::MarkStructurallyModified(FSimulatedBlueprint& Blueprint)
{
	if (Blueprint.bBeingCompiled || Blueprint.Status == EZorvekMCPBridgeBlueprintStatus::BeingCreated)
	{
		return;
	}
	if (Blueprint.SkeletonClass)
	{
		RegenerateClass(Blueprint, *Blueprint.SkeletonClass, true);
	}
	MarkModified(Blueprint);
}

void FSimulatedBlueprints::RegenerateClass(FSimulatedBlueprint& Blueprint, FSimulatedType& Class, bool bSkeleton)
{
	// Everything derived from the class sees the new members, and objects keep their values by
	// name: the simulation's re-instancing.
	std::vector<FSimulatedType*> Affected;
	std::unordered_map<const FSimulatedType*, std::vector<const FSimulatedProperty*>> OldLists;
	Editor.ForEachObject([&Class, &Affected, &OldLists](FSimulatedObject* Object)
	{
		FSimulatedType* Type = dynamic_cast<FSimulatedType*>(Object);
		if (Type && Type->Kind == ESimulatedTypeKind::Class && Type->IsChildOf(&Class))
		{
			Affected.push_back(Type);
			OldLists[Type] = Type->AllProperties;
		}
	});
	const std::vector<std::shared_ptr<FSimulatedProperty>> OldOwn = std::move(Class.OwnProperties);
	Class.OwnProperties.clear();
	Class.Super = Blueprint.ParentClass ? Blueprint.ParentClass : Editor.GetObjectClass();
	if (bSkeleton)
	{
		Blueprint.SkeletonUnreflectedMembers.Reset();
	}
	FString Error;
	for (const FSimulatedVariable& Variable : Blueprint.NewVariables)
	{
		FString TypeText;
		if (!GetPropertyTypeText(Variable.VarType, TypeText) || !Editor.AddProperty(&Class, Variable.VarName.ToString(), TypeText, Variable.PropertyFlags, Error))
		{
			if (bSkeleton)
			{
				Blueprint.SkeletonUnreflectedMembers.Add(Variable.VarName.ToString());
			}
		}
	}
	if (Blueprint.ConstructionScript)
	{
		for (const FSimulatedSCSNode* Node : Blueprint.ConstructionScript->AllNodes)
		{
			if (Node->ComponentClass)
			{
				Editor.AddProperty(&Class, Node->VariableName, TEXT("object:") + Node->ComponentClass->GetPathName(),
					ZorvekMCPBridgePropertyFlags::BlueprintVisible | ZorvekMCPBridgePropertyFlags::BlueprintReadOnly, Error);
			}
		}
	}

	// Functions: function graphs and interface graphs with their signatures, custom events.
	Class.Functions.clear();
	auto AddFunction = [this, &Class](const FString& Name, uint32 Flags, const FSimulatedNode* Entry, const FSimulatedNode* Result)
	{
		std::shared_ptr<FSimulatedFunction> Function = std::make_shared<FSimulatedFunction>();
		Function->Name = Name;
		Function->Owner = &Class;
		Function->FunctionFlags = Flags;
		auto AddParameters = [this, &Function](const FSimulatedNode* Node, uint64 ExtraFlags)
		{
			if (!Node)
			{
				return;
			}
			for (const FZorvekMCPBridgeUserPinInfo& UserPin : Node->Data.UserPins)
			{
				FString TypeText;
				if (!GetPropertyTypeText(UserPin.PinType, TypeText))
				{
					continue;
				}
				FString ParameterError;
				if (std::shared_ptr<FSimulatedProperty> Parameter = Editor.MakeProperty(UserPin.PinName.ToString(), TypeText, SimulatedParameterFlags::Parm | ExtraFlags, ParameterError))
				{
					Function->Parameters.push_back(Parameter);
				}
			}
		};
		if (Entry && Entry->Function && Entry->Data.UserPins.IsEmpty())
		{
			// Interface and override graphs take the signature they implement.
			Function->Parameters = Entry->Function->Parameters;
		}
		AddParameters(Entry, 0);
		AddParameters(Result, SimulatedParameterFlags::OutParm);
		if (Result && !Result->Data.UserPins.IsEmpty())
		{
			Function->FunctionFlags |= SimulatedFunctionFlags::HasOutParms;
		}
		Class.Functions.push_back(Function);
	};
	for (const std::unique_ptr<FSimulatedGraph>& Graph : Blueprint.FunctionGraphs)
	{
		AddFunction(Graph->GetName(), Graph->FunctionFlags, Graph->FindNodeOfClass(TEXT("K2Node_FunctionEntry")), Graph->FindNodeOfClass(TEXT("K2Node_FunctionResult")));
	}
	for (const FSimulatedImplementedInterface& Interface : Blueprint.ImplementedInterfaces)
	{
		for (const std::unique_ptr<FSimulatedGraph>& Graph : Interface.Graphs)
		{
			AddFunction(Graph->GetName(), Graph->FunctionFlags, Graph->FindNodeOfClass(TEXT("K2Node_FunctionEntry")), Graph->FindNodeOfClass(TEXT("K2Node_FunctionResult")));
		}
	}
	for (const std::unique_ptr<FSimulatedGraph>& Graph : Blueprint.UbergraphPages)
	{
		for (const std::unique_ptr<FSimulatedNode>& Node : Graph->Nodes)
		{
			if (Node->Kind == EZorvekMCPBridgeNodeKind::CustomEvent)
			{
				AddFunction(Node->Data.CustomFunctionName, SimulatedFunctionFlags::BlueprintCallable | SimulatedFunctionFlags::BlueprintEvent | SimulatedFunctionFlags::Public | SimulatedFunctionFlags::Event,
					Node.get(), nullptr);
			}
			else if (Node->Kind == EZorvekMCPBridgeNodeKind::Event && Node->Function && Node->EnabledState != ESimulatedNodeEnabledState::Disabled)
			{
				// An implemented override or interface event becomes the class's own version of it.
				std::shared_ptr<FSimulatedFunction> Override = std::make_shared<FSimulatedFunction>(*Node->Function);
				Override->Owner = &Class;
				Override->Body = nullptr;
				Class.Functions.push_back(Override);
			}
		}
	}

	for (FSimulatedType* Type : Affected)
	{
		Type->RebuildPropertyList();
	}
	// Objects of the affected classes get one value per new property, the old value where the
	// name and type still match.
	Editor.ForEachObject([this, &OldLists](FSimulatedObject* Object)
	{
		const auto Found = OldLists.find(Object->Class);
		if (Found == OldLists.end() || dynamic_cast<FSimulatedType*>(Object))
		{
			return;
		}
		const std::vector<const FSimulatedProperty*>& OldProperties = Found->second;
		std::vector<FSimulatedValue> NewValues;
		NewValues.reserve(Object->Class->AllProperties.size());
		for (const FSimulatedProperty* Property : Object->Class->AllProperties)
		{
			bool bKept = false;
			for (size_t OldIndex = 0; OldIndex < OldProperties.size() && OldIndex < Object->Values.size(); ++OldIndex)
			{
				if (OldProperties[OldIndex]->Name.Equals(Property->Name, ESearchCase::IgnoreCase) && Editor.GetCppType(*OldProperties[OldIndex]) == Editor.GetCppType(*Property))
				{
					NewValues.push_back(std::move(Object->Values[OldIndex]));
					bKept = true;
					break;
				}
			}
			if (!bKept)
			{
				NewValues.push_back(Editor.MakeDefaultValue(*Property));
			}
		}
		Object->Values = std::move(NewValues);
	});

	// The default object takes the variables' defaults.
	if (!bSkeleton && Blueprint.DefaultObject)
	{
		for (const FSimulatedVariable& Variable : Blueprint.NewVariables)
		{
			if (!Variable.DefaultValue.IsEmpty())
			{
				FString ImportError;
				Editor.SetPropertyText(Blueprint.DefaultObject, Variable.VarName.ToString(), Variable.DefaultValue, ImportError);
			}
		}
	}
	(void)OldOwn;
}

void FSimulatedBlueprints::RenameAway(FSimulatedObject& Object)
{
	FSimulatedObject* Transient = Editor.FindOrCreatePackage(TEXT("/Engine/Transient"));
	FString Error;
	for (int32 Suffix = 0; Suffix < 100000; ++Suffix)
	{
		if (Editor.RenameObject(&Object, Transient, FString::Printf(TEXT("TRASH_%s_%d"), *Object.Name, Suffix), Error))
		{
			return;
		}
	}
}
