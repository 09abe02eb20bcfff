#pragma once

#include "CoreMinimal.h"
#include "K2Node_Variable.h"
#include "UObject/ObjectMacros.h"

UCLASS()
class UK2Node_VariableSet : public UK2Node_Variable
{
	GENERATED_BODY()
};
