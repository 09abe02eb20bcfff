#pragma once

#include "CoreMinimal.h"
#include "Containers/EnumAsByte.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

// unreal-behaviour-blueprints.md §3.1: declaration order = value.
enum ECanCreateConnectionResponse
{
	CONNECT_RESPONSE_MAKE,
	CONNECT_RESPONSE_DISALLOW,
	CONNECT_RESPONSE_BREAK_OTHERS_A,
	CONNECT_RESPONSE_BREAK_OTHERS_B,
	CONNECT_RESPONSE_BREAK_OTHERS_AB,
	CONNECT_RESPONSE_MAKE_WITH_CONVERSION_NODE,
	CONNECT_RESPONSE_MAKE_WITH_PROMOTION,
	CONNECT_RESPONSE_MAX,
};

struct FPinConnectionResponse
{
	FText Message;
	TEnumAsByte<enum ECanCreateConnectionResponse> Response;
	bool bIsFatal;
};

UCLASS(abstract)
class UEdGraphSchema : public UObject
{
	GENERATED_BODY()
};
