#include "SimulatedWorld.h"

#include "SimulatedBlueprint.h"
#include "SimulatedPcg.h"
#include "SimulatedViewport.h"
#include "SimulatedWorldSpline.h"

#include <algorithm>

namespace
{
	const TCHAR* const SimWorldActorClassPath = TEXT("/Script/Engine.Actor");
	const TCHAR* const SimWorldSceneComponentClassPath = TEXT("/Script/Engine.SceneComponent");
	const TCHAR* const SimWorldStaticMeshComponentClassPath = TEXT("/Script/Engine.StaticMeshComponent");
	const TCHAR* const SimWorldCapsuleComponentClassPath = TEXT("/Script/Engine.CapsuleComponent");
	const TCHAR* const SimWorldPrimitiveComponentClassPath = TEXT("/Script/Engine.PrimitiveComponent");
	const TCHAR* const SimWorldBillboardComponentClassPath = TEXT("/Script/Engine.BillboardComponent");
	const TCHAR* const SimWorldPcgComponentClassPath = TEXT("/Script/PCG.PCGComponent");

	// Splits a trailing number off a label: "Cube12" -> "Cube", 12; "Cube" -> "Cube", 0.
	void SimWorldSplitLabel(const FString& Label, FString& OutPrefix, int32& OutNumber)
	{
		int32 FirstDigit = Label.Len();
		while (FirstDigit > 0 && FChar::IsDigit(Label[FirstDigit - 1]))
		{
			--FirstDigit;
		}
		// A label that is all digits keeps them as its prefix.
		if (FirstDigit == 0 || FirstDigit == Label.Len() || Label.Len() - FirstDigit > 9)
		{
			OutPrefix = Label;
			OutNumber = 0;
			return;
		}
		OutPrefix = Label.Left(FirstDigit);
		OutNumber = FCString::Atoi(*Label.Mid(FirstDigit));
	}

	FSimulatedVector SimWorldVectorFromValue(const FSimulatedValue& Value)
	{
		if (Value.Items.size() < 3)
		{
			return FSimulatedVector();
		}
		return {Value.Items[0].Real, Value.Items[1].Real, Value.Items[2].Real};
	}

	void SimWorldVectorToValue(const FSimulatedVector& Vector, FSimulatedValue& Value)
	{
		if (Value.Items.size() >= 3)
		{
			Value.Items[0].Real = Vector.X;
			Value.Items[1].Real = Vector.Y;
			Value.Items[2].Real = Vector.Z;
		}
	}
}

FSimulatedComponent* FSimulatedActor::FindComponent(const FSimulatedObject* ComponentObject) const
{
	for (const std::unique_ptr<FSimulatedComponent>& Component : Components)
	{
		if (Component->Object == ComponentObject)
		{
			return Component.get();
		}
	}
	return nullptr;
}

FSimulatedWorld::FSimulatedWorld(FSimulatedEditor& InEditor)
	: Editor(InEditor)
	, Viewport(std::make_unique<FSimulatedViewport>(*this))
	, Pcg(std::make_unique<FSimulatedPcg>(*this))
	, Splines(std::make_unique<FSimulatedSplines>(*this))
{
}

FSimulatedWorld::~FSimulatedWorld() = default;

bool FSimulatedWorld::CreateEditorWorld(const FString& MapPackageName, FString& OutError)
{
	if (WorldObject)
	{
		OutError = TEXT("The simulated editor has a world already.");
		return false;
	}
	FSimulatedType* WorldClass = Editor.FindTypeByPath(TEXT("/Script/Engine.World"));
	FSimulatedType* LevelClass = Editor.FindTypeByPath(TEXT("/Script/Engine.Level"));
	if (!WorldClass || !LevelClass)
	{
		OutError = TEXT("The classes /Script/Engine.World and /Script/Engine.Level are not defined (include WorldEngineTypes.json).");
		return false;
	}
	FSimulatedObject* Package = Editor.FindOrCreatePackage(MapPackageName);
	if (!Package)
	{
		OutError = FString::Printf(TEXT("%s is an object, not a package."), *MapPackageName);
		return false;
	}
	int32 SlashIndex = INDEX_NONE;
	MapPackageName.FindLastChar(TEXT('/'), SlashIndex);
	WorldObject = Editor.CreateObject(WorldClass, Package, MapPackageName.Mid(SlashIndex + 1), OutError);
	LevelObject = WorldObject ? Editor.CreateObject(LevelClass, WorldObject, TEXT("PersistentLevel"), OutError) : nullptr;
	if (!LevelObject)
	{
		WorldObject = nullptr;
		return false;
	}
	return true;
}

