// The simulated editor world behaves like the engine's where the world tools depend on it: level
// order and object names, default labels and their numbering, construction scripts on placed
// Blueprints, selection order, destruction, and the readback the world port gives.
#include "AssetTestSupport.h"
#include "SimulatedPcg.h"
#include "SimulatedViewport.h"
#include "SimulatedWorld.h"
#include "SimulatedWorldPort.h"

using namespace ZorvekAssetTests;

namespace
{
	FSimulatedWorld& WorldOf(FSimulatedEditorPort& Port)
	{
		return Port.GetEditor().GetWorld();
	}

	FSimulatedActor* FindByLabel(FSimulatedWorld& World, const FString& Label)
	{
		for (FSimulatedActor* Actor : World.GetAllLevelActors())
		{
			if (Actor->Label == Label)
			{
				return Actor;
			}
		}
		return nullptr;
	}

	FSimulatedActor* Spawn(FSimulatedEditorPort& Port, const TCHAR* ClassPath, const FSimulatedVector& Location = FSimulatedVector(), const FSimulatedRotator& Rotation = FSimulatedRotator())
	{
		FString Error;
		FSimulatedActor* Actor = WorldOf(Port).SpawnActorFromClass(Port.GetEditor().FindTypeByPath(ClassPath), Location, Rotation, false, Error);
		EXPECT_NE(Actor, nullptr) << S(Error);
		return Actor;
	}

	std::vector<std::string> Labels(const std::vector<FSimulatedActor*>& Actors)
	{
		std::vector<std::string> Result;
		for (const FSimulatedActor* Actor : Actors)
		{
			Result.push_back(S(Actor->Label));
		}
		return Result;
	}

	std::vector<std::string> ComponentNames(const FZorvekMCPBridgeActorSnapshot& Snapshot)
	{
		std::vector<std::string> Names;
		for (const FZorvekMCPBridgeActorComponentSnapshot& Component : Snapshot.Components)
		{
			Names.push_back(S(Component.Name));
		}
		return Names;
	}
}

TEST(SimulatedWorldLevel, TheSampleLevelListsItsActorsInSpawnOrderUnderEngineNames)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = WorldOf(*Port);
	ASSERT_TRUE(World.HasEditorWorld());
	EXPECT_EQ(S(World.GetWorldObject()->GetPathName()), "/Game/Maps/SampleLevel.SampleLevel");
	EXPECT_EQ(Labels(World.GetAllLevelActors()), (std::vector<std::string>{"Floor", "PointLight", "PlayerStart", "BP_Hero", "BP_Showcase", "Rootless", "PCG_Forest", "VisualOnlySphere", "ReproCylinder"}));
	const FSimulatedActor* Floor = FindByLabel(World, TEXT("Floor"));
	ASSERT_NE(Floor, nullptr);
	// MakeUniqueObjectName per class; actors live in the persistent level (unreal-behaviour-world-assets.md §2.1).
	EXPECT_EQ(S(Floor->Object->GetPathName()), "/Game/Maps/SampleLevel.SampleLevel:PersistentLevel.StaticMeshActor_0");
	EXPECT_EQ(S(FindByLabel(World, TEXT("ReproCylinder"))->Object->Name), "StaticMeshActor_2");
	EXPECT_EQ(S(FindByLabel(World, TEXT("BP_Hero"))->Object->Name), "BP_Hero_C_0");
}

