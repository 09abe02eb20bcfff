#pragma once

#include "CoreMinimal.h"
#include "Math/Box.h"
#include "Math/Vector.h"

// FBoxSphereBounds is UE::Math::TBoxSphereBounds<double, double> in the engine; BoxExtent is
// the half size.
struct FBoxSphereBounds
{
	FVector Origin;
	FVector BoxExtent;
	double SphereRadius;

	FBox GetBox() const;
};
