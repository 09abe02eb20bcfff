#pragma once

#include "CoreMinimal.h"

// FVector is UE::Math::TVector<double> in the engine; only the members the plug-in uses.
struct FVector
{
	double X;
	double Y;
	double Z;

	static const FVector ZeroVector;
	static const FVector OneVector;

	FVector();
	FVector(double InX, double InY, double InZ);
};
