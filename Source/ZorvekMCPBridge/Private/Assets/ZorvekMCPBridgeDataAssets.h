#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

class IZorvekMCPBridgeEditorPort;

// Authoring real Data Asset instances (objects of a UDataAsset subclass saved as their own
// assets), never Blueprint child classes. Each operation validates everything it can before its
// first change and returns the tool result envelope; a failed call leaves the project as it was.
//
// Result flags: a failed save does not flag a create or set as an error (the asset exists and is
// changed in memory; "saved" false and "save_error" say what did not reach the disk). A batch is
// an error when any item failed, a creation or a property set alike.
namespace ZorvekMCPBridgeDataAssets
{
	inline constexpr const TCHAR* DataAssetClassPath = TEXT("/Script/Engine.DataAsset");
	inline constexpr const TCHAR* PrimaryDataAssetClassPath = TEXT("/Script/Engine.PrimaryDataAsset");

	struct FFindClassesParams
	{
		FString Query;
		TArray<FString> PackagePaths;
		bool bIncludeNative = true;
		bool bIncludeBlueprint = true;
		bool bOnlyInstantiable = true;
		int32 Limit = 100;
	};

	struct FCreateParams
	{
		FString ClassPath;
		FString PackagePath;
		FString AssetName;
		bool bSave = true;
	};

	struct FSetPropertyParams
	{
		FString AssetNameOrPath;
		FString PropertyName;
		// Null when the argument was absent.
		TSharedPtr<FJsonValue> Value;
		bool bSave = true;
	};

	struct FCreateBatchParams
	{
		// Null when the argument was absent or not an array.
		const TArray<TSharedPtr<FJsonValue>>* Items = nullptr;
		FString DefaultClassPath;
		FString DefaultPackagePath;
		bool bSave = true;
		bool bContinueOnError = false;
	};

	TSharedPtr<FJsonObject> FindClasses(IZorvekMCPBridgeEditorPort& Port, const FFindClassesParams& Params);
	TSharedPtr<FJsonObject> CreateDataAsset(IZorvekMCPBridgeEditorPort& Port, const FCreateParams& Params);
	TSharedPtr<FJsonObject> SetDataAssetProperty(IZorvekMCPBridgeEditorPort& Port, const FSetPropertyParams& Params);
	TSharedPtr<FJsonObject> CreateDataAssetBatch(IZorvekMCPBridgeEditorPort& Port, const FCreateBatchParams& Params);

	// The import text of a JSON value: a string as it stands, numbers and booleans as their text,
	// arrays and objects as condensed JSON, "<invalid>" for null.
	FString JsonValueToImportText(const TSharedPtr<FJsonValue>& Value);
}
