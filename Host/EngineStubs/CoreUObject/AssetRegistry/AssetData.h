#pragma once

#include "CoreMinimal.h"
#include "UObject/TopLevelAssetPath.h"

class UObject;
class UClass;

// One registry tag value; reads as text whatever it stores.
class FAssetTagValueRef
{
public:
	bool IsSet() const;
	FString AsString() const;
	FName AsName() const;
};

// The tags of an asset. Iterating yields pairs of tag name and value.
class FAssetDataTagMapSharedView
{
public:
	class TConstIterator
	{
	public:
		TPair<FName, FAssetTagValueRef> operator*() const;
		TConstIterator& operator++();
		bool operator!=(const TConstIterator& Other) const;
	};

	TConstIterator begin() const;
	TConstIterator end() const;
	int32 Num() const;
	bool Contains(FName Key) const;
};

struct FAssetData
{
	FName PackageName;
	FName PackagePath;
	FName AssetName;
	FTopLevelAssetPath AssetClassPath;
	uint32 PackageFlags;
	FAssetDataTagMapSharedView TagsAndValues;

	bool IsValid() const;
	FString GetObjectPathString() const;
	FString GetFullName() const;
	UObject* GetAsset() const;
};
