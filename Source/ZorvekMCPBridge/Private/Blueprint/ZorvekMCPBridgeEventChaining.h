// Building a new line of nodes in an event graph for the composite Blueprint tools: a plan of
// variables, nodes and links is checked against the Blueprint before the first change, then applied
// through the Blueprint port one step at a time, each line chained from its event (Tick,
// BeginPlay). An event whose exec output already leads somewhere gets a Sequence in front: then_0
// keeps the old chain, then_1 runs the new line. A step the editor refuses takes back everything
// the call added, so a failed call leaves the Blueprint's graphs and variables as they were.
#pragma once

#include "CoreMinimal.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeEventChaining
{
	// Where the line's nodes go: columns and rows from the free row under the graph's nodes.
	constexpr int32 ColumnWidth = 320;
	constexpr int32 RowHeight = 160;

	// A member variable the line reads. One of that name and type already in the Blueprint is
	// reused as it is (its default included); one of another type refuses the call.
	struct FPlannedVariable
	{
		FName Name;
		FZorvekMCPBridgePinType PinType;
		FString DefaultValue;
		// What the variable is for, as the answer tells the client.
		FString Purpose;
	};

	struct FPlannedNode
	{
		// The plan's name of the node; links and event lines refer to it.
		FString Key;
		FZorvekMCPBridgeNodeSpawnRequest Request;
		int32 Column = 0;
		int32 Row = 0;
		TArray<FZorvekMCPBridgePinDefault> PinDefaults;
	};

	// A link by exact pin names. Either end may be an event line's event key.
	struct FPlannedLink
	{
		FString SourceKey;
		FString SourcePin;
		FString TargetKey;
		FString TargetPin;
	};

	// An event override (ReceiveTick) whose exec output runs FirstNodeKey's "execute". The event
	// node is the enabled one the Blueprint has, or a new one (replacing the ghost) at Row.
	struct FEventLine
	{
		FString EventFunctionName;
		FString EventKey;
		FString FirstNodeKey;
		int32 Row = 0;
	};

	struct FGraphPlan
	{
		TArray<FPlannedVariable> Variables;
		TArray<FEventLine> Events;
		TArray<FPlannedNode> Nodes;
		TArray<FPlannedLink> Links;
	};

	// What PreparePlan found out: the graph's own spelling, which variables exist, where each
	// event is and what its exec output is linked to, and where the line goes.
	struct FPreparedEvent
	{
		// Empty when the event is placed by the call.
		FString ExistingNodeGuid;
		// The pin the event's exec output leads to now; empty when it is free.
		FString LinkedNodeGuid;
		FName LinkedPinName;
	};

	struct FPreparedPlan
	{
		FString GraphName;
		// The planned variables the Blueprint does not have yet.
		TArray<FName> NewVariables;
		TArray<FPreparedEvent> Events;
		int32 OriginX = 0;
		int32 OriginY = 0;
	};

	// Checks everything before the first change: the graph is an event graph of the Blueprint,
	// every variable is free or of the right type and clashes with no member, component or graph,
	// every node's spawner id is one the editor can place, every pin a link or pin default names is
	// on its node, and each event is in this graph or nowhere yet. False with the message.
	bool PreparePlan(IZorvekMCPBridgeEditorPort& Port, const ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FString& GraphName,
		const FGraphPlan& Plan, FPreparedPlan& OutPrepared, FString& OutError);

	struct FAppliedPlan
	{
		bool bSuccess = false;
		// The step that was refused and why; on a refusal everything added is taken back.
		FString FailedStep;
		FString Error;
		// Whether taking back left the Blueprint as it was (a replaced ghost event does not come back).
		bool bBlueprintUnchanged = true;
		// The plan's node keys (events included) -> node GUIDs.
		TMap<FString, FString> NodeGuids;
		TArray<TSharedPtr<FJsonValue>> Steps;
		TArray<TSharedPtr<FJsonValue>> Variables;
		TArray<TSharedPtr<FJsonValue>> Nodes;
		TArray<TSharedPtr<FJsonValue>> Connections;
		TArray<TSharedPtr<FJsonValue>> EventLines;
		// The compile's answer: "compiled", "status", and after a compile "error_count",
		// "warning_count" and "messages".
		TSharedPtr<FJsonObject> Compile;
	};

	// Applies a prepared plan: variables, event nodes, nodes, links, event chaining, then the
	// compile when asked for. Loaded's snapshot is read again as it goes.
	FAppliedPlan ApplyPlan(IZorvekMCPBridgeEditorPort& Port, ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FGraphPlan& Plan,
		const FPreparedPlan& Prepared, bool bCompile);

	// Writes the applied plan into the tool's answer (success, variables, nodes, connections,
	// event_lines, steps, compile, recommended_next_tools, or failed_step, error and
	// blueprint_unchanged) and wraps it as a tool result, an error when a step was refused.
	TSharedPtr<FJsonObject> MakeToolResult(const TSharedPtr<FJsonObject>& Header, const FAppliedPlan& Applied, const FString& AssetPath, const FString& GraphName);

	// The pin types of the variables the composite tools add.
	FZorvekMCPBridgePinType MakeRealPinType();
	FZorvekMCPBridgePinType MakeStructPinType(const FString& StructPath, const FString& StructName);
	FZorvekMCPBridgePinType MakeObjectPinType(const FString& ClassPath, const FString& ClassName);

	// A call of a native function, a Get of a variable (OwnerClassPath empty for the Blueprint's
	// own), a Sequence.
	FZorvekMCPBridgeNodeSpawnRequest MakeCallRequest(const FString& ClassPath, const FString& FunctionName);
	FZorvekMCPBridgeNodeSpawnRequest MakeVariableRequest(bool bSet, const FString& VariableName, const FString& OwnerClassPath);

	// A component of an Actor Blueprint a composite tool works on: its own construction-script
	// component or a component property it inherits.
	struct FBlueprintComponent
	{
		FString Name;
		FString ClassPath;
		// The class that declares an inherited component; empty for the Blueprint's own.
		FString OwnerClassPath;
		// The template of the Blueprint's own component; invalid for an inherited one.
		FZorvekMCPBridgeObjectHandle Template;
	};

	// Checks that the Blueprint is an Actor Blueprint and finds the component (without regard to
	// case), which must be a RequiredClassPath. False with the message; RequiredWord names the
	// kind in it ("scene component").
	bool FindActorComponent(IZorvekMCPBridgeEditorPort& Port, const ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint& Loaded, const FString& ComponentName,
		const TCHAR* RequiredClassPath, const TCHAR* RequiredWord, FBlueprintComponent& OutComponent, FString& OutError);
}
