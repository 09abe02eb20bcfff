#pragma once

#include "Containers/EnumAsByte.h"
#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

// Not in the reference notes beyond FMaterialParameterInfo's fields and its construction from a
// name (unreal-api-editor.md §4.6); declarations from the engine's MaterialTypes.h, check against
// the engine.
UENUM()
enum EMaterialParameterAssociation : int
{
	LayerParameter,
	BlendParameter,
	GlobalParameter,
};

USTRUCT(BlueprintType)
struct FMaterialParameterInfo
{
	GENERATED_USTRUCT_BODY()

	FName Name;
	TEnumAsByte<EMaterialParameterAssociation> Association;
	int32 Index;

	FMaterialParameterInfo(const TCHAR* InName, EMaterialParameterAssociation InAssociation = EMaterialParameterAssociation::GlobalParameter, int32 InIndex = INDEX_NONE);
	FMaterialParameterInfo(FName InName = FName(), EMaterialParameterAssociation InAssociation = EMaterialParameterAssociation::GlobalParameter, int32 InIndex = INDEX_NONE);
};
