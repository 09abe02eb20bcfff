// The node-spawner tools on the simulated editor: the catalogue of its class library and of a
// Blueprint, the pins and purity of results, ids that are the graph reader's ids for the node
// they make, resolution answers, and the composite's step report, choice of pin and roll-back,
// each refused call read back to show the graph as it was.
#include "BlueprintMemberTestSupport.h"
#include "Tools/ZorvekMCPBridgeNodeSpawnerTools.h"

using namespace ZorvekAssetTests;
using namespace ZorvekBlueprintMemberTests;

namespace
{
	const TCHAR* const SpawnerShowcasePath = TEXT("/Game/Blueprints/BP_Showcase.BP_Showcase");

	class FNodeSpawnerToolsTest : public FBlueprintMemberToolsTest
	{
	protected:
		void SetUp() override
		{
			FBlueprintMemberToolsTest::SetUp();
			Ok(CallOnHero(TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("Health"))}, {TEXT("Type"), Text(TEXT("int"))}}));
			Ok(CallOnHero(TEXT("blueprint_create_function"), {{TEXT("FunctionName"), Text(TEXT("Heal"))}}));
			const TSharedPtr<FJsonObject> Event = Ok(CallOnHero(TEXT("blueprint_add_custom_event"), {{TEXT("EventName"), Text(TEXT("OnHit"))}}));
			OnHitGuid = Event->GetStringField(TEXT("node_guid"));
		}

		TSharedPtr<FJsonObject> Find(const TCHAR* Query, bool bScoped, int32 Limit = 0)
		{
			TSharedPtr<FJsonObject> Args = Arguments({{TEXT("Query"), Text(Query)}});
			if (bScoped)
			{
				Args->SetStringField(TEXT("BlueprintNameOrPath"), HeroPath);
			}
			if (Limit > 0)
			{
				Args->SetNumberField(TEXT("Limit"), Limit);
			}
			return Ok(Call(TEXT("blueprint_find_node_spawners"), Args));
		}

		std::vector<std::string> FoundIds(const TCHAR* Query, bool bScoped)
		{
			std::vector<std::string> Ids;
			for (const FString& Id : Collect(Find(Query, bScoped)->GetArrayField(TEXT("spawners")), TEXT("spawner_id")))
			{
				Ids.push_back(S(Id));
			}
			return Ids;
		}

		TSharedPtr<FJsonObject> Resolve(const TCHAR* Query, const TCHAR* BlueprintPath = HeroPath)
		{
			return Ok(Call(TEXT("blueprint_resolve_node_spawner"), Arguments({{TEXT("Query"), Text(Query)}, {TEXT("BlueprintNameOrPath"), Text(BlueprintPath)}})));
		}

		// The event graph's nodes with their links, to compare before and after a call.
		std::string DescribeEventGraph()
		{
			const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read();
			const FZorvekMCPBridgeGraphSnapshot* Graph = FindGraph(Snapshot, TEXT("EventGraph"));
			std::string Text;
			for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph->Nodes)
			{
				Text += S(Node.NodeGuid) + " " + S(Node.Title) + " @" + std::to_string(Node.PosX) + "," + std::to_string(Node.PosY) + ":";
				for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.Pins)
				{
					for (const FZorvekMCPBridgePinLink& Link : Pin.LinkedTo)
					{
						Text += " " + S(Pin.Pin.PinName.ToString()) + "->" + S(Link.NodeGuid) + "." + S(Link.PinName.ToString());
					}
				}
				Text += "\n";
			}
			return Text;
		}

		// The node of the event graph with that GUID as blueprint_read_graph reports it.
		TSharedPtr<FJsonObject> ReadNode(const FString& NodeGuid)
		{
			const TSharedPtr<FJsonObject> Graph = Ok(CallOnHero(TEXT("blueprint_read_graph"), {{TEXT("GraphName"), Text(TEXT("EventGraph"))}}));
			for (const TSharedPtr<FJsonValue>& Value : Graph->GetObjectField(TEXT("parsed_graph"))->GetArrayField(TEXT("nodes")))
			{
				if (Value->AsObject()->GetStringField(TEXT("node_guid")).Equals(NodeGuid, ESearchCase::IgnoreCase))
				{
					return Value->AsObject();
				}
			}
			ADD_FAILURE() << "no node " << S(NodeGuid);
			return MakeShared<FJsonObject>();
		}

		TSharedPtr<FJsonObject> SearchAndConnect(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			return CallOnHero(TEXT("blueprint_add_node_by_search_and_connect"), Fields);
		}

		static std::vector<std::string> StepNames(const TSharedPtr<FJsonObject>& Payload)
		{
			std::vector<std::string> Names;
			for (const TSharedPtr<FJsonValue>& Step : Payload->GetArrayField(TEXT("steps")))
			{
				Names.push_back(S(Step->AsObject()->GetStringField(TEXT("step"))) + (Step->AsObject()->GetBoolField(TEXT("success")) ? "" : "!"));
			}
			return Names;
		}

		FString OnHitGuid;
	};
}

