#pragma once

#include "CoreMinimal.h"
#include "Engine/MemberReference.h"
#include "K2Node.h"
#include "UObject/ObjectMacros.h"

class FProperty;

UCLASS(abstract)
class UK2Node_Variable : public UK2Node
{
	GENERATED_BODY()

public:
	FMemberReference VariableReference;

	void SetFromProperty(const FProperty* Property, bool bSelfContext, UClass* OwnerClass);
	FName GetVarName() const;
	FString GetVarNameString() const;
	FProperty* GetPropertyForVariable() const;
	UEdGraphPin* GetValuePin() const;
};
