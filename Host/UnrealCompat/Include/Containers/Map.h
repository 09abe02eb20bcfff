// TMap keeps its pairs in a sparse array, as the engine does: iteration follows insertion order
// until a removal leaves a hole, which the next insertion fills.
#pragma once

#include "CoreTypes.h"
#include "Containers/Array.h"
#include "Templates/TypeHash.h"
#include <optional>
#include <unordered_map>
#include <vector>

template <typename KeyType, typename ValueType>
struct TPair
{
	KeyType Key;
	ValueType Value;
};

template <typename KeyType, typename ValueType>
using TTuple = TPair<KeyType, ValueType>;

template <typename InKeyType, typename InValueType>
class TMap
{
public:
	typedef TPair<InKeyType, InValueType> ElementType;

	TMap() = default;
	TMap(std::initializer_list<ElementType> Items)
	{
		for (const ElementType& Item : Items)
		{
			Add(Item.Key, Item.Value);
		}
	}

	int32 Num() const { return Count; }
	bool IsEmpty() const { return Count == 0; }

	InValueType& Add(const InKeyType& Key, const InValueType& Value) { return Emplace(Key, Value); }
	InValueType& Add(const InKeyType& Key, InValueType&& Value) { return Emplace(Key, MoveTemp(Value)); }
	InValueType& Add(const InKeyType& Key) { return Emplace(Key, InValueType()); }

	template <typename ValueArg>
	InValueType& Emplace(const InKeyType& Key, ValueArg&& Value)
	{
		if (ElementType* Existing = FindPair(Key))
		{
			// Same slot, new key spelling and value.
			Existing->Key = Key;
			Existing->Value = Forward<ValueArg>(Value);
			return Existing->Value;
		}
		int32 Slot;
		if (!FreeSlots.empty())
		{
			Slot = FreeSlots.back();
			FreeSlots.pop_back();
			Slots[(size_t)Slot].emplace(ElementType{Key, InValueType(Forward<ValueArg>(Value))});
		}
		else
		{
			Slot = (int32)Slots.size();
			Slots.emplace_back(ElementType{Key, InValueType(Forward<ValueArg>(Value))});
		}
		Index.emplace(GetTypeHash(Key), Slot);
		++Count;
		return Slots[(size_t)Slot]->Value;
	}

	InValueType& FindOrAdd(const InKeyType& Key)
	{
		if (InValueType* Existing = Find(Key))
		{
			return *Existing;
		}
		return Add(Key);
	}
	InValueType& operator[](const InKeyType& Key) { InValueType* Value = Find(Key); check(Value); return *Value; }
	const InValueType& operator[](const InKeyType& Key) const { const InValueType* Value = Find(Key); check(Value); return *Value; }

	InValueType* Find(const InKeyType& Key)
	{
		ElementType* Pair = FindPair(Key);
		return Pair ? &Pair->Value : nullptr;
	}
	const InValueType* Find(const InKeyType& Key) const
	{
		const ElementType* Pair = const_cast<TMap*>(this)->FindPair(Key);
		return Pair ? &Pair->Value : nullptr;
	}
	InValueType FindRef(const InKeyType& Key) const
	{
		const InValueType* Value = Find(Key);
		return Value ? *Value : InValueType();
	}
	bool Contains(const InKeyType& Key) const { return Find(Key) != nullptr; }
	const InKeyType* FindKey(const InValueType& Value) const
	{
		for (const ElementType& Pair : *this)
		{
			if (Pair.Value == Value)
			{
				return &Pair.Key;
			}
		}
		return nullptr;
	}

	int32 Remove(const InKeyType& Key)
	{
		const uint32 Hash = GetTypeHash(Key);
		auto Range = Index.equal_range(Hash);
		for (auto It = Range.first; It != Range.second; ++It)
		{
			if (Slots[(size_t)It->second]->Key == Key)
			{
				const int32 Slot = It->second;
				Slots[(size_t)Slot].reset();
				FreeSlots.push_back(Slot);
				Index.erase(It);
				--Count;
				return 1;
			}
		}
		return 0;
	}
	bool RemoveAndCopyValue(const InKeyType& Key, InValueType& OutValue)
	{
		if (InValueType* Value = Find(Key))
		{
			OutValue = *Value;
			Remove(Key);
			return true;
		}
		return false;
	}

	void Reset() { Slots.clear(); FreeSlots.clear(); Index.clear(); Count = 0; }
	void Empty() { Reset(); }
	void Reserve(int32 Number) { Slots.reserve((size_t)Number); }

	int32 GetKeys(TArray<InKeyType>& OutKeys) const
	{
		OutKeys.Reset();
		for (const ElementType& Pair : *this)
		{
			OutKeys.Add(Pair.Key);
		}
		return OutKeys.Num();
	}
	void GenerateKeyArray(TArray<InKeyType>& OutKeys) const { GetKeys(OutKeys); }
	void GenerateValueArray(TArray<InValueType>& OutValues) const
	{
		OutValues.Reset();
		for (const ElementType& Pair : *this)
		{
			OutValues.Add(Pair.Value);
		}
	}

	template <typename PairType, typename SlotVector>
	class TIterator
	{
	public:
		TIterator(SlotVector& InSlots, size_t InPosition) : Slots(InSlots), Position(InPosition) { Skip(); }
		PairType& operator*() const { return *Slots[Position]; }
		PairType* operator->() const { return &*Slots[Position]; }
		TIterator& operator++() { ++Position; Skip(); return *this; }
		bool operator!=(const TIterator& Other) const { return Position != Other.Position; }
		bool operator==(const TIterator& Other) const { return Position == Other.Position; }
		explicit operator bool() const { return Position < Slots.size(); }
		const InKeyType& Key() const { return Slots[Position]->Key; }
		auto& Value() const { return Slots[Position]->Value; }

	private:
		void Skip()
		{
			while (Position < Slots.size() && !Slots[Position].has_value())
			{
				++Position;
			}
		}
		SlotVector& Slots;
		size_t Position;
	};

	typedef TIterator<ElementType, std::vector<std::optional<ElementType>>> FIterator;
	typedef TIterator<const ElementType, const std::vector<std::optional<ElementType>>> FConstIterator;

	FIterator begin() { return FIterator(Slots, 0); }
	FIterator end() { return FIterator(Slots, Slots.size()); }
	FConstIterator begin() const { return FConstIterator(Slots, 0); }
	FConstIterator end() const { return FConstIterator(Slots, Slots.size()); }
	FIterator CreateIterator() { return begin(); }
	FConstIterator CreateConstIterator() const { return begin(); }

private:
	ElementType* FindPair(const InKeyType& Key)
	{
		auto Range = Index.equal_range(GetTypeHash(Key));
		for (auto It = Range.first; It != Range.second; ++It)
		{
			ElementType& Pair = *Slots[(size_t)It->second];
			if (Pair.Key == Key)
			{
				return &Pair;
			}
		}
		return nullptr;
	}

	std::vector<std::optional<ElementType>> Slots;
	std::vector<int32> FreeSlots;
	std::unordered_multimap<uint32, int32> Index;
	int32 Count = 0;
};
