// TArray over std::vector, with the engine's int32 indices and the member names the portable
// code uses.
#pragma once

#include "CoreTypes.h"
#include <algorithm>
#include <initializer_list>
#include <vector>

template <typename ElementType>
class TArray
{
public:
	typedef ElementType ElementT;

	TArray() = default;
	TArray(std::initializer_list<ElementType> Items) : Data(Items) {}
	TArray(const ElementType* Ptr, int32 Count) : Data(Ptr, Ptr + Count) {}

	int32 Num() const { return (int32)Data.size(); }
	bool IsEmpty() const { return Data.empty(); }
	bool IsValidIndex(int32 Index) const { return Index >= 0 && Index < Num(); }
	ElementType* GetData() { return Data.data(); }
	const ElementType* GetData() const { return Data.data(); }
	uint32 GetTypeSize() const { return sizeof(ElementType); }

	ElementType& operator[](int32 Index) { check(IsValidIndex(Index)); return Data[(size_t)Index]; }
	const ElementType& operator[](int32 Index) const { check(IsValidIndex(Index)); return Data[(size_t)Index]; }
	ElementType& Last(int32 IndexFromEnd = 0) { return (*this)[Num() - 1 - IndexFromEnd]; }
	const ElementType& Last(int32 IndexFromEnd = 0) const { return (*this)[Num() - 1 - IndexFromEnd]; }
	ElementType& Top() { return Last(); }

	int32 Add(const ElementType& Item) { Data.push_back(Item); return Num() - 1; }
	int32 Add(ElementType&& Item) { Data.push_back(MoveTemp(Item)); return Num() - 1; }
	template <typename... ArgTypes>
	int32 Emplace(ArgTypes&&... Args) { Data.emplace_back(Forward<ArgTypes>(Args)...); return Num() - 1; }
	template <typename... ArgTypes>
	ElementType& Emplace_GetRef(ArgTypes&&... Args) { Data.emplace_back(Forward<ArgTypes>(Args)...); return Data.back(); }
	ElementType& Add_GetRef(const ElementType& Item) { Data.push_back(Item); return Data.back(); }
	int32 AddUnique(const ElementType& Item)
	{
		const int32 Existing = Find(Item);
		return Existing != INDEX_NONE ? Existing : Add(Item);
	}
	int32 AddDefaulted(int32 Count = 1) { const int32 First = Num(); Data.resize(Data.size() + (size_t)Count); return First; }
	int32 AddZeroed(int32 Count = 1) { return AddDefaulted(Count); }
	void Append(const TArray& Other) { Data.insert(Data.end(), Other.Data.begin(), Other.Data.end()); }
	void Append(const ElementType* Ptr, int32 Count) { Data.insert(Data.end(), Ptr, Ptr + Count); }
	void Insert(const ElementType& Item, int32 Index) { check(Index >= 0 && Index <= Num()); Data.insert(Data.begin() + Index, Item); }

	void RemoveAt(int32 Index, int32 Count = 1) { check(Index >= 0 && Index + Count <= Num()); Data.erase(Data.begin() + Index, Data.begin() + Index + Count); }
	int32 Remove(const ElementType& Item)
	{
		const size_t Before = Data.size();
		Data.erase(std::remove(Data.begin(), Data.end(), Item), Data.end());
		return (int32)(Before - Data.size());
	}
	template <typename PredicateType>
	int32 RemoveAll(PredicateType Predicate)
	{
		const size_t Before = Data.size();
		Data.erase(std::remove_if(Data.begin(), Data.end(), Predicate), Data.end());
		return (int32)(Before - Data.size());
	}
	ElementType Pop() { ElementType Item = MoveTemp(Data.back()); Data.pop_back(); return Item; }
	void Reset(int32 NewSize = 0) { Data.clear(); Data.reserve((size_t)NewSize); }
	void Empty(int32 Slack = 0) { Data.clear(); Data.shrink_to_fit(); Data.reserve((size_t)Slack); }
	void Reserve(int32 Count) { Data.reserve((size_t)Count); }
	void SetNum(int32 NewNum) { Data.resize((size_t)NewNum); }
	void SetNumZeroed(int32 NewNum) { Data.resize((size_t)NewNum); }
	void SetNumUninitialized(int32 NewNum) { Data.resize((size_t)NewNum); }

	int32 Find(const ElementType& Item) const
	{
		for (int32 Index = 0; Index < Num(); ++Index)
		{
			if (Data[(size_t)Index] == Item)
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}
	bool Find(const ElementType& Item, int32& OutIndex) const { OutIndex = Find(Item); return OutIndex != INDEX_NONE; }
	template <typename KeyType>
	int32 IndexOfByKey(const KeyType& Key) const
	{
		for (int32 Index = 0; Index < Num(); ++Index)
		{
			if (Data[(size_t)Index] == Key)
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}
	template <typename PredicateType>
	int32 IndexOfByPredicate(PredicateType Predicate) const
	{
		for (int32 Index = 0; Index < Num(); ++Index)
		{
			if (Predicate(Data[(size_t)Index]))
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}
	bool Contains(const ElementType& Item) const { return Find(Item) != INDEX_NONE; }
	template <typename PredicateType>
	bool ContainsByPredicate(PredicateType Predicate) const { return IndexOfByPredicate(Predicate) != INDEX_NONE; }
	template <typename PredicateType>
	ElementType* FindByPredicate(PredicateType Predicate)
	{
		const int32 Index = IndexOfByPredicate(Predicate);
		return Index == INDEX_NONE ? nullptr : &Data[(size_t)Index];
	}
	template <typename PredicateType>
	const ElementType* FindByPredicate(PredicateType Predicate) const
	{
		const int32 Index = IndexOfByPredicate(Predicate);
		return Index == INDEX_NONE ? nullptr : &Data[(size_t)Index];
	}
	template <typename PredicateType>
	TArray FilterByPredicate(PredicateType Predicate) const
	{
		TArray Result;
		for (const ElementType& Item : Data)
		{
			if (Predicate(Item))
			{
				Result.Add(Item);
			}
		}
		return Result;
	}

	void Sort() { std::sort(Data.begin(), Data.end()); }
	template <typename PredicateType>
	void Sort(PredicateType Predicate) { std::sort(Data.begin(), Data.end(), Predicate); }
	template <typename PredicateType>
	void StableSort(PredicateType Predicate) { std::stable_sort(Data.begin(), Data.end(), Predicate); }

	bool operator==(const TArray& Other) const { return Data == Other.Data; }
	bool operator!=(const TArray& Other) const { return !(*this == Other); }

	auto begin() { return Data.begin(); }
	auto end() { return Data.end(); }
	auto begin() const { return Data.begin(); }
	auto end() const { return Data.end(); }

private:
	std::vector<ElementType> Data;
};

template <typename ElementType>
using TArray64 = TArray<ElementType>;
