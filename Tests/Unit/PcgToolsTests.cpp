// The PCG probe, the unavailable answer, the reflective call, pcg_generate and
// pcg_inspect_generated against the sample level's PCG volume (a graph that samples points and
// spawns BP_ForestTree at each), and the answer of the PCG tools this build does not implement.
#include "AssetTestSupport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Pcg/ZorvekMCPBridgePcgProbe.h"
#include "Pcg/ZorvekMCPBridgePcgReflection.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "SimulatedPcg.h"
#include "SimulatedWorld.h"
#include "World/ZorvekMCPBridgeActorReadback.h"
#include "ZorvekTestSupport.h"

using namespace ZorvekAssetTests;

namespace
{
	const TCHAR* const PcgUnavailableError = TEXT("PCG is not enabled and loadable in this project. Enable the PCG plugin and restart/rebuild before running PCG forest generation.");

	class PcgToolsTest : public ::testing::Test
	{
	protected:
		PcgToolsTest()
			: Port(LoadSampleProject())
			, Runner(Port)
		{
		}

		FSimulatedWorld& World() const { return Port->GetEditor().GetWorld(); }

		void SetPlugin(bool bInstalled, bool bEnabled, bool bModuleExists, bool bModuleLoaded) const
		{
			FSimulatedPcgPluginState State;
			State.bInstalled = bInstalled;
			State.bEnabled = bEnabled;
			State.bModuleExists = bModuleExists;
			State.bModuleLoaded = bModuleLoaded;
			World().GetPcg().SetPluginState(State);
		}

		TSharedPtr<FJsonObject> Call(const TCHAR* ToolName, const TCHAR* ForestActor = nullptr)
		{
			return Runner.Call(ToolName, ForestActor ? Arguments({{TEXT("ForestActorNameOrLabel"), Text(ForestActor)}}) : MakeShared<FJsonObject>());
		}

		// The actors the forest graph spawned (its Spawn Actor node tags them PCG_ForestTree).
		int32 CountForestTrees() const
		{
			int32 Count = 0;
			for (const FZorvekMCPBridgeActorEntry& Actor : Port->GetWorld().GetAllLevelActors())
			{
				Count += Actor.Tags.Contains(FName(TEXT("PCG_ForestTree"))) ? 1 : 0;
			}
			return Count;
		}

		FZorvekMCPBridgeObjectHandle FindActorHandle(const TCHAR* NameOrLabel) const
		{
			FZorvekMCPBridgeActorEntry Entry;
			EXPECT_TRUE(ZorvekMCPBridgeActorReadback::FindActor(Port->GetWorld(), NameOrLabel, Entry)) << S(NameOrLabel);
			return Entry.Actor;
		}

		FZorvekMCPBridgeObjectHandle PlaceTaggedCube(const TArray<FName>& Tags) const
		{
			IZorvekMCPBridgeWorld& WorldPort = Port->GetWorld();
			const FZorvekMCPBridgeObjectHandle Actor = WorldPort.SpawnActorFromClass(TEXT("/Script/Engine.StaticMeshActor"), {500.0, 500.0, 0.0}, {});
			EXPECT_TRUE(Actor.IsValid());
			WorldPort.AddActorTags(Actor, Tags);
			return Actor;
		}

		TSharedPtr<FSimulatedEditorPort> Port;
		FToolRunner Runner;
	};

	// Condensed JSON as exact text (FString compares ignoring case).
	std::string JsonText(const TSharedPtr<FJsonObject>& Object)
	{
		return S(ToCondensedJson(Object));
	}

	TSharedPtr<FJsonObject> ObjectAt(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key)
	{
		const TSharedPtr<FJsonObject>* Found = nullptr;
		return Object.IsValid() && Object->TryGetObjectField(Key, Found) ? *Found : nullptr;
	}
}

// Probe and unavailable answer.

