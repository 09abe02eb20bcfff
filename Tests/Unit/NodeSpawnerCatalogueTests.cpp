// The node-spawner catalogue's ranking and resolution on hand-made action lists shaped like the
// engine's action menu (titles, categories and keywords as the action database gives them):
// the requests users type, the tolerance for case, blanks and K2_ names, the order of the tiers,
// ties, Blueprint-owned actions, and the library cache.
#include "AssetTestSupport.h"
#include "Blueprint/ZorvekMCPBridgeNodeSpawnerCatalogue.h"

using namespace ZorvekAssetTests;
using namespace ZorvekMCPBridgeNodeSpawnerCatalogue;

namespace
{
	FZorvekMCPBridgeNodeAction MakeAction(EZorvekMCPBridgeNodeSpawnKind Kind, const TCHAR* Title, const TCHAR* Category, const TCHAR* Keywords)
	{
		FZorvekMCPBridgeNodeAction Action;
		Action.Request.Kind = Kind;
		Action.Title = Title;
		Action.Category = Category;
		Action.Keywords = Keywords;
		return Action;
	}

	FZorvekMCPBridgeNodeAction MakeCall(const TCHAR* ClassPath, const TCHAR* Function, const TCHAR* Title, const TCHAR* Category, const TCHAR* Keywords, bool bPure = false)
	{
		FZorvekMCPBridgeNodeAction Action = MakeAction(EZorvekMCPBridgeNodeSpawnKind::CallFunction, Title, Category, Keywords);
		Action.Request.ClassPath = ClassPath;
		Action.Request.FunctionName = Function;
		Action.NodeKind = EZorvekMCPBridgeNodeKind::FunctionCall;
		Action.bPure = bPure;
		return Action;
	}

	FZorvekMCPBridgeNodeAction MakeMacro(const TCHAR* Macro, const TCHAR* Title)
	{
		FZorvekMCPBridgeNodeAction Action = MakeAction(EZorvekMCPBridgeNodeSpawnKind::MacroInstance, Title, TEXT("Utilities|Flow Control"), TEXT(" "));
		Action.Request.MacroLibraryPath = TEXT("/Engine/EditorBlueprintResources/StandardMacros");
		Action.Request.MacroName = Macro;
		return Action;
	}

	FZorvekMCPBridgeNodeAction MakeCast(const TCHAR* ClassPath, const TCHAR* Title)
	{
		FZorvekMCPBridgeNodeAction Action = MakeAction(EZorvekMCPBridgeNodeSpawnKind::DynamicCast, Title, TEXT("Utilities|Casting"), TEXT(" "));
		Action.Request.ClassPath = ClassPath;
		return Action;
	}

	FZorvekMCPBridgeNodeAction MakeVariable(bool bSet, const TCHAR* Name, const TCHAR* OwnerClassPath, bool bFromBlueprint)
	{
		const FString Title = FString::Printf(TEXT("%s %s"), bSet ? TEXT("Set") : TEXT("Get"), Name);
		FZorvekMCPBridgeNodeAction Action = MakeAction(bSet ? EZorvekMCPBridgeNodeSpawnKind::VariableSet : EZorvekMCPBridgeNodeSpawnKind::VariableGet, *Title, TEXT("Variables|Default"), TEXT(" "));
		Action.Request.VariableName = Name;
		Action.Request.OwnerClassPath = OwnerClassPath;
		Action.bFromBlueprint = bFromBlueprint;
		Action.bPure = !bSet;
		return Action;
	}

	FZorvekMCPBridgeNodeAction MakeEvent(const TCHAR* Function, const TCHAR* Title, const TCHAR* ClassPath)
	{
		FZorvekMCPBridgeNodeAction Action = MakeAction(EZorvekMCPBridgeNodeSpawnKind::Event, Title, TEXT("Add Event"), TEXT(" "));
		Action.Request.FunctionName = Function;
		Action.Request.ClassPath = ClassPath;
		return Action;
	}

