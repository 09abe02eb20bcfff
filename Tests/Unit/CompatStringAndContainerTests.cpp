// The engine behaviours of strings, names and containers that the plug-in relies on.
#include "ZorvekTestSupport.h"

#include "Containers/StringConv.h"

static_assert(!std::is_same_v<TCHAR, char> && !std::is_same_v<TCHAR, wchar_t>, "TCHAR must be a distinct type so narrow literals fail to compile");

TEST(CompatString, SearchCaseDefaultsFollowTheEngine)
{
	const FString Text(TEXT("Hello World"));
	EXPECT_TRUE(Text == TEXT("hello world"));
	EXPECT_FALSE(Text.Equals(TEXT("hello world")));
	EXPECT_TRUE(Text.Equals(TEXT("hello world"), ESearchCase::IgnoreCase));
	EXPECT_NE(Text.Compare(TEXT("hello world")), 0);
	EXPECT_TRUE(Text.Contains(TEXT("WORLD")));
	EXPECT_FALSE(Text.Contains(TEXT("WORLD"), ESearchCase::CaseSensitive));
	EXPECT_TRUE(Text.StartsWith(TEXT("hello")));
	EXPECT_TRUE(Text.EndsWith(TEXT("WORLD")));
	EXPECT_EQ(Text.Find(TEXT("o")), 4);
	EXPECT_EQ(Text.Find(TEXT("o"), ESearchCase::IgnoreCase, ESearchDir::FromEnd), 7);
	EXPECT_EQ(Text.Replace(TEXT("WORLD"), TEXT("There")), FString(TEXT("Hello There")));
	EXPECT_TRUE(Text.Contains(TEXT("")));
}

TEST(CompatString, SplitTrimAndSubstrings)
{
	FString Left;
	FString Right;
	EXPECT_TRUE(FString(TEXT("Key=Value=More")).Split(TEXT("="), &Left, &Right));
	EXPECT_TRUE(Left.Equals(TEXT("Key")));
	EXPECT_TRUE(Right.Equals(TEXT("Value=More")));
	EXPECT_TRUE(FString(TEXT("a.b.c")).Split(TEXT("."), &Left, &Right, ESearchCase::IgnoreCase, ESearchDir::FromEnd));
	EXPECT_TRUE(Left.Equals(TEXT("a.b")));
	EXPECT_FALSE(FString(TEXT("abc")).Split(TEXT("="), &Left, &Right));
	FString InPlace(TEXT("host:8765"));
	EXPECT_TRUE(InPlace.Split(TEXT(":"), &InPlace, &Right));
	EXPECT_TRUE(InPlace.Equals(TEXT("host")) && Right.Equals(TEXT("8765")));

	EXPECT_TRUE(FString(TEXT(" \t padded \r\n")).TrimStartAndEnd().Equals(TEXT("padded")));
	EXPECT_TRUE(FString(TEXT("abcdef")).Mid(2, 2).Equals(TEXT("cd")));
	EXPECT_TRUE(FString(TEXT("abcdef")).Mid(4, 100).Equals(TEXT("ef")));
	EXPECT_TRUE(FString(TEXT("abcdef")).Left(-3).IsEmpty());
	EXPECT_TRUE(FString(TEXT("abcdef")).RightChop(10).IsEmpty());

	TArray<FString> Parts;
	EXPECT_EQ(FString(TEXT("a,,b,")).ParseIntoArray(Parts, TEXT(","), true), 2);
	EXPECT_EQ(FString(TEXT("a,,b,")).ParseIntoArray(Parts, TEXT(","), false), 4);
}

TEST(CompatString, PrintfFormatsLikeTheEngine)
{
	EXPECT_TRUE(FString::Printf(TEXT("%s at %d"), TEXT("Bridge"), 8765).Equals(TEXT("Bridge at 8765")));
	EXPECT_TRUE(FString::Printf(TEXT("%.17g"), 0.1).Equals(TEXT("0.10000000000000001")));
	EXPECT_TRUE(FString::Printf(TEXT("[%5s|%-3d]"), TEXT("ab"), 7).Equals(TEXT("[   ab|7  ]")));
	EXPECT_TRUE(FString::Printf(TEXT("[%-4s|%.2s|%6.3s]"), TEXT("ab"), TEXT("wxyz"), TEXT("\u00e9\u00e9\u00e9\u00e9")).Equals(TEXT("[ab  |wx|   \u00e9\u00e9\u00e9]")));
	EXPECT_TRUE(FString::Printf(TEXT("100%%")).Equals(TEXT("100%")));
	EXPECT_TRUE(FString::Printf(TEXT("%lld %u"), (int64)-5000000000LL, 42u).Equals(TEXT("-5000000000 42")));
}

