// The editor world tools on the sample level: placement behind its opt-in, Blueprint placement,
// transforms, the listing with its filter and limit, selection and the cleanup that only ever
// touches repro-tagged actors. Every refused call is followed by a read-back of the whole level.
#include "EditorWorldTestSupport.h"

using namespace ZorvekAssetTests;
using namespace ZorvekEditorWorldTests;

namespace
{
	const TCHAR* const StaticMeshActorClass = TEXT("/Script/Engine.StaticMeshActor");
	const TCHAR* const ForestTreePath = TEXT("/Game/PCG/BP_ForestTree.BP_ForestTree");
	const std::vector<std::string> PlacementTags = {"ZorvekMCPBridge", "ZorvekRepro", "ZorvekVisualPCG"};
}

// ---- World status ----

TEST_F(FEditorWorldToolsTest, StatusReportsTheWorldTheGuardRailsAndTheSelectionInOrder)
{
	Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("ReproCylinder"))}})));
	Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}, {TEXT("ClearSelection"), Bool(false)}})));

	const TSharedPtr<FJsonObject> Status = Ok(Call(TEXT("editor_get_world_status")));
	EXPECT_EQ(Keys(Status), (std::vector<std::string>{"editor_available", "actor_subsystem_available", "world_available", "placement_scope",
		"requires_allow_current_level", "repro_map_creation_supported", "safety_note", "world_name", "world_path", "package_name",
		"actor_count", "selected_actor_count", "selected_actors"}));
	EXPECT_EQ(S(Status->GetStringField(TEXT("placement_scope"))), "current_editor_world_guarded");
	EXPECT_TRUE(Status->GetBoolField(TEXT("requires_allow_current_level")));
	EXPECT_FALSE(Status->GetBoolField(TEXT("repro_map_creation_supported")));
	EXPECT_EQ(S(Status->GetStringField(TEXT("safety_note"))),
		"Slice 55 mutates only the current editor world when AllowCurrentLevel=true and tags all placed actors for deterministic cleanup.");
	EXPECT_EQ(S(Status->GetStringField(TEXT("world_name"))), "SampleLevel");
	EXPECT_EQ(S(Status->GetStringField(TEXT("world_path"))), "/Game/Maps/SampleLevel.SampleLevel");
	EXPECT_EQ(S(Status->GetStringField(TEXT("package_name"))), "/Game/Maps/SampleLevel");
	EXPECT_EQ(Status->GetNumberField(TEXT("actor_count")), World().GetAllLevelActors().Num());
	EXPECT_EQ(Status->GetNumberField(TEXT("selected_actor_count")), 2);
	// Selection order, as USelection keeps it (unreal-behaviour-world-assets.md §2.3).
	EXPECT_EQ(ToStd(Collect(Status->GetArrayField(TEXT("selected_actors")), TEXT("label"))), (std::vector<std::string>{"ReproCylinder", "Floor"}));
	EXPECT_TRUE(Status->GetArrayField(TEXT("selected_actors"))[1]->AsObject()->GetBoolField(TEXT("selected")));
}

TEST_F(FEditorWorldToolsTest, WithoutTheActorSubsystemStatusStillAnswersWithZeroCountsAndEveryOtherToolRefuses)
{
	const std::string Before = DescribeLevel();
	Port->GetSimulatedWorld().SetActorSubsystemAvailable(false);
	const TSharedPtr<FJsonObject> Status = Ok(Call(TEXT("editor_get_world_status")));
	EXPECT_FALSE(Status->GetBoolField(TEXT("actor_subsystem_available")));
	EXPECT_EQ(Status->GetNumberField(TEXT("actor_count")), 0);
	EXPECT_EQ(Status->GetNumberField(TEXT("selected_actor_count")), 0);
	EXPECT_FALSE(Status->HasField(TEXT("selected_actors")));

	EXPECT_EQ(Error(Place({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}})), "Editor actor subsystem or editor world is unavailable.");
	const TSharedPtr<FJsonObject> Read = Refused(Call(TEXT("editor_read_level_actors")));
	EXPECT_EQ(S(Read->GetStringField(TEXT("error"))), "Editor actor subsystem is unavailable.");
	EXPECT_EQ(Read->GetNumberField(TEXT("result_count")), 0);
	const TSharedPtr<FJsonObject> Cleanup = Refused(Call(TEXT("editor_cleanup_repro_actors")));
	EXPECT_EQ(S(Cleanup->GetStringField(TEXT("error"))), "Editor actor subsystem is unavailable.");
	EXPECT_EQ(Cleanup->GetNumberField(TEXT("deleted_count")), 0);
	EXPECT_EQ(Error(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}}))), "No editor actor found for 'Floor'.");
	Port->GetSimulatedWorld().SetActorSubsystemAvailable(true);
	EXPECT_EQ(DescribeLevel(), Before);
}

// ---- Placement ----

