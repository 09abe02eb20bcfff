// The action catalogue of the engine Blueprint port: the Blueprint action database's spawners,
// turned into the spawn requests the node tools place, and the pins such a node will have.
#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"
#include "BlueprintActionDatabase.h"
#include "BlueprintEventNodeSpawner.h"
#include "BlueprintFunctionNodeSpawner.h"
#include "BlueprintNodeSpawner.h"
#include "BlueprintVariableNodeSpawner.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"
#include "Editor/Port/ZorvekMCPBridgeEngineBlueprintNodes.h"
#include "Editor/Port/ZorvekMCPBridgeEngineBlueprintSpawning.h"
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Engine/Blueprint.h"
#include "InputCoreTypes.h"
#include "K2Node_CallFunction.h"
#include "K2Node_DynamicCast.h"
#include "K2Node_Event.h"
#include "K2Node_ExecutionSequence.h"
#include "K2Node_IfThenElse.h"
#include "K2Node_InputAxisKeyEvent.h"
#include "K2Node_InputKey.h"
#include "K2Node_MacroInstance.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/ObjectKey.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UnrealType.h"

// TSubclassOf::Get(), the class a TSubclassOf member holds: not in the reference notes; check
// against the engine. The action database and spawner declarations (GetAllActions' key type and
// FObjectKey::ResolveObjectPtr, GetFunction, GetVarProperty, IsLocalVariable, GetEventFunction,
// IsForCustomEvent, NodeClass, DefaultMenuSignature, PrimeDefaultUiSpec, GetTemplateNode,
// GetCachedTemplateNode), EKeys::GetMenuCategoryDisplayName and the value of FUNC_BlueprintPure
// are not in the reference notes beyond their names either; check against the engine.

namespace ZorvekMCPBridgeEngineBlueprintActionsLocal
{
	// The macros of the standard library the node tools place.
	const TCHAR* const FlowControlMacroNames[] = {TEXT("DoOnce"), TEXT("Gate"), TEXT("FlipFlop")};

	FString TextOr(const FText& Text, const TCHAR* Fallback)
	{
		return Text.IsEmpty() ? FString(Fallback) : Text.ToString();
	}

	// The function spawner's rules (unreal-behaviour-blueprints.md §9.4): the user-facing name, the
	// Category metadata under the base ("Call Function" without either), the Keywords metadata or " ".
	FString GetFunctionCategory(const UFunction& Function, const FString& Base)
	{
		const FString Category = Function.HasMetaData(TEXT("Category")) ? Function.GetMetaData(TEXT("Category")) : FString();
		if (Category.IsEmpty())
		{
			return Base.IsEmpty() ? FString(TEXT("Call Function")) : Base;
		}
		return Base.IsEmpty() ? Category : Base + TEXT("|") + Category;
	}

	FString GetFunctionKeywords(const UFunction& Function)
	{
		const FString Keywords = Function.HasMetaData(TEXT("Keywords")) ? Function.GetMetaData(TEXT("Keywords")) : FString();
		return Keywords.IsEmpty() ? FString(TEXT(" ")) : Keywords;
	}

	// What the spawner already holds (function, variable and event spawners fill their UI spec
	// when they are made); empty fields stay for the caller's fallback.
	void ApplyUiSpec(const FBlueprintActionUiSpec& Spec, FZorvekMCPBridgeNodeAction& OutAction)
	{
		if (!Spec.MenuName.IsEmpty())
		{
			OutAction.Title = Spec.MenuName.ToString();
		}
		if (!Spec.Category.IsEmpty())
		{
			OutAction.Category = Spec.Category.ToString();
		}
		if (!Spec.Keywords.IsEmpty())
		{
			OutAction.Keywords = Spec.Keywords.ToString();
		}
		if (!Spec.Tooltip.IsEmpty())
		{
			OutAction.Tooltip = Spec.Tooltip.ToString();
		}
	}