TEST_F(PcgToolsTest, TheProbeTellsEveryPluginStateApartAndALoadedModuleDoesNotCount)
{
	struct FCase
	{
		const char* Name;
		bool bInstalled, bEnabled, bModuleExists, bModuleLoaded;
		bool bExpectEnabled, bExpectAvailable;
	};
	const FCase Cases[] = {
		{"absent", false, false, false, false, false, false},
		{"installed, disabled", true, false, true, false, false, false},
		{"enabled, module not loaded yet", true, true, true, false, true, true},
		{"enabled and loaded", true, true, true, true, true, true},
		{"enabled, module missing", true, true, false, false, true, false},
	};
	for (const FCase& Case : Cases)
	{
		SCOPED_TRACE(Case.Name);
		SetPlugin(Case.bInstalled, Case.bEnabled, Case.bModuleExists, Case.bModuleLoaded);
		const FZorvekMCPBridgePcgStatus Status = ZorvekMCPBridgePcgProbe::Probe(Port->GetWorld());
		const TSharedPtr<FJsonObject> Json = ZorvekMCPBridgePcgProbe::MakeStatusObject(Status);
		EXPECT_EQ(ToStd(JsonKeysOf(Json)), (std::vector<std::string>{"pcg_installed", "pcg_enabled", "pcg_module_exists", "pcg_module_loaded", "pcg_available", "plugin_name"}));
		EXPECT_EQ(Json->GetBoolField(TEXT("pcg_installed")), Case.bInstalled);
		EXPECT_EQ(Json->GetBoolField(TEXT("pcg_enabled")), Case.bExpectEnabled);
		EXPECT_EQ(Json->GetBoolField(TEXT("pcg_module_exists")), Case.bModuleExists);
		EXPECT_EQ(Json->GetBoolField(TEXT("pcg_module_loaded")), Case.bModuleLoaded);
		EXPECT_EQ(Json->GetBoolField(TEXT("pcg_available")), Case.bExpectAvailable);
		EXPECT_EQ(S(Json->GetStringField(TEXT("plugin_name"))), "PCG");
	}
}

TEST_F(PcgToolsTest, GenerateWithPcgDisabledAnswersTheUnavailableResultAndTouchesNothing)
{
	SetPlugin(true, false, true, false);
	const int32 ActorCount = Port->GetWorld().GetAllLevelActors().Num();
	const TSharedPtr<FJsonObject> Arguments = ZorvekAssetTests::Arguments({
		{TEXT("ForestActorNameOrLabel"), Text(TEXT("  PCG_Forest "))},
		{TEXT("Density"), Number(0.5)},
		{TEXT("Unused"), MakeShared<FJsonValueNull>()},
		{TEXT("Bounds"), MakeShared<FJsonValueObject>(ParseJsonObject(FString(TEXT("{\"X\": 100}"))))},
	});
	const TSharedPtr<FJsonObject> Result = Runner.Call(TEXT("pcg_generate"), Arguments);
	EXPECT_TRUE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	ASSERT_TRUE(Payload.IsValid());
	EXPECT_EQ(ToStd(JsonKeysOf(Payload)), (std::vector<std::string>{"success", "created", "placed", "generated", "available", "tool", "operation", "status", "error",
		"pcg_status", "request", "next_steps"}));
	for (const TCHAR* Flag : {TEXT("success"), TEXT("created"), TEXT("placed"), TEXT("generated"), TEXT("available")})
	{
		EXPECT_FALSE(Payload->GetBoolField(Flag)) << S(Flag);
	}
	EXPECT_EQ(S(Payload->GetStringField(TEXT("tool"))), "pcg_generate");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("operation"))), "generate");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("status"))), "pcg_unavailable");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("error"))), S(PcgUnavailableError));
	EXPECT_FALSE(ObjectAt(Payload, TEXT("pcg_status"))->GetBoolField(TEXT("pcg_available")));
	EXPECT_EQ(ToStd(JsonStringsOf(Payload->GetArrayField(TEXT("next_steps")))), (std::vector<std::string>{
		"Enable the PCG plugin for the project if PCG generation is desired.",
		"Restart Unreal so PCG classes/modules are available.",
		"Run pcg_get_status again before mutating the editor world."}));

	// The request summary: the forest actor trimmed, scalars as trimmed text, nulls left out.
	const TSharedPtr<FJsonObject> Request = ObjectAt(Payload, TEXT("request"));
	ASSERT_TRUE(Request.IsValid());
	EXPECT_EQ(S(Request->GetStringField(TEXT("forest_actor_name_or_label"))), "PCG_Forest");
	EXPECT_EQ(Request->GetNumberField(TEXT("argument_count")), 3);
	const TSharedPtr<FJsonObject> Normalised = ObjectAt(Request, TEXT("arguments"));
	EXPECT_EQ(ToStd(JsonKeysOf(Normalised)), (std::vector<std::string>{"ForestActorNameOrLabel", "Density", "Bounds"}));
	EXPECT_EQ(S(Normalised->GetStringField(TEXT("Density"))), "0.5");
	EXPECT_EQ(ObjectAt(Normalised, TEXT("Bounds"))->GetNumberField(TEXT("X")), 100);

	// Nothing was scheduled or spawned.
	EXPECT_EQ(World().GetPcg().GetPendingGenerationCount(), 0);
	World().Tick();
	EXPECT_EQ(Port->GetWorld().GetAllLevelActors().Num(), ActorCount);
}

