#pragma once

#include "CoreMinimal.h"

class FPackageName
{
public:
	static FString LongPackageNameToFilename(const FString& InLongPackageName, const FString& InExtension = TEXT(""));
	static bool TryConvertLongPackageNameToFilename(const FString& InLongPackageName, FString& OutFilename, const FString& InExtension = TEXT(""));
	static const FString& GetAssetPackageExtension();
	static FString GetShortName(FStringView LongName);
	// The FText overload: not in the reference notes beyond its message; check against the engine.
	static bool IsValidLongPackageName(FStringView InLongPackageName, bool bIncludeReadOnlyRoots, FText* OutReason);
};
