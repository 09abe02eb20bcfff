// blueprint_search_project against the sample project: a hit of every kind with its place, words
// and ranking, folders, types, limits, the load cap, a Blueprint that does not load, argument
// refusals, and next-tool arguments that blueprint_read_graph accepts as they are.
#include "AssetTestSupport.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintProjectSearch.h"

#include <algorithm>
#include <map>
#include <set>

namespace
{
	using namespace ZorvekAssetTests;
	using namespace ZorvekMCPBridgeBlueprintProjectSearch;

	const TCHAR* const ShowcaseAssetPath = TEXT("/Game/Blueprints/BP_Showcase.BP_Showcase");

	// One hit as the tests compare it.
	struct FHit
	{
		std::string MatchKind;
		std::string AssetName;
		std::string GraphName;
		std::string Quality;
		std::string MatchedText;
		bool bHasNode = false;
	};

	class FBlueprintProjectSearchTest : public ::testing::Test
	{
	protected:
		void SetUp() override
		{
			Port = LoadSampleProject();
			Runner = MakeUnique<FToolRunner>(Port);
		}

		TSharedPtr<FJsonObject> Call(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			return Runner->Call(TEXT("blueprint_search_project"), Arguments(Fields));
		}

		// The payload of a search that must succeed.
		TSharedPtr<FJsonObject> Search(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			const TSharedPtr<FJsonObject> Result = Call(Fields);
			EXPECT_FALSE(FToolRunner::IsError(Result)) << S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
			const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
			return Payload.IsValid() ? Payload : MakeShared<FJsonObject>();
		}

		static std::vector<FHit> Hits(const TSharedPtr<FJsonObject>& Payload)
		{
			std::vector<FHit> Result;
			for (const TSharedPtr<FJsonValue>& Value : Payload->GetArrayField(TEXT("results")))
			{
				const TSharedPtr<FJsonObject> Hit = Value->AsObject();
				FString GraphName;
				Hit->TryGetStringField(TEXT("graph_name"), GraphName);
				Result.push_back({S(Hit->GetStringField(TEXT("match_kind"))), S(Hit->GetStringField(TEXT("asset_name"))), S(GraphName),
					S(Hit->GetStringField(TEXT("match_quality"))), S(Hit->GetStringField(TEXT("matched_text"))), Hit->HasField(TEXT("node_guid"))});
			}
			return Result;
		}

		static std::vector<std::string> Kinds(const TSharedPtr<FJsonObject>& Payload)
		{
			std::vector<std::string> Result;
			for (const FHit& Hit : Hits(Payload))
			{
				Result.push_back(Hit.MatchKind);
			}
			return Result;
		}

		static std::string Error(const TSharedPtr<FJsonObject>& Result)
		{
			EXPECT_TRUE(FToolRunner::IsError(Result));
			return S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
		}

		static TSharedPtr<FJsonValue> Strings(std::initializer_list<const TCHAR*> Values)
		{
			TArray<TSharedPtr<FJsonValue>> Array;
			for (const TCHAR* Value : Values)
			{
				Array.Add(MakeShared<FJsonValueString>(Value));
			}
			return MakeShared<FJsonValueArray>(Array);
		}

		TSharedPtr<FSimulatedEditorPort> Port;
		TUniquePtr<FToolRunner> Runner;
	};

