#include "Containers/UnrealString.h"
#include "Containers/StringConv.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace
{
	bool CharsEqual(TCHAR A, TCHAR B, ESearchCase::Type SearchCase)
	{
		return SearchCase == ESearchCase::CaseSensitive ? A == B : FChar::ToLower(A) == FChar::ToLower(B);
	}

	bool RangeEquals(const TCHAR* A, const TCHAR* B, size_t Count, ESearchCase::Type SearchCase)
	{
		for (size_t Index = 0; Index < Count; ++Index)
		{
			if (!CharsEqual(A[Index], B[Index], SearchCase))
			{
				return false;
			}
		}
		return true;
	}

	void AppendCodePoint(std::u16string& Out, uint32 CodePoint)
	{
		if (CodePoint >= 0x10000)
		{
			CodePoint -= 0x10000;
			Out += (TCHAR)(0xD800 + (CodePoint >> 10));
			Out += (TCHAR)(0xDC00 + (CodePoint & 0x3FF));
		}
		else
		{
			Out += (TCHAR)CodePoint;
		}
	}
}

[[noreturn]] void UECompatCheckFailed(const char* Expression, const char* File, int Line)
{
	std::fprintf(stderr, "Assertion failed: %s [%s:%d]\n", Expression, File, Line);
	std::abort();
}

bool UECompatEnsureFailed(const char* Expression, const char* File, int Line)
{
	std::fprintf(stderr, "Ensure condition failed: %s [%s:%d]\n", Expression, File, Line);
	return false;
}

std::string UECompatToUtf8(FStringView TextView)
{
	const std::u16string_view Text = TextView;
	std::string Out;
	Out.reserve(Text.size());
	for (size_t Index = 0; Index < Text.size(); ++Index)
	{
		uint32 CodePoint = Text[Index];
		if (CodePoint >= 0xD800 && CodePoint <= 0xDBFF && Index + 1 < Text.size() && Text[Index + 1] >= 0xDC00 && Text[Index + 1] <= 0xDFFF)
		{
			CodePoint = 0x10000 + ((CodePoint - 0xD800) << 10) + (Text[Index + 1] - 0xDC00);
			++Index;
		}
		else if (CodePoint >= 0xD800 && CodePoint <= 0xDFFF)
		{
			CodePoint = '?';
		}
		if (CodePoint < 0x80)
		{
			Out += (char)CodePoint;
		}
		else if (CodePoint < 0x800)
		{
			Out += (char)(0xC0 | (CodePoint >> 6));
			Out += (char)(0x80 | (CodePoint & 0x3F));
		}
		else if (CodePoint < 0x10000)
		{
			Out += (char)(0xE0 | (CodePoint >> 12));
			Out += (char)(0x80 | ((CodePoint >> 6) & 0x3F));
			Out += (char)(0x80 | (CodePoint & 0x3F));
		}
		else
		{
			Out += (char)(0xF0 | (CodePoint >> 18));
			Out += (char)(0x80 | ((CodePoint >> 12) & 0x3F));
			Out += (char)(0x80 | ((CodePoint >> 6) & 0x3F));
			Out += (char)(0x80 | (CodePoint & 0x3F));
		}
	}
	return Out;
}

