#include "SimulatedBlueprintPort.h"

#include "SimulatedAssetAuthoring.h"
#include "SimulatedBlueprint.h"
#include "SimulatedEditor.h"
#include "SimulatedEditorPort.h"

namespace
{
	FZorvekMCPBridgeGraphPinSnapshot SimPortPinSnapshot(const FSimulatedPin& Pin)
	{
		FZorvekMCPBridgeGraphPinSnapshot Snapshot;
		Snapshot.Pin.PinName = Pin.PinName;
		Snapshot.Pin.Direction = Pin.Direction;
		Snapshot.Pin.PinType = Pin.PinType;
		Snapshot.Pin.DefaultValue = !Pin.DefaultValue.IsEmpty() ? Pin.DefaultValue : (Pin.DefaultObject ? Pin.DefaultObject->GetPathName() : Pin.DefaultTextValue);
		Snapshot.bHidden = Pin.bHidden;
		Snapshot.bAdvancedView = Pin.bAdvancedView;
		for (const FSimulatedPin* Linked : Pin.LinkedTo)
		{
			if (Linked && Linked->OwningNode)
			{
				Snapshot.LinkedTo.Add({Linked->OwningNode->NodeGuid, Linked->PinName});
			}
		}
		return Snapshot;
	}

	void SimPortAddComponent(const FSimulatedSCSNode& Node, const FString& ParentName, bool bRoot, TArray<FZorvekMCPBridgeComponentSnapshot>& OutComponents)
	{
		FZorvekMCPBridgeComponentSnapshot& Snapshot = OutComponents.Emplace_GetRef();
		Snapshot.Name = Node.VariableName;
		Snapshot.ComponentClassPath = Node.ComponentClass ? Node.ComponentClass->GetPathName() : FString();
		Snapshot.ComponentClassName = Node.ComponentClass ? Node.ComponentClass->Name : FString();
		Snapshot.Template = FSimulatedEditorPort::ToHandle(Node.ComponentTemplate);
		Snapshot.TemplatePath = Node.ComponentTemplate ? Node.ComponentTemplate->GetPathName() : FString();
		Snapshot.ParentComponentName = ParentName;
		Snapshot.bIsRootNode = bRoot;
		for (const FSimulatedSCSNode* Child : Node.ChildNodes)
		{
			SimPortAddComponent(*Child, Node.VariableName, false, OutComponents);
		}
	}

}

FSimulatedBlueprintPort::FSimulatedBlueprintPort(FSimulatedEditor& InEditor, FSimulatedAssetAuthoring& InAssetAuthoring)
	: Editor(InEditor)
	, AssetAuthoring(InAssetAuthoring)
{
}

void FSimulatedBlueprintPort::DirtyPackageIfModified(const FSimulatedBlueprint* Blueprint)
{
	if (Blueprint && Blueprint->Status == EZorvekMCPBridgeBlueprintStatus::Dirty)
	{
		AssetAuthoring.MarkPackageDirty(FSimulatedEditorPort::ToHandle(Blueprint->Object));
	}
}

FSimulatedBlueprints& FSimulatedBlueprintPort::GetModel() const
{
	return Editor.GetBlueprints();
}

FSimulatedBlueprint* FSimulatedBlueprintPort::FindBlueprint(FZorvekMCPBridgeObjectHandle Handle) const
{
	return GetModel().FindBlueprint(FSimulatedEditorPort::ToObject(Handle));
}

