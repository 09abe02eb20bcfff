#pragma once

#include "UObject/Object.h"

class UPackage : public UObject
{
public:
	static UClass* StaticClass();
	bool IsDirty() const;
	void SetDirtyFlag(bool bIsDirty);
};
