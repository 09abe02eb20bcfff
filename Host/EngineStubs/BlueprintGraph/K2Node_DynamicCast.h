#pragma once

#include "CoreMinimal.h"
#include "K2Node.h"
#include "Templates/SubclassOf.h"
#include "UObject/ObjectMacros.h"

UCLASS()
class UK2Node_DynamicCast : public UK2Node
{
	GENERATED_BODY()

public:
	TSubclassOf<UObject> TargetType;

	UEdGraphPin* GetValidCastPin() const;
	UEdGraphPin* GetInvalidCastPin() const;
	UEdGraphPin* GetCastResultPin() const;
	virtual UEdGraphPin* GetCastSourcePin() const;
	virtual UEdGraphPin* GetBoolSuccessPin() const;
	BLUEPRINTGRAPH_API void SetPurity(bool bNewPurity);
	bool IsNodePure() const;
};
