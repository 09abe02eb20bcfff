#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"

// Only the class, which the tools pass along without touching it (UTexture, Engine's
// Engine/Texture.h).
UCLASS(abstract, MinimalAPI, BlueprintType)
class UTexture : public UObject
{
	GENERATED_BODY()
};
