#pragma once

#include "CoreMinimal.h"
#include "Math/Rotator.h"

// FQuat is UE::Math::TQuat<double> in the engine.
struct FQuat
{
	double X;
	double Y;
	double Z;
	double W;

	FQuat();

	FRotator Rotator() const;
};
