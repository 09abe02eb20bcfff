// Transforms and bounds of the simulated level as the engine computes them: rotators read back
// from quaternions, children that follow their parents, mesh bounds under scale and rotation,
// and actor bounds that are zero without primitives.
#include "AssetTestSupport.h"
#include "SimulatedWorld.h"
#include "SimulatedWorldPort.h"

using namespace ZorvekAssetTests;

namespace
{
	FSimulatedActor* SpawnCube(FSimulatedEditorPort& Port, const FSimulatedVector& Location, const FSimulatedRotator& Rotation, const FSimulatedVector& Scale)
	{
		FSimulatedWorld& World = Port.GetEditor().GetWorld();
		FString Error;
		FSimulatedActor* Actor = World.SpawnActorFromClass(Port.GetEditor().FindTypeByPath(TEXT("/Script/Engine.StaticMeshActor")), Location, Rotation, false, Error);
		EXPECT_NE(Actor, nullptr) << S(Error);
		if (Actor)
		{
			World.SetActorScale3D(*Actor, Scale);
			EXPECT_TRUE(Port.GetEditor().SetPropertyText(Actor->RootComponent->Object, TEXT("StaticMesh"), TEXT("/Engine/BasicShapes/Cube.Cube"), Error)) << S(Error);
		}
		return Actor;
	}

	FSimulatedRotator ReadBack(const FSimulatedRotator& Rotator)
	{
		return FSimulatedQuat::FromRotator(Rotator).ToRotator();
	}

	void ExpectVector(const FZorvekMCPBridgeVector& Actual, double X, double Y, double Z, double Tolerance = 1e-6)
	{
		EXPECT_NEAR(Actual.X, X, Tolerance);
		EXPECT_NEAR(Actual.Y, Y, Tolerance);
		EXPECT_NEAR(Actual.Z, Z, Tolerance);
	}
}

TEST(SimulatedWorldTransforms, WorldRotationsReadBackNormalisedFromTheQuaternion)
{
	// unreal-behaviour-world-assets.md §2.5: each axis in (-180, 180], pitch beyond 90 folds.
	const FSimulatedRotator Yaw = ReadBack({0.0, 270.0, 0.0});
	EXPECT_NEAR(Yaw.Yaw, -90.0, 1e-9);
	const FSimulatedRotator Folded = ReadBack({120.0, 0.0, 0.0});
	EXPECT_NEAR(Folded.Pitch, 60.0, 1e-3);
	EXPECT_NEAR(FMath::Abs(Folded.Yaw), 180.0, 1e-6);
	EXPECT_NEAR(FMath::Abs(Folded.Roll), 180.0, 1e-6);
	// Away from the poles the pitch comes through FastAsin: close, not exact.
	const FSimulatedRotator Mixed = ReadBack({30.0, -45.0, 10.0});
	EXPECT_NEAR(Mixed.Pitch, 30.0, 1e-3);
	EXPECT_NEAR(Mixed.Yaw, -45.0, 1e-3);
	EXPECT_NEAR(Mixed.Roll, 10.0, 1e-3);
	// At the pole only yaw - roll is determined.
	const FSimulatedRotator Pole = ReadBack({90.0, 0.0, 30.0});
	EXPECT_EQ(Pole.Pitch, 90.0);
	EXPECT_NEAR(FSimulatedRotator::NormalizeAxis(Pole.Yaw - Pole.Roll), -30.0, 1e-3);
}

