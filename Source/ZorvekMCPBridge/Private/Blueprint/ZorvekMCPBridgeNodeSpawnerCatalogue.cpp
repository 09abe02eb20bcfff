#include "Blueprint/ZorvekMCPBridgeNodeSpawnerCatalogue.h"

#include "Blueprint/ZorvekMCPBridgePinTypes.h"
#include "Blueprint/ZorvekMCPBridgeSpawnerIds.h"

namespace
{
	// An operator standing alone in a title ("int + int", "float < float") is also found by the
	// words a user types for it ("add int", "less float").
	struct FSpawnerOperatorWords
	{
		const TCHAR* Symbol;
		const TCHAR* FirstWord;
		const TCHAR* SecondWord;
	};

	const FSpawnerOperatorWords SpawnerOperatorTable[] = {
		{TEXT("=="), TEXT("equal"), nullptr},
		{TEXT("!="), TEXT("not"), TEXT("equal")},
		{TEXT(">="), TEXT("greater"), TEXT("equal")},
		{TEXT("<="), TEXT("less"), TEXT("equal")},
		{TEXT("&&"), TEXT("and"), nullptr},
		{TEXT("||"), TEXT("or"), nullptr},
		{TEXT("+"), TEXT("add"), TEXT("plus")},
		{TEXT("-"), TEXT("subtract"), TEXT("minus")},
		{TEXT("*"), TEXT("multiply"), TEXT("times")},
		{TEXT("/"), TEXT("divide"), nullptr},
		{TEXT("%"), TEXT("modulo"), TEXT("percent")},
		{TEXT("<"), TEXT("less"), nullptr},
		{TEXT(">"), TEXT("greater"), nullptr},
		{TEXT("^"), TEXT("xor"), nullptr},
		{TEXT("&"), TEXT("and"), nullptr},
		{TEXT("|"), TEXT("or"), nullptr}};

	// Words of a request that name nothing ("add a branch node").
	const TCHAR* const SpawnerFillerWords[] = {TEXT("a"), TEXT("an"), TEXT("the"), TEXT("node")};

	// The score tiers, best first. A tier's score drops by one per title word the request did
	// not name, down to the tier below's ceiling.
	constexpr int32 SpawnerExactScore = 100;
	constexpr int32 SpawnerTitleWordsScore = 90;
	constexpr int32 SpawnerExactNameScore = 79;
	constexpr int32 SpawnerNameWordsScore = 75;
	constexpr int32 SpawnerKeywordsScore = 55;
	constexpr int32 SpawnerCategoryScore = 35;
	constexpr int32 SpawnerPartialScore = 19;

	bool IsSpawnerUpper(TCHAR Character)
	{
		return Character >= TEXT('A') && Character <= TEXT('Z');
	}

	bool IsSpawnerLower(TCHAR Character)
	{
		return Character >= TEXT('a') && Character <= TEXT('z');
	}

	// Words are lower case, so a case-sensitive compare is the fast and right one.
	bool ContainsSpawnerWord(const TArray<FString>& Words, const FString& Word)
	{
		for (const FString& Existing : Words)
		{
			if (Existing.Equals(Word, ESearchCase::CaseSensitive))
			{
				return true;
			}
		}
		return false;
	}

	void AddSpawnerWordUnique(TArray<FString>& Words, const FString& Word)
	{
		if (!Word.IsEmpty() && !ContainsSpawnerWord(Words, Word))
		{
			Words.Add(Word);
		}
	}

	const FSpawnerOperatorWords* FindSpawnerOperator(const FString& Token)
	{
		for (const FSpawnerOperatorWords& Operator : SpawnerOperatorTable)
		{
			if (Token.Equals(Operator.Symbol, ESearchCase::CaseSensitive))
			{
				return &Operator;
			}
		}
		return nullptr;
	}

	TArray<FString> GetSpawnerOperatorWords(const FSpawnerOperatorWords& Operator)
	{
		TArray<FString> Words;
		Words.Add(Operator.FirstWord);
		if (Operator.SecondWord)
		{
			Words.Add(Operator.SecondWord);
		}
		return Words;
	}

	// An identifier split where its case changes ("ReceiveBeginPlay", "HTTPServer" -> http server),
	// lower-cased; the "K2" of the engine's K2_ functions is no word. Digits stay with their
	// letters, so "int64" is not "int".
	void AddSpawnerIdentifierWords(const FString& Run, TArray<FString>& OutWords)
	{
		int32 Start = 0;
		for (int32 Index = 1; Index <= Run.Len(); ++Index)
		{
			bool bBoundary = Index == Run.Len();
			if (!bBoundary)
			{
				const TCHAR Previous = Run[Index - 1];
				const TCHAR Current = Run[Index];
				const bool bNextLower = Index + 1 < Run.Len() && IsSpawnerLower(Run[Index + 1]);
				bBoundary = IsSpawnerUpper(Current) && (IsSpawnerLower(Previous) || (IsSpawnerUpper(Previous) && bNextLower));
			}
			if (bBoundary)
			{
				const FString Word = Run.Mid(Start, Index - Start).ToLower();
				if (!Word.Equals(TEXT("k2"), ESearchCase::CaseSensitive))
				{
					AddSpawnerWordUnique(OutWords, Word);
				}
				Start = Index;
			}
		}
	}