	void ApplyFunctionFallbacks(const UFunction& Function, const FString& CategoryBase, FZorvekMCPBridgeNodeAction& OutAction)
	{
		if (OutAction.Title.IsEmpty())
		{
			OutAction.Title = Function.GetDisplayNameText().ToString();
		}
		if (OutAction.Category.IsEmpty())
		{
			OutAction.Category = GetFunctionCategory(Function, CategoryBase);
		}
		if (OutAction.Keywords.IsEmpty())
		{
			OutAction.Keywords = GetFunctionKeywords(Function);
		}
		if (OutAction.Tooltip.IsEmpty())
		{
			OutAction.Tooltip = Function.GetToolTipText().ToString();
		}
	}

	bool IsScopeClass(const UClass* Class, const UBlueprint* Scope)
	{
		return Scope && Class && (Class == Scope->GeneratedClass.Get() || Class == Scope->SkeletonGeneratedClass.Get());
	}

	bool HasFunctionGraph(const UBlueprint& Blueprint, const FName FunctionName)
	{
		for (const UEdGraph* Graph : Blueprint.FunctionGraphs)
		{
			if (Graph && Graph->GetFName() == FunctionName)
			{
				return true;
			}
		}
		return false;
	}

	// A call of a function: of the scoped Blueprint's own function graph or custom event, or of the
	// class that declares it (a Blueprint's function through its generated class).
	bool MapFunctionSpawner(const UBlueprintFunctionNodeSpawner& Spawner, const UBlueprint* Scope, FZorvekMCPBridgeNodeAction& OutAction)
	{
		const UFunction* Function = Spawner.GetFunction();
		const UClass* NodeClass = Spawner.NodeClass.Get();
		if (!Function || !NodeClass || !NodeClass->IsChildOf(UK2Node_CallFunction::StaticClass()))
		{
			return false;
		}
		FZorvekMCPBridgeNodeSpawnRequest& Request = OutAction.Request;
		if (IsScopeClass(Function->GetOuterUClass(), Scope))
		{
			if (HasFunctionGraph(*Scope, Function->GetFName()))
			{
				Request.Kind = EZorvekMCPBridgeNodeSpawnKind::CallBlueprintFunction;
				Request.FunctionName = Function->GetName();
			}
			else if (FBlueprintEditorUtils::FindCustomEventNode(Scope, Function->GetFName()))
			{
				Request.Kind = EZorvekMCPBridgeNodeSpawnKind::CustomEventCall;
				Request.EventName = Function->GetName();
			}
			else
			{
				return false;
			}
		}
		else
		{
			const UClass* Owner = ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(Function->GetOuterUClass());
			if (!Owner)
			{
				return false;
			}
			Request.Kind = EZorvekMCPBridgeNodeSpawnKind::CallFunction;
			Request.ClassPath = Owner->GetPathName();
			Request.FunctionName = Function->GetName();
		}
		OutAction.NodeKind = EZorvekMCPBridgeNodeKind::FunctionCall;
		OutAction.bPure = Function->HasAnyFunctionFlags(FUNC_BlueprintPure);
		OutAction.bLatent = Function->HasMetaData(TEXT("Latent"));
		ApplyUiSpec(Spawner.DefaultMenuSignature, OutAction);
		ApplyFunctionFallbacks(*Function, FString(), OutAction);
		return true;
	}

