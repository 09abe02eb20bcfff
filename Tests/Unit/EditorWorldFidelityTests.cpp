// Engine behaviour the editor world tools must show through their own answers: default labels
// numbered across repeated placements, world rotations read back normalised, a child component
// under a turned and non-uniformly scaled parent, the bounds of the basic shapes, a cleanup that
// leaves selection and level order whole, the focus arithmetic in portrait and orthographic
// views, and what pcg_inspect_generated counts after regeneration and deletion.
#include "AISetupTestSupport.h"
#include "EditorWorldTestSupport.h"
#include "Misc/Paths.h"
#include "SimulatedViewport.h"
#include "SimulatedWorld.h"

#include <algorithm>

using namespace ZorvekAssetTests;
using namespace ZorvekEditorWorldTests;

namespace
{
	const TCHAR* const StaticMeshActorClass = TEXT("/Script/Engine.StaticMeshActor");
	const TCHAR* const ForestTreePath = TEXT("/Game/PCG/BP_ForestTree.BP_ForestTree");

	class EditorWorldFidelityTest : public FEditorWorldToolsTest
	{
	protected:
		void SetUp() override
		{
			FEditorWorldToolsTest::SetUp();
			if (HasFatalFailure())
			{
				return;
			}
			FPaths::SetProjectDirForHost(Folder.PathText("Project") + TEXT("/"));
			Viewport().SetSize(320, 180);
			World().SelectNothing();
		}

		void TearDown() override
		{
			FPaths::SetProjectDirForHost(FString());
		}

		FSimulatedViewport& Viewport() const { return Port->GetEditor().GetWorld().GetViewport(); }

		// editor_set_actor_transform with the given keys; the actor's readback.
		TSharedPtr<FJsonObject> SetActor(const TCHAR* Actor, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			Args->SetStringField(TEXT("ActorNameOrLabel"), Actor);
			return Ok(Call(TEXT("editor_set_actor_transform"), Args))->GetObjectField(TEXT("actor"));
		}

		TSharedPtr<FJsonObject> SetComponent(const TCHAR* Actor, const TCHAR* Component, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			TSharedPtr<FJsonObject> Args = Arguments(Fields);
			Args->SetStringField(TEXT("ActorNameOrLabel"), Actor);
			Args->SetStringField(TEXT("ComponentName"), Component);
			return Ok(Call(TEXT("editor_set_component_transform"), Args))->GetObjectField(TEXT("actor"));
		}

		// The actor as editor_read_level_actors lists it.
		TSharedPtr<FJsonObject> Listed(const TCHAR* Label)
		{
			const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("editor_read_level_actors"), Arguments({{TEXT("Filter"), Text(Label)}})));
			for (const TSharedPtr<FJsonValue>& Actor : Result->GetArrayField(TEXT("actors")))
			{
				if (Actor->AsObject()->GetStringField(TEXT("label")) == Label)
				{
					return Actor->AsObject();
				}
			}
			ADD_FAILURE() << "not listed: " << S(Label);
			return MakeShared<FJsonObject>();
		}

		static TSharedPtr<FJsonObject> Component(const TSharedPtr<FJsonObject>& Actor, const TCHAR* Name)
		{
			for (const TSharedPtr<FJsonValue>& Entry : Actor->GetArrayField(TEXT("components")))
			{
				if (Entry->AsObject()->GetStringField(TEXT("name")) == Name)
				{
					return Entry->AsObject();
				}
			}
			ADD_FAILURE() << "no component " << S(Name);
			return MakeShared<FJsonObject>();
		}

		static std::string Box(const TSharedPtr<FJsonObject>& Bounds)
		{
			return Vec(Bounds->GetObjectField(TEXT("min"))) + " / " + Vec(Bounds->GetObjectField(TEXT("max")));
		}

		// The world rotation of a readback as pitch, yaw, roll numbers.
		static void ExpectRotation(const TSharedPtr<FJsonObject>& Actor, double Pitch, double Yaw, double Roll, const char* What)
		{
			const TSharedPtr<FJsonObject> Rotation = Actor->GetObjectField(TEXT("transform"))->GetObjectField(TEXT("rotation"));
			const auto Same = [](double Actual, double Expected)
			{
				// 180 and -180 are the same angle; both come out of atan2.
				return std::abs(Expected) == 180.0 ? std::abs(std::abs(Actual) - 180.0) < 1e-3 : std::abs(Actual - Expected) < 1e-3;
			};
			EXPECT_TRUE(Same(Rotation->GetNumberField(TEXT("pitch")), Pitch) && Same(Rotation->GetNumberField(TEXT("yaw")), Yaw) && Same(Rotation->GetNumberField(TEXT("roll")), Roll))
				<< What << ": read back " << Vec(Rotation, TEXT("pitch"), TEXT("yaw"), TEXT("roll")) << ", expected " << Pitch << " " << Yaw << " " << Roll;
			for (const TCHAR* Axis : {TEXT("pitch"), TEXT("yaw"), TEXT("roll")})
			{
				EXPECT_LE(std::abs(Rotation->GetNumberField(Axis)), 180.0 + 1e-9) << What;
			}
		}

		TSharedPtr<FJsonObject> Capture(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			return Ok(Call(TEXT("editor_capture_viewport"), Arguments(Fields)));
		}

		FTemporaryFolder Folder;
	};
}

