#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

// Only the class: the plug-in reads the editor world's names and compares actors' worlds with it.
UCLASS(MinimalAPI)
class UWorld final : public UObject
{
	GENERATED_BODY()
};
