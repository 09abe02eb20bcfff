#pragma once

#include "Containers/EnumAsByte.h"
#include "CoreMinimal.h"
#include "Engine/EngineTypes.h"
#include "MaterialDomain.h"
#include "MaterialExpressionIO.h"
#include "Materials/MaterialExpression.h"
#include "Materials/MaterialInterface.h"
#include "SceneTypes.h"

UCLASS(MinimalAPI, BlueprintType)
class UMaterial : public UMaterialInterface
{
	GENERATED_BODY()

public:
	TEnumAsByte<EMaterialDomain> MaterialDomain;
	TEnumAsByte<EBlendMode> BlendMode;
	float OpacityMaskClipValue;
	uint8 TwoSided : 1;
	uint8 bIsThinSurface : 1;
	uint8 bUseMaterialAttributes : 1;

#if WITH_EDITOR
	const FMaterialExpressionCollection& GetExpressionCollection() const;
	FMaterialExpressionCollection& GetExpressionCollection();
	FExpressionInput* GetExpressionInputForProperty(EMaterialProperty InProperty);
#endif
	bool IsPropertyConnected(EMaterialProperty Property) const;
};