// ---- Finding spawners ----

TEST_F(FNodeSpawnerToolsTest, TheBlueprintsOwnActionsAppearOnlyInAScopedSearch)
{
	// Compiled, the hero's class has the members, and the library lists them as that class's.
	Compile(HeroPath);
	const std::vector<std::string> OwnForms = {"var_get::Health", "var_set::Health", "bp_func::Heal", "custom_event_call::OnHit"};
	for (const TCHAR* Query : {TEXT("health"), TEXT("heal"), TEXT("on hit")})
	{
		for (const std::string& Id : FoundIds(Query, false))
		{
			EXPECT_EQ(std::find(OwnForms.begin(), OwnForms.end(), Id), OwnForms.end()) << Id;
		}
		// Scoped, the library's entries for the hero's own class give way to the own forms.
		for (const std::string& Id : FoundIds(Query, true))
		{
			EXPECT_EQ(Id.find("/Game/MemberTests/BP_Hero."), std::string::npos) << Id;
		}
	}
	// Unscoped, they are a class's members like any other.
	const std::vector<std::string> Library = FoundIds(TEXT("health"), false);
	EXPECT_NE(std::find(Library.begin(), Library.end(), "var_get::Health:/Game/MemberTests/BP_Hero.BP_Hero_C"), Library.end());
	const std::vector<std::string> Health = FoundIds(TEXT("health"), true);
	EXPECT_NE(std::find(Health.begin(), Health.end(), "var_get::Health"), Health.end());
	EXPECT_NE(std::find(Health.begin(), Health.end(), "var_set::Health"), Health.end());
	const std::vector<std::string> Heal = FoundIds(TEXT("heal"), true);
	ASSERT_FALSE(Heal.empty());
	EXPECT_EQ(Heal[0], "bp_func::Heal");
	const std::vector<std::string> OnHit = FoundIds(TEXT("on hit"), true);
	ASSERT_FALSE(OnHit.empty());
	EXPECT_EQ(OnHit[0], "custom_event_call::OnHit");

	const TSharedPtr<FJsonObject> Scoped = Find(TEXT("health"), true);
	EXPECT_EQ(S(Scoped->GetStringField(TEXT("blueprint_path"))), S(HeroPath));
	EXPECT_TRUE(Scoped->GetBoolField(TEXT("scoped")));
	EXPECT_EQ(S(Scoped->GetArrayField(TEXT("spawners"))[0]->AsObject()->GetStringField(TEXT("source"))), "blueprint");
	EXPECT_GT(Scoped->GetNumberField(TEXT("blueprint_action_count")), 0);
	EXPECT_EQ(Find(TEXT("health"), false)->GetNumberField(TEXT("blueprint_action_count")), 0);
}

TEST_F(FNodeSpawnerToolsTest, AnImplementedInterfacesEventsAreInTheBlueprintsCatalogue)
{
	const TSharedPtr<FJsonObject> Found = Ok(Call(TEXT("blueprint_find_node_spawners"), Arguments({{TEXT("Query"), Text(TEXT("interact"))},
		{TEXT("BlueprintNameOrPath"), Text(SpawnerShowcasePath)}})));
	const TArray<FString> Ids = Collect(Found->GetArrayField(TEXT("spawners")), TEXT("spawner_id"));
	EXPECT_TRUE(Ids.Contains(TEXT("interface_event::/Game/Interfaces/BPI_Interactable.BPI_Interactable_C:Interact"))) << S(FString::Join(Ids, TEXT(" ")));
	// The Showcase's own variable, not some library member.
	EXPECT_EQ(S(Resolve(TEXT("get Health"), SpawnerShowcasePath)->GetStringField(TEXT("spawner_id"))), "var_get::Health");
}

