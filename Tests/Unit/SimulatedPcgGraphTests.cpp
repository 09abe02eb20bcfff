// PCG graphs authored through the graph classes' UFUNCTIONs by reflection and read back the same
// way, and the simulated execution of what the forest uses: the surface sampler's grid, the
// density filter, the weighted static mesh spawner and the output node.
#include "AssetTestSupport.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Pcg/ZorvekMCPBridgePcgGraphAuthoring.h"
#include "Pcg/ZorvekMCPBridgePcgReflection.h"
#include "SimulatedPcg.h"
#include "SimulatedWorld.h"

#include <cmath>

using namespace ZorvekAssetTests;
namespace Authoring = ZorvekMCPBridgePcgGraphAuthoring;

namespace
{
	class SimulatedPcgGraphTest : public ::testing::Test
	{
	protected:
		SimulatedPcgGraphTest()
			: Port(LoadSampleProject())
		{
		}

		FZorvekMCPBridgeObjectHandle NewGraph(const TCHAR* Name)
		{
			FZorvekMCPBridgeObjectHandle Graph;
			FString Error;
			EXPECT_TRUE(Authoring::CreateGraphAsset(*Port, TEXT("/Game/Tests/PCG"), Name, Graph, Error)) << S(Error);
			return Graph;
		}

		struct FNode
		{
			FZorvekMCPBridgeObjectHandle Node;
			FZorvekMCPBridgeObjectHandle Settings;
		};

		FNode Add(FZorvekMCPBridgeObjectHandle Graph, const TCHAR* SettingsClass)
		{
			FNode Node;
			FString Error;
			EXPECT_TRUE(Authoring::AddNodeOfType(*Port, Graph, SettingsClass, Node.Node, Node.Settings, Error)) << S(Error);
			return Node;
		}

		void Connect(FZorvekMCPBridgeObjectHandle Graph, FZorvekMCPBridgeObjectHandle From, const TCHAR* FromPin, FZorvekMCPBridgeObjectHandle To, const TCHAR* ToPin)
		{
			FString Error;
			EXPECT_TRUE(Authoring::AddEdge(*Port, Graph, From, FromPin, To, ToPin, Error)) << S(Error);
		}

		void Set(FZorvekMCPBridgeObjectHandle Settings, const TCHAR* Property, const TCHAR* Value)
		{
			FString Error;
			EXPECT_TRUE(Authoring::SetSettingsProperty(*Port, Settings, Property, Value, Error)) << S(Error);
		}

		// Input -> sampler -> filter -> spawner -> output, as the forest builds it.
		struct FForest
		{
			FZorvekMCPBridgeObjectHandle Graph;
			FNode Sampler;
			FNode Filter;
			FNode Spawner;
		};

		FForest BuildForest(const TCHAR* Name, const TArray<TPair<FString, int32>>& Meshes)
		{
			FForest Forest;
			Forest.Graph = NewGraph(Name);
			Forest.Sampler = Add(Forest.Graph, Authoring::SurfaceSamplerClassPath);
			Forest.Filter = Add(Forest.Graph, Authoring::DensityFilterClassPath);
			Forest.Spawner = Add(Forest.Graph, Authoring::StaticMeshSpawnerClassPath);
			FString Error;
			EXPECT_TRUE(Authoring::SetWeightedMeshEntries(*Port, Forest.Spawner.Settings, Meshes, Error)) << S(Error);
			Connect(Forest.Graph, Authoring::GetInputNode(*Port, Forest.Graph), TEXT("Input"), Forest.Sampler.Node, TEXT("Surface"));
			Connect(Forest.Graph, Forest.Sampler.Node, TEXT("Out"), Forest.Filter.Node, TEXT("In"));
			Connect(Forest.Graph, Forest.Filter.Node, TEXT("Out"), Forest.Spawner.Node, TEXT("In"));
			Connect(Forest.Graph, Forest.Spawner.Node, TEXT("Out"), Authoring::GetOutputNode(*Port, Forest.Graph), TEXT("Out"));
			return Forest;
		}

