#pragma once

#include "CoreMinimal.h"
#include "Math/Vector.h"

// FBox is UE::Math::TBox<double> in the engine. The default constructor leaves it uninitialised;
// FBox(ForceInit) is the empty, invalid box.
struct FBox
{
	FVector Min;
	FVector Max;
	uint8 IsValid;

	FBox();
	explicit FBox(EForceInit);
	FBox(const FVector& InMin, const FVector& InMax);

	FVector GetCenter() const;
	FVector GetExtent() const;
	FVector GetSize() const;
	FBox& operator+=(const FBox& Other);

	static FBox BuildAABB(const FVector& Origin, const FVector& Extent);
};