	// The words of a text: blanks and punctuation separate words, case changes too. A token that
	// is an operator on its own goes to OutOperatorGroups as one group of words when asked for,
	// else its words join OutWords.
	void AddSpawnerTextWords(const FString& Text, TArray<FString>& OutWords, TArray<TArray<FString>>* OutOperatorGroups)
	{
		TArray<FString> Tokens;
		Text.ParseIntoArrayWS(Tokens);
		for (const FString& Token : Tokens)
		{
			if (const FSpawnerOperatorWords* Operator = FindSpawnerOperator(Token))
			{
				if (OutOperatorGroups)
				{
					OutOperatorGroups->Add(GetSpawnerOperatorWords(*Operator));
				}
				else
				{
					for (const FString& Word : GetSpawnerOperatorWords(*Operator))
					{
						AddSpawnerWordUnique(OutWords, Word);
					}
				}
				continue;
			}
			int32 RunStart = INDEX_NONE;
			for (int32 Index = 0; Index <= Token.Len(); ++Index)
			{
				const bool bAlnum = Index < Token.Len() && FChar::IsAlnum(Token[Index]);
				if (bAlnum && RunStart == INDEX_NONE)
				{
					RunStart = Index;
				}
				else if (!bAlnum && RunStart != INDEX_NONE)
				{
					AddSpawnerIdentifierWords(Token.Mid(RunStart, Index - RunStart), OutWords);
					RunStart = INDEX_NONE;
				}
			}
		}
	}

	// The text without blanks and underscores, lower case, and without the engine's "K2" prefix:
	// "Print String", "printstring" and "PrintString" are one; "int + int" keeps its operator.
	FString MakeSpawnerCompact(const FString& Text)
	{
		FString Compact;
		Compact.Reserve(Text.Len());
		for (int32 Index = 0; Index < Text.Len(); ++Index)
		{
			const TCHAR Character = Text[Index];
			if (!FChar::IsWhitespace(Character) && Character != TEXT('_'))
			{
				Compact.AppendChar(FChar::ToLower(Character));
			}
		}
		if (Compact.Len() > 2 && Compact.StartsWith(TEXT("k2"), ESearchCase::CaseSensitive))
		{
			Compact.RightChopInline(2);
		}
		return Compact;
	}

	// "/Script/Engine.Character" -> Character; a Blueprint's "/Game/BP_Hero.BP_Hero_C" -> BP_Hero.
	FString GetSpawnerClassShortName(const FString& ClassPath)
	{
		int32 DotIndex = INDEX_NONE;
		FString Name = ClassPath.FindLastChar(TEXT('.'), DotIndex) ? ClassPath.RightChop(DotIndex + 1) : ClassPath;
		Name.RemoveFromEnd(TEXT("_C"), ESearchCase::CaseSensitive);
		return Name;
	}

	struct FIndexedSpawnerAction
	{
		FString SpawnerId;
		FString LowerSpawnerId;
		FString LowerTitle;
		FString CompactTitle;
		TArray<FString> TitleWords;
		TArray<TArray<FString>> TitleOperatorGroups;
		// The names the node stands for (function, variable, event, macro, key, cast class).
		TArray<FString> CompactNames;
		// Words of those names and of the class the action belongs to.
		TArray<FString> NameWords;
		TArray<FString> KeywordWords;
		TArray<FString> CategoryWords;
	};

	FIndexedSpawnerAction IndexSpawnerAction(const FZorvekMCPBridgeNodeAction& Action)
	{
		const FZorvekMCPBridgeNodeSpawnRequest& Request = Action.Request;
		FIndexedSpawnerAction Entry;
		Entry.SpawnerId = ZorvekMCPBridgeSpawnerIds::MakeSpawnRequestId(Request);
		Entry.LowerSpawnerId = Entry.SpawnerId.ToLower();
		Entry.LowerTitle = Action.Title.ToLower();
		Entry.CompactTitle = MakeSpawnerCompact(Action.Title);
		AddSpawnerTextWords(Action.Title, Entry.TitleWords, &Entry.TitleOperatorGroups);

		const FString* const OwnNames[] = {&Request.FunctionName, &Request.VariableName, &Request.EventName, &Request.MacroName, &Request.KeyName};
		for (const FString* Name : OwnNames)
		{
			if (!Name->IsEmpty())
			{
				AddSpawnerWordUnique(Entry.CompactNames, MakeSpawnerCompact(*Name));
				AddSpawnerTextWords(*Name, Entry.NameWords, nullptr);
			}
		}
		if (!Request.ClassPath.IsEmpty())
		{
			const FString ClassName = GetSpawnerClassShortName(Request.ClassPath);
			// A cast is named by its class ("Character"); a call only belongs to one.
			if (Request.Kind == EZorvekMCPBridgeNodeSpawnKind::DynamicCast)
			{
				AddSpawnerWordUnique(Entry.CompactNames, MakeSpawnerCompact(ClassName));
			}
			AddSpawnerTextWords(ClassName, Entry.NameWords, nullptr);
		}
		if (!Request.OwnerClassPath.IsEmpty())
		{
			AddSpawnerTextWords(GetSpawnerClassShortName(Request.OwnerClassPath), Entry.NameWords, nullptr);
		}
		AddSpawnerTextWords(Action.Keywords, Entry.KeywordWords, nullptr);
		AddSpawnerTextWords(Action.Category, Entry.CategoryWords, nullptr);
		return Entry;
	}

	// A request word; an operator in the request ("int + int") is one term with two spellings.
	struct FSpawnerQueryTerm
	{
		TArray<FString> Alternatives;
	};

	struct FSpawnerQuery
	{
		FString Lower;
		FString Compact;
		TArray<FSpawnerQueryTerm> Terms;

