// The world domain of the editor port: the level open in the editor (its actors, their
// components, transforms and bounds, labels, tags, selection), the active level viewport, and
// the plug-in and module state the PCG tools probe. It speaks only of the editor world (the
// editor world context's world), never of a play-in-editor world. Values are plain data: the
// engine's vector, rotator and box types stay in the engine implementation, which also does
// the quaternion and bounds arithmetic, so portable code never re-derives them.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"

struct FZorvekMCPBridgeVector
{
	double X = 0.0;
	double Y = 0.0;
	double Z = 0.0;
};

// Degrees.
struct FZorvekMCPBridgeRotator
{
	double Pitch = 0.0;
	double Yaw = 0.0;
	double Roll = 0.0;
};

// A transform as the tools read and write it: the rotation is the rotator of the transform's
// quaternion (FQuat::Rotator), so world rotations come back normalised as the engine gives them.
struct FZorvekMCPBridgeTransform
{
	FZorvekMCPBridgeVector Location;
	FZorvekMCPBridgeRotator Rotation;
	FZorvekMCPBridgeVector Scale = { 1.0, 1.0, 1.0 };
};

// An FBox: Min, Max and IsValid (an invalid box has zero corners).
struct FZorvekMCPBridgeBox
{
	FZorvekMCPBridgeVector Min;
	FZorvekMCPBridgeVector Max;
	bool bIsValid = false;
};

// The editor world, when the editor world context has one.
struct FZorvekMCPBridgeWorldInfo
{
	// The world's object name, its path name and its outermost package's name.
	FString Name;
	FString Path;
	FString PackageName;
};

// An actor as cheap enumeration gives it: enough to look it up, filter it and tell repro actors
// apart, without transforms or bounds.
struct FZorvekMCPBridgeActorEntry
{
	FZorvekMCPBridgeObjectHandle Actor;
	// Object name, GetActorLabel, full path name.
	FString Name;
	FString Label;
	FString Path;
	// Tags, in order.
	TArray<FName> Tags;
};

// One UActorComponent of an actor.
struct FZorvekMCPBridgeActorComponentSnapshot
{
	FZorvekMCPBridgeObjectHandle Component;
	FString Name;
	FString ClassPath;
	bool bIsSceneComponent = false;
	bool bIsPrimitiveComponent = false;
	bool bIsStaticMeshComponent = false;
	// Scene components: GetComponentTransform and GetRelativeTransform.
	FZorvekMCPBridgeTransform WorldTransform;
	FZorvekMCPBridgeTransform RelativeTransform;
	// Primitive components: Bounds.GetBox().
	FZorvekMCPBridgeBox WorldBounds;
	// Static mesh components: the assigned mesh's path name, empty when none.
	FString StaticMeshPath;
};

// An actor with everything the readback object reports.
struct FZorvekMCPBridgeActorSnapshot
{
	FZorvekMCPBridgeActorEntry Entry;
	FString ClassPath;
	bool bHasRootComponent = false;
	// The root component's component-to-world transform; identity without a root component.
	FZorvekMCPBridgeTransform RootTransform;
	// GetActorBounds(false, Origin, Extent, false) as the box Origin - Extent .. Origin + Extent.
	FZorvekMCPBridgeBox Bounds;
	// Every component in GetComponents order (scene and other actor components).
	TArray<FZorvekMCPBridgeActorComponentSnapshot> Components;
};

// Mirrors ELevelViewportType (same values).
enum class EZorvekMCPBridgeViewportType : uint8
{
	OrthoXY = 0,
	OrthoXZ = 1,
	OrthoYZ = 2,
	Perspective = 3,
	OrthoFreelook = 4,
	OrthoNegativeXY = 5,
	OrthoNegativeXZ = 6,
	OrthoNegativeYZ = 7
};

// The active Level Editor viewport (FLevelEditorModule::GetFirstActiveLevelViewport).
struct FZorvekMCPBridgeViewportInfo
{
	// A level viewport and its client exist.
	bool bHasViewport = false;
	// The client has an FViewport.
	bool bHasFViewport = false;
	int32 Width = 0;
	int32 Height = 0;
	// The client's viewport type as its raw value (values beyond the enum are reported as such).
	int32 ViewportType = static_cast<int32>(EZorvekMCPBridgeViewportType::Perspective);
	bool bIsPerspective = true;
	// GetViewLocation / GetViewRotation: the perspective view transform in a perspective view,
	// else the orthographic one.
	FZorvekMCPBridgeVector ViewLocation;
	FZorvekMCPBridgeRotator ViewRotation;
};

// A plug-in as IPluginManager knows it.
struct FZorvekMCPBridgePluginState
{
	bool bInstalled = false;
	bool bEnabled = false;
};

