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

TArray<ZorvekMCPBridgePcgCityLayout::FCityPlacement> ZorvekMCPBridgePcgCityLayout::MakeCityGrid(const FZorvekMCPBridgeVector& Origin, int32 Columns, int32 Rows, double RoadLength,
	double IntersectionSize, int32 MinFloors, int32 MaxFloors, int32 Seed)
{
	const double Pitch = RoadLength + IntersectionSize;
	TArray<FCityPlacement> Placements;
	const auto Add = [&Placements, &Origin](ECityPiece Piece, int32 Column, int32 Row, double X, double Y, double Yaw)
	{
		FCityPlacement Placement;
		Placement.Piece = Piece;
		Placement.Column = Column;
		Placement.Row = Row;
		Placement.Location = {Origin.X + X, Origin.Y + Y, Origin.Z};
		Placement.Yaw = Yaw;
		Placements.Add(Placement);
	};
	for (int32 Row = 0; Row <= Rows; ++Row)
	{
		for (int32 Column = 0; Column <= Columns; ++Column)
		{
			Add(ECityPiece::Intersection, Column, Row, Column * Pitch, Row * Pitch, 0.0);
		}
	}
	for (int32 Row = 0; Row <= Rows; ++Row)
	{
		for (int32 Column = 0; Column < Columns; ++Column)
		{
			Add(ECityPiece::Road, Column, Row, (Column + 0.5) * Pitch, Row * Pitch, 0.0);
		}
	}
	for (int32 Row = 0; Row < Rows; ++Row)
	{
		for (int32 Column = 0; Column <= Columns; ++Column)
		{
			Add(ECityPiece::Road, Column, Row, Column * Pitch, (Row + 0.5) * Pitch, 90.0);
		}
	}
	// A 32-bit linear congruential generator (Numerical Recipes' constants): the same on every
	// platform, unlike the standard library's distributions.
	uint32 State = (uint32)Seed;
	const uint32 Span = (uint32)(MaxFloors - MinFloors + 1);
	for (int32 Row = 0; Row < Rows; ++Row)
	{
		for (int32 Column = 0; Column < Columns; ++Column)
		{
			State = State * 1664525u + 1013904223u;
			Add(ECityPiece::Skyscraper, Column, Row, (Column + 0.5) * Pitch, (Row + 0.5) * Pitch, 0.0);
			Placements.Last().Floors = MinFloors + (int32)((State >> 8) % Span);
		}
	}
	return Placements;
}
