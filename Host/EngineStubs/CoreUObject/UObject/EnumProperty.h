#pragma once

#include "UObject/UnrealType.h"

class FNumericProperty;

class FEnumProperty : public FProperty
{
public:
	UEnum* GetEnum() const;
	FNumericProperty* GetUnderlyingProperty() const;
};
