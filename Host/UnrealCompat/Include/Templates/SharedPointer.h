// Shared pointers over std::shared_ptr. Both ESPMode variants are thread-safe here, which is
// what the engine's ThreadSafe mode promises and stronger than NotThreadSafe.
#pragma once

#include "CoreTypes.h"
#include <memory>

enum class ESPMode : uint8
{
	NotThreadSafe = 0,
	ThreadSafe = 1
};

template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe> class TSharedRef;
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe> class TSharedPtr;
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe> class TWeakPtr;
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe> class TSharedFromThis;

template <typename ObjectType, ESPMode Mode>
class TSharedPtr
{
public:
	TSharedPtr() = default;
	TSharedPtr(std::nullptr_t) {}
	explicit TSharedPtr(std::shared_ptr<ObjectType> InPointer) : Pointer(MoveTemp(InPointer)) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TSharedPtr(const TSharedPtr<OtherType, Mode>& Other) : Pointer(Other.GetStdPointer()) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TSharedPtr(const TSharedRef<OtherType, Mode>& Other) : Pointer(Other.GetStdPointer()) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	explicit TSharedPtr(OtherType* Raw) : Pointer(Raw) {}

	bool IsValid() const { return Pointer != nullptr; }
	explicit operator bool() const { return IsValid(); }
	ObjectType* Get() const { return Pointer.get(); }
	ObjectType* operator->() const { check(IsValid()); return Pointer.get(); }
	ObjectType& operator*() const { check(IsValid()); return *Pointer; }
	void Reset() { Pointer.reset(); }
	TSharedRef<ObjectType, Mode> ToSharedRef() const { check(IsValid()); return TSharedRef<ObjectType, Mode>(Pointer); }
	int32 GetSharedReferenceCount() const { return (int32)Pointer.use_count(); }
	bool IsUnique() const { return Pointer.use_count() == 1; }
	const std::shared_ptr<ObjectType>& GetStdPointer() const { return Pointer; }

	template <typename OtherType>
	bool operator==(const TSharedPtr<OtherType, Mode>& Other) const { return Pointer == Other.GetStdPointer(); }
	template <typename OtherType>
	bool operator==(const TSharedRef<OtherType, Mode>& Other) const { return Pointer == Other.GetStdPointer(); }
	bool operator==(std::nullptr_t) const { return Pointer == nullptr; }

private:
	std::shared_ptr<ObjectType> Pointer;
};

template <typename ObjectType, ESPMode Mode>
class TSharedRef
{
public:
	explicit TSharedRef(std::shared_ptr<ObjectType> InPointer) : Pointer(MoveTemp(InPointer)) { check(Pointer != nullptr); }
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TSharedRef(const TSharedRef<OtherType, Mode>& Other) : Pointer(Other.GetStdPointer()) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	explicit TSharedRef(OtherType* Raw) : Pointer(Raw) { check(Pointer != nullptr); }

	ObjectType* operator->() const { return Pointer.get(); }
	ObjectType& operator*() const { return *Pointer; }
	ObjectType& Get() const { return *Pointer; }
	bool IsValid() const { return true; }
	TSharedPtr<ObjectType, Mode> ToSharedPtr() const { return TSharedPtr<ObjectType, Mode>(Pointer); }
	int32 GetSharedReferenceCount() const { return (int32)Pointer.use_count(); }
	const std::shared_ptr<ObjectType>& GetStdPointer() const { return Pointer; }

	template <typename OtherType>
	bool operator==(const TSharedRef<OtherType, Mode>& Other) const { return Pointer == Other.GetStdPointer(); }

private:
	std::shared_ptr<ObjectType> Pointer;
};

template <typename ObjectType, ESPMode Mode>
class TWeakPtr
{
public:
	TWeakPtr() = default;
	TWeakPtr(std::nullptr_t) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TWeakPtr(const TSharedPtr<OtherType, Mode>& Shared) : Pointer(Shared.GetStdPointer()) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TWeakPtr(const TSharedRef<OtherType, Mode>& Shared) : Pointer(Shared.GetStdPointer()) {}

	TSharedPtr<ObjectType, Mode> Pin() const { return TSharedPtr<ObjectType, Mode>(Pointer.lock()); }
	bool IsValid() const { return !Pointer.expired(); }
	bool IsStale() const { return Pointer.expired(); }
	void Reset() { Pointer.reset(); }
	bool HasSameObject(const void* Other) const { return Pin().Get() == Other; }

private:
	std::weak_ptr<ObjectType> Pointer;
};

template <typename ObjectType, ESPMode Mode>
class TSharedFromThis : public std::enable_shared_from_this<ObjectType>
{
public:
	TSharedRef<ObjectType, Mode> AsShared() { return TSharedRef<ObjectType, Mode>(this->shared_from_this()); }
	TSharedRef<const ObjectType, Mode> AsShared() const { return TSharedRef<const ObjectType, Mode>(this->shared_from_this()); }
	TWeakPtr<ObjectType, Mode> AsWeak() { return TWeakPtr<ObjectType, Mode>(AsShared()); }
	bool DoesSharedInstanceExist() const { return !this->weak_from_this().expired(); }

protected:
	template <typename OtherType>
	static TSharedRef<OtherType, Mode> SharedThis(OtherType* This)
	{
		return TSharedRef<OtherType, Mode>(std::static_pointer_cast<OtherType>(This->shared_from_this()));
	}
	template <typename OtherType>
	static TSharedRef<const OtherType, Mode> SharedThis(const OtherType* This)
	{
		return TSharedRef<const OtherType, Mode>(std::static_pointer_cast<const OtherType>(This->shared_from_this()));
	}
};

template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe, typename... ArgTypes>
TSharedRef<ObjectType, Mode> MakeShared(ArgTypes&&... Args)
{
	return TSharedRef<ObjectType, Mode>(std::make_shared<ObjectType>(Forward<ArgTypes>(Args)...));
}

template <typename ObjectType>
TSharedRef<ObjectType> MakeShareable(ObjectType* Raw)
{
	return TSharedRef<ObjectType>(std::shared_ptr<ObjectType>(Raw));
}

template <typename ToType, typename FromType, ESPMode Mode>
TSharedPtr<ToType, Mode> StaticCastSharedPtr(const TSharedPtr<FromType, Mode>& Pointer)
{
	return TSharedPtr<ToType, Mode>(std::static_pointer_cast<ToType>(Pointer.GetStdPointer()));
}

template <typename ToType, typename FromType, ESPMode Mode>
TSharedRef<ToType, Mode> StaticCastSharedRef(const TSharedRef<FromType, Mode>& Pointer)
{
	return TSharedRef<ToType, Mode>(std::static_pointer_cast<ToType>(Pointer.GetStdPointer()));
}

template <typename ToType, typename FromType, ESPMode Mode>
TSharedPtr<ToType, Mode> ConstCastSharedPtr(const TSharedPtr<FromType, Mode>& Pointer)
{
	return TSharedPtr<ToType, Mode>(std::const_pointer_cast<ToType>(Pointer.GetStdPointer()));
}

template <typename ObjectType, ESPMode Mode>
uint32 GetTypeHash(const TSharedPtr<ObjectType, Mode>& Pointer)
{
	return (uint32)(std::hash<const void*>()(Pointer.Get()));
}
