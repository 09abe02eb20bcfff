// FGuid: four 32-bit parts and the engine's hexadecimal text forms.
#pragma once

#include "Containers/UnrealString.h"

enum class EGuidFormats
{
	// 32 upper-case hexadecimal digits: the default of ToString and the export text.
	Digits,
	DigitsLower,
	// 00000000-0000-0000-0000-000000000000
	DigitsWithHyphens,
	DigitsWithHyphensLower,
	DigitsWithHyphensInBraces,
	DigitsWithHyphensInParentheses,
};

struct FGuid
{
	uint32 A = 0;
	uint32 B = 0;
	uint32 C = 0;
	uint32 D = 0;

	FGuid() = default;
	FGuid(uint32 InA, uint32 InB, uint32 InC, uint32 InD)
		: A(InA)
		, B(InB)
		, C(InC)
		, D(InD)
	{
	}

	bool IsValid() const { return (A | B | C | D) != 0; }
	void Invalidate() { A = B = C = D = 0; }
	FString ToString(EGuidFormats Format = EGuidFormats::Digits) const;

	friend bool operator==(const FGuid& X, const FGuid& Y) { return X.A == Y.A && X.B == Y.B && X.C == Y.C && X.D == Y.D; }
	friend bool operator!=(const FGuid& X, const FGuid& Y) { return !(X == Y); }
	friend uint32 GetTypeHash(const FGuid& Guid) { return HashCombine(HashCombine(Guid.A, Guid.B), HashCombine(Guid.C, Guid.D)); }
};
