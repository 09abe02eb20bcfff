#pragma once

#include "CoreMinimal.h"
#include "Engine/Blueprint.h"
#include "K2Node_FunctionTerminator.h"
#include "UObject/ObjectMacros.h"

UCLASS()
class UK2Node_FunctionEntry : public UK2Node_FunctionTerminator
{
	GENERATED_BODY()

public:
	FName CustomGeneratedFunctionName;
	TArray<FBPVariableDescription> LocalVariables;
	bool bEnforceConstCorrectness;

	int32 GetExtraFlags() const;
	void SetExtraFlags(int32 InFlags);
	void AddExtraFlags(int32 InFlags);
	int32 GetFunctionFlags() const;
};
