// The vessa_* tools and the registry behind them: what is listed and searched, lookups by id,
// the text and structured envelopes, and extensions that appear after the first call.
#include "VessaTestSupport.h"

using namespace ZorvekAssetTests;
using namespace ZorvekVessaTests;

namespace
{
	FString ResultText(const TSharedPtr<FJsonObject>& Result)
	{
		return Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text"));
	}

	TArray<FString> ListedIds(FToolRunner& Runner, const TSharedPtr<FJsonObject>& Arguments)
	{
		const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Runner.Call(TEXT("vessa_list_extensions"), Arguments));
		return Payload.IsValid() ? Collect(Payload->GetArrayField(TEXT("extensions")), TEXT("extension_id")) : TArray<FString>();
	}
}

using FVessaToolTest = FVessaTest;

TEST_F(FVessaToolTest, ListShowsEnabledExtensionsIncludingUnloadedUtilityBlueprintsAndLimitIsAtLeastOne)
{
	FToolRunner Runner(LoadSampleWithExtensions());
	// Nothing has loaded the Editor Utility Blueprint yet; the registry finds it through its tag.
	ASSERT_TRUE(Runner.Port->GetEditor().FindTypeByPath(AuditId) == nullptr);
	const TArray<FString> Ids = ListedIds(Runner, Object({}));
	EXPECT_EQ(ToStd(Ids), (std::vector<std::string>{S(SystemId), S(LevelToolsId), S(ShowcaseId), S(FailingId), S(AuditId)}));

	const TSharedPtr<FJsonObject> Limited = FToolRunner::Payload(Runner.Call(TEXT("vessa_list_extensions"), Object({{TEXT("limit"), Number(0)}})));
	EXPECT_EQ(Limited->GetNumberField(TEXT("count")), 1);
	EXPECT_EQ(Limited->GetNumberField(TEXT("total_available")), 5);
	const TSharedPtr<FJsonObject> System = Limited->GetArrayField(TEXT("extensions"))[0]->AsObject();
	EXPECT_EQ(S(System->GetStringField(TEXT("title"))), "Vessa System");
	EXPECT_TRUE(System->GetBoolField(TEXT("is_system_extension")));
	const TSharedPtr<FJsonObject> Status = System->GetArrayField(TEXT("queries"))[0]->AsObject();
	EXPECT_EQ(S(Status->GetStringField(TEXT("name"))), "GetStatus");
	EXPECT_EQ(ToStd(Collect(Status->GetArrayField(TEXT("returnParameters")), TEXT("name"))), (std::vector<std::string>{"Backend", "UnrealVersion", "bStandalone"}));
}

TEST_F(FVessaToolTest, SearchNeedsEveryWordInOneFieldAndKeepsRegistryOrder)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	FSimulatedType* Probe = AddExtensionClass(*Port, TEXT("/Script/SampleGame.VessaSearchProbe"), TEXT("Search Probe"), TEXT("Probe for searches."));
	const uint32 Flags = SimulatedFunctionFlags::Public | SimulatedFunctionFlags::BlueprintCallable;
	SimulatedVessa::AddFunction(Port->GetEditor(), Probe, TEXT("Respawner"), Flags, {}, {{TEXT("VessaAction"), TEXT("")}, {TEXT("ToolTip"), TEXT("Brings ACTORS back after a respawn.")}}, nullptr);
	SimulatedVessa::AddFunction(Port->GetEditor(), Probe, TEXT("Lights"), Flags, {}, {{TEXT("VessaAction"), TEXT("")}, {TEXT("ToolTip"), TEXT("Spawn a light.")}}, nullptr);
	FToolRunner Runner(Port);

	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Runner.Call(TEXT("vessa_search_extensions"), Object({{TEXT("search"), Text(TEXT("  spawn \t actor "))}})));
	ASSERT_TRUE(Payload.IsValid());
	EXPECT_EQ(S(Payload->GetStringField(TEXT("search"))), "  spawn \t actor ");
	const TArray<TSharedPtr<FJsonValue>>& Matches = Payload->GetArrayField(TEXT("matches"));
	EXPECT_EQ(ToStd(Collect(Matches, TEXT("extension_id"))), (std::vector<std::string>{S(LevelToolsId), "/Script/SampleGame.VessaSearchProbe"}));
	// Level Tools matches by its own description and by its action; the probe only by Respawner.
	const TArray<TSharedPtr<FJsonValue>>& ProbeMatches = Matches[1]->AsObject()->GetArrayField(TEXT("capability_matches"));
	EXPECT_EQ(ToStd(Collect(ProbeMatches, TEXT("name"))), (std::vector<std::string>{"Respawner"}));
	EXPECT_EQ(S(ProbeMatches[0]->AsObject()->GetStringField(TEXT("type"))), "action");

	// Words spread over two fields are no match: "probe" is in the name, "light" only in an action.
	const TSharedPtr<FJsonObject> Split = FToolRunner::Payload(Runner.Call(TEXT("vessa_search_extensions"), Object({{TEXT("search"), Text(TEXT("probe light"))}})));
	EXPECT_EQ(Split->GetNumberField(TEXT("count")), 0);
	// The disabled extension is never a match.
	const TSharedPtr<FJsonObject> Hidden = FToolRunner::Payload(Runner.Call(TEXT("vessa_search_extensions"), Object({{TEXT("search"), Text(TEXT("pong"))}})));
	EXPECT_EQ(Hidden->GetNumberField(TEXT("count")), 0);
	const TSharedPtr<FJsonObject> Limited = FToolRunner::Payload(Runner.Call(TEXT("vessa_search_extensions"), Object({{TEXT("search"), Text(TEXT("a"))}, {TEXT("limit"), Text(TEXT("-3"))}})));
	EXPECT_EQ(Limited->GetNumberField(TEXT("count")), 1);

	for (const TCHAR* Empty : {TEXT(""), TEXT("   ")})
	{
		const TSharedPtr<FJsonObject> Refused = Runner.Call(TEXT("vessa_search_extensions"), Object({{TEXT("search"), Text(Empty)}}));
		EXPECT_TRUE(FToolRunner::IsError(Refused));
		EXPECT_EQ(S(ResultText(Refused)), "vessa_search_extensions requires search.");
	}
}