	// A member variable get or set: the scoped Blueprint's own variables (and components) by name
	// alone, any other class's with the class that declares the property. Function locals and
	// parameters are not placed by the node tools.
	bool MapVariableSpawner(const UBlueprintVariableNodeSpawner& Spawner, const UBlueprint* Scope, FZorvekMCPBridgeNodeAction& OutAction)
	{
		const FProperty* Property = Spawner.GetVarProperty();
		const UClass* NodeClass = Spawner.NodeClass.Get();
		const bool bGet = NodeClass == UK2Node_VariableGet::StaticClass();
		if (!Property || Spawner.IsLocalVariable() || (!bGet && NodeClass != UK2Node_VariableSet::StaticClass()))
		{
			return false;
		}
		FZorvekMCPBridgeNodeSpawnRequest& Request = OutAction.Request;
		Request.Kind = bGet ? EZorvekMCPBridgeNodeSpawnKind::VariableGet : EZorvekMCPBridgeNodeSpawnKind::VariableSet;
		Request.VariableName = Property->GetName();
		if (!IsScopeClass(Property->GetOwnerClass(), Scope))
		{
			const UClass* Owner = ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(Property->GetOwnerClass());
			if (!Owner)
			{
				return false;
			}
			Request.OwnerClassPath = Owner->GetPathName();
		}
		OutAction.NodeKind = bGet ? EZorvekMCPBridgeNodeKind::VariableGet : EZorvekMCPBridgeNodeKind::VariableSet;
		OutAction.bPure = bGet;
		ApplyUiSpec(Spawner.DefaultMenuSignature, OutAction);
		if (OutAction.Title.IsEmpty())
		{
			OutAction.Title = FString::Printf(TEXT("%s %s"), bGet ? TEXT("Get") : TEXT("Set"), *Property->GetName());
		}
		if (OutAction.Category.IsEmpty())
		{
			OutAction.Category = TEXT("Variables");
		}
		if (OutAction.Keywords.IsEmpty())
		{
			OutAction.Keywords = TEXT(" ");
		}
		return true;
	}

	// An override event of a class's event function. Interface events come from the scoped
	// Blueprint's interfaces instead, and custom-event spawners name no event to make. The scoped
	// Blueprint's own events (its custom events, which its children may override) are no events it
	// can place itself.
	bool MapEventSpawner(const UBlueprintEventNodeSpawner& Spawner, const UBlueprint* Scope, FZorvekMCPBridgeNodeAction& OutAction)
	{
		const UFunction* Function = Spawner.GetEventFunction();
		const UClass* Owner = Function ? ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(Function->GetOuterUClass()) : nullptr;
		if (Spawner.IsForCustomEvent() || !Owner || Owner->HasAnyClassFlags(CLASS_Interface) || Spawner.NodeClass.Get() != UK2Node_Event::StaticClass()
			|| IsScopeClass(Function->GetOuterUClass(), Scope))
		{
			return false;
		}
		OutAction.Request.Kind = EZorvekMCPBridgeNodeSpawnKind::Event;
		OutAction.Request.FunctionName = Function->GetName();
		OutAction.Request.ClassPath = Owner->GetPathName();
		OutAction.NodeKind = EZorvekMCPBridgeNodeKind::Event;
		ApplyUiSpec(Spawner.DefaultMenuSignature, OutAction);
		if (OutAction.Title.IsEmpty())
		{
			OutAction.Title = TEXT("Event ") + Function->GetDisplayNameText().ToString();
		}
		ApplyFunctionFallbacks(*Function, TEXT("Add Event"), OutAction);
		return true;
	}

	// The class a cast spawner casts to: the database files it under that class (a Blueprint's
	// under the Blueprint), and the spawner itself keeps it only inside its customize delegate.
	UClass* GetCastTarget(const UObject* Key)
	{
		if (const UBlueprint* Blueprint = Cast<UBlueprint>(Key))
		{
			return Blueprint->GeneratedClass.Get();
		}
		const UClass* KeyClass = Cast<UClass>(Key);
		return KeyClass && !KeyClass->IsChildOf(UEdGraphNode::StaticClass()) ? const_cast<UClass*>(KeyClass) : nullptr;
	}

	bool IsFlowControlMacro(const FString& MacroName)
	{
		for (const TCHAR* Name : FlowControlMacroNames)
		{
			if (MacroName.Equals(Name, ESearchCase::IgnoreCase))
			{
				return true;
			}
		}
		return false;
	}