TEST_F(PcgToolsTest, EveryPcgToolOfTheCatalogueAnswersInThisBuildAndWithoutPcgSaysSo)
{
	int32 Checked = 0;
	for (const FZorvekMCPBridgeToolDefinition& Tool : ZorvekMCPBridgeTools::GetToolTable())
	{
		const FString Name = Tool.Name;
		if (!Name.StartsWith(TEXT("pcg_"), ESearchCase::CaseSensitive))
		{
			continue;
		}
		SCOPED_TRACE(S(Name));
		++Checked;
		// Empty arguments change nothing; no tool gives the answer of a tool this build lacks.
		SetPlugin(true, true, true, true);
		const TSharedPtr<FJsonObject> Result = Runner.Call(Tool.Name, MakeShared<FJsonObject>());
		const FString Text = Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text"));
		EXPECT_NE(S(Text), S(ZorvekMCPBridgeTools::MakeNotAvailableYetResult(Name)->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text"))));
		if (Name != TEXT("pcg_get_status"))
		{
			SetPlugin(false, false, false, false);
			const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Runner.Call(Tool.Name, MakeShared<FJsonObject>()));
			ASSERT_TRUE(Payload.IsValid());
			EXPECT_EQ(S(Payload->GetStringField(TEXT("status"))), "pcg_unavailable");
		}
	}
	EXPECT_EQ(Checked, 19);
}

// The reflective call.

TEST_F(PcgToolsTest, TheReflectiveCallNamesTheObjectAndTheMissingFunction)
{
	FString Error;
	EXPECT_FALSE(ZorvekMCPBridgePcgReflection::CallWithFlag(*Port, FZorvekMCPBridgeObjectHandle(), TEXT("PCG component"), TEXT("GenerateLocal"), true, Error));
	EXPECT_EQ(S(Error), "PCG component was invalid.");

	// A static mesh actor's component has no GenerateLocal.
	FZorvekMCPBridgeActorSnapshot Floor;
	ASSERT_TRUE(Port->GetWorld().ReadActor(FindActorHandle(TEXT("Floor")), Floor));
	ASSERT_FALSE(Floor.Components.IsEmpty());
	EXPECT_FALSE(ZorvekMCPBridgePcgReflection::CallWithFlag(*Port, Floor.Components[0].Component, TEXT("PCG component"), TEXT("GenerateLocal"), true, Error));
	EXPECT_EQ(S(Error), "PCG component did not expose GenerateLocal.");
	EXPECT_FALSE(ZorvekMCPBridgePcgReflection::CallWithFlag(*Port, Floor.Components[0].Component, TEXT("PCG node"), TEXT("AddEdgeTo"), false, Error));
	EXPECT_EQ(S(Error), "PCG node did not expose AddEdgeTo.");
	EXPECT_FALSE(ZorvekMCPBridgePcgReflection::FindPcgComponent(*Port, Floor).IsValid());
}

TEST_F(PcgToolsTest, TheForceFlagReachesGenerateLocal)
{
	// unreal-behaviour-world-assets.md §4.3: without bForce a generated, clean component ignores
	// the request; with it the graph runs again.
	FZorvekMCPBridgeActorSnapshot Forest;
	ASSERT_TRUE(Port->GetWorld().ReadActor(FindActorHandle(TEXT("PCG_Forest")), Forest));
	const FZorvekMCPBridgeObjectHandle Component = ZorvekMCPBridgePcgReflection::FindPcgComponent(*Port, Forest);
	ASSERT_TRUE(Component.IsValid());
	FString Error;
	ASSERT_TRUE(ZorvekMCPBridgePcgReflection::CallWithFlag(*Port, Component, TEXT("PCG component"), TEXT("GenerateLocal"), true, Error));
	World().Tick();
	ASSERT_TRUE(ZorvekMCPBridgePcgReflection::CallWithFlag(*Port, Component, TEXT("PCG component"), TEXT("GenerateLocal"), false, Error));
	EXPECT_EQ(World().GetPcg().GetPendingGenerationCount(), 0);
	ASSERT_TRUE(ZorvekMCPBridgePcgReflection::CallWithFlag(*Port, Component, TEXT("PCG component"), TEXT("GenerateLocal"), true, Error));
	EXPECT_EQ(World().GetPcg().GetPendingGenerationCount(), 1);
}

// pcg_generate.

TEST_F(PcgToolsTest, GenerateRefusesMissingAndUnknownActorsAndActorsWithoutAComponent)
{
	for (const TCHAR* Missing : {static_cast<const TCHAR*>(nullptr), TEXT(""), TEXT("NoSuchForest"), TEXT("PCG_Fores")})
	{
		SCOPED_TRACE(Missing ? S(Missing) : std::string("(absent)"));
		const TSharedPtr<FJsonObject> Result = Call(TEXT("pcg_generate"), Missing);
		EXPECT_TRUE(FToolRunner::IsError(Result));
		const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
		EXPECT_EQ(ToStd(JsonKeysOf(Payload)), (std::vector<std::string>{"success", "generation_requested", "status", "pcg_status", "forest_actor_name_or_label", "generated", "error"}));
		EXPECT_FALSE(Payload->GetBoolField(TEXT("success")));
		EXPECT_FALSE(Payload->GetBoolField(TEXT("generation_requested")));
		EXPECT_EQ(S(Payload->GetStringField(TEXT("status"))), "pcg_generation_request_failed");
		EXPECT_EQ(S(Payload->GetStringField(TEXT("forest_actor_name_or_label"))), Missing ? S(Missing) : "");
		EXPECT_EQ(S(Payload->GetStringField(TEXT("error"))), "Forest actor was not found.");
	}

	const TSharedPtr<FJsonObject> Result = Call(TEXT("pcg_generate"), TEXT("floor"));
	EXPECT_TRUE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	EXPECT_EQ(S(ObjectAt(Payload, TEXT("actor"))->GetStringField(TEXT("label"))), "Floor");
	EXPECT_FALSE(Payload->GetBoolField(TEXT("generated")));
	EXPECT_FALSE(Payload->HasField(TEXT("pcg_component")));
	EXPECT_FALSE(Payload->HasField(TEXT("generate_error")));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("error"))), "Forest actor has no PCG component.");
	EXPECT_EQ(World().GetPcg().GetPendingGenerationCount(), 0);
}

