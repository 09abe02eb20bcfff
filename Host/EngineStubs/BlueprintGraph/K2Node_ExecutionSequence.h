#pragma once

#include "CoreMinimal.h"
#include "K2Node.h"
#include "UObject/ObjectMacros.h"

UCLASS()
class UK2Node_ExecutionSequence : public UK2Node
{
	GENERATED_BODY()

public:
	virtual void AddInputPin();
	UEdGraphPin* GetThenPinGivenIndex(const int32 Index);
	void RemovePinFromExecutionNode(UEdGraphPin* TargetPin);
	bool CanRemoveExecutionPin() const;
};
