#pragma once

#include "CoreMinimal.h"
#include "Templates/Function.h"

// One registry tag of an asset, value as text.
struct FZorvekMCPBridgeAssetTag
{
	FString Name;
	FString Value;
};

// What the Asset Registry knows about one asset, without loading it.
struct FZorvekMCPBridgeAssetData
{
	// Package name, e.g. /Game/Characters/BP_Hero.
	FString PackageName;
	// Folder of the package, e.g. /Game/Characters.
	FString PackagePath;
	FString AssetName;
	// Asset class path, e.g. /Script/Engine.Blueprint.
	FString AssetClassPath;
	// Soft object path as text, e.g. /Game/Characters/BP_Hero.BP_Hero.
	FString ObjectPath;
	// Filled when the query asked for tags (an implementation may fill them anyway).
	TArray<FZorvekMCPBridgeAssetTag> Tags;
};

// A registry query, with the meaning of the engine's FARFilter.
struct FZorvekMCPBridgeAssetFilter
{
	// Folders such as /Game (no trailing slash).
	TArray<FString> PackagePaths;
	bool bRecursivePaths = false;
	// Class paths such as /Script/Engine.Blueprint; empty means any class.
	TArray<FString> ClassPaths;
	// When false, assets of subclasses of ClassPaths do not pass.
	bool bRecursiveClasses = false;
	bool bIncludeTags = false;
};

// The read side of the Asset Registry.
class IZorvekMCPBridgeAssetRegistry
{
public:
	virtual ~IZorvekMCPBridgeAssetRegistry() = default;

	// Walks the assets that pass the filter, in the registry's own order, until the callback
	// returns false. A filter without package paths and classes passes nothing.
	virtual void EnumerateAssets(const FZorvekMCPBridgeAssetFilter& Filter, TFunctionRef<bool(const FZorvekMCPBridgeAssetData&)> Callback) const = 0;

	// The assets of one package (normally one), with their tags; empty when the registry has no
	// entry for it.
	virtual TArray<FZorvekMCPBridgeAssetData> GetAssetsByPackageName(const FString& PackageName) const = 0;
};
