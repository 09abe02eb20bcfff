#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// The material authoring tools: expression class discovery and resolution, a blank material,
// expressions added and edited by GUID, wires between expressions and to the root inputs, and
// the editor's update. Every change marks the package dirty and runs PostEditChange; nothing
// saves.
namespace ZorvekMCPBridgeMaterialTools
{
	TSharedPtr<FJsonObject> HandleCreateMaterial(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleFindExpressionClasses(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleResolveExpressionClass(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleAddExpression(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleSetExpressionProperty(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleConnectExpressions(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleConnectRoot(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleUpdateMaterial(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	// unreal_create_material_repro_assets: the material fixture of ZorvekMCPBridgeMaterialReproAssets.h.
	TSharedPtr<FJsonObject> HandleCreateMaterialReproAssets(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
