// FString over std::u16string with the engine's search-case defaults: ==, Contains, Find,
// StartsWith, EndsWith, Replace and Split ignore case; Equals and Compare are case-sensitive.
// Case folding is ASCII-only, as in the engine's TChar helpers.
#pragma once

#include "CoreTypes.h"
#include "Containers/Array.h"
#include "Templates/TypeHash.h"
#include <algorithm>
#include <string>
#include <string_view>

namespace ESearchCase
{
	enum Type
	{
		CaseSensitive,
		IgnoreCase,
	};
}

namespace ESearchDir
{
	enum Type
	{
		FromStart,
		FromEnd,
	};
}

struct FCompatChar
{
	static constexpr TCHAR ToLower(TCHAR C) { return (C >= u'A' && C <= u'Z') ? (TCHAR)(C + 32) : C; }
	static constexpr TCHAR ToUpper(TCHAR C) { return (C >= u'a' && C <= u'z') ? (TCHAR)(C - 32) : C; }
	static constexpr bool IsWhitespace(TCHAR C) { return C == u' ' || C == u'\t' || C == u'\n' || C == u'\r' || C == u'\v' || C == u'\f'; }
	static constexpr bool IsDigit(TCHAR C) { return C >= u'0' && C <= u'9'; }
	static constexpr bool IsAlpha(TCHAR C) { return (C >= u'a' && C <= u'z') || (C >= u'A' && C <= u'Z'); }
	static constexpr bool IsAlnum(TCHAR C) { return IsAlpha(C) || IsDigit(C); }
};
typedef FCompatChar FChar;

class FString;

// The engine's string view: characters it does not own, with the engine's members (and its
// case-insensitive ==), not those of std::u16string_view.
template <typename CharType>
class TStringView
{
public:
	constexpr TStringView() = default;
	constexpr TStringView(const CharType* InData) : Data(InData), Size(InData ? (int32)std::char_traits<CharType>::length(InData) : 0) {}
	constexpr TStringView(const CharType* InData, int32 InSize) : Data(InData), Size(InSize) {}
	TStringView(const FString& String);
	UE_COMPAT_HOST_ONLY constexpr TStringView(std::basic_string_view<CharType> View) : Data(View.data()), Size((int32)View.size()) {}
	UE_COMPAT_HOST_ONLY constexpr operator std::basic_string_view<CharType>() const { return GetStdView(); }

	constexpr const CharType* GetData() const { return Data; }
	constexpr int32 Len() const { return Size; }
	constexpr bool IsEmpty() const { return Size == 0; }
	constexpr const CharType& operator[](int32 Index) const { return Data[Index]; }
	constexpr const CharType* begin() const { return Data; }
	constexpr const CharType* end() const { return Data + Size; }

	TStringView Left(int32 Count) const { return TStringView(Data, Clamp(Count)); }
	TStringView LeftChop(int32 Count) const { return TStringView(Data, Size - Clamp(Count)); }
	TStringView Right(int32 Count) const { return TStringView(Data + Size - Clamp(Count), Clamp(Count)); }
	TStringView RightChop(int32 Count) const { return TStringView(Data + Clamp(Count), Size - Clamp(Count)); }
	TStringView Mid(int32 Start, int32 Count = INT32_MAX) const
	{
		const int32 First = Clamp(Start);
		return TStringView(Data + First, Count < Size - First ? (Count > 0 ? Count : 0) : Size - First);
	}

