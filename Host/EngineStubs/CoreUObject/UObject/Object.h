#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"
#include "UObject/UObjectGlobals.h"

class UClass;
class UFunction;
class UPackage;
class UWorld;
struct FPostCDOCompiledContext;

class UObject
{
public:
	virtual ~UObject();
	static UClass* StaticClass();

	FString GetName() const;
	FName GetFName() const;
	FString GetPathName(const UObject* StopOuter = nullptr) const;
	UClass* GetClass() const;
	UObject* GetOuter() const;
	UPackage* GetPackage() const;
	UPackage* GetOutermost() const;
	bool IsA(const UClass* SomeBase) const;
	template <class T> bool IsA() const;
	void SetFlags(EObjectFlags NewFlags);
	void ClearFlags(EObjectFlags NewFlags);
	bool HasAnyFlags(EObjectFlags FlagsToCheck) const;
	bool MarkPackageDirty() const;
	void MarkAsGarbage();
	virtual bool Rename(const TCHAR* NewName = nullptr, UObject* NewOuter = nullptr, ERenameFlags Flags = REN_None);
	void AddToRoot();
	void RemoveFromRoot();
	bool IsRooted() const;
	virtual UWorld* GetWorld() const;
	virtual bool Modify(bool bAlwaysMarkDirty = true);
	void PostEditChange();
	virtual void ProcessEvent(UFunction* Function, void* Parms);
	// Not in the reference notes; check against the engine.
	virtual void PostInitProperties();
#if WITH_EDITOR
	// Not in the reference notes; check against the engine (5.1+).
	virtual void PostCDOCompiled(const FPostCDOCompiledContext& Context);
#endif
};

bool IsValid(const UObject* Test);
FString GetNameSafe(const UObject* Object);
FString GetPathNameSafe(const UObject* Object);
bool UObjectInitialized();
