#pragma once

#include "UObject/Object.h"

class UField : public UObject
{
public:
	FText GetDisplayNameText() const;
	FText GetToolTipText(bool bShortTooltip = false) const;
	bool HasMetaData(const TCHAR* Key) const;
	const FString& GetMetaData(const TCHAR* Key) const;
};

class UStruct : public UField
{
public:
	UStruct* GetSuperStruct() const;
	bool IsChildOf(const UStruct* SomeBase) const;
};

class UClass : public UStruct
{
public:
	UClass* GetSuperClass() const;
	UObject* GetDefaultObject(bool bCreateIfNeeded = true) const;
	template <class T> bool IsChildOf() const;
	using UStruct::IsChildOf;
};

class UScriptStruct : public UStruct
{
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
};
