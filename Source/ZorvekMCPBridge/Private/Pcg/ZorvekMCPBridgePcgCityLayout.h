// Where the pieces of a road or city recipe go: straight strips of road segments laid end to end
// from an origin along a yaw. Pure arithmetic, so the placement a recipe reports is the one a test
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
}