FString UECompatFromUtf8(std::string_view Text)
{
	std::u16string Out;
	Out.reserve(Text.size());
	size_t Index = 0;
	while (Index < Text.size())
	{
		const uint8 Lead = (uint8)Text[Index];
		int32 Extra = 0;
		uint32 CodePoint = 0;
		if (Lead < 0x80)
		{
			CodePoint = Lead;
		}
		else if ((Lead & 0xE0) == 0xC0)
		{
			Extra = 1;
			CodePoint = Lead & 0x1F;
		}
		else if ((Lead & 0xF0) == 0xE0)
		{
			Extra = 2;
			CodePoint = Lead & 0x0F;
		}
		else if ((Lead & 0xF8) == 0xF0)
		{
			Extra = 3;
			CodePoint = Lead & 0x07;
		}
		else
		{
			Out += u'?';
			++Index;
			continue;
		}
		bool bValid = Index + (size_t)Extra < Text.size();
		for (int32 Offset = 1; bValid && Offset <= Extra; ++Offset)
		{
			const uint8 Next = (uint8)Text[Index + (size_t)Offset];
			bValid = (Next & 0xC0) == 0x80;
			CodePoint = (CodePoint << 6) | (Next & 0x3F);
		}
		const uint32 Minimum[] = {0, 0x80, 0x800, 0x10000};
		if (!bValid || CodePoint < Minimum[Extra] || CodePoint > 0x10FFFF || (CodePoint >= 0xD800 && CodePoint <= 0xDFFF))
		{
			Out += u'?';
			++Index;
			continue;
		}
		AppendCodePoint(Out, CodePoint);
		Index += (size_t)Extra + 1;
	}
	return FString(MoveTemp(Out));
}

FString FString::ConstructFromPtrSize(const UTF8CHAR* Ptr, int32 Size)
{
	return UECompatFromUtf8(std::string_view(reinterpret_cast<const char*>(Ptr), (size_t)Size));
}

FString FString::ConstructFromPtrSize(const ANSICHAR* Ptr, int32 Size)
{
	std::u16string Out;
	for (int32 Index = 0; Index < Size; ++Index)
	{
		Out += (TCHAR)(uint8)Ptr[Index];
	}
	return FString(MoveTemp(Out));
}

uint32 GetTypeHash(const FString& Text)
{
	// FNV-1a over the lower-cased text, so equal keys under case-insensitive == hash alike.
	uint32 Hash = 2166136261u;
	for (TCHAR Character : Text)
	{
		Hash ^= (uint32)FChar::ToLower(Character);
		Hash *= 16777619u;
	}
	return Hash;
}

bool FString::Equals(const FString& Other, ESearchCase::Type SearchCase) const
{
	return Data.size() == Other.Data.size() && RangeEquals(Data.data(), Other.Data.data(), Data.size(), SearchCase);
}

int32 FString::Compare(const FString& Other, ESearchCase::Type SearchCase) const
{
	const size_t Common = std::min(Data.size(), Other.Data.size());
	for (size_t Index = 0; Index < Common; ++Index)
	{
		TCHAR A = Data[Index];
		TCHAR B = Other.Data[Index];
		if (SearchCase == ESearchCase::IgnoreCase)
		{
			A = FChar::ToLower(A);
			B = FChar::ToLower(B);
		}
		if (A != B)
		{
			return A < B ? -1 : 1;
		}
	}
	if (Data.size() == Other.Data.size())
	{
		return 0;
	}
	return Data.size() < Other.Data.size() ? -1 : 1;
}

int32 FString::Find(FStringView SubStrView, ESearchCase::Type SearchCase, ESearchDir::Type SearchDir, int32 StartPosition) const
{
	const std::u16string_view SubStr = SubStrView;
	const int32 SubLen = (int32)SubStr.size();
	if (SubLen > Len())
	{
		return INDEX_NONE;
	}
	if (SearchDir == ESearchDir::FromStart)
	{
		const int32 First = StartPosition == INDEX_NONE ? 0 : std::max(0, StartPosition);
		for (int32 Index = First; Index + SubLen <= Len(); ++Index)
		{
			if (RangeEquals(Data.data() + Index, SubStr.data(), (size_t)SubLen, SearchCase))
			{
				return Index;
			}
		}
	}
	else
	{
		int32 Last = Len() - SubLen;
		if (StartPosition != INDEX_NONE)
		{
			Last = std::min(Last, StartPosition - SubLen);
		}
		for (int32 Index = Last; Index >= 0; --Index)
		{
			if (RangeEquals(Data.data() + Index, SubStr.data(), (size_t)SubLen, SearchCase))
			{
				return Index;
			}
		}
	}
	return INDEX_NONE;
}

