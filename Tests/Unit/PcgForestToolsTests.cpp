// The forest tools against the sample project: the unavailable answer and the opt-in refusal
// before anything changes, the recipe's counts for a seed after the editor ticks, updates that
// regenerate in place, stand-in trees that replace each other, caps on absurd requests, and
// cleanup that leaves the level as it was.
#include "EditorWorldTestSupport.h"
#include "Pcg/ZorvekMCPBridgePcgForest.h"
#include "SimulatedAssetAuthoring.h"
#include "SimulatedPcg.h"
#include "SimulatedWorld.h"

#include <cmath>

using namespace ZorvekEditorWorldTests;

namespace
{
	class PcgForestToolsTest : public FEditorWorldToolsTest
	{
	protected:
		TSharedPtr<FJsonObject> Forest(const TCHAR* Tool, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			if (!Args->HasField(TEXT("AllowCurrentLevel")))
			{
				Args->SetBoolField(TEXT("AllowCurrentLevel"), true);
			}
			return Call(Tool, Args);
		}

		void Tick() const
		{
			Port->GetEditor().GetWorld().Tick();
		}

		double GeneratedCount(const TCHAR* Label)
		{
			return Call(TEXT("pcg_inspect_generated"), Arguments({{TEXT("ForestActorNameOrLabel"), Text(Label)}}))->GetObjectField(TEXT("structuredContent"))->GetNumberField(TEXT("generated_count"));
		}

		double VisualCount(const TCHAR* Label)
		{
			return Call(TEXT("pcg_inspect_generated"), Arguments({{TEXT("ForestActorNameOrLabel"), Text(Label)}}))->GetObjectField(TEXT("structuredContent"))->GetNumberField(TEXT("visual_output_count"));
		}

		bool GraphExists(const TCHAR* ObjectPath) const
		{
			return Port->GetObjects().LoadObject(ObjectPath).IsValid();
		}

		// The simulated sampler's grid: cells of 100 / sqrt(density) cm on each axis.
		static double GridPoints(double SizeX, double SizeY, double Density)
		{
			const double Cell = 100.0 / std::sqrt(Density);
			return std::floor(SizeX / Cell) * std::floor(SizeY / Cell);
		}

		void SetPcgAvailable(bool bAvailable) const
		{
			FSimulatedPcgPluginState State;
			State.bInstalled = bAvailable;
			Port->GetEditor().GetWorld().GetPcg().SetPluginState(State);
		}
	};

	const TCHAR* const ForestTools[][2] = {
		{TEXT("pcg_create_forest_repro"), TEXT("create_graph")},
		{TEXT("pcg_place_forest_actor"), TEXT("place")},
		{TEXT("pcg_inspect_graph"), TEXT("inspect_graph")},
		{TEXT("pcg_set_forest_bounds"), TEXT("set_bounds")},
		{TEXT("pcg_create_visual_repro_output"), TEXT("create_visual_output")},
		{TEXT("pcg_run_forest_recipe"), TEXT("run_recipe")},
		{TEXT("pcg_update_forest_recipe"), TEXT("update_recipe")},
	};
}

TEST_F(PcgForestToolsTest, EveryForestToolAnswersTheUnavailableResultWithoutPcgAndChangesNothing)
{
	SetPcgAvailable(false);
	const std::string Before = DescribeLevel();
	for (const auto& Tool : ForestTools)
	{
		SCOPED_TRACE(S(Tool[0]));
		const TSharedPtr<FJsonObject> Payload = Refused(Forest(Tool[0], {{TEXT("ForestActorNameOrLabel"), Text(TEXT("PCG_Forest"))}, {TEXT("Density"), Number(0.1)}}));
		EXPECT_EQ(S(Payload->GetStringField(TEXT("status"))), "pcg_unavailable");
		EXPECT_EQ(S(Payload->GetStringField(TEXT("tool"))), S(Tool[0]));
		EXPECT_EQ(S(Payload->GetStringField(TEXT("operation"))), S(Tool[1]));
		// The request summary carries the arguments as text.
		EXPECT_EQ(S(Payload->GetObjectField(TEXT("request"))->GetObjectField(TEXT("arguments"))->GetStringField(TEXT("Density"))), "0.1");
	}
	EXPECT_EQ(DescribeLevel(), Before);
	EXPECT_FALSE(GraphExists(TEXT("/Game/ZorvekMCP/PCG/PCG_ZorvekForest.PCG_ZorvekForest")));
}