TEST_F(FNodeSpawnerToolsTest, ResultsCarryKindPinsPurityAndLatencyWithinTheLimit)
{
	const TSharedPtr<FJsonObject> Print = Find(TEXT("print string"), false, 1);
	EXPECT_EQ(Print->GetNumberField(TEXT("result_count")), 1);
	EXPECT_GE(Print->GetNumberField(TEXT("match_count")), 1);
	EXPECT_GT(Print->GetNumberField(TEXT("library_action_count")), 50);
	const TSharedPtr<FJsonObject> Entry = Print->GetArrayField(TEXT("spawners"))[0]->AsObject();
	EXPECT_EQ(Keys(Entry), (std::vector<std::string>{"spawner_id", "title", "category", "node_kind", "pure", "latent", "source", "keywords", "tooltip", "score",
		"match_reason", "pins", "pin_count"}));
	EXPECT_EQ(S(Entry->GetStringField(TEXT("spawner_id"))), "func::/Script/Engine.KismetSystemLibrary:PrintString");
	EXPECT_EQ(S(Entry->GetStringField(TEXT("title"))), "Print String");
	EXPECT_EQ(S(Entry->GetStringField(TEXT("node_kind"))), "function_call");
	EXPECT_FALSE(Entry->GetBoolField(TEXT("pure")));
	EXPECT_FALSE(Entry->GetBoolField(TEXT("latent")));
	// unreal-behaviour-blueprints.md §2.5: PrintString's pins, self and the world context hidden.
	const TArray<TSharedPtr<FJsonValue>> Pins = Entry->GetArrayField(TEXT("pins"));
	EXPECT_EQ(S(FString::Join(Collect(Pins, TEXT("name")), TEXT(","))), "execute,then,self,WorldContextObject,InString,bPrintToScreen,bPrintToLog,TextColor,Duration,Key");
	EXPECT_EQ(S(Pins[4]->AsObject()->GetStringField(TEXT("direction"))), "input");
	EXPECT_EQ(S(Pins[4]->AsObject()->GetStringField(TEXT("category"))), "string");
	EXPECT_EQ(S(Pins[4]->AsObject()->GetStringField(TEXT("default_value"))), "Hello");
	EXPECT_TRUE(Pins[2]->AsObject()->GetBoolField(TEXT("hidden")));
	EXPECT_EQ(Entry->GetNumberField(TEXT("pin_count")), Pins.Num());

	// §2.6: a const getter is pure, Delay is latent.
	const TSharedPtr<FJsonObject> Location = Find(TEXT("get actor location"), false, 1)->GetArrayField(TEXT("spawners"))[0]->AsObject();
	EXPECT_TRUE(Location->GetBoolField(TEXT("pure")));
	const TSharedPtr<FJsonObject> Delay = Find(TEXT("delay"), false, 1)->GetArrayField(TEXT("spawners"))[0]->AsObject();
	EXPECT_TRUE(Delay->GetBoolField(TEXT("latent")));

	// Limit is raised to 1; an empty query lists the catalogue.
	EXPECT_EQ(Ok(Call(TEXT("blueprint_find_node_spawners"), Arguments({{TEXT("Limit"), Number(-4)}})))->GetNumberField(TEXT("result_count")), 1);
	EXPECT_EQ(Find(TEXT(""), true)->GetNumberField(TEXT("result_count")), 25);
}