bool FString::FindChar(TCHAR Character, int32& OutIndex) const
{
	const size_t Found = Data.find(Character);
	OutIndex = Found == std::u16string::npos ? INDEX_NONE : (int32)Found;
	return OutIndex != INDEX_NONE;
}

bool FString::FindLastChar(TCHAR Character, int32& OutIndex) const
{
	const size_t Found = Data.rfind(Character);
	OutIndex = Found == std::u16string::npos ? INDEX_NONE : (int32)Found;
	return OutIndex != INDEX_NONE;
}

bool FString::StartsWith(FStringView PrefixView, ESearchCase::Type SearchCase) const
{
	const std::u16string_view Prefix = PrefixView;
	return Prefix.size() <= Data.size() && RangeEquals(Data.data(), Prefix.data(), Prefix.size(), SearchCase);
}

bool FString::EndsWith(FStringView SuffixView, ESearchCase::Type SearchCase) const
{
	const std::u16string_view Suffix = SuffixView;
	return Suffix.size() <= Data.size() && RangeEquals(Data.data() + (Data.size() - Suffix.size()), Suffix.data(), Suffix.size(), SearchCase);
}

bool FString::MatchesWildcard(const FString& Wildcard, ESearchCase::Type SearchCase) const
{
	// Iterative '*' and '?' matching with backtracking to the last star.
	size_t TextIndex = 0;
	size_t PatternIndex = 0;
	size_t StarIndex = std::u16string::npos;
	size_t StarText = 0;
	const std::u16string& Pattern = Wildcard.Data;
	while (TextIndex < Data.size())
	{
		if (PatternIndex < Pattern.size() && (Pattern[PatternIndex] == u'?' || CharsEqual(Pattern[PatternIndex], Data[TextIndex], SearchCase)))
		{
			++TextIndex;
			++PatternIndex;
		}
		else if (PatternIndex < Pattern.size() && Pattern[PatternIndex] == u'*')
		{
			StarIndex = PatternIndex++;
			StarText = TextIndex;
		}
		else if (StarIndex != std::u16string::npos)
		{
			PatternIndex = StarIndex + 1;
			TextIndex = ++StarText;
		}
		else
		{
			return false;
		}
	}
	while (PatternIndex < Pattern.size() && Pattern[PatternIndex] == u'*')
	{
		++PatternIndex;
	}
	return PatternIndex == Pattern.size();
}

bool FString::Split(const FString& InS, FString* LeftS, FString* RightS, ESearchCase::Type SearchCase, ESearchDir::Type SearchDir) const
{
	const int32 Position = Find(InS, SearchCase, SearchDir);
	if (Position == INDEX_NONE)
	{
		return false;
	}
	// Either output may be this string, as the engine allows.
	FString Left = this->Left(Position);
	FString Right = Mid(Position + InS.Len());
	if (LeftS)
	{
		*LeftS = MoveTemp(Left);
	}
	if (RightS)
	{
		*RightS = MoveTemp(Right);
	}
	return true;
}

int32 FString::ParseIntoArray(TArray<FString>& OutArray, const TCHAR* Delimiter, bool bCullEmpty) const
{
	OutArray.Reset();
	const std::u16string_view Delim(Delimiter);
	if (Delim.empty())
	{
		if (!(bCullEmpty && IsEmpty()))
		{
			OutArray.Add(*this);
		}
		return OutArray.Num();
	}
	size_t Start = 0;
	while (true)
	{
		const size_t Found = Data.find(Delim, Start);
		const size_t End = Found == std::u16string::npos ? Data.size() : Found;
		if (!bCullEmpty || End > Start)
		{
			OutArray.Add(FString(Data.substr(Start, End - Start)));
		}
		if (Found == std::u16string::npos)
		{
			break;
		}
		Start = Found + Delim.size();
	}
	return OutArray.Num();
}