	// Spawners that make a node of their class with opaque settings: Branch and Sequence, casts,
	// and the standard library's flow-control macros. Casts are thousands, so they are named by the
	// cast node's own rules (unreal-behaviour-blueprints.md §2.4, §9.4) instead of through a
	// template node; Branch, Sequence and the few macros prime their UI spec, which makes their
	// template node once.
	bool MapNodeClassSpawner(const UObject* Key, const UBlueprintNodeSpawner& Spawner, FZorvekMCPBridgeNodeAction& OutAction)
	{
		const UClass* NodeClass = Spawner.NodeClass.Get();
		if (!NodeClass)
		{
			return false;
		}
		if (NodeClass == UK2Node_IfThenElse::StaticClass() || NodeClass == UK2Node_ExecutionSequence::StaticClass())
		{
			const bool bBranch = NodeClass == UK2Node_IfThenElse::StaticClass();
			OutAction.Request.Kind = bBranch ? EZorvekMCPBridgeNodeSpawnKind::Branch : EZorvekMCPBridgeNodeSpawnKind::Sequence;
			OutAction.NodeKind = bBranch ? EZorvekMCPBridgeNodeKind::Branch : EZorvekMCPBridgeNodeKind::Sequence;
			ApplyUiSpec(Spawner.PrimeDefaultUiSpec(), OutAction);
			return !OutAction.Title.IsEmpty();
		}
		if (NodeClass == UK2Node_DynamicCast::StaticClass())
		{
			const UClass* Target = GetCastTarget(Key);
			if (!Target)
			{
				return false;
			}
			const UBlueprint* TargetBlueprint = UBlueprint::GetBlueprintFromClass(Target);
			OutAction.Request.Kind = EZorvekMCPBridgeNodeSpawnKind::DynamicCast;
			OutAction.Request.ClassPath = Target->GetPathName();
			OutAction.NodeKind = EZorvekMCPBridgeNodeKind::DynamicCast;
			OutAction.Title = TEXT("Cast To ") + (TargetBlueprint ? TargetBlueprint->GetName() : Target->GetName());
			OutAction.Category = TextOr(Spawner.DefaultMenuSignature.Category, TEXT("Utilities|Casting"));
			OutAction.Keywords = TextOr(Spawner.DefaultMenuSignature.Keywords, TEXT(" "));
			return true;
		}
		const FString StandardLibraryPath = ZorvekMCPBridgeSpawnerIds::StandardMacrosLibraryPath;
		const UBlueprint* Library = Cast<UBlueprint>(Key);
		if (NodeClass == UK2Node_MacroInstance::StaticClass() && Library && Library->GetOutermost()
			&& Library->GetOutermost()->GetName().Equals(StandardLibraryPath, ESearchCase::IgnoreCase))
		{
			// Not in the reference notes (GetTemplateNode, PrimeDefaultUiSpec); check against the engine.
			const UK2Node_MacroInstance* Template = Cast<UK2Node_MacroInstance>(Spawner.GetTemplateNode());
			const UEdGraph* MacroGraph = Template ? Template->GetMacroGraph() : nullptr;
			if (!MacroGraph || !IsFlowControlMacro(MacroGraph->GetName()))
			{
				return false;
			}
			OutAction.Request.Kind = EZorvekMCPBridgeNodeSpawnKind::MacroInstance;
			OutAction.Request.MacroLibraryPath = StandardLibraryPath;
			OutAction.Request.MacroName = MacroGraph->GetName();
			OutAction.NodeKind = EZorvekMCPBridgeNodeKind::MacroInstance;
			ApplyUiSpec(Spawner.PrimeDefaultUiSpec(), OutAction);
			return !OutAction.Title.IsEmpty();
		}
		return false;
	}

