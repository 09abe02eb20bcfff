#pragma once

#include "CoreTypes.h"
#include <algorithm>
#include <cmath>

struct FMath
{
	template <typename T> static constexpr T Max(T A, T B) { return A < B ? B : A; }
	template <typename T> static constexpr T Min(T A, T B) { return B < A ? B : A; }
	template <typename T> static constexpr T Clamp(T X, T Low, T High) { return X < Low ? Low : (High < X ? High : X); }
	template <typename T> static constexpr T Abs(T X) { return X < 0 ? -X : X; }
	static bool IsFinite(double X) { return std::isfinite(X); }
	static bool IsNaN(double X) { return std::isnan(X); }
	static double RoundHalfFromZero(double X) { return std::round(X); }
	static int32 RoundToInt(double X) { return (int32)std::lround(X); }
	static int32 FloorToInt(double X) { return (int32)std::floor(X); }
	static double Sqrt(double X) { return std::sqrt(X); }
	static double Sin(double X) { return std::sin(X); }
	static double Cos(double X) { return std::cos(X); }
};
