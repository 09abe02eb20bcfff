#pragma once

#include "CoreMinimal.h"
#include "Materials/MaterialExpression.h"

// Not in the reference notes beyond its R, G, B, A bit fields and the Input pin
// (unreal-behaviour-world-assets.md §5.2); declaration from the engine's
// MaterialExpressionComponentMask.h, check against the engine.
UCLASS(MinimalAPI)
class UMaterialExpressionComponentMask : public UMaterialExpression
{
	GENERATED_BODY()

public:
	FExpressionInput Input;
	uint32 R : 1;
	uint32 G : 1;
	uint32 B : 1;
	uint32 A : 1;
};