TEST(CompatString, NumbersAndBooleansConvertLikeTheEngine)
{
	EXPECT_TRUE(FString::SanitizeFloat(8765.0).Equals(TEXT("8765.0")));
	EXPECT_TRUE(FString::SanitizeFloat(8765.0, 0).Equals(TEXT("8765")));
	EXPECT_TRUE(FString::SanitizeFloat(0.1, 0).Equals(TEXT("0.1")));
	EXPECT_TRUE(FString::SanitizeFloat(-2.5).Equals(TEXT("-2.5")));
	// FCString::IsNumeric: an optional sign, then digits and at most one '.', nothing more
	// required, so a lone sign or dot counts (unreal-api-core.md §4.1).
	EXPECT_TRUE(FString(TEXT("-12.5")).IsNumeric());
	EXPECT_TRUE(FString(TEXT("+.5")).IsNumeric());
	EXPECT_TRUE(FString(TEXT("-")).IsNumeric());
	EXPECT_TRUE(FString(TEXT(".")).IsNumeric());
	EXPECT_FALSE(FString(TEXT("12a")).IsNumeric());
	EXPECT_FALSE(FString(TEXT("1.2.3")).IsNumeric());
	EXPECT_FALSE(FString(TEXT("1e5")).IsNumeric());
	EXPECT_FALSE(FString(TEXT(" 1")).IsNumeric());
	EXPECT_FALSE(FString(TEXT("")).IsNumeric());
	EXPECT_TRUE(FString(TEXT("True")).ToBool());
	EXPECT_TRUE(FString(TEXT("yes")).ToBool());
	EXPECT_FALSE(FString(TEXT("False")).ToBool());
	EXPECT_TRUE(FString(TEXT("1")).ToBool());
}

TEST(CompatString, Utf8ConversionKeepsTextAndMarksBadBytes)
{
	const FString Text = UECompatFromUtf8("caf\xC3\xA9 \xF0\x9F\x98\x80");
	EXPECT_EQ(Text.Len(), 7);
	EXPECT_EQ(UECompatToUtf8(Text), std::string("caf\xC3\xA9 \xF0\x9F\x98\x80"));
	EXPECT_TRUE(UECompatFromUtf8("a\xFF" "b").Equals(TEXT("a?b")));
	EXPECT_TRUE(UECompatFromUtf8("\xE2\x82").Equals(TEXT("??")));
	const FTCHARToUTF8 Converted(*Text, Text.Len());
	EXPECT_EQ(Converted.Length(), 10);
}

TEST(CompatStringView, HasTheEngineMembersAndComparesIgnoringCase)
{
	const FString Owner(TEXT("Hello World"));
	const FStringView View(Owner);
	EXPECT_EQ(View.Len(), 11);
	EXPECT_EQ(View.GetData(), *Owner);
	// TStringView's == ignores case; Equals is case-sensitive unless asked.
	EXPECT_TRUE(View == TEXT("hello world"));
	EXPECT_FALSE(View.Equals(TEXT("hello world")));
	EXPECT_TRUE(View.StartsWith(TEXT("HELLO")));
	EXPECT_TRUE(FString(View.Mid(6, 100)).Equals(TEXT("World")));
	EXPECT_TRUE(FString(View.Left(5)).Equals(TEXT("Hello")));
	EXPECT_TRUE(FString(View.RightChop(6)).Equals(TEXT("World")));
	EXPECT_TRUE(FStringView().IsEmpty());
}

