// blueprint_create_primitive_actor on the simulated editor: presets and part lists build compiled
// Blueprints whose construction script, templates and placed actors hold what the answer says, and
// every refusal happens before an asset exists.
#include "PrimitiveActorTestSupport.h"

using namespace ZorvekPrimitiveActorTests;

namespace
{
	const TCHAR* const TreePath = TEXT("/Game/Primitives/BP_Tree.BP_Tree");
	const TCHAR* const RigPath = TEXT("/Game/Primitives/BP_Rig.BP_Rig");
	const TCHAR* const RefusedPath = TEXT("/Game/Primitives/BP_Refused.BP_Refused");

	using FPrimitiveActorToolsTest = FPrimitiveActorTest;
}

TEST_F(FPrimitiveActorToolsTest, DummyTreeCompilesUnderItsOwnRootAndPlacesWithTheBoundsItPromised)
{
	const TSharedPtr<FJsonObject> Payload = Ok(CallJson(TEXT("blueprint_create_primitive_actor"),
		R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Tree", "Preset": "dummytree"})"));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("compile_status"))), "up_to_date");
	EXPECT_EQ(PartNames(Payload), (std::vector<std::string>{"Trunk", "Crown"}));
	// The sample project has no bark or leaf material: both parts keep the basic shape material.
	for (const TSharedPtr<FJsonValue>& Part : Payload->GetArrayField(TEXT("parts")))
	{
		EXPECT_EQ(S(Part->AsObject()->GetStringField(TEXT("material_source"))), "mesh_default");
	}

	// The first scene root replaces DefaultSceneRoot (unreal-behaviour-blueprints.md §6.2).
	EXPECT_EQ(ComponentTree(TreePath), (std::vector<std::string>{"Root:SceneComponent<", "Trunk:StaticMeshComponent<Root", "Crown:StaticMeshComponent<Root"}));
	EXPECT_NE(TemplateValue(TreePath, TEXT("Trunk"), TEXT("StaticMesh")).find("/Engine/BasicShapes/Cylinder.Cylinder"), std::string::npos);
	EXPECT_NE(TemplateValue(TreePath, TEXT("Crown"), TEXT("StaticMesh")).find("/Engine/BasicShapes/Sphere.Sphere"), std::string::npos);
	EXPECT_EQ(TemplateValue(TreePath, TEXT("Trunk"), TEXT("RelativeScale3D")), "(X=0.400000,Y=0.400000,Z=2.000000)");

	// Trunk 0..200 cm and crown 140..380 cm, 240 across; no editor sprite adds to the box.
	EXPECT_EQ(Box(Payload->GetObjectField(TEXT("local_bounds"))), "min -120 -120 0 / max 120 120 380");
	const TSharedPtr<FJsonObject> Actor = PlaceAt(TreePath, 1000.0, -500.0, 0.0);
	EXPECT_EQ(Box(Actor->GetObjectField(TEXT("bounds"))), ShiftedBox(Payload->GetObjectField(TEXT("local_bounds")), 1000.0, -500.0, 0.0));
	EXPECT_EQ(Location(PlacedComponent(Actor, TEXT("Crown"))->GetObjectField(TEXT("relative_transform"))), "0 0 260");

	// The ready call names the parameters editor_place_actor reads.
	const TSharedPtr<FJsonObject> Next = Payload->GetArrayField(TEXT("recommended_next_tools"))[0]->AsObject();
	EXPECT_EQ(S(Next->GetStringField(TEXT("tool"))), "editor_place_actor");
	EXPECT_EQ(S(Next->GetObjectField(TEXT("arguments"))->GetStringField(TEXT("BlueprintNameOrPath"))), S(TreePath));
	EXPECT_FALSE(FToolRunner::IsError(Call(TEXT("editor_place_actor"), Next->GetObjectField(TEXT("arguments")))));
}

TEST_F(FPrimitiveActorToolsTest, DummyTreeTakesTheProjectsBarkAndLeafMaterials)
{
	Ok(CallJson(TEXT("material_create"), R"({"PackagePath": "/Game/Nature", "AssetName": "M_OakBark"})"));
	Ok(CallJson(TEXT("material_create"), R"({"PackagePath": "/Game/Nature", "AssetName": "M_Leaves"})"));
	const TSharedPtr<FJsonObject> Payload = Ok(CallJson(TEXT("blueprint_create_primitive_actor"),
		R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Tree", "Preset": "DummyTree"})"));
	EXPECT_EQ(TemplateValue(TreePath, TEXT("Trunk"), TEXT("OverrideMaterials")), "(\"/Script/Engine.Material'/Game/Nature/M_OakBark.M_OakBark'\")");
	EXPECT_EQ(TemplateValue(TreePath, TEXT("Crown"), TEXT("OverrideMaterials")), "(\"/Script/Engine.Material'/Game/Nature/M_Leaves.M_Leaves'\")");
	EXPECT_EQ(S(Payload->GetArrayField(TEXT("parts"))[1]->AsObject()->GetStringField(TEXT("material_source"))), "override_slot_0");
}