// ---- Labels ----

TEST_F(EditorWorldFidelityTest, RepeatedPlacementsWithoutALabelNumberTheDefaultLabelAndTheToolReportsIt)
{
	// unreal-behaviour-world-assets.md §2.2: SetActorLabelUnique gives Name, Name2, Name3; the
	// level's StaticMeshActors are labelled otherwise, so the first placement is unnumbered.
	std::vector<std::string> Placed;
	for (int32 Index = 0; Index < 3; ++Index)
	{
		Placed.push_back(S(PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}})->GetStringField(TEXT("label"))));
	}
	EXPECT_EQ(Placed, (std::vector<std::string>{"StaticMeshActor", "StaticMeshActor2", "StaticMeshActor3"}));

	// The level already has a PointLight, so placement continues at 2 (§2.2).
	EXPECT_EQ(S(PlaceOk({{TEXT("ActorClassPath"), Text(TEXT("/Script/Engine.PointLight"))}})->GetStringField(TEXT("label"))), "PointLight2");

	// A freed number is handed out again first, through cleanup and placement alike.
	Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("StaticMeshActor2"))}})));
	EXPECT_FALSE(LevelLabels().Contains(TEXT("StaticMeshActor2")));
	EXPECT_EQ(S(PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}})->GetStringField(TEXT("label"))), "StaticMeshActor2");
	EXPECT_EQ(S(PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}})->GetStringField(TEXT("label"))), "StaticMeshActor4");

	// Labels are not identities: every placement has its own object name (§2.1).
	const TSharedPtr<FJsonObject> Listing = Ok(Call(TEXT("editor_read_level_actors")));
	std::vector<std::string> Names = ToStd(Collect(Listing->GetArrayField(TEXT("actors")), TEXT("name")));
	std::sort(Names.begin(), Names.end());
	EXPECT_EQ(std::adjacent_find(Names.begin(), Names.end()), Names.end());
}

// ---- Rotations ----

TEST_F(EditorWorldFidelityTest, WorldRotationsSetThroughTheToolComeBackNormalisedAndFolded)
{
	PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}, {TEXT("ActorLabel"), Text(TEXT("Spinner"))}, {TEXT("LocationX"), Number(10)}, {TEXT("ScaleY"), Number(2)}});

	// unreal-behaviour-world-assets.md §2.5: world rotation is rebuilt from the quaternion, each
	// axis in (-180, 180], a pitch beyond 90 folds into yaw and roll.
	ExpectRotation(SetActor(TEXT("Spinner"), {{TEXT("RotationPitch"), Number(120)}, {TEXT("RotationYaw"), Number(0)}, {TEXT("RotationRoll"), Number(0)}}), 60, 180, 180, "pitch 120");
	ExpectRotation(SetActor(TEXT("Spinner"), {{TEXT("RotationPitch"), Number(-100)}, {TEXT("RotationYaw"), Number(0)}, {TEXT("RotationRoll"), Number(0)}}), -80, 180, 180, "pitch -100");
	ExpectRotation(SetActor(TEXT("Spinner"), {{TEXT("RotationPitch"), Number(0)}, {TEXT("RotationYaw"), Number(540)}, {TEXT("RotationRoll"), Number(0)}}), 0, 180, 0, "yaw 540");
	ExpectRotation(SetActor(TEXT("Spinner"), {{TEXT("RotationYaw"), Number(-450)}}), 0, -90, 0, "yaw -450");
	ExpectRotation(SetActor(TEXT("Spinner"), {{TEXT("RotationYaw"), Number(0)}, {TEXT("RotationRoll"), Number(200)}}), 0, 0, -160, "roll 200");
	ExpectRotation(SetActor(TEXT("Spinner"), {{TEXT("RotationPitch"), Number(30)}, {TEXT("RotationYaw"), Number(-45)}, {TEXT("RotationRoll"), Number(10)}}), 30, -45, 10, "ordinary angles");

	// Only the rotation changed: location and scale survive every round trip.
	const TSharedPtr<FJsonObject> Final = Readback(TEXT("Spinner"));
	EXPECT_EQ(Location(Final->GetObjectField(TEXT("transform"))), "10 0 0");
	EXPECT_EQ(Scale(Final->GetObjectField(TEXT("transform"))), "1 2 1");
	// The actor's rotation is its root component's world rotation.
	EXPECT_EQ(Rotation(Final->GetObjectField(TEXT("transform"))), Rotation(Final->GetArrayField(TEXT("components"))[0]->AsObject()->GetObjectField(TEXT("world_transform"))));
}