	bool Equals(TStringView Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const;
	bool StartsWith(TStringView Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return Prefix.Size <= Size && Left(Prefix.Size).Equals(Prefix, SearchCase);
	}
	bool EndsWith(TStringView Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return Suffix.Size <= Size && Right(Suffix.Size).Equals(Suffix, SearchCase);
	}
	// Case-insensitive, as in the engine.
	friend bool operator==(TStringView Lhs, TStringView Rhs) { return Lhs.Equals(Rhs, ESearchCase::IgnoreCase); }
	friend bool operator!=(TStringView Lhs, TStringView Rhs) { return !Lhs.Equals(Rhs, ESearchCase::IgnoreCase); }

private:
	constexpr std::basic_string_view<CharType> GetStdView() const { return {Data, (size_t)Size}; }
	constexpr int32 Clamp(int32 Count) const { return Count < 0 ? 0 : (Count > Size ? Size : Count); }

	const CharType* Data = nullptr;
	int32 Size = 0;
};

template <typename CharType>
bool TStringView<CharType>::Equals(TStringView Other, ESearchCase::Type SearchCase) const
{
	if (Size != Other.Size)
	{
		return false;
	}
	for (int32 Index = 0; Index < Size; ++Index)
	{
		const CharType A = SearchCase == ESearchCase::IgnoreCase ? FCompatChar::ToLower(Data[Index]) : Data[Index];
		const CharType B = SearchCase == ESearchCase::IgnoreCase ? FCompatChar::ToLower(Other.Data[Index]) : Other.Data[Index];
		if (A != B)
		{
			return false;
		}
	}
	return true;
}

typedef TStringView<TCHAR> FStringView;

// One argument of FString::Printf, kept by value until the format is applied.
struct FStringFormatArgValue
{
	enum class EKind { Signed, Unsigned, Floating, Text, Char, Pointer } Kind;
	int64 Signed = 0;
	uint64 Unsigned = 0;
	double Floating = 0.0;
	const TCHAR* Text = nullptr;
	const void* Pointer = nullptr;
};

namespace UECompatPrintf
{
	template <typename T>
	FStringFormatArgValue MakeArg(T Value)
	{
		static_assert(!std::is_same_v<std::decay_t<T>, FString>, "FString passed to Printf: pass *String for %s");
		static_assert(!std::is_same_v<std::decay_t<T>, const char*> && !std::is_same_v<std::decay_t<T>, char*>, "Narrow string passed to Printf: use TCHAR text");
		FStringFormatArgValue Arg;
		if constexpr (std::is_same_v<T, TCHAR>)
		{
			Arg.Kind = FStringFormatArgValue::EKind::Char;
			Arg.Unsigned = (uint64)Value;
		}
		else if constexpr (std::is_same_v<T, bool>)
		{
			Arg.Kind = FStringFormatArgValue::EKind::Signed;
			Arg.Signed = Value ? 1 : 0;
		}
		else if constexpr (std::is_enum_v<T>)
		{
			Arg.Kind = FStringFormatArgValue::EKind::Signed;
			Arg.Signed = (int64)Value;
		}
		else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>)
		{
			Arg.Kind = FStringFormatArgValue::EKind::Signed;
			Arg.Signed = (int64)Value;
		}
		else if constexpr (std::is_integral_v<T>)
		{
			Arg.Kind = FStringFormatArgValue::EKind::Unsigned;
			Arg.Unsigned = (uint64)Value;
		}
		else if constexpr (std::is_floating_point_v<T>)
		{
			Arg.Kind = FStringFormatArgValue::EKind::Floating;
			Arg.Floating = (double)Value;
		}
		else if constexpr (std::is_same_v<std::decay_t<T>, const TCHAR*> || std::is_same_v<std::decay_t<T>, TCHAR*>)
		{
			Arg.Kind = FStringFormatArgValue::EKind::Text;
			Arg.Text = Value;
		}
		else
		{
			static_assert(std::is_pointer_v<T>, "Unsupported Printf argument type");
			Arg.Kind = FStringFormatArgValue::EKind::Pointer;
			Arg.Pointer = (const void*)Value;
		}
		return Arg;
	}

	FString Format(const TCHAR* Fmt, const FStringFormatArgValue* Args, int32 NumArgs);
}

class FString
{
public:
	typedef TCHAR ElementType;

	FString() = default;
	FString(const TCHAR* Text) : Data(Text ? Text : u"") {}
	explicit FString(FStringView View) : Data(View.GetData(), (size_t)View.Len()) {}
	UE_COMPAT_HOST_ONLY explicit FString(const std::u16string& Text) : Data(Text) {}
	UE_COMPAT_HOST_ONLY explicit FString(std::u16string&& Text) : Data(MoveTemp(Text)) {}
	FString(const FString&) = default;
	FString(FString&&) noexcept = default;
	FString& operator=(const FString&) = default;
	FString& operator=(FString&&) noexcept = default;
	FString& operator=(const TCHAR* Text) { Data = Text ? Text : u""; return *this; }