TEST_F(FPrimitiveActorToolsTest, PartsChainTheirTransformsAndReadBackInEveryForm)
{
	// A base, an arm turned 90 degrees and stretched under it, and a ball at the arm's end; the
	// three transform forms (objects, arrays, flat keys) and a flat key winning over its object.
	const TSharedPtr<FJsonObject> Payload = Ok(CallJson(TEXT("blueprint_create_primitive_actor"), R"({
		"PackagePath": "/Game/Primitives", "AssetName": "BP_Rig",
		"Parts": [
			{"Name": "Ball", "Shape": "Sphere", "ParentName": "Arm", "Location": [100, 0, 0], "Scale": {"X": 0.5, "Y": 0.5, "Z": 0.5},
			 "MaterialPath": "/Engine/BasicShapes/BasicShapeMaterial"},
			{"Name": "Base", "Shape": "cube", "Location": {"X": 0, "Y": 0, "Z": 50}, "MaterialPath": "/Game/Materials/M_Rock"},
			{"Name": "Arm", "Shape": "Cylinder", "ParentName": "Base", "Rotation": {"Yaw": 90}, "Scale": [2, 0.2, 0.2],
			 "Location": {"X": 999, "Z": 60}, "LocationX": "0"}
		]})"));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("compile_status"))), "up_to_date");
	// Parents are added before their children.
	EXPECT_EQ(PartNames(Payload), (std::vector<std::string>{"Base", "Arm", "Ball"}));
	EXPECT_EQ(ComponentTree(RigPath), (std::vector<std::string>{"Root:SceneComponent<", "Base:StaticMeshComponent<Root", "Arm:StaticMeshComponent<Base",
		"Ball:StaticMeshComponent<Arm"}));
	EXPECT_EQ(TemplateValue(RigPath, TEXT("Arm"), TEXT("RelativeLocation")), "(X=0.000000,Y=0.000000,Z=60.000000)");
	EXPECT_EQ(TemplateValue(RigPath, TEXT("Arm"), TEXT("RelativeRotation")), "(Pitch=0.000000,Yaw=90.000000,Roll=0.000000)");
	EXPECT_EQ(TemplateValue(RigPath, TEXT("Base"), TEXT("OverrideMaterials")), "(\"/Script/Engine.Material'/Game/Materials/M_Rock.M_Rock'\")");
	// The basic shapes' own material loads like any other (unreal-behaviour-world-assets.md §2.4).
	EXPECT_EQ(TemplateValue(RigPath, TEXT("Ball"), TEXT("OverrideMaterials")), "(\"/Script/Engine.Material'/Engine/BasicShapes/BasicShapeMaterial.BasicShapeMaterial'\")");

	// The arm lies along Y (200 long, 20 thick, at Z 110). The ball inherits the arm's turn and
	// its stretched scale, as FTransform composes them: 100 along Y and 10 across, centred 200 out.
	EXPECT_EQ(Box(Payload->GetObjectField(TEXT("local_bounds"))), "min -50 -100 0 / max 50 250 120");
	const TSharedPtr<FJsonObject> Actor = PlaceAt(RigPath, 0.0, 0.0, 0.0);
	EXPECT_EQ(Box(Actor->GetObjectField(TEXT("bounds"))), Box(Payload->GetObjectField(TEXT("local_bounds"))));
	EXPECT_EQ(Vec(PlacedComponent(Actor, TEXT("Ball"))->GetObjectField(TEXT("world_transform"))->GetObjectField(TEXT("location"))), "0 200 110");
}