	TEST_F(FBlueprintProjectSearchTest, FindsEachKindInsideShowcaseWithItsPlace)
	{
		struct FCase
		{
			const TCHAR* Query;
			const TCHAR* Types;
			std::string MatchKind;
			std::string GraphName;
			bool bNode;
		};
		const FCase Cases[] = {
			{TEXT("Combat"), TEXT("graph"), "graph", "Combat", false},
			{TEXT("DescribeScore"), TEXT("function"), "function", "DescribeScore", false},
			{TEXT("GetInteractionText"), TEXT("interface"), "interface_function", "GetInteractionText", false},
			{TEXT("OnHit"), TEXT("custom_event"), "custom_event", "Combat", true},
			{TEXT("greet"), TEXT("comment"), "comment", "EventGraph", true},
			{TEXT("Jump"), TEXT("node"), "node_title", "EventGraph", true},
			// PrintString's node title is "Print String": only its spawner id names the library.
			{TEXT("KismetSystemLibrary"), TEXT("node"), "spawner_id", "EventGraph", true},
			{TEXT("Interact"), TEXT("interface"), "interface_event", "EventGraph", true},
			{TEXT("BPI_Interactable"), TEXT("interface"), "interface", "", false},
			{TEXT("SpawnTransform"), TEXT("variable"), "variable", "", false},
			{TEXT("FollowCamera"), TEXT("component"), "component", "", false},
			{TEXT("SpringArmComponent"), TEXT("component"), "component_class", "", false},
		};
		for (const FCase& Case : Cases)
		{
			const TSharedPtr<FJsonObject> Payload = Search({{TEXT("Query"), Text(Case.Query)}, {TEXT("Types"), Text(Case.Types)},
				{TEXT("PackagePaths"), Text(TEXT("/Game/Blueprints"))}});
			const std::vector<FHit> Found = Hits(Payload);
			ASSERT_FALSE(Found.empty()) << S(Case.Query);
			const FHit& First = Found[0];
			EXPECT_EQ(First.MatchKind, Case.MatchKind) << S(Case.Query);
			EXPECT_EQ(First.AssetName, "BP_Showcase") << S(Case.Query);
			EXPECT_EQ(First.GraphName, Case.GraphName) << S(Case.Query);
			EXPECT_EQ(First.bHasNode, Case.bNode) << S(Case.Query);
			EXPECT_EQ(S(Payload->GetArrayField(TEXT("results"))[0]->AsObject()->GetStringField(TEXT("asset_path"))), S(ShowcaseAssetPath));
		}
	}

	TEST_F(FBlueprintProjectSearchTest, RegistryHitsNeedNoLoadingAndNameTheParentClass)
	{
		// Names only: answered from the registry, so the Blueprint behind no package fails nothing.
		const TSharedPtr<FJsonObject> ByName = Search({{TEXT("Query"), Text(TEXT("retired"))}, {TEXT("Types"), Text(TEXT("blueprint"))}});
		EXPECT_EQ(Kinds(ByName), std::vector<std::string>({"blueprint_name"}));
		EXPECT_EQ(S(ByName->GetArrayField(TEXT("results"))[0]->AsObject()->GetStringField(TEXT("asset_path"))), "/Game/Legacy/BP_Retired.BP_Retired");
		EXPECT_FALSE(ByName->GetBoolField(TEXT("content_searched")));
		EXPECT_EQ(ByName->GetIntegerField(TEXT("loaded_blueprint_count")), 0);
		EXPECT_TRUE(ByName->GetArrayField(TEXT("partial_failures")).IsEmpty());

		// The ParentClass tag is export text (unreal-api-editor.md §7.2); a Blueprint without
		// parent and the interface Blueprint do not derive from Actor.
		const TSharedPtr<FJsonObject> ByParent = Search({{TEXT("Query"), Text(TEXT("actor"))}, {TEXT("Types"), Text(TEXT("blueprint"))}});
		std::vector<std::string> Names;
		for (const FHit& Hit : Hits(ByParent))
		{
			EXPECT_EQ(Hit.MatchKind, "parent_class") << Hit.AssetName;
			EXPECT_EQ(Hit.MatchedText, "Actor");
			Names.push_back(Hit.AssetName);
		}
		EXPECT_EQ(Names, std::vector<std::string>({"BP_Hero", "BP_Companion", "BP_Showcase", "BP_ForestTree"}));
	}

