#pragma once

#include "CoreMinimal.h"
#include "UObject/FindObjectFlags.h"
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

// Not in the reference notes beyond MakeUniqueObjectName's signature; the enum's values are the
// engine's, check against the engine.
enum class EUniqueObjectNameOptions
{
	None = 0,
	GloballyUnique = 1 << 0,
	UniversallyUnique = 1 << 1
};

FName MakeUniqueObjectName(UObject* Parent, const UClass* Class, FName InBaseName = NAME_None, EUniqueObjectNameOptions Options = EUniqueObjectNameOptions::None);

template <class T>
const T* GetDefault();
template <class T>
T* GetMutableDefault();

UObject* StaticFindObject(UClass* Class, UObject* InOuter, FStringView Name, EFindObjectFlags Flags = EFindObjectFlags::None);
UObject* StaticFindFirstObject(UClass* Class, FStringView Name, EFindFirstObjectOptions Options = EFindFirstObjectOptions::None,
	ELogVerbosity::Type AmbiguousMessageVerbosity = ELogVerbosity::NoLogging, const TCHAR* InCurrentOperation = nullptr);

template <class T>
T* FindObject(UObject* Outer, FStringView Name, EFindObjectFlags Flags = EFindObjectFlags::None);
template <class T>
T* FindFirstObject(FStringView Name, EFindFirstObjectOptions Options = EFindFirstObjectOptions::None,
	ELogVerbosity::Type AmbiguousMessageVerbosity = ELogVerbosity::NoLogging, const TCHAR* InCurrentOperation = nullptr);
template <class T>
T* LoadObject(UObject* Outer, FStringView Name, FStringView Filename = {}, uint32 LoadFlags = LOAD_None, UPackageMap* Sandbox = nullptr,
	const FLinkerInstancingContext* InstancingContext = nullptr);
