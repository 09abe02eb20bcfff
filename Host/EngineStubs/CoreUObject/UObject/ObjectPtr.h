#pragma once

#include "UObject/Object.h"

template <typename T>
struct TObjectPtr
{
	TObjectPtr();
	TObjectPtr(T* Object);
	T* Get() const;
	T* operator->() const;
	operator T*() const;
	explicit operator bool() const;
};