	TEST_F(FBlueprintProjectSearchTest, BlueprintParentsAreKnownByTheirBlueprintName)
	{
		Port = LoadInlineProject(TEXT(R"json("include": ["BlueprintEngineTypes.json"], "assets": [
			{"package": "/Game/Kin/BP_Base", "blueprint": {"parent": "/Script/Engine.Actor"}},
			{"package": "/Game/Kin/BP_Child", "blueprint": {"parent": "/Game/Kin/BP_Base.BP_Base_C"}}])json"), nullptr, false);
		ASSERT_TRUE(Port.IsValid());
		Runner = MakeUnique<FToolRunner>(Port);
		const TSharedPtr<FJsonObject> Payload = Search({{TEXT("Query"), Text(TEXT("bp base"))}, {TEXT("Types"), Text(TEXT("blueprint"))}});
		const std::vector<FHit> Found = Hits(Payload);
		ASSERT_EQ(Found.size(), 2u);
		EXPECT_EQ(Found[0].AssetName, "BP_Base");
		EXPECT_EQ(Found[0].MatchKind, "blueprint_name");
		EXPECT_EQ(Found[1].AssetName, "BP_Child");
		EXPECT_EQ(Found[1].MatchKind, "parent_class");
		EXPECT_EQ(Found[1].MatchedText, "BP_Base");
	}

	TEST_F(FBlueprintProjectSearchTest, EveryWordMustBeInOneTextInAnyOrderWithoutCaseBlanksOrK2)
	{
		EXPECT_EQ(Hits(Search({{TEXT("Query"), Text(TEXT("begin play"))}, {TEXT("Types"), Text(TEXT("node"))}}))[0].MatchedText, "Event BeginPlay");
		EXPECT_EQ(Hits(Search({{TEXT("Query"), Text(TEXT("PLAY begin"))}, {TEXT("Types"), Text(TEXT("node"))}}))[0].MatchedText, "Event BeginPlay");
		// Both words are in the graph, but in no one text.
		EXPECT_TRUE(Hits(Search({{TEXT("Query"), Text(TEXT("begin jump"))}})).empty());

		// The engine's K2_ name and the title's words are one text for the matcher.
		const std::vector<FHit> Move = Hits(Search({{TEXT("Query"), Text(TEXT("K2_SetActorLocation"))}, {TEXT("Types"), Text(TEXT("node"))}}));
		ASSERT_EQ(Move.size(), 1u);
		EXPECT_EQ(Move[0].Quality, "exact");
		EXPECT_EQ(Move[0].MatchKind, "node_title");
	}

	TEST_F(FBlueprintProjectSearchTest, ExactBeforePrefixBeforeContainedAndTheSameOrderEveryTime)
	{
		const TSharedPtr<FJsonObject> Payload = Search({{TEXT("Query"), Text(TEXT("health"))}});
		const std::vector<FHit> Found = Hits(Payload);
		const std::vector<std::string> Order = {"exact", "prefix", "contains"};
		size_t LastRank = 0;
		bool bSawVariable = false;
		bool bSawMaxHealth = false;
		for (const FHit& Hit : Found)
		{
			const size_t Rank = static_cast<size_t>(std::find(Order.begin(), Order.end(), Hit.Quality) - Order.begin());
			EXPECT_GE(Rank, LastRank) << Hit.MatchKind << " " << Hit.MatchedText;
			LastRank = Rank;
			bSawVariable = bSawVariable || (Hit.MatchKind == "variable" && Hit.AssetName == "BP_Showcase" && Hit.Quality == "exact");
			bSawMaxHealth = bSawMaxHealth || (Hit.MatchedText == "MaxHealth" && Hit.Quality == "contains");
		}
		EXPECT_TRUE(bSawVariable);
		EXPECT_TRUE(bSawMaxHealth);
		EXPECT_EQ(Found.front().Quality, "exact");

		const std::vector<FHit> Again = Hits(Search({{TEXT("Query"), Text(TEXT("health"))}}));
		ASSERT_EQ(Again.size(), Found.size());
		for (size_t Index = 0; Index < Found.size(); ++Index)
		{
			EXPECT_EQ(Again[Index].MatchedText + Again[Index].GraphName, Found[Index].MatchedText + Found[Index].GraphName);
		}
	}