TEST_F(FVessaToolTest, DetailsFindIdsInAnyCaseAndNameWhatIsMissing)
{
	FToolRunner Runner(LoadSampleWithExtensions());
	const TSharedPtr<FJsonObject> Details = Runner.Call(TEXT("vessa_get_extension_details"), Object({{TEXT("extension_id"), Text(TEXT("/game/vessa/bp_leveltools.bp_leveltools_c"))}}));
	ASSERT_FALSE(FToolRunner::IsError(Details));
	const TSharedPtr<FJsonObject> Definition = FToolRunner::Payload(Details);
	EXPECT_EQ(S(Definition->GetStringField(TEXT("title"))), "Level Tools");
	EXPECT_EQ(S(Definition->GetStringField(TEXT("contextType"))), "Any");
	const TSharedPtr<FJsonObject> Spawn = Definition->GetArrayField(TEXT("actions"))[0]->AsObject();
	EXPECT_EQ(ToStd(Collect(Spawn->GetArrayField(TEXT("parameters")), TEXT("type"))), (std::vector<std::string>{"String", "Vector3", "String"}));

	const TSharedPtr<FJsonObject> Unknown = Runner.Call(TEXT("vessa_get_extension_details"), Object({{TEXT("extension_id"), Text(TEXT("/Script/Nowhere.Nothing"))}}));
	EXPECT_TRUE(FToolRunner::IsError(Unknown));
	EXPECT_EQ(S(ResultText(Unknown)), "Vessa extension not found: /Script/Nowhere.Nothing");
	const TSharedPtr<FJsonObject> Missing = Runner.Call(TEXT("vessa_get_extension_details"), Object({}));
	EXPECT_EQ(S(ResultText(Missing)), "vessa_get_extension_details requires extension_id.");
}

TEST_F(FVessaToolTest, QueriesAnswerAsTextAndMarshallingFailuresAreNoToolErrors)
{
	FToolRunner Runner(LoadSampleWithExtensions());
	const TSharedPtr<FJsonObject> Status = Runner.Call(TEXT("vessa_call_query"), Object({{TEXT("extension_id"), Text(SystemId)}, {TEXT("query_name"), Text(TEXT("getstatus"))}}));
	EXPECT_FALSE(FToolRunner::IsError(Status));
	EXPECT_FALSE(Status->HasField(TEXT("structuredContent")));
	const TSharedPtr<FJsonObject> StatusJson = ParseObject(ResultText(Status));
	EXPECT_EQ(S(StatusJson->GetStringField(TEXT("Backend"))), "native_unreal_editor");
	EXPECT_TRUE(StatusJson->GetBoolField(TEXT("bStandalone")));
	EXPECT_FALSE(StatusJson->GetStringField(TEXT("UnrealVersion")).IsEmpty());

	const TSharedPtr<FJsonObject> Bad = Runner.Call(TEXT("vessa_call_query"), Object({{TEXT("extension_id"), Text(ShowcaseId)}, {TEXT("query_name"), Text(TEXT("EchoDrop"))},
		{TEXT("parameters"), ObjectValue({{TEXT("Labels"), Number(4)}})}}));
	EXPECT_FALSE(FToolRunner::IsError(Bad));
	EXPECT_EQ(S(ParseObject(ResultText(Bad))->GetStringField(TEXT("error"))), "Could not marshal query parameters from JSON.");

	// A disabled extension is still callable by id.
	const TSharedPtr<FJsonObject> Ping = Runner.Call(TEXT("vessa_call_query"), Object({{TEXT("extension_id"), Text(HiddenId)}, {TEXT("query_name"), Text(TEXT("Ping"))}}));
	EXPECT_EQ(S(ParseObject(ResultText(Ping))->GetStringField(TEXT("Reply"))), "pong");

	const TSharedPtr<FJsonObject> Missing = Runner.Call(TEXT("vessa_call_query"), Object({{TEXT("extension_id"), Text(SystemId)}}));
	EXPECT_TRUE(FToolRunner::IsError(Missing));
	EXPECT_EQ(S(ResultText(Missing)), "vessa_call_query requires extension_id and query_name.");
}

