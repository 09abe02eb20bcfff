#pragma once

#include "CoreMinimal.h"
#include "Engine/MemberReference.h"
#include "K2Node_EditablePinBase.h"
#include "UObject/ObjectMacros.h"

// The reference notes name it as the base of the entry and result nodes, holding FunctionReference.
UCLASS()
class UK2Node_FunctionTerminator : public UK2Node_EditablePinBase
{
	GENERATED_BODY()

public:
	FMemberReference FunctionReference;
};