TEST_F(FEditorWorldToolsTest, PlacementWithoutTheOptInPlacesNothingEvenWithAValidClass)
{
	const std::string Message = "editor_place_actor requires AllowCurrentLevel=true because this mutates the current editor world.";
	for (const TSharedPtr<FJsonValue>& OptIn : TArray<TSharedPtr<FJsonValue>>{nullptr, Bool(false), Text(TEXT("false")), Text(TEXT("yes")), Number(1)})
	{
		TSharedPtr<FJsonObject> Args = Arguments({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}});
		if (OptIn.IsValid())
		{
			Args->SetField(TEXT("AllowCurrentLevel"), OptIn);
		}
		const std::string Before = DescribeLevel();
		const TSharedPtr<FJsonObject> Payload = Refused(Call(TEXT("editor_place_actor"), Args));
		EXPECT_EQ(Keys(Payload), (std::vector<std::string>{"placed", "error"}));
		EXPECT_FALSE(Payload->GetBoolField(TEXT("placed")));
		EXPECT_EQ(S(Payload->GetStringField(TEXT("error"))), Message);
		EXPECT_EQ(DescribeLevel(), Before);
	}
	// The opt-in is checked before anything else, bad numbers and missing classes included.
	ExpectRefusedUnchanged(TEXT("editor_place_actor"), Arguments({{TEXT("LocationX"), Text(TEXT("far"))}}), Message);

	const TSharedPtr<FJsonObject> Placed = Ok(Call(TEXT("editor_place_actor"), Arguments({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)},
		{TEXT("AllowCurrentLevel"), Text(TEXT("true"))}})));
	EXPECT_TRUE(Placed->GetBoolField(TEXT("placed")));
}

TEST_F(FEditorWorldToolsTest, NativePlacementTagsSelectsAndPlacesWithTheGivenTransform)
{
	Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}})));
	const int32 CountBefore = World().GetAllLevelActors().Num();

	const TSharedPtr<FJsonObject> Result = Ok(Place({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}, {TEXT("ActorLabel"), Text(TEXT("Crate"))},
		{TEXT("LocationX"), Number(100)}, {TEXT("LocationY"), Text(TEXT("-250.5"))}, {TEXT("RotationYaw"), Number(30)}, {TEXT("ScaleZ"), Number(2)}}));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"placed", "actor"}));
	const TSharedPtr<FJsonObject> Actor = Result->GetObjectField(TEXT("actor"));
	EXPECT_EQ(Keys(Actor), (std::vector<std::string>{"name", "label", "path", "class_path", "transform", "bounds", "tags", "components", "selected", "zorvek_repro_actor"}));
	EXPECT_EQ(S(Actor->GetStringField(TEXT("label"))), "Crate");
	EXPECT_EQ(S(Actor->GetStringField(TEXT("class_path"))), S(StaticMeshActorClass));
	EXPECT_EQ(Strings(Actor->GetArrayField(TEXT("tags"))), PlacementTags);
	EXPECT_TRUE(Actor->GetBoolField(TEXT("selected")));
	EXPECT_TRUE(Actor->GetBoolField(TEXT("zorvek_repro_actor")));
	EXPECT_EQ(Location(Actor->GetObjectField(TEXT("transform"))), "100 -250.5 0");
	EXPECT_EQ(Rotation(Actor->GetObjectField(TEXT("transform"))), "0 30 0");
	EXPECT_EQ(Scale(Actor->GetObjectField(TEXT("transform"))), "1 1 2");

	EXPECT_EQ(World().GetAllLevelActors().Num(), CountBefore + 1);
	// The new actor is the only selected one: the subsystem's spawn does not select
	// (unreal-behaviour-world-assets.md §2.1), the tool does, after clearing the selection.
	EXPECT_EQ(ToStd(SelectedLabels()), (std::vector<std::string>{"Crate"}));
	EXPECT_EQ(S(Readback(*Actor->GetStringField(TEXT("name")))->GetStringField(TEXT("label"))), "Crate");
}

TEST_F(FEditorWorldToolsTest, PlacementWithoutALabelKeepsTheEditorsDefaultLabel)
{
	// Class name minus _C for Blueprint classes, numbered when taken (unreal-behaviour-world-assets.md §2.2).
	const TSharedPtr<FJsonObject> First = PlaceOk({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)}});
	const TSharedPtr<FJsonObject> Second = PlaceOk({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)}, {TEXT("ActorLabel"), Text(TEXT(""))}});
	EXPECT_EQ(S(First->GetStringField(TEXT("label"))), "BP_ForestTree");
	EXPECT_EQ(S(Second->GetStringField(TEXT("label"))), "BP_ForestTree2");
	EXPECT_NE(S(First->GetStringField(TEXT("name"))), S(Second->GetStringField(TEXT("name"))));
}

