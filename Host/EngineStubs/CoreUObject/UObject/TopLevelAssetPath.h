#pragma once

#include "CoreMinimal.h"

// Path of a top-level object, e.g. /Script/Engine.Actor.
struct FTopLevelAssetPath
{
	FTopLevelAssetPath();
	FTopLevelAssetPath(FName InPackageName, FName InAssetName);
	explicit FTopLevelAssetPath(FStringView Path);
	FName GetPackageName() const;
	FName GetAssetName() const;
	FString ToString() const;
	bool IsValid() const;
	bool IsNull() const;
};
