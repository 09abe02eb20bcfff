#pragma once

#include "CoreMinimal.h"

struct FMargin
{
	float Left;
	float Top;
	float Right;
	float Bottom;

	FMargin();
	FMargin(float UniformMargin);
	FMargin(float Horizontal, float Vertical);
	FMargin(float InLeft, float InTop, float InRight, float InBottom);
};
