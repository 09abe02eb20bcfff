#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "Misc/FeedbackContext.h"
#include "UObject/Class.h"
#include "UObject/Object.h"
#include "UObject/PropertyPortFlags.h"
#include "UObject/UnrealType.h"

namespace
{
	// The port's property flag words are the engine's own bits.
	static_assert(ZorvekMCPBridgePropertyFlags::Edit == (uint64)CPF_Edit, "property flag drift");
	static_assert(ZorvekMCPBridgePropertyFlags::BlueprintVisible == (uint64)CPF_BlueprintVisible, "property flag drift");
	static_assert(ZorvekMCPBridgePropertyFlags::BlueprintReadOnly == (uint64)CPF_BlueprintReadOnly, "property flag drift");
	static_assert(ZorvekMCPBridgePropertyFlags::Transient == (uint64)CPF_Transient, "property flag drift");
	static_assert(ZorvekMCPBridgePropertyFlags::DisableEditOnInstance == (uint64)CPF_DisableEditOnInstance, "property flag drift");
	static_assert(ZorvekMCPBridgePropertyFlags::Deprecated == (uint64)CPF_Deprecated, "property flag drift");
	static_assert(ZorvekMCPBridgePropertyFlags::AssetRegistrySearchable == (uint64)CPF_AssetRegistrySearchable, "property flag drift");

	const FProperty* GetProperty(const FZorvekMCPBridgePropertyCursor& Cursor)
	{
		return static_cast<const FProperty*>(Cursor.GetPropertyPtr());
	}

	UObject* GetOwner(const FZorvekMCPBridgePropertyCursor& Cursor)
	{
		return FZorvekMCPBridgeEngineEditorPort::ToObject(Cursor.GetOwner());
	}
}

