#pragma once

#include "CoreMinimal.h"
#include "RHIDefinitions.h"

// Not in the reference notes beyond FViewport::ReadPixels' default argument
// FReadSurfaceDataFlags(RCM_UNorm, CubeFace_MAX); declared as the engine's RHI module declares
// them, check against the engine.
enum ERangeCompressionMode
{
	RCM_UNorm,
	RCM_SNorm,
	RCM_MinMaxNorm,
	RCM_MinMax
};

struct FReadSurfaceDataFlags
{
	FReadSurfaceDataFlags(ERangeCompressionMode InCompressionMode = RCM_UNorm, ECubeFace InCubeFace = CubeFace_MAX);
};