FZorvekMCPBridgeNodeSnapshot FSimulatedBlueprintPort::SnapshotNode(const FSimulatedBlueprint& Blueprint, const FSimulatedNode& Node) const
{
	const FSimulatedBlueprints& Model = GetModel();
	FZorvekMCPBridgeNodeSnapshot NodeSnapshot;
	NodeSnapshot.NodeGuid = Node.NodeGuid;
	NodeSnapshot.NodeClass = Node.NodeClass;
	NodeSnapshot.Title = Model.GetNodeTitle(Node);
	NodeSnapshot.PosX = Node.PosX;
	NodeSnapshot.PosY = Node.PosY;
	NodeSnapshot.Width = Node.Width;
	NodeSnapshot.Height = Node.Height;
	NodeSnapshot.Comment = Node.NodeComment;
	NodeSnapshot.bEnabled = Node.EnabledState == ESimulatedNodeEnabledState::Enabled;
	NodeSnapshot.Kind = Node.Kind;
	NodeSnapshot.Data = Node.Data;
	if (Node.Kind == EZorvekMCPBridgeNodeKind::FunctionCall)
	{
		// The function as it resolves now, through the class the reference names.
		const FSimulatedType* Owner = Editor.FindTypeByPath(Node.Data.MemberParentClassPath);
		const FSimulatedFunction* Function = Owner ? Owner->FindFunction(Node.Data.MemberName) : nullptr;
		NodeSnapshot.Data.FunctionPath = Function && Function->Owner ? Function->Owner->GetPathName() + TEXT(":") + Function->Name : FString();
	}
	if (Node.Kind == EZorvekMCPBridgeNodeKind::VariableGet || Node.Kind == EZorvekMCPBridgeNodeKind::VariableSet)
	{
		// A variable that no longer exists has no owner to report.
		FZorvekMCPBridgePinType VariableType;
		FString VariableGuid;
		FSimulatedType* Owner = nullptr;
		const FSimulatedType* ExternalOwner = Node.Data.bVariableSelfContext ? nullptr : Editor.FindTypeByPath(Node.Data.VariableOwnerClassPath);
		const bool bExists = Node.Data.bVariableSelfContext ? Model.FindVariableType(Blueprint, Node.Data.VariableName, VariableType, VariableGuid, Owner)
															: (ExternalOwner && ExternalOwner->FindPropertyIndex(Node.Data.VariableName) != INDEX_NONE);
		if (!bExists)
		{
			NodeSnapshot.Data.VariableOwnerClassPath.Reset();
			NodeSnapshot.Data.VariableOwnerClassName.Reset();
			NodeSnapshot.Data.VariableOwnerBlueprintPath.Reset();
		}
	}
	for (const std::unique_ptr<FSimulatedPin>& Pin : Node.Pins)
	{
		NodeSnapshot.Pins.Add(SimPortPinSnapshot(*Pin));
	}
	return NodeSnapshot;
}

bool FSimulatedBlueprintPort::ReadBlueprint(FZorvekMCPBridgeObjectHandle Handle, FZorvekMCPBridgeBlueprintSnapshot& OutSnapshot) const
{
	const FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	if (!Blueprint)
	{
		return false;
	}
	const FSimulatedBlueprints& Model = GetModel();
	OutSnapshot = FZorvekMCPBridgeBlueprintSnapshot();
	OutSnapshot.Blueprint = Handle;
	OutSnapshot.Name = Blueprint->GetName();
	OutSnapshot.Path = Blueprint->Object->GetPathName();
	if (Blueprint->ParentClass)
	{
		OutSnapshot.ParentClassPath = Blueprint->ParentClass->GetPathName();
		OutSnapshot.ParentClassName = Blueprint->ParentClass->Name;
	}
	OutSnapshot.GeneratedClassPath = Blueprint->GeneratedClass ? Blueprint->GeneratedClass->GetPathName() : FString();
	OutSnapshot.SkeletonClassPath = Blueprint->SkeletonClass ? Blueprint->SkeletonClass->GetPathName() : FString();
	OutSnapshot.BlueprintType = Blueprint->BlueprintType;
	OutSnapshot.Status = Blueprint->Status;
	OutSnapshot.bHasConstructionScript = Blueprint->ConstructionScript != nullptr;

	for (const FSimulatedGraph* Graph : Blueprint->GetAllGraphs())
	{
		FZorvekMCPBridgeGraphSnapshot& GraphSnapshot = OutSnapshot.Graphs.Emplace_GetRef();
		GraphSnapshot.Name = Graph->GetName();
		GraphSnapshot.Kind = Graph->Kind;
		GraphSnapshot.InterfaceClassPath = Graph->InterfaceClass ? Graph->InterfaceClass->GetPathName() : FString();
		for (const std::unique_ptr<FSimulatedNode>& Node : Graph->Nodes)
		{
			GraphSnapshot.Nodes.Add(SnapshotNode(*Blueprint, *Node));
		}
	}

	for (const FSimulatedVariable& Variable : Blueprint->NewVariables)
	{
		FZorvekMCPBridgeVariableSnapshot& VariableSnapshot = OutSnapshot.Variables.Emplace_GetRef();
		VariableSnapshot.VarName = Variable.VarName;
		VariableSnapshot.VarGuid = Variable.VarGuid;
		VariableSnapshot.FriendlyName = Variable.FriendlyName;
		VariableSnapshot.Category = Variable.Category;
		VariableSnapshot.VarType = Variable.VarType;
		VariableSnapshot.DefaultValue = Variable.DefaultValue;
		VariableSnapshot.PropertyFlags = Variable.PropertyFlags;
		const FSimulatedObject* DefaultObject = Blueprint->DefaultObject;
		const int32 PropertyIndex = DefaultObject ? DefaultObject->Class->FindPropertyIndex(Variable.VarName.ToString()) : INDEX_NONE;
		if (PropertyIndex != INDEX_NONE && PropertyIndex < (int32)DefaultObject->Values.size())
		{
			VariableSnapshot.bHasClassDefaultValue = Editor.ExportValueText(*DefaultObject->Class->AllProperties[(size_t)PropertyIndex], DefaultObject->Values[(size_t)PropertyIndex],
				false, VariableSnapshot.ClassDefaultValue, DefaultObject);
		}
	}

	if (const FSimulatedConstructionScript* Script = Blueprint->ConstructionScript.get())
	{
		for (const FSimulatedSCSNode* Root : Script->RootNodes)
		{
			SimPortAddComponent(*Root, Root->ParentComponentOrVariableName, true, OutSnapshot.Components);
		}
	}

	for (const FSimulatedImplementedInterface& Interface : Blueprint->ImplementedInterfaces)
	{
		FZorvekMCPBridgeImplementedInterfaceSnapshot& InterfaceSnapshot = OutSnapshot.ImplementedInterfaces.Emplace_GetRef();
		if (Interface.Interface)
		{
			InterfaceSnapshot.InterfaceClassPath = Interface.Interface->GetPathName();
			InterfaceSnapshot.InterfaceClassName = Interface.Interface->Name;
			if (const FSimulatedBlueprint* InterfaceBlueprint = Model.FindBlueprintByClass(Interface.Interface))
			{
				InterfaceSnapshot.InterfaceBlueprintPath = InterfaceBlueprint->Object->GetPathName();
			}
		}
		for (const std::unique_ptr<FSimulatedGraph>& Graph : Interface.Graphs)
		{
			InterfaceSnapshot.GraphNames.Add(Graph->GetName());
		}
	}
	return true;
}

