// Spawner ids into spawn requests: the id forms in their fixed order, each checked against what
// the editor has before any node exists.
#include "Blueprint/ZorvekMCPBridgeBlueprintNodes.h"

#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	// FUNC_BlueprintEvent: a function a Blueprint may implement as an event (the action menu's
	// FunctionCanBePlacedAsEvent asks more). Not in the reference notes; check against the engine
	// (CoreUObject's Script.h EFunctionFlags).
	constexpr uint32 BlueprintSpawnerEventFunctionFlag = 0x08000000;

	// The macros of the standard library the node tools place.
	const TCHAR* const BlueprintSpawnerFlowControlMacros[] = {TEXT("DoOnce"), TEXT("Gate"), TEXT("FlipFlop")};

	// The text after Prefix when Id begins with it (without regard to case).
	bool ConsumeBlueprintSpawnerPrefix(const FString& Id, const TCHAR* Prefix, FString& OutArgument)
	{
		if (!Id.StartsWith(Prefix, ESearchCase::IgnoreCase))
		{
			return false;
		}
		OutArgument = Id.RightChop(FCString::Strlen(Prefix));
		return true;
	}

	// "<first>:<second>" split at the last ":"; without one, all of it is the first part.
	void SplitBlueprintSpawnerArgument(const FString& Argument, FString& OutFirst, FString& OutSecond)
	{
		if (!Argument.Split(TEXT(":"), &OutFirst, &OutSecond, ESearchCase::CaseSensitive, ESearchDir::FromEnd))
		{
			OutFirst = Argument;
			OutSecond.Reset();
		}
	}

	const FZorvekMCPBridgeGraphSnapshot* FindBlueprintSpawnerFunctionGraph(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& FunctionName)
	{
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			if (Graph.Kind == EZorvekMCPBridgeGraphKind::Function && Graph.Name.Equals(FunctionName, ESearchCase::IgnoreCase))
			{
				return &Graph;
			}
		}
		return nullptr;
	}

	// The custom event node of that name in any graph of the Blueprint; null when none.
	const FZorvekMCPBridgeNodeSnapshot* FindBlueprintSpawnerCustomEvent(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& EventName)
	{
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
			{
				if (Node.Kind == EZorvekMCPBridgeNodeKind::CustomEvent && Node.Data.CustomFunctionName.Equals(EventName, ESearchCase::IgnoreCase))
				{
					return &Node;
				}
			}
		}
		return nullptr;
	}

	// The Blueprint's own variable of that name in the engine's spelling: a member variable
	// (FindNewVariableIndex) or a construction-script component variable. Empty when none.
	FString FindBlueprintSpawnerOwnVariable(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& VariableName)
	{
		if (VariableName.IsEmpty())
		{
			return FString();
		}
		for (const FZorvekMCPBridgeVariableSnapshot& Variable : Blueprint.Variables)
		{
			if (Variable.VarName.ToString().Equals(VariableName, ESearchCase::IgnoreCase))
			{
				return Variable.VarName.ToString();
			}
		}
		for (const FZorvekMCPBridgeComponentSnapshot& Component : Blueprint.Components)
		{
			if (Component.Name.Equals(VariableName, ESearchCase::IgnoreCase))
			{
				return Component.Name;
			}
		}
		return FString();
	}

	bool ParseBlueprintSpawnerMacro(IZorvekMCPBridgeEditorPort& Port, const FString& Argument, FZorvekMCPBridgeNodeSpawnRequest& OutRequest, FString& OutError)
	{
		FString LibraryPath;
		FString MacroName;
		SplitBlueprintSpawnerArgument(Argument, LibraryPath, MacroName);
		const FString StandardLibrary = ZorvekMCPBridgeSpawnerIds::StandardMacrosLibraryPath;
		if (!LibraryPath.Equals(StandardLibrary, ESearchCase::IgnoreCase))
		{
			OutError = FString::Printf(TEXT("Unsupported macro spawner library: %s"), *LibraryPath);
			return false;
		}
		const FString LibraryObjectPath = StandardLibrary + TEXT(".StandardMacros");
		TArray<FString> MacroNames;
		if (!Port.GetBlueprints().GetMacroGraphNames(LibraryObjectPath, MacroNames))
		{
			OutError = FString::Printf(TEXT("Could not load StandardMacros Blueprint: %s"), *LibraryObjectPath);
			return false;
		}
		const FString* Found = MacroNames.FindByPredicate([&MacroName](const FString& Name) { return Name.Equals(MacroName, ESearchCase::IgnoreCase); });
		if (!Found)
		{
			OutError = FString::Printf(TEXT("StandardMacros macro graph '%s' was not found. Available macros: %s"), *MacroName, *FString::Join(MacroNames, TEXT(", ")));
			return false;
		}
		bool bSupported = false;
		for (const TCHAR* Supported : BlueprintSpawnerFlowControlMacros)
		{
			bSupported = bSupported || Found->Equals(Supported, ESearchCase::IgnoreCase);
		}
		if (!bSupported)
		{
			OutError = FString::Printf(TEXT("Unsupported StandardMacros flow-control macro: %s"), **Found);
			return false;
		}
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::MacroInstance;
		OutRequest.MacroLibraryPath = StandardLibrary;
		OutRequest.MacroName = *Found;
		return true;
	}

	bool ParseBlueprintSpawnerFunction(IZorvekMCPBridgeEditorPort& Port, const FString& SpawnerId, const FString& Argument, FZorvekMCPBridgeNodeSpawnRequest& OutRequest, FString& OutError)
	{
		FString ClassPath;
		FString FunctionName;
		SplitBlueprintSpawnerArgument(Argument, ClassPath, FunctionName);
		FZorvekMCPBridgeTypeInfo Class;
		FZorvekMCPBridgeFunctionInfo Function;
		if (ClassPath.IsEmpty() || FunctionName.IsEmpty() || !Port.GetObjects().LoadClass(ClassPath, Class)
			|| !Port.GetFunctions().FindFunction(Class.Path, FunctionName, TArray<FString>(), Function))
		{
			OutError = FString::Printf(TEXT("Could not resolve function spawner: %s"), *SpawnerId);
			return false;
		}
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::CallFunction;
		OutRequest.ClassPath = Class.Path;
		OutRequest.FunctionName = Function.Name;
		return true;
	}

	// "event::<function>": an event of the parent class; "interface_event::<class>:<function>": an
	// event of an interface the Blueprint implements.
	bool ParseBlueprintSpawnerEvent(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& SpawnerId,
		const FString& FunctionName, FZorvekMCPBridgeNodeSpawnRequest& OutRequest, FString& OutError)
	{
		FZorvekMCPBridgeFunctionInfo Function;
		if (FunctionName.IsEmpty() || Blueprint.ParentClassPath.IsEmpty()
			|| !Port.GetFunctions().FindFunction(Blueprint.ParentClassPath, FunctionName, TArray<FString>(), Function)
			|| (Function.FunctionFlags & BlueprintSpawnerEventFunctionFlag) == 0)
		{
			OutError = FString::Printf(TEXT("Could not resolve event spawner: %s"), *SpawnerId);
			return false;
		}
		if (FindBlueprintSpawnerFunctionGraph(Blueprint, Function.Name))
		{
			OutError = FString::Printf(TEXT("Blueprint event is already implemented as a function graph: %s"), *SpawnerId);
			return false;
		}
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::Event;
		OutRequest.FunctionName = Function.Name;
		return true;
	}

	bool ParseBlueprintSpawnerInterfaceEvent(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& SpawnerId,
		const FString& Argument, FZorvekMCPBridgeNodeSpawnRequest& OutRequest, FString& OutError)
	{
		FString InterfaceClassPath;
		FString FunctionName;
		SplitBlueprintSpawnerArgument(Argument, InterfaceClassPath, FunctionName);
		const FZorvekMCPBridgeImplementedInterfaceSnapshot* Interface = ZorvekMCPBridgeSpawnerIds::FindImplementedInterface(Blueprint, InterfaceClassPath);
		TArray<FZorvekMCPBridgeInterfaceFunction> Functions;
		if (!Interface || FunctionName.IsEmpty() || !Port.GetBlueprints().GetInterfaceFunctions(Interface->InterfaceClassPath, Functions))
		{
			OutError = FString::Printf(TEXT("Could not resolve event spawner: %s"), *SpawnerId);
			return false;
		}
		const FZorvekMCPBridgeInterfaceFunction* Function = Functions.FindByPredicate([&FunctionName](const FZorvekMCPBridgeInterfaceFunction& Candidate)
		{
			return Candidate.Name.Equals(FunctionName, ESearchCase::IgnoreCase);
		});
		if (!Function)
		{
			OutError = FString::Printf(TEXT("Could not resolve event spawner: %s"), *SpawnerId);
			return false;
		}
		if (!Function->bImplementedAsEvent)
		{
			// A function with outputs lives in its own graph, never as an event node.
			OutError = FString::Printf(TEXT("Blueprint event is already implemented as a function graph: %s"), *SpawnerId);
			return false;
		}
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent;
		OutRequest.ClassPath = Interface->InterfaceClassPath;
		OutRequest.FunctionName = Function->Name;
		return true;
	}

	bool ParseBlueprintSpawnerVariable(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& SpawnerId,
		const FString& Argument, bool bSet, FZorvekMCPBridgeNodeSpawnRequest& OutRequest, FString& OutError)
	{
		FString VariableName;
		FString OwnerClassPath;
		SplitBlueprintSpawnerArgument(Argument, VariableName, OwnerClassPath);
		OutRequest.Kind = bSet ? EZorvekMCPBridgeNodeSpawnKind::VariableSet : EZorvekMCPBridgeNodeSpawnKind::VariableGet;
		if (OwnerClassPath.IsEmpty())
		{
			const FString OwnName = FindBlueprintSpawnerOwnVariable(Blueprint, VariableName);
			if (OwnName.IsEmpty())
			{
				OutError = FString::Printf(TEXT("Blueprint variable does not exist for spawner id: %s"), *SpawnerId);
				return false;
			}
			OutRequest.VariableName = OwnName;
			return true;
		}
		FZorvekMCPBridgeClassVariableInfo Variable;
		if (VariableName.IsEmpty() || !Port.GetBlueprints().FindClassVariable(OwnerClassPath, VariableName, Variable))
		{
			OutError = FString::Printf(TEXT("Could not resolve external variable spawner id: %s"), *SpawnerId);
			return false;
		}
		OutRequest.VariableName = Variable.Name;
		OutRequest.OwnerClassPath = Variable.OwnerClassPath;
		return true;
	}

	// The key verdicts the action menu applies: an axis event needs a bindable 1D axis, a key
	// event a bindable digital key (unreal-behaviour-blueprints.md §2.10, §7.2).
	bool ParseBlueprintSpawnerKey(IZorvekMCPBridgeEditorPort& Port, const FString& SpawnerId, const FString& KeyName, bool bAxisEvent,
		FZorvekMCPBridgeNodeSpawnRequest& OutRequest, FString& OutError)
	{
		FZorvekMCPBridgeKeyInfo Key;
		if (KeyName.IsEmpty() || !Port.GetBlueprints().GetKeyInfo(KeyName, Key))
		{
			OutError = bAxisEvent ? FString::Printf(TEXT("Could not resolve input axis key spawner: %s"), *SpawnerId)
				: FString::Printf(TEXT("Could not resolve input key spawner: %s"), *SpawnerId);
			return false;
		}
		if (bAxisEvent && !Key.bAxis1D)
		{
			OutError = FString::Printf(TEXT("Input axis key spawner is not a 1D axis: %s"), *SpawnerId);
			return false;
		}
		if (!bAxisEvent && Key.bAnalog)
		{
			OutError = FString::Printf(TEXT("Input key spawner is analog and must use input_axis_key instead: %s"), *SpawnerId);
			return false;
		}
		if (!Key.bBindableInBlueprints)
		{
			OutError = bAxisEvent ? FString::Printf(TEXT("Input axis key spawner is not bindable in Blueprints: %s"), *SpawnerId)
				: FString::Printf(TEXT("Input key spawner is not bindable in Blueprints: %s"), *SpawnerId);
			return false;
		}
		OutRequest.Kind = bAxisEvent ? EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent : EZorvekMCPBridgeNodeSpawnKind::InputKey;
		OutRequest.KeyName = Key.KeyName;
		return true;
	}
}

