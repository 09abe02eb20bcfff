// Single-cast and multicast delegates with the engine's binding names. A delegate bound with
// CreateSP/CreateWeakLambda stops executing once its object is gone, as in the engine.
#pragma once

#include "CoreTypes.h"
#include "Containers/Array.h"
#include "Templates/Function.h"
#include "Templates/SharedPointer.h"
#include <atomic>

class FDelegateHandle
{
public:
	enum EGenerateNewHandleType
	{
		GenerateNewHandle
	};

	FDelegateHandle() = default;
	explicit FDelegateHandle(EGenerateNewHandleType) : ID(NextID()) {}

	bool IsValid() const { return ID != 0; }
	void Reset() { ID = 0; }
	bool operator==(const FDelegateHandle& Other) const { return ID == Other.ID; }
	bool operator!=(const FDelegateHandle& Other) const { return ID != Other.ID; }

private:
	static uint64 NextID()
	{
		static std::atomic<uint64> Counter{0};
		return ++Counter;
	}
	uint64 ID = 0;
};

template <typename FuncType, typename UserPolicy = void>
class TDelegate;

template <typename RetValType, typename... ParamTypes, typename UserPolicy>
class TDelegate<RetValType(ParamTypes...), UserPolicy>
{
public:
	TDelegate() = default;
	TDelegate(std::nullptr_t) {}

	template <typename FunctorType>
	static TDelegate CreateLambda(FunctorType&& Functor)
	{
		TDelegate Result;
		Result.Callable = std::make_shared<TFunction<RetValType(ParamTypes...)>>(Forward<FunctorType>(Functor));
		return Result;
	}

	template <typename UserClass, typename... VarTypes>
	static TDelegate CreateRaw(UserClass* Object, RetValType (UserClass::*Method)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars)
	{
		TDelegate Result = CreateLambda([Object, Method, Vars...](ParamTypes... Params) -> RetValType { return (Object->*Method)(Forward<ParamTypes>(Params)..., Vars...); });
		Result.RawObject = Object;
		return Result;
	}

	template <typename UserClass, typename... VarTypes>
	static TDelegate CreateRaw(const UserClass* Object, RetValType (UserClass::*Method)(ParamTypes..., VarTypes...) const, std::decay_t<VarTypes>... Vars)
	{
		TDelegate Result = CreateLambda([Object, Method, Vars...](ParamTypes... Params) -> RetValType { return (Object->*Method)(Forward<ParamTypes>(Params)..., Vars...); });
		Result.RawObject = Object;
		return Result;
	}

	template <typename UserClass, ESPMode Mode, typename... VarTypes>
	static TDelegate CreateSP(const TSharedRef<UserClass, Mode>& Object, RetValType (UserClass::*Method)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars)
	{
		TWeakPtr<UserClass, Mode> Weak(Object);
		TDelegate Result = CreateLambda([Weak, Method, Vars...](ParamTypes... Params) -> RetValType { return (Weak.Pin().Get()->*Method)(Forward<ParamTypes>(Params)..., Vars...); });
		Result.Liveness = [Weak]() { return Weak.IsValid(); };
		Result.RawObject = &Object.Get();
		return Result;
	}

	template <typename UserClass, ESPMode Mode, typename... VarTypes>
	static TDelegate CreateSP(const TSharedPtr<UserClass, Mode>& Object, RetValType (UserClass::*Method)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars)
	{
		return CreateSP(Object.ToSharedRef(), Method, Vars...);
	}

	template <typename UserClass, typename... VarTypes>
	static TDelegate CreateSP(UserClass* Object, RetValType (UserClass::*Method)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars)
	{
		return CreateSP(StaticCastSharedRef<UserClass>(Object->AsShared()), Method, Vars...);
	}

	template <typename UserClass, ESPMode Mode, typename FunctorType>
	static TDelegate CreateWeakLambda(const TSharedRef<UserClass, Mode>& Object, FunctorType&& Functor)
	{
		TWeakPtr<UserClass, Mode> Weak(Object);
		TDelegate Result = CreateLambda(Forward<FunctorType>(Functor));
		Result.Liveness = [Weak]() { return Weak.IsValid(); };
		return Result;
	}

	template <typename... VarTypes>
	static TDelegate CreateStatic(RetValType (*Function)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars)
	{
		return CreateLambda([Function, Vars...](ParamTypes... Params) -> RetValType { return Function(Forward<ParamTypes>(Params)..., Vars...); });
	}

	template <typename FunctorType>
	void BindLambda(FunctorType&& Functor) { *this = CreateLambda(Forward<FunctorType>(Functor)); }
	template <typename UserClass, typename... VarTypes>
	void BindRaw(UserClass* Object, RetValType (UserClass::*Method)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars) { *this = CreateRaw(Object, Method, Vars...); }
	template <typename UserClass, ESPMode Mode, typename... VarTypes>
	void BindSP(const TSharedRef<UserClass, Mode>& Object, RetValType (UserClass::*Method)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars) { *this = CreateSP(Object, Method, Vars...); }
	template <typename... VarTypes>
	void BindStatic(RetValType (*Function)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars) { *this = CreateStatic(Function, Vars...); }

