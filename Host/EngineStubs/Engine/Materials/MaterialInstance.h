#pragma once

#include "CoreMinimal.h"
#include "Materials/MaterialInterface.h"
#include "UObject/ObjectPtr.h"

UCLASS(abstract, BlueprintType, MinimalAPI)
class UMaterialInstance : public UMaterialInterface
{
	GENERATED_BODY()

public:
	TObjectPtr<UMaterialInterface> Parent;
};
