// FName compares and hashes case-insensitively and keeps the spelling it was made with. As in the
// engine, a name is made from TCHAR text implicitly but from an FString only explicitly.
#pragma once

#include "Containers/UnrealString.h"

enum EName
{
	NAME_None = 0
};

namespace ENameCase
{
	enum Type
	{
		CaseSensitive,
		IgnoreCase
	};
}

class FName
{
public:
	FName() = default;
	FName(EName) {}
	FName(const TCHAR* InText) : Text(Normalize(FString(InText))) {}
	explicit FName(const FString& InText) : Text(Normalize(InText)) {}

	FString ToString() const { return IsNone() ? FString(TEXT("None")) : Text; }
	void ToString(FString& Out) const { Out = ToString(); }
	bool IsNone() const { return Text.IsEmpty(); }
	bool IsEqual(const FName& Other, ENameCase::Type Case = ENameCase::IgnoreCase) const
	{
		return Text.Equals(Other.Text, Case == ENameCase::CaseSensitive ? ESearchCase::CaseSensitive : ESearchCase::IgnoreCase);
	}
	bool operator==(const FName& Other) const { return IsEqual(Other); }
	bool operator!=(const FName& Other) const { return !IsEqual(Other); }
	bool operator==(EName) const { return IsNone(); }
	bool LexicalLess(const FName& Other) const { return Text.Compare(Other.Text, ESearchCase::IgnoreCase) < 0; }

private:
	static FString Normalize(const FString& InText) { return InText.Equals(TEXT("None"), ESearchCase::IgnoreCase) ? FString() : InText; }
	FString Text;
};

inline uint32 GetTypeHash(const FName& Name)
{
	return GetTypeHash(Name.ToString());
}

#define NAME_Stream FName(TEXT("Stream"))
#define NAME_DGram FName(TEXT("DGram"))
