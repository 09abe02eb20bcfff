// The editor world in the Unreal Editor: its level actors through UEditorActorSubsystem, their
// components, transforms and bounds, labels, tags, selection and destruction. Only the world of
// the editor world context is used, never a play-in-editor world; every actor or component handle
// is checked to belong to it before it is read or changed.
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Editor/Port/ZorvekMCPBridgeEngineWorldMath.h"

#include "Components/ActorComponent.h"
#include "Components/PrimitiveComponent.h"
#include "Components/SceneComponent.h"
#include "Components/StaticMeshComponent.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Engine/Engine.h"
#include "Engine/EngineTypes.h"
#include "Engine/StaticMesh.h"
#include "Engine/World.h"
#include "GameFramework/Actor.h"
#include "Math/Box.h"
#include "Math/Vector.h"
#include "Subsystems/EditorActorSubsystem.h"
#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/Object.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"

namespace
{
	FZorvekMCPBridgeActorEntry EngineWorldMakeActorEntry(const AActor& Actor)
	{
		FZorvekMCPBridgeActorEntry Entry;
		Entry.Actor = FZorvekMCPBridgeEngineEditorPort::ToHandle(&Actor);
		Entry.Name = Actor.GetName();
		// Builds and stores the default label when the actor has none yet, as the editor does.
		Entry.Label = Actor.GetActorLabel();
		Entry.Path = Actor.GetPathName();
		Entry.Tags = Actor.Tags;
		return Entry;
	}

	FZorvekMCPBridgeActorComponentSnapshot EngineWorldMakeComponentSnapshot(UActorComponent& Component)
	{
		FZorvekMCPBridgeActorComponentSnapshot Snapshot;
		Snapshot.Component = FZorvekMCPBridgeEngineEditorPort::ToHandle(&Component);
		Snapshot.Name = Component.GetName();
		Snapshot.ClassPath = Component.GetClass()->GetPathName();
		if (const USceneComponent* Scene = Cast<USceneComponent>(&Component))
		{
			Snapshot.bIsSceneComponent = true;
			Snapshot.WorldTransform = ZorvekMCPBridgeEngineWorldMath::FromEngine(Scene->GetComponentTransform());
			Snapshot.RelativeTransform = ZorvekMCPBridgeEngineWorldMath::FromEngine(Scene->GetRelativeTransform());
		}
		if (const UPrimitiveComponent* Primitive = Cast<UPrimitiveComponent>(&Component))
		{
			// Bounds is the component's world-space bounds as last updated (a public member, not
			// a property; there is no GetBounds).
			Snapshot.bIsPrimitiveComponent = true;
			Snapshot.WorldBounds = ZorvekMCPBridgeEngineWorldMath::FromEngine(Primitive->Bounds.GetBox());
		}
		if (const UStaticMeshComponent* StaticMeshComponent = Cast<UStaticMeshComponent>(&Component))
		{
			Snapshot.bIsStaticMeshComponent = true;
			const UStaticMesh* Mesh = StaticMeshComponent->GetStaticMesh();
			Snapshot.StaticMeshPath = Mesh ? Mesh->GetPathName() : FString();
		}
		return Snapshot;
	}
}

UWorld* FZorvekMCPBridgeEngineWorld::GetEditorWorldObject()
{
	// GEditor is null in commandlets and non-editor targets.
	return GEditor ? GEditor->GetEditorWorldContext(false).World() : nullptr;
}

UEditorActorSubsystem* FZorvekMCPBridgeEngineWorld::GetActorSubsystem()
{
	return GEditor ? GEditor->GetEditorSubsystem<UEditorActorSubsystem>() : nullptr;
}

AActor* FZorvekMCPBridgeEngineWorld::ToEditorActor(FZorvekMCPBridgeObjectHandle Handle)
{
	AActor* Actor = Cast<AActor>(FZorvekMCPBridgeEngineEditorPort::ToObject(Handle));
	if (!IsValid(Actor))
	{
		return nullptr;
	}
	const UWorld* EditorWorld = GetEditorWorldObject();
	return EditorWorld && Actor->GetWorld() == EditorWorld ? Actor : nullptr;
}

bool FZorvekMCPBridgeEngineWorld::IsEditorAvailable() const
{
	return GEditor != nullptr;
}

bool FZorvekMCPBridgeEngineWorld::IsActorSubsystemAvailable() const
{
	return GetActorSubsystem() != nullptr;
}

bool FZorvekMCPBridgeEngineWorld::GetEditorWorld(FZorvekMCPBridgeWorldInfo& OutWorld) const
{
	const UWorld* World = GetEditorWorldObject();
	if (!World)
	{
		return false;
	}
	OutWorld.Name = World->GetName();
	OutWorld.Path = World->GetPathName();
	const UPackage* Package = World->GetOutermost();
	OutWorld.PackageName = Package ? Package->GetName() : FString();
	return true;
}

