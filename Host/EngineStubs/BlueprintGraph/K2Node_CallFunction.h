#pragma once

#include "CoreMinimal.h"
#include "Engine/MemberReference.h"
#include "K2Node.h"
#include "UObject/ObjectMacros.h"

class UFunction;

UCLASS()
class UK2Node_CallFunction : public UK2Node
{
	GENERATED_BODY()

public:
	FMemberReference FunctionReference;
	uint32 bDefaultsToPureFunc : 1;
	uint32 bWantsEnumToExecExpansion : 1;

	virtual void SetFromFunction(const UFunction* Function);
	UFunction* GetTargetFunction() const;
	UEdGraphPin* GetReturnValuePin() const;
	bool IsLatentFunction() const;
	FName GetFunctionName() const;
	virtual bool IsNodePure() const;
};
