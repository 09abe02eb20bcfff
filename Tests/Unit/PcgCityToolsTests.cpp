// The status, road capability and spline bounds side of the PCG tools against the sample project:
// what an agent learns before building, the unavailable answer, the opt-in and number refusals
// read back against the level, and spline bounds actors created, read and resized.
#include "EditorWorldTestSupport.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "SimulatedPcg.h"
#include "SimulatedWorld.h"
#include "Tools/ZorvekMCPBridgeDiscoveryTools.h"

#include <algorithm>
#include <map>

using namespace ZorvekEditorWorldTests;

namespace
{
	class PcgCityToolsTest : public FEditorWorldToolsTest
	{
	protected:
		void SetPcgAvailable(bool bAvailable) const
		{
			FSimulatedPcgPluginState State;
			State.bInstalled = bAvailable;
			State.bEnabled = bAvailable;
			State.bModuleExists = bAvailable;
			State.bModuleLoaded = bAvailable;
			Port->GetEditor().GetWorld().GetPcg().SetPluginState(State);
		}

		// The answer a catalogued tool gives while this build lacks it.
		static std::string NotBuiltText(const FString& ToolName)
		{
			return S(ZorvekMCPBridgeTools::MakeNotAvailableYetResult(ToolName)->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
		}

		static std::string TextOf(const TSharedPtr<FJsonObject>& Result)
		{
			return S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
		}
	};

	std::vector<std::string> PcgManifestIds(bool bSupported)
	{
		std::vector<std::string> Ids;
		for (const ZorvekMCPBridgeDiscoveryTools::FCapability& Capability : ZorvekMCPBridgeDiscoveryTools::GetCapabilities())
		{
			const FString Id = Capability.Id;
			if (Id.StartsWith(TEXT("pcg_"), ESearchCase::CaseSensitive) && Capability.bSupported == bSupported)
			{
				Ids.push_back(S(Id));
			}
		}
		return Ids;
	}
}

// pcg_get_status.

TEST_F(PcgCityToolsTest, TheStatusAnswersInEveryPluginStateAndTellsAnAgentWhatToDoNext)
{
	SetPcgAvailable(false);
	const TSharedPtr<FJsonObject> Off = Ok(Call(TEXT("pcg_get_status")));
	EXPECT_FALSE(Off->GetBoolField(TEXT("pcg_available")));
	EXPECT_EQ(S(Off->GetStringField(TEXT("status"))), "pcg_unavailable");
	EXPECT_FALSE(Off->GetObjectField(TEXT("pcg_status"))->GetBoolField(TEXT("pcg_installed")));
	// The steps of the unavailable result every other PCG tool gives.
	EXPECT_EQ(Strings(Off->GetArrayField(TEXT("next_steps"))), (std::vector<std::string>{
		"Enable the PCG plugin for the project if PCG generation is desired.",
		"Restart Unreal so PCG classes/modules are available.",
		"Run pcg_get_status again before mutating the editor world."}));

	SetPcgAvailable(true);
	const TSharedPtr<FJsonObject> On = Ok(Call(TEXT("pcg_get_status")));
	EXPECT_TRUE(On->GetBoolField(TEXT("pcg_available")));
	EXPECT_EQ(S(On->GetStringField(TEXT("status"))), "pcg_available");
	EXPECT_FALSE(On->HasField(TEXT("note")));
	EXPECT_EQ(Strings(On->GetArrayField(TEXT("next_steps")))[0], "Call pcg_get_road_capabilities before road or city work.");
	EXPECT_TRUE(On->GetObjectField(TEXT("level_changes"))->GetBoolField(TEXT("requires_allow_current_level")));
}

TEST_F(PcgCityToolsTest, TheStatusCarriesThePcgPartOfTheManifestAndTheCataloguesPcgTools)
{
	const TSharedPtr<FJsonObject> Payload = Ok(Call(TEXT("pcg_get_status")));
	std::vector<std::string> Supported;
	std::vector<std::string> Unsupported;
	for (const auto& Field : Payload->GetObjectField(TEXT("feature_matrix"))->Values)
	{
		(Field.Value->AsBool() ? Supported : Unsupported).push_back(S(Field.Key));
	}
	EXPECT_EQ(Supported, PcgManifestIds(true));
	EXPECT_EQ(Unsupported, PcgManifestIds(false));
	EXPECT_EQ(Unsupported, (std::vector<std::string>{"pcg_spline_road_sampling", "pcg_arbitrary_road_network_editing",
		"pcg_arbitrary_volume_bounds_controls", "pcg_true_multi_class_spawn", "pcg_graph_editing"}));
	// Each boundary comes with its own reason, not the fallback.
	std::vector<std::string> BoundaryIds;
	for (const TSharedPtr<FJsonValue>& Boundary : Payload->GetArrayField(TEXT("known_unsupported")))
	{
		BoundaryIds.push_back(S(Boundary->AsObject()->GetStringField(TEXT("capability"))));
		EXPECT_NE(S(Boundary->AsObject()->GetStringField(TEXT("reason"))), "Not supported by this bridge.");
	}
	EXPECT_EQ(BoundaryIds, Unsupported);

	// Catalogue order: the three generators, then the nineteen pcg tools.
	const std::vector<std::string> Tools = Strings(Payload->GetArrayField(TEXT("tools")));
	ASSERT_EQ(Tools.size(), 22u);
	EXPECT_EQ(Tools.front(), "blueprint_create_road_actor");
	EXPECT_EQ(Tools[3], "pcg_get_status");
	EXPECT_EQ(Tools.back(), "pcg_multiclass_spawn_proof");
}

// pcg_get_road_capabilities.

TEST_F(PcgCityToolsTest, RoadCapabilitiesNeedPcgAndChangeNothingWithoutIt)
{
	SetPcgAvailable(false);
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Payload = Refused(Call(TEXT("pcg_get_road_capabilities"), Arguments({{TEXT("Lanes"), Number(4)}})));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("status"))), "pcg_unavailable");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("tool"))), "pcg_get_road_capabilities");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("operation"))), "get_road_capabilities");
	EXPECT_EQ(S(Payload->GetObjectField(TEXT("request"))->GetObjectField(TEXT("arguments"))->GetStringField(TEXT("Lanes"))), "4");
	EXPECT_EQ(DescribeLevel(), Before);
}