TEST(SimulatedWorldTransforms, ChildrenFollowTheirParentsAndKeepTheirRelativeTransforms)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = Port->GetEditor().GetWorld();
	FString Error;
	FSimulatedActor* Showcase = World.SpawnActorFromClass(Port->GetEditor().FindTypeByPath(TEXT("/Game/Blueprints/BP_Showcase.BP_Showcase_C")), {100.0, 0.0, 0.0}, {0.0, 90.0, 0.0}, false, Error);
	ASSERT_NE(Showcase, nullptr);
	World.SetActorScale3D(*Showcase, {2.0, 2.0, 2.0});
	FSimulatedComponent* Body = Showcase->RootComponent;
	FSimulatedComponent* Marker = Body->AttachChildren.back();
	ASSERT_EQ(S(Marker->Object->Name), "Marker");
	// Relative first: (0, 0, 120) scaled by 2, rotated by yaw 90, moved to (100, 0, 0) (§2.5).
	FSimulatedTransform MarkerWorld = World.GetComponentToWorld(*Marker);
	EXPECT_NEAR(MarkerWorld.Translation.X, 100.0, 1e-9);
	EXPECT_NEAR(MarkerWorld.Translation.Z, 240.0, 1e-9);
	// Moving the marker sideways goes along the parent's turned Y axis.
	World.SetRelativeTransform(*Marker, FSimulatedTransform({0.0, 0.0, 0.0}, {10.0, 0.0, 120.0}, {1.0, 1.0, 1.0}));
	MarkerWorld = World.GetComponentToWorld(*Marker);
	EXPECT_NEAR(MarkerWorld.Translation.X, 100.0, 1e-9);
	EXPECT_NEAR(MarkerWorld.Translation.Y, 20.0, 1e-9);
	// The reflected relative location follows the change.
	FString Text;
	Port->GetReflection().FindProperty(FSimulatedEditorPort::ToHandle(Marker->Object), TEXT("RelativeLocation")).ExportText(Text);
	EXPECT_EQ(S(Text), "(X=10.000000,Y=0.000000,Z=120.000000)");
	// Moving the actor moves the whole tree; the child's relative transform stays.
	World.SetActorTransform(*Showcase, FSimulatedTransform({0.0, 0.0, 0.0}, {0.0, 500.0, 0.0}, {1.0, 1.0, 1.0}));
	MarkerWorld = World.GetComponentToWorld(*Marker);
	EXPECT_NEAR(MarkerWorld.Translation.X, 10.0, 1e-9);
	EXPECT_NEAR(MarkerWorld.Translation.Y, 500.0, 1e-9);
	EXPECT_NEAR(MarkerWorld.Translation.Z, 120.0, 1e-9);
	EXPECT_NEAR(World.GetRelativeTransform(*Marker).Translation.X, 10.0, 1e-9);
}

TEST(SimulatedWorldTransforms, RelativeRotatorsStayAsSetUntilTheQuaternionChanges)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = Port->GetEditor().GetWorld();
	FSimulatedActor* Cube = SpawnCube(*Port, {0.0, 0.0, 0.0}, {0.0, 270.0, 0.0}, {1.0, 1.0, 1.0});
	ASSERT_NE(Cube, nullptr);
	// SetActorLocationAndRotation goes through the quaternion, so even the root's relative
	// rotator is normalised; the world rotation certainly is (§2.5).
	FZorvekMCPBridgeActorSnapshot Snapshot;
	ASSERT_TRUE(Port->GetWorld().ReadActor(FSimulatedEditorPort::ToHandle(Cube->Object), Snapshot));
	EXPECT_NEAR(Snapshot.RootTransform.Rotation.Yaw, -90.0, 1e-6);
	// Changing the scale only keeps the stored rotator (the cache sees the same quaternion).
	const double StoredYaw = Cube->RootComponent->RelativeRotation.Yaw;
	World.SetActorScale3D(*Cube, {3.0, 1.0, 1.0});
	EXPECT_EQ(Cube->RootComponent->RelativeRotation.Yaw, StoredYaw);
}

TEST(SimulatedWorldBounds, CubeBoundsFollowScaleAndRotation)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	IZorvekMCPBridgeWorld& WorldPort = Port->GetWorld();
	// unreal-behaviour-world-assets.md §2.4: the cube is 100 units on a side; a box rotated 45 in
	// yaw has the axis-aligned box around it.
	FSimulatedActor* Scaled = SpawnCube(*Port, {0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}, {2.0, 1.0, 1.0});
	FSimulatedActor* Turned = SpawnCube(*Port, {500.0, 0.0, 50.0}, {0.0, 45.0, 0.0}, {1.0, 1.0, 1.0});
	ASSERT_TRUE(Scaled && Turned);
	FZorvekMCPBridgeActorSnapshot Snapshot;
	ASSERT_TRUE(WorldPort.ReadActor(FSimulatedEditorPort::ToHandle(Scaled->Object), Snapshot));
	ExpectVector(Snapshot.Bounds.Min, -100.0, -50.0, -50.0);
	ExpectVector(Snapshot.Bounds.Max, 100.0, 50.0, 50.0);
	EXPECT_TRUE(Snapshot.Bounds.bIsValid);
	ASSERT_TRUE(WorldPort.ReadActor(FSimulatedEditorPort::ToHandle(Turned->Object), Snapshot));
	ExpectVector(Snapshot.Bounds.Max, 570.7107, 70.7107, 100.0, 1e-4);
	ExpectVector(Snapshot.Bounds.Min, 429.2893, -70.7107, 0.0, 1e-4);
	// The component's own box is the same box.
	ExpectVector(Snapshot.Components[0].WorldBounds.Max, 570.7107, 70.7107, 100.0, 1e-4);
}