TEST_F(PcgToolsTest, ARequestReportsTheStateBeforeTheRunAndInspectionAfterTheTickSeesItsOutput)
{
	// With the module not loaded yet PCG still counts as available.
	SetPlugin(true, true, true, false);
	const TSharedPtr<FJsonObject> Before = FToolRunner::Payload(Call(TEXT("pcg_inspect_generated"), TEXT("PCG_Forest")));
	EXPECT_FALSE(Before->GetBoolField(TEXT("generated")));
	EXPECT_EQ(Before->GetNumberField(TEXT("generated_count")), 0);
	EXPECT_FALSE(Before->GetBoolField(TEXT("native_pcg_spawn_actor_generation")));

	const TSharedPtr<FJsonObject> Result = Call(TEXT("pcg_generate"), TEXT("pcg_forest"));
	EXPECT_FALSE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Requested = FToolRunner::Payload(Result);
	EXPECT_EQ(ToStd(JsonKeysOf(Requested)), (std::vector<std::string>{"success", "generation_requested", "status", "pcg_status", "forest_actor_name_or_label", "actor",
		"pcg_component", "generated", "note"}));
	EXPECT_TRUE(Requested->GetBoolField(TEXT("success")));
	EXPECT_EQ(S(Requested->GetStringField(TEXT("status"))), "pcg_generation_requested");
	EXPECT_TRUE(ObjectAt(Requested, TEXT("pcg_status"))->GetBoolField(TEXT("pcg_available")));
	EXPECT_FALSE(ObjectAt(Requested, TEXT("pcg_status"))->GetBoolField(TEXT("pcg_module_loaded")));
	// unreal-behaviour-world-assets.md §4.3: generation is asynchronous, so the flag read right
	// after the request is still the old one.
	EXPECT_FALSE(Requested->GetBoolField(TEXT("generated")));
	EXPECT_FALSE(ObjectAt(Requested, TEXT("pcg_component"))->GetBoolField(TEXT("generated")));
	EXPECT_EQ(CountForestTrees(), 0);
	EXPECT_EQ(S(Requested->GetStringField(TEXT("note"))), "This requests graph execution and reports PCG component output state. Visible forest/spawn generation is still not implemented.");

	World().Tick();
	const TSharedPtr<FJsonObject> InspectResult = Call(TEXT("pcg_inspect_generated"), TEXT("PCG_Forest"));
	EXPECT_FALSE(FToolRunner::IsError(InspectResult));
	const TSharedPtr<FJsonObject> After = FToolRunner::Payload(InspectResult);
	EXPECT_EQ(ToStd(JsonKeysOf(After)), (std::vector<std::string>{"success", "generated", "generated_count", "visual_output_count", "native_spawned_actor_count",
		"native_pcg_spawn_actor_generation", "status", "pcg_status", "forest_actor_name_or_label", "actor", "pcg_component", "visual_output_actors", "note"}));
	EXPECT_TRUE(After->GetBoolField(TEXT("generated")));
	EXPECT_EQ(S(After->GetStringField(TEXT("status"))), "pcg_generated_output_inspected");

	// One spawned tree per sampled point: the point count comes from GetNumPoints, the actors
	// from the managed resource's GeneratedActorsArray (§4.1-4.2), and both match the level.
	const int32 Trees = CountForestTrees();
	ASSERT_GT(Trees, 0);
	EXPECT_EQ(After->GetNumberField(TEXT("generated_count")), Trees);
	EXPECT_EQ(After->GetNumberField(TEXT("native_spawned_actor_count")), Trees);
	EXPECT_TRUE(After->GetBoolField(TEXT("native_pcg_spawn_actor_generation")));

	const TSharedPtr<FJsonObject> State = ObjectAt(After, TEXT("pcg_component"));
	EXPECT_EQ(ToStd(JsonKeysOf(State)), (std::vector<std::string>{"generated", "dirty_generated", "was_generated_this_session", "generated_resource_count",
		"last_generated_bounds", "generated_graph_output", "generated_actor_count", "generated_actors", "native_spawned_actor_count", "native_spawned_actors",
		"generated_resources"}));
	// §4.1: bWasGeneratedThisSession is not reflected in 5.7.
	EXPECT_FALSE(State->GetBoolField(TEXT("was_generated_this_session")));
	EXPECT_FALSE(State->GetBoolField(TEXT("dirty_generated")));
	EXPECT_EQ(State->GetNumberField(TEXT("generated_resource_count")), 1);
	EXPECT_EQ(State->GetNumberField(TEXT("generated_actor_count")), Trees);
	const TArray<TSharedPtr<FJsonValue>> Resources = State->GetArrayField(TEXT("generated_resources"));
	ASSERT_EQ(Resources.Num(), 1);
	EXPECT_TRUE(Resources[0]->AsObject()->GetBoolField(TEXT("is_managed_actors")));
	EXPECT_EQ(Resources[0]->AsObject()->GetNumberField(TEXT("index")), 0);

	const TSharedPtr<FJsonObject> Output = ObjectAt(State, TEXT("generated_graph_output"));
	EXPECT_EQ(S(Output->GetStringField(TEXT("status"))), "generated_graph_output_inspected");
	EXPECT_EQ(Output->GetNumberField(TEXT("tagged_data_count")), 1);
	EXPECT_EQ(Output->GetNumberField(TEXT("point_data_count")), 1);
	EXPECT_EQ(Output->GetNumberField(TEXT("total_point_count")), Trees);
	const TSharedPtr<FJsonObject> Item = Output->GetArrayField(TEXT("items"))[0]->AsObject();
	EXPECT_EQ(S(Item->GetStringField(TEXT("pin"))), "Out");
	EXPECT_TRUE(Item->GetBoolField(TEXT("is_point_data")));

	// §4.3: LastGeneratedBounds is the component's (here the volume's) bounds at generation.
	const TSharedPtr<FJsonObject> LastBounds = ObjectAt(State, TEXT("last_generated_bounds"));
	EXPECT_TRUE(LastBounds->GetBoolField(TEXT("is_valid")));
	EXPECT_EQ(JsonText(ObjectAt(LastBounds, TEXT("min"))), JsonText(ObjectAt(ObjectAt(ObjectAt(After, TEXT("actor")), TEXT("bounds")), TEXT("min"))));
	EXPECT_EQ(JsonText(ObjectAt(LastBounds, TEXT("max"))), JsonText(ObjectAt(ObjectAt(ObjectAt(After, TEXT("actor")), TEXT("bounds")), TEXT("max"))));
}

