#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "Templates/Function.h"

// Property flag bits the portable code reads, with the engine's values (EPropertyFlags).
namespace ZorvekMCPBridgePropertyFlags
{
	constexpr uint64 Edit = 0x1;
	constexpr uint64 BlueprintVisible = 0x4;
	constexpr uint64 BlueprintReadOnly = 0x10;
	constexpr uint64 Transient = 0x2000;
	constexpr uint64 DisableEditOnInstance = 0x10000;
	constexpr uint64 Deprecated = 0x20000000;
	constexpr uint64 AssetRegistrySearchable = 0x10000000000ull;
}

// How the portable code tells properties apart: object references (object, weak, lazy, soft
// object and class properties), structs, dynamic arrays, and everything else.
enum class EZorvekMCPBridgePropertyKind : uint8
{
	Leaf,
	ObjectReference,
	Struct,
	Array
};

class IZorvekMCPBridgeReflection;

// One reflected value: a property together with the memory of one value of it (element 0 of a
// property, an array element or a struct field) and the object that owns that memory. Cheap to
// copy; valid for the duration of one tool call, like object handles.
class FZorvekMCPBridgePropertyCursor
{
public:
	FZorvekMCPBridgePropertyCursor() = default;
	FZorvekMCPBridgePropertyCursor(const IZorvekMCPBridgeReflection* InReflection, const void* InProperty, void* InValue, FZorvekMCPBridgeObjectHandle InOwner)
		: Reflection(InReflection)
		, Property(InProperty)
		, Value(InValue)
		, Owner(InOwner)
	{
	}

	bool IsValid() const { return Reflection != nullptr && Property != nullptr && Value != nullptr; }

	// The property's name; "None" when the field has none.
	FString GetName() const;
	// The property's native type text, as the engine's GetCPPType gives it ("int32", "FVector",
	// "TObjectPtr<UTexture>", "TArray").
	FString GetCppType() const;
	uint64 GetFlags() const;
	bool HasAnyFlags(uint64 FlagsToCheck) const { return (GetFlags() & FlagsToCheck) != 0; }
	EZorvekMCPBridgePropertyKind GetKind() const;

	// The engine's always-writing direct text export of the value (ExportTextItem_Direct: no
	// default value, the owner as parent, no port flags), so default values (False, 0, None, an
	// empty array) have their text too. False only when the value cannot be exported at all: in
	// the editor a cursor without value memory, in the simulated editor a property its fixture
	// marks unexportable.
	bool ExportText(FString& OutText) const;

	// Object references: the referenced object, invalid for null.
	FZorvekMCPBridgeObjectHandle GetReferencedObject() const;

	// Arrays: element count, the native type text of the inner property, and one element.
	int32 GetArrayNum() const;
	FString GetArrayElementCppType() const;
	FZorvekMCPBridgePropertyCursor GetArrayElement(int32 Index) const;

	// Structs: the struct's name and path name, its fields (super structs included, in the
	// engine's field order) and one field by exact name.
	FString GetStructName() const;
	FString GetStructPath() const;
	void EnumerateStructFields(TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const;
	FZorvekMCPBridgePropertyCursor FindStructField(const FString& FieldName) const;

	// For editor port implementations only.
	const void* GetPropertyPtr() const { return Property; }
	void* GetValuePtr() const { return Value; }
	FZorvekMCPBridgeObjectHandle GetOwner() const { return Owner; }

private:
	const IZorvekMCPBridgeReflection* Reflection = nullptr;
	const void* Property = nullptr;
	void* Value = nullptr;
	FZorvekMCPBridgeObjectHandle Owner;
};

// The engine's reflection, reached through cursors. Portable code calls the cursor's members;
// those forward here.
class IZorvekMCPBridgeReflection
{
public:
	virtual ~IZorvekMCPBridgeReflection() = default;

	// Walks the properties of the object's class, super classes included, in the engine's field
	// order (the class's own properties first, then its super class's), until the callback
	// returns false. Each cursor points at element 0 of the property's value in the object.
	virtual void EnumerateProperties(FZorvekMCPBridgeObjectHandle Object, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const = 0;

	// The property of that exact name on the object's class (super classes included); invalid
	// when there is none.
	virtual FZorvekMCPBridgePropertyCursor FindProperty(FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName) const = 0;

	// Imports text into the value the cursor points at, with the owner as owner object, port
	// flags PPF_UseDeprecatedProperties (0x08000000) and the editor's warning device for errors.
	// True when the engine consumed the text. Sends no change notification and dirties nothing.
	virtual bool ImportText(const FZorvekMCPBridgePropertyCursor& Value, const FString& Text) const = 0;

	virtual FString GetPropertyName(const FZorvekMCPBridgePropertyCursor& Value) const = 0;
	virtual FString GetPropertyCppType(const FZorvekMCPBridgePropertyCursor& Value) const = 0;
	virtual uint64 GetPropertyFlags(const FZorvekMCPBridgePropertyCursor& Value) const = 0;
	virtual EZorvekMCPBridgePropertyKind GetPropertyKind(const FZorvekMCPBridgePropertyCursor& Value) const = 0;
	virtual bool ExportText(const FZorvekMCPBridgePropertyCursor& Value, FString& OutText) const = 0;
	virtual FZorvekMCPBridgeObjectHandle GetReferencedObject(const FZorvekMCPBridgePropertyCursor& Value) const = 0;
	virtual int32 GetArrayNum(const FZorvekMCPBridgePropertyCursor& Value) const = 0;
	virtual FString GetArrayElementCppType(const FZorvekMCPBridgePropertyCursor& Value) const = 0;
	virtual FZorvekMCPBridgePropertyCursor GetArrayElement(const FZorvekMCPBridgePropertyCursor& Value, int32 Index) const = 0;
	virtual FString GetStructName(const FZorvekMCPBridgePropertyCursor& Value) const = 0;
	virtual FString GetStructPath(const FZorvekMCPBridgePropertyCursor& Value) const = 0;
	virtual void EnumerateStructFields(const FZorvekMCPBridgePropertyCursor& Value, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const = 0;
	virtual FZorvekMCPBridgePropertyCursor FindStructField(const FZorvekMCPBridgePropertyCursor& Value, const FString& FieldName) const = 0;
};
