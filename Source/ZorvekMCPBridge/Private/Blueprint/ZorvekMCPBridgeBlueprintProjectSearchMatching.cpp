// The words, types, folders and class tags of blueprint_search_project: everything the search
// compares, apart from the walk itself.
#include "Blueprint/ZorvekMCPBridgeBlueprintProjectSearch.h"

namespace
{
	const TCHAR* const ProjectSearchTypeWords[] = {
		TEXT("blueprint"),
		TEXT("graph"),
		TEXT("node"),
		TEXT("variable"),
		TEXT("component"),
		TEXT("comment"),
		TEXT("custom_event"),
		TEXT("interface"),
		TEXT("function"),
	};
	constexpr int32 ProjectSearchTypeCount = static_cast<int32>(UE_ARRAY_COUNT(ProjectSearchTypeWords));
	static_assert(ProjectSearchTypeCount == static_cast<int32>(ZorvekMCPBridgeBlueprintProjectSearch::ESearchType::Count), "one word per search type");

	// What FPackageName refuses in a long package name, beside white space.
	const TCHAR* const ProjectSearchInvalidFolderCharacters = TEXT("\\:*?\"<>|',.&!~@#");

	// The engine's K2_ functions ("K2_SetActorLocation") are known by the rest of their name.
	void RemoveProjectSearchK2Prefix(FString& Compact)
	{
		if (Compact.Len() > 2 && Compact.StartsWith(TEXT("k2"), ESearchCase::CaseSensitive))
		{
			Compact.RightChopInline(2);
		}
	}
}

const TCHAR* ZorvekMCPBridgeBlueprintProjectSearch::GetSearchTypeWord(ESearchType Type)
{
	const int32 Index = static_cast<int32>(Type);
	return Index < ProjectSearchTypeCount ? ProjectSearchTypeWords[Index] : TEXT("");
}

FString ZorvekMCPBridgeBlueprintProjectSearch::GetSearchTypeWordList()
{
	TArray<FString> Words;
	for (const TCHAR* Word : ProjectSearchTypeWords)
	{
		Words.Add(Word);
	}
	return FString::Join(Words, TEXT(", "));
}

bool ZorvekMCPBridgeBlueprintProjectSearch::FindSearchType(const FString& Word, ESearchType& OutType)
{
	for (int32 Index = 0; Index < ProjectSearchTypeCount; ++Index)
	{
		if (Word.Equals(ProjectSearchTypeWords[Index], ESearchCase::IgnoreCase))
		{
			OutType = static_cast<ESearchType>(Index);
			return true;
		}
	}
	return false;
}

const TCHAR* ZorvekMCPBridgeBlueprintProjectSearch::GetMatchQualityWord(EMatchQuality Quality)
{
	switch (Quality)
	{
	case EMatchQuality::Exact:
		return TEXT("exact");
	case EMatchQuality::Prefix:
		return TEXT("prefix");
	case EMatchQuality::Words:
		return TEXT("contains");
	default:
		return TEXT("none");
	}
}

ZorvekMCPBridgeBlueprintProjectSearch::FSearchQuery ZorvekMCPBridgeBlueprintProjectSearch::FSearchQuery::Parse(const FString& Query)
{
	FSearchQuery Parsed;
	TArray<FString> Tokens;
	Query.ParseIntoArrayWS(Tokens);
	for (const FString& Token : Tokens)
	{
		FString Word;
		FSearchMatcher::MakeCompact(Token, Word);
		if (!Word.IsEmpty())
		{
			Parsed.Joined += Word;
			Parsed.Words.Add(MoveTemp(Word));
		}
	}
	return Parsed;
}

ZorvekMCPBridgeBlueprintProjectSearch::FSearchMatcher::FSearchMatcher(const FSearchQuery& InQuery)
	: Query(InQuery)
{
}

void ZorvekMCPBridgeBlueprintProjectSearch::FSearchMatcher::MakeCompact(const FString& Text, FString& OutCompact)
{
	OutCompact.Reset();
	OutCompact.Reserve(Text.Len());
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		const TCHAR Character = Text[Index];
		if (FChar::IsAlnum(Character))
		{
			OutCompact.AppendChar(FChar::ToLower(Character));
		}
	}
	RemoveProjectSearchK2Prefix(OutCompact);
}

