#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"

namespace
{
	const TCHAR* GetSpawnerVariableVerb(bool bSet)
	{
		return bSet ? TEXT("set") : TEXT("get");
	}

	bool IsBlueprintOwnClass(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& ClassPath)
	{
		return !ClassPath.IsEmpty() && (ClassPath.Equals(Blueprint.GeneratedClassPath, ESearchCase::IgnoreCase) || ClassPath.Equals(Blueprint.SkeletonClassPath, ESearchCase::IgnoreCase));
	}

	bool HasSpawnerFunctionGraph(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& FunctionName)
	{
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			if (Graph.Kind == EZorvekMCPBridgeGraphKind::Function && Graph.Name.Equals(FunctionName, ESearchCase::IgnoreCase))
			{
				return true;
			}
		}
		return false;
	}

	bool HasSpawnerMemberVariable(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& VariableName)
	{
		for (const FZorvekMCPBridgeVariableSnapshot& Variable : Blueprint.Variables)
		{
			if (Variable.VarName == FName(*VariableName))
			{
				return true;
			}
		}
		return false;
	}

	bool HasSpawnerCustomEvent(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& EventName)
	{
		for (const FZorvekMCPBridgeGraphSnapshot& Graph : Blueprint.Graphs)
		{
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
			{
				if (Node.Kind == EZorvekMCPBridgeNodeKind::CustomEvent && Node.Data.CustomFunctionName.Equals(EventName, ESearchCase::IgnoreCase))
				{
					return true;
				}
			}
		}
		return false;
	}

	const TCHAR* const StandardFlowControlMacros[] = {TEXT("DoOnce"), TEXT("Gate"), TEXT("FlipFlop")};
}

FString ZorvekMCPBridgeSpawnerIds::MakeBranchId()
{
	return TEXT("node::branch");
}

FString ZorvekMCPBridgeSpawnerIds::MakeSequenceId()
{
	return TEXT("node::sequence");
}

