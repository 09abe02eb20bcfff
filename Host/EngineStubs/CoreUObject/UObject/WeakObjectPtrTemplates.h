#pragma once

#include "UObject/Object.h"

template <typename T = UObject>
struct TWeakObjectPtr
{
	TWeakObjectPtr();
	TWeakObjectPtr(const T* Object);
	template <typename OtherT>
	TWeakObjectPtr(const TWeakObjectPtr<OtherT>& Other);
	T* Get() const;
	bool IsValid() const;
	void Reset();
	T* operator->() const;
};
