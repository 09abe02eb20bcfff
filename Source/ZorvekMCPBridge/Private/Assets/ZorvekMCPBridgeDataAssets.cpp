#include "Assets/ZorvekMCPBridgeDataAssets.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"

namespace
{
	const TCHAR* const CreationWarning = TEXT("Use this class for a real Data Asset instance. Do not use blueprint_create; that creates a Blueprint Class child, not a Data Asset asset instance.");
	const TCHAR* const IndexingNotSupported = TEXT("not_supported_in_this_slice");

	TArray<TSharedPtr<FJsonValue>> MakeStringArray(std::initializer_list<const TCHAR*> Texts)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const TCHAR* Text : Texts)
		{
			Values.Add(MakeShared<FJsonValueString>(Text));
		}
		return Values;
	}

	TArray<TSharedPtr<FJsonValue>> MakeStringArray(const TArray<FString>& Texts)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const FString& Text : Texts)
		{
			Values.Add(MakeShared<FJsonValueString>(Text));
		}
		return Values;
	}

	// A failure as a structured result, so a batch can keep it whole.
	TSharedPtr<FJsonObject> MakeFailure(const TCHAR* ToolName, const FString& Message)
	{
		TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
		Payload->SetStringField(TEXT("tool"), ToolName);
		Payload->SetStringField(TEXT("error"), Message);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, true);
	}

	TSharedPtr<FJsonObject> GetPayload(const TSharedPtr<FJsonObject>& Result)
	{
		const TSharedPtr<FJsonObject>* Structured = nullptr;
		return Result.IsValid() && Result->TryGetObjectField(TEXT("structuredContent"), Structured) ? *Structured : MakeShared<FJsonObject>();
	}

	bool IsErrorResult(const TSharedPtr<FJsonObject>& Result)
	{
		bool bIsError = false;
		return Result.IsValid() && Result->TryGetBoolField(TEXT("isError"), bIsError) && bIsError;
	}

	// "/Script/Engine.DataAsset" -> "/Script/Engine"; "/Game/A/BP_X.BP_X_C" -> "/Game/A/BP_X".
	FString GetPackageOfPath(const FString& ObjectPath)
	{
		return ZorvekMCPBridgeAssets::ObjectPathToPackageName(ObjectPath);
	}

	FString GetShortNameOfPath(const FString& ObjectPath)
	{
		int32 DotIndex = INDEX_NONE;
		return ObjectPath.FindLastChar(TEXT('.'), DotIndex) ? ObjectPath.Mid(DotIndex + 1) : ObjectPath;
	}

	bool IsNotInstantiable(uint32 ClassFlags)
	{
		return (ClassFlags & (ZorvekMCPBridgeClassFlags::Abstract | ZorvekMCPBridgeClassFlags::Deprecated | ZorvekMCPBridgeClassFlags::NewerVersionExists)) != 0;
	}

	TSharedPtr<FJsonObject> MakeClassInfo(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeTypeInfo& Class, const FString& BlueprintAssetPath)
	{
		IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
		const bool bBlueprint = !BlueprintAssetPath.IsEmpty();
		TSharedPtr<FJsonObject> Info = MakeShared<FJsonObject>();
		Info->SetStringField(TEXT("class_name"), Class.Name);
		Info->SetStringField(TEXT("class_path"), Class.Path);
		Info->SetStringField(TEXT("asset_path"), BlueprintAssetPath);
		Info->SetStringField(TEXT("display_name"), Port.GetAssetAuthoring().GetClassDisplayName(Class.Path));
		Info->SetStringField(TEXT("package_path"), GetPackageOfPath(Class.Path));
		Info->SetStringField(TEXT("parent_class"), GetShortNameOfPath(Class.SuperPath));
		Info->SetStringField(TEXT("parent_class_path"), Class.SuperPath);
		Info->SetBoolField(TEXT("is_data_asset"), true);
		Info->SetBoolField(TEXT("is_primary_data_asset"), Objects.IsChildOf(Class.Path, ZorvekMCPBridgeDataAssets::PrimaryDataAssetClassPath));
		Info->SetBoolField(TEXT("is_blueprint_class"), bBlueprint);
		Info->SetBoolField(TEXT("is_native_class"), !bBlueprint);
		Info->SetBoolField(TEXT("is_abstract"), (Class.ClassFlags & ZorvekMCPBridgeClassFlags::Abstract) != 0);
		Info->SetBoolField(TEXT("is_deprecated"), (Class.ClassFlags & ZorvekMCPBridgeClassFlags::Deprecated) != 0);
		Info->SetBoolField(TEXT("is_instantiable"), !IsNotInstantiable(Class.ClassFlags));
		Info->SetStringField(TEXT("source"), bBlueprint ? TEXT("blueprint_generated_class") : TEXT("native_class"));
		Info->SetStringField(TEXT("intended_asset_kind"), TEXT("data_asset_instance_class"));
		Info->SetStringField(TEXT("creation_warning"), CreationWarning);
		Info->SetArrayField(TEXT("recommended_next_tools"), MakeStringArray({TEXT("data_asset_create"), TEXT("unreal_inspect_asset")}));
		return Info;
	}

	// Saves when asked; a failed save goes into the result and leaves the asset as it is.
	void SaveIfRequested(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Asset, const FString& PackageName, bool bSave, const TSharedPtr<FJsonObject>& Result)
	{
		bool bSaved = false;
		if (bSave)
		{
			FString FileName;
			bSaved = Port.GetAssetAuthoring().SavePackage(Asset, FileName);
			if (!bSaved)
			{
				Result->SetStringField(TEXT("save_error"), FString::Printf(TEXT("UPackage::SavePackage returned false for %s."), *PackageName));
			}
		}
		Result->SetBoolField(TEXT("saved"), bSaved);
		Result->SetBoolField(TEXT("save_requested"), bSave);
	}

	// Where a property path leads: the final value, or the message that stops the walk.
	struct FResolvedPropertyPath
	{
		FZorvekMCPBridgePropertyCursor Value;
		FString Error;
	};

	FResolvedPropertyPath ResolvePropertyPath(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Asset, const FString& PropertyPath, const TArray<FString>& Segments)
	{
		FResolvedPropertyPath Resolved;
		FZorvekMCPBridgePropertyCursor Current;
		FString Owner = Port.GetObjects().GetClassInfo(Asset).Name;
		for (int32 Index = 0; Index < Segments.Num(); ++Index)
		{
			const FString& Segment = Segments[Index];
			Current = Index == 0 ? Port.GetReflection().FindProperty(Asset, Segment) : Current.FindStructField(Segment);
			if (!Current.GetPropertyPtr())
			{
				Resolved.Error = FString::Printf(TEXT("Property path '%s' could not be resolved. Segment '%s' was not found on %s."), *PropertyPath, *Segment, *Owner);
				return Resolved;
			}
			if (Index == 0 && !Current.HasAnyFlags(ZorvekMCPBridgePropertyFlags::Edit))
			{
				Resolved.Error = FString::Printf(TEXT("Property path '%s' starts at '%s', which is not editor-editable."), *PropertyPath, *Segment);
				return Resolved;
			}
			if (Index + 1 < Segments.Num())
			{
				if (Current.GetKind() != EZorvekMCPBridgePropertyKind::Struct)
				{
					Resolved.Error = FString::Printf(TEXT("Property path '%s' is unsupported. Segment '%s' is %s, not a reflected struct."), *PropertyPath, *Segment, *Current.GetCppType());
					return Resolved;
				}
				Owner = Current.GetStructName();
			}
		}
		if (!Current.IsValid())
		{
			Resolved.Error = FString::Printf(TEXT("Property path '%s' resolved to an invalid value."), *PropertyPath);
			return Resolved;
		}
		Resolved.Value = Current;
		return Resolved;
	}
}

