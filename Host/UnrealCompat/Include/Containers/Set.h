#pragma once

#include "Containers/Map.h"

// TSet in insertion order, with the same hole-filling as TMap.
template <typename ElementType>
class TSet
{
public:
	TSet() = default;
	TSet(std::initializer_list<ElementType> InItems)
	{
		for (const ElementType& Item : InItems)
		{
			Add(Item);
		}
	}

	void Add(const ElementType& Item, bool* bIsAlreadyInSetPtr = nullptr)
	{
		const bool bPresent = Items.Contains(Item);
		if (bIsAlreadyInSetPtr)
		{
			*bIsAlreadyInSetPtr = bPresent;
		}
		if (!bPresent)
		{
			Items.Add(Item, true);
		}
	}
	bool Contains(const ElementType& Item) const { return Items.Contains(Item); }
	int32 Remove(const ElementType& Item) { return Items.Remove(Item); }
	int32 Num() const { return Items.Num(); }
	bool IsEmpty() const { return Items.IsEmpty(); }
	void Reset() { Items.Reset(); }
	void Empty() { Items.Reset(); }
	TArray<ElementType> Array() const
	{
		TArray<ElementType> Result;
		Items.GetKeys(Result);
		return Result;
	}

	class FConstIterator
	{
	public:
		explicit FConstIterator(typename TMap<ElementType, bool>::FConstIterator InInner) : Inner(InInner) {}
		const ElementType& operator*() const { return (*Inner).Key; }
		FConstIterator& operator++() { ++Inner; return *this; }
		bool operator!=(const FConstIterator& Other) const { return Inner != Other.Inner; }

	private:
		typename TMap<ElementType, bool>::FConstIterator Inner;
	};
	FConstIterator begin() const { return FConstIterator(Items.begin()); }
	FConstIterator end() const { return FConstIterator(Items.end()); }

private:
	TMap<ElementType, bool> Items;
};
