#pragma once

#include "Internationalization/Text.h"
#include "UObject/UnrealType.h"

class FTextProperty : public TProperty<FText>
{
};
