// Node placement, removal, connection, layout, comments and compile in the Unreal Editor, and the
// look-ups the node tools validate with (macro graphs, keys, class variables).
#include "Components/ActorComponent.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraph/EdGraphSchema.h"
#include "EdGraphNode_Comment.h"
#include "EdGraphSchema_K2.h"
#include "Editor/Blueprint/ZorvekMCPBridgePinTypeConversion.h"
#include "Editor/Port/ZorvekMCPBridgeEngineBlueprintNodes.h"
#include "Editor/Port/ZorvekMCPBridgeEngineBlueprintSpawning.h"
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Engine/Blueprint.h"
#include "HAL/PlatformTime.h"
#include "InputCoreTypes.h"
#include "K2Node_CallFunction.h"
#include "K2Node_CustomEvent.h"
#include "K2Node_Event.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Kismet2/CompilerResultsLog.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Layout/SlateRect.h"
#include "Logging/TokenizedMessage.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UnrealType.h"

// The port's enums carry the engine's values.
static_assert((int32)EZorvekMCPBridgeConnectResponse::MakeWithConversionNode == (int32)CONNECT_RESPONSE_MAKE_WITH_CONVERSION_NODE, "Connection response drift");
static_assert((int32)EZorvekMCPBridgeConnectResponse::MakeWithPromotion == (int32)CONNECT_RESPONSE_MAKE_WITH_PROMOTION, "Connection response drift");
static_assert((int32)EZorvekMCPBridgeConnectResponse::Disallow == (int32)CONNECT_RESPONSE_DISALLOW, "Connection response drift");

namespace ZorvekMCPBridgeEngineBlueprintEditsLocal
{
	const UEdGraphSchema_K2* GetK2Schema(const UEdGraph& Graph)
	{
		const UEdGraphSchema_K2* Schema = Cast<UEdGraphSchema_K2>(Graph.GetSchema());
		return Schema ? Schema : GetDefault<UEdGraphSchema_K2>();
	}

