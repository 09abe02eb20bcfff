// The construction script of simulated Blueprints: USimpleConstructionScript and USCS_Node with
// their component templates, names, the tree and the DefaultSceneRoot rule.
#include "SimulatedBlueprint.h"

#include "SimulatedEditor.h"

#include <algorithm>

namespace
{
	// Native actor classes whose default object already has a scene root component. The simulated
	// type library has no native default subobjects, so they are named here.
	const TCHAR* const SimComponentsNativeRootClasses[] = {
		TEXT("/Script/Engine.Character"),
		TEXT("/Script/Engine.DefaultPawn"),
		TEXT("/Script/Engine.StaticMeshActor"),
		TEXT("/Script/Engine.SkeletalMeshActor"),
		TEXT("/Script/Engine.CameraActor")};

	struct FSimComponentsNativeRoot
	{
		const TCHAR* ClassPath;
		const TCHAR* ComponentName;
	};

	const FSimComponentsNativeRoot SimComponentsNativeRootNames[] = {
		{TEXT("/Script/Engine.Character"), TEXT("CollisionCylinder")},
		{TEXT("/Script/Engine.DefaultPawn"), TEXT("CollisionComponent")},
		{TEXT("/Script/Engine.StaticMeshActor"), TEXT("StaticMeshComponent0")},
		{TEXT("/Script/Engine.SkeletalMeshActor"), TEXT("SkeletalMeshComponent0")},
		{TEXT("/Script/Engine.CameraActor"), TEXT("SceneComponent")}};

	void SimComponentsRemove(std::vector<FSimulatedSCSNode*>& List, const FSimulatedSCSNode* Node)
	{
		List.erase(std::remove(List.begin(), List.end(), Node), List.end());
	}

	bool SimComponentsContains(const std::vector<FSimulatedSCSNode*>& List, const FSimulatedSCSNode* Node)
	{
		return std::find(List.begin(), List.end(), Node) != List.end();
	}
}

FSimulatedSCSNode* FSimulatedConstructionScript::FindNode(const FString& Name) const
{
	for (const std::unique_ptr<FSimulatedSCSNode>& Node : Storage)
	{
		if (!SimComponentsContains(AllNodes, Node.get()) && Node.get() != DefaultSceneRootNode)
		{
			continue;
		}
		if (Node->VariableName.Equals(Name, ESearchCase::IgnoreCase) || (Node->ComponentTemplate && Node->ComponentTemplate->Name.Equals(Name, ESearchCase::IgnoreCase)))
		{
			return Node.get();
		}
	}
	return nullptr;
}

FSimulatedSCSNode* FSimulatedConstructionScript::FindNodeByObject(const FSimulatedObject* NodeObject) const
{
	for (const std::unique_ptr<FSimulatedSCSNode>& Node : Storage)
	{
		if (Node->Object == NodeObject)
		{
			return Node.get();
		}
	}
	return nullptr;
}

FSimulatedSCSNode* FSimulatedConstructionScript::FindParent(const FSimulatedSCSNode* Child) const
{
	for (const std::unique_ptr<FSimulatedSCSNode>& Node : Storage)
	{
		if (SimComponentsContains(Node->ChildNodes, Child))
		{
			return Node.get();
		}
	}
	return nullptr;
}

bool FSimulatedBlueprints::IsActorComponentClass(const FSimulatedType* Class) const
{
	const FSimulatedType* ActorComponent = Editor.FindTypeByPath(TEXT("/Script/Engine.ActorComponent"));
	return Class && ActorComponent && Class->Kind == ESimulatedTypeKind::Class && Class->IsChildOf(ActorComponent);
}

bool FSimulatedBlueprints::IsSceneComponentClass(const FSimulatedType* Class) const
{
	const FSimulatedType* SceneComponent = Editor.FindTypeByPath(TEXT("/Script/Engine.SceneComponent"));
	return Class && SceneComponent && Class->IsChildOf(SceneComponent);
}