	TEST_F(FBlueprintProjectSearchTest, PackagePathsNarrowTheScanAndTypesTheHits)
	{
		const TSharedPtr<FJsonObject> Heroes = Search({{TEXT("Query"), Text(TEXT("follow"))}, {TEXT("PackagePaths"), Strings({TEXT("/Game/Heroes/")})}});
		EXPECT_EQ(Heroes->GetIntegerField(TEXT("scanned_blueprint_count")), 1);
		EXPECT_EQ(Kinds(Heroes), std::vector<std::string>({"variable"}));
		EXPECT_EQ(S(Heroes->GetArrayField(TEXT("package_paths"))[0]->AsString()), "/Game/Heroes");

		// One text with two folders; a folder's name is not a prefix of its neighbour's.
		const TSharedPtr<FJsonObject> Two = Search({{TEXT("Query"), Text(TEXT("bp"))}, {TEXT("Types"), Text(TEXT("blueprint"))},
			{TEXT("PackagePaths"), Text(TEXT("/Game/Heroes, /Game/Interfaces"))}});
		EXPECT_EQ(Two->GetIntegerField(TEXT("scanned_blueprint_count")), 2);
		EXPECT_EQ(Search({{TEXT("Query"), Text(TEXT("bp"))}, {TEXT("PackagePaths"), Text(TEXT("/Game/Hero"))}})->GetIntegerField(TEXT("scanned_blueprint_count")), 0);

		// Health is a variable, a variable node's reference and a title; only the asked types come.
		const std::vector<std::string> Variables = Kinds(Search({{TEXT("Query"), Text(TEXT("health"))}, {TEXT("Types"), Strings({TEXT("Variable")})}}));
		EXPECT_EQ(Variables, std::vector<std::string>({"variable", "variable"}));
		for (const std::string& Kind : Kinds(Search({{TEXT("Query"), Text(TEXT("health"))}, {TEXT("Types"), Text(TEXT("node, comment"))}})))
		{
			EXPECT_TRUE(Kind == "node_title" || Kind == "variable_reference") << Kind;
		}
	}

	TEST_F(FBlueprintProjectSearchTest, LimitCutsTheRankedListAndTheLoadCapIsReported)
	{
		const TSharedPtr<FJsonObject> Limited = Search({{TEXT("Query"), Text(TEXT("health"))}, {TEXT("Limit"), Text(TEXT("2"))}});
		EXPECT_EQ(Limited->GetIntegerField(TEXT("result_count")), 2);
		EXPECT_GT(Limited->GetIntegerField(TEXT("total_match_count")), 2);
		EXPECT_TRUE(Limited->GetBoolField(TEXT("results_truncated")));
		EXPECT_EQ(Search({{TEXT("Query"), Text(TEXT("health"))}, {TEXT("Limit"), Number(100000)}})->GetIntegerField(TEXT("limit")), MaxLimit);

		// The first Blueprint under /Game in registry order is BP_Hero: Showcase is never opened.
		const TSharedPtr<FJsonObject> Capped = Search({{TEXT("Query"), Text(TEXT("OnHit"))}, {TEXT("MaxBlueprints"), Number(1)}});
		EXPECT_EQ(Capped->GetIntegerField(TEXT("loaded_blueprint_count")), 1);
		EXPECT_TRUE(Capped->GetBoolField(TEXT("content_scan_truncated")));
		EXPECT_EQ(Capped->GetIntegerField(TEXT("content_skipped_blueprint_count")), Capped->GetIntegerField(TEXT("scanned_blueprint_count")) - 1);
		EXPECT_TRUE(Hits(Capped).empty());
		const TSharedPtr<FJsonObject> Whole = Search({{TEXT("Query"), Text(TEXT("OnHit"))}});
		EXPECT_FALSE(Whole->GetBoolField(TEXT("content_scan_truncated")));
		EXPECT_EQ(Kinds(Whole), std::vector<std::string>({"custom_event"}));
	}