// ---- Component transforms and bounds ----

TEST_F(EditorWorldFidelityTest, AChildUnderATurnedNonUniformlyScaledParentTakesScaleThenRotationThenTranslation)
{
	PlaceOk({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)}, {TEXT("ActorLabel"), Text(TEXT("Oak"))}});
	SetComponent(TEXT("Oak"), TEXT("Trunk"), {{TEXT("LocationX"), Number(50)}, {TEXT("LocationY"), Number(0)}, {TEXT("LocationZ"), Number(0)}, {TEXT("RotationYaw"), Number(90)},
		{TEXT("ScaleX"), Number(2)}, {TEXT("ScaleY"), Number(3)}, {TEXT("ScaleZ"), Number(0.5)}});
	const TSharedPtr<FJsonObject> Actor = SetComponent(TEXT("Oak"), TEXT("Canopy"), {{TEXT("LocationX"), Number(100)}, {TEXT("LocationY"), Number(0)}, {TEXT("LocationZ"), Number(90)},
		{TEXT("RotationYaw"), Number(0)}, {TEXT("ScaleX"), Number(5)}, {TEXT("ScaleY"), Number(5)}, {TEXT("ScaleZ"), Number(1)}});

	// unreal-behaviour-world-assets.md §2.5: world = relative * parent. (100, 0, 90) scaled by
	// (2, 3, 0.5) is (200, 0, 45); turned 90 in yaw it is (0, 200, 45); moved by (50, 0, 0).
	// Scales multiply axis by axis; the relative transform stays as set.
	const TSharedPtr<FJsonObject> Canopy = Component(Actor, TEXT("Canopy"));
	const TSharedPtr<FJsonObject> World = Canopy->GetObjectField(TEXT("world_transform"));
	EXPECT_EQ(Location(World), "50 200 45");
	EXPECT_EQ(Rotation(World), "0 90 0");
	EXPECT_EQ(Scale(World), "10 15 0.5");
	EXPECT_EQ(Location(Canopy->GetObjectField(TEXT("relative_transform"))), "100 0 90");
	EXPECT_EQ(Scale(Canopy->GetObjectField(TEXT("relative_transform"))), "5 5 1");

	// §2.4: the cone's 50-unit half box scaled to (500, 750, 25), turned 90 in yaw, is the
	// axis-aligned (750, 500, 25) around the component; the trunk's cylinder likewise becomes
	// (150, 100, 25) around (50, 0, 0). The actor's bounds are their union.
	EXPECT_EQ(Box(Canopy->GetObjectField(TEXT("world_bounds"))), "-700 -300 20 / 800 700 70");
	EXPECT_EQ(Box(Component(Actor, TEXT("Trunk"))->GetObjectField(TEXT("world_bounds"))), "-100 -100 -25 / 200 100 25");
	EXPECT_EQ(Box(Actor->GetObjectField(TEXT("bounds"))), "-700 -300 -25 / 800 700 70");
	EXPECT_EQ(Vec(Actor->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("center"))), "50 200 22.5");

	// Turning the actor afterwards carries the child and its box along.
	const TSharedPtr<FJsonObject> Turned = SetActor(TEXT("Oak"), {{TEXT("RotationYaw"), Number(180)}});
	EXPECT_EQ(Location(Component(Turned, TEXT("Canopy"))->GetObjectField(TEXT("world_transform"))), "-150 0 45");
	EXPECT_EQ(Box(Component(Turned, TEXT("Canopy"))->GetObjectField(TEXT("world_bounds"))), "-650 -750 20 / 350 750 70");
}

