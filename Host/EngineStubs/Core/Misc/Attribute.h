#pragma once

#include "CoreMinimal.h"

template <typename ObjectType>
class TAttribute
{
public:
	DECLARE_DELEGATE_RetVal(ObjectType, FGetter);

	TAttribute();
	template <typename OtherType>
	TAttribute(const OtherType& InInitialValue);
	static TAttribute Create(const FGetter& InGetter);
	template <typename LambdaType>
	static TAttribute CreateLambda(LambdaType&& InCallable);
	const ObjectType& Get() const;
	bool IsSet() const;
	bool IsBound() const;
};

template <typename T, typename SourceType>
TAttribute<T> MakeAttributeRaw(const SourceType* InObject, T (SourceType::*InMethod)() const);
template <typename LambdaType>
auto MakeAttributeLambda(LambdaType&& InCallable) -> TAttribute<decltype(InCallable())>;
