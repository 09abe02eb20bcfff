#include "Tools/ZorvekMCPBridgeAssetTools.h"

#include "Assets/ZorvekMCPBridgeAssetReaders.h"
#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"

namespace
{
	constexpr int32 DefaultInspectPropertyLimit = 200;

	// The arguments of unreal_resolve_asset, read once.
	struct FResolveAssetParams
	{
		FString Query;
		FString Type;
		// At least 1; the resolver answers 0 and below with one candidate anyway.
		int32 Limit = ZorvekMCPBridgeAssets::DefaultResolveLimit;

		static FResolveAssetParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FResolveAssetParams Params;
			Params.Query = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("name_or_path"), FString());
			Params.Type = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("type"), TEXT("Blueprint"));
			Params.Limit = ZorvekMCPBridgeToolArguments::ReadLimit(Arguments, TEXT("limit"), ZorvekMCPBridgeAssets::DefaultResolveLimit);
			return Params;
		}
	};

	// The arguments of unreal_inspect_asset, read once.
	struct FInspectAssetParams
	{
		FString Query;
		FString Type;
		// 0 or below exports every qualifying property.
		int32 PropertyLimit = DefaultInspectPropertyLimit;

		static FInspectAssetParams Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			FInspectAssetParams Params;
			// The legacy name_or_path is the default of AssetNameOrPath. The legacy "type" needs no
			// reading of its own: JSON object keys ignore case, so it is the key "Type".
			Params.Query = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("AssetNameOrPath"),
				ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("name_or_path"), FString()));
			Params.Type = ZorvekMCPBridgeToolArguments::ReadString(Arguments, TEXT("Type"), TEXT("Any"));
			Params.PropertyLimit = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("PropertyLimit"), DefaultInspectPropertyLimit);
			return Params;
		}
	};

	void AddRegistrySection(const TSharedPtr<FJsonObject>& Result, const FZorvekMCPBridgeAssetData& Asset)
	{
		Result->SetStringField(TEXT("asset_registry_class_path"), Asset.AssetClassPath);
		Result->SetStringField(TEXT("asset_registry_package_name"), Asset.PackageName);
		TSharedPtr<FJsonObject> Tags = MakeShared<FJsonObject>();
		for (const FZorvekMCPBridgeAssetTag& Tag : Asset.Tags)
		{
			Tags->SetStringField(Tag.Name, Tag.Value);
		}
		Result->SetObjectField(TEXT("asset_registry_tags"), Tags);
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(const FString& ToolName)
{
	return ZorvekMCPBridgeTools::MakeTextToolResult(FString::Printf(TEXT("%s cannot run: no editor is connected to the bridge in this process."), *ToolName), true);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssetTools::HandleResolveAsset(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return MakeEditorPortUnavailableResult(TEXT("unreal_resolve_asset"));
	}
	const FResolveAssetParams Params = FResolveAssetParams::Read(Arguments);

	FString BestPath;
	FString Error;
	const TSharedPtr<FJsonObject> Resolution = ZorvekMCPBridgeAssets::ResolveAssetQuery(Context.EditorPort->GetAssetRegistry(), Params.Query, Params.Type, Params.Limit, BestPath, Error);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Resolution, BestPath.IsEmpty());
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssetTools::HandleInspectAsset(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return MakeEditorPortUnavailableResult(TEXT("unreal_inspect_asset"));
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();

	const FInspectAssetParams Params = FInspectAssetParams::Read(Arguments);

	FString AssetPath;
	FString Error;
	const TSharedPtr<FJsonObject> Resolution = ZorvekMCPBridgeAssets::ResolveAssetQuery(Port.GetAssetRegistry(), Params.Query, Params.Type, ZorvekMCPBridgeAssets::DefaultResolveLimit, AssetPath, Error);
	if (AssetPath.IsEmpty())
	{
		TSharedPtr<FJsonObject> Failure = MakeShared<FJsonObject>();
		Failure->SetStringField(TEXT("query"), Params.Query);
		Failure->SetStringField(TEXT("error"), Error);
		Failure->SetObjectField(TEXT("resolve_result"), Resolution);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Failure, true);
	}

	TArray<TSharedPtr<FJsonValue>> PartialFailures;
	const TArray<FZorvekMCPBridgeAssetData> RegistryEntries = Port.GetAssetRegistry().GetAssetsByPackageName(AssetPath);
	if (RegistryEntries.IsEmpty())
	{
		PartialFailures.Add(ZorvekMCPBridgeAssets::MakePartialFailure(TEXT("asset_registry"), FString::Printf(TEXT("No asset registry data found for package '%s'."), *AssetPath)));
	}

	const FString ObjectPath = ZorvekMCPBridgeAssets::MakeAssetObjectPath(AssetPath);
	const FZorvekMCPBridgeObjectHandle Asset = Objects.LoadObject(ObjectPath);
	if (!Asset.IsValid())
	{
		TSharedPtr<FJsonObject> Failure = MakeShared<FJsonObject>();
		Failure->SetStringField(TEXT("error"), FString::Printf(TEXT("Could not load asset object: %s"), *ObjectPath));
		Failure->SetStringField(TEXT("asset_path"), AssetPath);
		Failure->SetStringField(TEXT("object_path"), ObjectPath);
		Failure->SetArrayField(TEXT("partial_failures"), PartialFailures);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Failure, true);
	}

	const FZorvekMCPBridgeObjectIdentity Identity = Objects.GetIdentity(Asset);
	const FZorvekMCPBridgeTypeInfo Class = Objects.GetClassInfo(Asset);
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), AssetPath);
	Result->SetStringField(TEXT("object_path"), Identity.ObjectPath);
	Result->SetStringField(TEXT("asset_name"), Identity.Name);
	Result->SetStringField(TEXT("package_path"), Identity.PackagePath);
	Result->SetStringField(TEXT("class_path"), Class.Path);
	Result->SetStringField(TEXT("class_name"), Class.Name);
	Result->SetStringField(TEXT("native_class_path"), Class.NativeClassPath);
	Result->SetStringField(TEXT("native_class_name"), Class.NativeClassName);
	Result->SetBoolField(TEXT("is_blueprint"), Objects.IsA(Asset, ZorvekMCPBridgeAssets::BlueprintClassPath));
	if (!RegistryEntries.IsEmpty())
	{
		AddRegistrySection(Result, RegistryEntries[0]);
	}

	TArray<TSharedPtr<FJsonValue>> References;
	Result->SetObjectField(TEXT("properties"), ZorvekMCPBridgeAssets::ExportObjectProperties(Port, Asset, Params.PropertyLimit, References, PartialFailures));
	Result->SetArrayField(TEXT("references"), References);
	Result->SetNumberField(TEXT("reference_count"), References.Num());

	Result->SetObjectField(TEXT("gameplay_cameras"), ZorvekMCPBridgeAssets::ReadGameplayCameraAsset(Port, Asset, PartialFailures));
	Result->SetObjectField(TEXT("state_tree"), ZorvekMCPBridgeAssets::ReadStateTreeAsset(Port, Asset, PartialFailures));
	Result->SetObjectField(TEXT("material"), ZorvekMCPBridgeAssets::ReadMaterialAsset(Port, Asset, PartialFailures));
	Result->SetArrayField(TEXT("partial_failures"), PartialFailures);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}
