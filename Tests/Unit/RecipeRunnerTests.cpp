// blueprint_run_recipe on the simulated editor: the whole recipe checked before the first step
// runs (read back: nothing created), ids and their defaults, whole-value and template references
// with their types and messages, array indexes, and a failing step that leaves the earlier steps
// applied. A fake tool call covers what the real dispatch never does.
#include "AssetTestSupport.h"
#include "Blueprint/ZorvekMCPBridgeRecipeRunner.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"

using namespace ZorvekAssetTests;

namespace
{
	const TCHAR* const RecipeBlueprintPath = TEXT("/Game/RecipeTests/BP_Recipe.BP_Recipe");

	TArray<TSharedPtr<FJsonValue>> RecipeSteps(const FString& Json)
	{
		TArray<TSharedPtr<FJsonValue>> Steps;
		EXPECT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Json), Steps)) << S(Json);
		return Steps;
	}

	// The first step of most recipes: a Blueprint the later steps work on.
	const TCHAR* const CreateRecipeBlueprintStep = TEXT(R"json({"Id": "Create", "ToolName": "blueprint_create", "Arguments": {"PackagePath": "/Game/RecipeTests", "AssetName": "BP_Recipe"}})json");

	class FRecipeRunnerTest : public ::testing::Test
	{
	protected:
		void SetUp() override
		{
			Port = LoadSampleProject();
			Runner = MakeUnique<FToolRunner>(Port);
		}

		TSharedPtr<FJsonObject> Run(const FString& StepsJson)
		{
			TSharedPtr<FJsonObject> Args = MakeShared<FJsonObject>();
			Args->SetStringField(TEXT("RecipeName"), TEXT("test recipe"));
			Args->SetArrayField(TEXT("Steps"), RecipeSteps(StepsJson));
			LastEnvelope = Runner->Call(TEXT("blueprint_run_recipe"), Args);
			const TSharedPtr<FJsonObject> Report = FToolRunner::Payload(LastEnvelope);
			EXPECT_TRUE(Report.IsValid());
			if (Report.IsValid())
			{
				// The envelope's flag is the report's verdict.
				EXPECT_EQ(FToolRunner::IsError(LastEnvelope), !Report->GetBoolField(TEXT("success")));
			}
			return Report.IsValid() ? Report : MakeShared<FJsonObject>();
		}

		// The recipe is refused before any step runs: the message, the step it names, and no
		// Blueprint made by its first step.
		void ExpectRefused(const FString& StepsJson, const std::string& Message, int32 StepIndex)
		{
			const TSharedPtr<FJsonObject> Report = Run(StepsJson);
			EXPECT_FALSE(Report->GetBoolField(TEXT("success"))) << S(StepsJson);
			EXPECT_EQ(S(Report->GetStringField(TEXT("error"))), Message);
			EXPECT_EQ(S(Report->GetStringField(TEXT("failure_reason"))), Message);
			EXPECT_EQ(Report->GetIntegerField(TEXT("failed_step_index")), StepIndex) << Message;
			EXPECT_EQ(Report->GetIntegerField(TEXT("completed_step_count")), 0);
			EXPECT_TRUE(Report->GetArrayField(TEXT("steps")).IsEmpty());
			EXPECT_FALSE(Report->GetBoolField(TEXT("failed_step_mutation_unknown")));
			EXPECT_FALSE(Port->GetObjects().FindObject(RecipeBlueprintPath).IsValid()) << Message;
		}

		FZorvekMCPBridgeBlueprintSnapshot Read() const
		{
			FZorvekMCPBridgeBlueprintSnapshot Snapshot;
			EXPECT_TRUE(Port->GetBlueprints().ReadBlueprint(Port->GetObjects().FindObject(RecipeBlueprintPath), Snapshot));
			return Snapshot;
		}

		static TSharedPtr<FJsonObject> StepRecord(const TSharedPtr<FJsonObject>& Report, int32 Index)
		{
			return Report->GetArrayField(TEXT("steps"))[Index]->AsObject();
		}

		static TSharedPtr<FJsonObject> StepArguments(const TSharedPtr<FJsonObject>& Report, int32 Index)
		{
			return StepRecord(Report, Index)->GetObjectField(TEXT("arguments"));
		}

		static std::vector<std::string> Keys(const TSharedPtr<FJsonObject>& Object)
		{
			std::vector<std::string> Names;
			for (const auto& Field : Object->Values)
			{
				Names.push_back(S(Field.Key));
			}
			return Names;
		}

		TSharedPtr<FSimulatedEditorPort> Port;
		TUniquePtr<FToolRunner> Runner;
		TSharedPtr<FJsonObject> LastEnvelope;
	};

	FString WithCreate(const FString& LaterSteps)
	{
		return FString(TEXT("[")) + CreateRecipeBlueprintStep + (LaterSteps.IsEmpty() ? FString() : TEXT(", ") + LaterSteps) + TEXT("]");
	}
}