TEST_F(PcgCityToolsTest, RoadCapabilitiesSayWhichWorkflowsAnswerInThisBuildAsTheToolsThemselvesDo)
{
	const TSharedPtr<FJsonObject> Payload = Ok(Call(TEXT("pcg_get_road_capabilities")));
	int32 Checked = 0;
	for (const TCHAR* Group : {TEXT("workflows"), TEXT("piece_generators")})
	{
		for (const TSharedPtr<FJsonValue>& Entry : Payload->GetArrayField(Group))
		{
			const FString Tool = Entry->AsObject()->GetStringField(TEXT("tool"));
			SCOPED_TRACE(S(Tool));
			ASSERT_NE(ZorvekMCPBridgeTools::FindTool(Tool), nullptr);
			// Empty arguments change nothing: built tools refuse for want of the opt-in or a name.
			const bool bAnswersNotBuilt = TextOf(Call(*Tool)) == NotBuiltText(Tool);
			EXPECT_EQ(Entry->AsObject()->GetBoolField(TEXT("available_in_this_build")), !bAnswersNotBuilt);
			++Checked;
		}
	}
	EXPECT_EQ(Checked, 11);

	std::vector<std::string> Unsupported;
	for (const TSharedPtr<FJsonValue>& Boundary : Payload->GetArrayField(TEXT("unsupported")))
	{
		Unsupported.push_back(S(Boundary->AsObject()->GetStringField(TEXT("capability"))));
	}
	EXPECT_EQ(Unsupported, (std::vector<std::string>{"pcg_spline_road_sampling", "pcg_arbitrary_road_network_editing"}));
	const TSharedPtr<FJsonObject> Spline = Payload->GetObjectField(TEXT("spline_bounds"));
	EXPECT_EQ(Spline->GetNumberField(TEXT("point_count")), 4);
	EXPECT_LT(Spline->GetNumberField(TEXT("min_size")), Spline->GetNumberField(TEXT("max_size")));
}

// Spline bounds actors.

namespace
{
	class PcgSplineBoundsTest : public PcgCityToolsTest
	{
	protected:
		TSharedPtr<FJsonObject> Create(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			if (!Args->HasField(TEXT("AllowCurrentLevel")))
			{
				Args->SetBoolField(TEXT("AllowCurrentLevel"), true);
			}
			return Call(TEXT("pcg_create_spline_bounds_actor"), Args);
		}

		// "x y" of each point of a spline bounds object, in point order.
		static std::vector<std::string> PointsOf(const TSharedPtr<FJsonObject>& Spline, const TCHAR* Space)
		{
			std::vector<std::string> Points;
			for (const TSharedPtr<FJsonValue>& Point : Spline->GetArrayField(TEXT("points")))
			{
				Points.push_back(Vec(Point->AsObject()->GetObjectField(Space)));
			}
			return Points;
		}
	};
}

TEST_F(PcgSplineBoundsTest, ACreatedBoundsActorIsAClosedLinearRectangleAroundItsCentreTaggedForCleanup)
{
	const TSharedPtr<FJsonObject> Payload = Ok(Create({{TEXT("Length"), Text(TEXT("3000"))}, {TEXT("Width"), Number(1000)},
		{TEXT("LocationX"), Number(500)}, {TEXT("LocationY"), Number(-200)}, {TEXT("RotationYaw"), Number(90)}}));
	EXPECT_TRUE(Payload->GetBoolField(TEXT("created")));
	const TSharedPtr<FJsonObject> Spline = Payload->GetObjectField(TEXT("spline_bounds"));
	EXPECT_EQ(Spline->GetNumberField(TEXT("point_count")), 4);
	EXPECT_TRUE(Spline->GetBoolField(TEXT("closed_loop")));
	// Linear corners: the length is the perimeter, not a rounded loop's.
	EXPECT_NEAR(Spline->GetNumberField(TEXT("spline_length")), 8000.0, 0.01);
	EXPECT_EQ(PointsOf(Spline, TEXT("local")), (std::vector<std::string>{"-1500 -500 0", "1500 -500 0", "1500 500 0", "-1500 500 0"}));
	// World points follow the actor's location and yaw: local X runs along world Y.
	EXPECT_EQ(PointsOf(Spline, TEXT("world")), (std::vector<std::string>{"1000 -1700 0", "1000 1300 0", "0 1300 0", "0 -1700 0"}));
	EXPECT_EQ(Vec(Spline->GetObjectField(TEXT("world_bounds"))->GetObjectField(TEXT("extent"))), "500 1500 0");
	EXPECT_EQ(S(Spline->GetObjectField(TEXT("rectangle"))->GetStringField(TEXT("length"))), "3000");

	const TSharedPtr<FJsonObject> Actor = Payload->GetObjectField(TEXT("actor"));
	EXPECT_EQ(S(Actor->GetStringField(TEXT("label"))), "ZorvekPCGSplineBounds");
	EXPECT_EQ(Strings(Actor->GetArrayField(TEXT("tags"))), (std::vector<std::string>{"ZorvekMCPBridge", "ZorvekRepro", "ZorvekVisualPCG", "ZorvekPCGSplineBounds"}));
	EXPECT_TRUE(Actor->GetBoolField(TEXT("selected")));
	// The spline is a primitive, so the actor's bounds are the rectangle's.
	EXPECT_EQ(Vec(Actor->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("center"))), "500 -200 0");

	// A second one without a label is numbered, as the editor numbers labels.
	EXPECT_EQ(S(Ok(Create({}))->GetObjectField(TEXT("actor"))->GetStringField(TEXT("label"))), "ZorvekPCGSplineBounds2");
}