void FSimulatedWorld::SetMeshInfo(const FSimulatedObject* Mesh, const FSimulatedMeshInfo& Info)
{
	Meshes[Mesh] = Info;
}

const FSimulatedMeshInfo* FSimulatedWorld::FindMeshInfo(const FSimulatedObject* Mesh) const
{
	const auto Found = Meshes.find(Mesh);
	return Found != Meshes.end() ? &Found->second : nullptr;
}

void FSimulatedWorld::SetNativeComponents(const FSimulatedType* ActorClass, std::vector<FSimulatedNativeComponent> Components)
{
	NativeComponents[ActorClass] = std::move(Components);
}

void FSimulatedWorld::AddVisualizedComponentClass(const FSimulatedType* ComponentClass)
{
	VisualizedComponentClasses.push_back(ComponentClass);
}

std::vector<FSimulatedActor*> FSimulatedWorld::GetAllLevelActors() const
{
	std::vector<FSimulatedActor*> Result;
	Result.reserve(LevelActors.size());
	for (FSimulatedActor* Actor : LevelActors)
	{
		if (Actor && !Actor->bTransient && !Actor->bPendingKill)
		{
			Result.push_back(Actor);
		}
	}
	return Result;
}

int32 FSimulatedWorld::GetLevelActorCount() const
{
	int32 Count = 0;
	for (const FSimulatedActor* Actor : LevelActors)
	{
		Count += (Actor && !Actor->bTransient && !Actor->bPendingKill) ? 1 : 0;
	}
	return Count;
}

std::vector<FSimulatedActor*> FSimulatedWorld::GetEveryActor() const
{
	std::vector<FSimulatedActor*> Result;
	for (FSimulatedActor* Actor : LevelActors)
	{
		if (Actor && !Actor->bPendingKill)
		{
			Result.push_back(Actor);
		}
	}
	return Result;
}

std::vector<FSimulatedActor*> FSimulatedWorld::GetSelectedActors() const
{
	return Selection;
}

bool FSimulatedWorld::IsSelected(const FSimulatedActor& Actor) const
{
	return std::find(Selection.begin(), Selection.end(), &Actor) != Selection.end();
}

FSimulatedActor* FSimulatedWorld::FindActor(const FSimulatedObject* ActorObject) const
{
	const auto Found = ActorsByObject.find(ActorObject);
	return Found != ActorsByObject.end() && !Found->second->bPendingKill ? Found->second : nullptr;
}

FSimulatedActor* FSimulatedWorld::FindActorByName(const FString& ObjectName) const
{
	for (FSimulatedActor* Actor : LevelActors)
	{
		if (Actor && !Actor->bPendingKill && Actor->Object->Name.Equals(ObjectName, ESearchCase::IgnoreCase))
		{
			return Actor;
		}
	}
	return nullptr;
}

bool FSimulatedWorld::IsActorClass(const FSimulatedType* Class) const
{
	const FSimulatedType* ActorClass = Editor.FindTypeByPath(SimWorldActorClassPath);
	return Class && ActorClass && Class->Kind == ESimulatedTypeKind::Class && Class->IsChildOf(ActorClass);
}

FString FSimulatedWorld::MakeUniqueActorName(const FSimulatedType& Class)
{
	// MakeUniqueObjectName: the class name and the class's next number, skipping taken names.
	int32& Unique = ClassUnique[&Class];
	FString Name;
	do
	{
		Name = FString::Printf(TEXT("%s_%d"), *Class.Name, Unique++);
	} while (Editor.FindObject(LevelObject->GetPathName() + TEXT(".") + Name));
	return Name;
}

FString FSimulatedWorld::GetDefaultActorLabel(const FSimulatedType& Class) const
{
	const bool bBlueprintClass = (Class.ClassFlags & ZorvekMCPBridgeClassFlags::CompiledFromBlueprint) != 0;
	if (bBlueprintClass && Class.Name.EndsWith(TEXT("_C"), ESearchCase::CaseSensitive))
	{
		return Class.Name.LeftChop(2);
	}
	return Class.Name;
}

bool FSimulatedWorld::IsLabelTaken(const FString& Label, const FSimulatedActor* Except) const
{
	// FString comparison ignores case, as the editor's uniqueness check does.
	const std::u16string Key = Label.ToLower().GetStorage();
	const auto Found = LabelUseCounts.find(Key);
	int32 Count = Found != LabelUseCounts.end() ? Found->second : 0;
	if (Except && Except->Label.Equals(Label, ESearchCase::IgnoreCase))
	{
		--Count;
	}
	return Count > 0;
}

