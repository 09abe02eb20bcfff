#pragma once

#include "Containers/UnrealString.h"

struct FHttpPath
{
	FHttpPath() = default;
	FHttpPath(FString InPath) { SetPath(MoveTemp(InPath)); }
	FHttpPath(const TCHAR* InPath) { SetPath(FString(InPath)); }

	const FString& GetPath() const { return Path; }
	void SetPath(FString InPath)
	{
		Path = MoveTemp(InPath);
		if (Path.Len() > 1 && Path.EndsWith(TEXT("/")))
		{
			Path.LeftChopInline(1);
		}
	}
	uint32 ParsePathTokens(TArray<FString>& OutPathTokens) const { return (uint32)Path.ParseIntoArray(OutPathTokens, TEXT("/"), true); }
	bool IsRoot() const { return Path == TEXT("/"); }
	bool IsValidPath() const
	{
		if (Path.IsEmpty() || IsRoot() || !Path.StartsWith(TEXT("/")))
		{
			return false;
		}
		for (TCHAR Character : Path)
		{
			if (Character <= 32 || Character >= 127 || FString(TEXT(",\\<>[]{}#|^")).Contains(FString::Chr(Character)))
			{
				return false;
			}
		}
		return true;
	}
	void MakeRelative(const FString& OtherPath)
	{
		if (Path.StartsWith(OtherPath))
		{
			Path = Path.RightChop(OtherPath.Len());
			if (Path.IsEmpty())
			{
				Path = TEXT("/");
			}
		}
	}
	bool operator==(const FHttpPath& Other) const { return Path.Equals(Other.Path, ESearchCase::CaseSensitive); }

private:
	FString Path;
};