	// The existing node an event spawner would hand back instead of placing a second one: the
	// override of the same function, or the custom event of the same name.
	UK2Node_Event* FindExistingEventNode(const UBlueprint& Blueprint, const FZorvekMCPBridgeNodeSpawnRequest& Request)
	{
		if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::CustomEvent)
		{
			return Request.EventName.IsEmpty() ? nullptr : FBlueprintEditorUtils::FindCustomEventNode(&Blueprint, FName(*Request.EventName));
		}
		const UFunction* Function = ZorvekMCPBridgeEngineBlueprintSpawning::FindRequestedEventFunction(Blueprint, Request);
		return Function ? FBlueprintEditorUtils::FindOverrideForFunction(&Blueprint, Function->GetOuterUClass(), Function->GetFName()) : nullptr;
	}

	// A ghost event goes with the disabled nodes its exec output leads to (the parent call a child
	// Blueprint's ghost event carries), as the event spawner removes them. Disabled is what tells a
	// ghost apart here; a node the user disabled by hand is replaced the same way.
	void RemoveGhostEvent(UBlueprint& Blueprint, UK2Node_Event& Ghost)
	{
		TArray<UEdGraphNode*> GhostChain;
		for (const UEdGraphPin* Pin : Ghost.Pins)
		{
			if (!Pin || Pin->Direction != EGPD_Output || Pin->PinType.PinCategory != UEdGraphSchema_K2::PC_Exec)
			{
				continue;
			}
			for (const UEdGraphPin* Linked : Pin->LinkedTo)
			{
				UEdGraphNode* LinkedNode = Linked ? Linked->GetOwningNodeUnchecked() : nullptr;
				if (LinkedNode && !LinkedNode->IsNodeEnabled() && Cast<UK2Node_CallFunction>(LinkedNode))
				{
					GhostChain.AddUnique(LinkedNode);
				}
			}
		}
		for (UEdGraphNode* Node : GhostChain)
		{
			FBlueprintEditorUtils::RemoveNode(&Blueprint, Node, /*bDontRecompile*/ true);
		}
		FBlueprintEditorUtils::RemoveNode(&Blueprint, &Ghost, /*bDontRecompile*/ true);
	}

	// Every pin default checked before any is set: the pin by name in either direction (FindPin,
	// without regard to case), the text split as TrySetDefaultValue splits it, and the schema's
	// verdict. TrySetDefaultValue itself ignores a refused value silently, so it cannot tell.
	bool ValidatePinDefaults(const UEdGraphNode& Node, const TArray<FZorvekMCPBridgePinDefault>& PinDefaults, FZorvekMCPBridgeNodeSpawnResult& OutResult)
	{
		const UEdGraph* Graph = Node.GetGraph();
		const UEdGraphSchema_K2* Schema = Graph ? GetK2Schema(*Graph) : GetDefault<UEdGraphSchema_K2>();
		for (const FZorvekMCPBridgePinDefault& PinDefault : PinDefaults)
		{
			const UEdGraphPin* Pin = Node.FindPin(FName(*PinDefault.PinName));
			if (!Pin)
			{
				OutResult.Failure = EZorvekMCPBridgeNodeSpawnFailure::UnknownPin;
				OutResult.FailedPinName = PinDefault.PinName;
				for (const UEdGraphPin* NodePin : Node.Pins)
				{
					if (NodePin)
					{
						OutResult.PinNames.Add(NodePin->PinName.ToString());
					}
				}
				return false;
			}
			FString Value;
			TObjectPtr<UObject> Object;
			FText Text;
			// GetPinDefaultValuesFromString: not in the reference notes; check against the engine.
			Schema->GetPinDefaultValuesFromString(Pin->PinType, const_cast<UEdGraphNode*>(&Node), PinDefault.Value, Value, Object, Text);
			const FString Reason = Schema->IsPinDefaultValid(Pin, Value, Object, Text);
			if (!Reason.IsEmpty())
			{
				OutResult.Failure = EZorvekMCPBridgeNodeSpawnFailure::InvalidPinDefault;
				OutResult.FailedPinName = PinDefault.PinName;
				OutResult.FailureReason = Reason;
				return false;
			}
		}
		return true;
	}

	// Only after ValidatePinDefaults said yes to all of them. The caller marks the Blueprint.
	void ApplyPinDefaults(UEdGraphNode& Node, const TArray<FZorvekMCPBridgePinDefault>& PinDefaults)
	{
		const UEdGraph* Graph = Node.GetGraph();
		const UEdGraphSchema_K2* Schema = Graph ? GetK2Schema(*Graph) : GetDefault<UEdGraphSchema_K2>();
		for (const FZorvekMCPBridgePinDefault& PinDefault : PinDefaults)
		{
			if (UEdGraphPin* Pin = Node.FindPin(FName(*PinDefault.PinName)))
			{
				Schema->TrySetDefaultValue(*Pin, PinDefault.Value, /*bMarkAsModified*/ false);
			}
		}
	}

	EZorvekMCPBridgeCompileSeverity ToCompileSeverity(EMessageSeverity::Type Severity)
	{
		switch (Severity)
		{
		case EMessageSeverity::CriticalError:
		case EMessageSeverity::Error:
			return EZorvekMCPBridgeCompileSeverity::Error;
		case EMessageSeverity::PerformanceWarning:
			return EZorvekMCPBridgeCompileSeverity::PerformanceWarning;
		case EMessageSeverity::Warning:
			return EZorvekMCPBridgeCompileSeverity::Warning;
		default:
			return EZorvekMCPBridgeCompileSeverity::Info;
		}
	}
}