TEST_F(EditorWorldFidelityTest, SphereCylinderAndPlaneBoundsAreTheirEngineSizesUnderTheActorsTransform)
{
	// unreal-behaviour-world-assets.md §2.4: the sphere and cylinder are 100 across and tall,
	// centred on the pivot; the plane is 100 x 100 and flat.
	EXPECT_EQ(Box(Listed(TEXT("VisualOnlySphere"))->GetObjectField(TEXT("bounds"))), "-350 -350 0 / -250 -250 100");
	EXPECT_EQ(Box(Listed(TEXT("ReproCylinder"))->GetObjectField(TEXT("bounds"))), "-350 250 0 / -250 350 100");

	PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}, {TEXT("ActorLabel"), Text(TEXT("Sheet"))}, {TEXT("LocationX"), Number(1000)},
		{TEXT("LocationZ"), Number(10)}, {TEXT("ScaleX"), Number(3)}, {TEXT("ScaleZ"), Number(7)}});
	FSimulatedActor* Sheet = nullptr;
	for (FSimulatedActor* Actor : Port->GetEditor().GetWorld().GetAllLevelActors())
	{
		Sheet = Actor->Label == TEXT("Sheet") ? Actor : Sheet;
	}
	ASSERT_NE(Sheet, nullptr);
	FString Error;
	ASSERT_TRUE(Port->GetEditor().SetPropertyText(Sheet->RootComponent->Object, TEXT("StaticMesh"), TEXT("/Engine/BasicShapes/Plane.Plane"), Error)) << S(Error);
	// Scaled 3 in X; any Z scale keeps it flat.
	const TSharedPtr<FJsonObject> Flat = Listed(TEXT("Sheet"));
	EXPECT_EQ(Box(Flat->GetObjectField(TEXT("bounds"))), "850 -50 10 / 1150 50 10");
	EXPECT_EQ(S(Flat->GetArrayField(TEXT("components"))[0]->AsObject()->GetStringField(TEXT("static_mesh"))), "/Engine/BasicShapes/Plane.Plane");

	// Stood on its edge by a pitch of 90 the plane's X extent becomes its height.
	const TSharedPtr<FJsonObject> Standing = SetActor(TEXT("Sheet"), {{TEXT("RotationPitch"), Number(90)}});
	EXPECT_EQ(Box(Standing->GetObjectField(TEXT("bounds"))), "1000 -50 -140 / 1000 50 160");

	// A cylinder turned on its side by roll 90 swaps its Y and Z extents under a scale.
	const TSharedPtr<FJsonObject> Lying = SetActor(TEXT("ReproCylinder"), {{TEXT("RotationRoll"), Number(90)}, {TEXT("ScaleY"), Number(4)}});
	EXPECT_EQ(Box(Lying->GetObjectField(TEXT("bounds"))), "-350 250 -150 / -250 350 250");
}

// ---- Cleanup against selection and level order ----