		static FSpawnerQuery Make(const FString& Text)
		{
			FSpawnerQuery Query;
			const FString Trimmed = Text.TrimStartAndEnd();
			Query.Lower = Trimmed.ToLower();
			Query.Compact = MakeSpawnerCompact(Trimmed);
			TArray<FString> Words;
			TArray<TArray<FString>> OperatorGroups;
			AddSpawnerTextWords(Trimmed, Words, &OperatorGroups);
			TArray<FString> Kept;
			for (const FString& Word : Words)
			{
				bool bFiller = false;
				for (const TCHAR* Filler : SpawnerFillerWords)
				{
					bFiller |= Word.Equals(Filler, ESearchCase::CaseSensitive);
				}
				if (!bFiller)
				{
					Kept.Add(Word);
				}
			}
			// A request of filler words only still means what it says.
			for (const FString& Word : (Kept.IsEmpty() ? Words : Kept))
			{
				Query.Terms.Add({{Word}});
			}
			for (const TArray<FString>& Group : OperatorGroups)
			{
				Query.Terms.Add({Group});
			}
			return Query;
		}

		bool IsEmpty() const
		{
			return Lower.IsEmpty();
		}
	};

	bool DoesSpawnerTermMatchWords(const FSpawnerQueryTerm& Term, const TArray<FString>& Words)
	{
		for (const FString& Alternative : Term.Alternatives)
		{
			if (ContainsSpawnerWord(Words, Alternative))
			{
				return true;
			}
		}
		return false;
	}

	bool DoesSpawnerTermMatchTitle(const FSpawnerQueryTerm& Term, const FIndexedSpawnerAction& Entry)
	{
		if (DoesSpawnerTermMatchWords(Term, Entry.TitleWords))
		{
			return true;
		}
		for (const TArray<FString>& Group : Entry.TitleOperatorGroups)
		{
			if (DoesSpawnerTermMatchWords(Term, Group))
			{
				return true;
			}
		}
		return false;
	}

	bool DoesSpawnerQueryNameWord(const FSpawnerQuery& Query, const FString& Word)
	{
		for (const FSpawnerQueryTerm& Term : Query.Terms)
		{
			if (ContainsSpawnerWord(Term.Alternatives, Word))
			{
				return true;
			}
		}
		return false;
	}

	// Title words (and operators) the request does not name.
	int32 CountUncoveredTitleWords(const FIndexedSpawnerAction& Entry, const FSpawnerQuery& Query)
	{
		int32 Uncovered = 0;
		for (const FString& Word : Entry.TitleWords)
		{
			Uncovered += DoesSpawnerQueryNameWord(Query, Word) ? 0 : 1;
		}
		for (const TArray<FString>& Group : Entry.TitleOperatorGroups)
		{
			bool bNamed = false;
			for (const FString& Word : Group)
			{
				bNamed |= DoesSpawnerQueryNameWord(Query, Word);
			}
			Uncovered += bNamed ? 0 : 1;
		}
		return Uncovered;
	}

	// Where a term is found, from the most telling field to the least.
	enum class ESpawnerTermField : uint8
	{
		Title,
		Name,
		Keywords,
		Category,
		None
	};

	ESpawnerTermField FindSpawnerTermField(const FSpawnerQueryTerm& Term, const FIndexedSpawnerAction& Entry)
	{
		if (DoesSpawnerTermMatchTitle(Term, Entry))
		{
			return ESpawnerTermField::Title;
		}
		if (DoesSpawnerTermMatchWords(Term, Entry.NameWords))
		{
			return ESpawnerTermField::Name;
		}
		if (DoesSpawnerTermMatchWords(Term, Entry.KeywordWords))
		{
			return ESpawnerTermField::Keywords;
		}
		if (DoesSpawnerTermMatchWords(Term, Entry.CategoryWords))
		{
			return ESpawnerTermField::Category;
		}
		return ESpawnerTermField::None;
	}

	// The score of one action for the request; false when it does not match at all.
	bool ScoreSpawnerAction(const FIndexedSpawnerAction& Entry, const FSpawnerQuery& Query, ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerMatch& OutMatch)
	{
		OutMatch.QueryWordCount = Query.Terms.Num();
		OutMatch.UncoveredTitleWords = CountUncoveredTitleWords(Entry, Query);
		ESpawnerTermField Weakest = ESpawnerTermField::Title;
		int32 Matched = 0;
		for (const FSpawnerQueryTerm& Term : Query.Terms)
		{
			const ESpawnerTermField Field = FindSpawnerTermField(Term, Entry);
			Matched += Field == ESpawnerTermField::None ? 0 : 1;
			Weakest = Field > Weakest ? Field : Weakest;
		}
		OutMatch.MatchedQueryWords = Matched;

		const auto Tier = [&OutMatch](int32 Ceiling, int32 Spread, const TCHAR* Reason)
		{
			OutMatch.Score = Ceiling - FMath::Min(OutMatch.UncoveredTitleWords, Spread);
			OutMatch.MatchReason = Reason;
			return true;
		};
		if (Query.Lower.Equals(Entry.LowerSpawnerId, ESearchCase::CaseSensitive))
		{
			return Tier(SpawnerExactScore, 0, TEXT("exact_spawner_id"));
		}
		if (!Query.Compact.IsEmpty() && Query.Compact.Equals(Entry.CompactTitle, ESearchCase::CaseSensitive))
		{
			return Tier(SpawnerExactScore, 0, TEXT("exact_title"));
		}
		const bool bAllMatched = Query.Terms.Num() > 0 && Matched == Query.Terms.Num();
		if (bAllMatched && Weakest == ESpawnerTermField::Title)
		{
			return Tier(SpawnerTitleWordsScore, SpawnerTitleWordsScore - SpawnerExactNameScore - 2, TEXT("title_words"));
		}
		if (!Query.Compact.IsEmpty() && ContainsSpawnerWord(Entry.CompactNames, Query.Compact))
		{
			return Tier(SpawnerExactNameScore, 0, TEXT("exact_name"));
		}
		if (bAllMatched && Weakest == ESpawnerTermField::Name)
		{
			return Tier(SpawnerNameWordsScore, SpawnerNameWordsScore - SpawnerKeywordsScore - 1, TEXT("name_words"));
		}
		if (bAllMatched && Weakest == ESpawnerTermField::Keywords)
		{
			return Tier(SpawnerKeywordsScore, SpawnerKeywordsScore - SpawnerCategoryScore - 1, TEXT("keywords"));
		}
		if (bAllMatched)
		{
			return Tier(SpawnerCategoryScore, SpawnerCategoryScore - SpawnerPartialScore - 1, TEXT("category"));
		}
		// At least half of the request's words: a near miss worth showing, never worth resolving.
		if (Matched > 0 && Matched * 2 >= Query.Terms.Num())
		{
			OutMatch.Score = FMath::Max(1, (SpawnerPartialScore * Matched) / Query.Terms.Num() - FMath::Min(OutMatch.UncoveredTitleWords, 5));
			OutMatch.MatchReason = TEXT("partial_words");
			return true;
		}
		return false;
	}