TArray<FZorvekMCPBridgeActorEntry> FZorvekMCPBridgeEngineWorld::GetAllLevelActors() const
{
	TArray<FZorvekMCPBridgeActorEntry> Entries;
	UEditorActorSubsystem* ActorSubsystem = GetActorSubsystem();
	if (!ActorSubsystem)
	{
		return Entries;
	}
	// Level order: the persistent level's actors in spawn order, then each loaded streaming level.
	const TArray<AActor*> Actors = ActorSubsystem->GetAllLevelActors();
	Entries.Reserve(Actors.Num());
	for (const AActor* Actor : Actors)
	{
		if (Actor)
		{
			Entries.Add(EngineWorldMakeActorEntry(*Actor));
		}
	}
	return Entries;
}

TArray<FZorvekMCPBridgeObjectHandle> FZorvekMCPBridgeEngineWorld::GetSelectedLevelActors() const
{
	TArray<FZorvekMCPBridgeObjectHandle> Handles;
	UEditorActorSubsystem* ActorSubsystem = GetActorSubsystem();
	if (!ActorSubsystem)
	{
		return Handles;
	}
	// Selection order, already limited to actors of the editor world.
	for (const AActor* Actor : ActorSubsystem->GetSelectedLevelActors())
	{
		if (Actor)
		{
			Handles.Add(FZorvekMCPBridgeEngineEditorPort::ToHandle(Actor));
		}
	}
	return Handles;
}