TEST_F(PcgSplineBoundsTest, RefusalsLeaveTheLevelAsItWas)
{
	const TCHAR* const Tool = TEXT("pcg_create_spline_bounds_actor");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("Length"), Number(1000)}}),
		"pcg_create_spline_bounds_actor requires AllowCurrentLevel=true because this mutates the current editor world.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Text(TEXT("false"))}}),
		"pcg_create_spline_bounds_actor requires AllowCurrentLevel=true because this mutates the current editor world.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Width"), Number(0)}}), "Width must be between 100 and 1000000 (centimetres).");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Length"), Number(-4000)}}), "Length must be between 100 and 1000000 (centimetres).");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Length"), Number(5e6)}}), "Length must be between 100 and 1000000 (centimetres).");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Width"), Text(TEXT("wide"))}}), "Width must be a number.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("LocationX"), Bool(true)}}), "LocationX must be a number.");

	const TSharedPtr<FJsonObject> Resize = Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("ZorvekPCGSplineBounds"))}, {TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Width"), Number(500)}});
	ExpectRefusedUnchanged(TEXT("pcg_set_spline_bounds_actor"), Resize, "No editor actor found for 'ZorvekPCGSplineBounds'.");
	// An actor without a spline, and a spline the bridge did not make.
	Ok(Create({}));
	Resize->SetStringField(TEXT("ActorNameOrLabel"), TEXT("Floor"));
	ExpectRefusedUnchanged(TEXT("pcg_set_spline_bounds_actor"), Resize, "Actor 'Floor' has no spline component.");
	Resize->SetStringField(TEXT("ActorNameOrLabel"), TEXT("ZorvekPCGSplineBounds"));
	Resize->RemoveField(TEXT("AllowCurrentLevel"));
	ExpectRefusedUnchanged(TEXT("pcg_set_spline_bounds_actor"), Resize, "pcg_set_spline_bounds_actor requires AllowCurrentLevel=true because this mutates the current editor world.");
	ExpectRefusedUnchanged(TEXT("pcg_set_spline_bounds_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("ZorvekPCGSplineBounds"))}, {TEXT("AllowCurrentLevel"), Bool(true)}}),
		"pcg_set_spline_bounds_actor requires Length or Width.");
}

TEST_F(PcgSplineBoundsTest, ResizingKeepsTheUntouchedSideAndOnlyReshapesTheBridgesOwnBounds)
{
	Ok(Create({{TEXT("Length"), Number(4000)}, {TEXT("Width"), Number(2000)}, {TEXT("LocationY"), Number(1000)}}));
	const TSharedPtr<FJsonObject> Payload = Ok(Call(TEXT("pcg_set_spline_bounds_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT(" zorvekpcgsplinebounds "))},
		{TEXT("AllowCurrentLevel"), Text(TEXT("true"))}, {TEXT("Width"), Text(TEXT("600"))}})));
	EXPECT_EQ(Payload->GetObjectField(TEXT("previous_rectangle"))->GetNumberField(TEXT("width")), 2000);
	const TSharedPtr<FJsonObject> Rectangle = Payload->GetObjectField(TEXT("spline_bounds"))->GetObjectField(TEXT("rectangle"));
	EXPECT_EQ(Rectangle->GetNumberField(TEXT("length")), 4000);
	EXPECT_EQ(Rectangle->GetNumberField(TEXT("width")), 600);

	// Read back by the inspect tool: the same points, still closed and linear, still centred.
	const TSharedPtr<FJsonObject> Inspected = Ok(Call(TEXT("pcg_inspect_spline_bounds_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("ZorvekPCGSplineBounds"))}})));
	EXPECT_TRUE(Inspected->GetBoolField(TEXT("is_spline_bounds_actor")));
	const TSharedPtr<FJsonObject> Spline = Inspected->GetObjectField(TEXT("spline_bounds"));
	EXPECT_EQ(PointsOf(Spline, TEXT("world")), (std::vector<std::string>{"-2000 700 0", "2000 700 0", "2000 1300 0", "-2000 1300 0"}));
	EXPECT_NEAR(Spline->GetNumberField(TEXT("spline_length")), 9200.0, 0.01);
	EXPECT_EQ(S(Inspected->GetObjectField(TEXT("actor"))->GetStringField(TEXT("label"))), "ZorvekPCGSplineBounds");

	// A spline of the user's own (no bounds tag) can be read but is not reshaped.
	const FZorvekMCPBridgeObjectHandle Own = World().SpawnActorFromClass(TEXT("/Script/Engine.Actor"), {}, {});
	World().SetActorLabel(Own, TEXT("UserSpline"));
	ASSERT_TRUE(World().AddInstanceComponent(Own, TEXT("/Script/Engine.SplineComponent"), TEXT("Spline")).IsValid());
	const TSharedPtr<FJsonObject> User = Ok(Call(TEXT("pcg_inspect_spline_bounds_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("UserSpline"))}})));
	EXPECT_FALSE(User->GetBoolField(TEXT("is_spline_bounds_actor")));
	// The engine's new spline: two curve points 100 apart, open.
	EXPECT_EQ(User->GetObjectField(TEXT("spline_bounds"))->GetNumberField(TEXT("point_count")), 2);
	EXPECT_FALSE(User->GetObjectField(TEXT("spline_bounds"))->GetBoolField(TEXT("closed_loop")));
	EXPECT_NEAR(User->GetObjectField(TEXT("spline_bounds"))->GetNumberField(TEXT("spline_length")), 100.0, 0.01);
	ExpectRefusedUnchanged(TEXT("pcg_set_spline_bounds_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("UserSpline"))}, {TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Length"), Number(500)}}),
		"'UserSpline' is not a spline bounds actor from pcg_create_spline_bounds_actor.");
}

TEST_F(PcgSplineBoundsTest, CleanupRemovesTheBoundsActorsAndLeavesTheLevelAsItWas)
{
	const std::string Before = DescribeLevel();
	const TArray<FString> LabelsBefore = LevelLabels();
	Ok(Create({}));
	Ok(Create({{TEXT("ActorLabel"), Text(TEXT("RoadBounds"))}}));
	EXPECT_EQ(LevelLabels().Num(), LabelsBefore.Num() + 2);
	// The sample level has a repro actor of its own; the filter keeps it out of this test.
	const TSharedPtr<FJsonObject> Cleanup = Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("Bounds"))}})));
	EXPECT_EQ(Cleanup->GetNumberField(TEXT("deleted_count")), 2);
	EXPECT_EQ(LevelLabels(), LabelsBefore);
	// The selection the creation changed is the one thing cleanup does not restore.
	World().SelectNothing();
	std::string BeforeUnselected = Before.substr(0, Before.find("selected "));
	EXPECT_EQ(DescribeLevel(), BeforeUnselected);
}

TEST_F(PcgSplineBoundsTest, EverySplineToolAnswersTheUnavailableResultWithoutPcgAndPlacesNothing)
{
	SetPcgAvailable(false);
	const std::string Before = DescribeLevel();
	for (const TCHAR* Tool : {TEXT("pcg_create_spline_bounds_actor"), TEXT("pcg_inspect_spline_bounds_actor"), TEXT("pcg_set_spline_bounds_actor")})
	{
		SCOPED_TRACE(S(Tool));
		const TSharedPtr<FJsonObject> Payload = Refused(Call(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}, {TEXT("Width"), Number(500)}})));
		EXPECT_EQ(S(Payload->GetStringField(TEXT("status"))), "pcg_unavailable");
		EXPECT_EQ(S(Payload->GetStringField(TEXT("operation"))), S(FString(Tool).RightChop(4)));
	}
	EXPECT_EQ(DescribeLevel(), Before);
}

