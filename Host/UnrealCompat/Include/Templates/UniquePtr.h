#pragma once

#include "CoreTypes.h"
#include <memory>

// The engine's unique pointer: a std::unique_ptr inside, only the engine's members outside.
template <typename T, typename Deleter = std::default_delete<T>>
class TUniquePtr
{
public:
	TUniquePtr() = default;
	TUniquePtr(std::nullptr_t) {}
	explicit TUniquePtr(T* InPointer) : Pointer(InPointer) {}
	TUniquePtr(TUniquePtr&& Other) = default;
	template <typename OtherType, typename OtherDeleter, typename = std::enable_if_t<std::is_convertible_v<OtherType*, T*>>>
	TUniquePtr(TUniquePtr<OtherType, OtherDeleter>&& Other) : Pointer(Other.Release()) {}
	TUniquePtr& operator=(TUniquePtr&& Other) = default;
	template <typename OtherType, typename OtherDeleter, typename = std::enable_if_t<std::is_convertible_v<OtherType*, T*>>>
	TUniquePtr& operator=(TUniquePtr<OtherType, OtherDeleter>&& Other) { Pointer.reset(Other.Release()); return *this; }
	TUniquePtr& operator=(std::nullptr_t) { Pointer.reset(); return *this; }

	T* Get() const { return Pointer.get(); }
	bool IsValid() const { return Pointer != nullptr; }
	explicit operator bool() const { return IsValid(); }
	T* operator->() const { check(IsValid()); return Pointer.get(); }
	T& operator*() const { check(IsValid()); return *Pointer; }
	void Reset(T* NewPointer = nullptr) { Pointer.reset(NewPointer); }
	T* Release() { return Pointer.release(); }

	bool operator==(std::nullptr_t) const { return !IsValid(); }
	bool operator!=(std::nullptr_t) const { return IsValid(); }

private:
	std::unique_ptr<T, Deleter> Pointer;
};

template <typename T, typename... ArgTypes>
TUniquePtr<T> MakeUnique(ArgTypes&&... Args)
{
	return TUniquePtr<T>(new T(Forward<ArgTypes>(Args)...));
}
