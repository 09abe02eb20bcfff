#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Misc/DateTime.h"

class IZorvekMCPBridgeEditorPort;

// The camera and StateTree fixture: one camera asset, one camera rig and one StateTree, wired by
// reflection just enough for every section of the camera and StateTree readers. Nothing is saved.
//
// Where 5.7 no longer has what the original recipe names, the recipe's step is reported as a
// partial failure and the 5.7 successor is built as well: the rig's interface parameter is a
// CameraObjectInterfaceBlendableParameter in Interface.BlendableParameters (the class
// CameraRigInterfaceParameter and the array InterfaceParameters are gone), and besides the
// deprecated CameraRigs list the rig is the single camera director's CameraRig.
//
// Every step runs whose inputs exist, so a failure early on does not hide later ones; "created"
// is true when all three assets were made.
namespace ZorvekMCPBridgeReproAssets
{
	struct FParams
	{
		// Empty: /Game/ZorvekRepro/MossbankHG_<Now as %Y%m%d_%H%M%S>.
		FString PackagePath;
		FString AssetPrefix = TEXT("ZorvekHG");
		// The local time the default folder is named after.
		FDateTime Now;
	};

	// The result payload; the run itself never fails as a whole.
	TSharedPtr<FJsonObject> CreateMossbankReproAssets(IZorvekMCPBridgeEditorPort& Port, const FParams& Params);
}
