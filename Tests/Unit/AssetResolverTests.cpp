// Asset resolution over the sample project's registry, whose order is: BP_Hero, WBP_HeroHUD
// (a widget Blueprint), BP_Companion (in /Game/Heroes), T_M_Rock_D, T_Rock_Wet_D, M_Rock,
// MI_Rock_Wet, MI_Rock_Plain, M_Emissive, DA_LootTable, CR_Hero, CA_Hero, CV_HeroVariables,
// ST_Director, ST_Cooked, M_Broken, BP_Retired.
#include "AssetTestSupport.h"
#include "Assets/ZorvekMCPBridgeAssetResolver.h"

using namespace ZorvekAssetTests;
using namespace ZorvekMCPBridgeAssets;

namespace
{
	struct FResolved
	{
		TSharedPtr<FJsonObject> Object;
		FString BestPath;
		FString Error;
	};

	FResolved Resolve(FSimulatedEditorPort& Port, const TCHAR* Query, const TCHAR* Type, int32 Limit = DefaultResolveLimit)
	{
		FResolved Resolved;
		Resolved.Object = ResolveAssetQuery(Port.GetAssetRegistry(), Query, Type, Limit, Resolved.BestPath, Resolved.Error);
		return Resolved;
	}

	std::vector<std::string> CandidatePaths(const FResolved& Resolved)
	{
		return ToStd(Collect(Resolved.Object->GetArrayField(TEXT("candidates")), TEXT("asset_path")));
	}

	class AssetResolverTest : public ::testing::Test
	{
	protected:
		TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	};
}

TEST_F(AssetResolverTest, PathFormIsTrustedWithoutAskingTheRegistry)
{
	// Neither asset exists; type and limit do not matter.
	const FResolved ObjectPath = Resolve(*Port, TEXT("/Game/A/BP_X.BP_X"), TEXT("Material"), 0);
	EXPECT_EQ(S(ObjectPath.BestPath), "/Game/A/BP_X");
	EXPECT_TRUE(ObjectPath.Error.IsEmpty());
	EXPECT_EQ(S(ObjectPath.Object->GetStringField(TEXT("best_asset_path"))), "/Game/A/BP_X");
	const TArray<TSharedPtr<FJsonValue>>& Candidates = ObjectPath.Object->GetArrayField(TEXT("candidates"));
	ASSERT_EQ(Candidates.Num(), 1);
	EXPECT_EQ(Candidates[0]->Type, EJson::String);
	EXPECT_EQ(S(Candidates[0]->AsString()), "/Game/A/BP_X");
	EXPECT_FALSE(ObjectPath.Object->HasField(TEXT("count")));

	EXPECT_EQ(S(Resolve(*Port, TEXT("/Game/A/BP_X"), TEXT("Blueprint")).BestPath), "/Game/A/BP_X");
	EXPECT_EQ(S(Resolve(*Port, TEXT("/Game/A/Rig.Rig:Node.Inner"), TEXT("Any")).BestPath), "/Game/A/Rig");
}

TEST_F(AssetResolverTest, BlueprintFilterFindsNameAndFolderMatchesButNotBlueprintSubclasses)
{
	const FResolved Resolved = Resolve(*Port, TEXT("hero"), TEXT("Blueprint"));
	EXPECT_EQ(CandidatePaths(Resolved), (std::vector<std::string>{"/Game/Blueprints/BP_Hero", "/Game/Heroes/BP_Companion"}));
	EXPECT_EQ(Resolved.Object->GetIntegerField(TEXT("count")), 2);
	EXPECT_EQ(S(Resolved.BestPath), "/Game/Blueprints/BP_Hero");

	const TSharedPtr<FJsonObject> First = Resolved.Object->GetArrayField(TEXT("candidates"))[0]->AsObject();
	EXPECT_EQ(S(First->GetStringField(TEXT("object_path"))), "/Game/Blueprints/BP_Hero.BP_Hero");
	EXPECT_EQ(S(First->GetStringField(TEXT("asset_name"))), "BP_Hero");
	EXPECT_EQ(S(First->GetStringField(TEXT("class"))), "/Script/Engine.Blueprint");

	// Any other word, known or not, restricts nothing: the widget and camera assets come in.
	for (const TCHAR* Type : {TEXT("Any"), TEXT("Widget"), TEXT("")})
	{
		EXPECT_EQ(CandidatePaths(Resolve(*Port, TEXT("hero"), Type)), (std::vector<std::string>{"/Game/Blueprints/BP_Hero", "/Game/UI/WBP_HeroHUD", "/Game/Heroes/BP_Companion",
			"/Game/Cameras/CR_Hero", "/Game/Cameras/CA_Hero", "/Game/Cameras/CV_HeroVariables"}));
	}
	EXPECT_EQ(CandidatePaths(Resolve(*Port, TEXT("hero"), TEXT("bLuEpRiNt"))).size(), 2u);
}

