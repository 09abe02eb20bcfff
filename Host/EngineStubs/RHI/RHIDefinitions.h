#pragma once

#include "CoreMinimal.h"

// Not in the reference notes beyond CubeFace_MAX; the enumerators are the engine's, check
// against the engine.
enum ECubeFace : uint32
{
	CubeFace_PosX = 0,
	CubeFace_NegX,
	CubeFace_PosY,
	CubeFace_NegY,
	CubeFace_PosZ,
	CubeFace_NegZ,
	CubeFace_MAX
};
