// Where the pieces of a road or city recipe go: straight strips of road segments laid end to end
// from an origin along a yaw, and city grids of intersections, roads and skyscrapers. Pure arithmetic, so the placement a recipe reports is the one a test
// can recompute.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"

namespace ZorvekMCPBridgePcgCityLayout
{
	// Beyond this a strip is refused: a hundred segments of the longest road already cross any
	// editor-sized level, and each segment is an actor the editor has to draw.
	inline constexpr int32 MaxRoadSegments = 100;
	inline constexpr int32 DefaultRoadSegments = 5;

	struct FPiecePlacement
	{
		FZorvekMCPBridgeVector Location;
		double Yaw = 0.0;
	};

	// SegmentCount segments of SegmentLength, the first starting at Origin: segment i is centred
	// at Origin + Direction * SegmentLength * (i + 0.5), Direction being the X axis turned by Yaw
	// (degrees), and turned by the same yaw.
	TArray<FPiecePlacement> MakeRoadStrip(const FZorvekMCPBridgeVector& Origin, double Yaw, int32 SegmentCount, double SegmentLength);

	// A city grid is at most this many blocks along each side (21 x 21 intersections, 840 roads
	// and 400 skyscrapers: 1,681 actors).
	inline constexpr int32 MaxCityBlocksPerSide = 20;

	enum class ECityPiece : uint8
	{
		Intersection,
		Road,
		Skyscraper
	};

	struct FCityPlacement
	{
		ECityPiece Piece = ECityPiece::Road;
		// The grid cell: intersections at corners (0..Columns, 0..Rows), roads along X between
		// them, roads along Y, skyscrapers in the blocks (0..Columns-1, 0..Rows-1).
		int32 Column = 0;
		int32 Row = 0;
		FZorvekMCPBridgeVector Location;
		double Yaw = 0.0;
		// Skyscrapers: their floor count.
		int32 Floors = 0;
	};

	// Columns x Rows blocks starting at Origin (the first intersection's centre) along +X and +Y,
	// at a pitch of RoadLength + IntersectionSize: intersections at every corner, a road along X
	// (yaw 0) and along Y (yaw 90) between neighbouring corners, a skyscraper in each block with
	// floors drawn from MinFloors..MaxFloors by a generator seeded with Seed, block by block, so
	// one seed always gives the same city. Order: intersections, roads along X, roads along Y,
	// skyscrapers, each row by row.
	TArray<FCityPlacement> MakeCityGrid(const FZorvekMCPBridgeVector& Origin, int32 Columns, int32 Rows, double RoadLength, double IntersectionSize,
		int32 MinFloors, int32 MaxFloors, int32 Seed);
}
