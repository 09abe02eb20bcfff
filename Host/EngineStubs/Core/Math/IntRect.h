#pragma once

#include "CoreMinimal.h"
#include "Math/IntPoint.h"

// Not in the reference notes beyond its use as a default argument; FIntRect is
// UE::Math::TIntRect<int32> in the engine, check against the engine.
struct FIntRect
{
	FIntPoint Min;
	FIntPoint Max;

	FIntRect();
	FIntRect(int32 X0, int32 Y0, int32 X1, int32 Y1);
};
