#pragma once

#include "CoreMinimal.h"
#include "BlueprintFieldNodeSpawner.h"
#include "UObject/ObjectMacros.h"

class UFunction;

// Not in the reference notes beyond GetFunction (unreal-behaviour-blueprints.md §9.3); check
// against the engine.
UCLASS(Transient)
class UBlueprintFunctionNodeSpawner : public UBlueprintFieldNodeSpawner
{
	GENERATED_BODY()

public:
	UFunction const* GetFunction() const;
};
