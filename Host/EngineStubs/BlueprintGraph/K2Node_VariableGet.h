#pragma once

#include "CoreMinimal.h"
#include "K2Node_Variable.h"
#include "UObject/ObjectMacros.h"

UCLASS()
class UK2Node_VariableGet : public UK2Node_Variable
{
	GENERATED_BODY()

public:
	bool IsNodePure() const;
};