TEST_F(PcgForestToolsTest, LevelChangingToolsRefuseWithoutTheOptInAndLeaveTheLevelAsItWas)
{
	for (const TCHAR* Tool : {TEXT("pcg_place_forest_actor"), TEXT("pcg_set_forest_bounds"), TEXT("pcg_create_visual_repro_output"), TEXT("pcg_run_forest_recipe"), TEXT("pcg_update_forest_recipe")})
	{
		SCOPED_TRACE(S(Tool));
		for (const TSharedPtr<FJsonValue>& OptIn : {TSharedPtr<FJsonValue>(Bool(false)), TSharedPtr<FJsonValue>(Text(TEXT("yes")))})
		{
			ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), OptIn}, {TEXT("ForestActorNameOrLabel"), Text(TEXT("PCG_Forest"))}, {TEXT("SizeX"), Number(1000.0)}}),
				S(FString::Printf(TEXT("%s requires AllowCurrentLevel=true because this mutates the current editor world."), Tool)));
		}
	}
	EXPECT_FALSE(GraphExists(TEXT("/Game/ZorvekMCP/PCG/PCG_ZorvekForest.PCG_ZorvekForest")));
}

TEST_F(PcgForestToolsTest, TheRecipeBuildsTheGraphPlacesTheVolumeAndGeneratesTheSeededCountAfterATick)
{
	const TSharedPtr<FJsonObject> Recipe = Ok(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("Density"), Text(TEXT("0.05"))}, {TEXT("SizeX"), Number(4000.0)}, {TEXT("SizeY"), Text(TEXT("3000"))}, {TEXT("Seed"), Number(7.0)}}));
	std::vector<std::string> Steps;
	for (const TSharedPtr<FJsonValue>& Step : Recipe->GetArrayField(TEXT("steps")))
	{
		Steps.push_back(S(Step->AsObject()->GetStringField(TEXT("step"))));
		EXPECT_TRUE(Step->AsObject()->GetBoolField(TEXT("success")));
	}
	EXPECT_EQ(Steps, (std::vector<std::string>{"create_graph", "place_volume", "set_bounds", "generate"}));
	EXPECT_TRUE(Recipe->GetBoolField(TEXT("generation_requested")));
	// 40 m x 30 m at 0.05 trees per square metre.
	EXPECT_EQ(Recipe->GetNumberField(TEXT("estimated_point_count")), 60.0);
	const TSharedPtr<FJsonObject> Actor = Recipe->GetObjectField(TEXT("actor"));
	EXPECT_EQ(S(Actor->GetStringField(TEXT("label"))), "ZorvekPCGForest");
	EXPECT_EQ(Strings(Actor->GetArrayField(TEXT("tags"))), (std::vector<std::string>{"ZorvekMCPBridge", "ZorvekRepro", "ZorvekVisualPCG", "ZorvekPCGForest"}));
	// A PCG volume is 200 cm times its scale (unreal-behaviour-world-assets.md §4.5).
	EXPECT_EQ(Vec(Actor->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("extent"))), "2000 1500 200");

	// Generation is asynchronous: nothing before the editor ticks.
	EXPECT_EQ(GeneratedCount(TEXT("ZorvekPCGForest")), 0.0);
	Tick();
	EXPECT_EQ(GeneratedCount(TEXT("ZorvekPCGForest")), GridPoints(4000.0, 3000.0, 0.05));

	// The graph reads back as the forest: four edges from input to output.
	const TSharedPtr<FJsonObject> Graph = Ok(Call(TEXT("pcg_inspect_graph"), Arguments({{TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}})));
	EXPECT_TRUE(Graph->GetBoolField(TEXT("is_forest_graph")));
	EXPECT_EQ(Graph->GetObjectField(TEXT("graph"))->GetNumberField(TEXT("edge_count")), 4.0);
	EXPECT_EQ(Graph->GetObjectField(TEXT("forest_settings"))->GetNumberField(TEXT("density")), 0.05);
	// Settings set by text get PostEditChange, as graph edits by reflection need (unreal-behaviour-world-assets.md §4.4).
	const ZorvekMCPBridgePcgForest::FForestGraphNodes Nodes = ZorvekMCPBridgePcgForest::FindForestNodes(*Port, ZorvekMCPBridgePcgForest::LoadGraph(*Port, ZorvekMCPBridgePcgForest::DefaultGraphPath));
	EXPECT_EQ(Port->GetSimulatedAssetAuthoring().GetPostEditChangeCount(Nodes.Sampler), 1);
	EXPECT_EQ(Port->GetSimulatedAssetAuthoring().GetPostEditChangeCount(Nodes.Spawner), 1);

	// A second recipe with the same label is refused rather than doubling the forest.
	const std::string Before = DescribeLevel();
	EXPECT_EQ(Error(Forest(TEXT("pcg_run_forest_recipe"), {})), "An actor labelled 'ZorvekPCGForest' already exists in the editor world. Use pcg_update_forest_recipe to change that forest, or remove it with editor_cleanup_repro_actors.");
	EXPECT_EQ(DescribeLevel(), Before);
}

