#pragma once

#include "CoreMinimal.h"
#include "K2Node_EditablePinBase.h"
#include "UObject/ObjectMacros.h"

// Not in the reference notes: the engine's base of macro instances (and of a macro's entry and
// exit nodes), check against the engine.
UCLASS()
class UK2Node_Tunnel : public UK2Node_EditablePinBase
{
	GENERATED_BODY()
};
