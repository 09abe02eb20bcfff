#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

UCLASS(abstract)
class UEdGraphSchema : public UObject
{
	GENERATED_BODY()
};