int32 FString::ParseIntoArrayWS(TArray<FString>& OutArray, const TCHAR* ExtraDelimiter, bool bCullEmpty) const
{
	OutArray.Reset();
	const std::u16string_view Extra(ExtraDelimiter ? ExtraDelimiter : u"");
	std::u16string Current;
	auto Flush = [&]()
	{
		if (!bCullEmpty || !Current.empty())
		{
			OutArray.Add(FString(Current));
		}
		Current.clear();
	};
	for (size_t Index = 0; Index < Data.size(); ++Index)
	{
		if (FChar::IsWhitespace(Data[Index]))
		{
			Flush();
		}
		else if (!Extra.empty() && Data.compare(Index, Extra.size(), Extra) == 0)
		{
			Flush();
			Index += Extra.size() - 1;
		}
		else
		{
			Current += Data[Index];
		}
	}
	Flush();
	return OutArray.Num();
}

int32 FString::ParseIntoArrayLines(TArray<FString>& OutArray, bool bCullEmpty) const
{
	OutArray.Reset();
	std::u16string Current;
	for (size_t Index = 0; Index < Data.size(); ++Index)
	{
		if (Data[Index] == u'\r' || Data[Index] == u'\n')
		{
			if (Data[Index] == u'\r' && Index + 1 < Data.size() && Data[Index + 1] == u'\n')
			{
				++Index;
			}
			if (!bCullEmpty || !Current.empty())
			{
				OutArray.Add(FString(Current));
			}
			Current.clear();
		}
		else
		{
			Current += Data[Index];
		}
	}
	if (!bCullEmpty || !Current.empty())
	{
		OutArray.Add(FString(Current));
	}
	return OutArray.Num();
}

FString FString::Left(int32 Count) const
{
	return FString(Data.substr(0, (size_t)std::clamp(Count, 0, Len())));
}

FString FString::LeftChop(int32 Count) const
{
	return Left(Len() - std::clamp(Count, 0, Len()));
}

FString FString::Right(int32 Count) const
{
	const int32 Clamped = std::clamp(Count, 0, Len());
	return FString(Data.substr((size_t)(Len() - Clamped)));
}

FString FString::RightChop(int32 Count) const
{
	return FString(Data.substr((size_t)std::clamp(Count, 0, Len())));
}

FString FString::Mid(int32 Start, int32 Count) const
{
	const int32 First = std::clamp(Start, 0, Len());
	const int64 Wanted = (int64)Count - (First - Start);
	const int32 Available = Len() - First;
	const int32 Take = (int32)std::clamp<int64>(Wanted, 0, Available);
	return FString(Data.substr((size_t)First, (size_t)Take));
}

FString FString::TrimStart() const
{
	size_t First = 0;
	while (First < Data.size() && FChar::IsWhitespace(Data[First]))
	{
		++First;
	}
	return FString(Data.substr(First));
}

FString FString::TrimEnd() const
{
	size_t End = Data.size();
	while (End > 0 && FChar::IsWhitespace(Data[End - 1]))
	{
		--End;
	}
	return FString(Data.substr(0, End));
}

FString FString::TrimStartAndEnd() const
{
	return TrimStart().TrimEnd();
}

FString FString::TrimQuotes(bool* bQuotesRemoved) const
{
	const bool bQuoted = Len() >= 2 && Data.front() == u'"' && Data.back() == u'"';
	if (bQuotesRemoved)
	{
		*bQuotesRemoved = bQuoted;
	}
	return bQuoted ? Mid(1, Len() - 2) : *this;
}

FString FString::ToLower() const
{
	std::u16string Out(Data);
	for (TCHAR& Character : Out)
	{
		Character = FChar::ToLower(Character);
	}
	return FString(MoveTemp(Out));
}

FString FString::ToUpper() const
{
	std::u16string Out(Data);
	for (TCHAR& Character : Out)
	{
		Character = FChar::ToUpper(Character);
	}
	return FString(MoveTemp(Out));
}

