#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

// Not in the reference notes beyond its name and module; the base of every component class.
UCLASS()
class UActorComponent : public UObject
{
	GENERATED_BODY()
};