FZorvekMCPBridgeNodeSpawnResult FZorvekMCPBridgeEngineBlueprints::SpawnNode(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName,
	const FZorvekMCPBridgeNodeSpawnRequest& Request, int32 PosX, int32 PosY, const TArray<FZorvekMCPBridgePinDefault>& PinDefaults)
{
	using namespace ZorvekMCPBridgeEngineBlueprintEditsLocal;
	using namespace ZorvekMCPBridgeEngineBlueprintSpawning;
	FZorvekMCPBridgeNodeSpawnResult Result;
	UBlueprint* Blueprint = ToBlueprint(Handle);
	UEdGraph* Graph = Blueprint ? FindGraph(*Blueprint, GraphName) : nullptr;
	if (!Graph)
	{
		Result.Failure = EZorvekMCPBridgeNodeSpawnFailure::GraphNotFound;
		return Result;
	}

	// An event spawner hands back the enabled node that already implements the event; a ghost is
	// replaced, but only once the new node is known to be good.
	UK2Node_Event* Ghost = nullptr;
	const bool bEventKind = Request.Kind == EZorvekMCPBridgeNodeSpawnKind::Event || Request.Kind == EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent
		|| Request.Kind == EZorvekMCPBridgeNodeSpawnKind::CustomEvent;
	if (UK2Node_Event* Existing = bEventKind ? FindExistingEventNode(*Blueprint, Request) : nullptr)
	{
		if (Existing->IsNodeEnabled())
		{
			if (!ValidatePinDefaults(*Existing, PinDefaults, Result))
			{
				return Result;
			}
			ApplyPinDefaults(*Existing, PinDefaults);
			Result.Node = ZorvekMCPBridgeEngineBlueprintNodes::MakeNodeSnapshot(*Blueprint, *Existing);
			Result.bReusedExistingNode = true;
			return Result;
		}
		Ghost = Existing;
	}

	UEdGraphNode* Node = NewNodeForRequest(*Blueprint, *Graph, Request, PosX, PosY, Result.Failure);
	if (!Node)
	{
		return Result;
	}
	// IsCompatibleWithGraph before AddNode: the graph's node list is never touched by a node the
	// graph refuses (input events outside an actor's event graph, events in a function graph...).
	// IsCompatibleWithGraph: not in the reference notes; check against the engine.
	if (!Node->IsCompatibleWithGraph(Graph))
	{
		Result.Failure = EZorvekMCPBridgeNodeSpawnFailure::IncompatibleGraph;
		DiscardUnplacedNode(*Node);
		return Result;
	}
	if (!ValidatePinDefaults(*Node, PinDefaults, Result))
	{
		DiscardUnplacedNode(*Node);
		return Result;
	}
	Node->PostPlacedNewNode();
	if (Ghost)
	{
		RemoveGhostEvent(*Blueprint, *Ghost);
	}
	Graph->Modify();
	Graph->AddNode(Node, /*bUserAction*/ true, /*bSelectNewNode*/ false);
	ApplyPinDefaults(*Node, PinDefaults);
	Result.Node = ZorvekMCPBridgeEngineBlueprintNodes::MakeNodeSnapshot(*Blueprint, *Node);
	return Result;
}

bool FZorvekMCPBridgeEngineBlueprints::RemoveNode(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& NodeGuid)
{
	using namespace ZorvekMCPBridgeEngineBlueprintSpawning;
	UBlueprint* Blueprint = ToBlueprint(Handle);
	UEdGraph* Graph = Blueprint ? FindGraph(*Blueprint, GraphName) : nullptr;
	UEdGraphNode* Node = Graph ? FindNode(*Graph, NodeGuid) : nullptr;
	if (!Node)
	{
		return false;
	}
	FBlueprintEditorUtils::RemoveNode(Blueprint, Node, /*bDontRecompile*/ true);
	return true;
}

FZorvekMCPBridgeConnectResult FZorvekMCPBridgeEngineBlueprints::TryCreateConnection(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName,
	const FZorvekMCPBridgePinReference& PinA, const FZorvekMCPBridgePinReference& PinB)
{
	using namespace ZorvekMCPBridgeEngineBlueprintSpawning;
	FZorvekMCPBridgeConnectResult Result;
	UBlueprint* Blueprint = ToBlueprint(Handle);
	UEdGraph* Graph = Blueprint ? FindGraph(*Blueprint, GraphName) : nullptr;
	const UEdGraphNode* NodeA = Graph ? FindNode(*Graph, PinA.NodeGuid) : nullptr;
	const UEdGraphNode* NodeB = Graph ? FindNode(*Graph, PinB.NodeGuid) : nullptr;
	UEdGraphPin* A = NodeA ? NodeA->FindPin(PinA.PinName, PinA.Direction == EZorvekMCPBridgePinDirection::Output ? EGPD_Output : EGPD_Input) : nullptr;
	UEdGraphPin* B = NodeB ? NodeB->FindPin(PinB.PinName, PinB.Direction == EZorvekMCPBridgePinDirection::Output ? EGPD_Output : EGPD_Input) : nullptr;
	if (!A || !B)
	{
		// The caller found both pins first; a refusal here means the graph changed under it.
		return Result;
	}
	const UEdGraphSchema_K2* Schema = ZorvekMCPBridgeEngineBlueprintEditsLocal::GetK2Schema(*Graph);
	const FPinConnectionResponse Response = Schema->CanCreateConnection(A, B);
	Result.Response = static_cast<EZorvekMCPBridgeConnectResponse>(static_cast<int32>(Response.Response.GetValue()));
	Result.Message = Response.Message.ToString();
	if (Result.Response == EZorvekMCPBridgeConnectResponse::Disallow)
	{
		return Result;
	}
	// The conversion node the schema places is whichever node was not there before.
	TSet<const UEdGraphNode*> NodesBefore;
	for (const UEdGraphNode* Node : Graph->Nodes)
	{
		NodesBefore.Add(Node);
	}
	// The K2 schema marks the Blueprint modified itself when it changed something.
	Result.bConnected = Schema->TryCreateConnection(A, B);
	if (Result.bConnected && Result.Response == EZorvekMCPBridgeConnectResponse::MakeWithConversionNode)
	{
		for (const UEdGraphNode* Node : Graph->Nodes)
		{
			if (Node && !NodesBefore.Contains(Node))
			{
				Result.ConversionNodeGuid = Node->NodeGuid.ToString();
				break;
			}
		}
	}
	return Result;
}

