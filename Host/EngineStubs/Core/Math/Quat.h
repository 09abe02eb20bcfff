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

	static const FQuat Identity;

	FQuat();
	explicit FQuat(const FRotator& R);

	FRotator Rotator() const;
};
