#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"

UCLASS(abstract, BlueprintType, MinimalAPI)
class UMaterialInterface : public UObject
{
	GENERATED_BODY()
};