FString FSimulatedBlueprints::GenerateNewComponentName(const FSimulatedBlueprint& Blueprint, const FSimulatedType& ComponentClass, const FString& DesiredName) const
{
	TArray<FString> Taken;
	if (Blueprint.GeneratedClass)
	{
		const FSimulatedType* Generated = Blueprint.GeneratedClass;
		Editor.ForEachObject([&Taken, Generated](FSimulatedObject* Object)
		{
			if (Object->Outer == Generated)
			{
				Taken.Add(Object->Name);
			}
		});
	}
	for (const FSimulatedVariable& Variable : Blueprint.NewVariables)
	{
		Taken.Add(Variable.VarName.ToString());
	}
	if (Blueprint.SkeletonClass)
	{
		for (const FSimulatedType* Class = Blueprint.SkeletonClass; Class; Class = Class->Super)
		{
			for (const std::shared_ptr<FSimulatedFunction>& Function : Class->Functions)
			{
				Taken.Add(Function->Name);
			}
		}
	}
	if (Blueprint.ConstructionScript)
	{
		for (const std::unique_ptr<FSimulatedSCSNode>& Node : Blueprint.ConstructionScript->Storage)
		{
			if (SimComponentsContains(Blueprint.ConstructionScript->AllNodes, Node.get()) || Node.get() == Blueprint.ConstructionScript->DefaultSceneRootNode)
			{
				Taken.Add(Node->VariableName);
			}
		}
	}
	for (const FSimComponentsNativeRoot& Native : SimComponentsNativeRootNames)
	{
		const FSimulatedType* NativeClass = Editor.FindTypeByPath(Native.ClassPath);
		if (NativeClass && Blueprint.ParentClass && Blueprint.ParentClass->IsChildOf(NativeClass))
		{
			Taken.Add(Native.ComponentName);
		}
	}
	auto IsTaken = [&Taken](const FString& Name)
	{
		return Taken.ContainsByPredicate([&Name](const FString& Entry) { return Entry.Equals(Name, ESearchCase::IgnoreCase); });
	};

	FString Base = DesiredName;
	if (Base.IsEmpty())
	{
		Base = ComponentClass.Name;
		const bool bNative = (ComponentClass.ClassFlags & ZorvekMCPBridgeClassFlags::Native) != 0;
		if (bNative && Base.EndsWith(TEXT("Component")) && Base.Len() > 9)
		{
			Base.LeftChopInline(9);
		}
		else if (!bNative && Base.EndsWith(TEXT("_C")))
		{
			Base.LeftChopInline(2);
		}
	}
	if (!IsTaken(Base))
	{
		return Base;
	}
	// Trailing digits are where counting continues: Mesh1 -> Mesh2.
	int32 DigitStart = Base.Len();
	while (DigitStart > 0 && FChar::IsDigit(Base[DigitStart - 1]))
	{
		--DigitStart;
	}
	int32 Counter = DigitStart < Base.Len() ? FCString::Atoi(*Base.Mid(DigitStart)) + 1 : 1;
	const FString Stem = Base.Left(DigitStart);
	FString Candidate = FString::Printf(TEXT("%s%d"), *Stem, Counter);
	while (IsTaken(Candidate))
	{
		Candidate = FString::Printf(TEXT("%s%d"), *Stem, ++Counter);
	}
	return Candidate;
}

