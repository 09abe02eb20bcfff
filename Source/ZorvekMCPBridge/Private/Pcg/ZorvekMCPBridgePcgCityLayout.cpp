#include "Pcg/ZorvekMCPBridgePcgCityLayout.h"

#include "Math/UnrealMathUtility.h"

namespace
{
	constexpr double PcgCityLayoutDegreesToRadians = 3.14159265358979323846 / 180.0;
}

TArray<ZorvekMCPBridgePcgCityLayout::FPiecePlacement> ZorvekMCPBridgePcgCityLayout::MakeRoadStrip(const FZorvekMCPBridgeVector& Origin, double Yaw, int32 SegmentCount, double SegmentLength)
{
	const double Radians = Yaw * PcgCityLayoutDegreesToRadians;
	const double DirectionX = FMath::Cos(Radians);
	const double DirectionY = FMath::Sin(Radians);
	TArray<FPiecePlacement> Placements;
	for (int32 Index = 0; Index < SegmentCount; ++Index)
	{
		const double Distance = SegmentLength * (Index + 0.5);
		FPiecePlacement Placement;
		Placement.Location = {Origin.X + DirectionX * Distance, Origin.Y + DirectionY * Distance, Origin.Z};
		Placement.Yaw = Yaw;
		Placements.Add(Placement);
	}
	return Placements;
}