TEST_F(FNodeSpawnerToolsTest, AFoundIdMakesANodeTheReaderNamesByTheSameId)
{
	for (const TCHAR* Query : {TEXT("print string"), TEXT("branch"), TEXT("sequence"), TEXT("add int"), TEXT("do once"), TEXT("cast to Character"),
		TEXT("get Health"), TEXT("set Health"), TEXT("heal"), TEXT("on hit"), TEXT("get actor location")})
	{
		const TSharedPtr<FJsonObject> Resolution = Resolve(Query);
		ASSERT_TRUE(Resolution->HasField(TEXT("spawner_id"))) << S(Query) << " " << S(FString::Join(Collect(Resolution->GetArrayField(TEXT("candidates")), TEXT("spawner_id")), TEXT(" ")));
		const FString Id = Resolution->GetStringField(TEXT("spawner_id"));
		const TSharedPtr<FJsonObject> Added = Ok(CallOnHero(TEXT("blueprint_add_node"), {{TEXT("SpawnerId"), Text(*Id)}}));
		const TSharedPtr<FJsonObject> Node = ReadNode(Added->GetStringField(TEXT("node_guid")));
		EXPECT_EQ(S(Node->GetStringField(TEXT("spawner_id"))), S(Id)) << S(Query);
		EXPECT_EQ(S(Node->GetStringField(TEXT("node_kind"))), S(Resolution->GetObjectField(TEXT("best"))->GetStringField(TEXT("node_kind")))) << S(Query);
	}
}

// ---- Resolving ----

TEST_F(FNodeSpawnerToolsTest, ResolutionAnswersWithConfidenceOrRefusesAsAnAnswer)
{
	const TSharedPtr<FJsonObject> Branch = Resolve(TEXT("Branch"));
	EXPECT_EQ(Keys(Branch), (std::vector<std::string>{"query", "blueprint_path", "scoped", "candidate_count", "candidates", "best", "spawner_id", "confidence",
		"reasons", "next_step"}));
	EXPECT_EQ(S(Branch->GetStringField(TEXT("spawner_id"))), "node::branch");
	EXPECT_EQ(S(Branch->GetStringField(TEXT("confidence"))), "high");
	EXPECT_TRUE(Branch->GetObjectField(TEXT("best"))->HasField(TEXT("pins")));

	const TSharedPtr<FJsonObject> Print = Resolve(TEXT("print"));
	EXPECT_FALSE(Print->HasField(TEXT("spawner_id")));
	EXPECT_FALSE(Print->HasField(TEXT("best")));
	EXPECT_EQ(S(Print->GetStringField(TEXT("rejected_reason"))), "ambiguous_equal_score_candidates");
	EXPECT_GE(Print->GetArrayField(TEXT("candidates")).Num(), 2);

	EXPECT_EQ(ErrorText(Call(TEXT("blueprint_resolve_node_spawner"), Arguments({{TEXT("Query"), Text(TEXT("  "))}}))), "blueprint_resolve_node_spawner requires Query.");
	EXPECT_EQ(ErrorText(Call(TEXT("blueprint_find_node_spawners"), Arguments({{TEXT("Query"), Text(TEXT("branch"))},
		{TEXT("BlueprintNameOrPath"), Text(TEXT("/Game/Nowhere/BP_Missing"))}}))), "Could not load Blueprint: /Game/Nowhere/BP_Missing.BP_Missing");
}

// ---- Search, add and connect ----

TEST_F(FNodeSpawnerToolsTest, SearchAndConnectResolvesPlacesAndWiresReportingEachStep)
{
	const TSharedPtr<FJsonObject> Result = Ok(SearchAndConnect({{TEXT("Query"), Text(TEXT("print string"))}, {TEXT("ExistingNodeGuid"), Text(*OnHitGuid.ToLower())},
		{TEXT("ExistingPinName"), Text(TEXT("then"))}, {TEXT("PinDefaults"), Object(Arguments({{TEXT("InString"), Text(TEXT("Ouch"))}}))}}));
	EXPECT_EQ(StepNames(Result), (std::vector<std::string>{"resolve", "choose_pin", "add_node", "connect"}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("spawner_id"))), "func::/Script/Engine.KismetSystemLibrary:PrintString");
	EXPECT_TRUE(Result->GetBoolField(TEXT("connected")));
	const TSharedPtr<FJsonObject> Connection = Result->GetObjectField(TEXT("connection"));
	EXPECT_EQ(S(Connection->GetStringField(TEXT("source_pin"))), "then");
	EXPECT_EQ(S(Connection->GetStringField(TEXT("target_pin"))), "execute");

	const TSharedPtr<FJsonObject> Event = ReadNode(OnHitGuid);
	const TSharedPtr<FJsonObject> Print = ReadNode(Result->GetStringField(TEXT("node_guid")));
	// Placed 400 to the right of the node it is fed by, on its row.
	EXPECT_EQ(Print->GetNumberField(TEXT("node_pos_x")), Event->GetNumberField(TEXT("node_pos_x")) + 400);
	EXPECT_EQ(Print->GetNumberField(TEXT("node_pos_y")), Event->GetNumberField(TEXT("node_pos_y")));
	const std::string Graph = DescribeEventGraph();
	EXPECT_NE(Graph.find("then->" + S(Result->GetStringField(TEXT("node_guid"))) + ".execute"), std::string::npos) << Graph;
	for (const TSharedPtr<FJsonValue>& Pin : Print->GetArrayField(TEXT("pin_details")))
	{
		if (Pin->AsObject()->GetStringField(TEXT("name")) == TEXT("InString"))
		{
			EXPECT_EQ(S(Pin->AsObject()->GetStringField(TEXT("default_value"))), "Ouch");
		}
	}
}