// The road recipe.

namespace
{
	class PcgRoadRecipeTest : public PcgCityToolsTest
	{
	protected:
		TSharedPtr<FJsonObject> RunRoad(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			if (!Args->HasField(TEXT("AllowCurrentLevel")))
			{
				Args->SetBoolField(TEXT("AllowCurrentLevel"), true);
			}
			return Call(TEXT("pcg_run_road_recipe"), Args);
		}
	};
}

TEST_F(PcgRoadRecipeTest, AStripPlacesItsSegmentsEndToEndAlongItsYawFromOneReusedBlueprint)
{
	const TSharedPtr<FJsonObject> Payload = Ok(RunRoad({{TEXT("SegmentCount"), Text(TEXT("3"))}, {TEXT("SegmentLength"), Number(1000)},
		{TEXT("LaneCount"), Number(4)}, {TEXT("LocationX"), Number(100)}, {TEXT("RotationYaw"), Number(90)}, {TEXT("RecipeLabel"), Text(TEXT("Main"))}}));
	EXPECT_EQ(Payload->GetNumberField(TEXT("segment_count")), 3);
	EXPECT_EQ(Payload->GetNumberField(TEXT("strip_length")), 3000);
	EXPECT_EQ(S(Payload->GetStringField(TEXT("recipe_tag"))), "ZorvekPCGRoad_Main");
	const TSharedPtr<FJsonObject> Road = Payload->GetObjectField(TEXT("road_blueprint"));
	EXPECT_EQ(S(Road->GetStringField(TEXT("object_path"))), "/Game/ZorvekPCG/Roads/BP_ZorvekRoad_4Lane_1000.BP_ZorvekRoad_4Lane_1000");
	EXPECT_FALSE(Road->GetBoolField(TEXT("reused")));

	std::vector<std::string> Labels;
	std::vector<std::string> Locations;
	for (const TSharedPtr<FJsonValue>& Value : Payload->GetArrayField(TEXT("actors")))
	{
		const TSharedPtr<FJsonObject> Actor = Value->AsObject();
		Labels.push_back(S(Actor->GetStringField(TEXT("label"))));
		Locations.push_back(Location(Actor->GetObjectField(TEXT("transform"))));
		EXPECT_EQ(Strings(Actor->GetArrayField(TEXT("tags"))), (std::vector<std::string>{"ZorvekMCPBridge", "ZorvekRepro", "ZorvekVisualPCG", "ZorvekPCGRoad_Main"}));
		EXPECT_EQ(Rotation(Actor->GetObjectField(TEXT("transform"))), "0 90 0");
		// Four lanes of 350 and two sidewalks of 200, turned to run along Y.
		EXPECT_NEAR(Actor->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("extent"))->GetNumberField(TEXT("x")), 900.0, 0.01);
		EXPECT_NEAR(Actor->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("extent"))->GetNumberField(TEXT("y")), 500.0, 0.01);
	}
	EXPECT_EQ(Labels, (std::vector<std::string>{"Main_Road01", "Main_Road02", "Main_Road03"}));
	EXPECT_EQ(Locations, (std::vector<std::string>{"100 500 0", "100 1500 0", "100 2500 0"}));

	// A second strip of the same lanes and length reuses the Blueprint.
	const TSharedPtr<FJsonObject> Second = Ok(RunRoad({{TEXT("SegmentCount"), Number(1)}, {TEXT("SegmentLength"), Number(1000)}, {TEXT("LaneCount"), Number(4)}, {TEXT("RecipeLabel"), Text(TEXT("Side"))}}));
	EXPECT_TRUE(Second->GetObjectField(TEXT("road_blueprint"))->GetBoolField(TEXT("reused")));
}

TEST_F(PcgRoadRecipeTest, RefusalsAndASecondRunOfOneLabelLeaveTheLevelAsItWas)
{
	const TCHAR* const Tool = TEXT("pcg_run_road_recipe");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("SegmentCount"), Number(2)}}), "pcg_run_road_recipe requires AllowCurrentLevel=true because this mutates the current editor world.");
	for (const TSharedPtr<FJsonValue>& Count : {Number(0), Number(101), Number(2.5), Text(TEXT("many"))})
	{
		const TSharedPtr<FJsonObject> Args = Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("SegmentCount"), Count}});
		const std::string Expected = Count->Type == EJson::String ? "SegmentCount must be a number." : "SegmentCount must be a whole number from 1 to 100.";
		ExpectRefusedUnchanged(Tool, Args, Expected);
	}
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("LaneCount"), Number(9)}}), "LaneCount must be a whole number from 1 to 8.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("SegmentLength"), Number(50)}}), "SegmentLength must be between 100 and 1000000 cm.");

	Ok(RunRoad({{TEXT("SegmentCount"), Number(2)}}));
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}}),
		"A road recipe labelled 'ZorvekPCGRoad' is already in the level; remove it with editor_cleanup_repro_actors (Filter ZorvekPCGRoad) or choose another RecipeLabel.");

	// Cleanup by the label takes the strip away, and the recipe runs again.
	EXPECT_EQ(Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("ZorvekPCGRoad"))}})))->GetNumberField(TEXT("deleted_count")), 2);
	EXPECT_EQ(Ok(RunRoad({}))->GetNumberField(TEXT("segment_count")), 5);
}

TEST_F(PcgRoadRecipeTest, WithoutPcgTheRecipeAnswersUnavailableAndMakesNothing)
{
	SetPcgAvailable(false);
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Payload = Refused(RunRoad({{TEXT("SegmentCount"), Number(3)}}));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("status"))), "pcg_unavailable");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("operation"))), "run_road_recipe");
	EXPECT_EQ(DescribeLevel(), Before);
	EXPECT_FALSE(Port->GetObjects().LoadObject(TEXT("/Game/ZorvekPCG/Roads/BP_ZorvekRoad_2Lane_2000.BP_ZorvekRoad_2Lane_2000")).IsValid());
}

// The city layout recipe.

