#include "Tools/ZorvekMCPBridgeToolArguments.h"

#include "Dom/JsonValue.h"
// FMath::RoundHalfFromZero, FMath::IsNaN and FCString::Atod: not in the reference notes; check
// against the engine (Core's Math/UnrealMathUtility.h and Misc/CString.h).
#include "Math/UnrealMathUtility.h"

namespace
{
	constexpr double Int32Lowest = -2147483648.0;
	constexpr double Int32Highest = 2147483647.0;

	TSharedPtr<FJsonValue> FindArgument(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key)
	{
		return Arguments.IsValid() ? Arguments->TryGetField(Key) : nullptr;
	}

	// An optional sign, digits, and at most one '.', with at least one digit. Stricter than the
	// engine's IsNumeric, which also passes "-" and ".".
	bool IsDecimalText(const FString& Text)
	{
		int32 Index = (Text.Len() > 0 && (Text[0] == TEXT('-') || Text[0] == TEXT('+'))) ? 1 : 0;
		bool bSeenDigit = false;
		bool bSeenDot = false;
		for (; Index < Text.Len(); ++Index)
		{
			if (Text[Index] == TEXT('.') && !bSeenDot)
			{
				bSeenDot = true;
			}
			else if (FChar::IsDigit(Text[Index]))
			{
				bSeenDigit = true;
			}
			else
			{
				return false;
			}
		}
		return bSeenDigit;
	}

	// The number a JSON number or decimal text stands for; false for anything else.
	bool TryReadNumber(const TSharedPtr<FJsonValue>& Value, double& OutNumber)
	{
		if (!Value.IsValid())
		{
			return false;
		}
		if (Value->Type == EJson::Number)
		{
			return Value->TryGetNumber(OutNumber) && !FMath::IsNaN(OutNumber);
		}
		if (Value->Type == EJson::String)
		{
			const FString Text = Value->AsString().TrimStartAndEnd();
			if (!IsDecimalText(Text))
			{
				return false;
			}
			OutNumber = FCString::Atod(*Text);
			return !FMath::IsNaN(OutNumber);
		}
		return false;
	}
}

FString ZorvekMCPBridgeToolArguments::ReadString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, const FString& Default)
{
	const TSharedPtr<FJsonValue> Value = FindArgument(Arguments, Key);
	if (!Value.IsValid() || (Value->Type != EJson::String && Value->Type != EJson::Number && Value->Type != EJson::Boolean))
	{
		return Default;
	}
	FString Text;
	return Value->TryGetString(Text) ? Text : Default;
}

int32 ZorvekMCPBridgeToolArguments::ReadInteger(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, int32 Default)
{
	double Number = 0.0;
	if (!TryReadNumber(FindArgument(Arguments, Key), Number))
	{
		return Default;
	}
	// Clamped as a double first: converting an out-of-range double to int32 is undefined.
	return (int32)FMath::Clamp(FMath::RoundHalfFromZero(Number), Int32Lowest, Int32Highest);
}

int32 ZorvekMCPBridgeToolArguments::ReadLimit(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, int32 Default)
{
	return FMath::Max(ReadInteger(Arguments, Key, Default), 1);
}

bool ZorvekMCPBridgeToolArguments::ReadBool(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, bool Default)
{
	const TSharedPtr<FJsonValue> Value = FindArgument(Arguments, Key);
	if (!Value.IsValid())
	{
		return Default;
	}
	if (Value->Type == EJson::Boolean)
	{
		return Value->AsBool();
	}
	if (Value->Type == EJson::String)
	{
		const FString Text = Value->AsString().TrimStartAndEnd();
		if (Text.Equals(TEXT("true"), ESearchCase::IgnoreCase))
		{
			return true;
		}
		if (Text.Equals(TEXT("false"), ESearchCase::IgnoreCase))
		{
			return false;
		}
	}
	return Default;
}