void FSimulatedWorld::StoreLabel(FSimulatedActor& Actor, const FString& Label)
{
	if (!Actor.Label.IsEmpty())
	{
		ForgetLabel(Actor.Label);
	}
	Actor.Label = Label;
	++LabelUseCounts[Label.ToLower().GetStorage()];
}

void FSimulatedWorld::ForgetLabel(const FString& Label)
{
	const std::u16string Key = Label.ToLower().GetStorage();
	const auto Found = LabelUseCounts.find(Key);
	if (Found == LabelUseCounts.end() || --Found->second > 0)
	{
		return;
	}
	LabelUseCounts.erase(Found);
	FString Prefix;
	int32 Number = 0;
	SimWorldSplitLabel(Label, Prefix, Number);
	const auto Hint = FreeLabelNumberHints.find(Prefix.ToLower().GetStorage());
	if (Number >= 2 && Hint != FreeLabelNumberHints.end() && Number < Hint->second)
	{
		Hint->second = Number;
	}
}

void FSimulatedWorld::SetActorLabelUnique(FSimulatedActor& Actor, const FString& Label)
{
	FString Candidate = Label;
	if (IsLabelTaken(Candidate, &Actor))
	{
		FString Prefix;
		int32 Number = 0;
		SimWorldSplitLabel(Label, Prefix, Number);
		// An unnumbered label continues at 2: Cube, Cube2, Cube3. The engine tries numbers
		// upwards; the hint skips the ones known to be taken.
		int32 Next = FMath::Max(Number, 1) + 1;
		const std::u16string PrefixKey = Prefix.ToLower().GetStorage();
		const bool bFromTwo = Next == 2;
		if (bFromTwo)
		{
			const auto Hint = FreeLabelNumberHints.find(PrefixKey);
			Next = Hint != FreeLabelNumberHints.end() ? Hint->second : Next;
		}
		Candidate = FString::Printf(TEXT("%s%d"), *Prefix, Next);
		while (IsLabelTaken(Candidate, &Actor))
		{
			Candidate = FString::Printf(TEXT("%s%d"), *Prefix, ++Next);
		}
		if (bFromTwo)
		{
			FreeLabelNumberHints[PrefixKey] = Next + 1;
		}
	}
	StoreLabel(Actor, Candidate);
}

bool FSimulatedWorld::SetActorLabel(FSimulatedActor& Actor, const FString& Label)
{
	const FString Trimmed = Label.TrimStartAndEnd();
	if (Trimmed.IsEmpty())
	{
		return false;
	}
	StoreLabel(Actor, Trimmed);
	return true;
}

FSimulatedValue* FSimulatedWorld::FindValue(FSimulatedObject& Object, const FString& PropertyName) const
{
	return const_cast<FSimulatedValue*>(FindValue(static_cast<const FSimulatedObject&>(Object), PropertyName));
}

const FSimulatedValue* FSimulatedWorld::FindValue(const FSimulatedObject& Object, const FString& PropertyName) const
{
	if (!Object.Class)
	{
		return nullptr;
	}
	std::unordered_map<std::u16string, int32>& Indices = PropertyIndexCache[Object.Class];
	const std::u16string Key = PropertyName.ToLower().GetStorage();
	auto Found = Indices.find(Key);
	if (Found == Indices.end())
	{
		Found = Indices.emplace(Key, Object.Class->FindPropertyIndex(PropertyName)).first;
	}
	const int32 Index = Found->second;
	return Index != INDEX_NONE && Index < (int32)Object.Values.size() ? &Object.Values[(size_t)Index] : nullptr;
}

TArray<FName> FSimulatedWorld::GetTags(const FSimulatedActor& Actor) const
{
	TArray<FName> Tags;
	// Enumeration reads every actor's tags: the index per class is kept without a name lookup.
	auto Found = TagsIndexCache.find(Actor.Object->Class);
	if (Found == TagsIndexCache.end())
	{
		Found = TagsIndexCache.emplace(Actor.Object->Class, Actor.Object->Class->FindPropertyIndex(TEXT("Tags"))).first;
	}
	const int32 Index = Found->second;
	if (Index != INDEX_NONE && Index < (int32)Actor.Object->Values.size())
	{
		const FSimulatedValue* Value = &Actor.Object->Values[(size_t)Index];
		for (const FSimulatedValue& Item : Value->Items)
		{
			Tags.Add(FName(*Item.Text));
		}
	}
	return Tags;
}

