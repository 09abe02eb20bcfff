#include "Editor/Port/ZorvekMCPBridgeEngineBlueprintNodes.h"

#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraphNode_Comment.h"
#include "Editor/Blueprint/ZorvekMCPBridgePinTypeConversion.h"
#include "Engine/Blueprint.h"
#include "InputCoreTypes.h"
#include "K2Node_CallFunction.h"
#include "K2Node_CustomEvent.h"
#include "K2Node_DynamicCast.h"
#include "K2Node_EditablePinBase.h"
#include "K2Node_Event.h"
#include "K2Node_ExecutionSequence.h"
#include "K2Node_FunctionEntry.h"
#include "K2Node_FunctionResult.h"
#include "K2Node_IfThenElse.h"
#include "K2Node_InputAxisKeyEvent.h"
#include "K2Node_InputKey.h"
#include "K2Node_MacroInstance.h"
#include "K2Node_VariableGet.h"
#include "K2Node_VariableSet.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/UnrealType.h"

// TSubclassOf::Get(), the class a TSubclassOf member holds: not in the reference notes; check
// against the engine.

namespace ZorvekMCPBridgeEngineBlueprintNodesLocal
{
	// Unset member references hold NAME_None, which tools report as no name at all.
	FString NameOrEmpty(FName Name)
	{
		return Name.IsNone() ? FString() : Name.ToString();
	}

	FString PathOrEmpty(const UObject* Object)
	{
		return Object ? Object->GetPathName() : FString();
	}

	FString NameOfObjectOrEmpty(const UObject* Object)
	{
		return Object ? Object->GetName() : FString();
	}

	// The path of a resolved function as its authoritative class holds it
	// ("/Script/Engine.Actor:K2_GetActorLocation", "/Game/BP_Hero.BP_Hero_C:Jump"): a Blueprint's own
	// functions resolve on its skeleton class, which tools never name.
	FString MakeFunctionPath(const UFunction* Function)
	{
		const UClass* Owner = ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(Function->GetOuterUClass());
		return Owner ? FString::Printf(TEXT("%s:%s"), *Owner->GetPathName(), *Function->GetName()) : Function->GetPathName();
	}

	// The pin's default as the port reports it: the literal, else the default object's path, else
	// the default text as plain text (GetDefaultAsString would write text in its export form).
	FString MakePinDefault(const UEdGraphPin& Pin)
	{
		if (!Pin.DefaultValue.IsEmpty())
		{
			return Pin.DefaultValue;
		}
		if (Pin.DefaultObject)
		{
			return Pin.DefaultObject->GetPathName();
		}
		return Pin.DefaultTextValue.ToString();
	}

	FZorvekMCPBridgeGraphPinSnapshot MakeGraphPinSnapshot(const UEdGraphPin& Pin)
	{
		FZorvekMCPBridgeGraphPinSnapshot Snapshot;
		Snapshot.Pin = ZorvekMCPBridgePinTypeConversion::MakePinSnapshot(Pin);
		Snapshot.Pin.DefaultValue = MakePinDefault(Pin);
		Snapshot.bHidden = Pin.bHidden;
		Snapshot.bAdvancedView = Pin.bAdvancedView;
		for (const UEdGraphPin* Linked : Pin.LinkedTo)
		{
			// A link can outlive the node at its other end (a node removed without breaking its
			// links); such ends are not reported.
			const UEdGraphNode* LinkedNode = Linked ? Linked->GetOwningNodeUnchecked() : nullptr;
			if (LinkedNode && IsValid(LinkedNode))
			{
				Snapshot.LinkedTo.Add({LinkedNode->NodeGuid.ToString(), Linked->PinName});
			}
		}
		return Snapshot;
	}

	void AddUserPins(const UK2Node_EditablePinBase& Node, FZorvekMCPBridgeNodeKindData& OutData)
	{
		for (const TSharedPtr<FUserPinInfo>& UserPin : Node.UserDefinedPins)
		{
			if (UserPin.IsValid())
			{
				OutData.UserPins.Add(ZorvekMCPBridgePinTypeConversion::MakeUserPinInfo(*UserPin));
			}
		}
	}

	void FillEventData(const UK2Node_Event& Event, FZorvekMCPBridgeNodeKindData& OutData)
	{
		OutData.EventName = NameOrEmpty(Event.EventReference.GetMemberName());
		UClass* Owner = ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(Event.EventReference.GetMemberParentClass());
		OutData.EventOwnerClassPath = PathOrEmpty(Owner);
		OutData.EventOwnerClassName = NameOfObjectOrEmpty(Owner);
		OutData.bOverrideFunction = Event.bOverrideFunction;
		OutData.bInternalEvent = Event.bInternalEvent;
		OutData.CustomFunctionName = NameOrEmpty(Event.CustomFunctionName);
	}

