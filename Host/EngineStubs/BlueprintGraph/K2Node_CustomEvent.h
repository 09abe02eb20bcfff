#pragma once

#include "CoreMinimal.h"
#include "K2Node_Event.h"
#include "Math/Vector2D.h"
#include "UObject/ObjectMacros.h"

class UEdGraph;
class UFunction;

UCLASS()
class UK2Node_CustomEvent : public UK2Node_Event
{
	GENERATED_BODY()

public:
	bool bCallInEditor;
	FString DeprecationMessage;
	bool bIsDeprecated;

	static UK2Node_CustomEvent* CreateFromFunction(FVector2D GraphPosition, UEdGraph* ParentGraph, const FString& Name, const UFunction* Function, bool bSelectNewNode = true);
	void RenameCustomEventCloseToName(int32 StartIndex = 1);
};
