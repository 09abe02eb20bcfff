#include "Tools/ZorvekMCPBridgeDataAssetTools.h"

#include "Assets/ZorvekMCPBridgeDataAssets.h"
#include "Dom/JsonValue.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	using namespace ZorvekMCPBridgeDataAssets;
	using ZorvekMCPBridgeToolArguments::ReadBool;
	using ZorvekMCPBridgeToolArguments::ReadString;

	// A key under its name or, when absent, under its legacy name.
	FString ReadStringWithFallback(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, const TCHAR* LegacyKey)
	{
		return ReadString(Arguments, Key, ReadString(Arguments, LegacyKey, FString()));
	}

	// An array of strings, or one string; the default when absent or empty.
	TArray<FString> ReadStringList(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, const TArray<FString>& Default)
	{
		TArray<FString> Values;
		const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
		if (Arguments.IsValid() && Arguments->TryGetArrayField(Key, Array))
		{
			for (const TSharedPtr<FJsonValue>& Value : *Array)
			{
				FString Text;
				if (Value.IsValid() && Value->TryGetString(Text) && !Text.IsEmpty())
				{
					Values.Add(Text);
				}
			}
		}
		else
		{
			const FString Single = ReadString(Arguments, Key, FString());
			if (!Single.IsEmpty())
			{
				Values.Add(Single);
			}
		}
		return Values.IsEmpty() ? Default : Values;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDataAssetTools::HandleFindClasses(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("data_asset_find_classes"));
	}
	FFindClassesParams Params;
	Params.Query = ReadString(Arguments, TEXT("Query"), FString());
	Params.PackagePaths = ReadStringList(Arguments, TEXT("PackagePaths"), {TEXT("/Game")});
	Params.bIncludeNative = ReadBool(Arguments, TEXT("IncludeNative"), true);
	Params.bIncludeBlueprint = ReadBool(Arguments, TEXT("IncludeBlueprint"), true);
	Params.bOnlyInstantiable = ReadBool(Arguments, TEXT("OnlyInstantiable"), true);
	Params.Limit = ZorvekMCPBridgeToolArguments::ReadLimit(Arguments, TEXT("Limit"), 100);
	return FindClasses(*Context.EditorPort, Params);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDataAssetTools::HandleCreate(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("data_asset_create"));
	}
	FCreateParams Params;
	Params.ClassPath = ReadStringWithFallback(Arguments, TEXT("ClassPath"), TEXT("AssetClassPath"));
	Params.PackagePath = ReadStringWithFallback(Arguments, TEXT("PackagePath"), TEXT("InPackagePath"));
	Params.AssetName = ReadStringWithFallback(Arguments, TEXT("AssetName"), TEXT("InAssetName"));
	Params.bSave = ReadBool(Arguments, TEXT("Save"), true);
	return CreateDataAsset(*Context.EditorPort, Params);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDataAssetTools::HandleSetProperty(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("data_asset_set_property"));
	}
	FSetPropertyParams Params;
	Params.AssetNameOrPath = ReadStringWithFallback(Arguments, TEXT("AssetNameOrPath"), TEXT("name_or_path"));
	Params.PropertyName = ReadString(Arguments, TEXT("PropertyName"), FString());
	Params.Value = Arguments.IsValid() ? Arguments->TryGetField(TEXT("Value")) : nullptr;
	Params.bSave = ReadBool(Arguments, TEXT("Save"), true);
	return SetDataAssetProperty(*Context.EditorPort, Params);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDataAssetTools::HandleCreateBatch(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("data_asset_create_batch"));
	}
	FCreateBatchParams Params;
	if (!Arguments.IsValid() || !Arguments->TryGetArrayField(TEXT("Items"), Params.Items))
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(TEXT("data_asset_create_batch requires Items, an array of item objects."), true);
	}
	Params.DefaultClassPath = ReadString(Arguments, TEXT("DefaultClassPath"), FString());
	Params.DefaultPackagePath = ReadString(Arguments, TEXT("DefaultPackagePath"), FString());
	Params.bSave = ReadBool(Arguments, TEXT("Save"), true);
	Params.bContinueOnError = ReadBool(Arguments, TEXT("ContinueOnError"), false);
	return CreateDataAssetBatch(*Context.EditorPort, Params);
}
