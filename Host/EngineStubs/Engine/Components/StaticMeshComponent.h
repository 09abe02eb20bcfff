#pragma once

#include "CoreMinimal.h"
#include "Components/MeshComponent.h"
#include "UObject/ObjectMacros.h"

class UStaticMesh;

UCLASS()
class UStaticMeshComponent : public UMeshComponent
{
	GENERATED_BODY()

public:
	virtual bool SetStaticMesh(UStaticMesh* NewMesh);
	UStaticMesh* GetStaticMesh() const;
};
