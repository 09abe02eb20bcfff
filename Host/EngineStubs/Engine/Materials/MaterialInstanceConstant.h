#pragma once

#include "CoreMinimal.h"
#include "MaterialTypes.h"
#include "Materials/MaterialInstance.h"

class UTexture;

UCLASS(BlueprintType, MinimalAPI)
class UMaterialInstanceConstant : public UMaterialInstance
{
	GENERATED_BODY()

public:
#if WITH_EDITOR
	void SetParentEditorOnly(UMaterialInterface* NewParent, bool RecacheShader = true);
	void SetScalarParameterValueEditorOnly(const FMaterialParameterInfo& ParameterInfo, float Value);
	void SetTextureParameterValueEditorOnly(const FMaterialParameterInfo& ParameterInfo, UTexture* Value);
#endif
};