namespace
{
	class PcgCityLayoutTest : public PcgCityToolsTest
	{
	protected:
		TSharedPtr<FJsonObject> RunCity(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			if (!Args->HasField(TEXT("AllowCurrentLevel")))
			{
				Args->SetBoolField(TEXT("AllowCurrentLevel"), true);
			}
			return Call(TEXT("pcg_run_city_layout_recipe"), Args);
		}

		// The level's actors carrying a tag.
		int32 CountTagged(const TCHAR* Tag) const
		{
			int32 Count = 0;
			for (const FZorvekMCPBridgeActorEntry& Actor : World().GetAllLevelActors())
			{
				Count += Actor.Tags.Contains(FName(Tag)) ? 1 : 0;
			}
			return Count;
		}

		static std::vector<int32> FloorsOf(const TSharedPtr<FJsonObject>& Payload)
		{
			std::vector<int32> Floors;
			for (const TSharedPtr<FJsonValue>& Piece : Payload->GetArrayField(TEXT("pieces")))
			{
				if (Piece->AsObject()->HasField(TEXT("floors")))
				{
					Floors.push_back((int32)Piece->AsObject()->GetNumberField(TEXT("floors")));
				}
			}
			return Floors;
		}
	};
}

TEST_F(PcgCityLayoutTest, AGridPlacesIntersectionsAtTheCornersRoadsBetweenAndATowerInEveryBlock)
{
	const TSharedPtr<FJsonObject> Payload = Ok(RunCity({{TEXT("Columns"), Number(3)}, {TEXT("Rows"), Text(TEXT("2"))}, {TEXT("RoadLength"), Number(1000)},
		{TEXT("LocationX"), Number(-500)}, {TEXT("RecipeLabel"), Text(TEXT("Downtown"))}}));
	// 4 x 3 corners, 3 x 3 roads along X and 4 x 2 along Y, 3 x 2 blocks.
	const TSharedPtr<FJsonObject> Counts = Payload->GetObjectField(TEXT("counts"));
	EXPECT_EQ(Counts->GetNumberField(TEXT("intersections")), 12);
	EXPECT_EQ(Counts->GetNumberField(TEXT("roads")), 17);
	EXPECT_EQ(Counts->GetNumberField(TEXT("skyscrapers")), 6);
	EXPECT_EQ(CountTagged(TEXT("ZorvekPCGCity_Downtown")), 35);
	EXPECT_EQ(CountTagged(TEXT("ZorvekPCGCityRoad")), 17);

	// Two lanes of 350 and sidewalks of 200 make an 1100 intersection: a pitch of 2100.
	const double Pitch = Payload->GetObjectField(TEXT("grid"))->GetNumberField(TEXT("pitch"));
	EXPECT_EQ(Pitch, 2100);
	const TSharedPtr<FJsonObject> Corner = Readback(TEXT("Downtown_Intersection_3_2"));
	EXPECT_EQ(Location(Corner->GetObjectField(TEXT("transform"))), "5800 4200 0");
	const TSharedPtr<FJsonObject> RoadY = Readback(TEXT("Downtown_RoadY_1_0"));
	EXPECT_EQ(Location(RoadY->GetObjectField(TEXT("transform"))), "1600 1050 0");
	EXPECT_EQ(Rotation(RoadY->GetObjectField(TEXT("transform"))), "0 90 0");
	// A road along Y meets the intersections at both ends: its bounds span the gap between them.
	EXPECT_NEAR(RoadY->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("extent"))->GetNumberField(TEXT("y")), 500.0, 0.01);
	const TSharedPtr<FJsonObject> Tower = Readback(TEXT("Downtown_Tower_2_1"));
	EXPECT_EQ(Location(Tower->GetObjectField(TEXT("transform"))), "4750 3150 0");
	EXPECT_EQ(Strings(Tower->GetArrayField(TEXT("tags"))), (std::vector<std::string>{"ZorvekMCPBridge", "ZorvekRepro", "ZorvekVisualPCG", "ZorvekPCGCity_Downtown", "ZorvekPCGCitySkyscraper"}));

	// Floors stay in range and follow the seed: the same seed repeats them, another changes them.
	const std::vector<int32> Floors = FloorsOf(Payload);
	ASSERT_EQ(Floors.size(), 6u);
	for (const int32 Count : Floors)
	{
		EXPECT_GE(Count, 5);
		EXPECT_LE(Count, 30);
	}
	EXPECT_EQ(FloorsOf(Ok(RunCity({{TEXT("Columns"), Number(3)}, {TEXT("Rows"), Number(2)}, {TEXT("RecipeLabel"), Text(TEXT("Again"))}, {TEXT("LocationY"), Number(50000)}}))), Floors);
	EXPECT_NE(FloorsOf(Ok(RunCity({{TEXT("Columns"), Number(3)}, {TEXT("Rows"), Number(2)}, {TEXT("RecipeLabel"), Text(TEXT("Other"))}, {TEXT("Seed"), Number(7)}, {TEXT("LocationY"), Number(90000)}}))), Floors);
	// A tower's height follows its floors (350 each, the roof on top).
	EXPECT_GT(Tower->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("max"))->GetNumberField(TEXT("z")), 5 * 350.0 - 0.01);
}

TEST_F(PcgCityLayoutTest, RefusalsAndASecondCityOfOneLabelLeaveTheLevelAsItWas)
{
	const TCHAR* const Tool = TEXT("pcg_run_city_layout_recipe");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("Columns"), Number(2)}}), "pcg_run_city_layout_recipe requires AllowCurrentLevel=true because this mutates the current editor world.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Columns"), Number(21)}}), "Columns must be a whole number from 1 to 20.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Rows"), Number(0)}}), "Rows must be a whole number from 1 to 20.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Rows"), Object(MakeShared<FJsonObject>())}}), "Rows must be a number.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("MinFloors"), Number(40)}}), "MinFloors must not be above MaxFloors.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("MaxFloors"), Number(500)}}), "MaxFloors must be a whole number from 1 to 200.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("RoadLength"), Number(20000)}}), "RoadLength must be between 100 and 10000 cm.");
	// No piece Blueprint was made by a refused call.
	EXPECT_FALSE(Port->GetObjects().LoadObject(TEXT("/Game/ZorvekPCG/City/BP_ZorvekIntersection_2Lane.BP_ZorvekIntersection_2Lane")).IsValid());

	const std::string Before = DescribeLevel();
	const TArray<FString> LabelsBefore = LevelLabels();
	Ok(RunCity({{TEXT("Columns"), Number(1)}, {TEXT("Rows"), Number(1)}}));
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Columns"), Number(2)}}),
		"A city recipe labelled 'ZorvekPCGCity' is already in the level; remove it with editor_cleanup_repro_actors (Filter ZorvekPCGCity) or choose another RecipeLabel.");
	// 4 corners, 4 roads and 1 tower go with the cleanup, and the level reads as before.
	EXPECT_EQ(Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("ZorvekPCGCity"))}})))->GetNumberField(TEXT("deleted_count")), 9);
	EXPECT_EQ(LevelLabels(), LabelsBefore);
	EXPECT_EQ(DescribeLevel(), Before);
}