	bool IsBound() const { return Callable != nullptr && (!Liveness || Liveness()); }
	bool IsBoundToObject(const void* Object) const { return IsBound() && RawObject == Object; }
	const void* GetObjectForTimerManager() const { return RawObject; }
	void Unbind() { Callable.reset(); Liveness = nullptr; RawObject = nullptr; }

	RetValType Execute(ParamTypes... Params) const
	{
		check(IsBound());
		return (*Callable)(Forward<ParamTypes>(Params)...);
	}

	template <typename R = RetValType, typename = std::enable_if_t<std::is_void_v<R>>>
	bool ExecuteIfBound(ParamTypes... Params) const
	{
		if (!IsBound())
		{
			return false;
		}
		(*Callable)(Forward<ParamTypes>(Params)...);
		return true;
	}

private:
	std::shared_ptr<TFunction<RetValType(ParamTypes...)>> Callable;
	TFunction<bool()> Liveness;
	const void* RawObject = nullptr;
};

template <typename FuncType, typename UserPolicy = void>
class TMulticastDelegate;

template <typename... ParamTypes, typename UserPolicy>
class TMulticastDelegate<void(ParamTypes...), UserPolicy>
{
public:
	typedef TDelegate<void(ParamTypes...), UserPolicy> FDelegate;

	FDelegateHandle Add(const FDelegate& Delegate)
	{
		FDelegateHandle Handle(FDelegateHandle::GenerateNewHandle);
		Entries.Add(FEntry{Handle, Delegate});
		return Handle;
	}
	template <typename FunctorType>
	FDelegateHandle AddLambda(FunctorType&& Functor) { return Add(FDelegate::CreateLambda(Forward<FunctorType>(Functor))); }
	template <typename UserClass, typename... VarTypes>
	FDelegateHandle AddRaw(UserClass* Object, void (UserClass::*Method)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars) { return Add(FDelegate::CreateRaw(Object, Method, Vars...)); }
	template <typename UserClass, ESPMode Mode, typename... VarTypes>
	FDelegateHandle AddSP(const TSharedRef<UserClass, Mode>& Object, void (UserClass::*Method)(ParamTypes..., VarTypes...), std::decay_t<VarTypes>... Vars) { return Add(FDelegate::CreateSP(Object, Method, Vars...)); }

	bool Remove(FDelegateHandle Handle)
	{
		return Entries.RemoveAll([&Handle](const FEntry& Entry) { return Entry.Handle == Handle; }) > 0;
	}
	int32 RemoveAll(const void* Object)
	{
		return Entries.RemoveAll([Object](const FEntry& Entry) { return Entry.Delegate.IsBoundToObject(Object); });
	}
	void Clear() { Entries.Reset(); }
	bool IsBound() const { return Entries.ContainsByPredicate([](const FEntry& Entry) { return Entry.Delegate.IsBound(); }); }

	void Broadcast(ParamTypes... Params) const
	{
		// A copy, so a callback may add or remove bindings while the broadcast runs.
		const TArray<FEntry> Snapshot = Entries;
		for (const FEntry& Entry : Snapshot)
		{
			if (Entry.Delegate.IsBound())
			{
				Entry.Delegate.Execute(Params...);
			}
		}
	}

private:
	struct FEntry
	{
		FDelegateHandle Handle;
		FDelegate Delegate;
		bool operator==(const FEntry& Other) const { return Handle == Other.Handle; }
	};
	TArray<FEntry> Entries;
};

#define DECLARE_DELEGATE(DelegateName) typedef TDelegate<void()> DelegateName;
#define DECLARE_DELEGATE_OneParam(DelegateName, P1) typedef TDelegate<void(P1)> DelegateName;
#define DECLARE_DELEGATE_TwoParams(DelegateName, P1, P2) typedef TDelegate<void(P1, P2)> DelegateName;
#define DECLARE_DELEGATE_ThreeParams(DelegateName, P1, P2, P3) typedef TDelegate<void(P1, P2, P3)> DelegateName;
#define DECLARE_DELEGATE_RetVal(R, DelegateName) typedef TDelegate<R()> DelegateName;
#define DECLARE_DELEGATE_RetVal_OneParam(R, DelegateName, P1) typedef TDelegate<R(P1)> DelegateName;
#define DECLARE_DELEGATE_RetVal_TwoParams(R, DelegateName, P1, P2) typedef TDelegate<R(P1, P2)> DelegateName;
#define DECLARE_MULTICAST_DELEGATE(DelegateName) typedef TMulticastDelegate<void()> DelegateName;
#define DECLARE_MULTICAST_DELEGATE_OneParam(DelegateName, P1) typedef TMulticastDelegate<void(P1)> DelegateName;
#define DECLARE_MULTICAST_DELEGATE_TwoParams(DelegateName, P1, P2) typedef TMulticastDelegate<void(P1, P2)> DelegateName;

DECLARE_DELEGATE(FSimpleDelegate)
DECLARE_MULTICAST_DELEGATE(FSimpleMulticastDelegate)