TEST_F(PcgForestToolsTest, AbsurdRequestsAreRefusedBeforeAnythingIsMade)
{
	const std::string Before = DescribeLevel();
	EXPECT_EQ(Error(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("Density"), Number(5.0)}})), "Density must be greater than 0 and at most 1 trees per square metre.");
	EXPECT_EQ(Error(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("Density"), Number(0.0)}})), "Density must be greater than 0 and at most 1 trees per square metre.");
	EXPECT_EQ(Error(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("SizeX"), Number(0.0)}})), "SizeX must be greater than 0 (centimetres).");
	EXPECT_EQ(Error(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("SizeY"), Text(TEXT("-50"))}})), "SizeY must be greater than 0 (centimetres).");
	EXPECT_EQ(Error(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("SizeX"), Bool(true)}})), "SizeX must be a number.");
	EXPECT_EQ(Error(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("Looseness"), Number(3.0)}})), "Looseness must be between 0 and 1.");
	EXPECT_EQ(Error(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("MeshPaths"), Text(TEXT("/Engine/BasicShapes/Nothing.Nothing"))}})), "Could not load static mesh '/Engine/BasicShapes/Nothing.Nothing'.");
	// 200 m x 200 m at one tree per square metre is 40,000 points: above the cap of 20,000.
	EXPECT_EQ(Error(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("Density"), Number(1.0)}, {TEXT("SizeX"), Number(20000.0)}, {TEXT("SizeY"), Number(20000.0)}})),
		"The forest would generate about 40000 points (20000 x 20000 cm at 1 per square metre); at most 20000 are allowed per forest. Use a smaller size or a lower density.");
	EXPECT_EQ(DescribeLevel(), Before);
	EXPECT_FALSE(GraphExists(TEXT("/Game/ZorvekMCP/PCG/PCG_ZorvekForest.PCG_ZorvekForest")));
	// A path that holds something other than a PCG graph is not taken over.
	EXPECT_EQ(Error(Call(TEXT("pcg_create_forest_repro"), Arguments({{TEXT("GraphPath"), Text(TEXT("/Game/PCG/BP_ForestTree"))}}))), "'/Game/PCG/BP_ForestTree.BP_ForestTree' exists and is not a PCG graph.");
	// The sample graph is a PCG graph but not a forest one.
	EXPECT_NE(Error(Call(TEXT("pcg_create_forest_repro"), Arguments({{TEXT("GraphPath"), Text(TEXT("/Game/PCG/PCG_ForestGraph"))}}))).find("is not a forest graph"), std::string::npos);
}

TEST_F(PcgForestToolsTest, CreatingTheSameGraphAgainReusesItAndUpdatesItsSettingsWithoutNewNodes)
{
	const TSharedPtr<FJsonObject> First = Ok(Call(TEXT("pcg_create_forest_repro"), Arguments({{TEXT("GraphPath"), Text(TEXT("/Game/Tests/PCG_Reused"))}})));
	EXPECT_TRUE(First->GetBoolField(TEXT("created")));
	const double Nodes = First->GetObjectField(TEXT("graph"))->GetNumberField(TEXT("node_count"));
	EXPECT_EQ(Nodes, 5.0);
	const TSharedPtr<FJsonObject> Second = Ok(Call(TEXT("pcg_create_forest_repro"), Arguments({{TEXT("GraphPath"), Text(TEXT("/Game/Tests/PCG_Reused.PCG_Reused"))}, {TEXT("Density"), Number(0.2)}})));
	EXPECT_FALSE(Second->GetBoolField(TEXT("created")));
	EXPECT_TRUE(Second->GetBoolField(TEXT("reused")));
	EXPECT_EQ(Second->GetObjectField(TEXT("graph"))->GetNumberField(TEXT("node_count")), Nodes);
	EXPECT_EQ(Second->GetObjectField(TEXT("graph"))->GetNumberField(TEXT("edge_count")), 4.0);
	const TSharedPtr<FJsonObject> Read = Ok(Call(TEXT("pcg_inspect_graph"), Arguments({{TEXT("GraphPath"), Text(TEXT("/Game/Tests/PCG_Reused"))}})));
	EXPECT_EQ(Read->GetObjectField(TEXT("forest_settings"))->GetNumberField(TEXT("density")), 0.2);
}

