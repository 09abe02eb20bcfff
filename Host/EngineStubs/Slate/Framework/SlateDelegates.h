#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"

DECLARE_DELEGATE_RetVal(FReply, FOnClicked)
