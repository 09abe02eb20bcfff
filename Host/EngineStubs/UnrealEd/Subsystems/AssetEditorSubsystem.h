#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"

class UAssetEditorSubsystem : public UObject
{
public:
	TArray<UObject*> GetAllEditedAssets();
};
