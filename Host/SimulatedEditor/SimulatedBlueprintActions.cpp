// The action catalogue of the simulated Blueprint port: what the Blueprint action database yields
// for the loaded classes (Blueprint-callable functions, events, casts, visible variables), the
// node-class actions, the standard flow-control macros and the input events of bindable keys, and
// for a Blueprint its own functions, variables, custom events and interface events. Menu names,
// categories and keywords follow the spawners' UI specs.
#include "SimulatedBlueprintPort.h"

#include "SimulatedBlueprint.h"
#include "SimulatedEditor.h"
#include "SimulatedKeys.h"
#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"

namespace
{
	// The macros the node tools place, of the standard macro library.
	const TCHAR* const SimActionsFlowControlMacros[] = {TEXT("DoOnce"), TEXT("Gate"), TEXT("FlipFlop")};

	// GetKeywordsForFunction: the Keywords metadata, " " when there is none.
	FString SimActionsKeywords(const FSimulatedFunction& Function)
	{
		const FString* Keywords = Function.FindMetaData(TEXT("Keywords"));
		return Keywords && !Keywords->IsEmpty() ? *Keywords : FString(TEXT(" "));
	}

	// GetDefaultCategoryForFunction(Function, Base): the Category metadata (after Base when one is
	// given), else Base, else "Call Function".
	FString SimActionsCategory(const FSimulatedFunction& Function, const FString& Base)
	{
		const FString* Category = Function.FindMetaData(TEXT("Category"));
		if (Category && !Category->IsEmpty())
		{
			return Base.IsEmpty() ? *Category : Base + TEXT("|") + *Category;
		}
		return Base.IsEmpty() ? FString(TEXT("Call Function")) : Base;
	}

	// ObjectTools::GetUserFacingFunctionName with friendly names: DisplayName, else the name made readable.
	FString SimActionsFunctionName(const FSimulatedFunction& Function)
	{
		const FString* DisplayName = Function.FindMetaData(TEXT("DisplayName"));
		return DisplayName ? *DisplayName : FSimulatedBlueprints::NameToDisplayString(Function.Name, false);
	}

	bool SimActionsHasOutputs(const FSimulatedFunction& Function)
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

	FZorvekMCPBridgeNodeAction& SimActionsAdd(TArray<FZorvekMCPBridgeNodeAction>& Actions, EZorvekMCPBridgeNodeSpawnKind Kind, EZorvekMCPBridgeNodeKind NodeKind,
		const FString& Title, const FString& Category, const FString& Keywords)
	{
		FZorvekMCPBridgeNodeAction& Action = Actions.Emplace_GetRef();
		Action.Request.Kind = Kind;
		Action.NodeKind = NodeKind;
		Action.Title = Title;
		Action.Category = Category;
		Action.Keywords = Keywords;
		return Action;
	}

	FZorvekMCPBridgeNodeAction& SimActionsAddCall(TArray<FZorvekMCPBridgeNodeAction>& Actions, EZorvekMCPBridgeNodeSpawnKind Kind, const FSimulatedFunction& Function)
	{
		FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(Actions, Kind, EZorvekMCPBridgeNodeKind::FunctionCall, SimActionsFunctionName(Function),
			SimActionsCategory(Function, FString()), SimActionsKeywords(Function));
		Action.Request.FunctionName = Function.Name;
		Action.bPure = Function.HasAnyFunctionFlags(SimulatedFunctionFlags::BlueprintPure);
		Action.bLatent = Function.FindMetaData(TEXT("Latent")) != nullptr;
		if (const FString* Tooltip = Function.FindMetaData(TEXT("ToolTip")))
		{
			Action.Tooltip = *Tooltip;
		}
		return Action;
	}
}