TEST_F(PcgCityLayoutTest, WithoutPcgTheCityRecipeAnswersUnavailableAndMakesNothing)
{
	SetPcgAvailable(false);
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Payload = Refused(RunCity({{TEXT("Columns"), Number(2)}}));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("operation"))), "run_city_layout_recipe");
	EXPECT_EQ(DescribeLevel(), Before);
}

// Updating a city in place.

namespace
{
	class PcgCityUpdateTest : public PcgCityLayoutTest
	{
	protected:
		TSharedPtr<FJsonObject> UpdateCity(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			if (!Args->HasField(TEXT("AllowCurrentLevel")))
			{
				Args->SetBoolField(TEXT("AllowCurrentLevel"), true);
			}
			return Call(TEXT("pcg_update_city_layout_recipe"), Args);
		}

		// Label to actor path of the city's actors; a label seen twice is a duplicate and fails.
		std::map<std::string, std::string> CityActors(const TCHAR* RecipeTag) const
		{
			std::map<std::string, std::string> Actors;
			for (const FZorvekMCPBridgeActorEntry& Actor : World().GetAllLevelActors())
			{
				if (Actor.Tags.Contains(FName(RecipeTag)))
				{
					EXPECT_TRUE(Actors.emplace(S(Actor.Label), S(Actor.Path)).second) << "duplicate " << S(Actor.Label);
				}
			}
			return Actors;
		}

		static std::vector<std::string> LabelsIn(const TSharedPtr<FJsonObject>& Changes, const TCHAR* Key)
		{
			return Strings(Changes->GetArrayField(Key));
		}
	};
}

TEST_F(PcgCityUpdateTest, GrowingAndShrinkingKeepsThePiecesThatStillFitAndCleanupLeavesTheLevelAsItWas)
{
	const std::string LevelBefore = DescribeLevel();
	const TArray<FString> LabelsBefore = LevelLabels();
	const TSharedPtr<FJsonObject> Run = Ok(RunCity({{TEXT("Columns"), Number(2)}, {TEXT("Rows"), Number(1)}, {TEXT("RecipeLabel"), Text(TEXT("Town"))},
		{TEXT("LocationX"), Number(300)}, {TEXT("MinFloors"), Number(8)}, {TEXT("MaxFloors"), Number(12)}}));
	const std::map<std::string, std::string> Small = CityActors(TEXT("ZorvekPCGCity_Town"));
	ASSERT_EQ(Small.size(), 15u);
	const std::string TowerBefore = Location(Readback(TEXT("Town_Tower_1_0"))->GetObjectField(TEXT("transform")));

	// Bigger: 4 x 2 blocks. Every actor of the small city stays the same object; only the new ones are added.
	const TSharedPtr<FJsonObject> Grown = Ok(UpdateCity({{TEXT("RecipeLabel"), Text(TEXT("Town"))}, {TEXT("Columns"), Number(4)}, {TEXT("Rows"), Text(TEXT("2"))}}));
	const std::map<std::string, std::string> Big = CityActors(TEXT("ZorvekPCGCity_Town"));
	// 5 x 3 corners, 4 x 3 roads along X and 5 x 2 along Y, 4 x 2 towers.
	EXPECT_EQ(Big.size(), 45u);
	EXPECT_EQ(Grown->GetObjectField(TEXT("counts"))->GetNumberField(TEXT("total")), 45);
	for (const std::pair<const std::string, std::string>& Old : Small)
	{
		ASSERT_EQ(Big.count(Old.first), 1u) << Old.first;
		EXPECT_EQ(Big.at(Old.first), Old.second) << Old.first;
	}
	const TSharedPtr<FJsonObject> Changes = Grown->GetObjectField(TEXT("changes"));
	EXPECT_EQ(Changes->GetNumberField(TEXT("kept")), 15);
	EXPECT_EQ(LabelsIn(Changes, TEXT("added")).size(), 30u);
	EXPECT_TRUE(LabelsIn(Changes, TEXT("replaced")).empty());
	EXPECT_TRUE(LabelsIn(Changes, TEXT("removed")).empty());
	// The grid continues from the city's own origin and pitch (2000 + 1100), and new towers keep
	// the floor range of the standing ones.
	EXPECT_EQ(Location(Readback(TEXT("Town_Tower_1_0"))->GetObjectField(TEXT("transform"))), TowerBefore);
	EXPECT_EQ(Location(Readback(TEXT("Town_Intersection_4_2"))->GetObjectField(TEXT("transform"))), "12700 6200 0");
	const TSharedPtr<FJsonObject> Grid = Grown->GetObjectField(TEXT("grid"));
	const std::vector<int32> RunFloors = FloorsOf(Run);
	EXPECT_EQ(Grid->GetNumberField(TEXT("min_floors")), *std::min_element(RunFloors.begin(), RunFloors.end()));
	EXPECT_EQ(Grid->GetNumberField(TEXT("max_floors")), *std::max_element(RunFloors.begin(), RunFloors.end()));
	const std::vector<int32> GrownFloors = FloorsOf(Grown);
	ASSERT_EQ(GrownFloors.size(), 8u);
	for (const int32 Floors : GrownFloors)
	{
		EXPECT_GE(Floors, Grid->GetNumberField(TEXT("min_floors")));
		EXPECT_LE(Floors, Grid->GetNumberField(TEXT("max_floors")));
	}
	EXPECT_EQ(Grown->GetObjectField(TEXT("previous"))->GetNumberField(TEXT("columns")), 2);
	EXPECT_EQ(Strings(Readback(TEXT("Town_Tower_3_1"))->GetArrayField(TEXT("tags"))),
		(std::vector<std::string>{"ZorvekMCPBridge", "ZorvekRepro", "ZorvekVisualPCG", "ZorvekPCGCity_Town", "ZorvekPCGCitySkyscraper"}));

	// Smaller: 1 x 1 removes what lies outside and keeps the first block's actors.
	const TSharedPtr<FJsonObject> Shrunk = Ok(UpdateCity({{TEXT("RecipeLabel"), Text(TEXT("Town"))}, {TEXT("Columns"), Number(1)}, {TEXT("Rows"), Number(1)}}));
	const std::map<std::string, std::string> One = CityActors(TEXT("ZorvekPCGCity_Town"));
	EXPECT_EQ(One.size(), 9u);
	EXPECT_EQ(One.at("Town_Tower_0_0"), Small.at("Town_Tower_0_0"));
	EXPECT_EQ(LabelsIn(Shrunk->GetObjectField(TEXT("changes")), TEXT("removed")).size(), 36u);

	EXPECT_EQ(Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("Town"))}})))->GetNumberField(TEXT("deleted_count")), 9);
	EXPECT_EQ(LevelLabels(), LabelsBefore);
	EXPECT_EQ(DescribeLevel(), LevelBefore);
}

