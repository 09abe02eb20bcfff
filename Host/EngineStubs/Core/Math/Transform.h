#pragma once

#include "CoreMinimal.h"
#include "Math/Quat.h"
#include "Math/Rotator.h"
#include "Math/Vector.h"

// FTransform is UE::Math::TTransform<double> in the engine (TransformNonVectorized.h or
// TransformVectorized.h, both reached through Math/Transform.h).
struct FTransform
{
	static const FTransform Identity;

	FTransform();
	FTransform(const FQuat& InRotation, const FVector& InTranslation, const FVector& InScale3D = FVector::OneVector);
	FTransform(const FRotator& InRotation, const FVector& InTranslation, const FVector& InScale3D = FVector::OneVector);

	FVector GetLocation() const;
	FQuat GetRotation() const;
	FRotator Rotator() const;
	FVector GetScale3D() const;
};