	static FString ConstructFromPtrSize(const TCHAR* Ptr, int32 Size) { return FString(FStringView(Ptr, Size)); }
	static FString ConstructFromPtrSize(const UTF8CHAR* Ptr, int32 Size);
	static FString ConstructFromPtrSize(const ANSICHAR* Ptr, int32 Size);

	template <typename FmtType, typename... Types>
	static FString Printf(const FmtType& Fmt, Types... Args)
	{
		// As the engine: the format is a literal, never a pointer or a string built at run time.
		static_assert(std::is_array_v<FmtType> && std::is_same_v<std::remove_cv_t<std::remove_extent_t<FmtType>>, TCHAR>, "Formatting string must be a TCHAR array.");
		const FStringFormatArgValue Values[] = {UECompatPrintf::MakeArg(Args)..., FStringFormatArgValue{}};
		return UECompatPrintf::Format(Fmt, Values, (int32)sizeof...(Args));
	}
	template <typename FmtType, typename... Types>
	FString& Appendf(const FmtType& Fmt, Types... Args)
	{
		*this += Printf(Fmt, Args...);
		return *this;
	}

	const TCHAR* operator*() const { return Data.c_str(); }
	int32 Len() const { return (int32)Data.size(); }
	bool IsEmpty() const { return Data.empty(); }
	TCHAR& operator[](int32 Index) { check(Index >= 0 && Index < Len()); return Data[(size_t)Index]; }
	const TCHAR& operator[](int32 Index) const { check(Index >= 0 && Index < Len()); return Data[(size_t)Index]; }
	const TCHAR* GetCharArray() const { return Data.c_str(); }
	void Reserve(int32 Count) { Data.reserve((size_t)Count); }
	void Reset() { Data.clear(); }
	void Empty() { Data.clear(); }
	UE_COMPAT_HOST_ONLY const std::u16string& GetStorage() const { return Data; }

	FString& operator+=(const FString& Other) { Data += Other.Data; return *this; }
	FString& operator+=(const TCHAR* Other) { Data += Other; return *this; }
	FString& operator+=(TCHAR Character) { Data += Character; return *this; }
	FString& AppendChar(TCHAR Character) { Data += Character; return *this; }
	FString& Append(const FString& Other) { Data += Other.Data; return *this; }
	FString& Append(const TCHAR* Text, int32 Count) { Data.append(Text, (size_t)Count); return *this; }
	void InsertAt(int32 Index, const FString& Text) { Data.insert((size_t)Index, Text.Data); }
	void RemoveAt(int32 Index, int32 Count = 1) { Data.erase((size_t)Index, (size_t)Count); }