TEST(SimulatedWorldLevel, PlacementNamesAndLabelsActorsAsTheEditorDoes)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = WorldOf(*Port);
	// Default labels are the class name, made unique as Name, Name2, Name3 (§2.2); the sample
	// level's three StaticMeshActors carry other labels, so the first new one is unnumbered.
	FSimulatedActor* First = Spawn(*Port, TEXT("/Script/Engine.StaticMeshActor"));
	FSimulatedActor* Second = Spawn(*Port, TEXT("/Script/Engine.StaticMeshActor"));
	FSimulatedActor* Third = Spawn(*Port, TEXT("/Script/Engine.StaticMeshActor"));
	ASSERT_TRUE(First && Second && Third);
	EXPECT_EQ(S(First->Label), "StaticMeshActor");
	EXPECT_EQ(S(Second->Label), "StaticMeshActor2");
	EXPECT_EQ(S(Third->Label), "StaticMeshActor3");
	EXPECT_EQ(S(Third->Object->Name), "StaticMeshActor_5");
	// A Blueprint class's label drops _C; a numbered label continues its number.
	FSimulatedActor* Hero = Spawn(*Port, TEXT("/Game/Blueprints/BP_Hero.BP_Hero_C"));
	ASSERT_NE(Hero, nullptr);
	EXPECT_EQ(S(Hero->Label), "BP_Hero2");
	EXPECT_EQ(S(Hero->Object->Name), "BP_Hero_C_1");
	World.SetActorLabelUnique(*Hero, TEXT("StaticMeshActor2"));
	EXPECT_EQ(S(Hero->Label), "StaticMeshActor4");
	// SetActorLabel trims, never uniquifies and refuses an empty label.
	EXPECT_TRUE(World.SetActorLabel(*Hero, TEXT("  Floor ")));
	EXPECT_EQ(S(Hero->Label), "Floor");
	EXPECT_FALSE(World.SetActorLabel(*Hero, TEXT("   ")));
	EXPECT_EQ(S(Hero->Label), "Floor");
	// Placement selects nothing (§2.1).
	EXPECT_TRUE(World.GetSelectedActors().empty());
}

TEST(SimulatedWorldLevel, SpawningRefusesWhatTheSubsystemRefuses)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = WorldOf(*Port);
	const int32 Before = World.GetLevelActorCount();
	FString Error;
	EXPECT_EQ(World.SpawnActorFromClass(nullptr, FSimulatedVector(), FSimulatedRotator(), false, Error), nullptr);
	EXPECT_EQ(S(Error), "SpawnActorFromClass. ActorClass is not valid.");
	// Abstract actor classes and non-actor classes place nothing.
	EXPECT_EQ(World.SpawnActorFromClass(Port->GetEditor().FindTypeByPath(TEXT("/Script/Engine.Light")), FSimulatedVector(), FSimulatedRotator(), false, Error), nullptr);
	EXPECT_EQ(World.SpawnActorFromClass(Port->GetEditor().FindTypeByPath(TEXT("/Script/Engine.StaticMeshComponent")), FSimulatedVector(), FSimulatedRotator(), false, Error), nullptr);
	EXPECT_EQ(S(Error), "No actor was spawned.");
	// Transient actors exist but are not level actors (§2.3).
	FSimulatedActor* Transient = World.SpawnActorFromClass(Port->GetEditor().FindTypeByPath(TEXT("/Script/Engine.StaticMeshActor")), FSimulatedVector(), FSimulatedRotator(), true, Error);
	ASSERT_NE(Transient, nullptr);
	EXPECT_EQ(World.GetLevelActorCount(), Before);
	EXPECT_EQ(Port->GetWorld().GetAllLevelActors().Num(), Before);
}

TEST(SimulatedWorldLevel, PlacedBlueprintsGetTheirConstructionScriptComponents)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	IZorvekMCPBridgeWorld& WorldPort = Port->GetWorld();
	FSimulatedActor* Showcase = Spawn(*Port, TEXT("/Game/Blueprints/BP_Showcase.BP_Showcase_C"), {1000.0, 0.0, 0.0}, {0.0, 90.0, 0.0});
	ASSERT_NE(Showcase, nullptr);
	FZorvekMCPBridgeActorSnapshot Snapshot;
	ASSERT_TRUE(WorldPort.ReadActor(FSimulatedEditorPort::ToHandle(Showcase->Object), Snapshot));
	// The script's tree: Body is the root (it replaced DefaultSceneRoot), the rest hang below it.
	EXPECT_EQ(ComponentNames(Snapshot), (std::vector<std::string>{"Body", "CameraBoom", "FollowCamera", "Marker"}));
	EXPECT_EQ(S(Snapshot.Components[0].StaticMeshPath), "/Engine/BasicShapes/Cube.Cube");
	EXPECT_TRUE(Snapshot.Components[0].bIsStaticMeshComponent);
	EXPECT_FALSE(Snapshot.Components[1].bIsPrimitiveComponent);
	// The templates' values came along: reflection reads the override material and the boom length.
	FString Text;
	Port->GetReflection().FindProperty(FSimulatedEditorPort::ToHandle(Showcase->FindComponent(Port->GetEditor().FindObject(Showcase->Object->GetPathName() + TEXT(".Body")))->Object), TEXT("OverrideMaterials")).ExportText(Text);
	EXPECT_EQ(S(Text), "(\"/Script/Engine.Material'/Game/Materials/M_Rock.M_Rock'\")");
	// Marker sits 120 above Body; the actor's yaw of 90 turns the whole tree.
	const FZorvekMCPBridgeActorComponentSnapshot& Marker = Snapshot.Components[3];
	EXPECT_NEAR(Marker.WorldTransform.Location.X, 1000.0, 1e-6);
	EXPECT_NEAR(Marker.WorldTransform.Location.Z, 120.0, 1e-6);
	EXPECT_NEAR(Marker.RelativeTransform.Location.Z, 120.0, 1e-9);
	EXPECT_NEAR(Marker.WorldTransform.Rotation.Yaw, 90.0, 1e-4);

	// A Blueprint whose root is DefaultSceneRoot shows the editor's sprite beside it (§2.4).
	FSimulatedActor* Hero = Spawn(*Port, TEXT("/Game/Blueprints/BP_Hero.BP_Hero_C"));
	ASSERT_TRUE(WorldPort.ReadActor(FSimulatedEditorPort::ToHandle(Hero->Object), Snapshot));
	ASSERT_EQ(Snapshot.Components.Num(), 2);
	EXPECT_EQ(S(Snapshot.Components[0].Name), "DefaultSceneRoot");
	EXPECT_EQ(S(Snapshot.Components[1].ClassPath), "/Script/Engine.BillboardComponent");
	EXPECT_TRUE(Snapshot.Components[1].bIsPrimitiveComponent);
}