bool FZorvekMCPBridgeEngineBlueprints::SetNodePosition(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& NodeGuid, int32 PosX, int32 PosY)
{
	using namespace ZorvekMCPBridgeEngineBlueprintSpawning;
	UBlueprint* Blueprint = ToBlueprint(Handle);
	UEdGraph* Graph = Blueprint ? FindGraph(*Blueprint, GraphName) : nullptr;
	UEdGraphNode* Node = Graph ? FindNode(*Graph, NodeGuid) : nullptr;
	if (!Node)
	{
		return false;
	}
	Node->Modify();
	Node->NodePosX = PosX;
	Node->NodePosY = PosY;
	return true;
}

FZorvekMCPBridgeNodeSnapshot FZorvekMCPBridgeEngineBlueprints::AddComment(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& CommentText,
	int32 PosX, int32 PosY, int32 Width, int32 Height, int32 FontSize)
{
	using namespace ZorvekMCPBridgeEngineBlueprintSpawning;
	UBlueprint* Blueprint = ToBlueprint(Handle);
	UEdGraph* Graph = Blueprint ? FindGraph(*Blueprint, GraphName) : nullptr;
	UEdGraphNode_Comment* Comment = Graph ? NewObject<UEdGraphNode_Comment>(Graph) : nullptr;
	if (!Comment)
	{
		return FZorvekMCPBridgeNodeSnapshot();
	}
	Comment->SetFlags(RF_Transactional);
	Comment->SetBounds(FSlateRect(static_cast<float>(PosX), static_cast<float>(PosY), static_cast<float>(PosX + Width), static_cast<float>(PosY + Height)));
	if (FontSize > 0)
	{
		Comment->FontSize = FontSize;
	}
	Graph->Modify();
	Graph->AddNode(Comment, /*bUserAction*/ true, /*bSelectNewNode*/ false);
	Comment->CreateNewGuid();
	Comment->PostPlacedNewNode();
	// PostPlacedNewNode writes "Comment" into NodeComment (unreal-behaviour-blueprints.md §2.11),
	// so the text goes in after it, or the box would show "Comment".
	Comment->NodeComment = CommentText;
	return ZorvekMCPBridgeEngineBlueprintNodes::MakeNodeSnapshot(*Blueprint, *Comment);
}

FZorvekMCPBridgeCompileResult FZorvekMCPBridgeEngineBlueprints::Compile(FZorvekMCPBridgeObjectHandle Handle, uint32 CompileFlags)
{
	FZorvekMCPBridgeCompileResult Result;
	UBlueprint* Blueprint = ZorvekMCPBridgeEngineBlueprintSpawning::ToBlueprint(Handle);
	if (!Blueprint)
	{
		return Result;
	}
	// A fresh log every time: the compile takes the Blueprint's status from its counters.
	FCompilerResultsLog Log;
	const uint64 StartCycles = FPlatformTime::Cycles64();
	FKismetEditorUtilities::CompileBlueprint(Blueprint, static_cast<EBlueprintCompileOptions>(CompileFlags), &Log);
	Result.DurationSeconds = static_cast<double>(FPlatformTime::Cycles64() - StartCycles) * FPlatformTime::GetSecondsPerCycle64();
	Result.NumErrors = Log.NumErrors;
	Result.NumWarnings = Log.NumWarnings;
	for (const TSharedRef<FTokenizedMessage>& Message : Log.Messages)
	{
		FZorvekMCPBridgeCompileMessage& Out = Result.Messages.Emplace_GetRef();
		Out.Severity = ZorvekMCPBridgeEngineBlueprintEditsLocal::ToCompileSeverity(Message->GetSeverity());
		Out.SeverityText = FTokenizedMessage::GetSeverityText(Message->GetSeverity()).ToString();
		Out.Text = Message->ToText().ToString();
	}
	return Result;
}