	void FillCommentData(const UEdGraphNode_Comment& Comment, FZorvekMCPBridgeNodeKindData& OutData)
	{
		OutData.CommentFontSize = Comment.FontSize;
		// FLinearColor's channels: not in the reference notes; check against the engine.
		OutData.CommentColor[0] = Comment.CommentColor.R;
		OutData.CommentColor[1] = Comment.CommentColor.G;
		OutData.CommentColor[2] = Comment.CommentColor.B;
		OutData.CommentColor[3] = Comment.CommentColor.A;
		OutData.CommentMoveMode = Comment.MoveMode == ECommentBoxMode::GroupMovement ? TEXT("GroupMovement") : TEXT("NoGroupMovement");
		// The comment's own bubble setting (the details panel's), not the bit every node inherits.
		OutData.bCommentBubbleVisible = Comment.bCommentBubbleVisible_InDetailsPanel;
		for (UObject* Contained : Comment.GetNodesUnderComment())
		{
			if (const UEdGraphNode* ContainedNode = Cast<UEdGraphNode>(Contained))
			{
				OutData.ContainedNodeGuids.Add(ContainedNode->NodeGuid.ToString());
			}
		}
	}

	void FillFunctionCallData(const UBlueprint& Blueprint, const UK2Node_CallFunction& Call, FZorvekMCPBridgeNodeKindData& OutData)
	{
		const FMemberReference& Reference = Call.FunctionReference;
		OutData.MemberName = NameOrEmpty(Reference.GetMemberName());
		OutData.bSelfContext = Reference.IsSelfContext();
		// A self-context reference names no class of its own: it means the Blueprint's class.
		UClass* SelfScope = Blueprint.GeneratedClass.Get();
		OutData.MemberParentClassPath = PathOrEmpty(ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(Reference.GetMemberParentClass(SelfScope)));
		if (const UFunction* Function = Call.GetTargetFunction())
		{
			OutData.FunctionPath = MakeFunctionPath(Function);
		}
	}

	void FillVariableData(const UK2Node_Variable& Variable, FZorvekMCPBridgeNodeKindData& OutData)
	{
		const FMemberReference& Reference = Variable.VariableReference;
		OutData.VariableName = NameOrEmpty(Reference.GetMemberName());
		const FGuid MemberGuid = Reference.GetMemberGuid();
		OutData.VariableGuid = MemberGuid.IsValid() ? MemberGuid.ToString() : FString();
		OutData.bVariableSelfContext = Reference.IsSelfContext();
		OutData.bLocalVariable = Reference.IsLocalScope();
		const FProperty* Property = Variable.GetPropertyForVariable();
		UClass* Owner = ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(Property ? Property->GetOwnerClass() : nullptr);
		OutData.VariableOwnerClassPath = PathOrEmpty(Owner);
		OutData.VariableOwnerClassName = NameOfObjectOrEmpty(Owner);
		OutData.VariableOwnerBlueprintPath = ZorvekMCPBridgeEngineBlueprintNodes::GetGeneratingBlueprintPath(Owner);
	}

	// Subclasses are tested before their bases: a custom event and an input-axis event are also
	// UK2Node_Events, and each has a kind of its own.
	void FillKind(const UBlueprint& Blueprint, const UEdGraphNode& Node, FZorvekMCPBridgeNodeSnapshot& OutSnapshot)
	{
		FZorvekMCPBridgeNodeKindData& Data = OutSnapshot.Data;
		if (const UEdGraphNode_Comment* Comment = Cast<UEdGraphNode_Comment>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::Comment;
			FillCommentData(*Comment, Data);
		}
		else if (const UK2Node_CustomEvent* CustomEvent = Cast<UK2Node_CustomEvent>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::CustomEvent;
			FillEventData(*CustomEvent, Data);
			Data.bCallInEditor = CustomEvent->bCallInEditor;
			AddUserPins(*CustomEvent, Data);
		}
		else if (const UK2Node_InputAxisKeyEvent* AxisEvent = Cast<UK2Node_InputAxisKeyEvent>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::InputAxisKeyEvent;
			FillEventData(*AxisEvent, Data);
			Data.KeyName = AxisEvent->AxisKey.GetFName().ToString();
			Data.bConsumeInput = AxisEvent->bConsumeInput;
			Data.bExecuteWhenPaused = AxisEvent->bExecuteWhenPaused;
			Data.bOverrideParentBinding = AxisEvent->bOverrideParentBinding;
		}
		else if (const UK2Node_Event* Event = Cast<UK2Node_Event>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::Event;
			FillEventData(*Event, Data);
		}
		else if (const UK2Node_FunctionEntry* Entry = Cast<UK2Node_FunctionEntry>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::FunctionEntry;
			Data.FunctionName = NameOrEmpty(Entry->FunctionReference.GetMemberName());
			AddUserPins(*Entry, Data);
		}
		else if (const UK2Node_FunctionResult* Result = Cast<UK2Node_FunctionResult>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::FunctionResult;
			Data.FunctionName = NameOrEmpty(Result->FunctionReference.GetMemberName());
			AddUserPins(*Result, Data);
		}
		else if (const UK2Node_DynamicCast* DynamicCast = Cast<UK2Node_DynamicCast>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::DynamicCast;
			UClass* Target = ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(DynamicCast->TargetType.Get());
			Data.CastTargetClassPath = PathOrEmpty(Target);
			Data.CastTargetClassName = NameOfObjectOrEmpty(Target);
			Data.CastTargetBlueprintPath = ZorvekMCPBridgeEngineBlueprintNodes::GetGeneratingBlueprintPath(Target);
		}
		else if (const UK2Node_CallFunction* Call = Cast<UK2Node_CallFunction>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::FunctionCall;
			FillFunctionCallData(Blueprint, *Call, Data);
		}
		else if (const UK2Node_VariableGet* Get = Cast<UK2Node_VariableGet>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::VariableGet;
			FillVariableData(*Get, Data);
		}
		else if (const UK2Node_VariableSet* Set = Cast<UK2Node_VariableSet>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::VariableSet;
			FillVariableData(*Set, Data);
		}
		else if (Cast<UK2Node_IfThenElse>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::Branch;
		}
		else if (Cast<UK2Node_ExecutionSequence>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::Sequence;
		}
		else if (const UK2Node_MacroInstance* Macro = Cast<UK2Node_MacroInstance>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::MacroInstance;
			const UEdGraph* MacroGraph = Macro->GetMacroGraph();
			Data.MacroGraphName = NameOfObjectOrEmpty(MacroGraph);
			Data.MacroGraphPath = PathOrEmpty(MacroGraph);
			Data.MacroBlueprintPath = PathOrEmpty(Macro->GetSourceBlueprint());
		}
		else if (const UK2Node_InputKey* InputKey = Cast<UK2Node_InputKey>(&Node))
		{
			OutSnapshot.Kind = EZorvekMCPBridgeNodeKind::InputKey;
			Data.KeyName = InputKey->InputKey.GetFName().ToString();
			Data.bConsumeInput = InputKey->bConsumeInput;
			Data.bExecuteWhenPaused = InputKey->bExecuteWhenPaused;
			Data.bOverrideParentBinding = InputKey->bOverrideParentBinding;
			Data.bControl = InputKey->bControl;
			Data.bShift = InputKey->bShift;
			Data.bAlt = InputKey->bAlt;
			Data.bCommand = InputKey->bCommand;
		}
	}
}

