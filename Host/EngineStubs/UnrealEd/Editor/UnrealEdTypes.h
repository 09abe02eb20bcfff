#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

UENUM()
enum ELevelViewportType : int
{
	LVT_OrthoXY = 0,
	LVT_OrthoXZ = 1,
	LVT_OrthoYZ = 2,
	LVT_Perspective = 3,
	LVT_OrthoFreelook = 4,
	LVT_OrthoNegativeXY = 5,
	LVT_OrthoNegativeXZ = 6,
	LVT_OrthoNegativeYZ = 7,
	LVT_MAX = 8,
	LVT_None = 255,

	LVT_OrthoTop = LVT_OrthoXY,
	LVT_OrthoLeft = LVT_OrthoXZ,
	LVT_OrthoBack = LVT_OrthoYZ,
	LVT_OrthoBottom = LVT_OrthoNegativeXY,
	LVT_OrthoRight = LVT_OrthoNegativeXZ,
	LVT_OrthoFront = LVT_OrthoNegativeYZ
};
