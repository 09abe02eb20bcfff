#pragma once

#include "CoreMinimal.h"
#include "Engine/MemberReference.h"
#include "K2Node_EditablePinBase.h"
#include "UObject/ObjectMacros.h"

class UFunction;

UCLASS()
class UK2Node_Event : public UK2Node_EditablePinBase
{
	GENERATED_BODY()

public:
	FMemberReference EventReference;
	uint32 bOverrideFunction : 1;
	uint32 bInternalEvent : 1;
	FName CustomFunctionName;
	uint32 FunctionFlags;

	UFunction* FindEventSignatureFunction() const;
	FName GetFunctionName() const;
	bool IsInterfaceEventNode() const;
	UEdGraphPin* GetDelegatePin() const;

	static const FName DelegateOutputName;
};
