#pragma once

#include "UObject/Object.h"

template <typename ObjectType>
class TStrongObjectPtr
{
public:
	TStrongObjectPtr();
	explicit TStrongObjectPtr(ObjectType* InObject);
	ObjectType* Get() const;
	ObjectType* operator->() const;
	bool IsValid() const;
	void Reset(ObjectType* NewObject = nullptr);
};