bool FZorvekMCPBridgeEngineWorld::ReadActor(FZorvekMCPBridgeObjectHandle ActorHandle, FZorvekMCPBridgeActorSnapshot& OutActor) const
{
	const AActor* Actor = ToEditorActor(ActorHandle);
	if (!Actor)
	{
		return false;
	}
	OutActor = FZorvekMCPBridgeActorSnapshot();
	OutActor.Entry = EngineWorldMakeActorEntry(*Actor);
	OutActor.ClassPath = Actor->GetClass()->GetPathName();
	if (const USceneComponent* Root = Actor->GetRootComponent())
	{
		OutActor.bHasRootComponent = true;
		OutActor.RootTransform = ZorvekMCPBridgeEngineWorldMath::FromEngine(Root->GetComponentTransform());
	}

	// All components, colliding or not, editor-only sprites included; no child actors. An actor
	// without primitives gives a zero origin and extent, so the box alone cannot say whether it
	// is empty: the components' box (which GetActorBounds is built from) tells.
	FVector Origin = FVector::ZeroVector;
	FVector Extent = FVector::ZeroVector;
	Actor->GetActorBounds(false, Origin, Extent, false);
	OutActor.Bounds = ZorvekMCPBridgeEngineWorldMath::FromEngine(FBox::BuildAABB(Origin, Extent));
	OutActor.Bounds.bIsValid = Actor->GetComponentsBoundingBox(true, false).IsValid != 0;

	for (UActorComponent* Component : Actor->GetComponents())
	{
		if (IsValid(Component))
		{
			OutActor.Components.Add(EngineWorldMakeComponentSnapshot(*Component));
		}
	}
	return true;
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineWorld::SpawnActorFromClass(const FString& ClassPath, const FZorvekMCPBridgeVector& Location, const FZorvekMCPBridgeRotator& Rotation)
{
	UEditorActorSubsystem* ActorSubsystem = GetActorSubsystem();
	if (!ActorSubsystem || !GetEditorWorldObject())
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	// The caller loaded and checked the class; the handle crosses the port as its path.
	UClass* Class = FindObject<UClass>(nullptr, *ClassPath);
	if (!Class)
	{
		Class = LoadObject<UClass>(nullptr, *ClassPath);
	}
	if (!Class || !Class->IsChildOf(AActor::StaticClass()))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	// Places through the class's actor factory into the current level, with its default label;
	// it does not select the new actor.
	AActor* Actor = ActorSubsystem->SpawnActorFromClass(Class, ZorvekMCPBridgeEngineWorldMath::ToEngine(Location), ZorvekMCPBridgeEngineWorldMath::ToEngine(Rotation), false);
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(Actor);
}

void FZorvekMCPBridgeEngineWorld::SetActorScale3D(FZorvekMCPBridgeObjectHandle ActorHandle, const FZorvekMCPBridgeVector& Scale)
{
	if (AActor* Actor = ToEditorActor(ActorHandle))
	{
		Actor->SetActorScale3D(ZorvekMCPBridgeEngineWorldMath::ToEngine(Scale));
	}
}

void FZorvekMCPBridgeEngineWorld::SetActorLabel(FZorvekMCPBridgeObjectHandle ActorHandle, const FString& Label)
{
	if (AActor* Actor = ToEditorActor(ActorHandle))
	{
		// Trims, refuses invalid names with a log line, never makes the label unique.
		Actor->SetActorLabel(Label, true);
	}
}

void FZorvekMCPBridgeEngineWorld::AddActorTags(FZorvekMCPBridgeObjectHandle ActorHandle, const TArray<FName>& Tags)
{
	AActor* Actor = ToEditorActor(ActorHandle);
	if (!Actor)
	{
		return;
	}
	// Modify before the change, so that an open transaction records the tags as they were.
	Actor->Modify();
	for (const FName& Tag : Tags)
	{
		Actor->Tags.AddUnique(Tag);
	}
}

void FZorvekMCPBridgeEngineWorld::SetActorTransform(FZorvekMCPBridgeObjectHandle ActorHandle, const FZorvekMCPBridgeTransform& Transform)
{
	if (AActor* Actor = ToEditorActor(ActorHandle))
	{
		// Moves the root component; an actor without one stays where it is.
		Actor->SetActorTransform(ZorvekMCPBridgeEngineWorldMath::ToEngine(Transform), false, nullptr, ETeleportType::None);
	}
}

bool FZorvekMCPBridgeEngineWorld::SetComponentRelativeTransform(FZorvekMCPBridgeObjectHandle ComponentHandle, const FZorvekMCPBridgeTransform& Transform)
{
	USceneComponent* Component = Cast<USceneComponent>(FZorvekMCPBridgeEngineEditorPort::ToObject(ComponentHandle));
	const UWorld* EditorWorld = GetEditorWorldObject();
	if (!IsValid(Component) || !EditorWorld || Component->GetWorld() != EditorWorld)
	{
		return false;
	}
	Component->SetRelativeTransform(ZorvekMCPBridgeEngineWorldMath::ToEngine(Transform), false, nullptr, ETeleportType::None);
	// SetRelativeTransform has already updated the world transforms down the hierarchy; the
	// explicit update (the world tools ask for it) is harmless.
	Component->UpdateComponentToWorld();
	return true;
}

void FZorvekMCPBridgeEngineWorld::SelectNothing()
{
	if (UEditorActorSubsystem* ActorSubsystem = GetActorSubsystem())
	{
		ActorSubsystem->SelectNothing();
	}
}

void FZorvekMCPBridgeEngineWorld::SetActorSelectionState(FZorvekMCPBridgeObjectHandle ActorHandle, bool bSelected)
{
	UEditorActorSubsystem* ActorSubsystem = GetActorSubsystem();
	AActor* Actor = ToEditorActor(ActorHandle);
	if (ActorSubsystem && Actor)
	{
		ActorSubsystem->SetActorSelectionState(Actor, bSelected);
	}
}

bool FZorvekMCPBridgeEngineWorld::DestroyActors(const TArray<FZorvekMCPBridgeObjectHandle>& ActorHandles)
{
	UEditorActorSubsystem* ActorSubsystem = GetActorSubsystem();
	if (!ActorSubsystem)
	{
		return false;
	}
	// Every handle is checked first, so that a stale or foreign handle refuses the whole call
	// before anything is destroyed.
	TArray<AActor*> Actors;
	Actors.Reserve(ActorHandles.Num());
	for (const FZorvekMCPBridgeObjectHandle& Handle : ActorHandles)
	{
		AActor* Actor = ToEditorActor(Handle);
		if (!Actor)
		{
			return false;
		}
		Actors.Add(Actor);
	}
	// One "Delete Actors" transaction; the actors are deselected and destroyed in the editor world.
	return ActorSubsystem->DestroyActors(Actors);
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineWorld::AddInstanceComponent(FZorvekMCPBridgeObjectHandle ActorHandle, const FString& ComponentClassPath, const FString& ComponentName)
{
	AActor* Actor = ToEditorActor(ActorHandle);
	UClass* Class = FindObject<UClass>(nullptr, *ComponentClassPath);
	if (!Class)
	{
		Class = LoadObject<UClass>(nullptr, *ComponentClassPath);
	}
	if (!Actor || !Class || !Class->IsChildOf(UActorComponent::StaticClass()) || Class->HasAnyClassFlags(CLASS_Abstract))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	// NewObject asserts on a name taken in the outer: a free name is kept as it is, a taken one
	// made unique. MakeUniqueObjectName, SetRootComponent and RegisterComponent: the sequence is
	// not in the reference notes beyond AddInstanceComponent and SetupAttachment; check against
	// the engine.
	Actor->Modify();
	FName Name(*ComponentName);
	if (FindObject<UObject>(Actor, *ComponentName))
	{
		Name = MakeUniqueObjectName(Actor, Class, Name);
	}
	UActorComponent* Component = NewObject<UActorComponent>(Actor, Class, Name, RF_Transactional);
	if (!Component)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	if (USceneComponent* SceneComponent = Cast<USceneComponent>(Component))
	{
		if (USceneComponent* Root = Actor->GetRootComponent())
		{
			// Before registration, so the component registers already attached.
			SceneComponent->SetupAttachment(Root);
		}
		else
		{
			Actor->SetRootComponent(SceneComponent);
		}
	}
	Actor->AddInstanceComponent(Component);
	Component->RegisterComponent();
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(Component);
}
