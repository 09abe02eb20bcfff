// FText with invariant-culture formatting: "{0}" ordered and "{Name}" named arguments.
#pragma once

#include "Containers/UnrealString.h"
#include "Containers/Map.h"

class FText;

struct FFormatArgumentValue
{
	FFormatArgumentValue() = default;
	FFormatArgumentValue(const FText& Value);
	FFormatArgumentValue(int32 Value) : Text(FString::Printf(TEXT("%d"), Value)) {}
	FFormatArgumentValue(int64 Value) : Text(FString::Printf(TEXT("%lld"), Value)) {}
	FFormatArgumentValue(double Value) : Text(FString::SanitizeFloat(Value, 0)) {}
	FString Text;
};

typedef TArray<FFormatArgumentValue> FFormatOrderedArguments;
typedef TMap<FString, FFormatArgumentValue> FFormatNamedArguments;

class FText
{
public:
	FText() = default;

	static FText FromString(const FString& String) { FText Result; Result.Text = String; return Result; }
	static FText FromString(FString&& String) { FText Result; Result.Text = MoveTemp(String); return Result; }
	static FText AsCultureInvariant(const FString& String) { return FromString(String); }
	static const FText& GetEmpty() { static const FText Empty; return Empty; }
	static FText AsNumber(int32 Value) { return FromString(FString::Printf(TEXT("%d"), Value)); }
	static FText AsLocalizable_Advanced(const TCHAR* Namespace, const TCHAR* Key, const TCHAR* Source)
	{
		FText Result;
		Result.Text = Source;
		Result.Namespace = Namespace;
		Result.Key = Key;
		return Result;
	}

	const FString& ToString() const { return Text; }
	bool IsEmpty() const { return Text.IsEmpty(); }
	bool EqualTo(const FText& Other) const { return Text.Equals(Other.Text); }
	const FString& GetNamespace() const { return Namespace; }
	const FString& GetKey() const { return Key; }

	static FText Format(const FText& Pattern, const FFormatOrderedArguments& Arguments);
	static FText Format(const FText& Pattern, const FFormatNamedArguments& Arguments);
	template <typename... ArgTypes>
	static FText Format(const FText& Pattern, ArgTypes... Args)
	{
		FFormatOrderedArguments Arguments;
		(Arguments.Add(FFormatArgumentValue(Args)), ...);
		return Format(Pattern, Arguments);
	}

private:
	FString Text;
	FString Namespace;
	FString Key;
};

inline FFormatArgumentValue::FFormatArgumentValue(const FText& Value) : Text(Value.ToString()) {}

#define LOCTEXT(InKey, InTextLiteral) FText::AsLocalizable_Advanced(TEXT(LOCTEXT_NAMESPACE), TEXT(InKey), TEXT(InTextLiteral))
#define NSLOCTEXT(InNamespace, InKey, InTextLiteral) FText::AsLocalizable_Advanced(TEXT(InNamespace), TEXT(InKey), TEXT(InTextLiteral))
#define INVTEXT(InTextLiteral) FText::AsCultureInvariant(FString(TEXT(InTextLiteral)))