	// The callable functions of a class that no spawner of its entry names. The action menu folds
	// the functions of a promotable operator (Add_IntInt, Add_DoubleDouble...) into one "Add"
	// spawner, yet the node tools place each as a call of its own; such a function is named by the
	// function spawner's rules from its metadata.
	void AddUnlistedFunctionActions(const UClass& Class, const TSet<FString>& ListedFunctionNames, TArray<FZorvekMCPBridgeNodeAction>& OutActions)
	{
		const FString ClassPath = Class.GetPathName();
		for (TFieldIterator<UFunction> It(&Class, EFieldIterationFlags::None); It; ++It)
		{
			const UFunction* Function = *It;
			if (!Function || ListedFunctionNames.Contains(Function->GetName()) || !UEdGraphSchema_K2::CanUserKismetCallFunction(Function))
			{
				continue;
			}
			FZorvekMCPBridgeNodeAction& Action = OutActions.Emplace_GetRef();
			Action.Request.Kind = EZorvekMCPBridgeNodeSpawnKind::CallFunction;
			Action.Request.ClassPath = ClassPath;
			Action.Request.FunctionName = Function->GetName();
			Action.NodeKind = EZorvekMCPBridgeNodeKind::FunctionCall;
			Action.bPure = Function->HasAnyFunctionFlags(FUNC_BlueprintPure);
			Action.bLatent = Function->HasMetaData(TEXT("Latent"));
			ApplyFunctionFallbacks(*Function, FString(), Action);
		}
	}

	// Scope is the Blueprint the entry's key belongs to when that is the scoped Blueprint, else
	// null (another Blueprint's members are library actions named through its generated class).
	bool MapSpawner(const UObject* Key, const UBlueprintNodeSpawner& Spawner, const UBlueprint* Scope, FZorvekMCPBridgeNodeAction& OutAction)
	{
		OutAction = FZorvekMCPBridgeNodeAction();
		if (const UBlueprintFunctionNodeSpawner* FunctionSpawner = Cast<UBlueprintFunctionNodeSpawner>(&Spawner))
		{
			return MapFunctionSpawner(*FunctionSpawner, Scope, OutAction);
		}
		if (const UBlueprintVariableNodeSpawner* VariableSpawner = Cast<UBlueprintVariableNodeSpawner>(&Spawner))
		{
			return MapVariableSpawner(*VariableSpawner, Scope, OutAction);
		}
		if (const UBlueprintEventNodeSpawner* EventSpawner = Cast<UBlueprintEventNodeSpawner>(&Spawner))
		{
			return MapEventSpawner(*EventSpawner, Scope, OutAction);
		}
		return MapNodeClassSpawner(Key, Spawner, OutAction);
	}

	// The input events the menu offers: key events for bindable keys that are neither analog nor
	// gestures, axis events for bindable 1D axes (unreal-behaviour-blueprints.md §2.10). The node
	// classes register one spawner per key and keep the key inside its delegate, so the keys are
	// read from EKeys rather than from a template node per key. The categories ("Input|Keyboard
	// Events", "Input|Axis Events") are not in the reference notes; check against the engine.
	void AddInputActions(TArray<FZorvekMCPBridgeNodeAction>& OutActions)
	{
		TArray<FKey> Keys;
		EKeys::GetAllKeys(Keys);
		for (const FKey& Key : Keys)
		{
			if (!Key.IsValid() || !Key.IsBindableInBlueprints())
			{
				continue;
			}
			const FString Title = Key.GetDisplayName(/*bLongDisplayName*/ true).ToString();
			if (!Key.IsAnalog() && !Key.IsGesture())
			{
				FZorvekMCPBridgeNodeAction& Action = OutActions.Emplace_GetRef();
				Action.Request.Kind = EZorvekMCPBridgeNodeSpawnKind::InputKey;
				Action.Request.KeyName = Key.GetFName().ToString();
				Action.NodeKind = EZorvekMCPBridgeNodeKind::InputKey;
				Action.Title = Title;
				Action.Category = FString::Printf(TEXT("Input|%s Events"), *EKeys::GetMenuCategoryDisplayName(Key.GetMenuCategory()).ToString());
				Action.Keywords = TEXT(" ");
			}
			if (Key.IsAxis1D())
			{
				FZorvekMCPBridgeNodeAction& Action = OutActions.Emplace_GetRef();
				Action.Request.Kind = EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent;
				Action.Request.KeyName = Key.GetFName().ToString();
				Action.NodeKind = EZorvekMCPBridgeNodeKind::InputAxisKeyEvent;
				Action.Title = Title;
				Action.Category = TEXT("Input|Axis Events");
				Action.Keywords = TEXT(" ");
			}
		}
	}

