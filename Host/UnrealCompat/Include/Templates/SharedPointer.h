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

// How the compat layer's own templates reach the std pointer inside; the engine's pointers
// expose no such thing, so neither do these.
struct FCompatSharedPointerAccess
{
	template <typename PointerType>
	static const auto& GetStd(const PointerType& Pointer) { return Pointer.Pointer; }
	template <typename PointerType, typename StdPointerType>
	static PointerType Make(StdPointerType&& StdPointer) { return PointerType(Forward<StdPointerType>(StdPointer)); }
};

template <typename ObjectType, ESPMode Mode>
class TSharedPtr
{
public:
	TSharedPtr() = default;
	TSharedPtr(std::nullptr_t) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TSharedPtr(const TSharedPtr<OtherType, Mode>& Other) : Pointer(FCompatSharedPointerAccess::GetStd(Other)) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TSharedPtr(const TSharedRef<OtherType, Mode>& Other) : Pointer(FCompatSharedPointerAccess::GetStd(Other)) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	explicit TSharedPtr(OtherType* Raw) : Pointer(Raw) {}

	bool IsValid() const { return Pointer != nullptr; }
	explicit operator bool() const { return IsValid(); }
	ObjectType* Get() const { return Pointer.get(); }
	ObjectType* operator->() const { check(IsValid()); return Pointer.get(); }
	ObjectType& operator*() const { check(IsValid()); return *Pointer; }
	void Reset() { Pointer.reset(); }
	TSharedRef<ObjectType, Mode> ToSharedRef() const { check(IsValid()); return FCompatSharedPointerAccess::Make<TSharedRef<ObjectType, Mode>>(Pointer); }
	int32 GetSharedReferenceCount() const { return (int32)Pointer.use_count(); }
	bool IsUnique() const { return Pointer.use_count() == 1; }

	template <typename OtherType>
	bool operator==(const TSharedPtr<OtherType, Mode>& Other) const { return Pointer == FCompatSharedPointerAccess::GetStd(Other); }
	template <typename OtherType>
	bool operator==(const TSharedRef<OtherType, Mode>& Other) const { return Pointer == FCompatSharedPointerAccess::GetStd(Other); }
	bool operator==(std::nullptr_t) const { return Pointer == nullptr; }

private:
	friend struct FCompatSharedPointerAccess;
	explicit TSharedPtr(std::shared_ptr<ObjectType> InPointer) : Pointer(MoveTemp(InPointer)) {}
	std::shared_ptr<ObjectType> Pointer;
};

template <typename ObjectType, ESPMode Mode>
class TSharedRef
{
public:
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TSharedRef(const TSharedRef<OtherType, Mode>& Other) : Pointer(FCompatSharedPointerAccess::GetStd(Other)) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	explicit TSharedRef(OtherType* Raw) : Pointer(Raw) { check(Pointer != nullptr); }

	ObjectType* operator->() const { return Pointer.get(); }
	ObjectType& operator*() const { return *Pointer; }
	ObjectType& Get() const { return *Pointer; }
	bool IsValid() const { return true; }
	TSharedPtr<ObjectType, Mode> ToSharedPtr() const { return FCompatSharedPointerAccess::Make<TSharedPtr<ObjectType, Mode>>(Pointer); }
	int32 GetSharedReferenceCount() const { return (int32)Pointer.use_count(); }

	template <typename OtherType>
	bool operator==(const TSharedRef<OtherType, Mode>& Other) const { return Pointer == FCompatSharedPointerAccess::GetStd(Other); }

private:
	friend struct FCompatSharedPointerAccess;
	explicit TSharedRef(std::shared_ptr<ObjectType> InPointer) : Pointer(MoveTemp(InPointer)) { check(Pointer != nullptr); }
	std::shared_ptr<ObjectType> Pointer;
};

template <typename ObjectType, ESPMode Mode>
class TWeakPtr
{
public:
	TWeakPtr() = default;
	TWeakPtr(std::nullptr_t) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TWeakPtr(const TSharedPtr<OtherType, Mode>& Shared) : Pointer(FCompatSharedPointerAccess::GetStd(Shared)) {}
	template <typename OtherType, typename = std::enable_if_t<std::is_convertible_v<OtherType*, ObjectType*>>>
	TWeakPtr(const TSharedRef<OtherType, Mode>& Shared) : Pointer(FCompatSharedPointerAccess::GetStd(Shared)) {}