TEST_F(PcgToolsTest, ActorsDeletedAfterGenerationStayListedButNoLongerCountAsSpawned)
{
	ASSERT_FALSE(FToolRunner::IsError(Call(TEXT("pcg_generate"), TEXT("PCG_Forest"))));
	World().Tick();
	const int32 Trees = CountForestTrees();
	ASSERT_GT(Trees, 1);
	for (const FZorvekMCPBridgeActorEntry& Actor : Port->GetWorld().GetAllLevelActors())
	{
		if (Actor.Tags.Contains(FName(TEXT("PCG_ForestTree"))))
		{
			ASSERT_TRUE(Port->GetWorld().DestroyActors({Actor.Actor}));
			break;
		}
	}
	const TSharedPtr<FJsonObject> State = ObjectAt(FToolRunner::Payload(Call(TEXT("pcg_inspect_generated"), TEXT("PCG_Forest"))), TEXT("pcg_component"));
	EXPECT_EQ(State->GetNumberField(TEXT("generated_actor_count")), Trees);
	EXPECT_EQ(State->GetNumberField(TEXT("native_spawned_actor_count")), Trees - 1);
	EXPECT_EQ(State->GetArrayField(TEXT("native_spawned_actors")).Num(), Trees - 1);
}

// pcg_inspect_generated.

