#pragma once

#include "CoreMinimal.h"

// Not in the reference notes beyond its use as a size type; FIntPoint is
// UE::Math::TIntPoint<int32> in the engine, check against the engine.
struct FIntPoint
{
	int32 X;
	int32 Y;

	FIntPoint();
	FIntPoint(int32 InX, int32 InY);
};
