#include "SimulatedWorldPort.h"

#include "SimulatedEditor.h"
#include "SimulatedEditorPort.h"
#include "SimulatedPcg.h"
#include "SimulatedViewport.h"
#include "SimulatedWorld.h"

namespace
{
	FZorvekMCPBridgeVector SimWorldPortVector(const FSimulatedVector& Vector)
	{
		return {Vector.X, Vector.Y, Vector.Z};
	}

	FZorvekMCPBridgeRotator SimWorldPortRotator(const FSimulatedRotator& Rotator)
	{
		return {Rotator.Pitch, Rotator.Yaw, Rotator.Roll};
	}

	FSimulatedVector SimWorldPortFromVector(const FZorvekMCPBridgeVector& Vector)
	{
		return {Vector.X, Vector.Y, Vector.Z};
	}

	FSimulatedRotator SimWorldPortFromRotator(const FZorvekMCPBridgeRotator& Rotator)
	{
		return {Rotator.Pitch, Rotator.Yaw, Rotator.Roll};
	}

	// The rotation comes back through FQuat::Rotator, as the engine's transform getters give it.
	FZorvekMCPBridgeTransform SimWorldPortTransform(const FSimulatedTransform& Transform)
	{
		FZorvekMCPBridgeTransform Result;
		Result.Location = SimWorldPortVector(Transform.Translation);
		Result.Rotation = SimWorldPortRotator(Transform.Rotation.ToRotator());
		Result.Scale = SimWorldPortVector(Transform.Scale3D);
		return Result;
	}

	FSimulatedTransform SimWorldPortFromTransform(const FZorvekMCPBridgeTransform& Transform)
	{
		return FSimulatedTransform(SimWorldPortFromRotator(Transform.Rotation), SimWorldPortFromVector(Transform.Location), SimWorldPortFromVector(Transform.Scale));
	}

	FZorvekMCPBridgeBox SimWorldPortBox(const FSimulatedBox& Box)
	{
		FZorvekMCPBridgeBox Result;
		Result.Min = SimWorldPortVector(Box.Min);
		Result.Max = SimWorldPortVector(Box.Max);
		Result.bIsValid = Box.bIsValid;
		return Result;
	}
}

FSimulatedWorldPort::FSimulatedWorldPort(FSimulatedEditor& InEditor)
	: Editor(InEditor)
{
	FSimulatedWorld* World = &Editor.GetWorld();
	TickHandle = FTSTicker::GetCoreTicker().AddTicker(FTickerDelegate::CreateLambda([World](float)
	{
		World->Tick();
		return true;
	}));
}

FSimulatedWorldPort::~FSimulatedWorldPort()
{
	FTSTicker::RemoveTicker(TickHandle);
}

FSimulatedWorld& FSimulatedWorldPort::GetSimulatedWorld() const
{
	return Editor.GetWorld();
}

FSimulatedActor* FSimulatedWorldPort::ToActor(FZorvekMCPBridgeObjectHandle Handle) const
{
	return Editor.GetWorld().FindActor(FSimulatedEditorPort::ToObject(Handle));
}

FSimulatedComponent* FSimulatedWorldPort::ToComponent(FZorvekMCPBridgeObjectHandle Handle) const
{
	const FSimulatedObject* Object = FSimulatedEditorPort::ToObject(Handle);
	FSimulatedActor* Owner = Object ? Editor.GetWorld().FindActor(Object->Outer) : nullptr;
	return Owner ? Owner->FindComponent(Object) : nullptr;
}

void FSimulatedWorldPort::NoteLevelChanged() const
{
	Editor.GetWorld().GetViewport().Invalidate();
}

bool FSimulatedWorldPort::IsEditorAvailable() const
{
	return true;
}

bool FSimulatedWorldPort::IsActorSubsystemAvailable() const
{
	return bActorSubsystemAvailable;
}

bool FSimulatedWorldPort::GetEditorWorld(FZorvekMCPBridgeWorldInfo& OutWorld) const
{
	const FSimulatedObject* World = Editor.GetWorld().GetWorldObject();
	if (!World || !bEditorWorldAvailable)
	{
		return false;
	}
	OutWorld.Name = World->Name;
	OutWorld.Path = World->GetPathName();
	OutWorld.PackageName = World->GetOutermost()->Name;
	return true;
}

