#pragma once

#include "CoreMinimal.h"
#include "Components/SceneComponent.h"
#include "UObject/ObjectMacros.h"

class UMaterialInterface;

UCLASS()
class UPrimitiveComponent : public USceneComponent
{
	GENERATED_BODY()

public:
	virtual void SetMaterial(int32 ElementIndex, UMaterialInterface* Material);
	virtual UMaterialInterface* GetMaterial(int32 ElementIndex) const;
	virtual int32 GetNumMaterials() const;
};