TEST_F(EditorWorldFidelityTest, CleanupDeselectsWhatItDeletesAndKeepsTheRestInOrder)
{
	PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}, {TEXT("ActorLabel"), Text(TEXT("Tile"))}});
	// Selection order: Tile, Floor, ReproCylinder, VisualOnlySphere.
	Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Tile"))}})));
	for (const TCHAR* Label : {TEXT("Floor"), TEXT("ReproCylinder"), TEXT("VisualOnlySphere")})
	{
		Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(Label)}, {TEXT("ClearSelection"), Bool(false)}})));
	}
	TArray<FString> Expected;
	for (const FString& Label : LevelLabels())
	{
		if (Label != TEXT("Tile") && Label != TEXT("ReproCylinder"))
		{
			Expected.Add(Label);
		}
	}

	const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("editor_cleanup_repro_actors")));
	EXPECT_EQ(Result->GetNumberField(TEXT("deleted_count")), 2);
	// unreal-behaviour-world-assets.md §2.3: DestroyActors deselects what it destroys; the
	// survivors keep their selection order and the level its spawn order without holes.
	EXPECT_EQ(ToStd(SelectedLabels()), (std::vector<std::string>{"Floor", "VisualOnlySphere"}));
	EXPECT_EQ(ToStd(LevelLabels()), ToStd(Expected));
	const TSharedPtr<FJsonObject> Status = Ok(Call(TEXT("editor_get_world_status")));
	EXPECT_EQ(Status->GetNumberField(TEXT("actor_count")), Expected.Num());
	EXPECT_EQ(Status->GetNumberField(TEXT("selected_actor_count")), 2);
	EXPECT_EQ(ToStd(Collect(Status->GetArrayField(TEXT("selected_actors")), TEXT("label"))), (std::vector<std::string>{"Floor", "VisualOnlySphere"}));
	const TSharedPtr<FJsonObject> Listing = Ok(Call(TEXT("editor_read_level_actors")));
	EXPECT_EQ(ToStd(Collect(Listing->GetArrayField(TEXT("actors")), TEXT("label"))), ToStd(Expected));

	// The deleted actors cannot be found, selected or moved any more.
	EXPECT_EQ(Error(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Tile"))}}))), "No editor actor found for 'Tile'.");
	EXPECT_EQ(Error(Call(TEXT("editor_set_actor_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("ReproCylinder"))}, {TEXT("LocationX"), Number(1)}}))),
		"No editor actor found for 'ReproCylinder'.");

	// A new placement goes to the end of the level and becomes the only selection.
	PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}, {TEXT("ActorLabel"), Text(TEXT("Late"))}});
	Expected.Add(TEXT("Late"));
	EXPECT_EQ(ToStd(LevelLabels()), ToStd(Expected));
	EXPECT_EQ(ToStd(SelectedLabels()), (std::vector<std::string>{"Late"}));
}

// ---- Focus ----

TEST_F(EditorWorldFidelityTest, APortraitViewportFocusesWithoutTheAspectFactor)
{
	// unreal-behaviour-world-assets.md §3.2: the radius is multiplied by the aspect only when it
	// is above 1; a portrait viewport backs off by |extent| / tan(45) alone.
	Viewport().SetSize(180, 320);
	Viewport().SetPerspectiveView({0.0, 0.0, 0.0}, {0.0, 90.0, 0.0});
	const TSharedPtr<FJsonObject> Payload = Capture({{TEXT("ActorNameOrLabel"), Text(TEXT("VisualOnlySphere"))}});
	EXPECT_TRUE(Payload->GetBoolField(TEXT("focused")));
	const double Distance = std::sqrt(3.0) * 50.0;
	// Looking along +Y (yaw 90), the camera sits that far on the -Y side of the centre (-300, -300, 50).
	const TSharedPtr<FJsonObject> Camera = Payload->GetObjectField(TEXT("camera"));
	const TSharedPtr<FJsonObject> At = Camera->GetObjectField(TEXT("location"));
	EXPECT_NEAR(At->GetNumberField(TEXT("x")), -300.0, 0.01);
	EXPECT_NEAR(At->GetNumberField(TEXT("y")), -300.0 - Distance, 0.01);
	EXPECT_NEAR(At->GetNumberField(TEXT("z")), 50.0, 0.01);
	EXPECT_EQ(Rotation(Camera), "0 90 0");
}

TEST_F(EditorWorldFidelityTest, AnOrthographicFocusCentresOnTheBoxAndZoomsToThirtyTimesItsRadius)
{
	Viewport().SetViewportType(SimulatedViewportTypes::OrthoXY);
	Viewport().SetOrthoView({5000.0, 5000.0, 0.0}, {-90.0, 0.0, 0.0}, 8000.0);
	// unreal-behaviour-world-assets.md §3.2: OrthoZoom = 30 * Radius, with no aspect factor
	// however wide the viewport; §3.3: the visible width is then twice the radius.
	const TSharedPtr<FJsonObject> Payload = Capture({{TEXT("ActorNameOrLabel"), Text(TEXT("ReproCylinder"))}});
	EXPECT_TRUE(Payload->GetBoolField(TEXT("focused")));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("viewport_type"))), "OrthoXY");
	EXPECT_EQ(Vec(Payload->GetObjectField(TEXT("camera"))->GetObjectField(TEXT("location"))), "-300 300 50");
	EXPECT_NEAR(Viewport().GetOrthoZoom(), 30.0 * std::sqrt(3.0) * 50.0, 0.01);
	EXPECT_FALSE(Viewport().IsTransitionPending());

	// A second focus on a bigger box moves and zooms out again.
	const TSharedPtr<FJsonObject> Floor = Capture({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}});
	EXPECT_EQ(Vec(Floor->GetObjectField(TEXT("camera"))->GetObjectField(TEXT("location"))), "0 0 -50");
	EXPECT_NEAR(Viewport().GetOrthoZoom(), 30.0 * std::sqrt(2000.0 * 2000.0 * 2 + 50.0 * 50.0), 0.5);
}

