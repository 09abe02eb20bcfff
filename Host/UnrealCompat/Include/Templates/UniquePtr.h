#pragma once

#include "CoreTypes.h"
#include <memory>

// std::unique_ptr with the engine's member names.
template <typename T, typename Deleter = std::default_delete<T>>
class TUniquePtr : public std::unique_ptr<T, Deleter>
{
public:
	using std::unique_ptr<T, Deleter>::unique_ptr;
	TUniquePtr() = default;
	TUniquePtr(std::unique_ptr<T, Deleter>&& Other) : std::unique_ptr<T, Deleter>(MoveTemp(Other)) {}
	template <typename OtherType, typename OtherDeleter, typename = std::enable_if_t<std::is_convertible_v<OtherType*, T*>>>
	TUniquePtr(TUniquePtr<OtherType, OtherDeleter>&& Other) : std::unique_ptr<T, Deleter>(MoveTemp(Other)) {}

	T* Get() const { return this->get(); }
	bool IsValid() const { return this->get() != nullptr; }
	void Reset(T* NewPointer = nullptr) { this->reset(NewPointer); }
	T* Release() { return this->release(); }
};

template <typename T, typename... ArgTypes>
TUniquePtr<T> MakeUnique(ArgTypes&&... Args)
{
	return TUniquePtr<T>(new T(Forward<ArgTypes>(Args)...));
}