TEST_F(PcgToolsTest, InspectionWithoutAnActorFailsAndWithPcgUnavailableStillReports)
{
	const TSharedPtr<FJsonObject> Result = Call(TEXT("pcg_inspect_generated"), TEXT("Nobody"));
	EXPECT_TRUE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	EXPECT_FALSE(Payload->GetBoolField(TEXT("success")));
	EXPECT_FALSE(Payload->HasField(TEXT("generated")));
	EXPECT_FALSE(Payload->HasField(TEXT("actor")));
	EXPECT_EQ(Payload->GetNumberField(TEXT("visual_output_count")), 0);
	EXPECT_EQ(S(Payload->GetStringField(TEXT("error"))), "No forest actor found for inspection, or PCG generation is unavailable.");

	SetPlugin(false, false, false, false);
	const TSharedPtr<FJsonObject> Unavailable = Call(TEXT("pcg_inspect_generated"), TEXT("Floor"));
	EXPECT_FALSE(FToolRunner::IsError(Unavailable));
	const TSharedPtr<FJsonObject> Found = FToolRunner::Payload(Unavailable);
	EXPECT_TRUE(Found->GetBoolField(TEXT("success")));
	EXPECT_EQ(S(Found->GetStringField(TEXT("status"))), "pcg_unavailable");
	EXPECT_FALSE(Found->GetBoolField(TEXT("generated")));
	EXPECT_FALSE(Found->HasField(TEXT("pcg_component")));
	EXPECT_EQ(S(ObjectAt(Found, TEXT("actor"))->GetStringField(TEXT("label"))), "Floor");
}

