#pragma once

#include "CoreMinimal.h"
#include "Components/PrimitiveComponent.h"
#include "UObject/ObjectMacros.h"

UCLASS(abstract)
class UMeshComponent : public UPrimitiveComponent
{
	GENERATED_BODY()
};