FSimulatedSCSNode* FSimulatedBlueprints::CreateComponentNode(FSimulatedBlueprint& Blueprint, FSimulatedType* ComponentClass, const FString& DesiredName)
{
	FSimulatedConstructionScript* Script = Blueprint.ConstructionScript.get();
	if (!Script || !Script->Object || !Blueprint.GeneratedClass || !IsActorComponentClass(ComponentClass))
	{
		return nullptr;
	}
	const FString VariableName = GenerateNewComponentName(Blueprint, *ComponentClass, DesiredName);
	const FString TemplateName = VariableName + TEXT("_GEN_VARIABLE");
	if (FSimulatedObject* Existing = Editor.FindObject(Blueprint.GeneratedClass->GetPathName() + TEXT(":") + TemplateName))
	{
		RenameAway(*Existing);
	}
	FString Error;
	FSimulatedObject* Template = Editor.CreateObject(ComponentClass, Blueprint.GeneratedClass, TemplateName, Error);
	FSimulatedType* NodeClass = FindOrAddModelClass(TEXT("/Script/Engine.SCS_Node"), TEXT("/Script/CoreUObject.Object"));
	FString NodeName;
	do
	{
		NodeName = FString::Printf(TEXT("SCS_Node_%d"), Script->NextNodeNumber++);
	} while (Editor.FindObject(Script->Object->GetPathName() + TEXT(".") + NodeName));
	FSimulatedObject* NodeObject = Editor.CreateObject(NodeClass, Script->Object, NodeName, Error);
	if (!Template || !NodeObject)
	{
		return nullptr;
	}
	std::unique_ptr<FSimulatedSCSNode> Node = std::make_unique<FSimulatedSCSNode>();
	Node->Object = NodeObject;
	Node->VariableName = VariableName;
	Node->ComponentClass = ComponentClass;
	Node->ComponentTemplate = Template;
	Node->CategoryName = TEXT("Default");
	Node->VariableGuid = NewGuid();
	FSimulatedSCSNode* Result = Node.get();
	Script->Storage.push_back(std::move(Node));
	return Result;
}

void FSimulatedBlueprints::AddRootComponentNode(FSimulatedBlueprint& Blueprint, FSimulatedSCSNode& Node)
{
	FSimulatedConstructionScript* Script = Blueprint.ConstructionScript.get();
	if (!Script || SimComponentsContains(Script->RootNodes, &Node))
	{
		return;
	}
	Script->RootNodes.push_back(&Node);
	if (!SimComponentsContains(Script->AllNodes, &Node))
	{
		Script->AllNodes.push_back(&Node);
	}
	ValidateSceneRootNodes(Blueprint);
}

void FSimulatedBlueprints::AddChildComponentNode(FSimulatedBlueprint& Blueprint, FSimulatedSCSNode& Parent, FSimulatedSCSNode& Child)
{
	FSimulatedConstructionScript* Script = Blueprint.ConstructionScript.get();
	if (!Script || SimComponentsContains(Parent.ChildNodes, &Child))
	{
		return;
	}
	Parent.ChildNodes.push_back(&Child);
	if (!SimComponentsContains(Script->AllNodes, &Child))
	{
		Script->AllNodes.push_back(&Child);
	}
}

void FSimulatedBlueprints::RemoveComponentNode(FSimulatedBlueprint& Blueprint, FSimulatedSCSNode& Node)
{
	FSimulatedConstructionScript* Script = Blueprint.ConstructionScript.get();
	if (!Script)
	{
		return;
	}
	// The node's subtree leaves the tree with it.
	std::vector<FSimulatedSCSNode*> Subtree = {&Node};
	for (size_t Index = 0; Index < Subtree.size(); ++Index)
	{
		for (FSimulatedSCSNode* Child : Subtree[Index]->ChildNodes)
		{
			Subtree.push_back(Child);
		}
	}
	const bool bRoot = SimComponentsContains(Script->RootNodes, &Node);
	if (bRoot)
	{
		SimComponentsRemove(Script->RootNodes, &Node);
		Node.bIsParentComponentNative = false;
		Node.ParentComponentOrVariableName.Reset();
		Node.ParentComponentOwnerClassName.Reset();
	}
	else if (FSimulatedSCSNode* Parent = Script->FindParent(&Node))
	{
		SimComponentsRemove(Parent->ChildNodes, &Node);
	}
	for (FSimulatedSCSNode* Removed : Subtree)
	{
		SimComponentsRemove(Script->AllNodes, Removed);
		// The simulation also frees the names, so a half-made node leaves nothing behind.
		if (Removed != Script->DefaultSceneRootNode)
		{
			if (Removed->ComponentTemplate)
			{
				RenameAway(*Removed->ComponentTemplate);
			}
			if (Removed->Object)
			{
				RenameAway(*Removed->Object);
			}
		}
	}
	if (bRoot)
	{
		ValidateSceneRootNodes(Blueprint);
	}
}