TEST_F(FEditorWorldToolsTest, BlueprintPlacementResolvesByNameAndGetsTheConstructionScriptComponents)
{
	const TSharedPtr<FJsonObject> Result = Ok(Place({{TEXT("BlueprintNameOrPath"), Text(TEXT("BP_ForestTree"))}, {TEXT("LocationZ"), Number(10)}}));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"placed", "blueprint_asset_path", "resolve_result", "actor"}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("blueprint_asset_path"))), S(ForestTreePath));
	EXPECT_EQ(S(Result->GetObjectField(TEXT("resolve_result"))->GetStringField(TEXT("best_asset_path"))), "/Game/PCG/BP_ForestTree");

	const TSharedPtr<FJsonObject> Actor = Result->GetObjectField(TEXT("actor"));
	EXPECT_EQ(S(Actor->GetStringField(TEXT("class_path"))), "/Game/PCG/BP_ForestTree.BP_ForestTree_C");
	const TArray<TSharedPtr<FJsonValue>>& Components = Actor->GetArrayField(TEXT("components"));
	const TArray<FString> Names = Collect(Components, TEXT("name"));
	ASSERT_TRUE(Names.Contains(TEXT("Trunk")) && Names.Contains(TEXT("Canopy"))) << ::testing::PrintToString(ToStd(Names));
	for (const TSharedPtr<FJsonValue>& Component : Components)
	{
		const TSharedPtr<FJsonObject> Json = Component->AsObject();
		if (Json->GetStringField(TEXT("name")) == TEXT("Canopy"))
		{
			// The template's mesh and relative transform. Trunk is the root and takes the spawn
			// transform, so Canopy sits 90 above the actor at z 10 (unreal-behaviour-world-assets.md §2.5).
			EXPECT_EQ(S(Json->GetStringField(TEXT("static_mesh"))), "/Engine/BasicShapes/Cone.Cone");
			EXPECT_EQ(Location(Json->GetObjectField(TEXT("relative_transform"))), "0 0 90");
			EXPECT_EQ(Scale(Json->GetObjectField(TEXT("relative_transform"))), "5 5 1");
			EXPECT_EQ(Location(Json->GetObjectField(TEXT("world_transform"))), "0 0 100");
			EXPECT_TRUE(Json->HasField(TEXT("world_bounds")));
		}
	}
}

TEST_F(FEditorWorldToolsTest, BlueprintPlacementCompilesFirstSoTheActorHasTheLatestComponents)
{
	// A component added since the last compile is only in the class once the Blueprint compiles.
	ASSERT_FALSE(FToolRunner::IsError(Call(TEXT("blueprint_add_component"), Arguments({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)},
		{TEXT("ComponentName"), Text(TEXT("Stone"))}, {TEXT("ComponentClassPath"), Text(TEXT("/Script/Engine.StaticMeshComponent"))},
		{TEXT("ParentComponentName"), Text(TEXT("Trunk"))}}))));

	const TSharedPtr<FJsonObject> Actor = PlaceOk({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)}});
	EXPECT_TRUE(Collect(Actor->GetArrayField(TEXT("components")), TEXT("name")).Contains(TEXT("Stone")));

	FZorvekMCPBridgeBlueprintSnapshot Blueprint;
	ASSERT_TRUE(Port->GetBlueprints().ReadBlueprint(FindObject(*Port, ForestTreePath), Blueprint));
	EXPECT_EQ(Blueprint.Status, EZorvekMCPBridgeBlueprintStatus::UpToDate);
}

TEST_F(FEditorWorldToolsTest, PlacementRefusesClassesItCannotPlaceAndLeavesTheLevelAlone)
{
	const TSharedPtr<FJsonObject> None = Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}});
	ExpectRefusedUnchanged(TEXT("editor_place_actor"), None,
		"editor_place_actor requires BlueprintNameOrPath for an Actor Blueprint or ActorClassPath for an Actor class.");
	for (const TCHAR* ClassPath : {TEXT("/Script/Engine.NoSuchActor"), TEXT("/Script/Engine.StaticMeshComponent"), TEXT("StaticMeshActor")})
	{
		ExpectRefusedUnchanged(TEXT("editor_place_actor"), Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ActorClassPath"), Text(ClassPath)}}),
			"Could not resolve Blueprint actor class from '" + S(ClassPath) + "'.");
	}
	// An abstract actor class loads but the editor spawns nothing (unreal-behaviour-world-assets.md §2.1).
	ExpectRefusedUnchanged(TEXT("editor_place_actor"), Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("ActorClassPath"), Text(TEXT("/Script/Engine.Info"))}}),
		"Could not spawn actor of class '/Script/Engine.Info'.");
}

TEST_F(FEditorWorldToolsTest, BlueprintPlacementRefusalsCarryTheResolutionAndLeaveTheBlueprintUncompiled)
{
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Unknown = Refused(Place({{TEXT("BlueprintNameOrPath"), Text(TEXT("BP_NothingLikeThis"))}}));
	EXPECT_EQ(S(Unknown->GetStringField(TEXT("error"))), "Could not resolve Blueprint actor class from 'BP_NothingLikeThis'.");
	EXPECT_FALSE(Unknown->GetBoolField(TEXT("placed")));
	EXPECT_EQ(Unknown->GetObjectField(TEXT("resolve_result"))->GetNumberField(TEXT("count")), 0);

	// A Blueprint without an actor parent makes no actor class: refused before its compile.
	const FZorvekMCPBridgeObjectHandle NoParent = FindObject(*Port, TEXT("/Game/Blueprints/BP_NoParent.BP_NoParent"));
	FZorvekMCPBridgeBlueprintSnapshot NoParentBefore;
	ASSERT_TRUE(Port->GetBlueprints().ReadBlueprint(NoParent, NoParentBefore));
	const TSharedPtr<FJsonObject> NotActor = Refused(Place({{TEXT("BlueprintNameOrPath"), Text(TEXT("/Game/Blueprints/BP_NoParent"))}}));
	EXPECT_EQ(S(NotActor->GetStringField(TEXT("error"))), "Could not resolve Blueprint actor class from '/Game/Blueprints/BP_NoParent'.");
	EXPECT_EQ(S(NotActor->GetStringField(TEXT("blueprint_asset_path"))), "/Game/Blueprints/BP_NoParent.BP_NoParent");
	EXPECT_EQ(S(NotActor->GetObjectField(TEXT("resolve_result"))->GetStringField(TEXT("best_asset_path"))), "/Game/Blueprints/BP_NoParent");
	FZorvekMCPBridgeBlueprintSnapshot NoParentAfter;
	ASSERT_TRUE(Port->GetBlueprints().ReadBlueprint(NoParent, NoParentAfter));
	EXPECT_EQ(NoParentAfter.Status, NoParentBefore.Status);
	EXPECT_EQ(DescribeLevel(), Before);
}

