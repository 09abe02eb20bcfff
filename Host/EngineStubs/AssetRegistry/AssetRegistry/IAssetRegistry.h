#pragma once

#include "AssetRegistry/ARFilter.h"
#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"

namespace UE::AssetRegistry
{
	enum class EEnumerateAssetsFlags : uint32
	{
		None = 0,
		OnlyOnDiskAssets = 1 << 0,
	};
}

class IAssetRegistry
{
public:
	virtual ~IAssetRegistry();
	static IAssetRegistry* Get();
	static IAssetRegistry& GetChecked();

	virtual bool GetAssets(const FARFilter& Filter, TArray<FAssetData>& OutAssetData, bool bSkipARFilteredAssets = true) const = 0;
	virtual bool EnumerateAssets(const FARFilter& Filter, TFunctionRef<bool(const FAssetData&)> Callback,
		UE::AssetRegistry::EEnumerateAssetsFlags InEnumerateFlags = UE::AssetRegistry::EEnumerateAssetsFlags::None) const = 0;
	virtual bool GetAssetsByPackageName(FName PackageName, TArray<FAssetData>& OutAssetData, bool bIncludeOnlyOnDiskAssets = false, bool bSkipARFilteredAssets = true) const = 0;
	virtual bool IsLoadingAssets() const = 0;
	virtual bool IsGathering() const = 0;
};
