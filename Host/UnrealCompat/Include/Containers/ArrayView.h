// TArrayView: a non-owning view of contiguous elements, as in the engine. A view of const
// elements is made implicitly from a TArray (and a view of mutable elements from a mutable one),
// which is how callers hand arrays to functions that take views (FFileHelper::SaveArrayToFile).
#pragma once

#include "Containers/Array.h"

#include <type_traits>

template <typename InElementType, typename InSizeType = int32>
class TArrayView
{
public:
	using ElementType = InElementType;
	using SizeType = InSizeType;

	TArrayView() = default;

	TArrayView(ElementType* InData, SizeType InCount)
		: DataPtr(InData)
		, ArrayNum(InCount)
	{
	}

	template <typename OtherElementType, typename = std::enable_if_t<std::is_convertible_v<OtherElementType (*)[], ElementType (*)[]>>>
	TArrayView(TArray<OtherElementType>& Other)
		: DataPtr(Other.GetData())
		, ArrayNum((SizeType)Other.Num())
	{
	}

	template <typename OtherElementType, typename = std::enable_if_t<std::is_convertible_v<const OtherElementType (*)[], ElementType (*)[]>>>
	TArrayView(const TArray<OtherElementType>& Other)
		: DataPtr(Other.GetData())
		, ArrayNum((SizeType)Other.Num())
	{
	}

	ElementType* GetData() const { return DataPtr; }
	SizeType Num() const { return ArrayNum; }
	bool IsEmpty() const { return ArrayNum == 0; }
	bool IsValidIndex(SizeType Index) const { return Index >= 0 && Index < ArrayNum; }
	ElementType& operator[](SizeType Index) const { return DataPtr[Index]; }

	ElementType* begin() const { return DataPtr; }
	ElementType* end() const { return DataPtr + ArrayNum; }

private:
	ElementType* DataPtr = nullptr;
	SizeType ArrayNum = 0;
};

template <typename ElementType>
using TArrayView64 = TArrayView<ElementType, int64>;

template <typename ElementType>
using TConstArrayView = TArrayView<const ElementType>;