TEST_F(FPrimitiveActorToolsTest, EveryRefusalComesBeforeTheBlueprintExists)
{
	const struct
	{
		const char* Arguments;
		const char* Message;
	} Cases[] = {
		{R"({"PackagePath": "/Game/Primitives", "Parts": [{"Name": "A", "Shape": "Cube"}]})",
			"blueprint_create_primitive_actor requires PackagePath and AssetName."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused"})",
			"blueprint_create_primitive_actor requires Parts or a Preset (DummyTree or VisualActor)."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Preset": "Forest"})",
			"Unsupported Preset 'Forest'. Supported presets: DummyTree, VisualActor."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "A", "Shape": "Torus"}]})",
			"Part 'A': Unsupported Shape 'Torus'. Supported shapes: Cube, Sphere, Cylinder, Cone, Plane."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "Leg", "Shape": "Cube"}, {"Name": "leg", "Shape": "Cone"}]})",
			"Duplicate part name: leg"},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "A", "Shape": "Cube", "MaterialPath": "/Game/Materials/M_Missing"}]})",
			"Part 'A': Could not resolve Material asset: /Game/Materials/M_Missing"},
		// A texture is no material interface.
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "A", "Shape": "Cube", "MaterialPath": "/Game/Textures/T_M_Rock_D"}]})",
			"Part 'A': Could not resolve Material asset: /Game/Textures/T_M_Rock_D"},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "A", "Shape": "Cube", "ParentName": "Ghost"}]})",
			"Part 'A': parent part does not exist: Ghost"},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "A", "Shape": "Cube", "ParentName": "B"}, {"Name": "B", "Shape": "Cube", "ParentName": "A"}]})",
			"Part 'A': its parents form a cycle."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "A", "Shape": "Cube", "Scale": [1, 0, 1]}]})",
			"Part 'A': ScaleY must not be 0."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "A", "Shape": "Cube", "Location": {"X": "near"}}]})",
			"Part 'A': LocationX must be a number."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "A", "Shape": "Cube", "Rotation": [1, 2]}]})",
			"Part 'A': Rotation must be an object {Pitch, Yaw, Roll} or an array of three numbers."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "Root", "Shape": "Cube"}]})",
			"Part name 'Root' is taken by the actor's root component or graphs."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": [{"Name": "Two Words", "Shape": "Cube"}]})",
			"Part name 'Two Words' must start with a letter or underscore and hold only letters, digits and underscores (at most 64 characters)."},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "ParentClassPath": "/Script/Engine.StaticMeshComponent", "Preset": "VisualActor"})",
			"Parent class is not an Actor class: /Script/Engine.StaticMeshComponent"},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "ParentClassPath": "/Script/Engine.NoSuchActor", "Preset": "VisualActor"})",
			"Could not load parent class: /Script/Engine.NoSuchActor"},
		{R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Parts": {"Name": "A"}})",
			"Parts must be an array of part objects with Name, Shape, and optional Location, Rotation, Scale, MaterialPath and ParentName."},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(TextError(CallJson(TEXT("blueprint_create_primitive_actor"), Case.Arguments)), Case.Message) << Case.Arguments;
		ExpectNoAsset(RefusedPath);
	}

	// Too many parts, counted before any is read.
	TSharedPtr<FJsonObject> Args = ParseArguments(R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Refused", "Preset": "VisualActor"})");
	TArray<TSharedPtr<FJsonValue>> Parts;
	for (int32 Index = 0; Index < 128; ++Index)
	{
		Parts.Add(MakeShared<FJsonValueObject>(ParseArguments(R"({"Name": "P", "Shape": "Cube"})")));
	}
	Args->SetArrayField(TEXT("Parts"), Parts);
	EXPECT_EQ(TextError(Call(TEXT("blueprint_create_primitive_actor"), Args)), "Too many parts: 129 (at most 128).");
	ExpectNoAsset(RefusedPath);
}

TEST_F(FPrimitiveActorToolsTest, AnExistingAssetIsLeftAsItWas)
{
	Ok(CallJson(TEXT("blueprint_create"), R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Tree"})"));
	const std::vector<std::string> Before = ComponentTree(TreePath);
	EXPECT_EQ(TextError(CallJson(TEXT("blueprint_create_primitive_actor"), R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Tree", "Preset": "DummyTree"})")),
		"Blueprint asset already exists: /Game/Primitives/BP_Tree.BP_Tree");
	EXPECT_EQ(ComponentTree(TreePath), Before);
}

TEST_F(FPrimitiveActorToolsTest, WithoutCompileTheBlueprintIsLeftForBlueprintCompile)
{
	const TSharedPtr<FJsonObject> Payload = Ok(CallJson(TEXT("blueprint_create_primitive_actor"),
		R"({"PackagePath": "/Game/Primitives", "AssetName": "BP_Tree", "Preset": "VisualActor", "Compile": "false"})"));
	EXPECT_FALSE(Payload->GetBoolField(TEXT("compiled")));
	// Components are structural changes (unreal-behaviour-blueprints.md §4.2).
	EXPECT_EQ(ReadBlueprint(TreePath).Status, EZorvekMCPBridgeBlueprintStatus::Dirty);
}
