// The multi-class boundary of PCG forests: one actor set per class at a generated forest's points,
// with the statement that a single PCG spawner choosing among several actor classes is not built.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

namespace ZorvekMCPBridgePcgMulticlassTools
{
	TSharedPtr<FJsonObject> HandleMulticlassSpawnProof(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
