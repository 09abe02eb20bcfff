#pragma once

#include "AssetRegistry/IAssetRegistry.h"
#include "CoreMinimal.h"
#include "Modules/ModuleInterface.h"

class UObject;

class FAssetRegistryModule : public IModuleInterface
{
public:
	virtual IAssetRegistry& Get() const;
	static void AssetCreated(UObject* NewAsset);
	static void AssetDeleted(UObject* DeletedAsset);
	static void AssetRenamed(const UObject* RenamedAsset, const FString& OldObjectPath);
};
