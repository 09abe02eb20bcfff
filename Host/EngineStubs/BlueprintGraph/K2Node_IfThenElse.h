#pragma once

#include "CoreMinimal.h"
#include "K2Node.h"
#include "UObject/ObjectMacros.h"

UCLASS()
class UK2Node_IfThenElse : public UK2Node
{
	GENERATED_BODY()

public:
	BLUEPRINTGRAPH_API UEdGraphPin* GetElsePin() const;
	BLUEPRINTGRAPH_API UEdGraphPin* GetConditionPin() const;
};