bool FSimulatedBlueprintPort::IsGraphNameUnique(FZorvekMCPBridgeObjectHandle Handle, const FString& Name) const
{
	const FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	return Blueprint && GetModel().IsGraphNameUnique(*Blueprint, Name);
}

bool FSimulatedBlueprintPort::GetInterfaceFunctions(const FString& InterfaceClassPath, TArray<FZorvekMCPBridgeInterfaceFunction>& OutFunctions) const
{
	const FSimulatedType* Interface = Editor.FindTypeByPath(InterfaceClassPath);
	if (!Interface || Interface->Kind != ESimulatedTypeKind::Class || (Interface->ClassFlags & ZorvekMCPBridgeClassFlags::Interface) == 0)
	{
		return false;
	}
	OutFunctions.Reset();
	for (const FSimulatedFunction* Function : GetModel().GetInterfaceFunctions(*Interface))
	{
		OutFunctions.Add({Function->Name, FSimulatedBlueprints::IsImplementedAsEvent(*Function)});
	}
	return true;
}

FString FSimulatedBlueprintPort::GetGeneratedInterfaceClassPath(FZorvekMCPBridgeObjectHandle Handle) const
{
	const FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	if (!Blueprint || Blueprint->BlueprintType != EZorvekMCPBridgeBlueprintType::Interface || !Blueprint->GeneratedClass)
	{
		return FString();
	}
	return Blueprint->GeneratedClass->GetPathName();
}

FZorvekMCPBridgeObjectHandle FSimulatedBlueprintPort::CreateBlueprint(FZorvekMCPBridgeObjectHandle Package, const FString& AssetName, const FString& ParentClassPath, EZorvekMCPBridgeBlueprintType BlueprintType)
{
	FSimulatedType* ParentClass = nullptr;
	if (!ParentClassPath.IsEmpty())
	{
		ParentClass = Editor.FindTypeByPath(ParentClassPath);
		if (!ParentClass || ParentClass->Kind != ESimulatedTypeKind::Class)
		{
			return FZorvekMCPBridgeObjectHandle();
		}
	}
	FString Error;
	const FSimulatedBlueprint* Blueprint = GetModel().CreateBlueprint(FSimulatedEditorPort::ToObject(Package), AssetName, ParentClass, BlueprintType, Error);
	return Blueprint ? FSimulatedEditorPort::ToHandle(Blueprint->Object) : FZorvekMCPBridgeObjectHandle();
}