TEST_F(FVessaToolTest, ActionsAnswerStructuredAndFailedOnesAreToolErrors)
{
	FToolRunner Runner(LoadSampleWithExtensions());
	const TSharedPtr<FJsonObject> Spawned = Runner.Call(TEXT("vessa_call_action"), Object({{TEXT("extension_id"), Text(LevelToolsId)},
		{TEXT("action_name"), Text(TEXT("SpawnTaggedActor"))}, {TEXT("parameters"), ObjectValue({{TEXT("ActorName"), Text(TEXT("Flag"))}, {TEXT("ExtraTag"), Text(TEXT("Red"))}})}}));
	ASSERT_FALSE(FToolRunner::IsError(Spawned)) << S(ResultText(Spawned));
	const TSharedPtr<FJsonObject> Result = FToolRunner::Payload(Spawned);
	EXPECT_TRUE(Result->GetBoolField(TEXT("action_called")));
	EXPECT_TRUE(Result->GetBoolField(TEXT("success")));
	EXPECT_FALSE(Result->GetBoolField(TEXT("is_async")));
	EXPECT_EQ(S(Result->GetStringField(TEXT("result"))), "Spawned /Temp/Untitled_1.Flag at (0, 0, 0).");
	const FSimulatedObject* Actor = Runner.Port->GetEditor().FindObject(TEXT("/Temp/Untitled_1.Flag"));
	ASSERT_TRUE(Actor != nullptr);
	FString Tags;
	Runner.Port->GetEditor().ExportValueText(*Actor->Class->AllProperties[(size_t)Actor->Class->FindPropertyIndex(TEXT("Tags"))],
		Actor->Values[(size_t)Actor->Class->FindPropertyIndex(TEXT("Tags"))], false, Tags);
	EXPECT_EQ(S(Tags), "(\"ZorvekVessa\",\"Red\")");

	// Spawning the same name again fails inside the action: reported, a tool error, nothing added.
	const TSharedPtr<FJsonObject> Again = Runner.Call(TEXT("vessa_call_action"), Object({{TEXT("extension_id"), Text(LevelToolsId)},
		{TEXT("action_name"), Text(TEXT("SpawnTaggedActor"))}, {TEXT("parameters"), ObjectValue({{TEXT("ActorName"), Text(TEXT("Flag"))}})}}));
	EXPECT_TRUE(FToolRunner::IsError(Again));
	EXPECT_FALSE(FToolRunner::Payload(Again)->GetBoolField(TEXT("success")));
	EXPECT_TRUE(FToolRunner::Payload(Again)->GetStringField(TEXT("error_message")).StartsWith(TEXT("Could not spawn Flag")));

	const TSharedPtr<FJsonObject> Unknown = Runner.Call(TEXT("vessa_call_action"), Object({{TEXT("extension_id"), Text(TEXT("nope"))}, {TEXT("action_name"), Text(TEXT("X"))}}));
	EXPECT_EQ(S(ResultText(Unknown)), "Vessa extension not found: nope");
	const TSharedPtr<FJsonObject> Missing = Runner.Call(TEXT("vessa_call_action"), Object({{TEXT("action_name"), Text(TEXT("X"))}}));
	EXPECT_EQ(S(ResultText(Missing)), "vessa_call_action requires extension_id and action_name.");
}

TEST_F(FVessaToolTest, ExtensionsMadeAfterTheFirstCallAreFoundWithoutARestart)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	FToolRunner Runner(Port);
	EXPECT_EQ(ListedIds(Runner, Object({})).Num(), 5);
	AddExtensionClass(*Port, TEXT("/Game/Vessa/BP_Late.BP_Late_C"));
	// Found by id straight away (a miss looks again), and listed from then on.
	const TSharedPtr<FJsonObject> Details = Runner.Call(TEXT("vessa_get_extension_details"), Object({{TEXT("extension_id"), Text(TEXT("/Game/Vessa/BP_Late.BP_Late_C"))}}));
	ASSERT_FALSE(FToolRunner::IsError(Details));
	EXPECT_EQ(S(FToolRunner::Payload(Details)->GetStringField(TEXT("title"))), "BP Late");
	EXPECT_TRUE(ListedIds(Runner, Object({})).Contains(TEXT("/Game/Vessa/BP_Late.BP_Late_C")));
}

TEST_F(FVessaToolTest, WhileTheAssetRegistryLoadsOnlyLoadedClassesAreRegistered)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleWithExtensions();
	Port->GetEditor().GetVessaState().bAssetRegistryLoading = true;
	FToolRunner Runner(Port);
	EXPECT_FALSE(ListedIds(Runner, Object({})).Contains(AuditId));
	EXPECT_TRUE(Port->GetEditor().FindTypeByPath(AuditId) == nullptr);
}
