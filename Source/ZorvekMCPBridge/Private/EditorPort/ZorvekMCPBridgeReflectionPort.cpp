#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"

// The cursor forwards to the reflection that made it; an invalid cursor answers empty values.

FString FZorvekMCPBridgePropertyCursor::GetName() const
{
	return IsValid() ? Reflection->GetPropertyName(*this) : FString(TEXT("None"));
}

FString FZorvekMCPBridgePropertyCursor::GetCppType() const
{
	return IsValid() ? Reflection->GetPropertyCppType(*this) : FString();
}

uint64 FZorvekMCPBridgePropertyCursor::GetFlags() const
{
	return IsValid() ? Reflection->GetPropertyFlags(*this) : 0;
}

EZorvekMCPBridgePropertyKind FZorvekMCPBridgePropertyCursor::GetKind() const
{
	return IsValid() ? Reflection->GetPropertyKind(*this) : EZorvekMCPBridgePropertyKind::Leaf;
}

bool FZorvekMCPBridgePropertyCursor::ExportText(FString& OutText) const
{
	OutText.Reset();
	return IsValid() && Reflection->ExportText(*this, OutText);
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgePropertyCursor::GetReferencedObject() const
{
	return IsValid() && GetKind() == EZorvekMCPBridgePropertyKind::ObjectReference ? Reflection->GetReferencedObject(*this) : FZorvekMCPBridgeObjectHandle();
}

int32 FZorvekMCPBridgePropertyCursor::GetArrayNum() const
{
	return IsValid() && GetKind() == EZorvekMCPBridgePropertyKind::Array ? Reflection->GetArrayNum(*this) : 0;
}

FString FZorvekMCPBridgePropertyCursor::GetArrayElementCppType() const
{
	return IsValid() && GetKind() == EZorvekMCPBridgePropertyKind::Array ? Reflection->GetArrayElementCppType(*this) : FString();
}

FZorvekMCPBridgePropertyCursor FZorvekMCPBridgePropertyCursor::GetArrayElement(int32 Index) const
{
	if (Index < 0 || Index >= GetArrayNum())
	{
		return FZorvekMCPBridgePropertyCursor();
	}
	return Reflection->GetArrayElement(*this, Index);
}

FString FZorvekMCPBridgePropertyCursor::GetStructName() const
{
	return IsValid() && GetKind() == EZorvekMCPBridgePropertyKind::Struct ? Reflection->GetStructName(*this) : FString();
}

FString FZorvekMCPBridgePropertyCursor::GetStructPath() const
{
	return IsValid() && GetKind() == EZorvekMCPBridgePropertyKind::Struct ? Reflection->GetStructPath(*this) : FString();
}

void FZorvekMCPBridgePropertyCursor::EnumerateStructFields(TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const
{
	if (IsValid() && GetKind() == EZorvekMCPBridgePropertyKind::Struct)
	{
		Reflection->EnumerateStructFields(*this, Callback);
	}
}

FZorvekMCPBridgePropertyCursor FZorvekMCPBridgePropertyCursor::FindStructField(const FString& FieldName) const
{
	return IsValid() && GetKind() == EZorvekMCPBridgePropertyKind::Struct ? Reflection->FindStructField(*this, FieldName) : FZorvekMCPBridgePropertyCursor();
}
