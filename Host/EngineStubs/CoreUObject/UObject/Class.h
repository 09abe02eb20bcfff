#pragma once

#include "UObject/Object.h"
#include "UObject/ObjectPtr.h"
#include "UObject/TopLevelAssetPath.h"

class FProperty;

class UField : public UObject
{
public:
	FText GetDisplayNameText() const;
	FText GetToolTipText(bool bShortTooltip = false) const;
	bool HasMetaData(const TCHAR* Key) const;
	const FString& GetMetaData(const TCHAR* Key) const;
	FString GetAuthoredName() const;
};

class UStruct : public UField
{
public:
	UStruct* GetSuperStruct() const;
	bool IsChildOf(const UStruct* SomeBase) const;
	FProperty* FindPropertyByName(FName InName) const;
	FTopLevelAssetPath GetStructPathName() const;
	int32 GetPropertiesSize() const;
	int32 GetStructureSize() const;
	virtual void InitializeStruct(void* Dest, int32 ArrayDim = 1) const;
	virtual void DestroyStruct(void* Dest, int32 ArrayDim = 1) const;
};

class UFunction;

namespace EIncludeSuperFlag
{
	enum Type
	{
		ExcludeSuper,
		IncludeSuper
	};
}

class UClass : public UStruct
{
public:
	EClassFlags ClassFlags;
#if WITH_EDITORONLY_DATA
	TObjectPtr<UObject> ClassGeneratedBy;
#endif

	UClass* GetSuperClass() const;
	bool HasAnyClassFlags(EClassFlags FlagsToCheck) const;
	EClassFlags GetClassFlags() const;
	FTopLevelAssetPath GetClassPathName() const;
	UObject* GetDefaultObject(bool bCreateIfNeeded = true) const;
	template <class T> bool IsChildOf() const;
	using UStruct::IsChildOf;
	UFunction* FindFunctionByName(FName InName, EIncludeSuperFlag::Type IncludeSuper = EIncludeSuperFlag::IncludeSuper) const;
	bool ImplementsInterface(const UClass* SomeInterface) const;
};

class UFunction : public UStruct
{
public:
	EFunctionFlags FunctionFlags;
	uint8 NumParms;
	uint16 ParmsSize;
	bool HasAnyFunctionFlags(EFunctionFlags FlagsToCheck) const;
	FProperty* GetReturnProperty() const;
	UClass* GetOuterUClass() const;
	UFunction* GetSuperFunction() const;
};

class UScriptStruct : public UStruct
{
};

enum class EGetByNameFlags
{
	None = 0,
	ErrorIfNotFound = 0x01,
	CaseSensitive = 0x02,
	CheckAuthoredName = 0x04,
};

class UEnum : public UField
{
public:
	int32 NumEnums() const;
	FName GetNameByIndex(int32 Index) const;
	FString GetNameStringByIndex(int32 InIndex) const;
	FText GetDisplayNameTextByIndex(int32 InIndex) const;
	int64 GetValueByIndex(int32 Index) const;
	int32 GetIndexByName(const FName InName) const;
	FString GetNameStringByValue(int64 InValue) const;
	int64 GetValueByNameString(const FString& SearchString, EGetByNameFlags Flags = EGetByNameFlags::None) const;
};

// The nearest native class: the class itself when it is native.
UClass* GetParentNativeClass(UClass* Class);