TEST_F(PcgCityUpdateTest, TallerRedrawsTheTowersAndReplacesOnlyThoseWhoseFloorsChanged)
{
	Ok(RunCity({{TEXT("Columns"), Number(2)}, {TEXT("Rows"), Number(2)}, {TEXT("MinFloors"), Number(5)}, {TEXT("MaxFloors"), Number(10)}}));
	const std::map<std::string, std::string> Before = CityActors(TEXT("ZorvekPCGCity_ZorvekPCGCity"));
	const TSharedPtr<FJsonObject> Taller = Ok(UpdateCity({{TEXT("MinFloors"), Number(40)}, {TEXT("MaxFloors"), Number(40)}}));
	const std::map<std::string, std::string> After = CityActors(TEXT("ZorvekPCGCity_ZorvekPCGCity"));
	ASSERT_EQ(After.size(), Before.size());
	const TSharedPtr<FJsonObject> Changes = Taller->GetObjectField(TEXT("changes"));
	EXPECT_EQ(LabelsIn(Changes, TEXT("replaced")), (std::vector<std::string>{"ZorvekPCGCity_Tower_0_0", "ZorvekPCGCity_Tower_1_0", "ZorvekPCGCity_Tower_0_1", "ZorvekPCGCity_Tower_1_1"}));
	EXPECT_EQ(Changes->GetNumberField(TEXT("kept")), 21);
	for (const std::pair<const std::string, std::string>& Actor : After)
	{
		const bool bTower = Actor.first.find("_Tower_") != std::string::npos;
		EXPECT_EQ(Actor.second != Before.at(Actor.first), bTower) << Actor.first;
	}
	// 40 floors of 350 cm.
	EXPECT_GT(Readback(TEXT("ZorvekPCGCity_Tower_1_1"))->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("max"))->GetNumberField(TEXT("z")), 40 * 350.0 - 0.01);

	// The same floors again change nothing.
	const TSharedPtr<FJsonObject> Again = Ok(UpdateCity({{TEXT("MaxFloors"), Number(40)}}));
	EXPECT_EQ(Again->GetObjectField(TEXT("changes"))->GetNumberField(TEXT("kept")), 25);
	EXPECT_EQ(CityActors(TEXT("ZorvekPCGCity_ZorvekPCGCity")), After);
}

TEST_F(PcgCityUpdateTest, RefusalsAndTheUnavailableAnswerLeaveTheLevelAsItWas)
{
	const TCHAR* const Tool = TEXT("pcg_update_city_layout_recipe");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Columns"), Number(4)}}),
		"No city recipe labelled 'ZorvekPCGCity' is in the level; place one with pcg_run_city_layout_recipe first.");
	Ok(RunCity({{TEXT("Columns"), Number(1)}, {TEXT("Rows"), Number(1)}, {TEXT("MaxFloors"), Number(20)}}));
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("Columns"), Number(4)}}), "pcg_update_city_layout_recipe requires AllowCurrentLevel=true because this mutates the current editor world.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}}),
		"pcg_update_city_layout_recipe requires at least one of Columns, Rows, MinFloors, MaxFloors or Seed.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Columns"), Number(21)}}), "Columns must be a whole number from 1 to 20.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Rows"), Number(2.5)}}), "Rows must be a whole number from 1 to 20.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("Seed"), Bool(true)}}), "Seed must be a number.");
	// The city's towers are at most 20 floors: a minimum above that alone crosses it.
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("MinFloors"), Number(25)}}), "MinFloors must not be above MaxFloors.");
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("RecipeLabel"), Text(TEXT("Elsewhere"))}, {TEXT("Rows"), Number(2)}}),
		"No city recipe labelled 'Elsewhere' is in the level; place one with pcg_run_city_layout_recipe first.");

	SetPcgAvailable(false);
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Payload = Refused(UpdateCity({{TEXT("Columns"), Number(3)}}));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("operation"))), "update_city_layout_recipe");
	EXPECT_EQ(DescribeLevel(), Before);
}

// The spline road proof.

namespace
{
	class PcgSplineRoadProofTest : public PcgSplineBoundsTest
	{
	protected:
		TSharedPtr<FJsonObject> RunProof(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			if (!Args->HasField(TEXT("AllowCurrentLevel")))
			{
				Args->SetBoolField(TEXT("AllowCurrentLevel"), true);
			}
			if (!Args->HasField(TEXT("ActorNameOrLabel")))
			{
				Args->SetStringField(TEXT("ActorNameOrLabel"), TEXT("ZorvekPCGSplineBounds"));
			}
			return Call(TEXT("pcg_run_spline_road_proof"), Args);
		}
	};
}

