#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// The editor world tools: world status, guarded placement, actor and component transforms, the
// level actor listing, selection and the cleanup of bridge-placed actors. They touch the editor
// world only, and every change to it either needs AllowCurrentLevel=true or touches only an actor
// the client named or the bridge tagged.
namespace ZorvekMCPBridgeEditorWorldTools
{
	// The compile flags placement compiles a Blueprint with (EBlueprintCompileOptions::SkipSave),
	// as blueprint_compile does.
	inline constexpr uint32 PlacementCompileFlags = 0x20;
	// editor_read_level_actors returns at most this many actors unless Limit says otherwise.
	inline constexpr int32 DefaultReadLimit = 100;

	TSharedPtr<FJsonObject> HandleGetWorldStatus(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandlePlaceActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleSetActorTransform(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleSetComponentTransform(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleReadLevelActors(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleSelectActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleCleanupReproActors(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