	// Best first; on equal scores the scoped Blueprint's own actions, then the shorter title, then
	// title and id in alphabetical order, so the order never depends on the port's list order.
	bool IsSpawnerMatchBefore(const ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerMatch& Left, const ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerMatch& Right)
	{
		if (Left.Score != Right.Score)
		{
			return Left.Score > Right.Score;
		}
		if (Left.Action.bFromBlueprint != Right.Action.bFromBlueprint)
		{
			return Left.Action.bFromBlueprint;
		}
		if (Left.Action.Title.Len() != Right.Action.Title.Len())
		{
			return Left.Action.Title.Len() < Right.Action.Title.Len();
		}
		const int32 TitleOrder = Left.Action.Title.Compare(Right.Action.Title, ESearchCase::IgnoreCase);
		if (TitleOrder != 0)
		{
			return TitleOrder < 0;
		}
		return Left.SpawnerId.Compare(Right.SpawnerId, ESearchCase::IgnoreCase) < 0;
	}

	// The indexed form of an action list. The library's index also maps every word, compact form
	// and id to the actions that hold it, so a search scores only the actions that can match.
	struct FSpawnerActionIndex
	{
		TArray<FZorvekMCPBridgeNodeAction> Actions;
		TArray<FIndexedSpawnerAction> Entries;
		TMap<FString, TArray<int32>> Postings;

		void Build(TArray<FZorvekMCPBridgeNodeAction>&& InActions, bool bWithPostings)
		{
			Actions = MoveTemp(InActions);
			Entries.Reset();
			Postings.Reset();
			Entries.Reserve(Actions.Num());
			for (int32 Index = 0; Index < Actions.Num(); ++Index)
			{
				Entries.Add(IndexSpawnerAction(Actions[Index]));
				if (bWithPostings)
				{
					AddPostings(Entries.Last(), Index);
				}
			}
		}

		void AddPosting(const FString& Key, int32 Index)
		{
			TArray<int32>& List = Postings.FindOrAdd(Key);
			if (List.IsEmpty() || List.Last() != Index)
			{
				List.Add(Index);
			}
		}

		void AddPostings(const FIndexedSpawnerAction& Entry, int32 Index)
		{
			AddPosting(Entry.LowerSpawnerId, Index);
			AddPosting(Entry.CompactTitle, Index);
			const TArray<FString>* const WordLists[] = {&Entry.TitleWords, &Entry.CompactNames, &Entry.NameWords, &Entry.KeywordWords, &Entry.CategoryWords};
			for (const TArray<FString>* Words : WordLists)
			{
				for (const FString& Word : *Words)
				{
					AddPosting(Word, Index);
				}
			}
			for (const TArray<FString>& Group : Entry.TitleOperatorGroups)
			{
				for (const FString& Word : Group)
				{
					AddPosting(Word, Index);
				}
			}
		}

		// The actions that hold any word or form of the request, each once, in list order.
		TArray<int32> CollectCandidates(const FSpawnerQuery& Query) const
		{
			TArray<int32> Candidates;
			const auto AddList = [this, &Candidates](const FString& Key)
			{
				if (const TArray<int32>* List = Postings.Find(Key))
				{
					Candidates.Append(*List);
				}
			};
			AddList(Query.Lower);
			AddList(Query.Compact);
			for (const FSpawnerQueryTerm& Term : Query.Terms)
			{
				for (const FString& Alternative : Term.Alternatives)
				{
					AddList(Alternative);
				}
			}
			Candidates.Sort();
			TArray<int32> Unique;
			Unique.Reserve(Candidates.Num());
			for (const int32 Index : Candidates)
			{
				if (Unique.IsEmpty() || Unique.Last() != Index)
				{
					Unique.Add(Index);
				}
			}
			return Unique;
		}
	};

	bool AreSpawnerRequestsEqual(const FZorvekMCPBridgeNodeSpawnRequest& Left, const FZorvekMCPBridgeNodeSpawnRequest& Right)
	{
		return Left.Kind == Right.Kind
			&& Left.ClassPath.Equals(Right.ClassPath, ESearchCase::CaseSensitive)
			&& Left.FunctionName.Equals(Right.FunctionName, ESearchCase::CaseSensitive)
			&& Left.EventName.Equals(Right.EventName, ESearchCase::CaseSensitive)
			&& Left.VariableName.Equals(Right.VariableName, ESearchCase::CaseSensitive)
			&& Left.OwnerClassPath.Equals(Right.OwnerClassPath, ESearchCase::CaseSensitive)
			&& Left.MacroLibraryPath.Equals(Right.MacroLibraryPath, ESearchCase::CaseSensitive)
			&& Left.MacroName.Equals(Right.MacroName, ESearchCase::CaseSensitive)
			&& Left.KeyName.Equals(Right.KeyName, ESearchCase::CaseSensitive);
	}