TEST(CompatName, ComparesIgnoringCaseAndPrintsNone)
{
	// Made from TCHAR text implicitly, from an FString only explicitly, as in the engine.
	static_assert(std::is_convertible_v<const TCHAR*, FName>);
	static_assert(!std::is_convertible_v<FString, FName> && std::is_constructible_v<FName, FString>);

	EXPECT_TRUE(FName(TEXT("Foo")) == FName(TEXT("FOO")));
	EXPECT_FALSE(FName(TEXT("Foo")).IsEqual(FName(TEXT("FOO")), ENameCase::CaseSensitive));
	EXPECT_TRUE(FName().ToString().Equals(TEXT("None")));
	EXPECT_TRUE(FName(TEXT("none")).IsNone());
	EXPECT_EQ(GetTypeHash(FName(TEXT("Foo"))), GetTypeHash(FName(TEXT("fOO"))));
}

TEST(CompatMap, KeepsInsertionOrderAndFillsHolesLikeTheEngine)
{
	TMap<FString, int32> Map;
	Map.Add(TEXT("b"), 1);
	Map.Add(TEXT("a"), 2);
	Map.Add(TEXT("c"), 3);
	TArray<FString> Keys;
	Map.GetKeys(Keys);
	ASSERT_EQ(Keys.Num(), 3);
	EXPECT_TRUE(Keys[0].Equals(TEXT("b")) && Keys[1].Equals(TEXT("a")) && Keys[2].Equals(TEXT("c")));

	// Keys compare case-insensitively; adding again keeps the slot and takes the new spelling.
	Map.Add(TEXT("A"), 20);
	EXPECT_EQ(Map.Num(), 3);
	Map.GetKeys(Keys);
	EXPECT_TRUE(Keys[1].Equals(TEXT("A")));
	EXPECT_EQ(Map.FindRef(TEXT("a")), 20);

	// A removal leaves a hole that the next insertion fills.
	Map.Remove(TEXT("b"));
	Map.Add(TEXT("d"), 4);
	Map.GetKeys(Keys);
	EXPECT_TRUE(Keys[0].Equals(TEXT("d")));
	EXPECT_EQ(Map.Num(), 3);
	EXPECT_EQ(Map.Find(TEXT("missing")), nullptr);
}

TEST(CompatText, FormatsOrderedArgumentsAndKeepsLocalizationKeys)
{
#define LOCTEXT_NAMESPACE "CompatTests"
	const FText Pattern = LOCTEXT("Key", "Running at {0} on {1}");
	EXPECT_TRUE(Pattern.GetKey().Equals(TEXT("Key")));
	EXPECT_TRUE(Pattern.GetNamespace().Equals(TEXT("CompatTests")));
	const FText Formatted = FText::Format(Pattern, FText::FromString(TEXT("http://x")), 8765);
	EXPECT_TRUE(Formatted.ToString().Equals(TEXT("Running at http://x on 8765")));
	EXPECT_TRUE(FText::Format(LOCTEXT("Key2", "{0} and {5}"), FText::FromString(TEXT("a"))).ToString().Equals(TEXT("a and {5}")));
#undef LOCTEXT_NAMESPACE
}

TEST(CompatDelegates, SharedPointerBindingsStopWithTheirObject)
{
	struct FCounter : public TSharedFromThis<FCounter>
	{
		int32 Calls = 0;
		void Bump() { ++Calls; }
	};
	TSharedPtr<FCounter> Counter = MakeShared<FCounter>();
	FSimpleDelegate Delegate = FSimpleDelegate::CreateSP(Counter.ToSharedRef(), &FCounter::Bump);
	EXPECT_TRUE(Delegate.ExecuteIfBound());
	EXPECT_EQ(Counter->Calls, 1);
	Counter.Reset();
	EXPECT_FALSE(Delegate.IsBound());
	EXPECT_FALSE(Delegate.ExecuteIfBound());

	FSimpleMulticastDelegate Multicast;
	int32 Calls = 0;
	const FDelegateHandle First = Multicast.AddLambda([&Calls]() { Calls += 1; });
	Multicast.AddLambda([&Calls]() { Calls += 10; });
	Multicast.Broadcast();
	EXPECT_EQ(Calls, 11);
	Multicast.Remove(First);
	Multicast.Broadcast();
	EXPECT_EQ(Calls, 21);
}
