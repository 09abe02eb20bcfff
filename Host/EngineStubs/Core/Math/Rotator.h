#pragma once

#include "CoreMinimal.h"

struct FQuat;

// FRotator is UE::Math::TRotator<double> in the engine: Pitch, Yaw, Roll in degrees.
struct FRotator
{
	double Pitch;
	double Yaw;
	double Roll;

	static const FRotator ZeroRotator;

	FRotator();
	FRotator(double InPitch, double InYaw, double InRoll);

	FQuat Quaternion() const;
};