TArray<FZorvekMCPBridgeActorEntry> FSimulatedWorldPort::GetAllLevelActors() const
{
	TArray<FZorvekMCPBridgeActorEntry> Entries;
	if (!bActorSubsystemAvailable || !bEditorWorldAvailable)
	{
		return Entries;
	}
	const FSimulatedWorld& World = Editor.GetWorld();
	const std::vector<FSimulatedActor*> Actors = World.GetAllLevelActors();
	Entries.Reserve((int32)Actors.size());
	// Level actors sit directly in the level: their path is the level's and their name.
	const FSimulatedObject* Level = World.GetPersistentLevel();
	const FString LevelPrefix = Level ? Level->GetPathName() + TEXT(".") : FString();
	for (const FSimulatedActor* Actor : Actors)
	{
		FZorvekMCPBridgeActorEntry Entry;
		Entry.Actor = FSimulatedEditorPort::ToHandle(Actor->Object);
		Entry.Name = Actor->Object->Name;
		Entry.Label = Actor->Label;
		Entry.Path = Actor->Object->Outer == Level ? LevelPrefix + Actor->Object->Name : Actor->Object->GetPathName();
		Entry.Tags = World.GetTags(*Actor);
		Entries.Add(MoveTemp(Entry));
	}
	return Entries;
}

TArray<FZorvekMCPBridgeObjectHandle> FSimulatedWorldPort::GetSelectedLevelActors() const
{
	TArray<FZorvekMCPBridgeObjectHandle> Handles;
	if (!bActorSubsystemAvailable || !bEditorWorldAvailable)
	{
		return Handles;
	}
	for (const FSimulatedActor* Actor : Editor.GetWorld().GetSelectedActors())
	{
		Handles.Add(FSimulatedEditorPort::ToHandle(Actor->Object));
	}
	return Handles;
}

bool FSimulatedWorldPort::ReadActor(FZorvekMCPBridgeObjectHandle ActorHandle, FZorvekMCPBridgeActorSnapshot& OutActor) const
{
	const FSimulatedActor* Actor = ToActor(ActorHandle);
	if (!Actor)
	{
		return false;
	}
	const FSimulatedWorld& World = Editor.GetWorld();
	OutActor = FZorvekMCPBridgeActorSnapshot();
	OutActor.Entry.Actor = FSimulatedEditorPort::ToHandle(Actor->Object);
	OutActor.Entry.Name = Actor->Object->Name;
	OutActor.Entry.Label = Actor->Label;
	OutActor.Entry.Path = Actor->Object->GetPathName();
	OutActor.Entry.Tags = World.GetTags(*Actor);
	OutActor.ClassPath = Actor->Object->Class->GetPathName();
	OutActor.bHasRootComponent = Actor->RootComponent != nullptr;
	OutActor.RootTransform = SimWorldPortTransform(World.GetActorTransform(*Actor));
	// GetActorBounds: Origin and Extent of the box; zero for an invalid one.
	const FSimulatedBox Bounds = World.GetActorBounds(*Actor);
	OutActor.Bounds = SimWorldPortBox(FSimulatedBox::FromCenterAndExtent(Bounds.GetCenter(), Bounds.GetExtent()));
	OutActor.Bounds.bIsValid = Bounds.bIsValid;
	for (const std::unique_ptr<FSimulatedComponent>& Component : Actor->Components)
	{
		FZorvekMCPBridgeActorComponentSnapshot Snapshot;
		Snapshot.Component = FSimulatedEditorPort::ToHandle(Component->Object);
		Snapshot.Name = Component->Object->Name;
		Snapshot.ClassPath = Component->Object->Class->GetPathName();
		Snapshot.bIsSceneComponent = Component->IsScene();
		Snapshot.bIsPrimitiveComponent = Component->IsPrimitive();
		Snapshot.bIsStaticMeshComponent = Component->Kind == ESimulatedComponentKind::StaticMesh;
		if (Component->IsScene())
		{
			Snapshot.WorldTransform = SimWorldPortTransform(World.GetComponentToWorld(*Component));
			Snapshot.RelativeTransform = SimWorldPortTransform(World.GetRelativeTransform(*Component));
		}
		FSimulatedBox ComponentBounds;
		if (World.GetComponentBounds(*Component, ComponentBounds))
		{
			Snapshot.WorldBounds = SimWorldPortBox(ComponentBounds);
		}
		if (const FSimulatedObject* Mesh = World.GetStaticMesh(*Component))
		{
			Snapshot.StaticMeshPath = Mesh->GetPathName();
		}
		OutActor.Components.Add(MoveTemp(Snapshot));
	}
	return true;
}