TEST_F(FEditorWorldToolsTest, BadTransformNumbersAreRefusedBeforeAnythingIsPlacedOrCompiled)
{
	// An edit leaves the Blueprint needing a compile, which a refused placement must not run.
	ASSERT_FALSE(FToolRunner::IsError(Call(TEXT("blueprint_add_component"), Arguments({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)},
		{TEXT("ComponentName"), Text(TEXT("Stone"))}, {TEXT("ComponentClassPath"), Text(TEXT("/Script/Engine.StaticMeshComponent"))}}))));
	const auto PlaceWith = [](const TCHAR* Key, const TSharedPtr<FJsonValue>& Value)
	{
		return Arguments({{TEXT("AllowCurrentLevel"), Bool(true)}, {TEXT("BlueprintNameOrPath"), Text(ForestTreePath)}, {Key, Value}});
	};
	ExpectRefusedUnchanged(TEXT("editor_place_actor"), PlaceWith(TEXT("LocationX"), Text(TEXT("left"))), "LocationX must be a number.");
	ExpectRefusedUnchanged(TEXT("editor_place_actor"), PlaceWith(TEXT("RotationRoll"), Object(MakeShared<FJsonObject>())), "RotationRoll must be a number.");
	ExpectRefusedUnchanged(TEXT("editor_place_actor"), PlaceWith(TEXT("ScaleY"), Bool(true)), "ScaleY must be a number.");
	ExpectRefusedUnchanged(TEXT("editor_place_actor"), PlaceWith(TEXT("RotationYaw"), Text(TEXT("NaN"))), "RotationYaw must be a finite number.");
	ExpectRefusedUnchanged(TEXT("editor_place_actor"), PlaceWith(TEXT("LocationZ"), Number(std::numeric_limits<double>::infinity())), "LocationZ must be a finite number.");
	ExpectRefusedUnchanged(TEXT("editor_place_actor"), PlaceWith(TEXT("ScaleX"), Number(-2e7)), "ScaleX is out of range (at most 10000000 in magnitude).");

	FZorvekMCPBridgeBlueprintSnapshot Blueprint;
	ASSERT_TRUE(Port->GetBlueprints().ReadBlueprint(FindObject(*Port, ForestTreePath), Blueprint));
	EXPECT_NE(Blueprint.Status, EZorvekMCPBridgeBlueprintStatus::UpToDate) << "a refused placement compiled the Blueprint";

	// The edge of the range and a zero scale are accepted; the engine collapses the bounds.
	const TSharedPtr<FJsonObject> Flat = PlaceOk({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)}, {TEXT("LocationX"), Number(1e7)}, {TEXT("ScaleZ"), Number(0)}});
	EXPECT_EQ(Flat->GetObjectField(TEXT("transform"))->GetObjectField(TEXT("location"))->GetNumberField(TEXT("x")), 1e7);
	const TSharedPtr<FJsonObject> Extent = Flat->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("extent"));
	EXPECT_EQ(Extent->GetNumberField(TEXT("z")), 0.0);
}

// ---- Lookup and selection ----

TEST_F(FEditorWorldToolsTest, LookupMatchesWholeNamesLabelsAndPathsWithoutRegardToCase)
{
	const TSharedPtr<FJsonObject> Floor = Readback(TEXT("Floor"));
	const FString Name = Floor->GetStringField(TEXT("name"));
	const FString Path = Floor->GetStringField(TEXT("path"));
	for (const FString& Query : {FString(TEXT("  floor\t")), Name.ToUpper(), Path.ToLower()})
	{
		const TSharedPtr<FJsonObject> Selected = Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(*Query)}})));
		EXPECT_EQ(S(Selected->GetObjectField(TEXT("actor"))->GetStringField(TEXT("name"))), S(Name)) << S(Query);
	}
	// Whole strings only: a prefix of a label finds nothing, and the message quotes the argument as typed.
	ExpectRefusedUnchanged(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT(" Flo"))}}), "No editor actor found for ' Flo'.");
	ExpectRefusedUnchanged(TEXT("editor_set_actor_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("   "))}, {TEXT("LocationX"), Number(1)}}),
		"No editor actor found for '   '.");
	EXPECT_FALSE(Refused(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Reproduction"))}})))->GetBoolField(TEXT("selected")));
}

TEST_F(FEditorWorldToolsTest, LookupTakesTheFirstActorInLevelOrderWhateverPartMatched)
{
	// The earlier actor's label equals the later actor's object name: the walk finds the earlier
	// one, since each actor is tried whole (name, label, path) before the next.
	const TSharedPtr<FJsonObject> Later = PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}});
	const FString LaterName = Later->GetStringField(TEXT("name"));
	const FString FloorName = Readback(TEXT("Floor"))->GetStringField(TEXT("name"));
	const TArray<FZorvekMCPBridgeActorEntry> Actors = World().GetAllLevelActors();
	World().SetActorLabel(Actors[0].Actor, LaterName);

	const TSharedPtr<FJsonObject> Found = Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(*LaterName)}})));
	EXPECT_EQ(S(Found->GetObjectField(TEXT("actor"))->GetStringField(TEXT("name"))), S(Actors[0].Name));
	EXPECT_EQ(S(Actors[0].Name), S(FloorName));
}