UClass* ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(UClass* Class)
{
	const UBlueprint* Blueprint = Class ? UBlueprint::GetBlueprintFromClass(Class) : nullptr;
	UClass* GeneratedClass = Blueprint ? Blueprint->GeneratedClass.Get() : nullptr;
	return GeneratedClass ? GeneratedClass : Class;
}

FString ZorvekMCPBridgeEngineBlueprintNodes::GetGeneratingBlueprintPath(UClass* Class)
{
	return Class ? ZorvekMCPBridgeEngineBlueprintNodesLocal::PathOrEmpty(UBlueprint::GetBlueprintFromClass(Class)) : FString();
}

FZorvekMCPBridgeGraphPinSnapshot ZorvekMCPBridgeEngineBlueprintNodes::MakeGraphPinSnapshot(const UEdGraphPin& Pin)
{
	return ZorvekMCPBridgeEngineBlueprintNodesLocal::MakeGraphPinSnapshot(Pin);
}

FZorvekMCPBridgeNodeSnapshot ZorvekMCPBridgeEngineBlueprintNodes::MakeNodeSnapshot(const UBlueprint& Blueprint, const UEdGraphNode& Node)
{
	FZorvekMCPBridgeNodeSnapshot Snapshot;
	Snapshot.NodeGuid = Node.NodeGuid.ToString();
	Snapshot.NodeClass = Node.GetClass()->GetName();
	Snapshot.Title = Node.GetNodeTitle(ENodeTitleType::FullTitle).ToString();
	Snapshot.PosX = Node.NodePosX;
	Snapshot.PosY = Node.NodePosY;
	Snapshot.Width = Node.NodeWidth;
	Snapshot.Height = Node.NodeHeight;
	Snapshot.Comment = Node.NodeComment;
	Snapshot.bEnabled = Node.IsNodeEnabled();
	ZorvekMCPBridgeEngineBlueprintNodesLocal::FillKind(Blueprint, Node, Snapshot);
	for (const UEdGraphPin* Pin : Node.Pins)
	{
		if (Pin)
		{
			Snapshot.Pins.Add(ZorvekMCPBridgeEngineBlueprintNodesLocal::MakeGraphPinSnapshot(*Pin));
		}
	}
	return Snapshot;
}

FZorvekMCPBridgeGraphSnapshot ZorvekMCPBridgeEngineBlueprintNodes::MakeGraphSnapshot(const UBlueprint& Blueprint, const UEdGraph& Graph, EZorvekMCPBridgeGraphKind Kind, const FString& InterfaceClassPath)
{
	FZorvekMCPBridgeGraphSnapshot Snapshot;
	Snapshot.Name = Graph.GetName();
	Snapshot.Kind = Kind;
	Snapshot.InterfaceClassPath = InterfaceClassPath;
	for (const UEdGraphNode* Node : Graph.Nodes)
	{
		if (Node)
		{
			Snapshot.Nodes.Add(MakeNodeSnapshot(Blueprint, *Node));
		}
	}
	return Snapshot;
}