	// The events of the interfaces the Blueprint implements (functions without outputs; those with
	// outputs are graphs of their own). The database lists them under the interface for every
	// Blueprint; only the implementing one can place them.
	void AddInterfaceEventActions(const UBlueprint& Blueprint, TArray<FZorvekMCPBridgeNodeAction>& OutActions)
	{
		for (const FBPInterfaceDescription& Interface : Blueprint.ImplementedInterfaces)
		{
			const UClass* InterfaceClass = Interface.Interface.Get();
			if (!InterfaceClass)
			{
				continue;
			}
			TSet<FName> Listed;
			for (TFieldIterator<UFunction> It(InterfaceClass, EFieldIterationFlags::IncludeSuper); It; ++It)
			{
				const UFunction* Function = *It;
				if (!UEdGraphSchema_K2::FunctionCanBePlacedAsEvent(Function) || Listed.Contains(Function->GetFName()))
				{
					continue;
				}
				Listed.Add(Function->GetFName());
				FZorvekMCPBridgeNodeAction& Action = OutActions.Emplace_GetRef();
				Action.Request.Kind = EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent;
				Action.Request.ClassPath = InterfaceClass->GetPathName();
				Action.Request.FunctionName = Function->GetName();
				Action.NodeKind = EZorvekMCPBridgeNodeKind::Event;
				Action.Title = TEXT("Event ") + Function->GetDisplayNameText().ToString();
				ApplyFunctionFallbacks(*Function, TEXT("Add Event"), Action);
				Action.bFromBlueprint = true;
			}
		}
	}

	bool IsSameRequest(const FZorvekMCPBridgeNodeSpawnRequest& A, const FZorvekMCPBridgeNodeSpawnRequest& B)
	{
		return A.Kind == B.Kind && ZorvekMCPBridgeSpawnerIds::MakeSpawnRequestId(A).Equals(ZorvekMCPBridgeSpawnerIds::MakeSpawnRequestId(B), ESearchCase::IgnoreCase);
	}

	// The key an input spawner's node is for, from its template node (made once, then cached).
	bool IsInputSpawnerForKey(const UBlueprintNodeSpawner& Spawner, const FZorvekMCPBridgeNodeSpawnRequest& Request)
	{
		const UClass* NodeClass = Spawner.NodeClass.Get();
		const bool bAxis = Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent;
		if (NodeClass != (bAxis ? UK2Node_InputAxisKeyEvent::StaticClass() : UK2Node_InputKey::StaticClass()))
		{
			return false;
		}
		const UEdGraphNode* Template = Spawner.GetCachedTemplateNode();
		Template = Template ? Template : Spawner.GetTemplateNode();
		const FName KeyName(*Request.KeyName);
		if (const UK2Node_InputAxisKeyEvent* AxisNode = bAxis ? Cast<UK2Node_InputAxisKeyEvent>(Template) : nullptr)
		{
			return AxisNode->AxisKey.GetFName() == KeyName;
		}
		const UK2Node_InputKey* KeyNode = bAxis ? nullptr : Cast<UK2Node_InputKey>(Template);
		return KeyNode && KeyNode->InputKey.GetFName() == KeyName;
	}

