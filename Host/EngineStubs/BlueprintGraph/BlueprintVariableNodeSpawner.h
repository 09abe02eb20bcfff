#pragma once

#include "CoreMinimal.h"
#include "BlueprintFieldNodeSpawner.h"
#include "UObject/ObjectMacros.h"

class FProperty;

// Not in the reference notes beyond its accessor names (unreal-behaviour-blueprints.md §9.3);
// check against the engine.
UCLASS(Transient)
class UBlueprintVariableNodeSpawner : public UBlueprintFieldNodeSpawner
{
	GENERATED_BODY()

public:
	FProperty const* GetVarProperty() const;
	bool IsUserLocalVariable() const;
	bool IsLocalVariable() const;
	UObject* GetVarOuter() const;
};