		// A PCG volume of SizeX x SizeY cm running the graph, generated and ticked.
		FZorvekMCPBridgeObjectHandle RunOnVolume(FZorvekMCPBridgeObjectHandle Graph, double SizeX, double SizeY, int32 Seed = 42)
		{
			IZorvekMCPBridgeWorld& World = Port->GetWorld();
			const FZorvekMCPBridgeObjectHandle Volume = World.SpawnActorFromClass(TEXT("/Script/PCG.PCGVolume"), {0.0, 0.0, 0.0}, {});
			World.SetActorScale3D(Volume, {SizeX / 200.0, SizeY / 200.0, 1.0});
			FZorvekMCPBridgeActorSnapshot Snapshot;
			EXPECT_TRUE(World.ReadActor(Volume, Snapshot));
			const FZorvekMCPBridgeObjectHandle Component = ZorvekMCPBridgePcgReflection::FindPcgComponent(*Port, Snapshot);
			Set(Component, TEXT("Seed"), *FString::Printf(TEXT("%d"), Seed));
			Port->GetEditor().GetWorld().GetPcg().SetComponentGraph(*FSimulatedEditorPort::ToObject(Component), FSimulatedEditorPort::ToObject(Graph));
			FString Error;
			EXPECT_TRUE(ZorvekMCPBridgePcgReflection::CallWithFlag(*Port, Component, TEXT("PCG component"), TEXT("GenerateLocal"), true, Error)) << S(Error);
			Port->GetEditor().GetWorld().Tick();
			return Component;
		}

		const FSimulatedPcgRunSummary& LastRun(FZorvekMCPBridgeObjectHandle Component) const
		{
			const FSimulatedPcgRunSummary* Run = Port->GetEditor().GetWorld().GetPcg().FindLastRun(*FSimulatedEditorPort::ToObject(Component));
			static const FSimulatedPcgRunSummary None;
			EXPECT_NE(Run, nullptr);
			return Run ? *Run : None;
		}

		// The sampler's grid rule, worked out independently: cells of 100 / sqrt(density) cm.
		static int32 ExpectedGridPoints(double SizeX, double SizeY, double Density)
		{
			const double Cell = 100.0 / std::sqrt(Density);
			return (int32)std::floor(SizeX / Cell) * (int32)std::floor(SizeY / Cell);
		}

		TSharedPtr<FSimulatedEditorPort> Port;
	};
}

TEST_F(SimulatedPcgGraphTest, AGraphBuiltByReflectionReadsBackWithItsNodesPinsSettingsAndEdges)
{
	const FForest Forest = BuildForest(TEXT("PCG_RoundTrip"), {{TEXT("/Engine/BasicShapes/Cone.Cone"), 2}});
	Set(Forest.Sampler.Settings, TEXT("PointsPerSquaredMeter"), TEXT("0.25"));

	FZorvekMCPBridgePcgGraphSnapshot Graph;
	ASSERT_TRUE(Authoring::ReadGraph(*Port, Forest.Graph, Graph));
	// The constructor's input and output nodes come first; Nodes holds the added ones in order.
	ASSERT_EQ(Graph.Nodes.Num(), 5);
	EXPECT_EQ(S(Graph.Nodes[0].Role), "input");
	EXPECT_EQ(S(Graph.Nodes[0].SettingsClassPath), "/Script/PCG.PCGGraphInputOutputSettings");
	EXPECT_EQ(S(Graph.Nodes[1].Role), "output");
	EXPECT_EQ(S(Graph.Nodes[2].SettingsClassPath), "/Script/PCG.PCGSurfaceSamplerSettings");
	EXPECT_EQ(ToStd(Graph.Nodes[2].InputPins), (std::vector<std::string>{"Surface", "Bounding Shape"}));
	EXPECT_EQ(S(Graph.Nodes[3].SettingsClassPath), "/Script/PCG.PCGDensityFilterSettings");
	EXPECT_EQ(S(Graph.Nodes[4].SettingsClassPath), "/Script/PCG.PCGStaticMeshSpawnerSettings");
	ASSERT_EQ(Graph.Edges.Num(), 4);
	EXPECT_TRUE(Graph.HasEdge(0, TEXT("Input"), 2, TEXT("Surface")));
	EXPECT_TRUE(Graph.HasEdge(2, TEXT("Out"), 3, TEXT("In")));
	EXPECT_TRUE(Graph.HasEdge(3, TEXT("Out"), 4, TEXT("In")));
	EXPECT_TRUE(Graph.HasEdge(4, TEXT("Out"), 1, TEXT("Out")));

	const TSharedPtr<FJsonObject> Json = Authoring::MakeGraphJson(*Port, Graph);
	const TSharedPtr<FJsonObject> Sampler = Json->GetArrayField(TEXT("nodes"))[2]->AsObject()->GetObjectField(TEXT("properties"));
	EXPECT_EQ(S(Sampler->GetStringField(TEXT("PointsPerSquaredMeter"))), "0.250000");
	const TSharedPtr<FJsonObject> Spawner = Json->GetArrayField(TEXT("nodes"))[4]->AsObject()->GetObjectField(TEXT("properties"));
	EXPECT_EQ(S(Spawner->GetStringField(TEXT("MeshSelectorType"))), "/Script/CoreUObject.Class'/Script/PCG.PCGMeshSelectorWeighted'");
	EXPECT_NE(S(Spawner->GetStringField(TEXT("MeshEntries"))).find("/Engine/BasicShapes/Cone.Cone"), std::string::npos);
	EXPECT_NE(S(Spawner->GetStringField(TEXT("MeshEntries"))).find("Weight=2"), std::string::npos);
}

