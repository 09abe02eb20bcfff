#pragma once

#include "UObject/Object.h"

struct FSavePackageArgs;

class UPackage : public UObject
{
public:
	static UClass* StaticClass();
	bool IsDirty() const;
	void SetDirtyFlag(bool bIsDirty);
	void FullyLoad();
	static bool SavePackage(UPackage* InOuter, UObject* InAsset, const TCHAR* Filename, const FSavePackageArgs& SaveArgs);
};

UPackage* CreatePackage(const TCHAR* PackageName);
UPackage* FindPackage(UObject* InOuter, const TCHAR* PackageName);