void FSimulatedWorld::SetTags(FSimulatedActor& Actor, const TArray<FName>& Tags)
{
	if (FSimulatedValue* Value = FindValue(*Actor.Object, TEXT("Tags")))
	{
		Value->Items.clear();
		for (const FName& Tag : Tags)
		{
			FSimulatedValue Item;
			Item.Text = Tag.IsNone() ? FString() : Tag.ToString();
			Value->Items.push_back(Item);
		}
	}
}

FSimulatedActor* FSimulatedWorld::SpawnActorFromClass(FSimulatedType* Class, const FSimulatedVector& Location, const FSimulatedRotator& Rotation, bool bTransient, FString& OutError)
{
	if (!Class)
	{
		OutError = TEXT("SpawnActorFromClass. ActorClass is not valid.");
		return nullptr;
	}
	if (!WorldObject || !IsActorClass(Class) || (Class->ClassFlags & ZorvekMCPBridgeClassFlags::Abstract) != 0)
	{
		OutError = TEXT("No actor was spawned.");
		return nullptr;
	}
	FSimulatedObject* ActorObject = Editor.CreateObject(Class, LevelObject, MakeUniqueActorName(*Class), OutError);
	if (!ActorObject)
	{
		return nullptr;
	}
	// A Blueprint class's instances start from its class default object.
	if (const FSimulatedBlueprint* Blueprint = Editor.GetBlueprints().FindBlueprintByClass(Class))
	{
		if (Blueprint->DefaultObject && Blueprint->DefaultObject->Values.size() == ActorObject->Values.size())
		{
			ActorObject->Values = Blueprint->DefaultObject->Values;
		}
	}
	std::unique_ptr<FSimulatedActor> NewActor = std::make_unique<FSimulatedActor>();
	FSimulatedActor& Actor = *NewActor;
	Actor.Object = ActorObject;
	Actor.bTransient = bTransient;
	ActorStorage.push_back(std::move(NewActor));
	ActorsByObject[ActorObject] = &Actor;
	LevelActors.push_back(&Actor);

	AddNativeComponents(Actor, *Class);
	RunConstructionScripts(Actor, *Class);
	AddEditorSprites(Actor);
	SetActorLabelUnique(Actor, GetDefaultActorLabel(*Class));
	if (Actor.RootComponent)
	{
		// SetActorLocationAndRotation: the rotator goes in through its quaternion.
		FSimulatedTransform Transform = GetRelativeTransform(*Actor.RootComponent);
		Transform.Translation = Location;
		Transform.Rotation = FSimulatedQuat::FromRotator(Rotation);
		SetRelativeTransform(*Actor.RootComponent, Transform);
	}
	return &Actor;
}

FSimulatedComponent* FSimulatedWorld::AddComponent(FSimulatedActor& Actor, FSimulatedType* ComponentClass, const FString& Name, const FSimulatedObject* Template)
{
	FString Error;
	FSimulatedObject* Object = Editor.CreateObject(ComponentClass, Actor.Object, Name, Error);
	if (!Object)
	{
		return nullptr;
	}
	if (Template && Template->Class == ComponentClass)
	{
		Object->Values = Template->Values;
	}
	std::unique_ptr<FSimulatedComponent> Component = std::make_unique<FSimulatedComponent>();
	Component->Object = Object;
	Component->Owner = &Actor;
	const auto IsA = [this, ComponentClass](const TCHAR* Path)
	{
		const FSimulatedType* Base = Editor.FindTypeByPath(Path);
		return Base && ComponentClass->IsChildOf(Base);
	};
	if (IsA(SimWorldStaticMeshComponentClassPath))
	{
		Component->Kind = ESimulatedComponentKind::StaticMesh;
	}
	else if (IsA(SimWorldCapsuleComponentClassPath))
	{
		Component->Kind = ESimulatedComponentKind::Capsule;
	}
	else if (IsA(SimWorldBillboardComponentClassPath))
	{
		Component->Kind = ESimulatedComponentKind::EditorSprite;
	}
	else if (IsA(SimWorldPrimitiveComponentClassPath))
	{
		Component->Kind = ESimulatedComponentKind::OtherPrimitive;
	}
	else if (IsA(SimWorldSceneComponentClassPath))
	{
		Component->Kind = ESimulatedComponentKind::Scene;
	}
	else
	{
		Component->Kind = ESimulatedComponentKind::Actor;
	}
	ReadRelativeTransformFromObject(*Component);
	FSimulatedComponent* Result = Component.get();
	Actor.Components.push_back(std::move(Component));
	if (IsA(SimWorldPcgComponentClassPath))
	{
		Pcg->OnComponentCreated(*Result);
	}
	if (IsA(SimulatedWorldSpline::SplineComponentClassPath))
	{
		Splines->OnComponentCreated(*Result);
	}
	return Result;
}

