#pragma once

#include "CoreMinimal.h"
#include "UObject/TopLevelAssetPath.h"

struct FARFilter
{
	TArray<FName> PackageNames;
	TArray<FName> PackagePaths;
	TArray<FTopLevelAssetPath> ClassPaths;
	TSet<FTopLevelAssetPath> RecursiveClassPathsExclusionSet;
	bool bRecursivePaths = false;
	bool bRecursiveClasses = false;
	bool bIncludeOnlyOnDiskAssets = false;
	uint32 WithoutPackageFlags = 0;
	uint32 WithPackageFlags = 0;

	bool IsEmpty() const;
};
