// Node placement, connection, layout, compile and the lookups the node tools validate with, in the
// simulated Blueprint port. The action catalogue is in SimulatedBlueprintActions.cpp.
#include "SimulatedBlueprintPort.h"

#include "SimulatedAssetAuthoring.h"
#include "SimulatedBlueprint.h"
#include "SimulatedEditor.h"
#include "SimulatedEditorPort.h"
#include "SimulatedKeys.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"
#include "HAL/PlatformTime.h"

FSimulatedGraph* FSimulatedBlueprintPort::FindGraph(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName) const
{
	const FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	return Blueprint ? Blueprint->FindGraph(GraphName) : nullptr;
}

FZorvekMCPBridgeNodeSpawnResult FSimulatedBlueprintPort::SpawnNode(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FZorvekMCPBridgeNodeSpawnRequest& Request,
	int32 PosX, int32 PosY, const TArray<FZorvekMCPBridgePinDefault>& PinDefaults)
{
	FZorvekMCPBridgeNodeSpawnResult Result;
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	FSimulatedGraph* Graph = FindGraph(Handle, GraphName);
	if (!Blueprint || !Graph)
	{
		Result.Failure = EZorvekMCPBridgeNodeSpawnFailure::GraphNotFound;
		return Result;
	}
	FSimulatedBlueprints& Model = GetModel();
	const FSimulatedSpawnOutcome Outcome = Model.SpawnNode(*Graph, Request, PosX, PosY);
	if (!Outcome.Node)
	{
		Result.Failure = Outcome.Failure;
		return Result;
	}
	FSimulatedNode& Node = *Outcome.Node;
	for (const std::unique_ptr<FSimulatedPin>& Pin : Node.Pins)
	{
		Result.PinNames.Add(Pin->PinName.ToString());
	}

	// Every default is checked before any is set, so a refusal removes a node that nothing
	// changed, and a reused node is left as it was.
	std::vector<FSimulatedPin*> Targets;
	for (const FZorvekMCPBridgePinDefault& Default : PinDefaults)
	{
		FSimulatedPin* Pin = Node.FindPin(Default.PinName);
		FString Reason;
		if (Pin)
		{
			Reason = Model.IsPinDefaultValid(*Pin, Default.Value);
		}
		if (!Pin || !Reason.IsEmpty())
		{
			Result.Failure = Pin ? EZorvekMCPBridgeNodeSpawnFailure::InvalidPinDefault : EZorvekMCPBridgeNodeSpawnFailure::UnknownPin;
			Result.FailedPinName = Default.PinName;
			Result.FailureReason = Reason;
			if (!Outcome.bReusedExistingNode)
			{
				Model.RemoveNode(*Graph, Node);
			}
			return Result;
		}
		Targets.push_back(Pin);
	}
	Model.FinishSpawn(*Graph, Outcome);
	for (int32 Index = 0; Index < PinDefaults.Num(); ++Index)
	{
		Model.TrySetDefaultValue(*Targets[(size_t)Index], PinDefaults[Index].Value);
	}
	DirtyPackageIfModified(Blueprint);
	Result.bReusedExistingNode = Outcome.bReusedExistingNode;
	Result.Node = SnapshotNode(*Blueprint, Node);
	return Result;
}

bool FSimulatedBlueprintPort::RemoveNode(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& NodeGuid)
{
	FSimulatedGraph* Graph = FindGraph(Handle, GraphName);
	FSimulatedNode* Node = Graph ? Graph->FindNodeByGuid(NodeGuid) : nullptr;
	if (!Node)
	{
		return false;
	}
	GetModel().RemoveNode(*Graph, *Node);
	return true;
}

