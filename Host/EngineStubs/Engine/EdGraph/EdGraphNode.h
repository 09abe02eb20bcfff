#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"
#include "UObject/WeakObjectPtrTemplates.h"

struct FEdGraphPinType;

UENUM()
enum EEdGraphPinDirection : int
{
	EGPD_Input,
	EGPD_Output,
	EGPD_MAX,
};

USTRUCT()
struct FEdGraphTerminalType
{
	GENERATED_USTRUCT_BODY()

	FEdGraphTerminalType();

	FName TerminalCategory;
	FName TerminalSubCategory;
	TWeakObjectPtr<UObject> TerminalSubCategoryObject;
	bool bTerminalIsConst;
	bool bTerminalIsWeakPointer;
	bool bTerminalIsUObjectWrapper;

	static FEdGraphTerminalType FromPinType(const FEdGraphPinType& PinType);
};
