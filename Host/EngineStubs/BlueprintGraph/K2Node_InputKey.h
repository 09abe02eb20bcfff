#pragma once

#include "CoreMinimal.h"
#include "InputCoreTypes.h"
#include "K2Node.h"
#include "UObject/ObjectMacros.h"

UCLASS()
class UK2Node_InputKey : public UK2Node
{
	GENERATED_BODY()

public:
	FKey InputKey;
	uint32 bConsumeInput : 1;
	uint32 bExecuteWhenPaused : 1;
	uint32 bOverrideParentBinding : 1;
	uint32 bControl : 1;
	uint32 bAlt : 1;
	uint32 bShift : 1;
	uint32 bCommand : 1;

	UEdGraphPin* GetPressedPin() const;
	UEdGraphPin* GetReleasedPin() const;
};