	TEST_F(FBlueprintProjectSearchTest, ABlueprintThatDoesNotLoadIsAPartialFailureAndTheOthersStillAnswer)
	{
		const TSharedPtr<FJsonObject> Payload = Search({{TEXT("Query"), Text(TEXT("bp"))}, {TEXT("Types"), Text(TEXT("blueprint, variable"))}});
		bool bRetiredFailed = false;
		for (const TSharedPtr<FJsonValue>& Value : Payload->GetArrayField(TEXT("partial_failures")))
		{
			const TSharedPtr<FJsonObject> Failure = Value->AsObject();
			if (S(Failure->GetStringField(TEXT("asset_path"))) == "/Game/Legacy/BP_Retired.BP_Retired")
			{
				bRetiredFailed = true;
				EXPECT_EQ(S(Failure->GetStringField(TEXT("error"))), "Could not load Blueprint: /Game/Legacy/BP_Retired.BP_Retired");
				EXPECT_EQ(S(Failure->GetStringField(TEXT("reason"))), "failed_to_load_blueprint_for_project_search");
			}
		}
		EXPECT_TRUE(bRetiredFailed);
		// Its registry entry still answers by name, and the Blueprints after it are still read.
		bool bRetiredByName = false;
		for (const FHit& Hit : Hits(Payload))
		{
			bRetiredByName = bRetiredByName || (Hit.AssetName == "BP_Retired" && Hit.MatchKind == "blueprint_name");
		}
		EXPECT_TRUE(bRetiredByName);
		EXPECT_GT(Payload->GetIntegerField(TEXT("loaded_blueprint_count")), 3);
		EXPECT_FALSE(Call({{TEXT("Query"), Text(TEXT("bp"))}})->GetBoolField(TEXT("isError")));
	}

	TEST_F(FBlueprintProjectSearchTest, NextToolArgumentsWorkWhenPassedBackUnchanged)
	{
		// Showcase matches in its name, graphs, nodes and members; every hit's first next tool answers.
		const TSharedPtr<FJsonObject> Payload = Search({{TEXT("Query"), Text(TEXT("e"))}, {TEXT("Limit"), Number(MaxLimit)},
			{TEXT("PackagePaths"), Text(TEXT("/Game/Blueprints"))}});
		std::set<std::string> KindsSeen;
		// Many hits share their next call: each distinct call runs once.
		std::map<std::string, TSharedPtr<FJsonObject>> Answers;
		for (const TSharedPtr<FJsonValue>& Value : Payload->GetArrayField(TEXT("results")))
		{
			const TSharedPtr<FJsonObject> Hit = Value->AsObject();
			KindsSeen.insert(S(Hit->GetStringField(TEXT("match_kind"))));
			const TArray<TSharedPtr<FJsonValue>>& NextTools = Hit->GetArrayField(TEXT("recommended_next_tools"));
			ASSERT_FALSE(NextTools.IsEmpty());
			for (const TSharedPtr<FJsonValue>& NextValue : NextTools)
			{
				const TSharedPtr<FJsonObject> Next = NextValue->AsObject();
				const FString Tool = Next->GetStringField(TEXT("tool"));
				const TSharedPtr<FJsonObject> CallArguments = Next->GetObjectField(TEXT("arguments"));
				FString AssetArgument;
				FString BlueprintArgument;
				FString GraphArgument;
				CallArguments->TryGetStringField(TEXT("AssetNameOrPath"), AssetArgument);
				CallArguments->TryGetStringField(TEXT("BlueprintNameOrPath"), BlueprintArgument);
				CallArguments->TryGetStringField(TEXT("GraphName"), GraphArgument);
				const std::string Key = S(Tool + TEXT("|") + AssetArgument + TEXT("|") + BlueprintArgument + TEXT("|") + GraphArgument);
				TSharedPtr<FJsonObject>& Answer = Answers[Key];
				if (!Answer.IsValid())
				{
					Answer = Runner->Call(*Tool, CallArguments);
				}
				ASSERT_FALSE(FToolRunner::IsError(Answer)) << S(Tool) << " for " << S(Hit->GetStringField(TEXT("context")));
				FString NodeGuid;
				if (Tool == TEXT("blueprint_read_graph") && Hit->TryGetStringField(TEXT("node_guid"), NodeGuid))
				{
					// The graph read is the one that holds the node.
					EXPECT_TRUE(FToolRunner::Payload(Answer)->GetStringField(TEXT("raw_result")).Contains(NodeGuid)) << S(NodeGuid);
				}
			}
		}
		for (const char* Kind : {"blueprint_name", "graph", "function", "node_title", "variable", "component", "comment"})
		{
			EXPECT_TRUE(KindsSeen.count(Kind)) << Kind;
		}
	}

