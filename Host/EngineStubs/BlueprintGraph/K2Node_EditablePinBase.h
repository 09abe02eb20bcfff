#pragma once

#include "CoreMinimal.h"
#include "Containers/EnumAsByte.h"
#include "EdGraph/EdGraphNode.h"
#include "EdGraph/EdGraphPin.h"
#include "K2Node.h"
#include "Templates/SharedPointer.h"
#include "UObject/ObjectMacros.h"

// A pin the user declared on a function entry or result node or on a custom event. Not a
// UPROPERTY of its node: reflection does not see it.
struct FUserPinInfo
{
	FName PinName;
	FEdGraphPinType PinType;
	TEnumAsByte<EEdGraphPinDirection> DesiredPinDirection;
	FString PinDefaultValue;
};

UCLASS(abstract)
class UK2Node_EditablePinBase : public UK2Node
{
	GENERATED_BODY()

public:
	uint32 bIsEditable : 1;
	TArray<TSharedPtr<FUserPinInfo>> UserDefinedPins;

	UEdGraphPin* CreateUserDefinedPin(const FName InPinName, const FEdGraphPinType& InPinType, EEdGraphPinDirection InDesiredDirection, bool bUseUniqueName = true);
	virtual bool CanCreateUserDefinedPin(const FEdGraphPinType& InPinType, EEdGraphPinDirection InDesiredDirection, FText& OutErrorMessage);
	void RemoveUserDefinedPin(TSharedPtr<FUserPinInfo> PinToRemove);
	void RemoveUserDefinedPinByName(const FName PinName);
	bool UserDefinedPinExists(const FName PinName) const;
	virtual bool ModifyUserDefinedPinDefaultValue(TSharedPtr<FUserPinInfo> PinInfo, const FString& NewDefaultValue);
};