FSimulatedComponent* FSimulatedWorld::AddInstanceComponent(FSimulatedActor& Actor, FSimulatedType* ComponentClass, const FString& Name)
{
	const FSimulatedType* ActorComponentClass = Editor.FindTypeByPath(TEXT("/Script/Engine.ActorComponent"));
	if (!ComponentClass || !ActorComponentClass || !ComponentClass->IsChildOf(ActorComponentClass) || (ComponentClass->ClassFlags & 0x1u) != 0)
	{
		return nullptr;
	}
	// NewObject refuses a name taken in the outer; MakeUniqueObjectName numbers it instead.
	FString UniqueName = Name;
	const auto IsTaken = [&Actor](const FString& Candidate)
	{
		return std::any_of(Actor.Components.begin(), Actor.Components.end(), [&Candidate](const std::unique_ptr<FSimulatedComponent>& Existing)
		{
			return Existing->Object->Name.Equals(Candidate, ESearchCase::IgnoreCase);
		});
	};
	for (int32 Number = 0; IsTaken(UniqueName); ++Number)
	{
		UniqueName = FString::Printf(TEXT("%s_%d"), *Name, Number);
	}
	FSimulatedComponent* Component = AddComponent(Actor, ComponentClass, UniqueName, nullptr);
	if (Component)
	{
		Attach(*Component, nullptr);
	}
	return Component;
}

void FSimulatedWorld::Attach(FSimulatedComponent& Child, FSimulatedComponent* Parent)
{
	if (!Child.IsScene())
	{
		return;
	}
	FSimulatedActor& Actor = *Child.Owner;
	if (!Parent)
	{
		if (!Actor.RootComponent)
		{
			Actor.RootComponent = &Child;
			return;
		}
		Parent = Actor.RootComponent;
	}
	Child.AttachParent = Parent;
	Parent->AttachChildren.push_back(&Child);
}

void FSimulatedWorld::AddNativeComponents(FSimulatedActor& Actor, const FSimulatedType& Class)
{
	// The constructors run from the base class down; each adds its default subobjects.
	std::vector<const FSimulatedType*> Chain;
	for (const FSimulatedType* Current = &Class; Current; Current = Current->Super)
	{
		Chain.push_back(Current);
	}
	for (auto Iterator = Chain.rbegin(); Iterator != Chain.rend(); ++Iterator)
	{
		const auto Found = NativeComponents.find(*Iterator);
		if (Found == NativeComponents.end())
		{
			continue;
		}
		for (const FSimulatedNativeComponent& Native : Found->second)
		{
			FSimulatedType* ComponentClass = Editor.FindTypeByPath(Native.ClassPath);
			FSimulatedComponent* Component = ComponentClass ? AddComponent(Actor, ComponentClass, Native.Name, nullptr) : nullptr;
			if (!Component)
			{
				continue;
			}
			Component->Object->bDefaultSubobject = true;
			Component->LocalBounds = Native.LocalBounds;
			for (const TPair<FString, FString>& Value : Native.Values)
			{
				FString Ignored;
				Editor.SetPropertyText(Component->Object, Value.Key, Value.Value, Ignored);
			}
			ReadRelativeTransformFromObject(*Component);
			FSimulatedComponent* Parent = nullptr;
			if (!Native.ParentName.IsEmpty())
			{
				for (const std::unique_ptr<FSimulatedComponent>& Candidate : Actor.Components)
				{
					if (Candidate->Object->Name.Equals(Native.ParentName, ESearchCase::IgnoreCase))
					{
						Parent = Candidate.get();
					}
				}
			}
			Attach(*Component, Parent);
		}
	}
}

