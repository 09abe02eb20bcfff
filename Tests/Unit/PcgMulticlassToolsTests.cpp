// pcg_multiclass_spawn_proof against a generated forest of the sample project: one actor set per
// class at the generated points, sets that replace the forest's earlier stand-ins, refusals that
// leave the level as it was, and cleanup by the forest's label.
#include "EditorWorldTestSupport.h"
#include "SimulatedPcg.h"
#include "SimulatedWorld.h"

using namespace ZorvekEditorWorldTests;

namespace
{
	class PcgMulticlassProofTest : public FEditorWorldToolsTest
	{
	protected:
		TSharedPtr<FJsonObject> OptedIn(const TCHAR* Tool, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			if (!Args->HasField(TEXT("AllowCurrentLevel")))
			{
				Args->SetBoolField(TEXT("AllowCurrentLevel"), true);
			}
			return Call(Tool, Args);
		}

		// A forest of 8 x 6 grid points (cells of 447 cm at 0.05 per square metre), generated.
		void PlaceGeneratedForest()
		{
			Ok(OptedIn(TEXT("pcg_run_forest_recipe"), {{TEXT("SizeX"), Number(4000)}, {TEXT("SizeY"), Number(3000)}, {TEXT("Looseness"), Number(0)}}));
			Port->GetEditor().GetWorld().Tick();
		}

		static TSharedPtr<FJsonValue> Classes(std::initializer_list<const TCHAR*> Paths)
		{
			TArray<TSharedPtr<FJsonValue>> Values;
			for (const TCHAR* Path : Paths)
			{
				Values.Add(MakeShared<FJsonValueString>(Path));
			}
			return MakeShared<FJsonValueArray>(Values);
		}

		double VisualCount()
		{
			return Ok(Call(TEXT("pcg_inspect_generated"), Arguments({{TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}})))->GetNumberField(TEXT("visual_output_count"));
		}
	};

	const TCHAR* const PcgMulticlassTree = TEXT("/Game/PCG/BP_ForestTree.BP_ForestTree_C");
	const TCHAR* const PcgMulticlassLight = TEXT("/Script/Engine.PointLight");
	const TCHAR* const PcgMulticlassCamera = TEXT("/Script/Engine.CameraActor");
}

TEST_F(PcgMulticlassProofTest, EachClassGetsItsShareOfTheGeneratedPointsAndALaterSetReplacesTheEarlierOne)
{
	const std::string LevelBefore = DescribeLevel();
	PlaceGeneratedForest();
	const TSharedPtr<FJsonObject> Payload = Ok(OptedIn(TEXT("pcg_multiclass_spawn_proof"), {{TEXT("ActorClasses"), Classes({PcgMulticlassTree, PcgMulticlassLight, PcgMulticlassCamera})}}));
	// 48 points in turn over three classes.
	std::vector<double> Counts;
	for (const TSharedPtr<FJsonValue>& Set : Payload->GetArrayField(TEXT("class_sets")))
	{
		Counts.push_back(Set->AsObject()->GetNumberField(TEXT("actor_count")));
	}
	EXPECT_EQ(Counts, (std::vector<double>{16, 16, 16}));
	EXPECT_EQ(Payload->GetNumberField(TEXT("visual_output_count")), 48);
	EXPECT_FALSE(Payload->GetBoolField(TEXT("truncated")));
	EXPECT_EQ(S(Payload->GetObjectField(TEXT("unsupported"))->GetStringField(TEXT("capability"))), "pcg_true_multi_class_spawn");
	// The actors are the classes asked for, and pcg_inspect_generated counts them as the forest's output.
	EXPECT_EQ(S(Readback(TEXT("ZorvekPCGForest_Class2"))->GetStringField(TEXT("class_path"))), S(FString(PcgMulticlassLight)));
	EXPECT_EQ(S(Readback(TEXT("ZorvekPCGForest_Class1"))->GetStringField(TEXT("class_path"))), S(FString(PcgMulticlassTree)));
	EXPECT_EQ(VisualCount(), 48);

	// A second proof replaces the first: no duplicates pile up.
	const TSharedPtr<FJsonObject> Again = Ok(OptedIn(TEXT("pcg_multiclass_spawn_proof"), {{TEXT("ActorClasses"), Classes({PcgMulticlassLight, PcgMulticlassCamera})}, {TEXT("MaxActors"), Number(5)}}));
	EXPECT_EQ(Again->GetNumberField(TEXT("removed_visual_output_count")), 48);
	EXPECT_TRUE(Again->GetBoolField(TEXT("truncated")));
	EXPECT_EQ(VisualCount(), 5);

	EXPECT_EQ(Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("ZorvekPCGForest"))}})))->GetNumberField(TEXT("deleted_count")), 6);
	EXPECT_EQ(DescribeLevel(), LevelBefore);
}

TEST_F(PcgMulticlassProofTest, RefusalsAndTheUnavailableAnswerLeaveTheLevelAsItWas)
{
	const TCHAR* const Tool = TEXT("pcg_multiclass_spawn_proof");
	const TSharedPtr<FJsonValue> Two = Classes({PcgMulticlassLight, PcgMulticlassCamera});
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("ActorClasses"), Two}}), "pcg_multiclass_spawn_proof requires AllowCurrentLevel=true because this mutates the current editor world.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}}), "pcg_multiclass_spawn_proof requires ActorClasses: 2 to 8 actor class paths.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ActorClasses"), Classes({PcgMulticlassLight})}}), "pcg_multiclass_spawn_proof requires ActorClasses: 2 to 8 actor class paths.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ActorClasses"), Number(2)}}), "ActorClasses must be an array of actor class paths.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ActorClasses"), Classes({PcgMulticlassLight, TEXT("/Script/Engine.StaticMeshComponent")})}}),
		"'/Script/Engine.StaticMeshComponent' is not an actor class.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ActorClasses"), Two}, {TEXT("MaxActors"), Number(1001)}}), "MaxActors must be between 1 and 1000.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ActorClasses"), Two}}), "No editor actor found for 'ZorvekPCGForest'.");
	// Placed but not yet generated: the editor has not ticked.
	Ok(OptedIn(TEXT("pcg_run_forest_recipe"), {}));
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ActorClasses"), Two}}),
		"Forest actor has not generated yet. Call pcg_generate (or a forest recipe), let the editor tick, then call this again.");

	FSimulatedPcgPluginState Off;
	Off.bInstalled = false;
	Off.bEnabled = false;
	Port->GetEditor().GetWorld().GetPcg().SetPluginState(Off);
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Payload = Refused(OptedIn(Tool, {{TEXT("ActorClasses"), Two}}));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("operation"))), "multiclass_spawn_proof");
	EXPECT_EQ(DescribeLevel(), Before);
}
