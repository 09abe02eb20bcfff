#pragma once

#include "CoreTypes.h"
#include <functional>
#include <memory>

template <typename FuncType>
using TFunction = std::function<FuncType>;

template <typename FuncType>
class TFunctionRef;

template <typename Ret, typename... ParamTypes>
class TFunctionRef<Ret(ParamTypes...)>
{
public:
	template <typename FunctorType, typename = std::enable_if_t<!std::is_same_v<std::decay_t<FunctorType>, TFunctionRef>>>
	TFunctionRef(FunctorType&& Functor)
		: Object((void*)std::addressof(Functor))
		, Callback([](void* Target, ParamTypes... Params) -> Ret { return (*(std::remove_reference_t<FunctorType>*)Target)(Forward<ParamTypes>(Params)...); })
	{
	}
	Ret operator()(ParamTypes... Params) const { return Callback(Object, Forward<ParamTypes>(Params)...); }

private:
	void* Object;
	Ret (*Callback)(void*, ParamTypes...);
};

// A move-only callable holder, for tasks that own what they capture.
template <typename FuncType>
class TUniqueFunction;

template <typename Ret, typename... ParamTypes>
class TUniqueFunction<Ret(ParamTypes...)>
{
public:
	TUniqueFunction() = default;
	TUniqueFunction(std::nullptr_t) {}
	template <typename FunctorType, typename = std::enable_if_t<!std::is_same_v<std::decay_t<FunctorType>, TUniqueFunction>>>
	TUniqueFunction(FunctorType&& Functor) : Callable(std::make_unique<TModel<std::decay_t<FunctorType>>>(Forward<FunctorType>(Functor))) {}
	TUniqueFunction(TUniqueFunction&&) noexcept = default;
	TUniqueFunction& operator=(TUniqueFunction&&) noexcept = default;

	explicit operator bool() const { return Callable != nullptr; }
	bool IsSet() const { return Callable != nullptr; }
	Ret operator()(ParamTypes... Params) const { return Callable->Call(Forward<ParamTypes>(Params)...); }

private:
	struct FConcept
	{
		virtual ~FConcept() = default;
		virtual Ret Call(ParamTypes... Params) = 0;
	};
	template <typename FunctorType>
	struct TModel final : FConcept
	{
		template <typename InType>
		explicit TModel(InType&& InFunctor) : Functor(Forward<InType>(InFunctor)) {}
		Ret Call(ParamTypes... Params) override { return Functor(Forward<ParamTypes>(Params)...); }
		FunctorType Functor;
	};
	std::unique_ptr<FConcept> Callable;
};