	bool Equals(const FString& Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const;
	int32 Compare(const FString& Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const;
	int32 Find(FStringView SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase, ESearchDir::Type SearchDir = ESearchDir::FromStart, int32 StartPosition = INDEX_NONE) const;
	int32 Find(const TCHAR* SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase, ESearchDir::Type SearchDir = ESearchDir::FromStart, int32 StartPosition = INDEX_NONE) const
	{
		return Find(FStringView(SubStr), SearchCase, SearchDir, StartPosition);
	}
	int32 Find(const FString& SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase, ESearchDir::Type SearchDir = ESearchDir::FromStart, int32 StartPosition = INDEX_NONE) const
	{
		return Find(FStringView(SubStr), SearchCase, SearchDir, StartPosition);
	}
	bool Contains(FStringView SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase, ESearchDir::Type SearchDir = ESearchDir::FromStart) const
	{
		return Find(SubStr, SearchCase, SearchDir) != INDEX_NONE;
	}
	bool Contains(const TCHAR* SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase, ESearchDir::Type SearchDir = ESearchDir::FromStart) const
	{
		return Contains(FStringView(SubStr), SearchCase, SearchDir);
	}
	bool Contains(const FString& SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase, ESearchDir::Type SearchDir = ESearchDir::FromStart) const
	{
		return Contains(FStringView(SubStr), SearchCase, SearchDir);
	}
	bool FindChar(TCHAR Character, int32& OutIndex) const;
	bool FindLastChar(TCHAR Character, int32& OutIndex) const;
	bool StartsWith(FStringView Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	bool StartsWith(const TCHAR* Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const { return StartsWith(FStringView(Prefix), SearchCase); }
	bool StartsWith(const FString& Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const { return StartsWith(FStringView(Prefix), SearchCase); }
	bool EndsWith(FStringView Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	bool EndsWith(const TCHAR* Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const { return EndsWith(FStringView(Suffix), SearchCase); }
	bool EndsWith(const FString& Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const { return EndsWith(FStringView(Suffix), SearchCase); }
	bool MatchesWildcard(const FString& Wildcard, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;

	bool Split(const FString& InS, FString* LeftS, FString* RightS, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase, ESearchDir::Type SearchDir = ESearchDir::FromStart) const;
	int32 ParseIntoArray(TArray<FString>& OutArray, const TCHAR* Delimiter, bool bCullEmpty = true) const;
	int32 ParseIntoArrayWS(TArray<FString>& OutArray, const TCHAR* ExtraDelimiter = nullptr, bool bCullEmpty = true) const;
	int32 ParseIntoArrayLines(TArray<FString>& OutArray, bool bCullEmpty = true) const;

	FString Left(int32 Count) const;
	FString LeftChop(int32 Count) const;
	FString Right(int32 Count) const;
	FString RightChop(int32 Count) const;
	FString Mid(int32 Start, int32 Count = INT32_MAX) const;
	void LeftInline(int32 Count) { *this = Left(Count); }
	void LeftChopInline(int32 Count) { *this = LeftChop(Count); }
	void RightChopInline(int32 Count) { *this = RightChop(Count); }
	void MidInline(int32 Start, int32 Count = INT32_MAX) { *this = Mid(Start, Count); }

	FString TrimStart() const;
	FString TrimEnd() const;
	FString TrimStartAndEnd() const;
	void TrimStartInline() { *this = TrimStart(); }
	void TrimEndInline() { *this = TrimEnd(); }
	void TrimStartAndEndInline() { *this = TrimStartAndEnd(); }
	FString TrimQuotes(bool* bQuotesRemoved = nullptr) const;
	FString ToLower() const;
	FString ToUpper() const;
	void ToLowerInline() { *this = ToLower(); }
	void ToUpperInline() { *this = ToUpper(); }
	FString Replace(const TCHAR* From, const TCHAR* To, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;
	int32 ReplaceInline(const TCHAR* SearchText, const TCHAR* ReplacementText, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);
	FString ReplaceCharWithEscapedChar() const;
	bool RemoveFromStart(FStringView Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);
	bool RemoveFromEnd(FStringView Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase);
	bool RemoveFromStart(const TCHAR* Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) { return RemoveFromStart(FStringView(Prefix), SearchCase); }
	bool RemoveFromEnd(const TCHAR* Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) { return RemoveFromEnd(FStringView(Suffix), SearchCase); }
	bool RemoveFromStart(const FString& Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) { return RemoveFromStart(FStringView(Prefix), SearchCase); }
	bool RemoveFromEnd(const FString& Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) { return RemoveFromEnd(FStringView(Suffix), SearchCase); }
	FString Reverse() const { FString Result(*this); std::reverse(Result.Data.begin(), Result.Data.end()); return Result; }

	bool IsNumeric() const;
	bool ToBool() const;
	static FString FromInt(int32 Num);
	static FString SanitizeFloat(double Value, int32 MinFractionalDigits = 1);
	static FString Chr(TCHAR Character) { return FString(FStringView(&Character, 1)); }
	static FString ChrN(int32 Count, TCHAR Character) { FString Result; Result.Data.assign((size_t)(Count > 0 ? Count : 0), Character); return Result; }

	template <typename RangeType>
	static FString Join(const RangeType& Range, const TCHAR* Separator)
	{
		FString Result;
		bool bFirst = true;
		for (const auto& Item : Range)
		{
			if (!bFirst)
			{
				Result += Separator;
			}
			Result += Item;
			bFirst = false;
		}
		return Result;
	}

	friend FString operator+(const FString& Lhs, const FString& Rhs) { FString Result(Lhs); Result += Rhs; return Result; }
	friend FString operator+(const FString& Lhs, const TCHAR* Rhs) { FString Result(Lhs); Result += Rhs; return Result; }
	friend FString operator+(const TCHAR* Lhs, const FString& Rhs) { FString Result(Lhs); Result += Rhs; return Result; }
	friend FString operator+(FString&& Lhs, const FString& Rhs) { Lhs += Rhs; return MoveTemp(Lhs); }
	friend FString operator+(FString&& Lhs, const TCHAR* Rhs) { Lhs += Rhs; return MoveTemp(Lhs); }

	// Case-insensitive, as in the engine.
	friend bool operator==(const FString& Lhs, const FString& Rhs) { return Lhs.Equals(Rhs, ESearchCase::IgnoreCase); }
	friend bool operator==(const FString& Lhs, const TCHAR* Rhs) { return Lhs.Equals(FString(Rhs), ESearchCase::IgnoreCase); }
	friend bool operator==(const TCHAR* Lhs, const FString& Rhs) { return Rhs == Lhs; }
	friend bool operator!=(const FString& Lhs, const FString& Rhs) { return !(Lhs == Rhs); }
	friend bool operator!=(const FString& Lhs, const TCHAR* Rhs) { return !(Lhs == Rhs); }
	friend bool operator!=(const TCHAR* Lhs, const FString& Rhs) { return !(Rhs == Lhs); }
	friend bool operator<(const FString& Lhs, const FString& Rhs) { return Lhs.Compare(Rhs, ESearchCase::IgnoreCase) < 0; }

	auto begin() { return Data.begin(); }
	auto end() { return Data.end(); }
	auto begin() const { return Data.begin(); }
	auto end() const { return Data.end(); }

private:
	std::u16string Data;
};

uint32 GetTypeHash(const FString& Text);

template <typename CharType>
inline TStringView<CharType>::TStringView(const FString& String)
	: Data(*String)
	, Size(String.Len())
{
}

// Host-side conversions to and from the narrow strings of the C++ library (UTF-8).
UE_COMPAT_HOST_ONLY std::string UECompatToUtf8(FStringView Text);
UE_COMPAT_HOST_ONLY FString UECompatFromUtf8(std::string_view Text);

template <typename T>
inline FString LexToString(const T& Value)
{
	if constexpr (std::is_same_v<T, bool>)
	{
		return Value ? FString(TEXT("true")) : FString(TEXT("false"));
	}
	else if constexpr (std::is_floating_point_v<T>)
	{
		return FString::SanitizeFloat((double)Value);
	}
	else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>)
	{
		return FString::Printf(TEXT("%lld"), (long long)Value);
	}
	else
	{
		return FString::Printf(TEXT("%llu"), (unsigned long long)Value);
	}
}

void LexFromString(int32& OutValue, const TCHAR* Text);
void LexFromString(int64& OutValue, const TCHAR* Text);
void LexFromString(uint32& OutValue, const TCHAR* Text);
void LexFromString(uint64& OutValue, const TCHAR* Text);
void LexFromString(float& OutValue, const TCHAR* Text);
void LexFromString(double& OutValue, const TCHAR* Text);
void LexFromString(bool& OutValue, const TCHAR* Text);

struct FCString
{
	static int32 Strlen(const TCHAR* Text) { return (int32)std::char_traits<TCHAR>::length(Text); }
	static int32 Strcmp(const TCHAR* A, const TCHAR* B) { return FString(A).Compare(FString(B), ESearchCase::CaseSensitive); }
	static int32 Stricmp(const TCHAR* A, const TCHAR* B) { return FString(A).Compare(FString(B), ESearchCase::IgnoreCase); }
	static int32 Atoi(const TCHAR* Text) { int32 Value = 0; LexFromString(Value, Text); return Value; }
	static int64 Atoi64(const TCHAR* Text) { int64 Value = 0; LexFromString(Value, Text); return Value; }
	static double Atod(const TCHAR* Text) { double Value = 0; LexFromString(Value, Text); return Value; }
	static float Atof(const TCHAR* Text) { float Value = 0; LexFromString(Value, Text); return Value; }
};