	bool AreSpawnerActionsEqual(const FZorvekMCPBridgeNodeAction& Left, const FZorvekMCPBridgeNodeAction& Right)
	{
		return Left.NodeKind == Right.NodeKind && Left.bPure == Right.bPure && Left.bLatent == Right.bLatent && Left.bFromBlueprint == Right.bFromBlueprint
			&& Left.Title.Equals(Right.Title, ESearchCase::CaseSensitive)
			&& Left.Category.Equals(Right.Category, ESearchCase::CaseSensitive)
			&& Left.Keywords.Equals(Right.Keywords, ESearchCase::CaseSensitive)
			&& Left.Tooltip.Equals(Right.Tooltip, ESearchCase::CaseSensitive)
			&& AreSpawnerRequestsEqual(Left.Request, Right.Request);
	}

	// The library's index, kept between searches (game thread only, like every tool). It holds the
	// actions it was built from; a search compares the port's list with them and rebuilds only
	// when one differs, which is a compare of strings already in hand rather than new words.
	struct FSpawnerLibraryCache
	{
		FSpawnerActionIndex Index;
		bool bBuilt = false;
		int32 BuildCount = 0;
	};

	FSpawnerLibraryCache& GetSpawnerLibraryCache()
	{
		static FSpawnerLibraryCache Cache;
		return Cache;
	}

	// The cached library index for the library part of Actions, rebuilt when that part changed.
	const FSpawnerActionIndex& GetSpawnerLibraryIndex(const TArray<FZorvekMCPBridgeNodeAction>& Actions)
	{
		FSpawnerLibraryCache& Cache = GetSpawnerLibraryCache();
		bool bSame = Cache.bBuilt;
		int32 LibraryCount = 0;
		for (const FZorvekMCPBridgeNodeAction& Action : Actions)
		{
			if (Action.bFromBlueprint)
			{
				continue;
			}
			bSame = bSame && LibraryCount < Cache.Index.Actions.Num() && AreSpawnerActionsEqual(Action, Cache.Index.Actions[LibraryCount]);
			++LibraryCount;
		}
		if (bSame && LibraryCount == Cache.Index.Actions.Num())
		{
			return Cache.Index;
		}
		TArray<FZorvekMCPBridgeNodeAction> Library;
		Library.Reserve(LibraryCount);
		for (const FZorvekMCPBridgeNodeAction& Action : Actions)
		{
			if (!Action.bFromBlueprint)
			{
				Library.Add(Action);
			}
		}
		Cache.Index.Build(MoveTemp(Library), true);
		Cache.bBuilt = true;
		++Cache.BuildCount;
		return Cache.Index;
	}

	// A library action on a member of the scoped Blueprint's own class: a call, event or variable
	// that the Blueprint's own actions name in the form its graphs use (var_get::Health, not
	// var_get::Health:<its class>). Casts to its class stay.
	bool IsSpawnerOwnClassMember(const FZorvekMCPBridgeNodeAction& Action, const TArray<FString>& OwnClassPaths)
	{
		const FZorvekMCPBridgeNodeSpawnRequest& Request = Action.Request;
		const FString* ClassPath = nullptr;
		switch (Request.Kind)
		{
		case EZorvekMCPBridgeNodeSpawnKind::CallFunction:
		case EZorvekMCPBridgeNodeSpawnKind::Event:
			ClassPath = &Request.ClassPath;
			break;
		case EZorvekMCPBridgeNodeSpawnKind::VariableGet:
		case EZorvekMCPBridgeNodeSpawnKind::VariableSet:
			ClassPath = &Request.OwnerClassPath;
			break;
		default:
			return false;
		}
		for (const FString& OwnClassPath : OwnClassPaths)
		{
			if (!OwnClassPath.IsEmpty() && ClassPath->Equals(OwnClassPath, ESearchCase::IgnoreCase))
			{
				return true;
			}
		}
		return false;
	}

	void AddSpawnerMatch(const FSpawnerActionIndex& Index, int32 EntryIndex, const FSpawnerQuery& Query, const TArray<FString>& OwnClassPaths,
		TArray<ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerMatch>& OutMatches)
	{
		ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerMatch Match;
		const FIndexedSpawnerAction& Entry = Index.Entries[EntryIndex];
		if (IsSpawnerOwnClassMember(Index.Actions[EntryIndex], OwnClassPaths))
		{
			return;
		}
		if (Query.IsEmpty())
		{
			Match.MatchReason = TEXT("listed");
		}
		else if (!ScoreSpawnerAction(Entry, Query, Match))
		{
			return;
		}
		Match.Action = Index.Actions[EntryIndex];
		Match.SpawnerId = Entry.SpawnerId;
		OutMatches.Add(MoveTemp(Match));
	}

	const TCHAR* GetSpawnerConfidence(const ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerMatch& Match, bool bResolved)
	{
		if (bResolved)
		{
			return Match.Score >= ZorvekMCPBridgeNodeSpawnerCatalogue::HighConfidenceScore ? TEXT("high") : TEXT("medium");
		}
		return Match.Score > SpawnerPartialScore ? TEXT("low") : TEXT("none");
	}