FString FString::Replace(const TCHAR* From, const TCHAR* To, ESearchCase::Type SearchCase) const
{
	FString Result(*this);
	Result.ReplaceInline(From, To, SearchCase);
	return Result;
}

int32 FString::ReplaceInline(const TCHAR* SearchText, const TCHAR* ReplacementText, ESearchCase::Type SearchCase)
{
	const std::u16string_view Search(SearchText);
	if (Search.empty() || IsEmpty())
	{
		return 0;
	}
	std::u16string Out;
	int32 Count = 0;
	size_t Index = 0;
	while (Index < Data.size())
	{
		if (Index + Search.size() <= Data.size() && RangeEquals(Data.data() + Index, Search.data(), Search.size(), SearchCase))
		{
			Out += ReplacementText;
			Index += Search.size();
			++Count;
		}
		else
		{
			Out += Data[Index++];
		}
	}
	Data = MoveTemp(Out);
	return Count;
}

FString FString::ReplaceCharWithEscapedChar() const
{
	std::u16string Out;
	for (TCHAR Character : Data)
	{
		switch (Character)
		{
		case u'\\': Out += u"\\\\"; break;
		case u'\n': Out += u"\\n"; break;
		case u'\r': Out += u"\\r"; break;
		case u'\t': Out += u"\\t"; break;
		case u'\'': Out += u"\\'"; break;
		case u'"': Out += u"\\\""; break;
		case u'?': Out += u"\\?"; break;
		case u'\a': Out += u"\\a"; break;
		case u'\b': Out += u"\\b"; break;
		case u'\f': Out += u"\\f"; break;
		case u'\v': Out += u"\\v"; break;
		default: Out += Character; break;
		}
	}
	return FString(MoveTemp(Out));
}

bool FString::RemoveFromStart(FStringView PrefixView, ESearchCase::Type SearchCase)
{
	const std::u16string_view Prefix = PrefixView;
	if (!Prefix.empty() && StartsWith(Prefix, SearchCase))
	{
		Data.erase(0, Prefix.size());
		return true;
	}
	return false;
}

bool FString::RemoveFromEnd(FStringView SuffixView, ESearchCase::Type SearchCase)
{
	const std::u16string_view Suffix = SuffixView;
	if (!Suffix.empty() && EndsWith(Suffix, SearchCase))
	{
		Data.erase(Data.size() - Suffix.size());
		return true;
	}
	return false;
}

bool FString::IsNumeric() const
{
	// As the engine: an optional sign, then digits and at most one '.', in any mix, so "-", "."
	// and "+." count as numeric too; only the empty text does not.
	if (IsEmpty())
	{
		return false;
	}
	size_t Index = (Data[0] == u'-' || Data[0] == u'+') ? 1 : 0;
	bool bSeenDot = false;
	for (; Index < Data.size(); ++Index)
	{
		if (Data[Index] == u'.')
		{
			if (bSeenDot)
			{
				return false;
			}
			bSeenDot = true;
		}
		else if (!FChar::IsDigit(Data[Index]))
		{
			return false;
		}
	}
	return true;
}

bool FString::ToBool() const
{
	const FString Trimmed = TrimStartAndEnd();
	if (Trimmed == TEXT("true") || Trimmed == TEXT("yes") || Trimmed == TEXT("on"))
	{
		return true;
	}
	if (Trimmed == TEXT("false") || Trimmed == TEXT("no") || Trimmed == TEXT("off"))
	{
		return false;
	}
	return FCString::Atoi(*Trimmed) != 0;
}

FString FString::FromInt(int32 Num)
{
	return Printf(TEXT("%d"), Num);
}

