// The pieces every world tool shares, on hand-made snapshots: the transform arguments and their
// refusals, the bounds and component JSON, the repro test and the text filter.
#include "EditorWorldTestSupport.h"
#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

using namespace ZorvekAssetTests;
using namespace ZorvekEditorWorldTests;
using namespace ZorvekMCPBridgeActorReadback;

namespace
{
	FZorvekMCPBridgeTransform MakeTransform(FZorvekMCPBridgeVector Location, FZorvekMCPBridgeRotator Rotation, FZorvekMCPBridgeVector Scale)
	{
		FZorvekMCPBridgeTransform Transform;
		Transform.Location = Location;
		Transform.Rotation = Rotation;
		Transform.Scale = Scale;
		return Transform;
	}

	std::string DescribeTransform(const FZorvekMCPBridgeTransform& Transform)
	{
		return Location(MakeTransformJson(Transform)) + " | " + Rotation(MakeTransformJson(Transform)) + " | " + Scale(MakeTransformJson(Transform));
	}

	std::string ReadError(const TSharedPtr<FJsonObject>& Args)
	{
		return S(ZorvekMCPBridgeWorldTransformArguments::Read(Args).Error);
	}
}

TEST(EditorWorldTransformArguments, PresentKeysReplaceTheirPartAndAbsentKeysKeepTheCurrentValue)
{
	const FZorvekMCPBridgeTransform Current = MakeTransform({1, 2, 3}, {10, 20, 30}, {4, 5, 6});
	const auto Overrides = ZorvekMCPBridgeWorldTransformArguments::Read(Arguments({{TEXT("LocationY"), Number(-7.5)}, {TEXT("RotationRoll"), Text(TEXT(" 45 "))},
		{TEXT("ScaleX"), Text(TEXT("2e-1"))}}));
	ASSERT_TRUE(Overrides.IsValid()) << S(Overrides.Error);
	EXPECT_EQ(DescribeTransform(Overrides.ApplyTo(Current)), "1 -7.5 3 | 10 20 45 | 0.2 5 6");
	// Placement starts from the default transform: zero location and rotation, unit scale.
	EXPECT_EQ(DescribeTransform(ZorvekMCPBridgeWorldTransformArguments::Read(Arguments({})).ApplyTo(FZorvekMCPBridgeTransform())), "0 0 0 | 0 0 0 | 1 1 1");
}

TEST(EditorWorldTransformArguments, RefusalsNameTheKeyAndTheFirstBadKeyInOrderWins)
{
	EXPECT_EQ(ReadError(Arguments({{TEXT("LocationX"), Text(TEXT("12abc"))}})), "LocationX must be a number.");
	EXPECT_EQ(ReadError(Arguments({{TEXT("LocationX"), Text(TEXT(""))}})), "LocationX must be a number.");
	EXPECT_EQ(ReadError(Arguments({{TEXT("LocationY"), Text(TEXT("1e"))}})), "LocationY must be a number.");
	EXPECT_EQ(ReadError(Arguments({{TEXT("RotationPitch"), MakeShared<FJsonValueArray>(TArray<TSharedPtr<FJsonValue>>{Number(1)})}})), "RotationPitch must be a number.");
	EXPECT_EQ(ReadError(Arguments({{TEXT("RotationYaw"), Text(TEXT("-Infinity"))}})), "RotationYaw must be a finite number.");
	EXPECT_EQ(ReadError(Arguments({{TEXT("ScaleZ"), Number(-std::numeric_limits<double>::infinity())}})), "ScaleZ must be a finite number.");
	EXPECT_EQ(ReadError(Arguments({{TEXT("ScaleY"), Text(TEXT("10000000.5"))}})), "ScaleY is out of range (at most 10000000 in magnitude).");
	EXPECT_EQ(ReadError(Arguments({{TEXT("LocationZ"), Number(-1e7)}, {TEXT("ScaleX"), Number(0)}})), "");
	// Key order, not argument order, decides which refusal is reported.
	EXPECT_EQ(ReadError(Arguments({{TEXT("ScaleZ"), Text(TEXT("x"))}, {TEXT("LocationX"), Number(2e7)}})), "LocationX is out of range (at most 10000000 in magnitude).");
}

TEST(EditorWorldReadback, BoundsJsonDerivesCentreAndHalfExtentFromTheCorners)
{
	FZorvekMCPBridgeBox Box;
	Box.Min = {-10, 0, 4};
	Box.Max = {30, 6, 4};
	Box.bIsValid = true;
	const TSharedPtr<FJsonObject> Bounds = MakeBoundsJson(Box);
	EXPECT_EQ(Keys(Bounds), (std::vector<std::string>{"min", "max", "center", "extent"}));
	EXPECT_EQ(Vec(Bounds->GetObjectField(TEXT("center"))), "10 3 4");
	EXPECT_EQ(Vec(Bounds->GetObjectField(TEXT("extent"))), "20 3 0");
	EXPECT_EQ(Vec(Bounds->GetObjectField(TEXT("max"))), "30 6 4");
}