void FSimulatedBlueprints::ValidateSceneRootNodes(FSimulatedBlueprint& Blueprint)
{
	FSimulatedConstructionScript* Script = Blueprint.ConstructionScript.get();
	if (!Script || !Script->DefaultSceneRootNode)
	{
		return;
	}
	FSimulatedSCSNode* DefaultRoot = Script->DefaultSceneRootNode;

	// The current root candidate: a native root of the parent class, else the first scene root
	// node of a parent Blueprint, else of this one.
	FString NativeRootName;
	FString NativeRootOwner;
	for (const FSimComponentsNativeRoot& Native : SimComponentsNativeRootNames)
	{
		const FSimulatedType* NativeClass = Editor.FindTypeByPath(Native.ClassPath);
		if (NativeClass && Blueprint.ParentClass && Blueprint.ParentClass->IsChildOf(NativeClass))
		{
			NativeRootName = Native.ComponentName;
			NativeRootOwner = NativeClass->Name;
			break;
		}
	}
	const FSimulatedSCSNode* InheritedRoot = nullptr;
	FString InheritedOwner;
	for (const FSimulatedType* Class = Blueprint.ParentClass; Class && NativeRootName.IsEmpty() && !InheritedRoot; Class = Class->Super)
	{
		const FSimulatedBlueprint* Parent = FindBlueprintByClass(Class);
		if (!Parent || !Parent->ConstructionScript)
		{
			continue;
		}
		for (const FSimulatedSCSNode* Root : Parent->ConstructionScript->RootNodes)
		{
			if (IsSceneComponentClass(Root->ComponentClass))
			{
				InheritedRoot = Root;
				InheritedOwner = Class->Name;
				break;
			}
		}
	}
	FSimulatedSCSNode* OwnRoot = nullptr;
	if (NativeRootName.IsEmpty() && !InheritedRoot)
	{
		for (FSimulatedSCSNode* Root : Script->RootNodes)
		{
			if (Root != DefaultRoot && IsSceneComponentClass(Root->ComponentClass))
			{
				OwnRoot = Root;
				break;
			}
		}
	}
	const bool bHasCandidate = !NativeRootName.IsEmpty() || InheritedRoot || OwnRoot;
	const bool bDefaultListed = SimComponentsContains(Script->RootNodes, DefaultRoot);
	if (!bHasCandidate && !bDefaultListed)
	{
		Script->RootNodes.push_back(DefaultRoot);
		if (!SimComponentsContains(Script->AllNodes, DefaultRoot))
		{
			Script->AllNodes.push_back(DefaultRoot);
		}
	}
	else if (bHasCandidate && bDefaultListed)
	{
		SimComponentsRemove(Script->RootNodes, DefaultRoot);
		SimComponentsRemove(Script->AllNodes, DefaultRoot);
		std::vector<FSimulatedSCSNode*> Children = std::move(DefaultRoot->ChildNodes);
		DefaultRoot->ChildNodes.clear();
		for (FSimulatedSCSNode* Child : Children)
		{
			if (OwnRoot)
			{
				OwnRoot->ChildNodes.push_back(Child);
			}
			else
			{
				Child->ParentComponentOrVariableName = InheritedRoot ? InheritedRoot->VariableName : NativeRootName;
				Child->bIsParentComponentNative = !InheritedRoot;
				Child->ParentComponentOwnerClassName = InheritedRoot ? InheritedOwner : NativeRootOwner;
				Script->RootNodes.push_back(Child);
			}
		}
	}
}
