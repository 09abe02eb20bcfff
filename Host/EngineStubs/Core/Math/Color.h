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

// An 8-bit sRGB colour; its bytes lie in memory as B, G, R, A on little-endian platforms, the
// order viewport reads and PNG compression use.
struct FColor
{
	uint8 B;
	uint8 G;
	uint8 R;
	uint8 A;

	FColor();
	FColor(uint8 InR, uint8 InG, uint8 InB, uint8 InA = 255);
};