FZorvekMCPBridgeObjectHandle FSimulatedWorldPort::SpawnActorFromClass(const FString& ClassPath, const FZorvekMCPBridgeVector& Location, const FZorvekMCPBridgeRotator& Rotation)
{
	if (!bEditorWorldAvailable)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	FString Error;
	FSimulatedActor* Actor = Editor.GetWorld().SpawnActorFromClass(Editor.FindTypeByPath(ClassPath), SimWorldPortFromVector(Location), SimWorldPortFromRotator(Rotation), false, Error);
	if (!Actor)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	NoteLevelChanged();
	return FSimulatedEditorPort::ToHandle(Actor->Object);
}

void FSimulatedWorldPort::SetActorScale3D(FZorvekMCPBridgeObjectHandle ActorHandle, const FZorvekMCPBridgeVector& Scale)
{
	if (FSimulatedActor* Actor = ToActor(ActorHandle))
	{
		Editor.GetWorld().SetActorScale3D(*Actor, SimWorldPortFromVector(Scale));
		NoteLevelChanged();
	}
}

void FSimulatedWorldPort::SetActorLabel(FZorvekMCPBridgeObjectHandle ActorHandle, const FString& Label)
{
	if (FSimulatedActor* Actor = ToActor(ActorHandle))
	{
		Editor.GetWorld().SetActorLabel(*Actor, Label);
	}
}

void FSimulatedWorldPort::AddActorTags(FZorvekMCPBridgeObjectHandle ActorHandle, const TArray<FName>& Tags)
{
	FSimulatedActor* Actor = ToActor(ActorHandle);
	if (!Actor)
	{
		return;
	}
	FSimulatedWorld& World = Editor.GetWorld();
	TArray<FName> Current = World.GetTags(*Actor);
	for (const FName& Tag : Tags)
	{
		Current.AddUnique(Tag);
	}
	World.SetTags(*Actor, Current);
}

void FSimulatedWorldPort::SetActorTransform(FZorvekMCPBridgeObjectHandle ActorHandle, const FZorvekMCPBridgeTransform& Transform)
{
	if (FSimulatedActor* Actor = ToActor(ActorHandle))
	{
		Editor.GetWorld().SetActorTransform(*Actor, SimWorldPortFromTransform(Transform));
		NoteLevelChanged();
	}
}

bool FSimulatedWorldPort::SetComponentRelativeTransform(FZorvekMCPBridgeObjectHandle ComponentHandle, const FZorvekMCPBridgeTransform& Transform)
{
	FSimulatedComponent* Component = ToComponent(ComponentHandle);
	if (!Component || !Component->IsScene())
	{
		return false;
	}
	Editor.GetWorld().SetRelativeTransform(*Component, SimWorldPortFromTransform(Transform));
	NoteLevelChanged();
	return true;
}

void FSimulatedWorldPort::SelectNothing()
{
	Editor.GetWorld().SelectNothing();
	NoteLevelChanged();
}

void FSimulatedWorldPort::SetActorSelectionState(FZorvekMCPBridgeObjectHandle ActorHandle, bool bSelected)
{
	if (FSimulatedActor* Actor = ToActor(ActorHandle))
	{
		Editor.GetWorld().SetActorSelectionState(*Actor, bSelected);
		NoteLevelChanged();
	}
}

bool FSimulatedWorldPort::DestroyActors(const TArray<FZorvekMCPBridgeObjectHandle>& Actors)
{
	std::vector<FSimulatedActor*> ToDestroy;
	for (const FZorvekMCPBridgeObjectHandle& Handle : Actors)
	{
		ToDestroy.push_back(ToActor(Handle));
	}
	FString Error;
	const bool bDestroyed = Editor.GetWorld().DestroyActors(ToDestroy, Error);
	NoteLevelChanged();
	return bDestroyed;
}

