#include "AssetRegistry/ARFilter.h"
#include "AssetRegistry/AssetData.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Modules/ModuleManager.h"
#include "UObject/TopLevelAssetPath.h"

namespace
{
	IAssetRegistry& GetRegistry()
	{
		return FModuleManager::LoadModuleChecked<FAssetRegistryModule>(TEXT("AssetRegistry")).Get();
	}

	FZorvekMCPBridgeAssetData ToAssetData(const FAssetData& Asset, bool bWithTags)
	{
		FZorvekMCPBridgeAssetData Data;
		Data.PackageName = Asset.PackageName.ToString();
		Data.PackagePath = Asset.PackagePath.ToString();
		Data.AssetName = Asset.AssetName.ToString();
		Data.AssetClassPath = Asset.AssetClassPath.ToString();
		Data.ObjectPath = Asset.GetObjectPathString();
		if (bWithTags)
		{
			for (const auto& Tag : Asset.TagsAndValues)
			{
				Data.Tags.Add({Tag.Key.ToString(), Tag.Value.AsString()});
			}
		}
		return Data;
	}
}

void FZorvekMCPBridgeEngineAssetRegistry::EnumerateAssets(const FZorvekMCPBridgeAssetFilter& Filter, TFunctionRef<bool(const FZorvekMCPBridgeAssetData&)> Callback) const
{
	if (Filter.PackagePaths.IsEmpty() && Filter.ClassPaths.IsEmpty())
	{
		return;
	}
	FARFilter EngineFilter;
	for (const FString& PackagePath : Filter.PackagePaths)
	{
		EngineFilter.PackagePaths.Add(FName(*PackagePath));
	}
	for (const FString& ClassPath : Filter.ClassPaths)
	{
		EngineFilter.ClassPaths.Add(FTopLevelAssetPath(ClassPath));
	}
	EngineFilter.bRecursivePaths = Filter.bRecursivePaths;
	EngineFilter.bRecursiveClasses = Filter.bRecursiveClasses;
	// The registry is walked as it stands; a scan still running is not awaited.
	GetRegistry().EnumerateAssets(EngineFilter, [&Filter, &Callback](const FAssetData& Asset)
	{
		return Callback(ToAssetData(Asset, Filter.bIncludeTags));
	});
}

TArray<FZorvekMCPBridgeAssetData> FZorvekMCPBridgeEngineAssetRegistry::GetAssetsByPackageName(const FString& PackageName) const
{
	TArray<FAssetData> Assets;
	GetRegistry().GetAssetsByPackageName(FName(*PackageName), Assets);
	TArray<FZorvekMCPBridgeAssetData> Result;
	for (const FAssetData& Asset : Assets)
	{
		Result.Add(ToAssetData(Asset, true));
	}
	return Result;
}
