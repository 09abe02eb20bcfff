// How every editor-world tool describes and finds actors: the actor readback object with its
// transform and bounds JSON, the repro tags and the one test that makes an actor a repro actor,
// the lookup by ActorNameOrLabel and the text filter. The world tools, the viewport capture and
// the PCG tools all answer through these, so an actor reads the same everywhere.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"

namespace ZorvekMCPBridgeActorReadback
{
	// The tags the bridge puts on what it places. ZorvekMCPBridge and ZorvekRepro each make an
	// actor a repro actor; ZorvekVisualPCG alone does not.
	inline constexpr const TCHAR* BridgeTag = TEXT("ZorvekMCPBridge");
	inline constexpr const TCHAR* ReproTag = TEXT("ZorvekRepro");
	inline constexpr const TCHAR* VisualPcgTag = TEXT("ZorvekVisualPCG");

	// The only repro test: the tags hold ZorvekRepro or ZorvekMCPBridge (FName equality).
	bool IsReproActor(const TArray<FName>& Tags);

	// {"x","y","z"}, {"pitch","yaw","roll"}.
	TSharedPtr<FJsonObject> MakeVectorJson(const FZorvekMCPBridgeVector& Vector);
	TSharedPtr<FJsonObject> MakeRotatorJson(const FZorvekMCPBridgeRotator& Rotator);
	// {"location","rotation","scale"}.
	TSharedPtr<FJsonObject> MakeTransformJson(const FZorvekMCPBridgeTransform& Transform);
	// {"min","max","center","extent"} of the box from Min to Max; the corners are taken as they
	// stand, valid or not (an actor without primitives reads as the zero box at the origin).
	TSharedPtr<FJsonObject> MakeBoundsJson(const FZorvekMCPBridgeBox& Box);

	// The box the readback reports as "bounds": FBox(Origin - Extent, Origin + Extent) of
	// GetActorBounds, a valid box even when the actor has no primitive (then zero at the origin),
	// as an FBox built from two corners is.
	FZorvekMCPBridgeBox GetActorBoundsBox(const FZorvekMCPBridgeActorSnapshot& Actor);

	// A scene component's object; null for components that are not scene components.
	TSharedPtr<FJsonObject> MakeComponentJson(const FZorvekMCPBridgeActorComponentSnapshot& Component);

	// The actor readback object ("name", "label", "path", "class_path", "transform", "bounds",
	// "tags", "components", "selected", "zorvek_repro_actor"); bSelected is written as given.
	TSharedPtr<FJsonObject> MakeActorReadback(const FZorvekMCPBridgeActorSnapshot& Actor, bool bSelected);

	// Reads the actor through the world port and builds its readback; null when the handle is no
	// longer an actor of the editor world.
	TSharedPtr<FJsonObject> ReadActorReadback(const IZorvekMCPBridgeWorld& World, FZorvekMCPBridgeObjectHandle Actor, bool bSelected);

	// The text filter of the read and cleanup tools: empty matches every actor; otherwise a
	// case-insensitive substring of the object name, the label or the full path name. Class and
	// tags are not looked at, whatever the catalogue text of editor_read_level_actors says.
	bool MatchesFilter(const FZorvekMCPBridgeActorEntry& Actor, const FString& Filter);

	// The lookup by ActorNameOrLabel: the argument is trimmed, then the level actors are walked in
	// GetAllLevelActors order and the first whose object name, else label, else full path name
	// equals it without regard to case (whole string) is the match. False when nothing matches,
	// when the trimmed argument is empty, or when the actor subsystem is missing.
	bool FindActor(const IZorvekMCPBridgeWorld& World, const FString& ActorNameOrLabel, FZorvekMCPBridgeActorEntry& OutActor);

	// "No editor actor found for '%s'." with the argument as typed.
	FString MakeActorNotFoundMessage(const FString& ActorNameOrLabel);
}