void FSimulatedBlueprintPort::GetNodeActions(FZorvekMCPBridgeObjectHandle BlueprintScope, TArray<FZorvekMCPBridgeNodeAction>& OutActions) const
{
	OutActions.Reset();
	const FSimulatedBlueprints& Model = GetModel();

	// Node classes' own spawners. Their categories and keywords come from the template nodes:
	// the flow-control category; Branch's keywords. Not in the reference notes; check against the
	// engine.
	SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::Branch, EZorvekMCPBridgeNodeKind::Branch, TEXT("Branch"), TEXT("Utilities|Flow Control"), TEXT("if bool branch"));
	SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::Sequence, EZorvekMCPBridgeNodeKind::Sequence, TEXT("Sequence"), TEXT("Utilities|Flow Control"), TEXT(" "));
	TArray<FString> MacroNames;
	const FString LibraryPath = ZorvekMCPBridgeSpawnerIds::StandardMacrosLibraryPath;
	if (GetMacroGraphNames(LibraryPath + TEXT(".StandardMacros"), MacroNames))
	{
		for (const FString& MacroName : MacroNames)
		{
			bool bSupported = false;
			for (const TCHAR* Supported : SimActionsFlowControlMacros)
			{
				bSupported |= MacroName == Supported;
			}
			if (bSupported)
			{
				FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::MacroInstance, EZorvekMCPBridgeNodeKind::MacroInstance,
					FSimulatedBlueprints::NameToDisplayString(MacroName, false), TEXT("Utilities|Flow Control"), TEXT(" "));
				Action.Request.MacroLibraryPath = LibraryPath;
				Action.Request.MacroName = MacroName;
			}
		}
	}

	// Member actions and casts of every loaded class (a Blueprint's through its generated class;
	// skeleton classes stand for the same Blueprint and are skipped).
	// The scoped Blueprint's own members come as its own actions below.
	const FSimulatedBlueprint* Blueprint = FindBlueprint(BlueprintScope);
	const FSimulatedType* FunctionLibrary = Editor.FindTypeByPath(TEXT("/Script/Engine.BlueprintFunctionLibrary"));
	Editor.ForEachObject([this, &OutActions, &Model, FunctionLibrary, Blueprint](FSimulatedObject* Object)
	{
		const FSimulatedType* Class = dynamic_cast<const FSimulatedType*>(Object);
		if (!Class || Class->Kind != ESimulatedTypeKind::Class || Class->Name.StartsWith(TEXT("SKEL_")) || Class->Name.StartsWith(TEXT("TRASH_"))
			|| (Blueprint && Class == Blueprint->GeneratedClass))
		{
			return;
		}
		const FString ClassPath = Class->GetPathName();
		const bool bInterface = (Class->ClassFlags & ZorvekMCPBridgeClassFlags::Interface) != 0;
		const bool bLibrary = FunctionLibrary && Class->IsChildOf(FunctionLibrary);
		if (!bInterface)
		{
			for (const std::shared_ptr<FSimulatedFunction>& Function : Class->Functions)
			{
				// A function is listed once, for the class that declares it: overrides are not.
				if (Function->FindMetaData(TEXT("BlueprintInternalUseOnly")) || (Class->Super && Class->Super->FindFunction(Function->Name)))
				{
					continue;
				}
				if (Function->HasAnyFunctionFlags(SimulatedFunctionFlags::BlueprintEvent) && !SimActionsHasOutputs(*Function))
				{
					FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::Event, EZorvekMCPBridgeNodeKind::Event,
						TEXT("Event ") + SimActionsFunctionName(*Function), SimActionsCategory(*Function, TEXT("Add Event")), SimActionsKeywords(*Function));
					Action.Request.FunctionName = Function->Name;
					Action.Request.ClassPath = ClassPath;
				}
				if (Function->HasAnyFunctionFlags(SimulatedFunctionFlags::BlueprintCallable | SimulatedFunctionFlags::BlueprintPure))
				{
					SimActionsAddCall(OutActions, EZorvekMCPBridgeNodeSpawnKind::CallFunction, *Function).Request.ClassPath = ClassPath;
				}
			}
			for (const std::shared_ptr<FSimulatedProperty>& Property : Class->OwnProperties)
			{
				if ((Property->Flags & ZorvekMCPBridgePropertyFlags::BlueprintVisible) == 0)
				{
					continue;
				}
				const FString Friendly = FSimulatedBlueprints::NameToDisplayString(Property->Name, Property->Type == ESimulatedPropertyType::Bool);
				const bool bReadOnly = (Property->Flags & ZorvekMCPBridgePropertyFlags::BlueprintReadOnly) != 0;
				for (const bool bSet : {false, true})
				{
					if (bSet && bReadOnly)
					{
						continue;
					}
					// Native properties carry no category the simulation keeps.
					FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(OutActions, bSet ? EZorvekMCPBridgeNodeSpawnKind::VariableSet : EZorvekMCPBridgeNodeSpawnKind::VariableGet,
						bSet ? EZorvekMCPBridgeNodeKind::VariableSet : EZorvekMCPBridgeNodeKind::VariableGet, (bSet ? TEXT("Set ") : TEXT("Get ")) + Friendly, TEXT("Variables"), TEXT(" "));
					Action.Request.VariableName = Property->Name;
					Action.Request.OwnerClassPath = ClassPath;
					Action.bPure = !bSet;
				}
			}
		}
		if (!bLibrary && Class != Editor.GetObjectClass() && Class->Name != TEXT("Interface"))
		{
			const FSimulatedBlueprint* Blueprint = Model.FindBlueprintByClass(Class);
			FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::DynamicCast, EZorvekMCPBridgeNodeKind::DynamicCast,
				TEXT("Cast To ") + (Blueprint ? Blueprint->GetName() : Class->Name), TEXT("Utilities|Casting"), TEXT(" "));
			Action.Request.ClassPath = ClassPath;
		}
	});

	// Input events of the keys the menus offer. Categories as the input nodes build them ("Input|"
	// and the key's menu category). Not in the reference notes; check against the engine.
	for (const FSimulatedKeyDetails* Key : FSimulatedKeys::GetAllKeys())
	{
		const FString MenuCategory = Key->GetMenuCategory();
		const FString CategoryWord = MenuCategory == TEXT("Key") ? FString(TEXT("Keyboard")) : MenuCategory;
		// The menus' verdicts (FSimulatedKeys::CanBeInputKeyEvent / CanBeInputAxisKeyEvent) on the
		// entry at hand, without looking each key up again by name.
		if (Key->IsBindableInBlueprints() && !Key->IsAnalog() && !Key->IsGesture())
		{
			SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::InputKey, EZorvekMCPBridgeNodeKind::InputKey, Key->GetDisplayName(true),
				FString::Printf(TEXT("Input|%s Events"), *CategoryWord), TEXT(" ")).Request.KeyName = Key->Name;
		}
		if (Key->IsBindableInBlueprints() && Key->IsAxis1D())
		{
			SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent, EZorvekMCPBridgeNodeKind::InputAxisKeyEvent, Key->GetDisplayName(true),
				TEXT("Input|Axis Events"), TEXT(" ")).Request.KeyName = Key->Name;
		}
	}

	if (!Blueprint)
	{
		return;
	}
	const int32 LibraryCount = OutActions.Num();
	for (const std::unique_ptr<FSimulatedGraph>& Graph : Blueprint->FunctionGraphs)
	{
		if (Graph->GetName() == TEXT("UserConstructionScript"))
		{
			continue;
		}
		FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::CallBlueprintFunction, EZorvekMCPBridgeNodeKind::FunctionCall,
			FSimulatedBlueprints::NameToDisplayString(Graph->GetName(), false), TEXT("Call Function"), TEXT(" "));
		Action.Request.FunctionName = Graph->GetName();
		Action.bPure = (Graph->FunctionFlags & SimulatedFunctionFlags::BlueprintPure) != 0;
	}
	for (const FSimulatedVariable& Variable : Blueprint->NewVariables)
	{
		for (const bool bSet : {false, true})
		{
			FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(OutActions, bSet ? EZorvekMCPBridgeNodeSpawnKind::VariableSet : EZorvekMCPBridgeNodeSpawnKind::VariableGet,
				bSet ? EZorvekMCPBridgeNodeKind::VariableSet : EZorvekMCPBridgeNodeKind::VariableGet, (bSet ? TEXT("Set ") : TEXT("Get ")) + Variable.FriendlyName,
				TEXT("Variables|") + Variable.Category, TEXT(" "));
			Action.Request.VariableName = Variable.VarName.ToString();
			Action.bPure = !bSet;
		}
	}
	if (Blueprint->ConstructionScript)
	{
		for (const FSimulatedSCSNode* Component : Blueprint->ConstructionScript->AllNodes)
		{
			FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::VariableGet, EZorvekMCPBridgeNodeKind::VariableGet,
				TEXT("Get ") + FSimulatedBlueprints::NameToDisplayString(Component->VariableName, false), TEXT("Variables|") + Component->CategoryName, TEXT(" "));
			Action.Request.VariableName = Component->VariableName;
			Action.bPure = true;
		}
	}
	for (const std::unique_ptr<FSimulatedGraph>& Page : Blueprint->UbergraphPages)
	{
		for (const std::unique_ptr<FSimulatedNode>& Node : Page->Nodes)
		{
			if (Node->Kind == EZorvekMCPBridgeNodeKind::CustomEvent)
			{
				FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::CustomEventCall, EZorvekMCPBridgeNodeKind::FunctionCall,
					FSimulatedBlueprints::NameToDisplayString(Node->Data.CustomFunctionName, false), TEXT("Call Function"), TEXT(" "));
				Action.Request.EventName = Node->Data.CustomFunctionName;
			}
		}
	}
	for (const FSimulatedImplementedInterface& Interface : Blueprint->ImplementedInterfaces)
	{
		if (!Interface.Interface)
		{
			continue;
		}
		for (const FSimulatedFunction* Function : Model.GetInterfaceFunctions(*Interface.Interface))
		{
			if (FSimulatedBlueprints::IsImplementedAsEvent(*Function))
			{
				FZorvekMCPBridgeNodeAction& Action = SimActionsAdd(OutActions, EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent, EZorvekMCPBridgeNodeKind::Event,
					TEXT("Event ") + SimActionsFunctionName(*Function), SimActionsCategory(*Function, TEXT("Add Event")), SimActionsKeywords(*Function));
				Action.Request.ClassPath = Interface.Interface->GetPathName();
				Action.Request.FunctionName = Function->Name;
			}
		}
	}
	for (int32 Index = LibraryCount; Index < OutActions.Num(); ++Index)
	{
		OutActions[Index].bFromBlueprint = true;
	}
}

bool FSimulatedBlueprintPort::GetNodeActionPins(FZorvekMCPBridgeObjectHandle BlueprintScope, const FZorvekMCPBridgeNodeSpawnRequest& Request,
	TArray<FZorvekMCPBridgeGraphPinSnapshot>& OutPins) const
{
	OutPins.Reset();
	std::unique_ptr<FSimulatedNode> Template = GetModel().MakeTemplateNode(FindBlueprint(BlueprintScope), Request);
	if (!Template)
	{
		return false;
	}
	for (const std::unique_ptr<FSimulatedPin>& Pin : Template->Pins)
	{
		FZorvekMCPBridgeGraphPinSnapshot& Snapshot = OutPins.Emplace_GetRef();
		Snapshot.Pin.PinName = Pin->PinName;
		Snapshot.Pin.Direction = Pin->Direction;
		Snapshot.Pin.PinType = Pin->PinType;
		Snapshot.Pin.DefaultValue = Pin->DefaultValue.IsEmpty() ? Pin->DefaultTextValue : Pin->DefaultValue;
		Snapshot.bHidden = Pin->bHidden;
		Snapshot.bAdvancedView = Pin->bAdvancedView;
	}
	return true;
}
