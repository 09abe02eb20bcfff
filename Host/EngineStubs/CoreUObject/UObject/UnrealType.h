#pragma once

#include "CoreMinimal.h"
#include "Misc/FeedbackContext.h"
#include "UObject/Class.h"
#include "UObject/Field.h"
#include "UObject/ObjectMacros.h"
#include "UObject/ObjectPtr.h"

class FOutputDevice;
class UObject;
class UScriptStruct;

class FProperty : public FField
{
public:
	int32 ArrayDim;

	int32 GetElementSize() const;
	int32 GetSize() const;
	EPropertyFlags GetPropertyFlags() const;
	bool HasAnyPropertyFlags(uint64 FlagsToCheck) const;
	bool HasAllPropertyFlags(uint64 FlagsToCheck) const;
	virtual FString GetCPPType(FString* ExtendedTypeText = nullptr, uint32 CPPExportFlags = 0) const;

	template <typename ValueType>
	ValueType* ContainerPtrToValuePtr(void* ContainerPtr, int32 ArrayIndex = 0) const;
	template <typename ValueType>
	const ValueType* ContainerPtrToValuePtr(const void* ContainerPtr, int32 ArrayIndex = 0) const;
	template <typename ValueType>
	ValueType* ContainerPtrToValuePtr(UObject* ContainerPtr, int32 ArrayIndex = 0) const;
	template <typename ValueType>
	const ValueType* ContainerPtrToValuePtr(const UObject* ContainerPtr, int32 ArrayIndex = 0) const;

	void ExportTextItem_Direct(FString& ValueStr, const void* PropertyValue, const void* DefaultValue, UObject* Parent, int32 PortFlags, UObject* ExportRootScope = nullptr) const;
	bool ExportText_Direct(FString& ValueStr, const void* Data, const void* Delta, UObject* Parent, int32 PortFlags, UObject* ExportRootScope = nullptr) const;
	bool ExportText_InContainer(int32 Index, FString& ValueStr, const void* Data, const void* Delta, UObject* Parent, int32 PortFlags, UObject* ExportRootScope = nullptr) const;
	const TCHAR* ImportText_Direct(const TCHAR* Buffer, void* PropertyPtr, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText = (FOutputDevice*)GWarn) const;
	const TCHAR* ImportText_InContainer(const TCHAR* Buffer, void* Container, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText = (FOutputDevice*)GWarn) const;
	void InitializeValue_InContainer(void* Dest) const;
	void DestroyValue_InContainer(void* Dest) const;
};

// The value helpers of the typed properties.
template <typename T>
class TProperty : public FProperty
{
public:
	static const T& GetPropertyValue(const void* A);
	static void SetPropertyValue(void* A, const T& Value);
	static T* GetPropertyValuePtr(void* A);
};

class FNumericProperty : public FProperty
{
};

class FByteProperty : public FNumericProperty
{
public:
	TObjectPtr<UEnum> Enum;
};

class FIntProperty : public FNumericProperty
{
};

class FInt8Property : public FNumericProperty
{
};

class FInt16Property : public FNumericProperty
{
};

class FInt64Property : public FNumericProperty
{
};

class FUInt16Property : public FNumericProperty
{
};

class FUInt32Property : public FNumericProperty
{
};

class FUInt64Property : public FNumericProperty
{
};

class FFloatProperty : public FNumericProperty
{
};

class FDoubleProperty : public FNumericProperty
{
};

class FBoolProperty : public FProperty
{
};

class FNameProperty : public TProperty<FName>
{
};

class FSetProperty : public FProperty
{
};

class FMapProperty : public FProperty
{
};

class FObjectPropertyBase : public FProperty
{
public:
	TObjectPtr<UClass> PropertyClass;
	UObject* GetObjectPropertyValue(const void* PropertyValueAddress) const;
	UObject* GetObjectPropertyValue_InContainer(const void* ContainerAddress, int32 ArrayIndex = 0) const;
	void SetObjectPropertyValue(void* PropertyValueAddress, UObject* Value) const;
};

class FObjectProperty : public FObjectPropertyBase
{
};

class FStructProperty : public FProperty
{
public:
	TObjectPtr<UScriptStruct> Struct;
};

class FArrayProperty : public FProperty
{
public:
	FProperty* Inner;
};

// Walks the properties of a struct or class, its own first, then its super struct's.
enum class EFieldIterationFlags : uint8
{
	None = 0,
	IncludeSuper = 1 << 0,
	IncludeDeprecated = 1 << 1,
	IncludeInterfaces = 1 << 2,
	IncludeAll = IncludeSuper | IncludeDeprecated | IncludeInterfaces,
	Default = IncludeSuper | IncludeDeprecated,
};

template <class FieldType>
class TFieldIterator
{
public:
	TFieldIterator(const UStruct* InStruct, EFieldIterationFlags InIterationFlags = EFieldIterationFlags::Default);
	explicit operator bool() const;
	void operator++();
	FieldType* operator*() const;
	FieldType* operator->() const;
};

template <typename FieldType>
FieldType* FindFProperty(const UStruct* Owner, FName FieldName);

// Element access of a dynamic array value (the pointer is the array itself, already offset).
class FScriptArrayHelper
{
public:
	FScriptArrayHelper(const FArrayProperty* InProperty, const void* InArray);
	int32 Num() const;
	bool IsValidIndex(int32 Index) const;
	uint8* GetRawPtr(int32 Index = 0);
};

namespace EPropertyChangeType
{
	typedef uint32 Type;
	const Type Unspecified = 1 << 0;
	const Type ArrayAdd = 1 << 1;
	const Type ArrayRemove = 1 << 2;
	const Type ArrayClear = 1 << 3;
	const Type ValueSet = 1 << 4;
	const Type Duplicate = 1 << 5;
	const Type Interactive = 1 << 6;
	const Type Redirected = 1 << 7;
	const Type ArrayMove = 1 << 8;
	const Type ToggleEditable = 1 << 9;
	const Type ResetToDefault = 1 << 10;
}

// The engine's constructor has a third, defaulted parameter (the top-level objects, a
// TArrayView the compat layer does not have); nothing here passes it.
struct FPropertyChangedEvent
{
	FPropertyChangedEvent(FProperty* InProperty, EPropertyChangeType::Type InChangeType = EPropertyChangeType::Unspecified);

	FProperty* Property;
	FProperty* MemberProperty;
	EPropertyChangeType::Type ChangeType;

	FName GetPropertyName() const;
	FName GetMemberPropertyName() const;
};
