#pragma once

#include "CoreMinimal.h"
#include "K2Node_FunctionTerminator.h"
#include "UObject/ObjectMacros.h"

UCLASS()
class UK2Node_FunctionResult : public UK2Node_FunctionTerminator
{
	GENERATED_BODY()

public:
	TArray<UK2Node_FunctionResult*> GetAllResultNodes() const;
};
