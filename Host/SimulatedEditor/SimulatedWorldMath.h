// The engine's transform math as the level depends on it: FRotator <-> FQuat with the engine's
// formulas (FQuat::Rotator's singularity test and FastAsin included, so world rotations read back
// normalised and slightly rounded as in the editor), FTransform composition, and FBox with
// TransformBy and the union of boxes.
#pragma once

#include "CoreMinimal.h"

struct FSimulatedVector
{
	double X = 0.0;
	double Y = 0.0;
	double Z = 0.0;

	FSimulatedVector() = default;
	FSimulatedVector(double InX, double InY, double InZ)
		: X(InX)
		, Y(InY)
		, Z(InZ)
	{
	}

	FSimulatedVector operator+(const FSimulatedVector& Other) const { return {X + Other.X, Y + Other.Y, Z + Other.Z}; }
	FSimulatedVector operator-(const FSimulatedVector& Other) const { return {X - Other.X, Y - Other.Y, Z - Other.Z}; }
	FSimulatedVector operator*(double Scale) const { return {X * Scale, Y * Scale, Z * Scale}; }
	// Component-wise, as FVector's operator*.
	FSimulatedVector operator*(const FSimulatedVector& Other) const { return {X * Other.X, Y * Other.Y, Z * Other.Z}; }
	double Size() const;
	double GetMax() const;
	static double Dot(const FSimulatedVector& A, const FSimulatedVector& B) { return A.X * B.X + A.Y * B.Y + A.Z * B.Z; }
	static FSimulatedVector Cross(const FSimulatedVector& A, const FSimulatedVector& B);
};

// Degrees, as FRotator keeps them.
struct FSimulatedRotator
{
	double Pitch = 0.0;
	double Yaw = 0.0;
	double Roll = 0.0;

	// FRotator::Vector: the unit direction the rotation looks along.
	FSimulatedVector Vector() const;
	// FRotator::NormalizeAxis: into (-180, 180].
	static double NormalizeAxis(double Angle);
};

struct FSimulatedQuat
{
	double X = 0.0;
	double Y = 0.0;
	double Z = 0.0;
	double W = 1.0;

	// FQuat(FRotator): half-angle sines and cosines; roll, then pitch, then yaw.
	static FSimulatedQuat FromRotator(const FSimulatedRotator& Rotator);
	// FQuat::Rotator: the singularity test against +-0.4999995, FastAsin for the pitch.
	FSimulatedRotator ToRotator() const;
	// FQuat::operator*: this rotation applied after Other.
	FSimulatedQuat operator*(const FSimulatedQuat& Other) const;
	FSimulatedVector RotateVector(const FSimulatedVector& Vector) const;
	FSimulatedQuat Inverse() const { return {-X, -Y, -Z, W}; }
	void Normalize();
};

struct FSimulatedTransform
{
	FSimulatedQuat Rotation;
	FSimulatedVector Translation;
	FSimulatedVector Scale3D = {1.0, 1.0, 1.0};

	FSimulatedTransform() = default;
	FSimulatedTransform(const FSimulatedRotator& InRotation, const FSimulatedVector& InTranslation, const FSimulatedVector& InScale);

	// FTransform::operator*: this (relative) transform, then Parent's; scale first, then rotation,
	// then translation.
	FSimulatedTransform operator*(const FSimulatedTransform& Parent) const;
	FSimulatedVector TransformPosition(const FSimulatedVector& Position) const;
};

// FBox: an invalid box (ForceInit) is all zero with IsValid 0.
struct FSimulatedBox
{
	FSimulatedVector Min;
	FSimulatedVector Max;
	bool bIsValid = false;

	FSimulatedBox() = default;
	FSimulatedBox(const FSimulatedVector& InMin, const FSimulatedVector& InMax)
		: Min(InMin)
		, Max(InMax)
		, bIsValid(true)
	{
	}
	static FSimulatedBox FromCenterAndExtent(const FSimulatedVector& Center, const FSimulatedVector& Extent) { return FSimulatedBox(Center - Extent, Center + Extent); }

	// operator+=: the union; an invalid box takes the other as it is.
	FSimulatedBox& operator+=(const FSimulatedBox& Other);
	// GetCenter / GetExtent are zero for an invalid box, as GetCenterAndExtents gives them.
	FSimulatedVector GetCenter() const;
	FSimulatedVector GetExtent() const;
	// FBox::TransformBy: the axis-aligned box around the transformed box.
	FSimulatedBox TransformBy(const FSimulatedTransform& Transform) const;
};