void FSimulatedWorld::RunConstructionScripts(FSimulatedActor& Actor, const FSimulatedType& Class)
{
	// Parent Blueprints' scripts first, as the generated class runs its super's nodes first.
	std::vector<const FSimulatedBlueprint*> Blueprints;
	for (const FSimulatedType* Current = &Class; Current; Current = Current->Super)
	{
		if (const FSimulatedBlueprint* Blueprint = Editor.GetBlueprints().FindBlueprintByClass(Current))
		{
			Blueprints.push_back(Blueprint);
		}
	}
	for (auto Iterator = Blueprints.rbegin(); Iterator != Blueprints.rend(); ++Iterator)
	{
		const FSimulatedConstructionScript* Script = (*Iterator)->ConstructionScript.get();
		if (!Script)
		{
			continue;
		}
		for (const FSimulatedSCSNode* Root : Script->RootNodes)
		{
			FSimulatedComponent* Parent = nullptr;
			if (!Root->ParentComponentOrVariableName.IsEmpty())
			{
				for (const std::unique_ptr<FSimulatedComponent>& Candidate : Actor.Components)
				{
					if (Candidate->Object->Name.Equals(Root->ParentComponentOrVariableName, ESearchCase::IgnoreCase))
					{
						Parent = Candidate.get();
					}
				}
			}
			AddConstructionScriptNode(Actor, *Root, Parent);
		}
	}
}

void FSimulatedWorld::AddConstructionScriptNode(FSimulatedActor& Actor, const FSimulatedSCSNode& Node, FSimulatedComponent* Parent)
{
	if (!Node.ComponentClass || Actor.Object->Class == nullptr)
	{
		return;
	}
	FSimulatedComponent* Component = AddComponent(Actor, Node.ComponentClass, Node.VariableName, Node.ComponentTemplate);
	if (!Component)
	{
		return;
	}
	Attach(*Component, Parent);
	if (Node.bVisualizeComponent)
	{
		VisualizingComponents.push_back(Component);
	}
	for (const FSimulatedSCSNode* Child : Node.ChildNodes)
	{
		AddConstructionScriptNode(Actor, *Child, Component);
	}
}

void FSimulatedWorld::AddEditorSprites(FSimulatedActor& Actor)
{
	// USceneComponent::OnRegister in the editor: a component that visualises itself gets a
	// transient billboard at half scale (absolute), attached to it, registered after the
	// components the actor already has.
	FSimulatedType* BillboardClass = Editor.FindTypeByPath(SimWorldBillboardComponentClassPath);
	std::vector<FSimulatedComponent*> Visualizing;
	for (const std::unique_ptr<FSimulatedComponent>& Component : Actor.Components)
	{
		bool bVisualize = std::find(VisualizingComponents.begin(), VisualizingComponents.end(), Component.get()) != VisualizingComponents.end();
		for (const FSimulatedType* Class : VisualizedComponentClasses)
		{
			bVisualize = bVisualize || Component->Object->Class->IsChildOf(Class);
		}
		if (bVisualize && Component->IsScene())
		{
			Visualizing.push_back(Component.get());
		}
	}
	VisualizingComponents.clear();
	if (!BillboardClass)
	{
		return;
	}
	for (FSimulatedComponent* Parent : Visualizing)
	{
		int32& Unique = ClassUnique[BillboardClass];
		FString Name;
		do
		{
			Name = FString::Printf(TEXT("%s_%d"), *BillboardClass->Name, Unique++);
		} while (Editor.FindObject(Actor.Object->GetPathName() + TEXT(".") + Name));
		FSimulatedComponent* Sprite = AddComponent(Actor, BillboardClass, Name, nullptr);
		if (!Sprite)
		{
			continue;
		}
		Sprite->Kind = ESimulatedComponentKind::EditorSprite;
		Sprite->bAbsoluteScale = true;
		Sprite->RelativeScale3D = {0.5, 0.5, 0.5};
		WriteRelativeTransformToObject(*Sprite);
		Attach(*Sprite, Parent);
	}
}

void FSimulatedWorld::ReadRelativeTransformFromObject(FSimulatedComponent& Component)
{
	if (!Component.IsScene())
	{
		return;
	}
	if (const FSimulatedValue* Location = FindValue(*Component.Object, TEXT("RelativeLocation")))
	{
		Component.RelativeLocation = SimWorldVectorFromValue(*Location);
	}
	if (const FSimulatedValue* Rotation = FindValue(*Component.Object, TEXT("RelativeRotation")))
	{
		const FSimulatedVector Angles = SimWorldVectorFromValue(*Rotation);
		Component.RelativeRotation = {Angles.X, Angles.Y, Angles.Z};
	}
	Component.RelativeRotationQuat = FSimulatedQuat::FromRotator(Component.RelativeRotation);
	if (const FSimulatedValue* Scale = FindValue(*Component.Object, TEXT("RelativeScale3D")))
	{
		Component.RelativeScale3D = SimWorldVectorFromValue(*Scale);
	}
}