TEST(SimulatedWorldLevel, SelectionKeepsItsOrderAndDestructionRefusesNullEntriesFirst)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = WorldOf(*Port);
	FSimulatedActor* Floor = FindByLabel(World, TEXT("Floor"));
	FSimulatedActor* Light = FindByLabel(World, TEXT("PointLight"));
	FSimulatedActor* Repro = FindByLabel(World, TEXT("ReproCylinder"));
	World.SetActorSelectionState(*Repro, true);
	World.SetActorSelectionState(*Floor, true);
	World.SetActorSelectionState(*Light, true);
	World.SetActorSelectionState(*Repro, true);
	// Selection order, not level order (§2.3); selecting again keeps the place.
	EXPECT_EQ(Labels(World.GetSelectedActors()), (std::vector<std::string>{"ReproCylinder", "Floor", "PointLight"}));
	World.SetActorSelectionState(*Floor, false);
	EXPECT_EQ(Labels(World.GetSelectedActors()), (std::vector<std::string>{"ReproCylinder", "PointLight"}));

	const int32 Before = World.GetLevelActorCount();
	FString Error;
	EXPECT_FALSE(World.DestroyActors({Repro, nullptr}, Error));
	EXPECT_EQ(S(Error), "DestroyActors. An actor to destroy is invalid.");
	EXPECT_EQ(World.GetLevelActorCount(), Before);
	EXPECT_EQ(FindByLabel(World, TEXT("ReproCylinder")), Repro);

	const FString ReproPath = Repro->Object->GetPathName();
	EXPECT_TRUE(World.DestroyActors({Repro}, Error));
	EXPECT_EQ(World.GetLevelActorCount(), Before - 1);
	EXPECT_EQ(FindByLabel(World, TEXT("ReproCylinder")), nullptr);
	EXPECT_EQ(Labels(World.GetSelectedActors()), (std::vector<std::string>{"PointLight"}));
	// The path names nothing afterwards and the port no longer knows the handle.
	EXPECT_EQ(Port->GetEditor().FindObject(ReproPath), nullptr);
	FZorvekMCPBridgeActorSnapshot Snapshot;
	EXPECT_FALSE(Port->GetWorld().ReadActor(FSimulatedEditorPort::ToHandle(Repro->Object), Snapshot));
	// Destroying it again fails: it is no longer in the editor world.
	EXPECT_FALSE(World.DestroyActors({Repro}, Error));
	// The level keeps its order around the hole.
	EXPECT_EQ(Labels(World.GetAllLevelActors()).back(), "VisualOnlySphere");
}

