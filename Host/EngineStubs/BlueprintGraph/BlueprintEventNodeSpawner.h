#pragma once

#include "CoreMinimal.h"
#include "BlueprintNodeSpawner.h"
#include "UObject/ObjectMacros.h"

class UFunction;

// Not in the reference notes beyond its accessor names (unreal-behaviour-blueprints.md §9.3);
// check against the engine.
UCLASS(Transient)
class UBlueprintEventNodeSpawner : public UBlueprintNodeSpawner
{
	GENERATED_BODY()

public:
	UFunction const* GetEventFunction() const;
	bool IsForCustomEvent() const;
};