ZorvekMCPBridgeBlueprintProjectSearch::EMatchQuality ZorvekMCPBridgeBlueprintProjectSearch::FSearchMatcher::Match(const FString& Text)
{
	if (Text.IsEmpty() || Query.IsEmpty())
	{
		return EMatchQuality::None;
	}
	MakeCompact(Text, Compact);
	// Both sides are lower case already, so the case-sensitive compares are the right ones.
	if (Compact.Equals(Query.Joined, ESearchCase::CaseSensitive))
	{
		return EMatchQuality::Exact;
	}
	if (Compact.StartsWith(Query.Joined, ESearchCase::CaseSensitive))
	{
		return EMatchQuality::Prefix;
	}
	for (const FString& Word : Query.Words)
	{
		if (!Compact.Contains(Word, ESearchCase::CaseSensitive))
		{
			return EMatchQuality::None;
		}
	}
	return EMatchQuality::Words;
}

bool ZorvekMCPBridgeBlueprintProjectSearch::ParseSearchTypes(const TArray<FString>& Words, uint32& OutTypeMask, FString& OutError)
{
	uint32 Mask = 0;
	for (const FString& RawWord : Words)
	{
		const FString Word = RawWord.TrimStartAndEnd();
		if (Word.IsEmpty())
		{
			continue;
		}
		ESearchType Type = ESearchType::Blueprint;
		if (!FindSearchType(Word, Type))
		{
			OutError = FString::Printf(TEXT("Unknown Types word '%s'. Use any of: %s."), *Word, *GetSearchTypeWordList());
			return false;
		}
		Mask |= GetSearchTypeBit(Type);
	}
	OutTypeMask = Mask == 0 ? AllSearchTypes : Mask;
	return true;
}

bool ZorvekMCPBridgeBlueprintProjectSearch::NormalizeSearchPackagePath(const FString& PackagePath, FString& OutPackagePath, FString& OutError)
{
	FString Path = PackagePath.TrimStartAndEnd();
	while (Path.Len() > 1 && Path.EndsWith(TEXT("/"), ESearchCase::CaseSensitive))
	{
		Path.LeftChopInline(1);
	}
	// A folder is "/Root" or "/Root/Sub...": rooted, one slash between names, and none of the
	// characters long package names refuse (an object path's "." and ":" among them).
	bool bValid = Path.Len() > 1 && Path[0] == TEXT('/') && !Path.Contains(TEXT("//"));
	for (int32 Index = 0; bValid && Index < Path.Len(); ++Index)
	{
		int32 Unused = INDEX_NONE;
		bValid = !FChar::IsWhitespace(Path[Index]) && !FString(ProjectSearchInvalidFolderCharacters).FindChar(Path[Index], Unused);
	}
	if (!bValid)
	{
		OutError = FString::Printf(TEXT("PackagePaths entries must be content folders such as /Game or /Game/Blueprints, got '%s'."), *PackagePath);
		return false;
	}
	OutPackagePath = Path;
	return true;
}

FString ZorvekMCPBridgeBlueprintProjectSearch::ParseClassTag(const FString& TagValue)
{
	const FString Value = TagValue.TrimStartAndEnd();
	int32 QuoteIndex = INDEX_NONE;
	if (Value.FindChar(TEXT('\''), QuoteIndex) && Value.EndsWith(TEXT("'"), ESearchCase::CaseSensitive) && Value.Len() > QuoteIndex + 1)
	{
		return Value.Mid(QuoteIndex + 1, Value.Len() - QuoteIndex - 2);
	}
	return Value;
}

FString ZorvekMCPBridgeBlueprintProjectSearch::GetClassDisplayName(const FString& ClassPath)
{
	int32 SeparatorIndex = INDEX_NONE;
	FString Name = ClassPath;
	if (Name.FindLastChar(TEXT('.'), SeparatorIndex) || Name.FindLastChar(TEXT('/'), SeparatorIndex))
	{
		Name.RightChopInline(SeparatorIndex + 1);
	}
	// A Blueprint's generated class is BP_Base_C; the agent knows the Blueprint BP_Base.
	if (!ClassPath.StartsWith(TEXT("/Script/"), ESearchCase::IgnoreCase))
	{
		Name.RemoveFromEnd(TEXT("_C"), ESearchCase::CaseSensitive);
	}
	return Name;
}