// ---- PCG output counts ----

TEST_F(EditorWorldFidelityTest, RegenerationReplacesTheForestAndDeletedTreesLeaveThePointCount)
{
	const auto Trees = [this]()
	{
		int32 Count = 0;
		for (const FZorvekMCPBridgeActorEntry& Actor : World().GetAllLevelActors())
		{
			Count += Actor.Tags.Contains(FName(TEXT("PCG_ForestTree"))) ? 1 : 0;
		}
		return Count;
	};
	const auto Inspect = [this]()
	{
		return Ok(Call(TEXT("pcg_inspect_generated"), Arguments({{TEXT("ForestActorNameOrLabel"), Text(TEXT("PCG_Forest"))}})));
	};

	Ok(Call(TEXT("pcg_generate"), Arguments({{TEXT("ForestActorNameOrLabel"), Text(TEXT("PCG_Forest"))}})));
	Port->GetEditor().GetWorld().Tick();
	const int32 First = Trees();
	ASSERT_GT(First, 1);
	EXPECT_EQ(Inspect()->GetNumberField(TEXT("generated_count")), First);

	// unreal-behaviour-world-assets.md §4.3: regenerating releases the previous Spawn Actor
	// output, so the level holds one forest, not two.
	Ok(Call(TEXT("pcg_generate"), Arguments({{TEXT("ForestActorNameOrLabel"), Text(TEXT("PCG_Forest"))}})));
	Port->GetEditor().GetWorld().Tick();
	EXPECT_EQ(Trees(), First);
	const TSharedPtr<FJsonObject> Again = Inspect();
	EXPECT_EQ(Again->GetNumberField(TEXT("generated_count")), First);
	EXPECT_EQ(Again->GetNumberField(TEXT("native_spawned_actor_count")), First);
	EXPECT_EQ(Again->GetObjectField(TEXT("pcg_component"))->GetNumberField(TEXT("generated_resource_count")), 1);

	// Every tree deleted: the points the graph produced are still counted, the spawned actors
	// that survive are none, and the component stays generated.
	TArray<FZorvekMCPBridgeObjectHandle> Doomed;
	for (const FZorvekMCPBridgeActorEntry& Actor : World().GetAllLevelActors())
	{
		if (Actor.Tags.Contains(FName(TEXT("PCG_ForestTree"))))
		{
			Doomed.Add(Actor.Actor);
		}
	}
	ASSERT_TRUE(World().DestroyActors(Doomed));
	EXPECT_EQ(Trees(), 0);
	const TSharedPtr<FJsonObject> Emptied = Inspect();
	EXPECT_TRUE(Emptied->GetBoolField(TEXT("generated")));
	EXPECT_EQ(Emptied->GetNumberField(TEXT("generated_count")), First);
	EXPECT_EQ(Emptied->GetNumberField(TEXT("native_spawned_actor_count")), 0);
	EXPECT_EQ(Emptied->GetObjectField(TEXT("pcg_component"))->GetArrayField(TEXT("native_spawned_actors")).Num(), 0);

	// A fresh generation brings the forest back in full.
	Ok(Call(TEXT("pcg_generate"), Arguments({{TEXT("ForestActorNameOrLabel"), Text(TEXT("PCG_Forest"))}})));
	Port->GetEditor().GetWorld().Tick();
	EXPECT_EQ(Trees(), First);
	EXPECT_EQ(Inspect()->GetNumberField(TEXT("native_spawned_actor_count")), First);
}