FString FString::SanitizeFloat(double Value, int32 MinFractionalDigits)
{
	if (!std::isfinite(Value))
	{
		return UECompatFromUtf8(std::isnan(Value) ? "nan" : (Value < 0 ? "-inf" : "inf"));
	}
	// The shortest fixed-point text that reads back as the same double.
	std::string Text;
	for (int Precision = 0; Precision <= 40; ++Precision)
	{
		char Buffer[512];
		std::snprintf(Buffer, sizeof(Buffer), "%.*f", Precision, Value);
		Text = Buffer;
		if (std::strtod(Buffer, nullptr) == Value)
		{
			break;
		}
	}
	size_t Dot = Text.find('.');
	if (Dot != std::string::npos)
	{
		while (Text.back() == '0')
		{
			Text.pop_back();
		}
		if (Text.back() == '.')
		{
			Text.pop_back();
		}
	}
	if (Text == "-0")
	{
		Text = "0";
	}
	Dot = Text.find('.');
	int32 Fraction = Dot == std::string::npos ? 0 : (int32)(Text.size() - Dot - 1);
	if (Fraction < MinFractionalDigits && Dot == std::string::npos)
	{
		Text += '.';
	}
	for (; Fraction < MinFractionalDigits; ++Fraction)
	{
		Text += '0';
	}
	return UECompatFromUtf8(Text);
}

namespace
{
	template <typename T>
	bool ParseWhole(const TCHAR* Text, T& OutValue)
	{
		const std::string Narrow = UECompatToUtf8(FStringView(Text ? Text : u""));
		char* End = nullptr;
		if constexpr (std::is_signed_v<T>)
		{
			OutValue = (T)std::strtoll(Narrow.c_str(), &End, 10);
		}
		else
		{
			OutValue = (T)std::strtoull(Narrow.c_str(), &End, 10);
		}
		return End != Narrow.c_str();
	}
}

void LexFromString(int32& OutValue, const TCHAR* Text) { ParseWhole(Text, OutValue); }
void LexFromString(int64& OutValue, const TCHAR* Text) { ParseWhole(Text, OutValue); }
void LexFromString(uint32& OutValue, const TCHAR* Text) { ParseWhole(Text, OutValue); }
void LexFromString(uint64& OutValue, const TCHAR* Text) { ParseWhole(Text, OutValue); }
void LexFromString(double& OutValue, const TCHAR* Text) { OutValue = std::strtod(UECompatToUtf8(FStringView(Text ? Text : u"")).c_str(), nullptr); }
void LexFromString(float& OutValue, const TCHAR* Text) { double Value = 0; LexFromString(Value, Text); OutValue = (float)Value; }
void LexFromString(bool& OutValue, const TCHAR* Text) { OutValue = FString(Text).ToBool(); }