	// A cheap first look (names and node classes, no texts built) before a spawner is mapped in
	// full: the catalogue asks for the pins of every result it returns.
	bool MightMakeRequest(const UBlueprintNodeSpawner& Spawner, const FZorvekMCPBridgeNodeSpawnRequest& Request, const FName RequestName)
	{
		const UClass* NodeClass = Spawner.NodeClass.Get();
		switch (Request.Kind)
		{
		case EZorvekMCPBridgeNodeSpawnKind::CallFunction:
		{
			const UBlueprintFunctionNodeSpawner* FunctionSpawner = Cast<UBlueprintFunctionNodeSpawner>(&Spawner);
			const UFunction* Function = FunctionSpawner ? FunctionSpawner->GetFunction() : nullptr;
			return Function && Function->GetFName() == RequestName;
		}
		case EZorvekMCPBridgeNodeSpawnKind::VariableGet:
		case EZorvekMCPBridgeNodeSpawnKind::VariableSet:
		{
			const UBlueprintVariableNodeSpawner* VariableSpawner = Cast<UBlueprintVariableNodeSpawner>(&Spawner);
			const FProperty* Property = VariableSpawner ? VariableSpawner->GetVarProperty() : nullptr;
			return Property && Property->GetFName() == RequestName;
		}
		case EZorvekMCPBridgeNodeSpawnKind::Event:
		{
			const UBlueprintEventNodeSpawner* EventSpawner = Cast<UBlueprintEventNodeSpawner>(&Spawner);
			const UFunction* Function = EventSpawner ? EventSpawner->GetEventFunction() : nullptr;
			return Function && Function->GetFName() == RequestName;
		}
		case EZorvekMCPBridgeNodeSpawnKind::Branch:
			return NodeClass == UK2Node_IfThenElse::StaticClass();
		case EZorvekMCPBridgeNodeSpawnKind::Sequence:
			return NodeClass == UK2Node_ExecutionSequence::StaticClass();
		case EZorvekMCPBridgeNodeSpawnKind::DynamicCast:
			return NodeClass == UK2Node_DynamicCast::StaticClass();
		case EZorvekMCPBridgeNodeSpawnKind::MacroInstance:
			return NodeClass == UK2Node_MacroInstance::StaticClass();
		default:
			// The Blueprint's own kinds have no library spawner; input kinds are looked up by key.
			return false;
		}
	}

	// The library spawner whose template node is the node the request makes. A function spawner
	// counts only when it makes a plain call node: a promotable operator's template has wildcard
	// pins the node tools' call would not have.
	const UBlueprintNodeSpawner* FindLibrarySpawner(const FZorvekMCPBridgeNodeSpawnRequest& Request)
	{
		const bool bInput = Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InputKey || Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent;
		const FName RequestName(*(Request.Kind == EZorvekMCPBridgeNodeSpawnKind::VariableGet || Request.Kind == EZorvekMCPBridgeNodeSpawnKind::VariableSet
			? Request.VariableName : Request.FunctionName));
		for (const TPair<FObjectKey, FBlueprintActionDatabase::FActionList>& Entry : FBlueprintActionDatabase::Get().GetAllActions())
		{
			const UObject* Key = Entry.Key.ResolveObjectPtr();
			for (const UBlueprintNodeSpawner* Spawner : Entry.Value)
			{
				if (!Key || !Spawner)
				{
					continue;
				}
				if (bInput)
				{
					if (IsInputSpawnerForKey(*Spawner, Request))
					{
						return Spawner;
					}
					continue;
				}
				FZorvekMCPBridgeNodeAction Action;
				if (MightMakeRequest(*Spawner, Request, RequestName) && MapSpawner(Key, *Spawner, nullptr, Action) && IsSameRequest(Action.Request, Request)
					&& (Request.Kind != EZorvekMCPBridgeNodeSpawnKind::CallFunction || Spawner->NodeClass.Get() == UK2Node_CallFunction::StaticClass()))
				{
					return Spawner;
				}
			}
		}
		return nullptr;
	}

	void AddPinSnapshots(const UEdGraphNode& Node, TArray<FZorvekMCPBridgeGraphPinSnapshot>& OutPins)
	{
		for (const UEdGraphPin* Pin : Node.Pins)
		{
			if (Pin)
			{
				OutPins.Add(ZorvekMCPBridgeEngineBlueprintNodes::MakeGraphPinSnapshot(*Pin));
			}
		}
	}
}

