#pragma once

#include "CoreTypes.h"

// Not in the reference notes beyond its use as a member type; the channels are the engine's
// FLinearColor members, check against the engine.
struct FLinearColor
{
	float R;
	float G;
	float B;
	float A;

	FLinearColor();
	FLinearColor(float InR, float InG, float InB, float InA = 1.0f);
};