	FString DescribeSpawnerMatch(const ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerMatch& Match)
	{
		const FString& Title = Match.Action.Title;
		FString Sentence;
		if (Match.MatchReason == TEXT("exact_spawner_id"))
		{
			Sentence = FString::Printf(TEXT("The request is the spawner id of '%s'."), *Title);
		}
		else if (Match.MatchReason == TEXT("exact_title"))
		{
			Sentence = FString::Printf(TEXT("The request is the title '%s' (case, blanks and underscores ignored)."), *Title);
		}
		else if (Match.MatchReason == TEXT("title_words"))
		{
			Sentence = FString::Printf(TEXT("Every word of the request is in the title '%s'."), *Title);
		}
		else if (Match.MatchReason == TEXT("exact_name"))
		{
			Sentence = FString::Printf(TEXT("The request is the name behind '%s' (%s)."), *Title, *Match.SpawnerId);
		}
		else if (Match.MatchReason == TEXT("name_words"))
		{
			Sentence = FString::Printf(TEXT("Every word of the request is in the title or the names behind '%s' (%s)."), *Title, *Match.SpawnerId);
		}
		else if (Match.MatchReason == TEXT("keywords"))
		{
			Sentence = FString::Printf(TEXT("The request's words are found in '%s' only with its keywords '%s'."), *Title, *Match.Action.Keywords);
		}
		else if (Match.MatchReason == TEXT("category"))
		{
			Sentence = FString::Printf(TEXT("The request's words are found in '%s' only with its category '%s'."), *Title, *Match.Action.Category);
		}
		else
		{
			Sentence = FString::Printf(TEXT("Only %d of the request's %d words are found in '%s'."), Match.MatchedQueryWords, Match.QueryWordCount, *Title);
		}
		if (Match.UncoveredTitleWords > 0 && Match.MatchReason != TEXT("exact_spawner_id") && Match.MatchReason != TEXT("exact_title"))
		{
			Sentence += FString::Printf(TEXT(" %d word(s) of the title are not in the request."), Match.UncoveredTitleWords);
		}
		return Sentence;
	}

	FString DescribeSpawnerCandidate(const ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerMatch& Match)
	{
		return FString::Printf(TEXT("'%s' (%s, score %d)"), *Match.Action.Title, *Match.SpawnerId, Match.Score);
	}

	TArray<TSharedPtr<FJsonValue>> MakeSpawnerStringArray(const TArray<FString>& Texts)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const FString& Text : Texts)
		{
			Values.Add(MakeShared<FJsonValueString>(Text));
		}
		return Values;
	}

	TSharedPtr<FJsonObject> MakeSpawnerJsonWithPins(const IZorvekMCPBridgeBlueprints& Blueprints, const ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerScope& Scope,
		const ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerMatch& Match)
	{
		TArray<FZorvekMCPBridgeGraphPinSnapshot> Pins;
		const bool bHasPins = Blueprints.GetNodeActionPins(Scope.Blueprint, Match.Action.Request, Pins);
		return ZorvekMCPBridgeNodeSpawnerCatalogue::MakeSpawnerJson(Match, bHasPins ? &Pins : nullptr);
	}
}

const TCHAR* ZorvekMCPBridgeNodeSpawnerCatalogue::GetNodeKindWord(const FZorvekMCPBridgeNodeSpawnRequest& Request)
{
	switch (Request.Kind)
	{
	case EZorvekMCPBridgeNodeSpawnKind::Branch:
		return TEXT("branch");
	case EZorvekMCPBridgeNodeSpawnKind::Sequence:
		return TEXT("sequence");
	case EZorvekMCPBridgeNodeSpawnKind::MacroInstance:
		return TEXT("macro_instance");
	case EZorvekMCPBridgeNodeSpawnKind::DynamicCast:
		return TEXT("dynamic_cast");
	case EZorvekMCPBridgeNodeSpawnKind::CallFunction:
	case EZorvekMCPBridgeNodeSpawnKind::CallBlueprintFunction:
	case EZorvekMCPBridgeNodeSpawnKind::CustomEventCall:
		return TEXT("function_call");
	case EZorvekMCPBridgeNodeSpawnKind::CustomEvent:
		return TEXT("custom_event");
	case EZorvekMCPBridgeNodeSpawnKind::Event:
		return TEXT("event");
	case EZorvekMCPBridgeNodeSpawnKind::InterfaceEvent:
		return TEXT("interface_event");
	case EZorvekMCPBridgeNodeSpawnKind::VariableGet:
		return TEXT("variable_get");
	case EZorvekMCPBridgeNodeSpawnKind::VariableSet:
		return TEXT("variable_set");
	case EZorvekMCPBridgeNodeSpawnKind::InputAxisKeyEvent:
		return TEXT("input_axis_key_event");
	case EZorvekMCPBridgeNodeSpawnKind::InputKey:
		return TEXT("input_key_event");
	default:
		return TEXT("unknown");
	}
}

ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerScope ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerScope::FromBlueprint(const FZorvekMCPBridgeBlueprintSnapshot& Snapshot, const FString& BlueprintPath)
{
	FSpawnerScope Scope;
	Scope.Blueprint = Snapshot.Blueprint;
	Scope.BlueprintPath = BlueprintPath;
	Scope.OwnClassPaths = {Snapshot.GeneratedClassPath, Snapshot.SkeletonClassPath};
	return Scope;
}

ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerSearch ZorvekMCPBridgeNodeSpawnerCatalogue::SearchActions(const TArray<FZorvekMCPBridgeNodeAction>& Actions, const FString& Query,
	const TArray<FString>& OwnClassPaths)
{
	const FSpawnerActionIndex& Library = GetSpawnerLibraryIndex(Actions);
	TArray<FZorvekMCPBridgeNodeAction> OwnActions;
	for (const FZorvekMCPBridgeNodeAction& Action : Actions)
	{
		if (Action.bFromBlueprint)
		{
			OwnActions.Add(Action);
		}
	}
	// The Blueprint's own actions change with every edit; they are few, so they are indexed anew.
	FSpawnerActionIndex Own;
	Own.Build(MoveTemp(OwnActions), false);

	const FSpawnerQuery ParsedQuery = FSpawnerQuery::Make(Query);
	FSpawnerSearch Search;
	Search.LibraryActionCount = Library.Actions.Num();
	Search.BlueprintActionCount = Own.Actions.Num();
	TArray<FSpawnerMatch> Matches;
	if (ParsedQuery.IsEmpty())
	{
		for (int32 Index = 0; Index < Library.Entries.Num(); ++Index)
		{
			AddSpawnerMatch(Library, Index, ParsedQuery, OwnClassPaths, Matches);
		}
	}
	else
	{
		for (const int32 Index : Library.CollectCandidates(ParsedQuery))
		{
			AddSpawnerMatch(Library, Index, ParsedQuery, OwnClassPaths, Matches);
		}
	}
	for (int32 Index = 0; Index < Own.Entries.Num(); ++Index)
	{
		AddSpawnerMatch(Own, Index, ParsedQuery, TArray<FString>(), Matches);
	}
	Matches.StableSort(&IsSpawnerMatchBefore);

	// One entry per id: the engine lists an inherited event once per class that declares it.
	TSet<FString> SeenIds;
	for (FSpawnerMatch& Match : Matches)
	{
		bool bSeen = false;
		SeenIds.Add(Match.SpawnerId.ToLower(), &bSeen);
		if (!bSeen)
		{
			Search.Matches.Add(MoveTemp(Match));
		}
	}
	return Search;
}

ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerSearch ZorvekMCPBridgeNodeSpawnerCatalogue::Search(const IZorvekMCPBridgeBlueprints& Blueprints, const FSpawnerScope& Scope, const FString& Query)
{
	TArray<FZorvekMCPBridgeNodeAction> Actions;
	Blueprints.GetNodeActions(Scope.Blueprint, Actions);
	return SearchActions(Actions, Query, Scope.OwnClassPaths);
}