FZorvekMCPBridgeConnectResult FSimulatedBlueprintPort::TryCreateConnection(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName,
	const FZorvekMCPBridgePinReference& PinA, const FZorvekMCPBridgePinReference& PinB)
{
	FZorvekMCPBridgeConnectResult Result;
	FSimulatedGraph* Graph = FindGraph(Handle, GraphName);
	FSimulatedNode* NodeA = Graph ? Graph->FindNodeByGuid(PinA.NodeGuid) : nullptr;
	FSimulatedNode* NodeB = Graph ? Graph->FindNodeByGuid(PinB.NodeGuid) : nullptr;
	FSimulatedPin* A = NodeA ? NodeA->FindPin(PinA.PinName.ToString(), PinA.Direction) : nullptr;
	FSimulatedPin* B = NodeB ? NodeB->FindPin(PinB.PinName.ToString(), PinB.Direction) : nullptr;
	if (!A || !B)
	{
		return Result;
	}
	FSimulatedBlueprints& Model = GetModel();
	const FSimulatedConnectionResponse Response = Model.CanCreateConnection(*A, *B);
	Result.Response = static_cast<EZorvekMCPBridgeConnectResponse>(Response.Response);
	Result.Message = Response.Message;
	FSimulatedNode* Conversion = nullptr;
	Result.bConnected = Model.TryCreateConnection(*A, *B, &Conversion);
	Result.ConversionNodeGuid = Conversion ? Conversion->NodeGuid : FString();
	DirtyPackageIfModified(FindBlueprint(Handle));
	return Result;
}

bool FSimulatedBlueprintPort::SetNodePosition(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& NodeGuid, int32 PosX, int32 PosY)
{
	FSimulatedGraph* Graph = FindGraph(Handle, GraphName);
	FSimulatedNode* Node = Graph ? Graph->FindNodeByGuid(NodeGuid) : nullptr;
	if (!Node)
	{
		return false;
	}
	Node->PosX = PosX;
	Node->PosY = PosY;
	return true;
}

FZorvekMCPBridgeNodeSnapshot FSimulatedBlueprintPort::AddComment(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& CommentText,
	int32 PosX, int32 PosY, int32 Width, int32 Height, int32 FontSize)
{
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	FSimulatedGraph* Graph = FindGraph(Handle, GraphName);
	if (!Blueprint || !Graph)
	{
		return FZorvekMCPBridgeNodeSnapshot();
	}
	FSimulatedNode* Comment = GetModel().AddCommentNode(*Graph, CommentText, PosX, PosY, Width, Height);
	if (FontSize > 0)
	{
		Comment->Data.CommentFontSize = FontSize;
	}
	return SnapshotNode(*Blueprint, *Comment);
}

FZorvekMCPBridgeCompileResult FSimulatedBlueprintPort::Compile(FZorvekMCPBridgeObjectHandle Handle, uint32 CompileFlags)
{
	// The flags change nothing the simulation models (32 is SkipSave).
	(void)CompileFlags;
	FZorvekMCPBridgeCompileResult Result;
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	if (!Blueprint)
	{
		return Result;
	}
	FSimulatedCompilerResultsLog Log;
	const double Start = FPlatformTime::Seconds();
	GetModel().Compile(*Blueprint, &Log);
	Result.DurationSeconds = FPlatformTime::Seconds() - Start;
	Result.NumErrors = Log.NumErrors;
	Result.NumWarnings = Log.NumWarnings;
	for (const FSimulatedCompilerMessage& Message : Log.Messages)
	{
		FZorvekMCPBridgeCompileMessage& Out = Result.Messages.Emplace_GetRef();
		Out.Severity = static_cast<EZorvekMCPBridgeCompileSeverity>(Message.Severity);
		Out.SeverityText = FSimulatedCompilerResultsLog::GetSeverityText(Message.Severity);
		Out.Text = Message.Text;
	}
	return Result;
}

bool FSimulatedBlueprintPort::GetMacroGraphNames(const FString& LibraryObjectPath, TArray<FString>& OutMacroNames) const
{
	OutMacroNames.Reset();
	const FSimulatedBlueprint* Library = GetModel().FindBlueprint(Editor.FindObject(LibraryObjectPath));
	if (!Library)
	{
		return false;
	}
	for (const std::unique_ptr<FSimulatedGraph>& Graph : Library->MacroGraphs)
	{
		OutMacroNames.Add(Graph->GetName());
	}
	return true;
}