TEST(EditorWorldReadback, ComponentsAreSceneComponentsOnlyWithBoundsAndMeshWhereTheyApply)
{
	FZorvekMCPBridgeActorSnapshot Actor;
	Actor.Entry.Name = TEXT("Thing_0");
	Actor.Entry.Label = TEXT("Thing");
	Actor.Entry.Tags = {FName(TEXT("Custom")), FName(TEXT("ZorvekVisualPCG"))};
	Actor.bHasRootComponent = false;
	Actor.RootTransform = MakeTransform({5, 5, 5}, {0, 90, 0}, {2, 2, 2});

	FZorvekMCPBridgeActorComponentSnapshot Movement;
	Movement.Name = TEXT("Movement");
	FZorvekMCPBridgeActorComponentSnapshot Root;
	Root.Name = TEXT("Root");
	Root.bIsSceneComponent = true;
	FZorvekMCPBridgeActorComponentSnapshot Mesh;
	Mesh.Name = TEXT("Mesh");
	Mesh.bIsSceneComponent = true;
	Mesh.bIsPrimitiveComponent = true;
	Mesh.bIsStaticMeshComponent = true;
	Actor.Components = {Movement, Root, Mesh};

	const TSharedPtr<FJsonObject> Json = MakeActorReadback(Actor, true);
	const TArray<TSharedPtr<FJsonValue>>& Components = Json->GetArrayField(TEXT("components"));
	EXPECT_EQ(ToStd(Collect(Components, TEXT("name"))), (std::vector<std::string>{"Root", "Mesh"}));
	EXPECT_EQ(Keys(Components[0]->AsObject()), (std::vector<std::string>{"name", "class_path", "world_transform", "relative_transform"}));
	// A static mesh component without a mesh still says so, with an empty path.
	EXPECT_EQ(S(Components[1]->AsObject()->GetStringField(TEXT("static_mesh"))), "");
	EXPECT_TRUE(Components[1]->AsObject()->HasField(TEXT("world_bounds")));

	// Without a root component the actor reads as the identity, whatever else the snapshot holds.
	EXPECT_EQ(DescribeTransform(FZorvekMCPBridgeTransform()), Location(Json->GetObjectField(TEXT("transform"))) + " | "
		+ Rotation(Json->GetObjectField(TEXT("transform"))) + " | " + Scale(Json->GetObjectField(TEXT("transform"))));
	EXPECT_EQ(Strings(Json->GetArrayField(TEXT("tags"))), (std::vector<std::string>{"Custom", "ZorvekVisualPCG"}));
	EXPECT_TRUE(Json->GetBoolField(TEXT("selected")));
	EXPECT_FALSE(Json->GetBoolField(TEXT("zorvek_repro_actor")));
}

TEST(EditorWorldReadback, EitherBridgeTagMakesAReproActorComparedAsNamesCompare)
{
	EXPECT_TRUE(IsReproActor({FName(TEXT("ZorvekRepro"))}));
	EXPECT_TRUE(IsReproActor({FName(TEXT("Other")), FName(TEXT("zorvekmcpbridge"))}));
	EXPECT_FALSE(IsReproActor({FName(TEXT("ZorvekVisualPCG"))}));
	EXPECT_FALSE(IsReproActor({FName(TEXT("ZorvekReproduction")), FName(TEXT("Zorvek"))}));
	EXPECT_FALSE(IsReproActor({}));
}

TEST(EditorWorldReadback, FilterIsASubstringOfNameLabelOrPathIgnoringCase)
{
	FZorvekMCPBridgeActorEntry Actor;
	Actor.Name = TEXT("StaticMeshActor_3");
	Actor.Label = TEXT("Crate");
	Actor.Path = TEXT("/Game/Maps/Dock.Dock:PersistentLevel.StaticMeshActor_3");
	Actor.Tags = {FName(TEXT("Cargo"))};
	EXPECT_TRUE(MatchesFilter(Actor, TEXT("")));
	EXPECT_TRUE(MatchesFilter(Actor, TEXT("meshactor_3")));
	EXPECT_TRUE(MatchesFilter(Actor, TEXT("RAT")));
	EXPECT_TRUE(MatchesFilter(Actor, TEXT("maps/dock")));
	EXPECT_FALSE(MatchesFilter(Actor, TEXT("Cargo")));
	EXPECT_FALSE(MatchesFilter(Actor, TEXT(" Crate")));
}