TEST_F(FEditorWorldToolsTest, SelectionClearsByDefaultAndAddsWhenAskedNotTo)
{
	const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}})));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"selected", "actor"}));
	EXPECT_TRUE(Result->GetObjectField(TEXT("actor"))->GetBoolField(TEXT("selected")));

	Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Rootless"))}, {TEXT("ClearSelection"), Text(TEXT("false"))}})));
	EXPECT_EQ(ToStd(SelectedLabels()), (std::vector<std::string>{"Floor", "Rootless"}));
	Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("ReproCylinder"))}, {TEXT("ClearSelection"), Text(TEXT("maybe"))}})));
	EXPECT_EQ(ToStd(SelectedLabels()), (std::vector<std::string>{"ReproCylinder"}));
}

// ---- Transforms ----

TEST_F(FEditorWorldToolsTest, SettingOnlyTheYawKeepsLocationScaleAndTheOtherAngles)
{
	PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}, {TEXT("ActorLabel"), Text(TEXT("Turner"))}, {TEXT("LocationX"), Number(10)},
		{TEXT("LocationY"), Number(20)}, {TEXT("LocationZ"), Number(30)}, {TEXT("RotationPitch"), Number(15)}, {TEXT("RotationRoll"), Number(-20)},
		{TEXT("ScaleX"), Number(2)}, {TEXT("ScaleY"), Number(3)}, {TEXT("ScaleZ"), Number(4)}});

	const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("editor_set_actor_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("turner"))},
		{TEXT("RotationYaw"), Text(TEXT("75"))}})));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"updated", "actor"}));
	EXPECT_TRUE(Result->GetBoolField(TEXT("updated")));
	const TSharedPtr<FJsonObject> Transform = Result->GetObjectField(TEXT("actor"))->GetObjectField(TEXT("transform"));
	EXPECT_FALSE(Result->GetObjectField(TEXT("actor"))->GetBoolField(TEXT("selected")));
	EXPECT_EQ(Location(Transform), "10 20 30");
	EXPECT_EQ(Rotation(Transform), "15 75 -20");
	EXPECT_EQ(Scale(Transform), "2 3 4");

	// World rotations come back from the quaternion, normalised (unreal-behaviour-world-assets.md §2.5).
	const TSharedPtr<FJsonObject> Wrapped = Ok(Call(TEXT("editor_set_actor_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Turner"))},
		{TEXT("RotationYaw"), Number(270)}})));
	EXPECT_EQ(Rotation(Wrapped->GetObjectField(TEXT("actor"))->GetObjectField(TEXT("transform"))), "15 -90 -20");
}

TEST_F(FEditorWorldToolsTest, AnActorWithoutRootReadsAsIdentityAndMovingItChangesNothing)
{
	const TSharedPtr<FJsonObject> Rootless = Readback(TEXT("Rootless"));
	EXPECT_EQ(Location(Rootless->GetObjectField(TEXT("transform"))), "0 0 0");
	EXPECT_EQ(Rotation(Rootless->GetObjectField(TEXT("transform"))), "0 0 0");
	EXPECT_EQ(Scale(Rootless->GetObjectField(TEXT("transform"))), "1 1 1");
	// No primitive: zero bounds at the origin, not the actor's location (unreal-behaviour-world-assets.md §2.4).
	EXPECT_EQ(Vec(Rootless->GetObjectField(TEXT("bounds"))->GetObjectField(TEXT("extent"))), "0 0 0");
	EXPECT_EQ(Rootless->GetArrayField(TEXT("components")).Num(), 0);

	const TSharedPtr<FJsonObject> Moved = Ok(Call(TEXT("editor_set_actor_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Rootless"))},
		{TEXT("LocationX"), Number(500)}})));
	EXPECT_TRUE(Moved->GetBoolField(TEXT("updated")));
	EXPECT_EQ(Location(Moved->GetObjectField(TEXT("actor"))->GetObjectField(TEXT("transform"))), "0 0 0");
}