TEST_F(PcgToolsTest, VisualOutputsAreTheActorsTaggedForThisForestsLabel)
{
	const FZorvekMCPBridgeObjectHandle Kept = PlaceTaggedCube({FName(TEXT("ZorvekPCGVisualOutput")), FName(TEXT("ZorvekPCGForestOutput_PCG_Forest"))});
	// FName equality ignores case.
	const FZorvekMCPBridgeObjectHandle KeptToo = PlaceTaggedCube({FName(TEXT("zorvekpcgforestoutput_pcg_forest")), FName(TEXT("ZorvekPCGVisualOutput"))});
	PlaceTaggedCube({FName(TEXT("ZorvekPCGVisualOutput"))});
	PlaceTaggedCube({FName(TEXT("ZorvekPCGForestOutput_PCG_Forest"))});
	PlaceTaggedCube({FName(TEXT("ZorvekPCGVisualOutput")), FName(TEXT("ZorvekPCGForestOutput_OtherForest"))});
	// The tag is formed with the label, not the object name.
	FZorvekMCPBridgeActorSnapshot Forest;
	ASSERT_TRUE(Port->GetWorld().ReadActor(FindActorHandle(TEXT("PCG_Forest")), Forest));
	ASSERT_NE(S(Forest.Entry.Name), "PCG_Forest");
	PlaceTaggedCube({FName(TEXT("ZorvekPCGVisualOutput")), FName(*(FString(TEXT("ZorvekPCGForestOutput_")) + Forest.Entry.Name))});

	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Call(TEXT("pcg_inspect_generated"), TEXT("PCG_Forest")));
	EXPECT_EQ(Payload->GetNumberField(TEXT("visual_output_count")), 2);
	FZorvekMCPBridgeActorSnapshot First;
	FZorvekMCPBridgeActorSnapshot Second;
	ASSERT_TRUE(Port->GetWorld().ReadActor(Kept, First));
	ASSERT_TRUE(Port->GetWorld().ReadActor(KeptToo, Second));
	EXPECT_EQ(ToStd(Collect(Payload->GetArrayField(TEXT("visual_output_actors")), TEXT("path"))), ToStd({First.Entry.Path, Second.Entry.Path}));
}