void FSimulatedWorld::WriteRelativeTransformToObject(FSimulatedComponent& Component)
{
	if (FSimulatedValue* Location = FindValue(*Component.Object, TEXT("RelativeLocation")))
	{
		SimWorldVectorToValue(Component.RelativeLocation, *Location);
	}
	if (FSimulatedValue* Rotation = FindValue(*Component.Object, TEXT("RelativeRotation")))
	{
		SimWorldVectorToValue({Component.RelativeRotation.Pitch, Component.RelativeRotation.Yaw, Component.RelativeRotation.Roll}, *Rotation);
	}
	if (FSimulatedValue* Scale = FindValue(*Component.Object, TEXT("RelativeScale3D")))
	{
		SimWorldVectorToValue(Component.RelativeScale3D, *Scale);
	}
}

FSimulatedTransform FSimulatedWorld::GetRelativeTransform(const FSimulatedComponent& Component) const
{
	FSimulatedTransform Transform;
	Transform.Rotation = Component.RelativeRotationQuat;
	Transform.Translation = Component.RelativeLocation;
	Transform.Scale3D = Component.RelativeScale3D;
	return Transform;
}

FSimulatedTransform FSimulatedWorld::GetComponentToWorld(const FSimulatedComponent& Component) const
{
	const FSimulatedTransform Relative = GetRelativeTransform(Component);
	if (!Component.AttachParent)
	{
		return Relative;
	}
	FSimulatedTransform World = Relative * GetComponentToWorld(*Component.AttachParent);
	if (Component.bAbsoluteScale)
	{
		World.Scale3D = Component.RelativeScale3D;
	}
	return World;
}

void FSimulatedWorld::SetRelativeTransform(FSimulatedComponent& Component, const FSimulatedTransform& Transform)
{
	if (!Component.IsScene())
	{
		return;
	}
	Component.RelativeLocation = Transform.Translation;
	FSimulatedQuat Rotation = Transform.Rotation;
	const double SquareSum = Rotation.X * Rotation.X + Rotation.Y * Rotation.Y + Rotation.Z * Rotation.Z + Rotation.W * Rotation.W;
	if (FMath::Abs(SquareSum - 1.0) > 1e-6)
	{
		Rotation.Normalize();
	}
	// The rotation cache: the rotator only changes when the quaternion does.
	const FSimulatedQuat& Cached = Component.RelativeRotationQuat;
	if (Rotation.X != Cached.X || Rotation.Y != Cached.Y || Rotation.Z != Cached.Z || Rotation.W != Cached.W)
	{
		Component.RelativeRotation = Rotation.ToRotator();
		Component.RelativeRotationQuat = Rotation;
	}
	Component.RelativeScale3D = Transform.Scale3D;
	WriteRelativeTransformToObject(Component);
	// Children compute their world transforms from their parents on demand, so they follow.
}

FSimulatedTransform FSimulatedWorld::GetActorTransform(const FSimulatedActor& Actor) const
{
	return Actor.RootComponent ? GetComponentToWorld(*Actor.RootComponent) : FSimulatedTransform();
}

void FSimulatedWorld::SetActorTransform(FSimulatedActor& Actor, const FSimulatedTransform& Transform)
{
	if (!Actor.RootComponent)
	{
		return;
	}
	// The root has no parent, so its relative transform is its world transform.
	SetRelativeTransform(*Actor.RootComponent, Transform);
}

void FSimulatedWorld::SetActorScale3D(FSimulatedActor& Actor, const FSimulatedVector& Scale)
{
	if (!Actor.RootComponent)
	{
		return;
	}
	FSimulatedTransform Transform = GetRelativeTransform(*Actor.RootComponent);
	Transform.Scale3D = Scale;
	SetRelativeTransform(*Actor.RootComponent, Transform);
}

const FSimulatedObject* FSimulatedWorld::GetStaticMesh(const FSimulatedComponent& Component) const
{
	if (Component.Kind != ESimulatedComponentKind::StaticMesh)
	{
		return nullptr;
	}
	const FSimulatedValue* Mesh = FindValue(*Component.Object, TEXT("StaticMesh"));
	return Mesh ? Mesh->Object : nullptr;
}

