#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// The read-only asset tools: name resolution and the generic inspector with its specialised
// camera, StateTree and material sections.
namespace ZorvekMCPBridgeAssetTools
{
	TSharedPtr<FJsonObject> HandleResolveAsset(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleInspectAsset(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

	// The answer of an asset tool in a process without an editor to ask.
	TSharedPtr<FJsonObject> MakeEditorPortUnavailableResult(const FString& ToolName);
}