bool FSimulatedBlueprintPort::AddMemberVariable(FZorvekMCPBridgeObjectHandle Handle, const FName& VarName, const FZorvekMCPBridgePinType& PinType, const FString& DefaultValue)
{
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	const bool bAdded = Blueprint && GetModel().AddMemberVariable(*Blueprint, VarName, PinType, DefaultValue);
	DirtyPackageIfModified(bAdded ? Blueprint : nullptr);
	return bAdded;
}

void FSimulatedBlueprintPort::SetVariableCategory(FZorvekMCPBridgeObjectHandle Handle, const FName& VarName, const FString& Category)
{
	if (FSimulatedBlueprint* Blueprint = FindBlueprint(Handle))
	{
		GetModel().SetVariableCategory(*Blueprint, VarName, Category);
		DirtyPackageIfModified(Blueprint);
	}
}

FZorvekMCPBridgeFunctionGraphResult FSimulatedBlueprintPort::CreateFunctionGraph(FZorvekMCPBridgeObjectHandle Handle, const FString& FunctionName,
	const TArray<FBlueprintParamSpec>& Inputs, const TArray<FBlueprintParamSpec>& Outputs)
{
	FZorvekMCPBridgeFunctionGraphResult Result;
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	FSimulatedBlueprints& Model = GetModel();
	FSimulatedGraph* Graph = Blueprint ? Model.AddFunctionGraph(*Blueprint, Model.CreateNewGraph(*Blueprint, FunctionName)) : nullptr;
	if (!Graph)
	{
		Result.Failure = EZorvekMCPBridgeFunctionGraphFailure::GraphNotCreated;
		return Result;
	}
	Result.GraphName = Graph->GetName();
	DirtyPackageIfModified(Blueprint);
	FSimulatedNode* Entry = Graph->FindNodeOfClass(TEXT("K2Node_FunctionEntry"));
	if (!Entry)
	{
		Result.Failure = EZorvekMCPBridgeFunctionGraphFailure::NoEntryNode;
		return Result;
	}
	FSimulatedNode* ResultNode = Model.FindOrCreateFunctionResultNode(*Graph);
	if (!ResultNode)
	{
		Result.Failure = EZorvekMCPBridgeFunctionGraphFailure::NoResultNode;
		return Result;
	}
	for (const FBlueprintParamSpec& Input : Inputs)
	{
		Model.CreateUserDefinedPin(*Entry, Input.Name, Input.PinType, EZorvekMCPBridgePinDirection::Output);
	}
	for (const FBlueprintParamSpec& Output : Outputs)
	{
		Model.CreateUserDefinedPin(*ResultNode, Output.Name, Output.PinType, EZorvekMCPBridgePinDirection::Input);
	}
	return Result;
}

bool FSimulatedBlueprintPort::CreateEventGraph(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName)
{
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	const bool bCreated = Blueprint && GetModel().AddUbergraphPage(*Blueprint, GetModel().CreateNewGraph(*Blueprint, GraphName)) != nullptr;
	DirtyPackageIfModified(bCreated ? Blueprint : nullptr);
	return bCreated;
}

FString FSimulatedBlueprintPort::AddCustomEvent(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& EventName, bool bCallInEditor,
	const TArray<FBlueprintParamSpec>& Parameters, int32 PosX, int32 PosY, FName& OutFailedParameter)
{
	OutFailedParameter = NAME_None;
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	FSimulatedGraph* Graph = Blueprint ? Blueprint->FindGraph(GraphName) : nullptr;
	if (!Graph)
	{
		return FString();
	}
	FSimulatedNode* Node = GetModel().AddCustomEventNode(*Graph, EventName, PosX, PosY);
	Node->Data.bCallInEditor = bCallInEditor;
	for (const FBlueprintParamSpec& Parameter : Parameters)
	{
		GetModel().CreateUserDefinedPin(*Node, Parameter.Name, Parameter.PinType, EZorvekMCPBridgePinDirection::Output);
	}
	return Node->NodeGuid;
}

bool FSimulatedBlueprintPort::ImplementInterface(FZorvekMCPBridgeObjectHandle Handle, const FString& InterfaceClassPath)
{
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	FSimulatedType* Interface = Editor.FindTypeByPath(InterfaceClassPath);
	if (!Blueprint || !Interface)
	{
		return false;
	}
	FString Message;
	const bool bImplemented = GetModel().ImplementNewInterface(*Blueprint, Interface, Message);
	if (!Message.IsEmpty())
	{
		Notifications.Add(Message);
	}
	DirtyPackageIfModified(bImplemented ? Blueprint : nullptr);
	return bImplemented;
}