class IZorvekMCPBridgeWorld
{
public:
	virtual ~IZorvekMCPBridgeWorld() = default;

	// GEditor exists / the editor actor subsystem was found / the editor world context has a world.
	virtual bool IsEditorAvailable() const = 0;
	virtual bool IsActorSubsystemAvailable() const = 0;
	virtual bool GetEditorWorld(FZorvekMCPBridgeWorldInfo& OutWorld) const = 0;

	// UEditorActorSubsystem::GetAllLevelActors, in its order; empty without the subsystem.
	virtual TArray<FZorvekMCPBridgeActorEntry> GetAllLevelActors() const = 0;
	// UEditorActorSubsystem::GetSelectedLevelActors, in selection order.
	virtual TArray<FZorvekMCPBridgeObjectHandle> GetSelectedLevelActors() const = 0;
	// False when the handle is not an actor of the editor world.
	virtual bool ReadActor(FZorvekMCPBridgeObjectHandle Actor, FZorvekMCPBridgeActorSnapshot& OutActor) const = 0;

	// UEditorActorSubsystem::SpawnActorFromClass(Class, Location, Rotation, false) with a class
	// the caller has loaded and checked to be an actor class. Invalid when nothing was spawned.
	virtual FZorvekMCPBridgeObjectHandle SpawnActorFromClass(const FString& ClassPath, const FZorvekMCPBridgeVector& Location, const FZorvekMCPBridgeRotator& Rotation) = 0;
	virtual void SetActorScale3D(FZorvekMCPBridgeObjectHandle Actor, const FZorvekMCPBridgeVector& Scale) = 0;
	// AActor::SetActorLabel(Label, true).
	virtual void SetActorLabel(FZorvekMCPBridgeObjectHandle Actor, const FString& Label) = 0;
	// Adds each tag that is absent, in order (AddUnique), then marks the actor modified.
	virtual void AddActorTags(FZorvekMCPBridgeObjectHandle Actor, const TArray<FName>& Tags) = 0;
	// AActor::SetActorTransform(FTransform(Rotation.Quaternion(), Location, Scale)), no sweep,
	// teleport none.
	virtual void SetActorTransform(FZorvekMCPBridgeObjectHandle Actor, const FZorvekMCPBridgeTransform& Transform) = 0;
	// USceneComponent::SetRelativeTransform likewise, then UpdateComponentToWorld. False when the
	// handle is not a scene component.
	virtual bool SetComponentRelativeTransform(FZorvekMCPBridgeObjectHandle Component, const FZorvekMCPBridgeTransform& Transform) = 0;
	virtual void SelectNothing() = 0;
	virtual void SetActorSelectionState(FZorvekMCPBridgeObjectHandle Actor, bool bSelected) = 0;
	// UEditorActorSubsystem::DestroyActors in one call.
	virtual bool DestroyActors(const TArray<FZorvekMCPBridgeObjectHandle>& Actors) = 0;
	// A component added to an actor of the editor world as the details panel's Add Component
	// adds one: a new object of the class with the actor as outer (the name made unique among
	// its subobjects, transactional), added with AddInstanceComponent so it is saved and shown, a
	// scene component made the root of an actor without one and attached to the root otherwise,
	// then registered. Invalid when the actor is not of the editor world or the class is no
	// loaded, concrete actor component class.
	virtual FZorvekMCPBridgeObjectHandle AddInstanceComponent(FZorvekMCPBridgeObjectHandle Actor, const FString& ComponentClassPath, const FString& ComponentName) = 0;

	// The active Level Editor viewport; bHasViewport false when there is none.
	virtual FZorvekMCPBridgeViewportInfo GetActiveViewport() const = 0;
	// FocusViewportOnBox(Box, true), then Invalidate and FViewport::Draw.
	virtual void FocusActiveViewportOnBox(const FZorvekMCPBridgeBox& Box) = 0;
	// FViewport::ReadPixels with the default surface-read flags: Width * Height pixels as B, G, R,
	// A bytes, row-major from the top left. False when the read fails.
	virtual bool ReadActiveViewportPixels(TArray<uint8>& OutBgraPixels, int32& OutWidth, int32& OutHeight) = 0;
	// FImageUtils::PNGCompressImageArray; empty when the engine produced nothing.
	virtual TArray<uint8> CompressBgraToPng(int32 Width, int32 Height, const TArray<uint8>& BgraPixels) const = 0;

	// IPluginManager::FindPlugin and IsEnabled.
	virtual FZorvekMCPBridgePluginState GetPluginState(const FString& PluginName) const = 0;
	// FModuleManager::ModuleExists / IsModuleLoaded.
	virtual bool ModuleExists(const FString& ModuleName) const = 0;
	virtual bool IsModuleLoaded(const FString& ModuleName) const = 0;
};