// ---- Validation ----

TEST_F(FRecipeRunnerTest, IdsThatDifferOnlyInCaseAreRefusedBeforeAnythingRuns)
{
	ExpectRefused(WithCreate(TEXT(R"json({"Id": "create", "ToolName": "blueprint_compile", "Arguments": {"BlueprintNameOrPath": "BP_Recipe"}})json")),
		"Duplicate recipe step Id: create", 2);
	// A default id counts too: the second step is Step2 unless it says otherwise.
	ExpectRefused(TEXT(R"json([{"Id": "step2", "ToolName": "blueprint_create", "Arguments": {"PackagePath": "/Game/RecipeTests", "AssetName": "BP_Recipe"}},
		{"ToolName": "blueprint_compile"}])json"), "Duplicate recipe step Id: Step2", 2);
}

TEST_F(FRecipeRunnerTest, EachMalformedRecipeGetsItsMessage)
{
	ExpectRefused(WithCreate(TEXT(R"json("blueprint_compile")json")), "Recipe step 2 must be an object.", 2);
	ExpectRefused(WithCreate(TEXT(R"json({"Id": "", "ToolName": "blueprint_compile"})json")), "Recipe step 2 has an empty Id.", 2);
	ExpectRefused(WithCreate(TEXT(R"json({"Id": "Place", "ToolName": "editor_place_actor", "Arguments": {}})json")), "Unsupported recipe tool 'editor_place_actor' at step 'Place'.", 2);
	// The runner is not among its own tools, in any spelling; a step without a tool names none.
	ExpectRefused(WithCreate(TEXT(R"json({"ToolName": "Blueprint_Run_Recipe", "Arguments": {"Steps": []}})json")), "Unsupported recipe tool 'Blueprint_Run_Recipe' at step 'Step2'.", 2);
	ExpectRefused(WithCreate(TEXT(R"json({"Id": "Nothing"})json")), "Unsupported recipe tool '' at step 'Nothing'.", 2);
	ExpectRefused(WithCreate(TEXT(R"json({"ToolName": "blueprint_compile", "Arguments": ["BP_Recipe"]})json")), "Recipe step 2 has Arguments that are not an object.", 2);

	// The checks run in order over the whole recipe: a step that is no object at step 3 is
	// found before an empty id at step 2.
	ExpectRefused(WithCreate(TEXT(R"json({"Id": "", "ToolName": "blueprint_compile"}, 7)json")), "Recipe step 3 must be an object.", 3);
	// ToolName wins over its alias Name.
	ExpectRefused(WithCreate(TEXT(R"json({"Id": "Both", "ToolName": "editor_select_actor", "Name": "blueprint_compile"})json")), "Unsupported recipe tool 'editor_select_actor' at step 'Both'.", 2);
}