FString ZorvekMCPBridgeDataAssets::JsonValueToImportText(const TSharedPtr<FJsonValue>& Value)
{
	if (!Value.IsValid() || Value->IsNull())
	{
		return TEXT("<invalid>");
	}
	FString Text;
	if (Value->TryGetString(Text))
	{
		return Text;
	}
	// Arrays and objects: their JSON text.
	Text.Reset();
	const TSharedRef<TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>> Writer = TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Text);
	return FJsonSerializer::Serialize(Value, FString(), Writer) ? Text : FString(TEXT("<invalid>"));
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDataAssets::FindClasses(IZorvekMCPBridgeEditorPort& Port, const FFindClassesParams& Params)
{
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	TArray<TSharedPtr<FJsonValue>> Results;
	TArray<TSharedPtr<FJsonValue>> PartialFailures;
	TSet<FString> Listed;

	// True while more results fit.
	auto Consider = [&](const FZorvekMCPBridgeTypeInfo& Class, const FString& BlueprintAssetPath)
	{
		if (Results.Num() >= Params.Limit)
		{
			return false;
		}
		const bool bFiltered = (Params.bOnlyInstantiable && IsNotInstantiable(Class.ClassFlags))
			|| (!Params.Query.IsEmpty() && !Class.Name.Contains(Params.Query) && !Class.Path.Contains(Params.Query))
			|| Listed.Contains(Class.Path);
		if (!bFiltered)
		{
			Listed.Add(Class.Path);
			Results.Add(MakeShared<FJsonValueObject>(MakeClassInfo(Port, Class, BlueprintAssetPath)));
		}
		return Results.Num() < Params.Limit;
	};

	if (Params.bIncludeNative)
	{
		Port.GetAssetAuthoring().EnumerateLoadedClasses(DataAssetClassPath, [&Consider](const FZorvekMCPBridgeTypeInfo& Class)
		{
			return (Class.ClassFlags & ZorvekMCPBridgeClassFlags::Native) == 0 || Consider(Class, FString());
		});
	}
	if (Params.bIncludeBlueprint && Results.Num() < Params.Limit)
	{
		FZorvekMCPBridgeAssetFilter Filter;
		Filter.PackagePaths = Params.PackagePaths;
		Filter.bRecursivePaths = true;
		Filter.ClassPaths.Add(ZorvekMCPBridgeAssets::BlueprintClassPath);
		Filter.bRecursiveClasses = true;
		// The registry is walked first and loaded after, so loading never runs inside its callback.
		TArray<FZorvekMCPBridgeAssetData> Blueprints;
		Port.GetAssetRegistry().EnumerateAssets(Filter, [&Blueprints](const FZorvekMCPBridgeAssetData& Asset)
		{
			Blueprints.Add(Asset);
			return true;
		});
		for (const FZorvekMCPBridgeAssetData& Asset : Blueprints)
		{
			const FZorvekMCPBridgeObjectHandle Blueprint = Objects.LoadObject(Asset.ObjectPath);
			if (!Blueprint.IsValid())
			{
				TSharedPtr<FJsonObject> Failure = MakeShared<FJsonObject>();
				Failure->SetStringField(TEXT("asset_path"), Asset.PackageName);
				Failure->SetStringField(TEXT("reason"), TEXT("failed_to_load_blueprint_for_data_asset_class_discovery"));
				PartialFailures.Add(MakeShared<FJsonValueObject>(Failure));
				continue;
			}
			const FZorvekMCPBridgePropertyCursor GeneratedClass = Port.GetReflection().FindProperty(Blueprint, TEXT("GeneratedClass"));
			const FZorvekMCPBridgeObjectHandle ClassObject = GeneratedClass.IsValid() ? GeneratedClass.GetReferencedObject() : FZorvekMCPBridgeObjectHandle();
			FZorvekMCPBridgeTypeInfo Class;
			if (!ClassObject.IsValid() || !Objects.FindType(EZorvekMCPBridgeTypeKind::Class, Objects.GetIdentity(ClassObject).ObjectPath, Class)
				|| !Objects.IsChildOf(Class.Path, DataAssetClassPath))
			{
				continue;
			}
			if (!Consider(Class, Asset.PackageName))
			{
				break;
			}
		}
	}

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("tool"), TEXT("data_asset_find_classes"));
	Result->SetStringField(TEXT("query"), Params.Query);
	Result->SetArrayField(TEXT("package_paths"), MakeStringArray(Params.PackagePaths));
	Result->SetBoolField(TEXT("include_native"), Params.bIncludeNative);
	Result->SetBoolField(TEXT("include_blueprint"), Params.bIncludeBlueprint);
	Result->SetBoolField(TEXT("only_instantiable"), Params.bOnlyInstantiable);
	Result->SetNumberField(TEXT("result_count"), Results.Num());
	Result->SetArrayField(TEXT("results"), Results);
	Result->SetArrayField(TEXT("partial_failures"), PartialFailures);
	Result->SetStringField(TEXT("agent_guidance"), TEXT("These are Data Asset classes suitable for real Data Asset instance creation with data_asset_create. They are not asset instances themselves, and blueprint_create must not be used as a substitute."));
	Result->SetArrayField(TEXT("recommended_next_tools"), MakeStringArray({TEXT("data_asset_create"), TEXT("unreal_inspect_asset")}));
	Result->SetArrayField(TEXT("planned_next_tools"), MakeStringArray({TEXT("data_asset_set_property")}));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDataAssets::CreateDataAsset(IZorvekMCPBridgeEditorPort& Port, const FCreateParams& Params)
{
	const TCHAR* const Tool = TEXT("data_asset_create");
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	IZorvekMCPBridgeAssetAuthoring& Authoring = Port.GetAssetAuthoring();

	if (Params.ClassPath.IsEmpty() || Params.PackagePath.IsEmpty() || Params.AssetName.IsEmpty())
	{
		return MakeFailure(Tool, TEXT("data_asset_create requires ClassPath, PackagePath, and AssetName."));
	}
	FString Reason;
	if (!Authoring.IsValidLongPackageName(Params.PackagePath, Reason))
	{
		return MakeFailure(Tool, FString::Printf(TEXT("PackagePath must be a long package path such as /Game/Corvale/DataAssets, got '%s'."), *Params.PackagePath));
	}
	FZorvekMCPBridgeTypeInfo Class;
	if (!Objects.LoadClass(Params.ClassPath, Class))
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Could not load Data Asset class: %s. Call data_asset_find_classes first and pass its class_path."), *Params.ClassPath));
	}
	if (!Objects.IsChildOf(Class.Path, DataAssetClassPath))
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Class '%s' is not a UDataAsset/UPrimaryDataAsset class."), *Class.Path));
	}
	if ((Class.ClassFlags & (ZorvekMCPBridgeClassFlags::Abstract | ZorvekMCPBridgeClassFlags::Deprecated)) != 0)
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Class '%s' is not instantiable because it is abstract or deprecated."), *Class.Path));
	}
	const FString PackageName = Params.PackagePath + TEXT("/") + Params.AssetName;
	// The whole name is checked before the package exists, so a bad AssetName creates nothing.
	if (!Authoring.IsValidLongPackageName(PackageName, Reason))
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Could not create or load package: %s"), *PackageName));
	}
	// NewObject over an existing name would replace that object in place
	// (unreal-behaviour-world-assets.md §6.1), so an existing asset, in memory or on disk, stops here.
	const FString ObjectPath = PackageName + TEXT(".") + Params.AssetName;
	if (Objects.LoadObject(ObjectPath).IsValid())
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Asset already exists: %s.%s"), *PackageName, *Params.AssetName));
	}
	const FZorvekMCPBridgeObjectHandle Package = Authoring.CreateOrFindPackage(PackageName);
	if (!Package.IsValid())
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Could not create or load package: %s"), *PackageName));
	}
	const FZorvekMCPBridgeObjectHandle Asset = Authoring.CreateAssetObject(Package, Class.Path, Params.AssetName);
	if (!Asset.IsValid())
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Could not create Data Asset instance: %s.%s"), *PackageName, *Params.AssetName));
	}
	Authoring.NotifyAssetCreated(Asset);
	Authoring.MarkPackageDirty(Asset);

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("tool"), Tool);
	Result->SetStringField(TEXT("asset_path"), PackageName);
	Result->SetStringField(TEXT("object_path"), Objects.GetIdentity(Asset).ObjectPath);
	Result->SetStringField(TEXT("asset_name"), Params.AssetName);
	Result->SetStringField(TEXT("package_path"), Params.PackagePath);
	Result->SetStringField(TEXT("class_name"), Class.Name);
	Result->SetStringField(TEXT("class_path"), Class.Path);
	Result->SetBoolField(TEXT("is_data_asset_instance"), true);
	Result->SetBoolField(TEXT("is_primary_data_asset"), Objects.IsA(Asset, PrimaryDataAssetClassPath));
	Result->SetBoolField(TEXT("is_blueprint_asset"), false);
	Result->SetBoolField(TEXT("created_blueprint_class"), false);
	SaveIfRequested(Port, Asset, PackageName, Params.bSave, Result);
	Result->SetStringField(TEXT("asset_kind"), TEXT("data_asset_instance"));
	Result->SetStringField(TEXT("property_editing"), TEXT("supported_for_top_level_and_nested_struct_properties"));
	Result->SetArrayField(TEXT("recommended_next_tools"), MakeStringArray({TEXT("unreal_inspect_asset")}));
	Result->SetStringField(TEXT("next_step"), TEXT("Call data_asset_set_property for top-level or nested struct fields, then unreal_inspect_asset to verify."));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDataAssets::SetDataAssetProperty(IZorvekMCPBridgeEditorPort& Port, const FSetPropertyParams& Params)
{
	const TCHAR* const Tool = TEXT("data_asset_set_property");
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();

	if (Params.AssetNameOrPath.IsEmpty() || Params.PropertyName.IsEmpty() || !Params.Value.IsValid())
	{
		return MakeFailure(Tool, TEXT("data_asset_set_property requires AssetNameOrPath, PropertyName, and Value."));
	}
	if (Params.PropertyName.Contains(TEXT("[")) || Params.PropertyName.Contains(TEXT("]")))
	{
		return MakeFailure(Tool, TEXT("Data Asset property paths support nested structs only. Array/map indexing is not supported in this slice."));
	}
	FString AssetPath;
	FString Error;
	const TSharedPtr<FJsonObject> Resolution = ZorvekMCPBridgeAssets::ResolveAssetQuery(Port.GetAssetRegistry(), Params.AssetNameOrPath, TEXT("Any"), ZorvekMCPBridgeAssets::DefaultResolveLimit, AssetPath, Error);
	if (AssetPath.IsEmpty())
	{
		TSharedPtr<FJsonObject> Failure = MakeShared<FJsonObject>();
		Failure->SetStringField(TEXT("tool"), Tool);
		Failure->SetStringField(TEXT("query"), Params.AssetNameOrPath);
		Failure->SetStringField(TEXT("error"), Error);
		Failure->SetObjectField(TEXT("resolve_result"), Resolution);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Failure, true);
	}
	const FString ObjectPath = ZorvekMCPBridgeAssets::MakeAssetObjectPath(AssetPath);
	const FZorvekMCPBridgeObjectHandle Asset = Objects.LoadObject(ObjectPath);
	if (!Asset.IsValid())
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Could not load Data Asset object: %s"), *ObjectPath));
	}
	if (Objects.IsA(Asset, ZorvekMCPBridgeAssets::BlueprintClassPath))
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Asset '%s' is a Blueprint asset, not a real Data Asset instance."), *AssetPath));
	}
	if (!Objects.IsA(Asset, DataAssetClassPath))
	{
		return MakeFailure(Tool, FString::Printf(TEXT("Asset '%s' is not a Data Asset instance."), *AssetPath));
	}
	TArray<FString> Segments;
	Params.PropertyName.ParseIntoArray(Segments, TEXT("."), true);
	for (FString& Segment : Segments)
	{
		Segment.TrimStartAndEndInline();
	}
	Segments.RemoveAll([](const FString& Segment) { return Segment.IsEmpty(); });
	if (Segments.IsEmpty())
	{
		return MakeFailure(Tool, TEXT("PropertyName must include at least one property segment."));
	}
	const FResolvedPropertyPath Resolved = ResolvePropertyPath(Port, Asset, Params.PropertyName, Segments);
	if (!Resolved.Error.IsEmpty())
	{
		return MakeFailure(Tool, Resolved.Error);
	}

	const FString ImportText = JsonValueToImportText(Params.Value);
	FString BeforeValue;
	Resolved.Value.ExportText(BeforeValue);
	if (!Port.GetReflection().ImportText(Resolved.Value, ImportText))
	{
		// The engine's import writes as it reads; what a failed one wrote is put back.
		Port.GetReflection().ImportText(Resolved.Value, BeforeValue);
		return MakeFailure(Tool, FString::Printf(TEXT("Could not import value '%s' for property path '%s'."), *ImportText, *Params.PropertyName));
	}
	FString AfterValue;
	Resolved.Value.ExportText(AfterValue);
	Port.GetAssetAuthoring().MarkPackageDirty(Asset);

	const FZorvekMCPBridgeObjectIdentity Identity = Objects.GetIdentity(Asset);
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("tool"), Tool);
	Result->SetStringField(TEXT("asset_path"), AssetPath);
	Result->SetStringField(TEXT("object_path"), Identity.ObjectPath);
	Result->SetStringField(TEXT("class_name"), Identity.ClassName);
	Result->SetStringField(TEXT("property_name"), Segments.Last());
	Result->SetStringField(TEXT("property_path"), FString::Join(Segments, TEXT(".")));
	Result->SetStringField(TEXT("property_cpp_type"), Resolved.Value.GetCppType());
	Result->SetStringField(TEXT("imported_value"), ImportText);
	Result->SetStringField(TEXT("before_value"), BeforeValue);
	Result->SetStringField(TEXT("after_value"), AfterValue);
	Result->SetBoolField(TEXT("is_data_asset_instance"), true);
	Result->SetBoolField(TEXT("is_primary_data_asset"), Objects.IsA(Asset, PrimaryDataAssetClassPath));
	SaveIfRequested(Port, Asset, AssetPath, Params.bSave, Result);
	Result->SetStringField(TEXT("scope"), Segments.Num() == 1 ? TEXT("top_level_editable_property") : TEXT("nested_struct_property"));
	Result->SetBoolField(TEXT("nested_struct_property_supported"), true);
	Result->SetStringField(TEXT("array_map_indexing"), IndexingNotSupported);
	Result->SetArrayField(TEXT("recommended_next_tools"), MakeStringArray({TEXT("unreal_inspect_asset")}));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDataAssets::CreateDataAssetBatch(IZorvekMCPBridgeEditorPort& Port, const FCreateBatchParams& Params)
{
	static const TArray<TSharedPtr<FJsonValue>> NoItems;
	const TArray<TSharedPtr<FJsonValue>>& Items = Params.Items ? *Params.Items : NoItems;
	TArray<TSharedPtr<FJsonValue>> ItemResults;
	int32 ProcessedCount = 0;
	int32 CreatedCount = 0;
	int32 PropertySetCount = 0;
	int32 FailedCount = 0;

	for (int32 Index = 0; Index < Items.Num(); ++Index)
	{
		++ProcessedCount;
		TSharedPtr<FJsonObject> ItemResult = MakeShared<FJsonObject>();
		ItemResult->SetNumberField(TEXT("index"), Index);
		ItemResults.Add(MakeShared<FJsonValueObject>(ItemResult));
		bool bItemFailed = false;

		const TSharedPtr<FJsonObject> Item = Items[Index].IsValid() && Items[Index]->Type == EJson::Object ? Items[Index]->AsObject() : nullptr;
		FCreateParams Create;
		if (!Item.IsValid())
		{
			ItemResult->SetStringField(TEXT("error"), TEXT("Batch item must be an object."));
			bItemFailed = true;
		}
		else
		{
			Item->TryGetStringField(TEXT("AssetName"), Create.AssetName);
			if (!Item->TryGetStringField(TEXT("ClassPath"), Create.ClassPath) || Create.ClassPath.IsEmpty())
			{
				Create.ClassPath = Params.DefaultClassPath;
			}
			if (!Item->TryGetStringField(TEXT("PackagePath"), Create.PackagePath) || Create.PackagePath.IsEmpty())
			{
				Create.PackagePath = Params.DefaultPackagePath;
			}
			Create.bSave = Params.bSave;
			ItemResult->SetStringField(TEXT("asset_name"), Create.AssetName);
			ItemResult->SetStringField(TEXT("class_path"), Create.ClassPath);
			ItemResult->SetStringField(TEXT("package_path"), Create.PackagePath);
			if (Create.AssetName.IsEmpty() || Create.ClassPath.IsEmpty() || Create.PackagePath.IsEmpty())
			{
				ItemResult->SetStringField(TEXT("error"), TEXT("Each batch item requires AssetName plus ClassPath/PackagePath or matching defaults."));
				bItemFailed = true;
			}
		}

		if (!bItemFailed)
		{
			const TSharedPtr<FJsonObject> CreateResult = CreateDataAsset(Port, Create);
			const TSharedPtr<FJsonObject> CreatePayload = GetPayload(CreateResult);
			if (IsErrorResult(CreateResult))
			{
				ItemResult->SetStringField(TEXT("error"), TEXT("Data Asset creation failed."));
				ItemResult->SetObjectField(TEXT("create_result"), CreatePayload);
				ItemResult->SetObjectField(TEXT("raw_create_tool_result"), CreateResult);
				bItemFailed = true;
			}
			else
			{
				++CreatedCount;
				ItemResult->SetObjectField(TEXT("create_result"), CreatePayload);
				const FString ObjectPath = CreatePayload->GetStringField(TEXT("object_path"));
				ItemResult->SetStringField(TEXT("asset_path"), CreatePayload->GetStringField(TEXT("asset_path")));
				ItemResult->SetStringField(TEXT("object_path"), ObjectPath);

				TArray<TSharedPtr<FJsonValue>> PropertyResults;
				const TSharedPtr<FJsonObject>* Properties = nullptr;
				if (Item->TryGetObjectField(TEXT("Properties"), Properties))
				{
					for (const auto& Pair : (*Properties)->Values)
					{
						FSetPropertyParams Set;
						Set.AssetNameOrPath = ObjectPath;
						Set.PropertyName = Pair.Key;
						Set.Value = Pair.Value;
						Set.bSave = Params.bSave;
						const TSharedPtr<FJsonObject> SetResult = SetDataAssetProperty(Port, Set);
						TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
						Entry->SetStringField(TEXT("property_name"), Pair.Key);
						Entry->SetObjectField(TEXT("set_result"), GetPayload(SetResult));
						if (IsErrorResult(SetResult))
						{
							Entry->SetStringField(TEXT("error"), TEXT("Property set failed."));
							Entry->SetObjectField(TEXT("raw_set_tool_result"), SetResult);
							bItemFailed = true;
						}
						else
						{
							++PropertySetCount;
						}
						PropertyResults.Add(MakeShared<FJsonValueObject>(Entry));
					}
				}
				ItemResult->SetArrayField(TEXT("property_results"), PropertyResults);
			}
		}

		ItemResult->SetBoolField(TEXT("success"), !bItemFailed);
		if (bItemFailed)
		{
			++FailedCount;
			if (!Params.bContinueOnError)
			{
				break;
			}
		}
	}

	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("tool"), TEXT("data_asset_create_batch"));
	Result->SetNumberField(TEXT("requested_count"), Items.Num());
	Result->SetNumberField(TEXT("processed_count"), ProcessedCount);
	Result->SetNumberField(TEXT("created_count"), CreatedCount);
	Result->SetNumberField(TEXT("property_set_count"), PropertySetCount);
	Result->SetNumberField(TEXT("failed_count"), FailedCount);
	Result->SetBoolField(TEXT("save_requested"), Params.bSave);
	Result->SetBoolField(TEXT("continue_on_error"), Params.bContinueOnError);
	Result->SetArrayField(TEXT("items"), ItemResults);
	Result->SetStringField(TEXT("mutation_policy"), TEXT("sequential_no_rollback"));
	Result->SetStringField(TEXT("property_scope"), TEXT("top_level_and_nested_struct_properties"));
	Result->SetStringField(TEXT("array_map_indexing"), IndexingNotSupported);
	Result->SetArrayField(TEXT("recommended_next_tools"), MakeStringArray({TEXT("unreal_inspect_asset"), TEXT("data_asset_set_property")}));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, FailedCount > 0);
}
