#pragma once

#include "CoreMinimal.h"
#include "BlueprintNodeSpawner.h"
#include "UObject/ObjectMacros.h"

// Not in the reference notes beyond its name (unreal-behaviour-blueprints.md §9.3); check against
// the engine.
UCLASS(Transient)
class UBlueprintFieldNodeSpawner : public UBlueprintNodeSpawner
{
	GENERATED_BODY()
};