TEST_F(SimulatedPcgGraphTest, AnEdgeToAPinThatDoesNotExistIsReportedThoughAddEdgeAnswersItsTarget)
{
	const FZorvekMCPBridgeObjectHandle Graph = NewGraph(TEXT("PCG_BadEdge"));
	const FNode Sampler = Add(Graph, Authoring::SurfaceSamplerClassPath);
	const FNode Filter = Add(Graph, Authoring::DensityFilterClassPath);
	FString Error;
	// "In" is not a sampler input: its pins are Surface and Bounding Shape (unreal-behaviour-world-assets.md §4.4).
	EXPECT_FALSE(Authoring::AddEdge(*Port, Graph, Filter.Node, TEXT("Out"), Sampler.Node, TEXT("In"), Error));
	EXPECT_EQ(S(Error), "PCG graph did not connect PCGNode_1.Out to PCGNode_0.In.");
	FZorvekMCPBridgePcgGraphSnapshot Snapshot;
	ASSERT_TRUE(Authoring::ReadGraph(*Port, Graph, Snapshot));
	EXPECT_EQ(Snapshot.Edges.Num(), 0);
	// The same edge twice is one edge.
	Connect(Graph, Sampler.Node, TEXT("Out"), Filter.Node, TEXT("In"));
	Connect(Graph, Sampler.Node, TEXT("Out"), Filter.Node, TEXT("In"));
	ASSERT_TRUE(Authoring::ReadGraph(*Port, Graph, Snapshot));
	EXPECT_EQ(Snapshot.Edges.Num(), 1);
}

TEST_F(SimulatedPcgGraphTest, AbstractAndForeignSettingsClassesAddNoNode)
{
	const FZorvekMCPBridgeObjectHandle Graph = NewGraph(TEXT("PCG_BadNodes"));
	FZorvekMCPBridgeObjectHandle Node, Settings;
	FString Error;
	EXPECT_FALSE(Authoring::AddNodeOfType(*Port, Graph, TEXT("/Script/PCG.PCGSettings"), Node, Settings, Error));
	EXPECT_EQ(S(Error), "PCG graph did not add a node of '/Script/PCG.PCGSettings'.");
	// A class parameter takes only classes; an actor class is no settings class and is refused by the graph.
	EXPECT_FALSE(Authoring::AddNodeOfType(*Port, Graph, TEXT("/Script/Engine.Actor"), Node, Settings, Error));
	FZorvekMCPBridgePcgGraphSnapshot Snapshot;
	ASSERT_TRUE(Authoring::ReadGraph(*Port, Graph, Snapshot));
	EXPECT_EQ(Snapshot.Nodes.Num(), 2);
}

TEST_F(SimulatedPcgGraphTest, TheSamplerGridIsDeterministicForASeedAndTheSpawnerSplitsPointsByWeight)
{
	const FForest Forest = BuildForest(TEXT("PCG_Counts"), {{TEXT("/Engine/BasicShapes/Cone.Cone"), 3}, {TEXT("/Engine/BasicShapes/Cylinder.Cylinder"), 1}});
	Set(Forest.Sampler.Settings, TEXT("PointsPerSquaredMeter"), TEXT("0.05"));
	const FZorvekMCPBridgeObjectHandle Component = RunOnVolume(Forest.Graph, 4000.0, 3000.0);
	const FSimulatedPcgRunSummary First = LastRun(Component);
	EXPECT_EQ(First.OutputPointCount, ExpectedGridPoints(4000.0, 3000.0, 0.05));
	int32 Instances = 0;
	for (const TPair<FString, int32>& Mesh : First.MeshInstanceCounts)
	{
		Instances += Mesh.Value;
	}
	EXPECT_EQ(Instances, First.OutputPointCount);
	EXPECT_EQ(First.MeshInstanceCounts.Num(), 2);
	EXPECT_GT(First.MeshInstanceCounts.FindRef(TEXT("/Engine/BasicShapes/Cone.Cone")), First.MeshInstanceCounts.FindRef(TEXT("/Engine/BasicShapes/Cylinder.Cylinder")));

	// One managed ISM resource per mesh, found by reflection where 5.7 keeps them.
	const FZorvekMCPBridgePropertyCursor Resources = Port->GetReflection().FindProperty(Component, TEXT("GeneratedResources"));
	ASSERT_EQ(Resources.GetArrayNum(), 2);
	EXPECT_TRUE(Port->GetObjects().IsA(Resources.GetArrayElement(0).GetReferencedObject(), TEXT("/Script/PCG.PCGManagedISMComponent")));

	// The same seed regenerates the same split; the resources are replaced, not added.
	FString Error;
	ASSERT_TRUE(ZorvekMCPBridgePcgReflection::CallWithFlag(*Port, Component, TEXT("PCG component"), TEXT("GenerateLocal"), true, Error));
	Port->GetEditor().GetWorld().Tick();
	EXPECT_EQ(LastRun(Component).MeshInstanceCounts.FindRef(TEXT("/Engine/BasicShapes/Cone.Cone")), First.MeshInstanceCounts.FindRef(TEXT("/Engine/BasicShapes/Cone.Cone")));
	EXPECT_EQ(Port->GetReflection().FindProperty(Component, TEXT("GeneratedResources")).GetArrayNum(), 2);
}

