#pragma once

#include "Containers/UnrealString.h"

class FPaths
{
public:
	// The host's project folder: the working directory unless the host sets another.
	static FString ProjectDir();
	static FString ProjectSavedDir();
	static FString ProjectConfigDir();
	UE_COMPAT_HOST_ONLY static void SetProjectDirForHost(const FString& Directory);

	static FString GetPath(const FString& InPath);
	static FString GetCleanFilename(const FString& InPath);
	static FString GetBaseFilename(const FString& InPath, bool bRemovePath = true);
	static FString GetExtension(const FString& InPath, bool bIncludeDot = false);
	static bool FileExists(const FString& InPath);
	static bool DirectoryExists(const FString& InPath);
	static void NormalizeFilename(FString& InPath);
	static void NormalizeDirectoryName(FString& InPath);
	static FString ConvertRelativePathToFull(const FString& InPath);
	static bool IsRelative(const FString& InPath);

	template <typename... PathTypes>
	static FString Combine(PathTypes&&... InPaths)
	{
		FString Result;
		(AppendPart(Result, FString(InPaths)), ...);
		return Result;
	}

private:
	static void AppendPart(FString& Result, const FString& Part);
};
