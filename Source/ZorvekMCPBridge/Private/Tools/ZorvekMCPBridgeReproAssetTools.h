#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// The fixture tools that make small assets for the readers to read.
namespace ZorvekMCPBridgeReproAssetTools
{
	TSharedPtr<FJsonObject> HandleCreateMossbankReproAssets(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
