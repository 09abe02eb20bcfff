#pragma once

#include "CoreMinimal.h"
#include "Containers/EnumAsByte.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"

// A pin the user declared on a function entry or result node or on a custom event. Not a
// UPROPERTY of its node: reflection does not see it.
struct FUserPinInfo
{
	FName PinName;
	FEdGraphPinType PinType;
	TEnumAsByte<EEdGraphPinDirection> DesiredPinDirection;
	FString PinDefaultValue;
};