	TSharedPtr<ObjectType, Mode> Pin() const { return FCompatSharedPointerAccess::Make<TSharedPtr<ObjectType, Mode>>(Pointer.lock()); }
	bool IsValid() const { return !Pointer.expired(); }
	bool IsStale() const { return Pointer.expired(); }
	void Reset() { Pointer.reset(); }
	bool HasSameObject(const void* Other) const { return Pin().Get() == Other; }

private:
	friend struct FCompatSharedPointerAccess;
	std::weak_ptr<ObjectType> Pointer;
};

template <typename ObjectType, ESPMode Mode>
class TSharedFromThis : public std::enable_shared_from_this<ObjectType>
{
public:
	TSharedRef<ObjectType, Mode> AsShared() { return FCompatSharedPointerAccess::Make<TSharedRef<ObjectType, Mode>>(this->shared_from_this()); }
	TSharedRef<const ObjectType, Mode> AsShared() const { return FCompatSharedPointerAccess::Make<TSharedRef<const ObjectType, Mode>>(this->shared_from_this()); }
	TWeakPtr<ObjectType, Mode> AsWeak() { return TWeakPtr<ObjectType, Mode>(AsShared()); }
	bool DoesSharedInstanceExist() const { return !this->weak_from_this().expired(); }

protected:
	template <typename OtherType>
	static TSharedRef<OtherType, Mode> SharedThis(OtherType* This)
	{
		return FCompatSharedPointerAccess::Make<TSharedRef<OtherType, Mode>>(std::static_pointer_cast<OtherType>(This->shared_from_this()));
	}
	template <typename OtherType>
	static TSharedRef<const OtherType, Mode> SharedThis(const OtherType* This)
	{
		return FCompatSharedPointerAccess::Make<TSharedRef<const OtherType, Mode>>(std::static_pointer_cast<const OtherType>(This->shared_from_this()));
	}
};

template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe, typename... ArgTypes>
TSharedRef<ObjectType, Mode> MakeShared(ArgTypes&&... Args)
{
	return FCompatSharedPointerAccess::Make<TSharedRef<ObjectType, Mode>>(std::make_shared<ObjectType>(Forward<ArgTypes>(Args)...));
}

template <typename ObjectType>
TSharedRef<ObjectType> MakeShareable(ObjectType* Raw)
{
	return FCompatSharedPointerAccess::Make<TSharedRef<ObjectType>>(std::shared_ptr<ObjectType>(Raw));
}

template <typename ToType, typename FromType, ESPMode Mode>
TSharedPtr<ToType, Mode> StaticCastSharedPtr(const TSharedPtr<FromType, Mode>& Pointer)
{
	return FCompatSharedPointerAccess::Make<TSharedPtr<ToType, Mode>>(std::static_pointer_cast<ToType>(FCompatSharedPointerAccess::GetStd(Pointer)));
}

template <typename ToType, typename FromType, ESPMode Mode>
TSharedRef<ToType, Mode> StaticCastSharedRef(const TSharedRef<FromType, Mode>& Pointer)
{
	return FCompatSharedPointerAccess::Make<TSharedRef<ToType, Mode>>(std::static_pointer_cast<ToType>(FCompatSharedPointerAccess::GetStd(Pointer)));
}

template <typename ToType, typename FromType, ESPMode Mode>
TSharedPtr<ToType, Mode> ConstCastSharedPtr(const TSharedPtr<FromType, Mode>& Pointer)
{
	return FCompatSharedPointerAccess::Make<TSharedPtr<ToType, Mode>>(std::const_pointer_cast<ToType>(FCompatSharedPointerAccess::GetStd(Pointer)));
}

template <typename ObjectType, ESPMode Mode>
uint32 GetTypeHash(const TSharedPtr<ObjectType, Mode>& Pointer)
{
	return (uint32)(std::hash<const void*>()(Pointer.Get()));
}
