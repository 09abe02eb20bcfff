// The argument readers every tool shares: integers in any form a client sends them, limits, and
// the default for what is not a number.
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "ZorvekTestSupport.h"

#include "Dom/JsonValue.h"

using namespace ZorvekMCPBridgeToolArguments;

namespace
{
	constexpr int32 Default = -7;

	TSharedPtr<FJsonObject> WithValue(const TSharedPtr<FJsonValue>& Value)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetField(TEXT("Count"), Value);
		return Arguments;
	}

	int32 IntegerOf(const TSharedPtr<FJsonValue>& Value)
	{
		return ReadInteger(WithValue(Value), TEXT("Count"), Default);
	}

	TSharedPtr<FJsonValue> Number(double Value)
	{
		return MakeShared<FJsonValueNumber>(Value);
	}

	TSharedPtr<FJsonValue> Text(const TCHAR* Value)
	{
		return MakeShared<FJsonValueString>(FString(Value));
	}
}

TEST(ToolArguments, NumbersAndTheirTextReadTheSameRoundingHalfAwayFromZero)
{
	// The engine's integer TryGetNumber rounds a number (unreal-api-core.md §3.2) but truncates
	// text; the tools round both.
	const struct
	{
		double Value;
		const TCHAR* Spelled;
		int32 Expected;
	} Cases[] = {
		{2.6, TEXT("2.6"), 3}, {2.5, TEXT("2.5"), 3}, {2.4, TEXT("2.4"), 2}, {-2.5, TEXT("-2.5"), -3},
		{-2.4, TEXT("-2.4"), -2}, {0.0, TEXT("0"), 0}, {12.0, TEXT(" +12 "), 12}, {0.5, TEXT(".5"), 1}};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(IntegerOf(Number(Case.Value)), Case.Expected) << Case.Value;
		EXPECT_EQ(IntegerOf(Text(Case.Spelled)), Case.Expected) << UECompatToUtf8(FString(Case.Spelled));
	}
}

TEST(ToolArguments, IntegersBeyondTheInt32RangeClampInsteadOfWrapping)
{
	constexpr int32 Highest = 2147483647;
	constexpr int32 Lowest = -2147483647 - 1;
	EXPECT_EQ(IntegerOf(Number(4294967297.0)), Highest);
	EXPECT_EQ(IntegerOf(Text(TEXT("4294967297"))), Highest);
	EXPECT_EQ(IntegerOf(Text(TEXT("99999999999999999999999999999999"))), Highest);
	EXPECT_EQ(IntegerOf(Number(1e300)), Highest);
	EXPECT_EQ(IntegerOf(Number(-4294967297.0)), Lowest);
	EXPECT_EQ(IntegerOf(Text(TEXT("-4294967297"))), Lowest);
	// The ends themselves, and a fraction that rounds past them.
	EXPECT_EQ(IntegerOf(Text(TEXT("2147483647"))), Highest);
	EXPECT_EQ(IntegerOf(Number(2147483647.5)), Highest);
	EXPECT_EQ(IntegerOf(Text(TEXT("-2147483648"))), Lowest);
	EXPECT_EQ(IntegerOf(Number(-2147483648.5)), Lowest);
}

TEST(ToolArguments, WhatIsNotANumberGivesTheDefault)
{
	// The engine's TryGetNumber would read non-numeric text as 0 and true as 1.
	for (const TCHAR* NotNumeric : {TEXT(""), TEXT("  "), TEXT("abc"), TEXT("12abc"), TEXT("-"), TEXT("."), TEXT("1e3"), TEXT("1.2.3"), TEXT("0x10")})
	{
		EXPECT_EQ(IntegerOf(Text(NotNumeric)), Default) << UECompatToUtf8(FString(NotNumeric));
	}
	EXPECT_EQ(IntegerOf(MakeShared<FJsonValueBoolean>(true)), Default);
	EXPECT_EQ(IntegerOf(MakeShared<FJsonValueNull>()), Default);
	EXPECT_EQ(IntegerOf(MakeShared<FJsonValueObject>(MakeShared<FJsonObject>())), Default);
	EXPECT_EQ(IntegerOf(MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>{Number(3)})), Default);
	EXPECT_EQ(ReadInteger(MakeShared<FJsonObject>(), TEXT("Count"), Default), Default);
	EXPECT_EQ(ReadInteger(nullptr, TEXT("Count"), Default), Default);
}

TEST(ToolArguments, LimitsAreAtLeastOneWithNoUpperClamp)
{
	EXPECT_EQ(ReadLimit(WithValue(Number(0)), TEXT("Count"), 25), 1);
	EXPECT_EQ(ReadLimit(WithValue(Text(TEXT("-3"))), TEXT("Count"), 25), 1);
	EXPECT_EQ(ReadLimit(WithValue(Text(TEXT("0.4"))), TEXT("Count"), 25), 1);
	EXPECT_EQ(ReadLimit(WithValue(Text(TEXT("5000000"))), TEXT("Count"), 25), 5000000);
	EXPECT_EQ(ReadLimit(WithValue(Text(TEXT("many"))), TEXT("Count"), 25), 25);
	EXPECT_EQ(ReadLimit(MakeShared<FJsonObject>(), TEXT("Count"), 25), 25);
}
