#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Misc/DateTime.h"

class IZorvekMCPBridgeEditorPort;

// The material fixture: one material and one material instance, built through the authoring
// writers so that every section of the material reader has something to read. The material
// M_<Prefix>_Base holds a texture coordinate feeding a texture sample parameter "BaseTexture"
// (the engine's DefaultTexture), a vector parameter "Tint", a multiply of the two wired to
// BaseColor, a scalar parameter "Roughness" wired to Roughness, and a comment box. The instance
// MI_<Prefix>_Override has the material as parent and overrides "Roughness" (0.8) and
// "BaseTexture" (WhiteSquareTexture); "Tint" keeps the parent's value. Nothing is saved.
//
// Each stage runs whose inputs exist; what fails is a partial failure with its stage
// ("asset_create", "expression_create", "expression_connect", "texture_load",
// "instance_create", "instance_override"). "created" is true when both assets were made.
namespace ZorvekMCPBridgeMaterialReproAssets
{
	struct FParams
	{
		// Empty: /Game/ZorvekRepro/MaterialRepro_<Now as %Y%m%d_%H%M%S>.
		FString PackagePath;
		FString AssetPrefix = TEXT("ZorvekMat");
		// The local time the default folder is named after.
		FDateTime Now;
	};

	// The result payload; the run itself never fails as a whole.
	TSharedPtr<FJsonObject> CreateMaterialReproAssets(IZorvekMCPBridgeEditorPort& Port, const FParams& Params);
}