TEST_F(PcgSplineRoadProofTest, TheStripRunsAlongTheTurnedRectangleThroughItsCentreAndStaysInside)
{
	const std::string LevelBefore = DescribeLevel();
	// 90 m by 20 m, centred at (1000, 500) and turned 90 degrees: its length runs along world Y.
	Ok(Create({{TEXT("Length"), Number(9000)}, {TEXT("Width"), Number(2000)}, {TEXT("LocationX"), Number(1000)}, {TEXT("LocationY"), Number(500)}, {TEXT("RotationYaw"), Number(90)}}));
	const TSharedPtr<FJsonObject> Payload = Ok(RunProof({}));
	// One segment per 20 m rounded up: five of 1800.
	EXPECT_EQ(Payload->GetNumberField(TEXT("segment_count")), 5);
	EXPECT_EQ(Payload->GetObjectField(TEXT("road_blueprint"))->GetNumberField(TEXT("segment_length")), 1800);
	EXPECT_EQ(Payload->GetNumberField(TEXT("strip_length")), 9000);
	EXPECT_EQ(S(Payload->GetObjectField(TEXT("unsupported"))->GetStringField(TEXT("capability"))), "pcg_spline_road_sampling");
	const TSharedPtr<FJsonObject> First = Readback(TEXT("ZorvekPCGSplineRoad_Road01"));
	EXPECT_EQ(Location(First->GetObjectField(TEXT("transform"))), "1000 -3100 0");
	EXPECT_EQ(Rotation(First->GetObjectField(TEXT("transform"))), "0 90 0");
	EXPECT_EQ(Strings(First->GetArrayField(TEXT("tags"))), (std::vector<std::string>{"ZorvekMCPBridge", "ZorvekRepro", "ZorvekVisualPCG", "ZorvekPCGSplineRoad_ZorvekPCGSplineRoad"}));
	// Every segment lies inside the rectangle (x 0..2000, y -4000..5000).
	for (const TCHAR* Label : {TEXT("ZorvekPCGSplineRoad_Road01"), TEXT("ZorvekPCGSplineRoad_Road05")})
	{
		const TSharedPtr<FJsonObject> Bounds = Readback(Label)->GetObjectField(TEXT("bounds"));
		EXPECT_GE(Bounds->GetObjectField(TEXT("min"))->GetNumberField(TEXT("x")), -0.01);
		EXPECT_LE(Bounds->GetObjectField(TEXT("max"))->GetNumberField(TEXT("x")), 2000.01);
		EXPECT_GE(Bounds->GetObjectField(TEXT("min"))->GetNumberField(TEXT("y")), -4000.01);
		EXPECT_LE(Bounds->GetObjectField(TEXT("max"))->GetNumberField(TEXT("y")), 5000.01);
	}
	EXPECT_EQ(Location(Readback(TEXT("ZorvekPCGSplineRoad_Road05"))->GetObjectField(TEXT("transform"))), "1000 4100 0");

	// The strip goes by its label, the bounds by theirs, and the level reads as before.
	EXPECT_EQ(Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("ZorvekPCGSplineRoad"))}})))->GetNumberField(TEXT("deleted_count")), 5);
	EXPECT_EQ(Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("ZorvekPCGSplineBounds"))}})))->GetNumberField(TEXT("deleted_count")), 1);
	EXPECT_EQ(DescribeLevel(), LevelBefore);
}

TEST_F(PcgSplineRoadProofTest, RefusalsAndTheUnavailableAnswerLeaveTheLevelAsItWas)
{
	const TCHAR* const Tool = TEXT("pcg_run_spline_road_proof");
	const auto Args = [](std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
	{
		TSharedPtr<FJsonObject> Object = Arguments(Fields);
		Object->SetBoolField(TEXT("AllowCurrentLevel"), true);
		return Object;
	};
	ExpectRefusedUnchanged(Tool, Args({}), "pcg_run_spline_road_proof requires ActorNameOrLabel (a spline bounds actor from pcg_create_spline_bounds_actor).");
	ExpectRefusedUnchanged(Tool, Args({{TEXT("ActorNameOrLabel"), Text(TEXT("Nowhere"))}}), "No editor actor found for 'Nowhere'.");
	ExpectRefusedUnchanged(Tool, Args({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}}), "Actor 'Floor' has no spline component.");
	Ok(Create({{TEXT("Length"), Number(1000)}, {TEXT("Width"), Number(1000)}}));
	ExpectRefusedUnchanged(Tool, Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("ZorvekPCGSplineBounds"))}}),
		"pcg_run_spline_road_proof requires AllowCurrentLevel=true because this mutates the current editor world.");
	ExpectRefusedUnchanged(Tool, Args({{TEXT("ActorNameOrLabel"), Text(TEXT("ZorvekPCGSplineBounds"))}, {TEXT("LaneCount"), Number(9)}}), "LaneCount must be a whole number from 1 to 8.");
	// Two lanes and their sidewalks are 1100 cm: too wide for 1000.
	ExpectRefusedUnchanged(Tool, Args({{TEXT("ActorNameOrLabel"), Text(TEXT("ZorvekPCGSplineBounds"))}}),
		"A 2-lane road is 1100 cm wide and does not fit the rectangle's width of 1000 cm. Use fewer lanes or widen the bounds with pcg_set_spline_bounds_actor.");
	ExpectRefusedUnchanged(Tool, Args({{TEXT("ActorNameOrLabel"), Text(TEXT("ZorvekPCGSplineBounds"))}, {TEXT("LaneCount"), Number(1)}, {TEXT("SegmentCount"), Number(11)}}),
		"11 segments do not fit a rectangle 1000 cm long: each segment needs at least 100 cm. Use fewer segments or a longer rectangle.");
	// A user's own spline is not read as bounds.
	const FZorvekMCPBridgeObjectHandle Own = World().SpawnActorFromClass(TEXT("/Script/Engine.Actor"), {}, {});
	World().SetActorLabel(Own, TEXT("UserSpline"));
	ASSERT_TRUE(World().AddInstanceComponent(Own, TEXT("/Script/Engine.SplineComponent"), TEXT("Spline")).IsValid());
	ExpectRefusedUnchanged(Tool, Args({{TEXT("ActorNameOrLabel"), Text(TEXT("UserSpline"))}}), "'UserSpline' is not a spline bounds actor from pcg_create_spline_bounds_actor.");
	// One strip per label.
	Ok(RunProof({{TEXT("LaneCount"), Number(1)}, {TEXT("SegmentCount"), Number(2)}}));
	ExpectRefusedUnchanged(Tool, Args({{TEXT("ActorNameOrLabel"), Text(TEXT("ZorvekPCGSplineBounds"))}, {TEXT("LaneCount"), Number(1)}}),
		"A spline road proof labelled 'ZorvekPCGSplineRoad' is already in the level; remove it with editor_cleanup_repro_actors (Filter ZorvekPCGSplineRoad) or choose another RecipeLabel.");

	SetPcgAvailable(false);
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Payload = Refused(RunProof({}));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("operation"))), "run_spline_road_proof");
	EXPECT_EQ(DescribeLevel(), Before);
}