bool FSimulatedBlueprintPort::GetKeyInfo(const FString& KeyName, FZorvekMCPBridgeKeyInfo& OutKey) const
{
	const FSimulatedKeyDetails* Key = FSimulatedKeys::Find(KeyName);
	if (!Key)
	{
		return false;
	}
	OutKey = FZorvekMCPBridgeKeyInfo();
	OutKey.KeyName = Key->Name;
	OutKey.DisplayName = Key->GetDisplayName(true);
	OutKey.bAxis1D = Key->IsAxis1D();
	OutKey.bAnalog = Key->IsAnalog();
	OutKey.bBindableInBlueprints = Key->IsBindableInBlueprints();
	OutKey.MenuCategory = Key->GetMenuCategory();
	return true;
}

bool FSimulatedBlueprintPort::FindClassVariable(const FString& ClassPath, const FString& VariableName, FZorvekMCPBridgeClassVariableInfo& OutVariable) const
{
	const FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
	if (!Class || Class->Kind != ESimulatedTypeKind::Class)
	{
		return false;
	}
	const FSimulatedBlueprints& Model = GetModel();
	const FSimulatedType* ComponentBase = Editor.FindTypeByPath(TEXT("/Script/Engine.ActorComponent"));
	for (const FSimulatedType* Current = Class; Current; Current = Current->Super)
	{
		for (const std::shared_ptr<FSimulatedProperty>& Property : Current->OwnProperties)
		{
			if (!Property->Name.Equals(VariableName, ESearchCase::IgnoreCase) || (Property->Flags & ZorvekMCPBridgePropertyFlags::BlueprintVisible) == 0)
			{
				continue;
			}
			FZorvekMCPBridgePinType PinType;
			if (!Model.GetPinTypeFromProperty(*Property, PinType))
			{
				return false;
			}
			OutVariable = FZorvekMCPBridgeClassVariableInfo();
			OutVariable.Name = Property->Name;
			OutVariable.OwnerClassPath = Current->GetPathName();
			OutVariable.PinType = PinType;
			OutVariable.bReadOnly = (Property->Flags & ZorvekMCPBridgePropertyFlags::BlueprintReadOnly) != 0;
			OutVariable.bIsComponent = Property->Type == ESimulatedPropertyType::Object && Property->TypeObject && ComponentBase && Property->TypeObject->IsChildOf(ComponentBase);
			return true;
		}
	}
	return false;
}

bool FSimulatedBlueprintPort::RemoveMemberVariable(FZorvekMCPBridgeObjectHandle Handle, const FName& VarName)
{
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	const int32 Index = Blueprint ? Blueprint->FindNewVariableIndex(VarName.ToString()) : INDEX_NONE;
	if (Index == INDEX_NONE)
	{
		return false;
	}
	// RemoveMemberVariable takes the variable's own Get and Set nodes with it (RemoveVariableNodes).
	for (FSimulatedGraph* Graph : Blueprint->GetAllGraphs())
	{
		std::vector<FSimulatedNode*> Doomed;
		for (const std::unique_ptr<FSimulatedNode>& Node : Graph->Nodes)
		{
			const bool bVariableNode = Node->Kind == EZorvekMCPBridgeNodeKind::VariableGet || Node->Kind == EZorvekMCPBridgeNodeKind::VariableSet;
			if (bVariableNode && Node->Data.bVariableSelfContext && !Node->Data.bLocalVariable && Node->Data.VariableName.Equals(VarName.ToString(), ESearchCase::IgnoreCase))
			{
				Doomed.push_back(Node.get());
			}
		}
		for (FSimulatedNode* Node : Doomed)
		{
			GetModel().RemoveNode(*Graph, *Node);
		}
	}
	Blueprint->NewVariables.erase(Blueprint->NewVariables.begin() + Index);
	GetModel().MarkStructurallyModified(*Blueprint);
	DirtyPackageIfModified(Blueprint);
	return true;
}