TEST_F(AssetResolverTest, FirstRegistryHitWinsWithoutRanking)
{
	// The texture is listed before the material whose name it contains.
	const FResolved Resolved = Resolve(*Port, TEXT("M_Rock"), TEXT("material"));
	EXPECT_EQ(S(Resolved.BestPath), "/Game/Textures/T_M_Rock_D");
	EXPECT_EQ(CandidatePaths(Resolved), (std::vector<std::string>{"/Game/Textures/T_M_Rock_D", "/Game/Materials/M_Rock"}));
	// Case is ignored on both sides.
	EXPECT_EQ(S(Resolve(*Port, TEXT("bp_HERO"), TEXT("Blueprint")).BestPath), "/Game/Blueprints/BP_Hero");
}

TEST_F(AssetResolverTest, LimitIsTestedAfterEachCandidate)
{
	EXPECT_EQ(CandidatePaths(Resolve(*Port, TEXT("hero"), TEXT("Any"), 0)), (std::vector<std::string>{"/Game/Blueprints/BP_Hero"}));
	EXPECT_EQ(CandidatePaths(Resolve(*Port, TEXT("hero"), TEXT("Any"), -5)).size(), 1u);
	const FResolved Three = Resolve(*Port, TEXT("hero"), TEXT("Any"), 3);
	EXPECT_EQ(CandidatePaths(Three), (std::vector<std::string>{"/Game/Blueprints/BP_Hero", "/Game/UI/WBP_HeroHUD", "/Game/Heroes/BP_Companion"}));
	EXPECT_EQ(Three.Object->GetIntegerField(TEXT("count")), 3);
	EXPECT_EQ(CandidatePaths(Resolve(*Port, TEXT("hero"), TEXT("Any"), 100)).size(), 6u);
}

TEST_F(AssetResolverTest, EmptyAndUnmatchedQueriesFailWithTheirMessages)
{
	const FResolved Empty = Resolve(*Port, TEXT(""), TEXT("Blueprint"));
	EXPECT_EQ(S(Empty.Error), "Asset name or path is required.");
	EXPECT_TRUE(Empty.BestPath.IsEmpty());
	TArray<FString> Keys;
	Empty.Object->Values.GetKeys(Keys);
	EXPECT_EQ(ToStd(Keys), (std::vector<std::string>{"query", "type", "error"}));

	// A blank is not trimmed away: it is searched for, and nothing has one in its name.
	const FResolved Blank = Resolve(*Port, TEXT(" "), TEXT("Any"));
	EXPECT_EQ(S(Blank.Error), "Could not resolve asset from query ' '.");
	EXPECT_EQ(S(Blank.Object->GetStringField(TEXT("query"))), " ");
	EXPECT_TRUE(Blank.Object->GetArrayField(TEXT("candidates")).IsEmpty());
	EXPECT_EQ(Blank.Object->GetIntegerField(TEXT("count")), 0);
	EXPECT_FALSE(Blank.Object->HasField(TEXT("best_asset_path")));

	// Only the Blueprint class itself passes the Blueprint filter, so the widget is not found.
	EXPECT_EQ(S(Resolve(*Port, TEXT("WBP_HeroHUD"), TEXT("Blueprint")).Error), "Could not resolve asset from query 'WBP_HeroHUD'.");
}