bool ZorvekMCPBridgeBlueprintNodes::ParseSpawnerId(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& SpawnerId,
	FZorvekMCPBridgeNodeSpawnRequest& OutRequest, FString& OutError)
{
	OutRequest = FZorvekMCPBridgeNodeSpawnRequest();
	if (SpawnerId.IsEmpty())
	{
		OutError = TEXT("SpawnerId is required.");
		return false;
	}
	if (SpawnerId.Equals(TEXT("node::branch"), ESearchCase::IgnoreCase))
	{
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::Branch;
		return true;
	}
	if (SpawnerId.Equals(TEXT("node::sequence"), ESearchCase::IgnoreCase))
	{
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::Sequence;
		return true;
	}
	FString Argument;
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("macro::"), Argument))
	{
		return ParseBlueprintSpawnerMacro(Port, Argument, OutRequest, OutError);
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("cast::"), Argument))
	{
		FZorvekMCPBridgeTypeInfo Class;
		if (Argument.IsEmpty() || !Port.GetObjects().LoadClass(Argument, Class))
		{
			OutError = FString::Printf(TEXT("Could not resolve dynamic cast spawner: %s"), *SpawnerId);
			return false;
		}
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::DynamicCast;
		OutRequest.ClassPath = Class.Path;
		return true;
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("func::"), Argument))
	{
		return ParseBlueprintSpawnerFunction(Port, SpawnerId, Argument, OutRequest, OutError);
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("bp_func::"), Argument))
	{
		if (Argument.IsEmpty())
		{
			OutError = FString::Printf(TEXT("Invalid Blueprint function spawner id: %s"), *SpawnerId);
			return false;
		}
		const FZorvekMCPBridgeGraphSnapshot* FunctionGraph = FindBlueprintSpawnerFunctionGraph(Blueprint, Argument);
		if (!FunctionGraph)
		{
			OutError = FString::Printf(TEXT("Blueprint function does not exist for spawner id: %s"), *SpawnerId);
			return false;
		}
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::CallBlueprintFunction;
		OutRequest.FunctionName = FunctionGraph->Name;
		return true;
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("custom_event::"), Argument))
	{
		if (Argument.IsEmpty())
		{
			OutError = FString::Printf(TEXT("Invalid custom event spawner id: %s"), *SpawnerId);
			return false;
		}
		if (FindBlueprintSpawnerCustomEvent(Blueprint, Argument))
		{
			OutError = FString::Printf(TEXT("Blueprint custom event already exists: %s"), *Argument);
			return false;
		}
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::CustomEvent;
		OutRequest.EventName = Argument;
		return true;
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("custom_event_call::"), Argument))
	{
		if (Argument.IsEmpty())
		{
			OutError = FString::Printf(TEXT("Invalid custom event call spawner id: %s"), *SpawnerId);
			return false;
		}
		const FZorvekMCPBridgeNodeSnapshot* Event = FindBlueprintSpawnerCustomEvent(Blueprint, Argument);
		if (!Event)
		{
			OutError = FString::Printf(TEXT("Blueprint custom event does not exist for call spawner id: %s"), *SpawnerId);
			return false;
		}
		OutRequest.Kind = EZorvekMCPBridgeNodeSpawnKind::CustomEventCall;
		OutRequest.EventName = Event->Data.CustomFunctionName;
		return true;
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("event::"), Argument))
	{
		return ParseBlueprintSpawnerEvent(Port, Blueprint, SpawnerId, Argument, OutRequest, OutError);
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("interface_event::"), Argument))
	{
		return ParseBlueprintSpawnerInterfaceEvent(Port, Blueprint, SpawnerId, Argument, OutRequest, OutError);
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("var_get::"), Argument))
	{
		return ParseBlueprintSpawnerVariable(Port, Blueprint, SpawnerId, Argument, false, OutRequest, OutError);
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("var_set::"), Argument))
	{
		return ParseBlueprintSpawnerVariable(Port, Blueprint, SpawnerId, Argument, true, OutRequest, OutError);
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("input_axis_key::"), Argument))
	{
		return ParseBlueprintSpawnerKey(Port, SpawnerId, Argument, true, OutRequest, OutError);
	}
	if (ConsumeBlueprintSpawnerPrefix(SpawnerId, TEXT("input_key::"), Argument))
	{
		return ParseBlueprintSpawnerKey(Port, SpawnerId, Argument, false, OutRequest, OutError);
	}
	// Input action, touch, gesture and other input-event ids.
	if (SpawnerId.StartsWith(TEXT("input"), ESearchCase::IgnoreCase))
	{
		OutError = FString::Printf(TEXT("Unsupported input event spawner id: %s. Native input event node creation is not supported yet; use a dedicated input event helper or an explicit future input-event spawner."), *SpawnerId);
		return false;
	}
	OutError = FString::Printf(TEXT("Unsupported native spawner id: %s"), *SpawnerId);
	return false;
}