int32 ZorvekMCPBridgeNodeSpawnerCatalogue::GetLibraryIndexBuildCount()
{
	return GetSpawnerLibraryCache().BuildCount;
}

ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerResolution ZorvekMCPBridgeNodeSpawnerCatalogue::Resolve(const FSpawnerSearch& Search)
{
	FSpawnerResolution Resolution;
	Resolution.CandidateCount = Search.Matches.Num();
	for (int32 Index = 0; Index < Search.Matches.Num() && Index < MaxResolveCandidates; ++Index)
	{
		Resolution.Candidates.Add(Search.Matches[Index]);
	}
	if (Search.Matches.IsEmpty())
	{
		Resolution.Confidence = TEXT("none");
		Resolution.RejectedReason = TEXT("no_candidates");
		Resolution.Reasons.Add(TEXT("No catalogue action has the request's words in its title, names, keywords or category."));
		return Resolution;
	}

	const FSpawnerMatch& Top = Search.Matches[0];
	Resolution.Reasons.Add(DescribeSpawnerMatch(Top));
	const FSpawnerMatch* Next = Search.Matches.Num() > 1 ? &Search.Matches[1] : nullptr;
	const bool bTied = Next && Next->Score == Top.Score && Next->Action.bFromBlueprint == Top.Action.bFromBlueprint;
	if (bTied)
	{
		TArray<FString> Tied;
		for (const FSpawnerMatch& Match : Resolution.Candidates)
		{
			if (Match.Score == Top.Score && Match.Action.bFromBlueprint == Top.Action.bFromBlueprint)
			{
				Tied.Add(DescribeSpawnerCandidate(Match));
			}
		}
		Resolution.Confidence = GetSpawnerConfidence(Top, false);
		Resolution.RejectedReason = TEXT("ambiguous_equal_score_candidates");
		Resolution.Reasons.Add(FString::Printf(TEXT("Equal best scores: %s. Name one spawner_id, or add words that tell them apart."), *FString::Join(Tied, TEXT(", "))));
		return Resolution;
	}
	if (Top.Score < MinResolveScore)
	{
		Resolution.Confidence = GetSpawnerConfidence(Top, false);
		Resolution.RejectedReason = TEXT("no_high_confidence_candidate");
		Resolution.Reasons.Add(FString::Printf(TEXT("The best candidate %s scores below %d: the request's words are not all in its title or names."), *DescribeSpawnerCandidate(Top), MinResolveScore));
		return Resolution;
	}

	Resolution.bResolved = true;
	Resolution.Best = Top;
	Resolution.Confidence = GetSpawnerConfidence(Top, true);
	if (Next && Next->Score == Top.Score)
	{
		Resolution.Reasons.Add(FString::Printf(TEXT("The Blueprint's own '%s' wins over the library's %s with the same score."), *Top.Action.Title, *DescribeSpawnerCandidate(*Next)));
	}
	else if (Next)
	{
		Resolution.Reasons.Add(FString::Printf(TEXT("The next candidate, %s, scores lower."), *DescribeSpawnerCandidate(*Next)));
	}
	else
	{
		Resolution.Reasons.Add(TEXT("No other action matched."));
	}
	return Resolution;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeNodeSpawnerCatalogue::MakeActionPinJson(const FZorvekMCPBridgeGraphPinSnapshot& GraphPin)
{
	const FZorvekMCPBridgePinSnapshot& Pin = GraphPin.Pin;
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetStringField(TEXT("name"), Pin.PinName.ToString());
	Json->SetStringField(TEXT("direction"), Pin.Direction == EZorvekMCPBridgePinDirection::Output ? TEXT("output") : TEXT("input"));
	Json->SetStringField(TEXT("category"), Pin.PinType.PinCategory.ToString());
	Json->SetStringField(TEXT("subcategory"), Pin.PinType.PinSubCategory.ToString());
	Json->SetStringField(TEXT("subcategory_object"), Pin.PinType.PinSubCategoryObject.PathName);
	Json->SetStringField(TEXT("container_type"), ZorvekMCPBridgePinTypes::GetContainerTypeWord(Pin.PinType.ContainerType));
	Json->SetStringField(TEXT("type_string"), ZorvekMCPBridgePinTypes::DescribePinType(Pin.PinType));
	Json->SetObjectField(TEXT("type"), ZorvekMCPBridgePinTypes::MakePinTypeJson(Pin.PinType));
	Json->SetStringField(TEXT("default_value"), Pin.DefaultValue);
	Json->SetBoolField(TEXT("hidden"), GraphPin.bHidden);
	Json->SetBoolField(TEXT("advanced"), GraphPin.bAdvancedView);
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeNodeSpawnerCatalogue::MakeSpawnerJson(const FSpawnerMatch& Match, const TArray<FZorvekMCPBridgeGraphPinSnapshot>* Pins)
{
	const FZorvekMCPBridgeNodeAction& Action = Match.Action;
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetStringField(TEXT("spawner_id"), Match.SpawnerId);
	Json->SetStringField(TEXT("title"), Action.Title);
	Json->SetStringField(TEXT("category"), Action.Category);
	Json->SetStringField(TEXT("node_kind"), GetNodeKindWord(Action.Request));
	Json->SetBoolField(TEXT("pure"), Action.bPure);
	Json->SetBoolField(TEXT("latent"), Action.bLatent);
	Json->SetStringField(TEXT("source"), Action.bFromBlueprint ? TEXT("blueprint") : TEXT("library"));
	Json->SetStringField(TEXT("keywords"), Action.Keywords.TrimStartAndEnd());
	Json->SetStringField(TEXT("tooltip"), Action.Tooltip);
	Json->SetNumberField(TEXT("score"), Match.Score);
	Json->SetStringField(TEXT("match_reason"), Match.MatchReason);
	if (Pins)
	{
		TArray<TSharedPtr<FJsonValue>> PinValues;
		for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : *Pins)
		{
			PinValues.Add(MakeShared<FJsonValueObject>(MakeActionPinJson(Pin)));
		}
		Json->SetArrayField(TEXT("pins"), PinValues);
		Json->SetNumberField(TEXT("pin_count"), PinValues.Num());
	}
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeNodeSpawnerCatalogue::FindNodeSpawners(const IZorvekMCPBridgeBlueprints& Blueprints, const FSpawnerScope& Scope, const FString& Query, int32 Limit)
{
	const FSpawnerSearch Found = Search(Blueprints, Scope, Query);
	TArray<TSharedPtr<FJsonValue>> Spawners;
	// Pins are asked for only for what is returned: the engine makes a template node for each.
	for (int32 Index = 0; Index < Found.Matches.Num() && Index < Limit; ++Index)
	{
		Spawners.Add(MakeShared<FJsonValueObject>(MakeSpawnerJsonWithPins(Blueprints, Scope, Found.Matches[Index])));
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("query"), Query);
	Result->SetStringField(TEXT("blueprint_path"), Scope.BlueprintPath);
	Result->SetBoolField(TEXT("scoped"), Scope.Blueprint.IsValid());
	Result->SetNumberField(TEXT("total_catalog_count"), Found.LibraryActionCount + Found.BlueprintActionCount);
	Result->SetNumberField(TEXT("library_action_count"), Found.LibraryActionCount);
	Result->SetNumberField(TEXT("blueprint_action_count"), Found.BlueprintActionCount);
	Result->SetNumberField(TEXT("match_count"), Found.Matches.Num());
	Result->SetNumberField(TEXT("result_count"), Spawners.Num());
	Result->SetArrayField(TEXT("spawners"), Spawners);
	Result->SetStringField(TEXT("next_step"), Spawners.IsEmpty()
		? TEXT("Try other or fewer words, or pass BlueprintNameOrPath to include the Blueprint's own functions, variables, custom events and interface events.")
		: TEXT("Pass a spawner_id as SpawnerId to blueprint_add_node, or a request to blueprint_resolve_node_spawner."));
	return Result;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeNodeSpawnerCatalogue::MakeResolutionJson(const IZorvekMCPBridgeBlueprints& Blueprints, const FSpawnerScope& Scope, const FString& Query,
	const FSpawnerResolution& Resolution)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("query"), Query);
	Result->SetStringField(TEXT("blueprint_path"), Scope.BlueprintPath);
	Result->SetBoolField(TEXT("scoped"), Scope.Blueprint.IsValid());
	Result->SetNumberField(TEXT("candidate_count"), Resolution.CandidateCount);
	TArray<TSharedPtr<FJsonValue>> Candidates;
	for (const FSpawnerMatch& Candidate : Resolution.Candidates)
	{
		Candidates.Add(MakeShared<FJsonValueObject>(MakeSpawnerJson(Candidate, nullptr)));
	}
	Result->SetArrayField(TEXT("candidates"), Candidates);
	if (Resolution.bResolved)
	{
		Result->SetObjectField(TEXT("best"), MakeSpawnerJsonWithPins(Blueprints, Scope, Resolution.Best));
		Result->SetStringField(TEXT("spawner_id"), Resolution.Best.SpawnerId);
	}
	Result->SetStringField(TEXT("confidence"), Resolution.Confidence);
	if (!Resolution.bResolved)
	{
		Result->SetStringField(TEXT("rejected_reason"), Resolution.RejectedReason);
	}
	Result->SetArrayField(TEXT("reasons"), MakeSpawnerStringArray(Resolution.Reasons));
	Result->SetStringField(TEXT("next_step"), Resolution.bResolved
		? TEXT("Use spawner_id as SpawnerId with blueprint_add_node.")
		: TEXT("Inspect candidates and pass one exact spawner_id to blueprint_add_node, or add words that tell the candidates apart."));
	return Result;
}
