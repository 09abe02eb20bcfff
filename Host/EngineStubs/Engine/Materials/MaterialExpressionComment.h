#pragma once

#include "CoreMinimal.h"
#include "Materials/MaterialExpression.h"

UCLASS(MinimalAPI)
class UMaterialExpressionComment : public UMaterialExpression
{
	GENERATED_BODY()

public:
	int32 SizeX;
	int32 SizeY;
	FString Text;
	int32 FontSize;
};