FString UECompatPrintf::Format(const TCHAR* Fmt, const FStringFormatArgValue* Args, int32 NumArgs)
{
	std::u16string Out;
	int32 ArgIndex = 0;
	const std::u16string_view Format(Fmt);
	for (size_t Index = 0; Index < Format.size(); ++Index)
	{
		const TCHAR Character = Format[Index];
		if (Character != u'%')
		{
			Out += Character;
			continue;
		}
		if (Index + 1 < Format.size() && Format[Index + 1] == u'%')
		{
			Out += u'%';
			++Index;
			continue;
		}
		// Collect flags, width, precision and length modifiers up to the conversion letter.
		std::string FormatSpec = "%";
		size_t Cursor = Index + 1;
		while (Cursor < Format.size() && std::strchr("-+ #0123456789.*hlzjtL", (char)Format[Cursor]) && Format[Cursor] < 128)
		{
			FormatSpec += (char)Format[Cursor];
			++Cursor;
		}
		if (Cursor >= Format.size())
		{
			Out += Format.substr(Index);
			break;
		}
		const char Conversion = (char)Format[Cursor];
		Index = Cursor;
		if (ArgIndex >= NumArgs)
		{
			Out += u"<missing>";
			continue;
		}
		const FStringFormatArgValue& Arg = Args[ArgIndex++];
		std::string Modifiers;
		for (char Letter : FormatSpec)
		{
			if (!std::strchr("hlzjtL", Letter))
			{
				Modifiers += Letter;
			}
		}
		char Buffer[512];
		switch (Conversion)
		{
		case 's':
		{
			// Width and precision count characters, so they are applied here, not by snprintf.
			std::u16string Text(Arg.Kind == FStringFormatArgValue::EKind::Text && Arg.Text ? Arg.Text : u"(null)");
			// FormatSpec is "%", flags, width digits, then an optional ".precision".
			const size_t WidthStart = FormatSpec.find_first_not_of("%-+ #0");
			const size_t Dot = FormatSpec.find('.');
			const size_t Width = WidthStart == std::string::npos || WidthStart == Dot ? 0 : (size_t)std::atoi(FormatSpec.c_str() + WidthStart);
			if (Dot != std::string::npos)
			{
				Text = Text.substr(0, (size_t)std::atoi(FormatSpec.c_str() + Dot + 1));
			}
			const size_t Padding = Width > Text.size() ? Width - Text.size() : 0;
			if (FormatSpec.find('-') != std::string::npos)
			{
				Out += Text;
				Out.append(Padding, u' ');
			}
			else
			{
				Out.append(Padding, u' ');
				Out += Text;
			}
			break;
		}
		case 'c':
			Out += (TCHAR)Arg.Unsigned;
			break;
		case 'd':
		case 'i':
		{
			const long long Value = Arg.Kind == FStringFormatArgValue::EKind::Unsigned ? (long long)Arg.Unsigned : (long long)Arg.Signed;
			std::snprintf(Buffer, sizeof(Buffer), (Modifiers + "lld").c_str(), Value);
			Out += UECompatFromUtf8(Buffer).GetStorage();
			break;
		}
		case 'u':
		case 'x':
		case 'X':
		case 'o':
		{
			const unsigned long long Value = Arg.Kind == FStringFormatArgValue::EKind::Signed ? (unsigned long long)Arg.Signed : (unsigned long long)Arg.Unsigned;
			std::snprintf(Buffer, sizeof(Buffer), (Modifiers + "ll" + Conversion).c_str(), Value);
			Out += UECompatFromUtf8(Buffer).GetStorage();
			break;
		}
		case 'f':
		case 'F':
		case 'g':
		case 'G':
		case 'e':
		case 'E':
		{
			const double Value = Arg.Kind == FStringFormatArgValue::EKind::Floating ? Arg.Floating : (Arg.Kind == FStringFormatArgValue::EKind::Signed ? (double)Arg.Signed : (double)Arg.Unsigned);
			std::snprintf(Buffer, sizeof(Buffer), (Modifiers + Conversion).c_str(), Value);
			Out += UECompatFromUtf8(Buffer).GetStorage();
			break;
		}
		case 'p':
			std::snprintf(Buffer, sizeof(Buffer), "%p", Arg.Pointer);
			Out += UECompatFromUtf8(Buffer).GetStorage();
			break;
		default:
			Out += u'%';
			Out += (TCHAR)Conversion;
			break;
		}
	}
	return FString(MoveTemp(Out));
}

FTCHARToUTF8::FTCHARToUTF8(const TCHAR* Source)
	: Converted(UECompatToUtf8(FStringView(Source ? Source : u"")))
{
}

FTCHARToUTF8::FTCHARToUTF8(const TCHAR* Source, int32 SourceLength)
	: Converted(UECompatToUtf8(FStringView(Source, SourceLength)))
{
}

FUTF8ToTCHAR::FUTF8ToTCHAR(const ANSICHAR* Source)
	: Converted(UECompatFromUtf8(std::string_view(Source ? Source : "")))
{
}

FUTF8ToTCHAR::FUTF8ToTCHAR(const ANSICHAR* Source, int32 SourceLength)
	: Converted(UECompatFromUtf8(std::string_view(Source, (size_t)SourceLength)))
{
}