TEST_F(FEditorWorldToolsTest, SetActorTransformRefusesUnknownActorsAndBadNumbersWithoutMovingAnything)
{
	ExpectRefusedUnchanged(TEXT("editor_set_actor_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Nobody"))}, {TEXT("LocationX"), Number(5)}}),
		"No editor actor found for 'Nobody'.");
	// One bad key refuses the whole call, even after good ones.
	ExpectRefusedUnchanged(TEXT("editor_set_actor_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}, {TEXT("LocationX"), Number(5)},
		{TEXT("LocationZ"), Text(TEXT("1e8"))}}), "LocationZ is out of range (at most 10000000 in magnitude).");
	ExpectRefusedUnchanged(TEXT("editor_set_actor_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))},
		{TEXT("ScaleX"), MakeShared<FJsonValueNull>()}}), "ScaleX must be a number.");
	EXPECT_FALSE(Refused(Call(TEXT("editor_set_actor_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Nobody"))}})))->GetBoolField(TEXT("updated")));
}

TEST_F(FEditorWorldToolsTest, ComponentTransformMovesOneComponentRelativeToItsParentAndChildrenFollow)
{
	PlaceOk({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)}, {TEXT("ActorLabel"), Text(TEXT("Oak"))}, {TEXT("LocationX"), Number(50)}, {TEXT("RotationYaw"), Number(90)}});
	const auto FindComponent = [](const TSharedPtr<FJsonObject>& Actor, const TCHAR* Name) -> TSharedPtr<FJsonObject>
	{
		for (const TSharedPtr<FJsonValue>& Component : Actor->GetArrayField(TEXT("components")))
		{
			if (Component->AsObject()->GetStringField(TEXT("name")) == Name)
			{
				return Component->AsObject();
			}
		}
		ADD_FAILURE() << "no component " << S(Name);
		return MakeShared<FJsonObject>();
	};

	const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("editor_set_component_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Oak"))},
		{TEXT("ComponentName"), Text(TEXT(" canopy "))}, {TEXT("LocationX"), Number(100)}})));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"updated", "component_name", "component_relative_transform", "actor"}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("component_name"))), "Canopy");
	// Absent keys keep the component's own relative values.
	const TSharedPtr<FJsonObject> Relative = Result->GetObjectField(TEXT("component_relative_transform"));
	EXPECT_EQ(Location(Relative), "100 0 90");
	EXPECT_EQ(Scale(Relative), "5 5 1");
	// Relative to Trunk, the root at x 50 turned 90 degrees: local X points along world Y
	// (unreal-behaviour-world-assets.md §2.5).
	const TSharedPtr<FJsonObject> Canopy = FindComponent(Result->GetObjectField(TEXT("actor")), TEXT("Canopy"));
	EXPECT_EQ(Location(Canopy->GetObjectField(TEXT("world_transform"))), "50 100 90");
	EXPECT_EQ(Rotation(Canopy->GetObjectField(TEXT("world_transform"))), "0 90 0");
	EXPECT_EQ(Location(Readback(TEXT("Oak"))->GetObjectField(TEXT("transform"))), "50 0 0");

	// Moving the root carries the child along and moves the actor with it.
	const TSharedPtr<FJsonObject> Lifted = Ok(Call(TEXT("editor_set_component_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Oak"))},
		{TEXT("ComponentName"), Text(TEXT("Trunk"))}, {TEXT("LocationZ"), Number(20)}})));
	EXPECT_EQ(Location(FindComponent(Lifted->GetObjectField(TEXT("actor")), TEXT("Canopy"))->GetObjectField(TEXT("world_transform"))), "50 100 110");
	EXPECT_EQ(Location(Lifted->GetObjectField(TEXT("actor"))->GetObjectField(TEXT("transform"))), "50 0 20");
}

TEST_F(FEditorWorldToolsTest, ComponentTransformNamesWhatIsAvailableWhenTheComponentIsMissing)
{
	PlaceOk({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)}, {TEXT("ActorLabel"), Text(TEXT("Oak"))}});
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Missing = Refused(Call(TEXT("editor_set_component_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("oak"))},
		{TEXT("ComponentName"), Text(TEXT("Leaves"))}, {TEXT("LocationZ"), Number(1)}})));
	EXPECT_EQ(Keys(Missing), (std::vector<std::string>{"updated", "error", "available_components"}));
	EXPECT_EQ(S(Missing->GetStringField(TEXT("error"))), "No component named 'Leaves' found on actor 'Oak'.");
	EXPECT_EQ(Strings(Missing->GetArrayField(TEXT("available_components"))),
		ToStd(Collect(Readback(TEXT("Oak"))->GetArrayField(TEXT("components")), TEXT("name"))));
	EXPECT_EQ(DescribeLevel(), Before);

	// The PCG volume's PCG component is no scene component: neither a target nor listed.
	const TSharedPtr<FJsonObject> NotScene = Refused(Call(TEXT("editor_set_component_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("PCG_Forest"))},
		{TEXT("ComponentName"), Text(TEXT("PCGComponent"))}})));
	EXPECT_FALSE(Strings(NotScene->GetArrayField(TEXT("available_components"))).empty());
	for (const std::string& Name : Strings(NotScene->GetArrayField(TEXT("available_components"))))
	{
		EXPECT_EQ(Name.find("PCGComponent"), std::string::npos);
	}

	ExpectRefusedUnchanged(TEXT("editor_set_component_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Oak"))}, {TEXT("ComponentName"), Text(TEXT("  "))}}),
		"editor_set_component_transform requires ComponentName.");
	ExpectRefusedUnchanged(TEXT("editor_set_component_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Elm"))}, {TEXT("ComponentName"), Text(TEXT("Trunk"))}}),
		"No editor actor found for 'Elm'.");
	ExpectRefusedUnchanged(TEXT("editor_set_component_transform"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Oak"))}, {TEXT("ComponentName"), Text(TEXT("Trunk"))},
		{TEXT("ScaleX"), Text(TEXT("-inf"))}}), "ScaleX must be a finite number.");
}