FString ZorvekMCPBridgeSpawnerIds::MakeFunctionCallId(const FString& ClassPath, const FString& FunctionName)
{
	return FString::Printf(TEXT("func::%s:%s"), *ClassPath, *FunctionName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeBlueprintFunctionId(const FString& FunctionName)
{
	return FString::Printf(TEXT("bp_func::%s"), *FunctionName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeFunctionEntryId(const FString& FunctionName)
{
	return FString::Printf(TEXT("bp_func_entry::%s"), *FunctionName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeFunctionResultId(const FString& FunctionName)
{
	return FString::Printf(TEXT("bp_func_result::%s"), *FunctionName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeCastId(const FString& TargetClassPath)
{
	return FString::Printf(TEXT("cast::%s"), *TargetClassPath);
}

FString ZorvekMCPBridgeSpawnerIds::MakeCustomEventId(const FString& EventName)
{
	return FString::Printf(TEXT("custom_event::%s"), *EventName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeCustomEventCallId(const FString& EventName)
{
	return FString::Printf(TEXT("custom_event_call::%s"), *EventName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeEventId(const FString& EventFunctionName)
{
	return FString::Printf(TEXT("event::%s"), *EventFunctionName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeInterfaceEventId(const FString& InterfaceClassPath, const FString& FunctionName)
{
	return FString::Printf(TEXT("interface_event::%s:%s"), *InterfaceClassPath, *FunctionName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeInterfaceFunctionId(const FString& InterfaceClassPath, const FString& FunctionName)
{
	return FString::Printf(TEXT("interface_function::%s:%s"), *InterfaceClassPath, *FunctionName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeVariableId(bool bSet, const FString& VariableName)
{
	return FString::Printf(TEXT("var_%s::%s"), GetSpawnerVariableVerb(bSet), *VariableName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeExternalVariableId(bool bSet, const FString& VariableName, const FString& OwnerClassPath)
{
	return FString::Printf(TEXT("var_%s::%s:%s"), GetSpawnerVariableVerb(bSet), *VariableName, *OwnerClassPath);
}

FString ZorvekMCPBridgeSpawnerIds::MakeMacroId(const FString& LibraryPackagePath, const FString& MacroName)
{
	return FString::Printf(TEXT("macro::%s:%s"), *LibraryPackagePath, *MacroName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeInputKeyId(const FString& KeyName)
{
	return FString::Printf(TEXT("input_key::%s"), *KeyName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeInputAxisKeyId(const FString& KeyName)
{
	return FString::Printf(TEXT("input_axis_key::%s"), *KeyName);
}

FString ZorvekMCPBridgeSpawnerIds::MakeSpawnRequestId(const FZorvekMCPBridgeNodeSpawnRequest& Request)
{
	switch (Request.Kind)
	{
	case EZorvekMCPBridgeNodeSpawnKind::Branch:
		return MakeBranchId();
	case EZorvekMCPBridgeNodeSpawnKind::Sequence:
		return MakeSequenceId();
	case EZorvekMCPBridgeNodeSpawnKind::MacroInstance:
		return MakeMacroId(Request.MacroLibraryPath, Request.MacroName);
	case EZorvekMCPBridgeNodeSpawnKind::DynamicCast:
		return MakeCastId(Request.ClassPath);
	case EZorvekMCPBridgeNodeSpawnKind::CallFunction:
		return MakeFunctionCallId(Request.ClassPath, Request.FunctionName);
	case EZorvekMCPBridgeNodeSpawnKind::CallBlueprintFunction:
		return MakeBlueprintFunctionId(Request.FunctionName);
	case EZorvekMCPBridgeNodeSpawnKind::CustomEvent:
		return MakeCustomEventId(Request.EventName);
	case EZorvekMCPBridgeNodeSpawnKind::CustomEventCall:
		return MakeCustomEventCallId(Request.EventName);
	case EZorvekMCPBridgeNodeSpawnKind::Event:
		return MakeEventId(Request.FunctionName);
	case EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent:
		return MakeInterfaceEventId(Request.ClassPath, Request.FunctionName);
	case EZorvekMCPBridgeNodeSpawnKind::VariableGet:
	case EZorvekMCPBridgeNodeSpawnKind::VariableSet:
	{
		const bool bSet = Request.Kind == EZorvekMCPBridgeNodeSpawnKind::VariableSet;
		return Request.OwnerClassPath.IsEmpty() ? MakeVariableId(bSet, Request.VariableName) : MakeExternalVariableId(bSet, Request.VariableName, Request.OwnerClassPath);
	}
	case EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent:
		return MakeInputAxisKeyId(Request.KeyName);
	case EZorvekMCPBridgeNodeSpawnKind::InputKey:
		return MakeInputKeyId(Request.KeyName);
	default:
		return FString();
	}
}

FString ZorvekMCPBridgeSpawnerIds::GetCalledFunctionClassPath(const FZorvekMCPBridgeNodeSnapshot& Node)
{
	// "/Script/Engine.Actor:K2_GetActorLocation": the function's outer is the declaring class.
	FString ClassPath;
	FString FunctionName;
	if (Node.Data.FunctionPath.Split(TEXT(":"), &ClassPath, &FunctionName, ESearchCase::CaseSensitive, ESearchDir::FromEnd) && !ClassPath.IsEmpty())
	{
		return ClassPath;
	}
	return Node.Data.MemberParentClassPath;
}

bool ZorvekMCPBridgeSpawnerIds::IsOwnFunctionCall(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node)
{
	if (Node.Kind != EZorvekMCPBridgeNodeKind::FunctionCall || !HasSpawnerFunctionGraph(Blueprint, Node.Data.MemberName))
	{
		return false;
	}
	return Node.Data.bSelfContext || IsBlueprintOwnClass(Blueprint, GetCalledFunctionClassPath(Node));
}

bool ZorvekMCPBridgeSpawnerIds::IsOwnCustomEventCall(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node)
{
	if (Node.Kind != EZorvekMCPBridgeNodeKind::FunctionCall || !HasSpawnerCustomEvent(Blueprint, Node.Data.MemberName))
	{
		return false;
	}
	return Node.Data.bSelfContext || IsBlueprintOwnClass(Blueprint, GetCalledFunctionClassPath(Node));
}

ZorvekMCPBridgeSpawnerIds::EVariableScope ZorvekMCPBridgeSpawnerIds::GetVariableScope(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node)
{
	if (Node.Data.bLocalVariable)
	{
		return EVariableScope::Local;
	}
	const FString& OwnerClassPath = Node.Data.VariableOwnerClassPath;
	const bool bOwnOwner = OwnerClassPath.IsEmpty() || IsBlueprintOwnClass(Blueprint, OwnerClassPath);
	if (bOwnOwner && (Node.Data.bVariableSelfContext || HasSpawnerMemberVariable(Blueprint, Node.Data.VariableName)))
	{
		return EVariableScope::Self;
	}
	return EVariableScope::External;
}

const TCHAR* ZorvekMCPBridgeSpawnerIds::GetVariableScopeWord(EVariableScope Scope)
{
	switch (Scope)
	{
	case EVariableScope::Local:
		return TEXT("local");
	case EVariableScope::External:
		return TEXT("external");
	default:
		return TEXT("self");
	}
}

const FZorvekMCPBridgeImplementedInterfaceSnapshot* ZorvekMCPBridgeSpawnerIds::FindImplementedInterface(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& InterfaceClassPath)
{
	if (InterfaceClassPath.IsEmpty())
	{
		return nullptr;
	}
	for (const FZorvekMCPBridgeImplementedInterfaceSnapshot& Interface : Blueprint.ImplementedInterfaces)
	{
		if (Interface.InterfaceClassPath.Equals(InterfaceClassPath, ESearchCase::IgnoreCase))
		{
			return &Interface;
		}
	}
	return nullptr;
}

FString ZorvekMCPBridgeSpawnerIds::GetMacroLibraryPath(const FZorvekMCPBridgeNodeSnapshot& Node)
{
	if (!Node.Data.MacroBlueprintPath.IsEmpty())
	{
		return ZorvekMCPBridgeAssets::ObjectPathToPackageName(Node.Data.MacroBlueprintPath);
	}
	// "/Engine/.../StandardMacros.StandardMacros:DoOnce" names its package too.
	return ZorvekMCPBridgeAssets::ObjectPathToPackageName(Node.Data.MacroGraphPath);
}

bool ZorvekMCPBridgeSpawnerIds::IsStandardFlowControlMacro(const FZorvekMCPBridgeNodeSnapshot& Node)
{
	if (!GetMacroLibraryPath(Node).Equals(StandardMacrosLibraryPath, ESearchCase::IgnoreCase))
	{
		return false;
	}
	for (const TCHAR* MacroName : StandardFlowControlMacros)
	{
		if (Node.Data.MacroGraphName.Equals(MacroName, ESearchCase::IgnoreCase))
		{
			return true;
		}
	}
	return false;
}

FString ZorvekMCPBridgeSpawnerIds::GetNodeSpawnerId(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeGraphSnapshot& Graph, const FZorvekMCPBridgeNodeSnapshot& Node)
{
	const FZorvekMCPBridgeNodeKindData& Data = Node.Data;
	switch (Node.Kind)
	{
	case EZorvekMCPBridgeNodeKind::Branch:
		return MakeBranchId();
	case EZorvekMCPBridgeNodeKind::Sequence:
		return MakeSequenceId();
	case EZorvekMCPBridgeNodeKind::CustomEvent:
		return MakeCustomEventId(Data.CustomFunctionName.IsEmpty() ? Data.EventName : Data.CustomFunctionName);
	case EZorvekMCPBridgeNodeKind::Event:
		if (FindImplementedInterface(Blueprint, Data.EventOwnerClassPath))
		{
			return MakeInterfaceEventId(Data.EventOwnerClassPath, Data.EventName);
		}
		return MakeEventId(Data.EventName);
	case EZorvekMCPBridgeNodeKind::FunctionEntry:
	{
		const FString FunctionName = Data.FunctionName.IsEmpty() ? Graph.Name : Data.FunctionName;
		if (Graph.Kind == EZorvekMCPBridgeGraphKind::InterfaceImplementation)
		{
			return MakeInterfaceFunctionId(Graph.InterfaceClassPath, FunctionName);
		}
		return MakeFunctionEntryId(FunctionName);
	}
	case EZorvekMCPBridgeNodeKind::FunctionResult:
		return MakeFunctionResultId(Data.FunctionName.IsEmpty() ? Graph.Name : Data.FunctionName);
	case EZorvekMCPBridgeNodeKind::DynamicCast:
		return MakeCastId(Data.CastTargetClassPath);
	case EZorvekMCPBridgeNodeKind::FunctionCall:
		if (IsOwnCustomEventCall(Blueprint, Node))
		{
			return MakeCustomEventCallId(Data.MemberName);
		}
		if (IsOwnFunctionCall(Blueprint, Node))
		{
			return MakeBlueprintFunctionId(Data.MemberName);
		}
		return MakeFunctionCallId(GetCalledFunctionClassPath(Node), Data.MemberName);
	case EZorvekMCPBridgeNodeKind::VariableGet:
	case EZorvekMCPBridgeNodeKind::VariableSet:
	{
		const bool bSet = Node.Kind == EZorvekMCPBridgeNodeKind::VariableSet;
		if (GetVariableScope(Blueprint, Node) == EVariableScope::External)
		{
			return MakeExternalVariableId(bSet, Data.VariableName, Data.VariableOwnerClassPath);
		}
		return MakeVariableId(bSet, Data.VariableName);
	}
	case EZorvekMCPBridgeNodeKind::MacroInstance:
		return MakeMacroId(GetMacroLibraryPath(Node), Data.MacroGraphName);
	case EZorvekMCPBridgeNodeKind::InputAxisKeyEvent:
		return MakeInputAxisKeyId(Data.KeyName);
	case EZorvekMCPBridgeNodeKind::InputKey:
		return MakeInputKeyId(Data.KeyName);
	default:
		return FString();
	}
}