TEST_F(FRecipeRunnerTest, ReferencesMustNameAnEarlierStepAndBeClosed)
{
	// Itself, a later step and an unknown step: how cycles of references are refused.
	ExpectRefused(WithCreate(TEXT(R"json({"Id": "Self", "ToolName": "blueprint_compile", "Arguments": {"BlueprintNameOrPath": "$Self.asset_path"}})json")),
		"Could not resolve recipe reference '$Self.asset_path': unknown step id 'Self'.", 2);
	ExpectRefused(WithCreate(TEXT(R"json({"Id": "A", "ToolName": "blueprint_compile", "Arguments": {"BlueprintNameOrPath": "$B.asset_path"}},
		{"Id": "B", "ToolName": "blueprint_compile", "Arguments": {"BlueprintNameOrPath": "$A.asset_path"}})json")),
		"Could not resolve recipe reference '$B.asset_path': unknown step id 'B'.", 2);
	// Deep inside nested arrays and objects, in a template.
	ExpectRefused(WithCreate(TEXT(R"json({"Id": "Node", "ToolName": "blueprint_add_node", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path",
		"SpawnerId": "node::branch", "PinDefaults": {"List": [{"Deep": "at ${Later.node_guid} now"}]}}},
		{"Id": "Later", "ToolName": "blueprint_compile", "Arguments": {}})json")),
		"Could not resolve recipe reference '${Later.node_guid}' in 'at ${Later.node_guid} now'.", 2);
	ExpectRefused(WithCreate(TEXT(R"json({"ToolName": "blueprint_compile", "Arguments": {"BlueprintNameOrPath": "${Create.asset_path"}})json")),
		"Could not resolve recipe reference in '${Create.asset_path': missing closing '}'.", 2);
}

TEST_F(FRecipeRunnerTest, StepsAreRequiredAndCountedBeforeAnythingElse)
{
	for (const TSharedPtr<FJsonObject>& Args : {Arguments({}), Arguments({{TEXT("Steps"), Text(TEXT("[]"))}})})
	{
		const TSharedPtr<FJsonObject> Envelope = Runner->Call(TEXT("blueprint_run_recipe"), Args);
		EXPECT_TRUE(FToolRunner::IsError(Envelope));
		EXPECT_EQ(S(Envelope->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text"))), "blueprint_run_recipe requires Steps.");
		EXPECT_FALSE(FToolRunner::Payload(Envelope).IsValid());
	}

	// 101 steps, the last of them malformed: the count is what is reported.
	FString Many = CreateRecipeBlueprintStep;
	for (int32 Index = 2; Index <= 100; ++Index)
	{
		Many += TEXT(", {\"ToolName\": \"blueprint_compile\", \"Arguments\": {\"BlueprintNameOrPath\": \"$Create.asset_path\"}}");
	}
	ExpectRefused(TEXT("[") + Many + TEXT(", 7]"), "Recipe has 101 steps; at most 100 are allowed.", 0);
	EXPECT_EQ(Run(TEXT("[") + Many + TEXT(", 7]"))->GetIntegerField(TEXT("step_count")), 101);
	// 100 is allowed.
	const TSharedPtr<FJsonObject> Hundred = Run(TEXT("[") + Many + TEXT("]"));
	EXPECT_TRUE(Hundred->GetBoolField(TEXT("success"))) << S(Hundred->GetStringField(TEXT("error")));
	EXPECT_EQ(Hundred->GetIntegerField(TEXT("completed_step_count")), 100);

	// An empty recipe succeeds having done nothing.
	const TSharedPtr<FJsonObject> Empty = Run(TEXT("[]"));
	EXPECT_TRUE(Empty->GetBoolField(TEXT("success")));
	EXPECT_EQ(Keys(Empty), (std::vector<std::string>{"recipe_name", "success", "step_count", "completed_step_count", "mutation_policy", "steps"}));
	EXPECT_EQ(S(Empty->GetStringField(TEXT("mutation_policy"))), "sequential_no_rollback");
}

// ---- Running and references ----

TEST_F(FRecipeRunnerTest, ABlueprintBuiltStepByStepWithReferencesCompiles)
{
	const TSharedPtr<FJsonObject> Report = Run(WithCreate(TEXT(R"json(
		{"Id": "Health", "ToolName": "blueprint_add_variable", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path", "VarName": "Health", "Type": "float"}},
		{"ToolName": "blueprint_add_custom_event", "Arguments": {"BlueprintNameOrPath": "$create.asset_path", "EventName": "Heal"}},
		{"Id": "Print", "Name": "blueprint_add_node", "Arguments": {"BlueprintNameOrPath": "$Create.object_path", "SpawnerId": "func::/Script/Engine.KismetSystemLibrary:PrintString",
			"PinDefaults": {"InString": "Healing ${Create.asset_path} (${Health.variable})"}}},
		{"ToolName": "blueprint_connect_nodes", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path", "SourceNodeGuid": "$Step3.node_guid", "SourcePinName": "then",
			"TargetNodeGuid": "$Print.node_guid", "TargetPinName": "execute"}},
		{"Id": "Compile", "ToolName": "BLUEPRINT_COMPILE", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path"}})json")));

	ASSERT_TRUE(Report->GetBoolField(TEXT("success"))) << S(Report->GetStringField(TEXT("error"))) << S(Report->GetStringField(TEXT("failure_reason")));
	EXPECT_EQ(S(Report->GetStringField(TEXT("recipe_name"))), "test recipe");
	EXPECT_EQ(Report->GetIntegerField(TEXT("step_count")), 6);
	EXPECT_EQ(Report->GetIntegerField(TEXT("completed_step_count")), 6);

	const TSharedPtr<FJsonObject> Connect = StepRecord(Report, 4);
	EXPECT_EQ(Keys(Connect), (std::vector<std::string>{"step_index", "step_id", "tool_name", "arguments", "is_error", "success", "content_text", "structured_content"}));
	EXPECT_EQ(Connect->GetIntegerField(TEXT("step_index")), 5);
	EXPECT_EQ(S(Connect->GetStringField(TEXT("step_id"))), "Step5");
	EXPECT_EQ(S(StepRecord(Report, 3)->GetStringField(TEXT("tool_name"))), "blueprint_add_node");
	// The records hold the arguments as the tools received them.
	const FString EventGuid = StepRecord(Report, 2)->GetObjectField(TEXT("structured_content"))->GetStringField(TEXT("node_guid"));
	const FString PrintGuid = StepRecord(Report, 3)->GetObjectField(TEXT("structured_content"))->GetStringField(TEXT("node_guid"));
	EXPECT_EQ(S(StepArguments(Report, 4)->GetStringField(TEXT("SourceNodeGuid"))), S(EventGuid));
	EXPECT_EQ(S(StepArguments(Report, 4)->GetStringField(TEXT("TargetNodeGuid"))), S(PrintGuid));
	EXPECT_EQ(S(StepArguments(Report, 3)->GetObjectField(TEXT("PinDefaults"))->GetStringField(TEXT("InString"))), "Healing /Game/RecipeTests/BP_Recipe (Health)");
	// The text content is the tool's own answer.
	TSharedPtr<FJsonObject> Parsed;
	ASSERT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Connect->GetStringField(TEXT("content_text"))), Parsed));
	EXPECT_EQ(S(Parsed->GetStringField(TEXT("result"))), S(Connect->GetObjectField(TEXT("structured_content"))->GetStringField(TEXT("result"))));
	EXPECT_EQ(S(StepRecord(Report, 5)->GetObjectField(TEXT("structured_content"))->GetStringField(TEXT("status"))), "up_to_date");

	// Read back: the variable, the event wired to the print, and the print's default.
	const FZorvekMCPBridgeBlueprintSnapshot Snapshot = Read();
	bool bHasHealth = false;
	for (const FZorvekMCPBridgeVariableSnapshot& Variable : Snapshot.Variables)
	{
		bHasHealth |= Variable.VarName == FName(TEXT("Health"));
	}
	EXPECT_TRUE(bHasHealth);
	bool bLinked = false;
	for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
	{
		for (const FZorvekMCPBridgeNodeSnapshot& Node : Graph.Nodes)
		{
			for (const FZorvekMCPBridgeGraphPinSnapshot& Pin : Node.NodeGuid == PrintGuid ? Node.Pins : TArray<FZorvekMCPBridgeGraphPinSnapshot>())
			{
				for (const FZorvekMCPBridgePinLink& Link : Pin.LinkedTo)
				{
					bLinked |= Pin.Pin.PinName == FName(TEXT("execute")) && Link.NodeGuid == EventGuid && Link.PinName == FName(TEXT("then"));
				}
			}
		}
	}
	EXPECT_TRUE(bLinked);
	EXPECT_EQ(Snapshot.Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
}

TEST_F(FRecipeRunnerTest, WholeValuesKeepTheirTypeAndTemplatesWriteText)
{
	// Tools ignore arguments they do not know, so Echo shows what substitution made.
	const TSharedPtr<FJsonObject> Report = Run(WithCreate(TEXT(R"json(
		{"Id": "Branch", "ToolName": "blueprint_add_node", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path", "SpawnerId": "node::branch", "NodePosX": 32, "NodePosY": -16}},
		{"Id": "Echo", "ToolName": "blueprint_set_node_position", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path", "NodeGuid": "$Branch.node_guid",
			"NodePosX": "$Branch.node_pos_x", "NodePosY": "${Branch.node_pos_y}",
			"Echo": {"Number": "$Branch.node_pos_x", "Object": "$Branch.add_result", "Bool": "$Branch.add_result.success", "Whole": "$Create",
				"Texts": ["x=${Branch.node_pos_x}", "${Branch.add_result.success}/${Create.parent_class}", "${Branch.add_result}", "no $ref here"]}}})json")));
	ASSERT_TRUE(Report->GetBoolField(TEXT("success"))) << S(Report->GetStringField(TEXT("failure_reason")));

	const TSharedPtr<FJsonObject> Args = StepArguments(Report, 2);
	EXPECT_EQ(Args->GetField(TEXT("NodePosX"), EJson::Number)->AsNumber(), 32.0);
	EXPECT_EQ(S(Args->GetStringField(TEXT("NodePosY"))), "-16");
	const TSharedPtr<FJsonObject> Echo = Args->GetObjectField(TEXT("Echo"));
	EXPECT_EQ(Echo->TryGetField(TEXT("Number"))->Type, EJson::Number);
	EXPECT_EQ(Echo->TryGetField(TEXT("Bool"))->Type, EJson::Boolean);
	ASSERT_EQ(Echo->TryGetField(TEXT("Object"))->Type, EJson::Object);
	EXPECT_EQ(S(Echo->GetObjectField(TEXT("Object"))->GetStringField(TEXT("spawner_id"))), "node::branch");
	EXPECT_EQ(S(Echo->GetObjectField(TEXT("Whole"))->GetStringField(TEXT("asset_path"))), "/Game/RecipeTests/BP_Recipe");
	TArray<FString> Texts;
	ASSERT_TRUE(Echo->TryGetStringArrayField(TEXT("Texts"), Texts));
	const FString Guid = StepRecord(Report, 1)->GetObjectField(TEXT("structured_content"))->GetStringField(TEXT("node_guid"));
	EXPECT_EQ(ToStd(Texts), (std::vector<std::string>{"x=32", "true//Script/Engine.Actor",
		S(TEXT("{\"success\":true,\"node_guid\":\"") + Guid + TEXT("\",\"title\":\"Branch\",\"spawner_id\":\"node::branch\",\"node_pos_x\":32,\"node_pos_y\":-16}")),
		"no $ref here"}));
}

TEST_F(FRecipeRunnerTest, PathsIndexArraysAndMatchFieldNamesExactly)
{
	const TSharedPtr<FJsonObject> Report = Run(WithCreate(TEXT(R"json(
		{"Id": "Find", "ToolName": "blueprint_find_node_spawners", "Arguments": {"Query": "print string", "Limit": "3"}},
		{"Id": "Add", "ToolName": "blueprint_add_node", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path", "SpawnerId": "$Find.spawners.0.spawner_id"}})json")));
	ASSERT_TRUE(Report->GetBoolField(TEXT("success"))) << S(Report->GetStringField(TEXT("failure_reason")));
	const FString FirstSpawner = StepRecord(Report, 1)->GetObjectField(TEXT("structured_content"))->GetArrayField(TEXT("spawners"))[0]->AsObject()->GetStringField(TEXT("spawner_id"));
	EXPECT_EQ(S(StepArguments(Report, 2)->GetStringField(TEXT("SpawnerId"))), S(FirstSpawner));

	// Paths that lead nowhere fail when the step runs; the steps before it stay applied.
	const auto ExpectMissing = [this](const TCHAR* Reference, const std::string& Path)
	{
		const TSharedPtr<FJsonObject> Failed = Run(FString::Printf(TEXT(R"json([
			{"Id": "Find", "ToolName": "blueprint_find_node_spawners", "Arguments": {"Query": "print string", "Limit": "3"}},
			{"Id": "Use", "ToolName": "blueprint_resolve_node_spawner", "Arguments": {"Query": "%s"}}])json"), Reference));
		EXPECT_EQ(S(Failed->GetStringField(TEXT("error"))), "Could not resolve arguments for recipe step 'Use'.");
		EXPECT_EQ(S(Failed->GetStringField(TEXT("failure_reason"))), "Could not resolve recipe reference '" + S(Reference) + "': missing path '" + Path + "'.");
		EXPECT_EQ(Failed->GetIntegerField(TEXT("completed_step_count")), 1);
		EXPECT_EQ(Failed->GetArrayField(TEXT("steps")).Num(), 1) << "the unresolved step never ran";
		// The tool was never called, so nothing can have changed.
		EXPECT_FALSE(Failed->GetBoolField(TEXT("failed_step_mutation_unknown")));
	};
	ExpectMissing(TEXT("$Find.spawners.3.spawner_id"), "spawners.3.spawner_id");
	ExpectMissing(TEXT("$Find.spawners.99999999999999999999.spawner_id"), "spawners.99999999999999999999.spawner_id");
	ExpectMissing(TEXT("$Find.spawners.first.spawner_id"), "spawners.first.spawner_id");
	ExpectMissing(TEXT("$Find.spawners.0.0"), "spawners.0.0");
	ExpectMissing(TEXT("$Find.Spawners.0.spawner_id"), "Spawners.0.spawner_id");
	ExpectMissing(TEXT("$Find.spawners..spawner_id"), "spawners..spawner_id");
	ExpectMissing(TEXT("$Find.result_count.more"), "result_count.more");

	const TSharedPtr<FJsonObject> Template = Run(TEXT(R"json([
		{"Id": "Find", "ToolName": "blueprint_find_node_spawners", "Arguments": {"Query": "print string"}},
		{"Id": "Use", "ToolName": "blueprint_resolve_node_spawner", "Arguments": {"Query": "a ${Find.spawners.x} b"}}])json"));
	EXPECT_EQ(S(Template->GetStringField(TEXT("failure_reason"))), "Could not resolve recipe reference '${Find.spawners.x}' in 'a ${Find.spawners.x} b'.");
}

TEST_F(FRecipeRunnerTest, AFailingThirdStepLeavesTheFirstTwoApplied)
{
	const TSharedPtr<FJsonObject> Report = Run(WithCreate(TEXT(R"json(
		{"Id": "Speed", "ToolName": "blueprint_add_variable", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path", "VarName": "Speed", "Type": "float"}},
		{"Id": "Bad", "ToolName": "blueprint_add_node", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path", "SpawnerId": "nonsense::thing"}},
		{"Id": "Never", "ToolName": "blueprint_add_variable", "Arguments": {"BlueprintNameOrPath": "$Create.asset_path", "VarName": "Never", "Type": "int"}})json")));

	EXPECT_TRUE(FToolRunner::IsError(LastEnvelope));
	EXPECT_FALSE(Report->GetBoolField(TEXT("success")));
	EXPECT_EQ(Report->GetIntegerField(TEXT("step_count")), 4);
	EXPECT_EQ(Report->GetIntegerField(TEXT("completed_step_count")), 2);
	EXPECT_EQ(Report->GetIntegerField(TEXT("failed_step_index")), 3);
	EXPECT_EQ(S(Report->GetStringField(TEXT("failed_step_id"))), "Bad");
	EXPECT_EQ(S(Report->GetStringField(TEXT("failed_tool_name"))), "blueprint_add_node");
	EXPECT_EQ(S(Report->GetStringField(TEXT("error"))), "Recipe step 'Bad' failed.");
	EXPECT_EQ(S(Report->GetStringField(TEXT("failure_reason"))), "Unsupported native spawner id: nonsense::thing");
	EXPECT_TRUE(Report->GetBoolField(TEXT("failed_step_mutation_unknown")));
	EXPECT_EQ(Keys(Report), (std::vector<std::string>{"recipe_name", "success", "step_count", "completed_step_count", "mutation_policy", "steps",
		"failed_step_index", "failed_step_id", "failed_tool_name", "failure_reason", "failed_step_mutation_unknown", "error"}));

	// The failed step has its record, with the tool's text and no structured result.
	ASSERT_EQ(Report->GetArrayField(TEXT("steps")).Num(), 3);
	const TSharedPtr<FJsonObject> Failed = StepRecord(Report, 2);
	EXPECT_TRUE(Failed->GetBoolField(TEXT("is_error")));
	EXPECT_FALSE(Failed->GetBoolField(TEXT("success")));
	EXPECT_EQ(S(Failed->GetStringField(TEXT("content_text"))), "Unsupported native spawner id: nonsense::thing");
	EXPECT_FALSE(Failed->HasField(TEXT("structured_content")));

	// Read back: the Blueprint and Speed are there, Never is not.
	std::vector<std::string> Variables;
	for (const FZorvekMCPBridgeVariableSnapshot& Variable : Read().Variables)
	{
		Variables.push_back(S(Variable.VarName.ToString()));
	}
	EXPECT_EQ(Variables, (std::vector<std::string>{"Speed"}));
}

// ---- The run loop over any tool call ----

TEST(RecipeRunnerLoop, NothingIsCalledUntilTheWholeRecipeIsValidAndANullAnswerStopsTheRun)
{
	TArray<FString> Calls;
	TSharedPtr<FJsonObject> Answer;
	const auto CallTool = [&](const FString& ToolName, const TSharedPtr<FJsonObject>&)
	{
		Calls.Add(ToolName);
		return Answer;
	};
	const TArray<TSharedPtr<FJsonValue>> Refused = RecipeSteps(TEXT(R"json([{"ToolName": "blueprint_compile"}, {"ToolName": "blueprint_compile", "Arguments": {"X": "$Step3"}}])json"));
	EXPECT_FALSE(ZorvekMCPBridgeRecipeRunner::RunRecipe(TEXT("r"), Refused, CallTool).bSucceeded);
	EXPECT_TRUE(Calls.IsEmpty());

	const TArray<TSharedPtr<FJsonValue>> Steps = RecipeSteps(TEXT(R"json([{"Id": "One", "ToolName": "blueprint_compile"}, {"ToolName": "blueprint_compile"}])json"));
	const ZorvekMCPBridgeRecipeRunner::FRecipeOutcome Outcome = ZorvekMCPBridgeRecipeRunner::RunRecipe(TEXT("r"), Steps, CallTool);
	EXPECT_FALSE(Outcome.bSucceeded);
	EXPECT_EQ(ToStd(Calls), (std::vector<std::string>{"blueprint_compile"}));
	EXPECT_EQ(S(Outcome.Report->GetStringField(TEXT("error"))), "Recipe tool 'blueprint_compile' returned no result at step 'One'.");
	EXPECT_EQ(Outcome.Report->GetIntegerField(TEXT("failed_step_index")), 1);
	EXPECT_TRUE(Outcome.Report->GetBoolField(TEXT("failed_step_mutation_unknown")));
}