// ---- Listing ----

TEST_F(FEditorWorldToolsTest, ListingReadsEveryActorInLevelOrderWithSelectionAndReproFlags)
{
	Ok(Call(TEXT("editor_select_actor"), Arguments({{TEXT("ActorNameOrLabel"), Text(TEXT("Floor"))}})));
	const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("editor_read_level_actors")));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"filter", "repro_only", "matched_count", "result_count", "actors"}));
	const TArray<TSharedPtr<FJsonValue>>& Actors = Result->GetArrayField(TEXT("actors"));
	EXPECT_EQ(ToStd(Collect(Actors, TEXT("label"))), ToStd(LevelLabels()));
	EXPECT_EQ(Result->GetNumberField(TEXT("matched_count")), Actors.Num());
	EXPECT_EQ(Result->GetNumberField(TEXT("result_count")), Actors.Num());
	for (const TSharedPtr<FJsonValue>& Actor : Actors)
	{
		const FString Label = Actor->AsObject()->GetStringField(TEXT("label"));
		EXPECT_EQ(Actor->AsObject()->GetBoolField(TEXT("selected")), Label == TEXT("Floor")) << S(Label);
		EXPECT_EQ(Actor->AsObject()->GetBoolField(TEXT("zorvek_repro_actor")), Label == TEXT("ReproCylinder")) << S(Label);
	}

	// The floor: a 100-unit cube scaled 40 x 40 x 1 at z -50 (unreal-behaviour-world-assets.md §2.4).
	const TSharedPtr<FJsonObject> Floor = Actors[0]->AsObject();
	const TSharedPtr<FJsonObject> Bounds = Floor->GetObjectField(TEXT("bounds"));
	EXPECT_EQ(Keys(Bounds), (std::vector<std::string>{"min", "max", "center", "extent"}));
	EXPECT_EQ(Vec(Bounds->GetObjectField(TEXT("min"))), "-2000 -2000 -100");
	EXPECT_EQ(Vec(Bounds->GetObjectField(TEXT("center"))), "0 0 -50");
	EXPECT_EQ(Vec(Bounds->GetObjectField(TEXT("extent"))), "2000 2000 50");
	const TSharedPtr<FJsonObject> Mesh = Floor->GetArrayField(TEXT("components"))[0]->AsObject();
	EXPECT_EQ(Keys(Mesh), (std::vector<std::string>{"name", "class_path", "world_transform", "relative_transform", "world_bounds", "static_mesh"}));
	EXPECT_EQ(S(Mesh->GetStringField(TEXT("static_mesh"))), "/Engine/BasicShapes/Cube.Cube");
}

TEST_F(FEditorWorldToolsTest, LimitBelowOneReturnsOneActorWhileMatchedCountCountsAll)
{
	const int32 ActorCount = World().GetAllLevelActors().Num();
	for (const TSharedPtr<FJsonValue>& Limit : TArray<TSharedPtr<FJsonValue>>{Number(0), Text(TEXT("-3"))})
	{
		const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("editor_read_level_actors"), Arguments({{TEXT("Limit"), Limit}})));
		EXPECT_EQ(Result->GetNumberField(TEXT("result_count")), 1);
		EXPECT_EQ(Result->GetArrayField(TEXT("actors")).Num(), 1);
		EXPECT_EQ(Result->GetNumberField(TEXT("matched_count")), ActorCount);
	}
	const TSharedPtr<FJsonObject> Two = Ok(Call(TEXT("editor_read_level_actors"), Arguments({{TEXT("Limit"), Number(2)}})));
	EXPECT_EQ(ToStd(Collect(Two->GetArrayField(TEXT("actors")), TEXT("label"))), ToStd(TArray<FString>({LevelLabels()[0], LevelLabels()[1]})));
}

TEST_F(FEditorWorldToolsTest, FilterMatchesNamesLabelsAndPathsButNeverClassesOrTags)
{
	const TSharedPtr<FJsonObject> ByLabel = Ok(Call(TEXT("editor_read_level_actors"), Arguments({{TEXT("Filter"), Text(TEXT("reprocyl"))}})));
	EXPECT_EQ(ToStd(Collect(ByLabel->GetArrayField(TEXT("actors")), TEXT("label"))), (std::vector<std::string>{"ReproCylinder"}));
	EXPECT_EQ(S(ByLabel->GetStringField(TEXT("filter"))), "reprocyl");

	const TSharedPtr<FJsonObject> ByPath = Ok(Call(TEXT("editor_read_level_actors"), Arguments({{TEXT("Filter"), Text(TEXT("PERSISTENTLEVEL"))}})));
	EXPECT_EQ(ByPath->GetNumberField(TEXT("matched_count")), World().GetAllLevelActors().Num());

	for (const TCHAR* ClassOrTag : {TEXT("/Script/Engine."), TEXT("ZorvekVisualPCG"), TEXT("ZorvekRepro")})
	{
		const TSharedPtr<FJsonObject> None = Ok(Call(TEXT("editor_read_level_actors"), Arguments({{TEXT("Filter"), Text(ClassOrTag)}})));
		EXPECT_EQ(None->GetNumberField(TEXT("matched_count")), 0) << S(ClassOrTag);
		EXPECT_EQ(None->GetArrayField(TEXT("actors")).Num(), 0);
	}
}

