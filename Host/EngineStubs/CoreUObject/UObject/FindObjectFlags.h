#pragma once

#include "CoreMinimal.h"

enum class EFindObjectFlags
{
	None = 0,
	ExactClass = 1 << 1,
};

enum class EFindFirstObjectOptions
{
	None = 0,
	ExactClass = 1 << 1,
	NativeFirst = 1 << 2,
	EnsureIfAmbiguous = 1 << 3,
};