FString FSimulatedBlueprintPort::AddInterfaceEvent(FZorvekMCPBridgeObjectHandle Handle, const FString& GraphName, const FString& InterfaceClassPath,
	const FString& FunctionName, int32 PosX, int32 PosY)
{
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	FSimulatedGraph* Graph = Blueprint ? Blueprint->FindGraph(GraphName) : nullptr;
	const FSimulatedType* Interface = Editor.FindTypeByPath(InterfaceClassPath);
	const FSimulatedFunction* Function = Interface ? Interface->FindFunction(FunctionName) : nullptr;
	if (!Graph || !Function)
	{
		return FString();
	}
	return GetModel().AddEventNode(*Graph, *Function, PosX, PosY)->NodeGuid;
}

FZorvekMCPBridgeObjectHandle FSimulatedBlueprintPort::CreateComponentValidationObject(const FString& ComponentClassPath)
{
	FSimulatedType* ComponentClass = Editor.FindTypeByPath(ComponentClassPath);
	if (!GetModel().IsActorComponentClass(ComponentClass))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	FSimulatedObject* Transient = Editor.FindOrCreatePackage(TEXT("/Engine/Transient"));
	FString Error;
	FSimulatedObject* Object = nullptr;
	while (!Object && ValidationObjectCount < INT32_MAX)
	{
		const FString Name = FString::Printf(TEXT("%s_%d"), *ComponentClass->Name, ValidationObjectCount++);
		if (!Editor.FindObject(Transient->GetPathName() + TEXT(".") + Name))
		{
			Object = Editor.CreateObject(ComponentClass, Transient, Name, Error);
		}
	}
	return FSimulatedEditorPort::ToHandle(Object);
}

FZorvekMCPBridgeObjectHandle FSimulatedBlueprintPort::CreateComponentNode(FZorvekMCPBridgeObjectHandle Handle, const FString& ComponentClassPath, const FString& ComponentName,
	FZorvekMCPBridgeObjectHandle& OutTemplate)
{
	OutTemplate = FZorvekMCPBridgeObjectHandle();
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	FSimulatedType* ComponentClass = Editor.FindTypeByPath(ComponentClassPath);
	const FSimulatedSCSNode* Node = Blueprint && ComponentClass ? GetModel().CreateComponentNode(*Blueprint, ComponentClass, ComponentName) : nullptr;
	if (!Node)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	OutTemplate = FSimulatedEditorPort::ToHandle(Node->ComponentTemplate);
	return FSimulatedEditorPort::ToHandle(Node->Object);
}

void FSimulatedBlueprintPort::AttachComponentNode(FZorvekMCPBridgeObjectHandle Handle, FZorvekMCPBridgeObjectHandle NodeHandle, const FString& ParentComponentName)
{
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	FSimulatedSCSNode* Node = Blueprint && Blueprint->ConstructionScript ? Blueprint->ConstructionScript->FindNodeByObject(FSimulatedEditorPort::ToObject(NodeHandle)) : nullptr;
	if (!Node)
	{
		return;
	}
	if (ParentComponentName.IsEmpty())
	{
		GetModel().AddRootComponentNode(*Blueprint, *Node);
	}
	else if (FSimulatedSCSNode* Parent = Blueprint->ConstructionScript->FindNode(ParentComponentName))
	{
		GetModel().AddChildComponentNode(*Blueprint, *Parent, *Node);
	}
}

void FSimulatedBlueprintPort::RemoveComponentNode(FZorvekMCPBridgeObjectHandle Handle, FZorvekMCPBridgeObjectHandle NodeHandle)
{
	FSimulatedBlueprint* Blueprint = FindBlueprint(Handle);
	FSimulatedSCSNode* Node = Blueprint && Blueprint->ConstructionScript ? Blueprint->ConstructionScript->FindNodeByObject(FSimulatedEditorPort::ToObject(NodeHandle)) : nullptr;
	if (Node)
	{
		GetModel().RemoveComponentNode(*Blueprint, *Node);
	}
}

void FSimulatedBlueprintPort::MarkStructurallyModified(FZorvekMCPBridgeObjectHandle Handle)
{
	if (FSimulatedBlueprint* Blueprint = FindBlueprint(Handle))
	{
		GetModel().MarkStructurallyModified(*Blueprint);
		DirtyPackageIfModified(Blueprint);
	}
}

void FSimulatedBlueprintPort::MarkModified(FZorvekMCPBridgeObjectHandle Handle)
{
	if (FSimulatedBlueprint* Blueprint = FindBlueprint(Handle))
	{
		GetModel().MarkModified(*Blueprint);
		DirtyPackageIfModified(Blueprint);
	}
}
