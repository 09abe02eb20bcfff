#pragma once

#include "CoreMinimal.h"
#include "InputCoreTypes.h"
#include "K2Node_Event.h"
#include "UObject/ObjectMacros.h"

UCLASS()
class UK2Node_InputAxisKeyEvent : public UK2Node_Event
{
	GENERATED_BODY()

public:
	FKey AxisKey;
	uint32 bConsumeInput : 1;
	uint32 bExecuteWhenPaused : 1;
	uint32 bOverrideParentBinding : 1;

	void Initialize(const FKey InAxisKey);
};
