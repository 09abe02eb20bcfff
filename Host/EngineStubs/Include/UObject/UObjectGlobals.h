#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

class UObject;
class UClass;
class UPackage;
class UPackageMap;
struct FLinkerInstancingContext;

UPackage* GetTransientPackage();

UObject* StaticLoadObject(UClass* Class, UObject* InOuter, FStringView Name, FStringView Filename = {}, uint32 LoadFlags = LOAD_None,
	UPackageMap* Sandbox = nullptr, bool bAllowObjectReconciliation = true, const FLinkerInstancingContext* InstancingContext = nullptr);

template <class T>
T* NewObject(UObject* Outer, const UClass* Class, FName Name = NAME_None, EObjectFlags Flags = RF_NoFlags, UObject* Template = nullptr);
template <class T>
T* NewObject(UObject* Outer, FName Name, EObjectFlags Flags = RF_NoFlags, UObject* Template = nullptr);
template <class T>
T* NewObject(UObject* Outer = (UObject*)GetTransientPackage());

template <class T>
const T* GetDefault();
template <class T>
T* GetMutableDefault();