	// A small engine library: the function metadata (DisplayName, Category, Keywords) as the engine
	// declares it, menu titles as the action database makes them (unreal-behaviour-blueprints.md §9.4).
	TArray<FZorvekMCPBridgeNodeAction> MakeLibrary()
	{
		return {
			MakeAction(EZorvekMCPBridgeNodeSpawnKind::Branch, TEXT("Branch"), TEXT("Utilities|Flow Control"), TEXT("if")),
			MakeAction(EZorvekMCPBridgeNodeSpawnKind::Sequence, TEXT("Sequence"), TEXT("Utilities|Flow Control"), TEXT("then")),
			MakeCall(TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("PrintString"), TEXT("Print String"), TEXT("Development"), TEXT("log print")),
			MakeCall(TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("PrintText"), TEXT("Print Text"), TEXT("Development"), TEXT("log print")),
			MakeCall(TEXT("/Script/Engine.KismetSystemLibrary"), TEXT("Delay"), TEXT("Delay"), TEXT("Utilities|FlowControl"), TEXT("sleep")),
			MakeCall(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Add_IntInt"), TEXT("int + int"), TEXT("Math|Integer"), TEXT("+ add plus"), true),
			MakeCall(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Subtract_IntInt"), TEXT("int - int"), TEXT("Math|Integer"), TEXT("- subtract minus"), true),
			MakeCall(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Add_DoubleDouble"), TEXT("float + float"), TEXT("Math|Float"), TEXT("+ add plus"), true),
			MakeCall(TEXT("/Script/Engine.KismetMathLibrary"), TEXT("Less_DoubleDouble"), TEXT("float < float"), TEXT("Math|Float"), TEXT("< less"), true),
			MakeCall(TEXT("/Script/Engine.Actor"), TEXT("K2_SetActorLocation"), TEXT("Set Actor Location"), TEXT("Utilities|Transformation"), TEXT("position")),
			MakeCall(TEXT("/Script/Engine.Actor"), TEXT("K2_GetActorLocation"), TEXT("Get Actor Location"), TEXT("Utilities|Transformation"), TEXT("position"), true),
			MakeCast(TEXT("/Script/Engine.Character"), TEXT("Cast To Character")),
			MakeCast(TEXT("/Script/Engine.Pawn"), TEXT("Cast To Pawn")),
			MakeMacro(TEXT("DoOnce"), TEXT("Do Once")),
			MakeMacro(TEXT("Gate"), TEXT("Gate")),
			MakeMacro(TEXT("FlipFlop"), TEXT("Flip Flop")),
			MakeEvent(TEXT("ReceiveBeginPlay"), TEXT("Event BeginPlay"), TEXT("/Script/Engine.Actor")),
			// The engine lists an inherited event once per class that declares it.
			MakeEvent(TEXT("ReceiveBeginPlay"), TEXT("Event BeginPlay"), TEXT("/Script/Engine.ActorComponent")),
		};
	}

	// What an Actor Blueprint with a Health variable, a Heal function and an OnHit custom event adds.
	TArray<FZorvekMCPBridgeNodeAction> MakeScopedLibrary()
	{
		TArray<FZorvekMCPBridgeNodeAction> Actions = MakeLibrary();
		Actions.Add(MakeVariable(false, TEXT("Health"), TEXT(""), true));
		Actions.Add(MakeVariable(true, TEXT("Health"), TEXT(""), true));
		FZorvekMCPBridgeNodeAction Heal = MakeAction(EZorvekMCPBridgeNodeSpawnKind::CallBlueprintFunction, TEXT("Heal"), TEXT("Default"), TEXT(" "));
		Heal.Request.FunctionName = TEXT("Heal");
		Heal.bFromBlueprint = true;
		Actions.Add(Heal);
		FZorvekMCPBridgeNodeAction OnHit = MakeAction(EZorvekMCPBridgeNodeSpawnKind::CustomEventCall, TEXT("On Hit"), TEXT("Default"), TEXT(" "));
		OnHit.Request.EventName = TEXT("OnHit");
		OnHit.bFromBlueprint = true;
		Actions.Add(OnHit);
		return Actions;
	}

	std::string ResolvedId(const TArray<FZorvekMCPBridgeNodeAction>& Actions, const TCHAR* Query)
	{
		const FSpawnerResolution Resolution = Resolve(SearchActions(Actions, Query));
		return Resolution.bResolved ? S(Resolution.Best.SpawnerId) : "refused: " + S(Resolution.RejectedReason);
	}

	std::vector<std::string> RankedIds(const TArray<FZorvekMCPBridgeNodeAction>& Actions, const TCHAR* Query)
	{
		std::vector<std::string> Ids;
		for (const FSpawnerMatch& Match : SearchActions(Actions, Query).Matches)
		{
			Ids.push_back(S(Match.SpawnerId));
		}
		return Ids;
	}
}

TEST(NodeSpawnerCatalogue, TheIssueRequestsResolveAsAUserExpects)
{
	const TArray<FZorvekMCPBridgeNodeAction> Library = MakeLibrary();
	EXPECT_EQ(ResolvedId(Library, TEXT("print string")), "func::/Script/Engine.KismetSystemLibrary:PrintString");
	EXPECT_EQ(ResolvedId(Library, TEXT("branch")), "node::branch");
	EXPECT_EQ(ResolvedId(Library, TEXT("add int")), "func::/Script/Engine.KismetMathLibrary:Add_IntInt");
	EXPECT_EQ(ResolvedId(Library, TEXT("cast to Character")), "cast::/Script/Engine.Character");
	EXPECT_EQ(ResolvedId(Library, TEXT("do once")), "macro::/Engine/EditorBlueprintResources/StandardMacros:DoOnce");
	EXPECT_EQ(ResolvedId(MakeScopedLibrary(), TEXT("get Health")), "var_get::Health");
	// Without the Blueprint its variable is not in the catalogue.
	EXPECT_EQ(ResolvedId(Library, TEXT("get Health")), "refused: no_high_confidence_candidate");
}

TEST(NodeSpawnerCatalogue, CaseBlanksUnderscoresAndK2NamesDoNotMatter)
{
	const TArray<FZorvekMCPBridgeNodeAction> Library = MakeLibrary();
	for (const TCHAR* Query : {TEXT("PRINT STRING"), TEXT("printstring"), TEXT("Print_String"), TEXT("PrintString"), TEXT("  print   string ")})
	{
		EXPECT_EQ(ResolvedId(Library, Query), "func::/Script/Engine.KismetSystemLibrary:PrintString") << S(Query);
	}
	for (const TCHAR* Query : {TEXT("K2_SetActorLocation"), TEXT("SetActorLocation"), TEXT("set actor location"), TEXT("k2 set actor location")})
	{
		EXPECT_EQ(ResolvedId(Library, Query), "func::/Script/Engine.Actor:K2_SetActorLocation") << S(Query);
	}
	EXPECT_EQ(ResolvedId(Library, TEXT("DoOnce")), "macro::/Engine/EditorBlueprintResources/StandardMacros:DoOnce");
	EXPECT_EQ(ResolvedId(Library, TEXT("FLIP flop")), "macro::/Engine/EditorBlueprintResources/StandardMacros:FlipFlop");
	// A spawner id is a request too, in any case of its prefix.
	EXPECT_EQ(ResolvedId(Library, TEXT("NODE::Sequence")), "node::sequence");
}

TEST(NodeSpawnerCatalogue, OperatorTitlesAreFoundByTheirWordsWithoutConfusingTheOperators)
{
	const TArray<FZorvekMCPBridgeNodeAction> Library = MakeLibrary();
	EXPECT_EQ(ResolvedId(Library, TEXT("int + int")), "func::/Script/Engine.KismetMathLibrary:Add_IntInt");
	EXPECT_EQ(ResolvedId(Library, TEXT("int - int")), "func::/Script/Engine.KismetMathLibrary:Subtract_IntInt");
	EXPECT_EQ(ResolvedId(Library, TEXT("subtract int")), "func::/Script/Engine.KismetMathLibrary:Subtract_IntInt");
	EXPECT_EQ(ResolvedId(Library, TEXT("plus float")), "func::/Script/Engine.KismetMathLibrary:Add_DoubleDouble");
	EXPECT_EQ(ResolvedId(Library, TEXT("less float")), "func::/Script/Engine.KismetMathLibrary:Less_DoubleDouble");

	// "add int" ranks int + int above float + float (which lacks int) and int - int (no add).
	const std::vector<std::string> Ranked = RankedIds(Library, TEXT("add int"));
	ASSERT_FALSE(Ranked.empty());
	EXPECT_EQ(Ranked[0], "func::/Script/Engine.KismetMathLibrary:Add_IntInt");
	const FSpawnerSearch Found = SearchActions(Library, TEXT("add int"));
	EXPECT_EQ(S(Found.Matches[0].MatchReason), "title_words");
	EXPECT_EQ(Found.Matches[0].Score, 90);
}

TEST(NodeSpawnerCatalogue, TiersRankTitleThenNamesThenKeywordsThenCategory)
{
	TArray<FZorvekMCPBridgeNodeAction> Actions = {
		MakeCall(TEXT("/Script/Fx.Lib"), TEXT("Glow"), TEXT("Glow"), TEXT("Effects|Spark"), TEXT(" ")),
		MakeCall(TEXT("/Script/Fx.Lib"), TEXT("Flash"), TEXT("Flash"), TEXT("Effects"), TEXT("spark glow")),
		MakeCall(TEXT("/Script/Fx.Lib"), TEXT("EmitSparkNow"), TEXT("Emit"), TEXT("Effects"), TEXT(" ")),
		MakeCall(TEXT("/Script/Fx.Lib"), TEXT("SparkBurst"), TEXT("Spark Burst"), TEXT("Effects"), TEXT(" ")),
		MakeCall(TEXT("/Script/Fx.Lib"), TEXT("Spark"), TEXT("Spark"), TEXT("Effects"), TEXT(" ")),
		MakeCall(TEXT("/Script/Fx.Lib"), TEXT("Ignite"), TEXT("Ignite"), TEXT("Effects"), TEXT(" ")),
	};
	const FSpawnerSearch Found = SearchActions(Actions, TEXT("spark"));
	std::vector<std::string> Order;
	for (const FSpawnerMatch& Match : Found.Matches)
	{
		Order.push_back(S(Match.Action.Title) + "/" + S(Match.MatchReason));
	}
	EXPECT_EQ(Order, (std::vector<std::string>{"Spark/exact_title", "Spark Burst/title_words", "Emit/name_words", "Flash/keywords", "Glow/category"}));
	for (int32 Index = 1; Index < Found.Matches.Num(); ++Index)
	{
		EXPECT_LT(Found.Matches[Index].Score, Found.Matches[Index - 1].Score);
	}

	// Within a tier, every title word the request left out costs a point.
	const FSpawnerSearch Burst = SearchActions(Actions, TEXT("burst"));
	const FSpawnerSearch SparkBurst = SearchActions(Actions, TEXT("spark burst"));
	ASSERT_FALSE(Burst.Matches.IsEmpty());
	ASSERT_FALSE(SparkBurst.Matches.IsEmpty());
	EXPECT_EQ(Burst.Matches[0].Score + 1, 90);
	EXPECT_EQ(SparkBurst.Matches[0].Score, 100);
}

TEST(NodeSpawnerCatalogue, EqualScoresKeepOneOrderWhateverTheListOrder)
{
	TArray<FZorvekMCPBridgeNodeAction> Actions = {
		MakeCall(TEXT("/Script/Fx.Lib"), TEXT("SparkBurst"), TEXT("Spark Burst"), TEXT("Effects"), TEXT(" ")),
		MakeCall(TEXT("/Script/Fx.Lib"), TEXT("SparkArc"), TEXT("Spark Arc"), TEXT("Effects"), TEXT(" ")),
		MakeCall(TEXT("/Script/Fx.Lib"), TEXT("SparkBolt"), TEXT("Spark Bolt"), TEXT("Effects"), TEXT(" ")),
	};
	const std::vector<std::string> Expected = {"func::/Script/Fx.Lib:SparkArc", "func::/Script/Fx.Lib:SparkBolt", "func::/Script/Fx.Lib:SparkBurst"};
	EXPECT_EQ(RankedIds(Actions, TEXT("spark")), Expected);
	std::swap(Actions[0], Actions[2]);
	EXPECT_EQ(RankedIds(Actions, TEXT("spark")), Expected);
}

TEST(NodeSpawnerCatalogue, TiesAreRefusedListingTheTiedCandidates)
{
	const FSpawnerResolution Print = Resolve(SearchActions(MakeLibrary(), TEXT("print")));
	EXPECT_FALSE(Print.bResolved);
	EXPECT_EQ(S(Print.RejectedReason), "ambiguous_equal_score_candidates");
	EXPECT_EQ(S(Print.Confidence), "low");
	ASSERT_GE(Print.Candidates.Num(), 2);
	EXPECT_EQ(Print.Candidates[0].Score, Print.Candidates[1].Score);
	const FString Reasons = FString::Join(Print.Reasons, TEXT(" "));
	EXPECT_TRUE(Reasons.Contains(TEXT("func::/Script/Engine.KismetSystemLibrary:PrintString"))) << S(Reasons);
	EXPECT_TRUE(Reasons.Contains(TEXT("func::/Script/Engine.KismetSystemLibrary:PrintText"))) << S(Reasons);

	// "health" names the Get and the Set of the variable equally.
	EXPECT_EQ(ResolvedId(MakeScopedLibrary(), TEXT("health")), "refused: ambiguous_equal_score_candidates");
}

TEST(NodeSpawnerCatalogue, WeakOrMissingMatchesAreRefused)
{
	const FSpawnerResolution Keyword = Resolve(SearchActions(MakeLibrary(), TEXT("sleep")));
	EXPECT_FALSE(Keyword.bResolved);
	EXPECT_EQ(S(Keyword.RejectedReason), "no_high_confidence_candidate");
	ASSERT_EQ(Keyword.Candidates.Num(), 1);
	EXPECT_EQ(S(Keyword.Candidates[0].MatchReason), "keywords");

	const FSpawnerResolution Nothing = Resolve(SearchActions(MakeLibrary(), TEXT("teleport sideways")));
	EXPECT_FALSE(Nothing.bResolved);
	EXPECT_EQ(S(Nothing.RejectedReason), "no_candidates");
	EXPECT_EQ(S(Nothing.Confidence), "none");
	EXPECT_EQ(Nothing.CandidateCount, 0);
}

TEST(NodeSpawnerCatalogue, TheBlueprintsOwnActionWinsATieWithTheLibrary)
{
	TArray<FZorvekMCPBridgeNodeAction> Actions = MakeScopedLibrary();
	// A library class with a member of the same name.
	Actions.Insert(MakeVariable(false, TEXT("Health"), TEXT("/Script/Game.Creature"), false), 0);
	const FSpawnerResolution Resolution = Resolve(SearchActions(Actions, TEXT("get health")));
	ASSERT_TRUE(Resolution.bResolved);
	EXPECT_EQ(S(Resolution.Best.SpawnerId), "var_get::Health");
	EXPECT_EQ(S(Resolution.Confidence), "high");
	EXPECT_TRUE(FString::Join(Resolution.Reasons, TEXT(" ")).Contains(TEXT("var_get::Health:/Script/Game.Creature")));

	// The library's member stays reachable by its own id.
	EXPECT_EQ(ResolvedId(Actions, TEXT("var_get::Health:/Script/Game.Creature")), "var_get::Health:/Script/Game.Creature");
	EXPECT_EQ(ResolvedId(Actions, TEXT("custom_event_call::OnHit")), "custom_event_call::OnHit");
	EXPECT_EQ(ResolvedId(Actions, TEXT("heal")), "bp_func::Heal");
}

TEST(NodeSpawnerCatalogue, EachIdIsListedOnceAndAnEmptyQueryListsEverything)
{
	const TArray<FZorvekMCPBridgeNodeAction> Library = MakeLibrary();
	const std::vector<std::string> BeginPlay = RankedIds(Library, TEXT("begin play"));
	EXPECT_EQ(std::count(BeginPlay.begin(), BeginPlay.end(), "event::ReceiveBeginPlay"), 1);

	const FSpawnerSearch All = SearchActions(MakeScopedLibrary(), TEXT(""));
	EXPECT_EQ(All.LibraryActionCount, Library.Num());
	EXPECT_EQ(All.BlueprintActionCount, 4);
	// Every distinct id once: the library less its second BeginPlay, plus the Blueprint's four.
	EXPECT_EQ(All.Matches.Num(), Library.Num() - 1 + 4);
	EXPECT_EQ(S(All.Matches[0].MatchReason), "listed");
	EXPECT_TRUE(All.Matches[0].Action.bFromBlueprint);
}

TEST(NodeSpawnerCatalogue, TheLibraryIndexIsBuiltOnceAndRebuiltWhenTheLibraryChanges)
{
	TArray<FZorvekMCPBridgeNodeAction> Actions = MakeScopedLibrary();
	SearchActions(Actions, TEXT("branch"));
	const int32 Builds = GetLibraryIndexBuildCount();
	SearchActions(Actions, TEXT("print string"));
	SearchActions(Actions, TEXT("gate"));
	EXPECT_EQ(GetLibraryIndexBuildCount(), Builds);

	// The Blueprint's own actions are not part of the cached index: a new member is found at once.
	Actions.Add(MakeVariable(false, TEXT("Stamina"), TEXT(""), true));
	EXPECT_EQ(ResolvedId(Actions, TEXT("get stamina")), "var_get::Stamina");
	EXPECT_EQ(GetLibraryIndexBuildCount(), Builds);

	// A library action that changes is seen, not served from the stale index.
	Actions[0].Title = TEXT("If Then Else");
	EXPECT_EQ(ResolvedId(Actions, TEXT("if then else")), "node::branch");
	EXPECT_EQ(GetLibraryIndexBuildCount(), Builds + 1);
	Actions.RemoveAt(0);
	EXPECT_EQ(ResolvedId(Actions, TEXT("if then else")), "refused: no_candidates");
	EXPECT_EQ(GetLibraryIndexBuildCount(), Builds + 2);
}