TEST_F(FNodeSpawnerToolsTest, SearchAndConnectPicksTheNewPinByTypeOrName)
{
	const TSharedPtr<FJsonObject> Get = Ok(CallOnHero(TEXT("blueprint_add_node"), {{TEXT("SpawnerId"), Text(TEXT("var_get::Health"))}}));
	const FString GetGuid = Get->GetStringField(TEXT("node_guid"));
	// An int output feeds the first int input of int + int.
	const TSharedPtr<FJsonObject> ByType = Ok(SearchAndConnect({{TEXT("Query"), Text(TEXT("add int"))}, {TEXT("ExistingNodeGuid"), Text(*GetGuid)},
		{TEXT("ExistingPinName"), Text(TEXT("Health"))}}));
	EXPECT_EQ(S(ByType->GetObjectField(TEXT("connection"))->GetStringField(TEXT("target_pin"))), "A");
	// Named, the second one; an input pin of the existing node is fed by the new node's output.
	const TSharedPtr<FJsonObject> ByName = Ok(SearchAndConnect({{TEXT("Query"), Text(TEXT("add int"))}, {TEXT("ExistingNodeGuid"), Text(*GetGuid)},
		{TEXT("ExistingPinName"), Text(TEXT("Health"))}, {TEXT("NewNodePinName"), Text(TEXT("B"))}, {TEXT("NodePosX"), Number(-50)}}));
	EXPECT_EQ(S(ByName->GetObjectField(TEXT("connection"))->GetStringField(TEXT("target_pin"))), "B");
	EXPECT_EQ(ByName->GetNumberField(TEXT("node_pos_x")), -50);

	const TSharedPtr<FJsonObject> Set = Ok(CallOnHero(TEXT("blueprint_add_node"), {{TEXT("SpawnerId"), Text(TEXT("var_set::Health"))},
		{TEXT("NodePosX"), Number(800)}, {TEXT("NodePosY"), Number(96)}}));
	const TSharedPtr<FJsonObject> Feeds = Ok(SearchAndConnect({{TEXT("Query"), Text(TEXT("add int"))}, {TEXT("ExistingNodeGuid"), Text(*Set->GetStringField(TEXT("node_guid")))},
		{TEXT("ExistingPinName"), Text(TEXT("Health"))}}));
	EXPECT_EQ(S(Feeds->GetObjectField(TEXT("connection"))->GetStringField(TEXT("source_pin"))), "ReturnValue");
	EXPECT_EQ(Feeds->GetNumberField(TEXT("node_pos_x")), 400);
	EXPECT_EQ(Feeds->GetNumberField(TEXT("node_pos_y")), 96);
}

TEST_F(FNodeSpawnerToolsTest, ARefusedLinkRemovesTheNewNodeAgain)
{
	const std::string Before = DescribeEventGraph();
	// unreal-behaviour-blueprints.md §3.2: an exec output cannot feed a string input.
	const TSharedPtr<FJsonObject> Result = SearchAndConnect({{TEXT("Query"), Text(TEXT("print string"))}, {TEXT("ExistingNodeGuid"), Text(*OnHitGuid)},
		{TEXT("ExistingPinName"), Text(TEXT("then"))}, {TEXT("NewNodePinName"), Text(TEXT("InString"))}});
	ASSERT_TRUE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	EXPECT_EQ(StepNames(Payload), (std::vector<std::string>{"resolve", "choose_pin", "add_node", "connect!", "roll_back"}));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("failed_step"))), "connect");
	EXPECT_TRUE(Payload->GetBoolField(TEXT("graph_unchanged")));
	EXPECT_TRUE(S(Payload->GetStringField(TEXT("error"))).rfind("Unreal rejected connection ", 0) == 0) << S(Payload->GetStringField(TEXT("error")));
	EXPECT_EQ(DescribeEventGraph(), Before);
}