void FZorvekMCPBridgeEngineReflection::EnumerateProperties(FZorvekMCPBridgeObjectHandle Handle, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const
{
	UObject* Object = FZorvekMCPBridgeEngineEditorPort::ToObject(Handle);
	if (!Object)
	{
		return;
	}
	// Super classes included, deprecated properties included (the callers filter them).
	for (TFieldIterator<FProperty> It(Object->GetClass()); It; ++It)
	{
		if (!Callback(FZorvekMCPBridgePropertyCursor(this, *It, It->ContainerPtrToValuePtr<void>(Object), Handle)))
		{
			return;
		}
	}
}

FZorvekMCPBridgePropertyCursor FZorvekMCPBridgeEngineReflection::FindProperty(FZorvekMCPBridgeObjectHandle Handle, const FString& PropertyName) const
{
	UObject* Object = FZorvekMCPBridgeEngineEditorPort::ToObject(Handle);
	FProperty* Property = Object ? Object->GetClass()->FindPropertyByName(FName(*PropertyName)) : nullptr;
	return Property ? FZorvekMCPBridgePropertyCursor(this, Property, Property->ContainerPtrToValuePtr<void>(Object), Handle) : FZorvekMCPBridgePropertyCursor();
}

bool FZorvekMCPBridgeEngineReflection::ImportText(const FZorvekMCPBridgePropertyCursor& Value, const FString& Text) const
{
	// ImportText_Direct validates the import flags before it parses.
	return Value.IsValid() && GetProperty(Value)->ImportText_Direct(*Text, Value.GetValuePtr(), GetOwner(Value), PPF_UseDeprecatedProperties, GWarn) != nullptr;
}

FString FZorvekMCPBridgeEngineReflection::GetPropertyName(const FZorvekMCPBridgePropertyCursor& Value) const
{
	return GetProperty(Value)->GetName();
}

FString FZorvekMCPBridgeEngineReflection::GetPropertyCppType(const FZorvekMCPBridgePropertyCursor& Value) const
{
	return GetProperty(Value)->GetCPPType();
}

uint64 FZorvekMCPBridgeEngineReflection::GetPropertyFlags(const FZorvekMCPBridgePropertyCursor& Value) const
{
	return (uint64)GetProperty(Value)->GetPropertyFlags();
}

EZorvekMCPBridgePropertyKind FZorvekMCPBridgeEngineReflection::GetPropertyKind(const FZorvekMCPBridgePropertyCursor& Value) const
{
	const FProperty* Property = GetProperty(Value);
	if (CastField<FObjectPropertyBase>(Property))
	{
		return EZorvekMCPBridgePropertyKind::ObjectReference;
	}
	if (CastField<FStructProperty>(Property))
	{
		return EZorvekMCPBridgePropertyKind::Struct;
	}
	if (CastField<FArrayProperty>(Property))
	{
		return EZorvekMCPBridgePropertyKind::Array;
	}
	return EZorvekMCPBridgePropertyKind::Leaf;
}

bool FZorvekMCPBridgeEngineReflection::ExportText(const FZorvekMCPBridgePropertyCursor& Value, FString& OutText) const
{
	// ExportText_Direct with no delta writes nothing for a value equal to its type's default
	// (false, 0, None, an empty array, enum 0), which would hide every default from the reply;
	// ExportTextItem_Direct always writes. What cannot be exported is a cursor without a
	// property or without value memory.
	const FProperty* Property = GetProperty(Value);
	if (!Property || !Value.GetValuePtr())
	{
		return false;
	}
	Property->ExportTextItem_Direct(OutText, Value.GetValuePtr(), nullptr, GetOwner(Value), PPF_None);
	return true;
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineReflection::GetReferencedObject(const FZorvekMCPBridgePropertyCursor& Value) const
{
	const FObjectPropertyBase* Property = CastField<FObjectPropertyBase>(GetProperty(Value));
	return Property ? FZorvekMCPBridgeEngineEditorPort::ToHandle(Property->GetObjectPropertyValue(Value.GetValuePtr())) : FZorvekMCPBridgeObjectHandle();
}

int32 FZorvekMCPBridgeEngineReflection::GetArrayNum(const FZorvekMCPBridgePropertyCursor& Value) const
{
	const FArrayProperty* Property = CastField<FArrayProperty>(GetProperty(Value));
	return Property ? FScriptArrayHelper(Property, Value.GetValuePtr()).Num() : 0;
}

FString FZorvekMCPBridgeEngineReflection::GetArrayElementCppType(const FZorvekMCPBridgePropertyCursor& Value) const
{
	const FArrayProperty* Property = CastField<FArrayProperty>(GetProperty(Value));
	return Property ? Property->Inner->GetCPPType() : FString();
}

FZorvekMCPBridgePropertyCursor FZorvekMCPBridgeEngineReflection::GetArrayElement(const FZorvekMCPBridgePropertyCursor& Value, int32 Index) const
{
	const FArrayProperty* Property = CastField<FArrayProperty>(GetProperty(Value));
	if (!Property)
	{
		return FZorvekMCPBridgePropertyCursor();
	}
	FScriptArrayHelper Helper(Property, Value.GetValuePtr());
	return Helper.IsValidIndex(Index) ? FZorvekMCPBridgePropertyCursor(this, Property->Inner, Helper.GetRawPtr(Index), Value.GetOwner()) : FZorvekMCPBridgePropertyCursor();
}

FString FZorvekMCPBridgeEngineReflection::GetStructName(const FZorvekMCPBridgePropertyCursor& Value) const
{
	const FStructProperty* Property = CastField<FStructProperty>(GetProperty(Value));
	return Property ? Property->Struct->GetName() : FString();
}

FString FZorvekMCPBridgeEngineReflection::GetStructPath(const FZorvekMCPBridgePropertyCursor& Value) const
{
	const FStructProperty* Property = CastField<FStructProperty>(GetProperty(Value));
	return Property ? Property->Struct->GetPathName() : FString();
}

void FZorvekMCPBridgeEngineReflection::EnumerateStructFields(const FZorvekMCPBridgePropertyCursor& Value, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const
{
	const FStructProperty* Property = CastField<FStructProperty>(GetProperty(Value));
	if (!Property)
	{
		return;
	}
	for (TFieldIterator<FProperty> It(Property->Struct); It; ++It)
	{
		if (!Callback(FZorvekMCPBridgePropertyCursor(this, *It, It->ContainerPtrToValuePtr<void>(Value.GetValuePtr()), Value.GetOwner())))
		{
			return;
		}
	}
}

FZorvekMCPBridgePropertyCursor FZorvekMCPBridgeEngineReflection::FindStructField(const FZorvekMCPBridgePropertyCursor& Value, const FString& FieldName) const
{
	const FStructProperty* Property = CastField<FStructProperty>(GetProperty(Value));
	FProperty* Field = Property ? Property->Struct->FindPropertyByName(FName(*FieldName)) : nullptr;
	return Field ? FZorvekMCPBridgePropertyCursor(this, Field, Field->ContainerPtrToValuePtr<void>(Value.GetValuePtr()), Value.GetOwner()) : FZorvekMCPBridgePropertyCursor();
}