TEST_F(SimulatedPcgGraphTest, TheDensityFilterKeepsPointsInsideItsBoundsOrOutsideThemWhenInverted)
{
	const FForest Forest = BuildForest(TEXT("PCG_Filter"), {{TEXT("/Engine/BasicShapes/Cone.Cone"), 1}});
	Set(Forest.Sampler.Settings, TEXT("PointsPerSquaredMeter"), TEXT("0.04"));
	const int32 Expected = ExpectedGridPoints(2000.0, 2000.0, 0.04);
	// Sampled points have density 1: the default bounds 0.5..1 keep all of them.
	EXPECT_EQ(LastRun(RunOnVolume(Forest.Graph, 2000.0, 2000.0)).OutputPointCount, Expected);
	Set(Forest.Filter.Settings, TEXT("LowerBound"), TEXT("0.0"));
	Set(Forest.Filter.Settings, TEXT("UpperBound"), TEXT("0.5"));
	EXPECT_EQ(LastRun(RunOnVolume(Forest.Graph, 2000.0, 2000.0)).OutputPointCount, 0);
	Set(Forest.Filter.Settings, TEXT("bInvertFilter"), TEXT("True"));
	EXPECT_EQ(LastRun(RunOnVolume(Forest.Graph, 2000.0, 2000.0)).OutputPointCount, Expected);
}

TEST_F(SimulatedPcgGraphTest, ASpawnerWithoutMeshesOrANodeOffTheInputProducesNothing)
{
	// No SetMeshSelectorType: MeshSelectorParameters stays null and nothing is spawned
	// (unreal-behaviour-world-assets.md §4.4: setting MeshSelectorType alone makes no parameters).
	const FZorvekMCPBridgeObjectHandle Graph = NewGraph(TEXT("PCG_NoMeshes"));
	const FNode Sampler = Add(Graph, Authoring::SurfaceSamplerClassPath);
	const FNode Spawner = Add(Graph, Authoring::StaticMeshSpawnerClassPath);
	Set(Spawner.Settings, TEXT("MeshSelectorType"), TEXT("/Script/PCG.PCGMeshSelectorWeighted"));
	Connect(Graph, Authoring::GetInputNode(*Port, Graph), TEXT("Input"), Sampler.Node, TEXT("Surface"));
	Connect(Graph, Sampler.Node, TEXT("Out"), Spawner.Node, TEXT("In"));
	Connect(Graph, Spawner.Node, TEXT("Out"), Authoring::GetOutputNode(*Port, Graph), TEXT("Out"));
	EXPECT_EQ(Authoring::GetPropertyText(*Port, Spawner.Settings, TEXT("MeshSelectorParameters")), TEXT("None"));
	const FSimulatedPcgRunSummary& Run = LastRun(RunOnVolume(Graph, 2000.0, 2000.0));
	EXPECT_EQ(Run.MeshInstanceCounts.Num(), 0);
	EXPECT_EQ(Run.OutputPointCount, ExpectedGridPoints(2000.0, 2000.0, 0.1));

	// A sampler whose Surface pin is not connected samples nothing.
	const FZorvekMCPBridgeObjectHandle Loose = NewGraph(TEXT("PCG_Loose"));
	const FNode LooseSampler = Add(Loose, Authoring::SurfaceSamplerClassPath);
	Connect(Loose, LooseSampler.Node, TEXT("Out"), Authoring::GetOutputNode(*Port, Loose), TEXT("Out"));
	EXPECT_EQ(LastRun(RunOnVolume(Loose, 2000.0, 2000.0)).OutputPointCount, 0);
}
