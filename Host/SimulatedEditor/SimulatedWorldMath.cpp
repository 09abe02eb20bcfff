#include "SimulatedWorldMath.h"

#include <cmath>

namespace
{
	constexpr double SimWorldMathPi = 3.1415926535897932;
	constexpr double SimWorldMathDegToRad = SimWorldMathPi / 180.0;
	constexpr double SimWorldMathRadToDeg = 180.0 / SimWorldMathPi;

	// FMath::FastAsin: the engine's 7-degree minimax approximation, in float as the engine
	// computes it; it is why a pitch of 30 can read back as 29.99998.
	double SimWorldMathFastAsin(double Value)
	{
		constexpr float FastAsinHalfPi = 1.5707963050f;
		const bool bNonNegative = Value >= 0.0;
		const float X = (float)std::fabs(Value);
		float OneMinusX = 1.0f - X;
		if (OneMinusX < 0.0f)
		{
			OneMinusX = 0.0f;
		}
		const float Root = std::sqrt(OneMinusX);
		float Result = ((((((-0.0012624911f * X + 0.0066700901f) * X - 0.0170881256f) * X + 0.0308918810f) * X - 0.0501743046f) * X + 0.0889789874f) * X - 0.2145988016f) * X + FastAsinHalfPi;
		Result *= Root;
		return bNonNegative ? FastAsinHalfPi - Result : Result - FastAsinHalfPi;
	}
}

double FSimulatedVector::Size() const
{
	return std::sqrt(X * X + Y * Y + Z * Z);
}

double FSimulatedVector::GetMax() const
{
	return FMath::Max(X, FMath::Max(Y, Z));
}

FSimulatedVector FSimulatedVector::Cross(const FSimulatedVector& A, const FSimulatedVector& B)
{
	return {A.Y * B.Z - A.Z * B.Y, A.Z * B.X - A.X * B.Z, A.X * B.Y - A.Y * B.X};
}

FSimulatedVector FSimulatedRotator::Vector() const
{
	const double PitchRadians = std::fmod(Pitch, 360.0) * SimWorldMathDegToRad;
	const double YawRadians = std::fmod(Yaw, 360.0) * SimWorldMathDegToRad;
	const double CosPitch = std::cos(PitchRadians);
	return {CosPitch * std::cos(YawRadians), CosPitch * std::sin(YawRadians), std::sin(PitchRadians)};
}

double FSimulatedRotator::NormalizeAxis(double Angle)
{
	// ClampAxis into [0, 360), then the upper half folds down: (-180, 180].
	double Result = std::fmod(Angle, 360.0);
	if (Result < 0.0)
	{
		Result += 360.0;
	}
	if (Result > 180.0)
	{
		Result -= 360.0;
	}
	return Result;
}

FSimulatedQuat FSimulatedQuat::FromRotator(const FSimulatedRotator& Rotator)
{
	const double HalfRadiansPerDegree = SimWorldMathDegToRad / 2.0;
	const double PitchHalf = std::fmod(Rotator.Pitch, 360.0) * HalfRadiansPerDegree;
	const double YawHalf = std::fmod(Rotator.Yaw, 360.0) * HalfRadiansPerDegree;
	const double RollHalf = std::fmod(Rotator.Roll, 360.0) * HalfRadiansPerDegree;
	const double SP = std::sin(PitchHalf);
	const double CP = std::cos(PitchHalf);
	const double SY = std::sin(YawHalf);
	const double CY = std::cos(YawHalf);
	const double SR = std::sin(RollHalf);
	const double CR = std::cos(RollHalf);
	FSimulatedQuat Result;
	Result.X = CR * SP * SY - SR * CP * CY;
	Result.Y = -CR * SP * CY - SR * CP * SY;
	Result.Z = CR * CP * SY - SR * SP * CY;
	Result.W = CR * CP * CY + SR * SP * SY;
	return Result;
}

FSimulatedRotator FSimulatedQuat::ToRotator() const
{
	const double SingularityTest = Z * X - W * Y;
	const double YawY = 2.0 * (W * Z + X * Y);
	const double YawX = 1.0 - 2.0 * (Y * Y + Z * Z);
	constexpr double SingularityThreshold = 0.4999995;
	FSimulatedRotator Result;
	if (SingularityTest < -SingularityThreshold)
	{
		Result.Pitch = -90.0;
		Result.Yaw = std::atan2(YawY, YawX) * SimWorldMathRadToDeg;
		Result.Roll = FSimulatedRotator::NormalizeAxis(-Result.Yaw - 2.0 * std::atan2(X, W) * SimWorldMathRadToDeg);
	}
	else if (SingularityTest > SingularityThreshold)
	{
		Result.Pitch = 90.0;
		Result.Yaw = std::atan2(YawY, YawX) * SimWorldMathRadToDeg;
		Result.Roll = FSimulatedRotator::NormalizeAxis(Result.Yaw - 2.0 * std::atan2(X, W) * SimWorldMathRadToDeg);
	}
	else
	{
		Result.Pitch = SimWorldMathFastAsin(2.0 * SingularityTest) * SimWorldMathRadToDeg;
		Result.Yaw = std::atan2(YawY, YawX) * SimWorldMathRadToDeg;
		Result.Roll = std::atan2(-2.0 * (W * X + Y * Z), 1.0 - 2.0 * (X * X + Y * Y)) * SimWorldMathRadToDeg;
	}
	return Result;
}