void FZorvekMCPBridgeEngineBlueprints::GetNodeActions(FZorvekMCPBridgeObjectHandle BlueprintScope, TArray<FZorvekMCPBridgeNodeAction>& OutActions) const
{
	using namespace ZorvekMCPBridgeEngineBlueprintActionsLocal;
	OutActions.Reset();
	const UBlueprint* Scope = ZorvekMCPBridgeEngineBlueprintSpawning::ToBlueprint(BlueprintScope);
	TArray<FZorvekMCPBridgeNodeAction> ScopeActions;
	FZorvekMCPBridgeNodeAction Action;
	// The database is keyed by what the actions belong to: a class, a node class, a Blueprint (its
	// skeleton class's members, its macros) or a level script's world.
	for (const TPair<FObjectKey, FBlueprintActionDatabase::FActionList>& Entry : FBlueprintActionDatabase::Get().GetAllActions())
	{
		const UObject* Key = Entry.Key.ResolveObjectPtr();
		if (!Key)
		{
			continue;
		}
		const bool bScopeEntry = Scope && Key == Scope;
		TSet<FString> ListedFunctionNames;
		for (const UBlueprintNodeSpawner* Spawner : Entry.Value)
		{
			if (Spawner && MapSpawner(Key, *Spawner, bScopeEntry ? Scope : nullptr, Action))
			{
				if (Action.Request.Kind == EZorvekMCPBridgeNodeSpawnKind::CallFunction)
				{
					ListedFunctionNames.Add(Action.Request.FunctionName);
				}
				Action.bFromBlueprint = bScopeEntry;
				(bScopeEntry ? ScopeActions : OutActions).Add(Action);
			}
		}
		// A native class's own entry; Blueprints and node classes have no folded operators.
		const UClass* KeyClass = Cast<UClass>(Key);
		if (KeyClass && !KeyClass->IsChildOf(UEdGraphNode::StaticClass()) && !UBlueprint::GetBlueprintFromClass(KeyClass))
		{
			AddUnlistedFunctionActions(*KeyClass, ListedFunctionNames, OutActions);
		}
	}
	AddInputActions(OutActions);
	if (Scope)
	{
		AddInterfaceEventActions(*Scope, ScopeActions);
		OutActions.Append(ScopeActions);
	}
}

bool FZorvekMCPBridgeEngineBlueprints::GetNodeActionPins(FZorvekMCPBridgeObjectHandle BlueprintScope, const FZorvekMCPBridgeNodeSpawnRequest& Request,
	TArray<FZorvekMCPBridgeGraphPinSnapshot>& OutPins) const
{
	using namespace ZorvekMCPBridgeEngineBlueprintSpawning;
	OutPins.Reset();
	UBlueprint* Scope = ToBlueprint(BlueprintScope);
	if (!Scope)
	{
		// The engine's own template node of the spawner that makes the node: template nodes live
		// in template Blueprints, which nodes that look for their Blueprint need.
		const UBlueprintNodeSpawner* Spawner = ZorvekMCPBridgeEngineBlueprintActionsLocal::FindLibrarySpawner(Request);
		const UEdGraphNode* Template = Spawner ? Spawner->GetTemplateNode() : nullptr;
		if (!Template)
		{
			return false;
		}
		ZorvekMCPBridgeEngineBlueprintActionsLocal::AddPinSnapshots(*Template, OutPins);
		return true;
	}
	// In a Blueprint the node is made as it would be placed there (a call's self pin shows or
	// hides by the Blueprint's class), in a transient graph the Blueprint does not list, and
	// thrown away with it.
	UEdGraph* ProbeGraph = NewObject<UEdGraph>(Scope, NAME_None, RF_Transient);
	if (!ProbeGraph)
	{
		return false;
	}
	ProbeGraph->Schema = UEdGraphSchema_K2::StaticClass();
	EZorvekMCPBridgeNodeSpawnFailure Failure = EZorvekMCPBridgeNodeSpawnFailure::None;
	UEdGraphNode* Node = NewNodeForRequest(*Scope, *ProbeGraph, Request, 0, 0, Failure);
	if (Node)
	{
		ZorvekMCPBridgeEngineBlueprintActionsLocal::AddPinSnapshots(*Node, OutPins);
		DiscardUnplacedNode(*Node);
	}
	ProbeGraph->Rename(nullptr, GetTransientPackage(), REN_DoNotDirty | REN_DontCreateRedirectors | REN_NonTransactional);
	ProbeGraph->MarkAsGarbage();
	return Node != nullptr;
}
