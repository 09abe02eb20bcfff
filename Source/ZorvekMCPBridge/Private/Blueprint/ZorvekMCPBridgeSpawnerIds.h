// The spawner ids: the text that names what kind of node to make ("node::branch",
// "func::/Script/Engine.KismetSystemLibrary:PrintString", "custom_event::OnHit"). The graph reader
// prints one per node and the node tools take the same text to make that node again, so both
// build them here. Docs/Blueprints.md lists which text fills each form.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

namespace ZorvekMCPBridgeSpawnerIds
{
	// The engine's macro library the node tools take flow-control macros from (a package path).
	inline constexpr const TCHAR* StandardMacrosLibraryPath = TEXT("/Engine/EditorBlueprintResources/StandardMacros");

	FString MakeBranchId();
	FString MakeSequenceId();
	// "func::<class path>:<function>", the class that declares the function.
	FString MakeFunctionCallId(const FString& ClassPath, const FString& FunctionName);
	// "bp_func::<function>": a call of the Blueprint's own function.
	FString MakeBlueprintFunctionId(const FString& FunctionName);
	FString MakeFunctionEntryId(const FString& FunctionName);
	FString MakeFunctionResultId(const FString& FunctionName);
	// "cast::<class path>".
	FString MakeCastId(const FString& TargetClassPath);
	FString MakeCustomEventId(const FString& EventName);
	// "custom_event_call::<name>": a call of one of the Blueprint's own custom events.
	FString MakeCustomEventCallId(const FString& EventName);
	// "event::<event function>", e.g. event::ReceiveBeginPlay.
	FString MakeEventId(const FString& EventFunctionName);
	// "interface_event::<interface class path>:<function>" and "interface_function::..." for an
	// interface function implemented as a graph.
	FString MakeInterfaceEventId(const FString& InterfaceClassPath, const FString& FunctionName);
	FString MakeInterfaceFunctionId(const FString& InterfaceClassPath, const FString& FunctionName);
	// "var_get::<name>" / "var_set::<name>" for the Blueprint's own variables; with an owner class
	// path ("var_get::<name>:<owner class path>") for members of another class.
	FString MakeVariableId(bool bSet, const FString& VariableName);
	FString MakeExternalVariableId(bool bSet, const FString& VariableName, const FString& OwnerClassPath);
	// "macro::<library package path>:<macro graph>".
	FString MakeMacroId(const FString& LibraryPackagePath, const FString& MacroName);
	FString MakeInputKeyId(const FString& KeyName);
	FString MakeInputAxisKeyId(const FString& KeyName);
	// The id of the node a spawn request makes: the node tools place by it and the catalogue
	// lists actions under it, so both name a node as the reader does.
	FString MakeSpawnRequestId(const FZorvekMCPBridgeNodeSpawnRequest& Request);

	// What the reader needs to tell node variants apart. All of them look only at the snapshot.

	// The class that declares a called function: the class part of its resolved path, else the
	// class its reference names.
	FString GetCalledFunctionClassPath(const FZorvekMCPBridgeNodeSnapshot& Node);
	// A call of a function the Blueprint itself declares (one of its function graphs), through
	// self or through its own generated class.
	bool IsOwnFunctionCall(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node);
	// A call of a custom event the Blueprint itself declares (a custom event node in any of its
	// graphs), through self or through its own generated class.
	bool IsOwnCustomEventCall(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node);

	enum class EVariableScope : uint8
	{
		Self,
		External,
		Local
	};
	// Local for function-local variables; Self for the Blueprint's own member variables (and for a
	// self reference whose owner no longer resolves); External for members of any other class.
	EVariableScope GetVariableScope(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeNodeSnapshot& Node);
	const TCHAR* GetVariableScopeWord(EVariableScope Scope);

	// The implemented interface an event node or interface graph belongs to; null when none.
	const FZorvekMCPBridgeImplementedInterfaceSnapshot* FindImplementedInterface(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& InterfaceClassPath);

	// The macro library package of a macro instance ("/Engine/EditorBlueprintResources/StandardMacros").
	FString GetMacroLibraryPath(const FZorvekMCPBridgeNodeSnapshot& Node);
	// DoOnce, Gate or FlipFlop of the standard macro library: the macros the node tools place.
	bool IsStandardFlowControlMacro(const FZorvekMCPBridgeNodeSnapshot& Node);

	// The id of a node of the graph, or empty for kinds that have none (comments, unknown nodes).
	FString GetNodeSpawnerId(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FZorvekMCPBridgeGraphSnapshot& Graph, const FZorvekMCPBridgeNodeSnapshot& Node);
}