bool FZorvekMCPBridgeEngineBlueprints::GetMacroGraphNames(const FString& LibraryObjectPath, TArray<FString>& OutMacroNames) const
{
	const UBlueprint* Library = LibraryObjectPath.IsEmpty() ? nullptr : LoadObject<UBlueprint>(nullptr, *LibraryObjectPath);
	if (!Library)
	{
		return false;
	}
	OutMacroNames.Reset();
	for (const UEdGraph* MacroGraph : Library->MacroGraphs)
	{
		if (MacroGraph)
		{
			OutMacroNames.Add(MacroGraph->GetName());
		}
	}
	return true;
}

bool FZorvekMCPBridgeEngineBlueprints::GetKeyInfo(const FString& KeyName, FZorvekMCPBridgeKeyInfo& OutKey) const
{
	if (KeyName.IsEmpty())
	{
		return false;
	}
	// FKey keeps the spelling it was given (unreal-behaviour-blueprints.md §7.1), so the engine's
	// own spelling comes from the registered key the name matches (FName compares without case).
	const FName Wanted(*KeyName);
	TArray<FKey> AllKeys;
	EKeys::GetAllKeys(AllKeys);
	for (const FKey& Key : AllKeys)
	{
		if (Key.GetFName() == Wanted && Key.IsValid())
		{
			OutKey.KeyName = Key.GetFName().ToString();
			OutKey.DisplayName = Key.GetDisplayName(/*bLongDisplayName*/ true).ToString();
			OutKey.bAxis1D = Key.IsAxis1D();
			OutKey.bAnalog = Key.IsAnalog();
			OutKey.bBindableInBlueprints = Key.IsBindableInBlueprints();
			OutKey.MenuCategory = Key.GetMenuCategory().ToString();
			return true;
		}
	}
	return false;
}

bool FZorvekMCPBridgeEngineBlueprints::FindClassVariable(const FString& ClassPath, const FString& VariableName, FZorvekMCPBridgeClassVariableInfo& OutVariable) const
{
	const UClass* Class = ClassPath.IsEmpty() ? nullptr : LoadObject<UClass>(nullptr, *ClassPath);
	// FindFProperty looks through the supers and compares names as FNames: without case.
	const FProperty* Property = Class && !VariableName.IsEmpty() ? FindFProperty<FProperty>(Class, FName(*VariableName)) : nullptr;
	if (!Property || !Property->HasAnyPropertyFlags(CPF_BlueprintVisible) || Property->HasAnyPropertyFlags(CPF_Parm))
	{
		return false;
	}
	FEdGraphPinType PinType;
	if (!GetDefault<UEdGraphSchema_K2>()->ConvertPropertyToPinType(Property, PinType))
	{
		return false;
	}
	OutVariable.Name = Property->GetName();
	UClass* Owner = ZorvekMCPBridgeEngineBlueprintNodes::GetAuthoritativeClass(Property->GetOwnerClass());
	OutVariable.OwnerClassPath = Owner ? Owner->GetPathName() : FString();
	OutVariable.PinType = ZorvekMCPBridgePinTypeConversion::FromEnginePinType(PinType);
	OutVariable.bReadOnly = Property->HasAnyPropertyFlags(CPF_BlueprintReadOnly);
	const FObjectProperty* ObjectProperty = CastField<FObjectProperty>(Property);
	OutVariable.bIsComponent = ObjectProperty && ObjectProperty->PropertyClass && ObjectProperty->PropertyClass->IsChildOf(UActorComponent::StaticClass());
	return true;
}