TEST(SimulatedWorldBounds, ActorsWithoutPrimitivesHaveZeroBoundsAndRootlessOnesIdentity)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedWorld& World = Port->GetEditor().GetWorld();
	IZorvekMCPBridgeWorld& WorldPort = Port->GetWorld();
	FString Error;
	// A scene component that is no primitive contributes nothing: zero origin and extent,
	// not the actor's location (§2.4).
	FSimulatedActor* Camera = World.SpawnActorFromClass(Port->GetEditor().FindTypeByPath(TEXT("/Script/Engine.CameraActor")), {300.0, 200.0, 100.0}, FSimulatedRotator(), false, Error);
	ASSERT_NE(Camera, nullptr);
	FZorvekMCPBridgeActorSnapshot Snapshot;
	ASSERT_TRUE(WorldPort.ReadActor(FSimulatedEditorPort::ToHandle(Camera->Object), Snapshot));
	EXPECT_FALSE(Snapshot.Bounds.bIsValid);
	ExpectVector(Snapshot.Bounds.Min, 0.0, 0.0, 0.0);
	ExpectVector(Snapshot.Bounds.Max, 0.0, 0.0, 0.0);
	ExpectVector(Snapshot.RootTransform.Location, 300.0, 200.0, 100.0);

	// The sample's Rootless actor: identity transform, no components, zero bounds.
	const FZorvekMCPBridgeActorEntry* Rootless = nullptr;
	const TArray<FZorvekMCPBridgeActorEntry> Entries = WorldPort.GetAllLevelActors();
	for (const FZorvekMCPBridgeActorEntry& Entry : Entries)
	{
		Rootless = Entry.Label == TEXT("Rootless") ? &Entry : Rootless;
	}
	ASSERT_NE(Rootless, nullptr);
	ASSERT_TRUE(WorldPort.ReadActor(Rootless->Actor, Snapshot));
	EXPECT_FALSE(Snapshot.bHasRootComponent);
	EXPECT_EQ(Snapshot.Components.Num(), 0);
	ExpectVector(Snapshot.RootTransform.Location, 0.0, 0.0, 0.0);
	ExpectVector(Snapshot.RootTransform.Scale, 1.0, 1.0, 1.0);
	// Moving a rootless actor changes nothing.
	WorldPort.SetActorTransform(Rootless->Actor, {{5.0, 5.0, 5.0}, {0.0, 10.0, 0.0}, {2.0, 2.0, 2.0}});
	ASSERT_TRUE(WorldPort.ReadActor(Rootless->Actor, Snapshot));
	ExpectVector(Snapshot.RootTransform.Location, 0.0, 0.0, 0.0);
}

TEST(SimulatedWorldBounds, EditorSpritesAndCapsulesCountInActorBounds)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	IZorvekMCPBridgeWorld& WorldPort = Port->GetWorld();
	FZorvekMCPBridgeActorSnapshot Hero;
	FZorvekMCPBridgeActorSnapshot Start;
	for (const FZorvekMCPBridgeActorEntry& Entry : WorldPort.GetAllLevelActors())
	{
		if (Entry.Label == TEXT("BP_Hero"))
		{
			ASSERT_TRUE(WorldPort.ReadActor(Entry.Actor, Hero));
		}
		if (Entry.Label == TEXT("PlayerStart"))
		{
			ASSERT_TRUE(WorldPort.ReadActor(Entry.Actor, Start));
		}
	}
	// BP_Hero at (200, -400, 0) has only DefaultSceneRoot and its sprite: a small box around
	// its location, half the sprite size at half scale (§2.4).
	ExpectVector(Hero.Bounds.Min, 136.0, -464.0, -64.0);
	ExpectVector(Hero.Bounds.Max, 264.0, -336.0, 64.0);
	// The player start's capsule (radius 40, half height 92) and its sprites.
	EXPECT_NEAR(Start.Bounds.Max.Z - Start.Bounds.Min.Z, 2.0 * 92.0, 1e-6);
	EXPECT_NEAR(Start.Bounds.Max.X - Start.Bounds.Min.X, 128.0, 1e-6);
}
