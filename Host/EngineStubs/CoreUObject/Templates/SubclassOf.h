#pragma once

#include "UObject/Class.h"

// Not in the reference notes beyond its use as a member type; the accessors follow the engine's
// TSubclassOf, check against the engine.
template <class T>
class TSubclassOf
{
public:
	TSubclassOf();
	TSubclassOf(UClass* From);
	UClass* Get() const;
	operator UClass*() const;
	UClass* operator*() const;
	UClass* operator->() const;
	T* GetDefaultObject() const;
};
