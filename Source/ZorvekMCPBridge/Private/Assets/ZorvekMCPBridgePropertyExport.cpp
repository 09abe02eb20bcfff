#include "Assets/ZorvekMCPBridgePropertyExport.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

namespace
{
	bool IsInspectable(uint64 Flags)
	{
		using namespace ZorvekMCPBridgePropertyFlags;
		if ((Flags & (Transient | Deprecated | DisableEditOnInstance)) != 0)
		{
			return false;
		}
		return (Flags & (Edit | BlueprintVisible | BlueprintReadOnly | AssetRegistrySearchable)) != 0;
	}
}

TSharedPtr<FJsonValue> ZorvekMCPBridgeAssets::MakePartialFailure(const FString& Stage, const FString& Reason, const FString& PropertyName)
{
	TSharedPtr<FJsonObject> Record = MakeShared<FJsonObject>();
	Record->SetStringField(TEXT("stage"), Stage);
	Record->SetStringField(TEXT("reason"), Reason);
	if (!PropertyName.IsEmpty())
	{
		Record->SetStringField(TEXT("property"), PropertyName);
	}
	return MakeShared<FJsonValueObject>(Record);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssets::ExportObjectProperties(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, int32 PropertyLimit, TArray<TSharedPtr<FJsonValue>>& OutReferences, TArray<TSharedPtr<FJsonValue>>& OutPartialFailures)
{
	TSharedPtr<FJsonObject> Properties = MakeShared<FJsonObject>();
	if (!Object.IsValid())
	{
		return Properties;
	}

	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	int32 WrittenCount = 0;
	Port.GetReflection().EnumerateProperties(Object, [&](const FZorvekMCPBridgePropertyCursor& Property)
	{
		const uint64 Flags = Property.GetFlags();
		if (!IsInspectable(Flags))
		{
			return true;
		}
		// Tested only once a further qualifying property shows up, so an object with exactly
		// the limit gets no note.
		if (PropertyLimit >= 1 && WrittenCount >= PropertyLimit)
		{
			OutPartialFailures.Add(MakePartialFailure(TEXT("properties"), FString::Printf(TEXT("Property limit %d reached."), PropertyLimit)));
			return false;
		}

		const FString PropertyName = Property.GetName();
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("name"), PropertyName);
		Entry->SetStringField(TEXT("cpp_type"), Property.GetCppType());
		Entry->SetBoolField(TEXT("editable"), (Flags & ZorvekMCPBridgePropertyFlags::Edit) != 0);
		Entry->SetBoolField(TEXT("blueprint_visible"), (Flags & ZorvekMCPBridgePropertyFlags::BlueprintVisible) != 0);
		Entry->SetBoolField(TEXT("blueprint_read_only"), (Flags & ZorvekMCPBridgePropertyFlags::BlueprintReadOnly) != 0);
		Entry->SetBoolField(TEXT("asset_registry_searchable"), (Flags & ZorvekMCPBridgePropertyFlags::AssetRegistrySearchable) != 0);

		// The always-writing export, so a false, zero, None or empty value is shown as such rather
		// than reported as a failure; only a value that cannot be exported at all is.
		FString ValueText;
		if (Property.ExportText(ValueText))
		{
			Entry->SetStringField(TEXT("value"), ValueText);
		}
		else
		{
			OutPartialFailures.Add(MakePartialFailure(TEXT("property_export"), TEXT("ExportText_InContainer returned false."), PropertyName));
		}

		if (Property.GetKind() == EZorvekMCPBridgePropertyKind::ObjectReference)
		{
			const FZorvekMCPBridgeObjectHandle Referenced = Property.GetReferencedObject();
			if (Referenced.IsValid())
			{
				TSharedPtr<FJsonObject> Reference = MakeObjectIdentityJson(Objects, Referenced);
				Reference->SetStringField(TEXT("property"), PropertyName);
				OutReferences.Add(MakeShared<FJsonValueObject>(Reference));
				Entry->SetObjectField(TEXT("reference"), Reference);
			}
		}

		Properties->SetObjectField(PropertyName, Entry);
		++WrittenCount;
		return true;
	});
	return Properties;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssets::ExportPropertyValueJson(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgePropertyCursor& Value, int32 Depth, int32 MaxDepth)
{
	TSharedPtr<FJsonObject> Node = MakeShared<FJsonObject>();
	if (!Value.IsValid())
	{
		return Node;
	}
	Node->SetStringField(TEXT("name"), Value.GetName());
	Node->SetStringField(TEXT("cpp_type"), Value.GetCppType());

	switch (Value.GetKind())
	{
	case EZorvekMCPBridgePropertyKind::ObjectReference:
	{
		const FZorvekMCPBridgeObjectHandle Referenced = Value.GetReferencedObject();
		if (Referenced.IsValid())
		{
			Node->SetStringField(TEXT("value"), Port.GetObjects().GetIdentity(Referenced).ObjectPath);
			Node->SetObjectField(TEXT("reference"), MakeObjectIdentityJson(Port.GetObjects(), Referenced));
		}
		else
		{
			Node->SetStringField(TEXT("value"), TEXT("None"));
		}
		break;
	}
	case EZorvekMCPBridgePropertyKind::Array:
	{
		Node->SetStringField(TEXT("element_cpp_type"), Value.GetArrayElementCppType());
		// Only the exported items are visited, so a long array costs what a short one does.
		const int32 Count = Value.GetArrayNum();
		const int32 ExportedCount = FMath::Min(Count, MaxExportedArrayItems);
		TArray<TSharedPtr<FJsonValue>> Items;
		Items.Reserve(ExportedCount);
		for (int32 Index = 0; Index < ExportedCount; ++Index)
		{
			TSharedPtr<FJsonObject> Item = ExportPropertyValueJson(Port, Value.GetArrayElement(Index), Depth + 1, MaxDepth);
			Item->SetNumberField(TEXT("index"), Index);
			Items.Add(MakeShared<FJsonValueObject>(Item));
		}
		Node->SetArrayField(TEXT("items"), Items);
		Node->SetNumberField(TEXT("count"), Count);
		if (Count > MaxExportedArrayItems)
		{
			Node->SetNumberField(TEXT("truncated_after"), MaxExportedArrayItems);
		}
		break;
	}
	case EZorvekMCPBridgePropertyKind::Struct:
	{
		FString ValueText;
		Value.ExportText(ValueText);
		Node->SetStringField(TEXT("value"), ValueText);
		if (Depth < MaxDepth)
		{
			Node->SetObjectField(TEXT("struct"), ExportStructJson(Port, Value, Depth + 1, MaxDepth));
		}
		break;
	}
	default:
	{
		FString ValueText;
		Value.ExportText(ValueText);
		Node->SetStringField(TEXT("value"), ValueText);
		break;
	}
	}
	return Node;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeAssets::ExportStructJson(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgePropertyCursor& StructValue, int32 Depth, int32 MaxDepth)
{
	TSharedPtr<FJsonObject> Node = MakeShared<FJsonObject>();
	if (!StructValue.IsValid() || StructValue.GetKind() != EZorvekMCPBridgePropertyKind::Struct)
	{
		return Node;
	}
	Node->SetStringField(TEXT("struct_name"), StructValue.GetStructName());
	Node->SetStringField(TEXT("struct_path"), StructValue.GetStructPath());

	TArray<TSharedPtr<FJsonValue>> Fields;
	StructValue.EnumerateStructFields([&](const FZorvekMCPBridgePropertyCursor& Field)
	{
		if (Field.HasAnyFlags(ZorvekMCPBridgePropertyFlags::Transient | ZorvekMCPBridgePropertyFlags::Deprecated))
		{
			return true;
		}
		Fields.Add(MakeShared<FJsonValueObject>(ExportPropertyValueJson(Port, Field, Depth + 1, MaxDepth)));
		// Set once the bound is reached, even when no further field exists.
		if (Fields.Num() >= MaxExportedStructFields)
		{
			Node->SetBoolField(TEXT("truncated"), true);
			return false;
		}
		return true;
	});
	Node->SetArrayField(TEXT("fields"), Fields);
	Node->SetNumberField(TEXT("field_count"), Fields.Num());
	return Node;
}

bool ZorvekMCPBridgeAssets::ImportPropertyText(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName, const FString& ValueText, FString& OutError)
{
	OutError.Reset();
	if (!Object.IsValid())
	{
		OutError = TEXT("Property import target is invalid.");
		return false;
	}
	const FZorvekMCPBridgePropertyCursor Property = Port.GetReflection().FindProperty(Object, PropertyName);
	if (!Property.IsValid())
	{
		OutError = FString::Printf(TEXT("Property '%s' was not found on %s."), *PropertyName, *Port.GetObjects().GetClassInfo(Object).Name);
		return false;
	}
	if (!Port.GetReflection().ImportText(Property, ValueText))
	{
		OutError = FString::Printf(TEXT("Could not import value '%s' for property '%s'."), *ValueText, *PropertyName);
		return false;
	}
	return true;
}