FZorvekMCPBridgeObjectHandle FSimulatedWorldPort::AddInstanceComponent(FZorvekMCPBridgeObjectHandle ActorHandle, const FString& ComponentClassPath, const FString& ComponentName)
{
	FSimulatedActor* Actor = ToActor(ActorHandle);
	FSimulatedType* Class = Editor.FindTypeByPath(ComponentClassPath);
	FSimulatedComponent* Component = Actor && Class && Class->Kind == ESimulatedTypeKind::Class ? Editor.GetWorld().AddInstanceComponent(*Actor, Class, ComponentName) : nullptr;
	if (!Component)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	NoteLevelChanged();
	return FSimulatedEditorPort::ToHandle(Component->Object);
}

FZorvekMCPBridgeViewportInfo FSimulatedWorldPort::GetActiveViewport() const
{
	const FSimulatedViewport& Viewport = Editor.GetWorld().GetViewport();
	FZorvekMCPBridgeViewportInfo Info;
	Info.bHasViewport = Viewport.HasLevelViewport();
	if (!Info.bHasViewport)
	{
		return Info;
	}
	Info.bHasFViewport = Viewport.HasFViewport();
	Info.Width = Info.bHasFViewport ? Viewport.GetWidth() : 0;
	Info.Height = Info.bHasFViewport ? Viewport.GetHeight() : 0;
	Info.ViewportType = Viewport.GetViewportType();
	Info.bIsPerspective = Viewport.IsPerspective();
	Info.ViewLocation = SimWorldPortVector(Viewport.GetViewLocation());
	Info.ViewRotation = SimWorldPortRotator(Viewport.GetViewRotation());
	return Info;
}

void FSimulatedWorldPort::FocusActiveViewportOnBox(const FZorvekMCPBridgeBox& Box)
{
	FSimulatedViewport& Viewport = Editor.GetWorld().GetViewport();
	if (!Viewport.HasLevelViewport())
	{
		return;
	}
	FSimulatedBox Target(SimWorldPortFromVector(Box.Min), SimWorldPortFromVector(Box.Max));
	Target.bIsValid = Box.bIsValid;
	Viewport.FocusViewportOnBox(Target, true);
	Viewport.Invalidate();
	Viewport.Draw();
}

bool FSimulatedWorldPort::ReadActiveViewportPixels(TArray<uint8>& OutBgraPixels, int32& OutWidth, int32& OutHeight)
{
	FSimulatedViewport& Viewport = Editor.GetWorld().GetViewport();
	OutWidth = 0;
	OutHeight = 0;
	if (!Viewport.HasLevelViewport() || !Viewport.ReadPixels(OutBgraPixels))
	{
		OutBgraPixels.Reset();
		return false;
	}
	OutWidth = Viewport.GetWidth();
	OutHeight = Viewport.GetHeight();
	return true;
}

TArray<uint8> FSimulatedWorldPort::CompressBgraToPng(int32 Width, int32 Height, const TArray<uint8>& BgraPixels) const
{
	return SimulatedEncodePng(Width, Height, BgraPixels);
}

FZorvekMCPBridgePluginState FSimulatedWorldPort::GetPluginState(const FString& PluginName) const
{
	FZorvekMCPBridgePluginState State;
	if (PluginName.Equals(TEXT("PCG"), ESearchCase::IgnoreCase))
	{
		const FSimulatedPcgPluginState& Pcg = Editor.GetWorld().GetPcg().GetPluginState();
		State.bInstalled = Pcg.bInstalled;
		State.bEnabled = Pcg.bInstalled && Pcg.bEnabled;
	}
	return State;
}

bool FSimulatedWorldPort::ModuleExists(const FString& ModuleName) const
{
	return ModuleName.Equals(TEXT("PCG"), ESearchCase::IgnoreCase) && Editor.GetWorld().GetPcg().GetPluginState().bModuleExists;
}

bool FSimulatedWorldPort::IsModuleLoaded(const FString& ModuleName) const
{
	return ModuleName.Equals(TEXT("PCG"), ESearchCase::IgnoreCase) && Editor.GetWorld().GetPcg().GetPluginState().bModuleLoaded;
}
