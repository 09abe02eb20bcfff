#pragma once

#include "CoreMinimal.h"

// FVector2D is UE::Math::TVector2<double> in the engine.
struct FVector2D
{
	double X;
	double Y;

	FVector2D();
	FVector2D(double InX, double InY);
};