TEST_F(FNodeSpawnerToolsTest, RefusedRequestsChangeNothing)
{
	const std::string Before = DescribeEventGraph();
	const auto Refused = [this](std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
	{
		return SearchAndConnect(Fields);
	};
	EXPECT_EQ(ErrorText(Refused({{TEXT("ExistingNodeGuid"), Text(*OnHitGuid)}, {TEXT("ExistingPinName"), Text(TEXT("then"))}})),
		"blueprint_add_node_by_search_and_connect requires Query.");
	EXPECT_EQ(ErrorText(Refused({{TEXT("Query"), Text(TEXT("branch"))}, {TEXT("ExistingNodeGuid"), Text(*OnHitGuid)}})),
		"blueprint_add_node_by_search_and_connect requires ExistingNodeGuid and ExistingPinName.");
	EXPECT_EQ(ErrorText(Refused({{TEXT("Query"), Text(TEXT("branch"))}, {TEXT("ExistingNodeGuid"), Text(TEXT("00000000000000000000000000000000"))},
		{TEXT("ExistingPinName"), Text(TEXT("then"))}})), "Could not resolve ExistingNodeGuid in graph 'EventGraph': 00000000000000000000000000000000");
	EXPECT_TRUE(ErrorText(Refused({{TEXT("Query"), Text(TEXT("branch"))}, {TEXT("ExistingNodeGuid"), Text(*OnHitGuid)},
		{TEXT("ExistingPinName"), Text(TEXT("Nope"))}})).rfind("Could not resolve pin 'Nope' on node ", 0) == 0);
	EXPECT_EQ(ErrorText(Refused({{TEXT("Query"), Text(TEXT("branch"))}, {TEXT("ExistingNodeGuid"), Text(*OnHitGuid)}, {TEXT("ExistingPinName"), Text(TEXT("then"))},
		{TEXT("PinDefaults"), Object(Arguments({{TEXT("Condition"), MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>())}}))}})),
		"PinDefaults value for 'Condition' must be a string, number or boolean.");

	// A tie is not guessed at.
	const TSharedPtr<FJsonObject> Tie = SearchAndConnect({{TEXT("Query"), Text(TEXT("print"))}, {TEXT("ExistingNodeGuid"), Text(*OnHitGuid)},
		{TEXT("ExistingPinName"), Text(TEXT("then"))}});
	ASSERT_TRUE(FToolRunner::IsError(Tie));
	EXPECT_EQ(StepNames(FToolRunner::Payload(Tie)), (std::vector<std::string>{"resolve!"}));
	EXPECT_EQ(S(FToolRunner::Payload(Tie)->GetObjectField(TEXT("resolution"))->GetStringField(TEXT("rejected_reason"))), "ambiguous_equal_score_candidates");
	EXPECT_EQ(DescribeEventGraph(), Before);

	// A node with no pin that fits is never made: Branch has no input for an int.
	const TSharedPtr<FJsonObject> Get = Ok(CallOnHero(TEXT("blueprint_add_node"), {{TEXT("SpawnerId"), Text(TEXT("var_get::Health"))}}));
	const std::string WithGet = DescribeEventGraph();
	const TSharedPtr<FJsonObject> NoPin = SearchAndConnect({{TEXT("Query"), Text(TEXT("branch"))}, {TEXT("ExistingNodeGuid"), Text(*Get->GetStringField(TEXT("node_guid")))},
		{TEXT("ExistingPinName"), Text(TEXT("Health"))}});
	ASSERT_TRUE(FToolRunner::IsError(NoPin));
	EXPECT_EQ(StepNames(FToolRunner::Payload(NoPin)), (std::vector<std::string>{"resolve", "choose_pin!"}));
	EXPECT_EQ(DescribeEventGraph(), WithGet);
	EXPECT_NE(WithGet, Before);
}