TEST(ClassQueryNormalization, StripsFillerWordsAndSeparatorsInOrder)
{
	EXPECT_EQ(S(NormalizeClassQuery(TEXT("MaterialExpressionAdd"))), "add");
	EXPECT_EQ(S(NormalizeClassQuery(TEXT(" Material Expression Add "))), "add");
	EXPECT_EQ(S(NormalizeClassQuery(TEXT("add node"))), "add");
	EXPECT_EQ(S(NormalizeClassQuery(TEXT("Linear_Interpolate-Node"))), "linearinterpolate");
	// "expression" is removed before "node", so a "node" splitting it leaves the word behind.
	EXPECT_EQ(S(NormalizeClassQuery(TEXT("ExpressNodeIon"))), "expression");
}

TEST(ClassNameScoring, FirstApplicableTestDecidesNotTheHighestScore)
{
	const TSharedPtr<FJsonObject> Lerp = MakeShared<FJsonObject>();
	Lerp->SetStringField(TEXT("class_name"), TEXT("MaterialExpressionLinearInterpolate"));
	Lerp->SetStringField(TEXT("display_name"), TEXT("Linear Interpolate"));
	Lerp->SetArrayField(TEXT("aliases"), TArray<TSharedPtr<FJsonValue>>{Number(7), Text(TEXT("Lerp"))});

	struct FCase
	{
		const TCHAR* Query;
		int32 Score;
		const char* Kind;
	};
	const FCase Cases[] = {
		{TEXT("MaterialExpressionLinearInterpolate"), 100, "exact_canonical_class"},
		{TEXT("materialexpressionlinearinterpolate"), 100, "exact_canonical_class"},
		{TEXT("Linear Interpolate node"), 98, "normalized_canonical_class"},
		{TEXT("lerp"), 94, "alias_exact"},
		{TEXT("interp"), 55, "substring_match"},
		{TEXT("ler"), 58, "alias_substring_match"},
		{TEXT("noise"), 0, "no_match"},
		{TEXT("  "), 1, "empty_query"},
		{TEXT("Material Expression"), 1, "empty_query"}};
	for (const FCase& Case : Cases)
	{
		FString Kind;
		EXPECT_EQ(ScoreClassNameMatch(Lerp, Case.Query, Kind), Case.Score) << S(Case.Query);
		EXPECT_EQ(S(Kind), Case.Kind) << S(Case.Query);
	}

	// A display-name hit is taken before an alias hit although the alias would score higher.
	const TSharedPtr<FJsonObject> Mask = MakeShared<FJsonObject>();
	Mask->SetStringField(TEXT("class_name"), TEXT("MaterialExpressionComponentMask"));
	Mask->SetStringField(TEXT("display_name"), TEXT("Mask"));
	Mask->SetArrayField(TEXT("aliases"), TArray<TSharedPtr<FJsonValue>>{Text(TEXT("Mask"))});
	FString Kind;
	EXPECT_EQ(ScoreClassNameMatch(Mask, TEXT("mask"), Kind), 92);
	EXPECT_EQ(S(Kind), "display_name_exact");

	// Likewise a class-name substring (55) before an alias substring (58).
	const TSharedPtr<FJsonObject> TexCoord = MakeShared<FJsonObject>();
	TexCoord->SetStringField(TEXT("class_name"), TEXT("MaterialExpressionTextureCoordinate"));
	TexCoord->SetStringField(TEXT("display_name"), TEXT("Texture Coordinate"));
	TexCoord->SetArrayField(TEXT("aliases"), TArray<TSharedPtr<FJsonValue>>{Text(TEXT("TexCoord"))});
	EXPECT_EQ(ScoreClassNameMatch(TexCoord, TEXT("tex"), Kind), 55);

	// No entry: score 0 and the kind is left as it was.
	Kind = TEXT("untouched");
	EXPECT_EQ(ScoreClassNameMatch(nullptr, TEXT("add"), Kind), 0);
	EXPECT_EQ(S(Kind), "untouched");
}

TEST(ClassNameScoring, EntryWithoutAliasesOrNamesScoresByWhatItHas)
{
	const TSharedPtr<FJsonObject> Add = MakeShared<FJsonObject>();
	Add->SetStringField(TEXT("class_name"), TEXT("MaterialExpressionAdd"));
	FString Kind;
	EXPECT_EQ(ScoreClassNameMatch(Add, TEXT("Add"), Kind), 98);
	EXPECT_EQ(S(Kind), "normalized_canonical_class");
	EXPECT_EQ(ScoreClassNameMatch(Add, TEXT("Multiply"), Kind), 0);
}