TEST_F(FEditorWorldToolsTest, ReproOnlyKeepsBridgeTaggedActorsAndLeavesOutVisualOnlyOnes)
{
	PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}, {TEXT("ActorLabel"), Text(TEXT("Placed"))}});
	const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("editor_read_level_actors"), Arguments({{TEXT("ReproOnly"), Text(TEXT("true"))}})));
	EXPECT_TRUE(Result->GetBoolField(TEXT("repro_only")));
	EXPECT_EQ(ToStd(Collect(Result->GetArrayField(TEXT("actors")), TEXT("label"))), (std::vector<std::string>{"ReproCylinder", "Placed"}));
	EXPECT_TRUE(LevelLabels().Contains(TEXT("VisualOnlySphere")));

	const TSharedPtr<FJsonObject> Filtered = Ok(Call(TEXT("editor_read_level_actors"), Arguments({{TEXT("ReproOnly"), Bool(true)}, {TEXT("Filter"), Text(TEXT("Sphere"))}})));
	EXPECT_EQ(Filtered->GetNumberField(TEXT("matched_count")), 0);
}

// ---- Cleanup ----

TEST_F(FEditorWorldToolsTest, CleanupDryRunListsReproActorsAndDeletesNone)
{
	PlaceOk({{TEXT("BlueprintNameOrPath"), Text(ForestTreePath)}, {TEXT("ActorLabel"), Text(TEXT("Oak"))}});
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Result = Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("DryRun"), Text(TEXT("true"))}})));
	EXPECT_EQ(Keys(Result), (std::vector<std::string>{"filter", "dry_run", "matched_count", "deleted_count", "matched_actors"}));
	EXPECT_TRUE(Result->GetBoolField(TEXT("dry_run")));
	EXPECT_EQ(Result->GetNumberField(TEXT("matched_count")), 2);
	EXPECT_EQ(Result->GetNumberField(TEXT("deleted_count")), 0);
	EXPECT_EQ(ToStd(Collect(Result->GetArrayField(TEXT("matched_actors")), TEXT("label"))), (std::vector<std::string>{"ReproCylinder", "Oak"}));
	EXPECT_FALSE(Result->GetArrayField(TEXT("matched_actors"))[1]->AsObject()->GetBoolField(TEXT("selected")));
	EXPECT_EQ(DescribeLevel(), Before);
}

TEST_F(FEditorWorldToolsTest, CleanupDeletesOnlyReproActorsAndAFilterNeverWidensIt)
{
	PlaceOk({{TEXT("ActorClassPath"), Text(StaticMeshActorClass)}, {TEXT("ActorLabel"), Text(TEXT("FloorTile"))}});

	// "Floor" matches the untagged floor and the placed tile; only the tile goes.
	const TSharedPtr<FJsonObject> Narrow = Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("floor"))}})));
	EXPECT_EQ(ToStd(Collect(Narrow->GetArrayField(TEXT("matched_actors")), TEXT("label"))), (std::vector<std::string>{"FloorTile"}));
	EXPECT_EQ(Narrow->GetNumberField(TEXT("deleted_count")), 1);
	EXPECT_TRUE(LevelLabels().Contains(TEXT("Floor")));
	EXPECT_FALSE(LevelLabels().Contains(TEXT("FloorTile")));
	EXPECT_TRUE(LevelLabels().Contains(TEXT("ReproCylinder")));

	// A filter matching only untagged actors deletes nothing.
	const std::string Before = DescribeLevel();
	const TSharedPtr<FJsonObject> Untagged = Ok(Call(TEXT("editor_cleanup_repro_actors"), Arguments({{TEXT("Filter"), Text(TEXT("VisualOnly"))}})));
	EXPECT_EQ(Untagged->GetNumberField(TEXT("matched_count")), 0);
	EXPECT_EQ(Untagged->GetNumberField(TEXT("deleted_count")), 0);
	EXPECT_EQ(DescribeLevel(), Before);

	// Without a filter every repro actor goes and nothing else.
	TArray<FString> Expected;
	for (const FZorvekMCPBridgeActorEntry& Actor : World().GetAllLevelActors())
	{
		if (!ZorvekMCPBridgeActorReadback::IsReproActor(Actor.Tags))
		{
			Expected.Add(Actor.Label);
		}
	}
	const TSharedPtr<FJsonObject> All = Ok(Call(TEXT("editor_cleanup_repro_actors")));
	EXPECT_EQ(All->GetNumberField(TEXT("deleted_count")), 1);
	EXPECT_EQ(ToStd(LevelLabels()), ToStd(Expected));
	EXPECT_EQ(Ok(Call(TEXT("editor_read_level_actors"), Arguments({{TEXT("ReproOnly"), Bool(true)}})))->GetNumberField(TEXT("matched_count")), 0);
}
