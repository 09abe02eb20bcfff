#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

// Only the class, which the tools name by path without touching it (UStaticMesh, Engine's
// Engine/StaticMesh.h; its engine base is UStreamableRenderAsset).
UCLASS()
class UStaticMesh : public UObject
{
	GENERATED_BODY()
};