bool FSimulatedWorld::GetComponentBounds(const FSimulatedComponent& Component, FSimulatedBox& OutBounds) const
{
	if (!Component.IsPrimitive())
	{
		return false;
	}
	const FSimulatedTransform World = GetComponentToWorld(Component);
	switch (Component.Kind)
	{
	case ESimulatedComponentKind::StaticMesh:
	{
		const FSimulatedMeshInfo* Mesh = FindMeshInfo(GetStaticMesh(Component));
		// Without a mesh the component's bounds are a point at its location.
		OutBounds = Mesh ? Mesh->LocalBounds.TransformBy(World) : FSimulatedBox(World.Translation, World.Translation);
		return true;
	}
	case ESimulatedComponentKind::Capsule:
	{
		const FSimulatedValue* HalfHeight = FindValue(*Component.Object, TEXT("CapsuleHalfHeight"));
		const FSimulatedValue* Radius = FindValue(*Component.Object, TEXT("CapsuleRadius"));
		const double R = Radius ? Radius->Real : 0.0;
		const double H = HalfHeight ? HalfHeight->Real : 0.0;
		OutBounds = FSimulatedBox::FromCenterAndExtent(FSimulatedVector(), {R, R, H}).TransformBy(World);
		return true;
	}
	case ESimulatedComponentKind::EditorSprite:
	{
		// UBillboardComponent::CalcBounds: a cube around the location, the sprite's larger
		// side times the largest world scale.
		const double Size = World.Scale3D.GetMax() * EditorSpriteSize;
		OutBounds = FSimulatedBox::FromCenterAndExtent(World.Translation, {Size, Size, Size});
		return true;
	}
	default:
		OutBounds = Component.LocalBounds.bIsValid ? Component.LocalBounds.TransformBy(World) : FSimulatedBox(World.Translation, World.Translation);
		return true;
	}
}

FSimulatedBox FSimulatedWorld::GetActorBounds(const FSimulatedActor& Actor) const
{
	FSimulatedBox Bounds;
	for (const std::unique_ptr<FSimulatedComponent>& Component : Actor.Components)
	{
		FSimulatedBox ComponentBounds;
		if (GetComponentBounds(*Component, ComponentBounds))
		{
			Bounds += ComponentBounds;
		}
	}
	return Bounds;
}

void FSimulatedWorld::SelectNothing()
{
	Selection.clear();
}

void FSimulatedWorld::SetActorSelectionState(FSimulatedActor& Actor, bool bSelected)
{
	const auto Found = std::find(Selection.begin(), Selection.end(), &Actor);
	if (bSelected && Found == Selection.end() && !Actor.bPendingKill)
	{
		Selection.push_back(&Actor);
	}
	else if (!bSelected && Found != Selection.end())
	{
		Selection.erase(Found);
	}
}

bool FSimulatedWorld::DestroyActors(const std::vector<FSimulatedActor*>& Actors, FString& OutError)
{
	for (const FSimulatedActor* Actor : Actors)
	{
		if (!Actor)
		{
			OutError = TEXT("DestroyActors. An actor to destroy is invalid.");
			return false;
		}
	}
	bool bAllDestroyed = true;
	FSimulatedObject* TransientPackage = Editor.FindOrCreatePackage(TEXT("/Engine/Transient"));
	for (FSimulatedActor* Actor : Actors)
	{
		if (Actor->bPendingKill || std::find(LevelActors.begin(), LevelActors.end(), Actor) == LevelActors.end())
		{
			bAllDestroyed = false;
			continue;
		}
		SetActorSelectionState(*Actor, false);
		Actor->bPendingKill = true;
		ForgetLabel(Actor->Label);
		std::replace(LevelActors.begin(), LevelActors.end(), Actor, static_cast<FSimulatedActor*>(nullptr));
		Pcg->OnActorDestroyed(*Actor);
		// The name is free again at once, as the editor renames destroyed actors away.
		FString Ignored;
		for (int32 Suffix = 0; Suffix < 100000; ++Suffix)
		{
			if (Editor.RenameObject(Actor->Object, TransientPackage, FString::Printf(TEXT("TRASH_%s_%d"), *Actor->Object->Name, Suffix), Ignored))
			{
				break;
			}
		}
	}
	if (!bAllDestroyed)
	{
		OutError = TEXT("DestroyActors. An actor was not in the editor world.");
	}
	return bAllDestroyed;
}

void FSimulatedWorld::Tick()
{
	++TickCount;
	Pcg->Tick();
	Viewport->Tick();
}
