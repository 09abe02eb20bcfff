#pragma once

#include "UObject/UnrealType.h"

class FStrProperty : public TProperty<FString>
{
};