TEST_F(PcgForestToolsTest, UpdatesRegenerateTheSameVolumeWithNewCountsAndNeverAddActors)
{
	Ok(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("Density"), Number(0.04)}, {TEXT("SizeX"), Number(3000.0)}, {TEXT("SizeY"), Number(3000.0)}}));
	Tick();
	EXPECT_EQ(GeneratedCount(TEXT("ZorvekPCGForest")), GridPoints(3000.0, 3000.0, 0.04));
	Ok(Forest(TEXT("pcg_create_visual_repro_output"), {{TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}}));
	const int32 ActorsWithTrees = World().GetAllLevelActors().Num();

	// Denser: twice the density.
	const TSharedPtr<FJsonObject> Denser = Ok(Forest(TEXT("pcg_update_forest_recipe"), {{TEXT("DensityScale"), Number(2.0)}}));
	EXPECT_EQ(Denser->GetObjectField(TEXT("current"))->GetNumberField(TEXT("density")), 0.08);
	// The stand-ins showed the old points: they go, and nothing new is placed.
	EXPECT_EQ(Denser->GetNumberField(TEXT("removed_visual_output_count")), GridPoints(3000.0, 3000.0, 0.04));
	Tick();
	EXPECT_EQ(GeneratedCount(TEXT("ZorvekPCGForest")), GridPoints(3000.0, 3000.0, 0.08));
	EXPECT_EQ(VisualCount(TEXT("ZorvekPCGForest")), 0.0);
	EXPECT_EQ(World().GetAllLevelActors().Num(), ActorsWithTrees - (int32)GridPoints(3000.0, 3000.0, 0.04));

	// Bigger: one and a half times the size, the same one volume.
	Ok(Forest(TEXT("pcg_update_forest_recipe"), {{TEXT("SizeScale"), Text(TEXT("1.5"))}, {TEXT("Looseness"), Number(0.5)}}));
	Tick();
	EXPECT_EQ(GeneratedCount(TEXT("ZorvekPCGForest")), GridPoints(4500.0, 4500.0, 0.08));
	EXPECT_EQ(Vec(Readback(TEXT("ZorvekPCGForest"))->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("extent"))), "2250 2250 300");
	int32 Volumes = 0;
	for (const FString& Label : LevelLabels())
	{
		Volumes += Label.StartsWith(TEXT("ZorvekPCGForest")) ? 1 : 0;
	}
	EXPECT_EQ(Volumes, 1);

	// Refusals leave the forest as it is.
	ExpectRefusedUnchanged(TEXT("pcg_update_forest_recipe"), Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}}),
		"pcg_update_forest_recipe needs at least one of Density, DensityScale, Looseness, SizeX, SizeY, SizeZ, SizeScale or Seed.");
	ExpectRefusedUnchanged(TEXT("pcg_update_forest_recipe"), Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("DensityScale"), Number(100.0)}}),
		"Density must be greater than 0 and at most 1 trees per square metre.");
	ExpectRefusedUnchanged(TEXT("pcg_update_forest_recipe"), Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ForestActorNameOrLabel"), Text(TEXT("PCG_Forest"))}, {TEXT("Density"), Number(0.1)}}),
		"'PCG_Forest' does not run a forest graph from pcg_create_forest_repro.");
	ExpectRefusedUnchanged(TEXT("pcg_update_forest_recipe"), Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ForestActorNameOrLabel"), Text(TEXT("Nowhere"))}, {TEXT("Density"), Number(0.1)}}),
		"No editor actor found for 'Nowhere'.");
}