FSimulatedQuat FSimulatedQuat::operator*(const FSimulatedQuat& Other) const
{
	FSimulatedQuat Result;
	Result.X = W * Other.X + X * Other.W + Y * Other.Z - Z * Other.Y;
	Result.Y = W * Other.Y - X * Other.Z + Y * Other.W + Z * Other.X;
	Result.Z = W * Other.Z + X * Other.Y - Y * Other.X + Z * Other.W;
	Result.W = W * Other.W - X * Other.X - Y * Other.Y - Z * Other.Z;
	return Result;
}

FSimulatedVector FSimulatedQuat::RotateVector(const FSimulatedVector& Vector) const
{
	// The engine's form: V + W*T + Q x T with T = 2 * (Q x V).
	const FSimulatedVector Axis(X, Y, Z);
	const FSimulatedVector T = FSimulatedVector::Cross(Axis, Vector) * 2.0;
	return Vector + T * W + FSimulatedVector::Cross(Axis, T);
}

void FSimulatedQuat::Normalize()
{
	const double SquareSum = X * X + Y * Y + Z * Z + W * W;
	if (SquareSum >= 1e-8)
	{
		const double Scale = 1.0 / std::sqrt(SquareSum);
		X *= Scale;
		Y *= Scale;
		Z *= Scale;
		W *= Scale;
	}
	else
	{
		*this = FSimulatedQuat();
	}
}

FSimulatedTransform::FSimulatedTransform(const FSimulatedRotator& InRotation, const FSimulatedVector& InTranslation, const FSimulatedVector& InScale)
	: Rotation(FSimulatedQuat::FromRotator(InRotation))
	, Translation(InTranslation)
	, Scale3D(InScale)
{
}

FSimulatedTransform FSimulatedTransform::operator*(const FSimulatedTransform& Parent) const
{
	FSimulatedTransform Result;
	Result.Rotation = Parent.Rotation * Rotation;
	Result.Scale3D = Scale3D * Parent.Scale3D;
	Result.Translation = Parent.Rotation.RotateVector(Parent.Scale3D * Translation) + Parent.Translation;
	return Result;
}

FSimulatedVector FSimulatedTransform::TransformPosition(const FSimulatedVector& Position) const
{
	return Rotation.RotateVector(Scale3D * Position) + Translation;
}

FSimulatedBox& FSimulatedBox::operator+=(const FSimulatedBox& Other)
{
	if (!Other.bIsValid)
	{
		return *this;
	}
	if (!bIsValid)
	{
		*this = Other;
		return *this;
	}
	Min = {FMath::Min(Min.X, Other.Min.X), FMath::Min(Min.Y, Other.Min.Y), FMath::Min(Min.Z, Other.Min.Z)};
	Max = {FMath::Max(Max.X, Other.Max.X), FMath::Max(Max.Y, Other.Max.Y), FMath::Max(Max.Z, Other.Max.Z)};
	return *this;
}

FSimulatedVector FSimulatedBox::GetCenter() const
{
	return bIsValid ? (Min + Max) * 0.5 : FSimulatedVector();
}

FSimulatedVector FSimulatedBox::GetExtent() const
{
	return bIsValid ? (Max - Min) * 0.5 : FSimulatedVector();
}

FSimulatedBox FSimulatedBox::TransformBy(const FSimulatedTransform& Transform) const
{
	if (!bIsValid)
	{
		return FSimulatedBox();
	}
	const FSimulatedVector Center = GetCenter();
	const FSimulatedVector Extent = GetExtent();
	const FSimulatedVector NewCenter = Transform.TransformPosition(Center);
	// Each scaled, rotated half axis adds its absolute components to the new extent.
	const FSimulatedVector AxisX = Transform.Rotation.RotateVector({Transform.Scale3D.X * Extent.X, 0.0, 0.0});
	const FSimulatedVector AxisY = Transform.Rotation.RotateVector({0.0, Transform.Scale3D.Y * Extent.Y, 0.0});
	const FSimulatedVector AxisZ = Transform.Rotation.RotateVector({0.0, 0.0, Transform.Scale3D.Z * Extent.Z});
	const FSimulatedVector NewExtent(std::fabs(AxisX.X) + std::fabs(AxisY.X) + std::fabs(AxisZ.X), std::fabs(AxisX.Y) + std::fabs(AxisY.Y) + std::fabs(AxisZ.Y),
		std::fabs(AxisX.Z) + std::fabs(AxisY.Z) + std::fabs(AxisZ.Z));
	return FromCenterAndExtent(NewCenter, NewExtent);
}
