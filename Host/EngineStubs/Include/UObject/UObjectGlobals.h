#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

class UObject;
class UClass;
class UPackage;

UPackage* GetTransientPackage();

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