TEST_F(PcgForestToolsTest, SetForestBoundsResizesAndRefusesEmptyBoxes)
{
	Ok(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("Density"), Number(0.1)}, {TEXT("SizeX"), Number(2000.0)}, {TEXT("SizeY"), Number(2000.0)}}));
	for (const double Bad : {0.0, -200.0})
	{
		ExpectRefusedUnchanged(TEXT("pcg_set_forest_bounds"), Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}, {TEXT("SizeY"), Number(Bad)}}),
			"SizeY must be greater than 0 (centimetres).");
	}
	const TSharedPtr<FJsonObject> Resized = Ok(Forest(TEXT("pcg_set_forest_bounds"), {{TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}, {TEXT("SizeX"), Number(1000.0)}}));
	EXPECT_EQ(Vec(Resized->GetObjectField(TEXT("size"))), "1000 2000 400");
	EXPECT_EQ(Vec(Resized->GetObjectField(TEXT("previous_size"))), "2000 2000 400");
	Tick();
	EXPECT_EQ(GeneratedCount(TEXT("ZorvekPCGForest")), GridPoints(1000.0, 2000.0, 0.1));
}

TEST_F(PcgForestToolsTest, StandInTreesWaitForGenerationReplaceEachOtherAndCleanupRestoresTheLevel)
{
	const std::string Original = DescribeLevel();
	Ok(Forest(TEXT("pcg_run_forest_recipe"), {{TEXT("Density"), Number(0.04)}, {TEXT("SizeX"), Number(2500.0)}, {TEXT("SizeY"), Number(2500.0)}}));
	// Before the tick the component has not generated: nothing to show yet.
	ExpectRefusedUnchanged(TEXT("pcg_create_visual_repro_output"), Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}}),
		"Forest actor has not generated yet. Call pcg_generate (or a forest recipe), let the editor tick, then call this again.");
	Tick();
	const double Points = GridPoints(2500.0, 2500.0, 0.04);
	const TSharedPtr<FJsonObject> First = Ok(Forest(TEXT("pcg_create_visual_repro_output"), {{TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}}));
	EXPECT_EQ(First->GetNumberField(TEXT("visual_output_count")), Points);
	EXPECT_FALSE(First->GetBoolField(TEXT("truncated")));
	const int32 ActorCount = World().GetAllLevelActors().Num();
	// Again, capped: the earlier stand-ins are replaced, not joined.
	const TSharedPtr<FJsonObject> Second = Ok(Forest(TEXT("pcg_create_visual_repro_output"), {{TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}, {TEXT("MaxActors"), Number(10.0)}}));
	EXPECT_EQ(Second->GetNumberField(TEXT("removed_visual_output_count")), Points);
	EXPECT_TRUE(Second->GetBoolField(TEXT("truncated")));
	EXPECT_EQ(World().GetAllLevelActors().Num(), ActorCount - (int32)Points + 10);
	EXPECT_EQ(VisualCount(TEXT("ZorvekPCGForest")), 10.0);
	// Each stand-in sits at a generated point inside the forest and shows the cone.
	const TSharedPtr<FJsonObject> Inspected = Ok(Call(TEXT("pcg_inspect_generated"), Arguments({{TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}})));
	for (const TSharedPtr<FJsonValue>& Tree : Inspected->GetArrayField(TEXT("visual_output_actors")))
	{
		const TSharedPtr<FJsonObject> Location = Tree->AsObject()->GetObjectField(TEXT("transform"))->GetObjectField(TEXT("location"));
		EXPECT_LE(std::abs(Location->GetNumberField(TEXT("x"))), 1250.0);
		EXPECT_LE(std::abs(Location->GetNumberField(TEXT("y"))), 1250.0);
		EXPECT_EQ(S(Tree->AsObject()->GetArrayField(TEXT("components"))[0]->AsObject()->GetStringField(TEXT("static_mesh"))), "/Engine/BasicShapes/Cone.Cone");
	}
	EXPECT_EQ(Error(Forest(TEXT("pcg_create_visual_repro_output"), {{TEXT("ForestActorNameOrLabel"), Text(TEXT("ZorvekPCGForest"))}, {TEXT("MaxActors"), Number(5000.0)}})), "MaxActors must be between 1 and 1000.");

	// The stand-ins are labelled after the forest, so cleanup by the forest's label takes the volume
	// and its trees, and leaves the sample level (its own repro actor included) as it was.
	const TSharedPtr<FJsonObject> Cleaned = Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("ZorvekPCGForest"))}})));
	EXPECT_EQ(Cleaned->GetNumberField(TEXT("deleted_count")), 11.0);
	EXPECT_EQ(DescribeLevel(), Original);
}