	TEST_F(FBlueprintProjectSearchTest, BadArgumentsAreRefusedWithTheirMessage)
	{
		const TSharedPtr<FJsonValue> Number7 = Number(7);
		struct FCase
		{
			TSharedPtr<FJsonObject> Arguments;
			std::string Message;
		};
		const std::string QueryText = "Query must be text: the words to find, for example print string or BP_Hero.";
		const std::string PathsForm = "PackagePaths must be an array of content folders or one folder text, for example [\"/Game/Blueprints\"].";
		const TSharedPtr<FJsonValue> Hero = Text(TEXT("hero"));
		const FCase Cases[] = {
			{Arguments({}), "blueprint_search_project requires Query."},
			{Arguments({{TEXT("Query"), Text(TEXT("   "))}}), "blueprint_search_project requires Query."},
			{Arguments({{TEXT("Query"), Text(TEXT("::"))}}), "Query '::' holds no letters or digits to search for."},
			{Arguments({{TEXT("Query"), Strings({TEXT("hero")})}}), QueryText},
			{Arguments({{TEXT("Query"), Hero}, {TEXT("PackagePaths"), Number7}}), PathsForm},
			{Arguments({{TEXT("Query"), Hero}, {TEXT("PackagePaths"), MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>{Number7})}}), PathsForm},
			{Arguments({{TEXT("Query"), Hero}, {TEXT("PackagePaths"), Text(TEXT("Game/Blueprints"))}}),
				"PackagePaths entries must be content folders such as /Game or /Game/Blueprints, got 'Game/Blueprints'."},
			{Arguments({{TEXT("Query"), Hero}, {TEXT("PackagePaths"), Strings({TEXT("/Game/Blueprints/BP_Hero.BP_Hero")})}}),
				"PackagePaths entries must be content folders such as /Game or /Game/Blueprints, got '/Game/Blueprints/BP_Hero.BP_Hero'."},
			{Arguments({{TEXT("Query"), Hero}, {TEXT("Types"), Text(TEXT("node, nodes"))}}),
				"Unknown Types word 'nodes'. Use any of: blueprint, graph, node, variable, component, comment, custom_event, interface, function."},
			{Arguments({{TEXT("Query"), Hero}, {TEXT("Types"), MakeShared<FJsonValueObject>(MakeShared<FJsonObject>())}}),
				"Types must be an array of type words or one comma-separated text of them: blueprint, graph, node, variable, component, comment, custom_event, interface, function."},
		};
		for (const FCase& Case : Cases)
		{
			const TSharedPtr<FJsonObject> Result = Runner->Call(TEXT("blueprint_search_project"), Case.Arguments);
			EXPECT_EQ(Error(Result), Case.Message);
			EXPECT_FALSE(Result->HasField(TEXT("structuredContent")));
		}
	}

	TEST(BlueprintProjectSearchMatching, ClassTagsInTheirExportTextForms)
	{
		// unreal-api-editor.md §7.2: native and Blueprint parents, and the short form of assets saved before 5.1.
		EXPECT_EQ(S(ParseClassTag(TEXT("/Script/CoreUObject.Class'/Script/Engine.Actor'"))), "/Script/Engine.Actor");
		EXPECT_EQ(S(ParseClassTag(TEXT("Class'/Script/Engine.Actor'"))), "/Script/Engine.Actor");
		EXPECT_EQ(S(GetClassDisplayName(ParseClassTag(TEXT("/Script/Engine.BlueprintGeneratedClass'/Game/Dir/BP_Base.BP_Base_C'")))), "BP_Base");
		// A native class whose name ends in _C keeps it.
		EXPECT_EQ(S(GetClassDisplayName(TEXT("/Script/Game.Thing_C"))), "Thing_C");
	}
}