TEST(SimulatedWorldLevel, WithoutTheEditorWorldOrTheSubsystemNothingIsListedOrPlaced)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorldPort& WorldPort = static_cast<FSimulatedWorldPort&>(Port->GetWorld());
	FZorvekMCPBridgeWorldInfo Info;
	ASSERT_TRUE(WorldPort.GetEditorWorld(Info));
	EXPECT_EQ(S(Info.Name), "SampleLevel");
	EXPECT_EQ(S(Info.PackageName), "/Game/Maps/SampleLevel");
	WorldOf(*Port).SetActorSelectionState(*FindByLabel(WorldOf(*Port), TEXT("Floor")), true);

	WorldPort.SetEditorWorldAvailable(false);
	EXPECT_FALSE(WorldPort.GetEditorWorld(Info));
	EXPECT_EQ(WorldPort.GetAllLevelActors().Num(), 0);
	EXPECT_EQ(WorldPort.GetSelectedLevelActors().Num(), 0);
	EXPECT_FALSE(WorldPort.SpawnActorFromClass(TEXT("/Script/Engine.StaticMeshActor"), {}, {}).IsValid());

	WorldPort.SetEditorWorldAvailable(true);
	WorldPort.SetActorSubsystemAvailable(false);
	EXPECT_FALSE(WorldPort.IsActorSubsystemAvailable());
	EXPECT_EQ(WorldPort.GetAllLevelActors().Num(), 0);
	EXPECT_EQ(WorldPort.GetSelectedLevelActors().Num(), 0);
	EXPECT_EQ(WorldOf(*Port).GetLevelActorCount(), 9);
}

TEST(SimulatedWorldLevel, AFreedLabelNumberIsTakenAgainFirst)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = WorldOf(*Port);
	std::vector<FSimulatedActor*> Lights;
	for (int32 Index = 0; Index < 4; ++Index)
	{
		Lights.push_back(Spawn(*Port, TEXT("/Script/Engine.PointLight")));
	}
	// The sample's light is PointLight; these are PointLight2 .. PointLight5.
	EXPECT_EQ(S(Lights[0]->Label), "PointLight2");
	EXPECT_EQ(S(Lights[3]->Label), "PointLight5");
	FString Error;
	ASSERT_TRUE(World.DestroyActors({Lights[1]}, Error));
	// The editor tries numbers from 2 upwards, so the freed PointLight3 comes back first (§2.2).
	EXPECT_EQ(S(Spawn(*Port, TEXT("/Script/Engine.PointLight"))->Label), "PointLight3");
	EXPECT_EQ(S(Spawn(*Port, TEXT("/Script/Engine.PointLight"))->Label), "PointLight6");
	// Labels compare without regard to case.
	EXPECT_TRUE(World.SetActorLabel(*Lights[0], TEXT("lamp")));
	FSimulatedActor* Other = Spawn(*Port, TEXT("/Script/Engine.PointLight"));
	World.SetActorLabelUnique(*Other, TEXT("LAMP"));
	EXPECT_EQ(S(Other->Label), "LAMP2");
}

TEST(SimulatedWorldLevel, WorldFixturesFailLoudlyNamingTheEntry)
{
	FString Error;
	// An actor of a class nobody defined.
	EXPECT_EQ(LoadInlineProject(TEXT("\"include\": [\"BlueprintEngineTypes.json\", \"WorldEngineTypes.json\"], \"world\": {\"map\": \"/Game/Maps/Test\", \"actors\": [{\"class\": \"/Script/Engine.NoSuchActor\"}]}"), &Error, false), nullptr);
	EXPECT_NE(S(Error).find("world actors[0] /Script/Engine.NoSuchActor"), std::string::npos) << S(Error);
	EXPECT_NE(S(Error).find("ActorClass is not valid"), std::string::npos) << S(Error);
	// Component values for a component the actor does not have.
	EXPECT_EQ(LoadInlineProject(TEXT("\"include\": [\"BlueprintEngineTypes.json\", \"WorldEngineTypes.json\"], \"world\": {\"map\": \"/Game/Maps/Test\", \"actors\": [{\"class\": \"/Script/Engine.StaticMeshActor\", \"components\": {\"Nope\": {}}}]}"), &Error, false), nullptr);
	EXPECT_NE(S(Error).find("component 'Nope'"), std::string::npos) << S(Error);
	// A world without the World and Level classes.
	EXPECT_EQ(LoadInlineProject(TEXT("\"include\": [\"BlueprintEngineTypes.json\"], \"world\": {\"map\": \"/Game/Maps/Test\"}"), &Error, false), nullptr);
	EXPECT_NE(S(Error).find("WorldEngineTypes.json"), std::string::npos) << S(Error);
}
