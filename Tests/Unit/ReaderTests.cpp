// The camera, StateTree and material readers on the sample project's assets (5.7 shapes) and on
// small inline projects for the older shapes and the limits.
#include "AssetTestSupport.h"
#include "Assets/ZorvekMCPBridgeAssetReaders.h"

using namespace ZorvekAssetTests;
using namespace ZorvekMCPBridgeAssets;

namespace
{
	class ReaderTest : public ::testing::Test
	{
	protected:
		TSharedPtr<FJsonObject> ReadCamera(const TCHAR* ObjectPath)
		{
			return ReadGameplayCameraAsset(*Port, FindObject(*Port, ObjectPath), Failures);
		}

		TSharedPtr<FJsonObject> ReadStateTree(const TCHAR* ObjectPath)
		{
			return ReadStateTreeAsset(*Port, FindObject(*Port, ObjectPath), Failures);
		}

		TSharedPtr<FJsonObject> ReadMaterial(const TCHAR* ObjectPath)
		{
			return ReadMaterialAsset(*Port, FindObject(*Port, ObjectPath), Failures);
		}

		void Set(const TCHAR* ObjectPath, const TCHAR* PropertyName, const TCHAR* Value)
		{
			FString Error;
			ASSERT_TRUE(Port->GetEditor().SetPropertyText(Port->GetEditor().FindObject(ObjectPath), PropertyName, Value, Error)) << S(Error);
		}

		TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
		TArray<TSharedPtr<FJsonValue>> Failures;
	};

	TSharedPtr<FJsonObject> Child(const TSharedPtr<FJsonObject>& Node, int32 Index)
	{
		return Node->GetArrayField(TEXT("children"))[Index]->AsObject();
	}
}

TEST_F(ReaderTest, AssetsOutsideAFamilyAreNotRecognized)
{
	const TCHAR* const Texture = TEXT("/Game/Textures/T_M_Rock_D.T_M_Rock_D");
	const TSharedPtr<FJsonObject> Camera = ReadCamera(Texture);
	const TSharedPtr<FJsonObject> StateTree = ReadStateTree(Texture);
	const TSharedPtr<FJsonObject> Material = ReadMaterial(Texture);
	EXPECT_FALSE(Camera->GetBoolField(TEXT("recognized")));
	EXPECT_FALSE(StateTree->GetBoolField(TEXT("recognized")));
	EXPECT_FALSE(Material->GetBoolField(TEXT("recognized")));
	EXPECT_EQ(S(Camera->GetStringField(TEXT("asset_kind"))), "unknown");
	EXPECT_EQ(S(Material->GetStringField(TEXT("asset_kind"))), "unknown");
	EXPECT_FALSE(Camera->HasField(TEXT("object_graph")));
	EXPECT_FALSE(StateTree->HasField(TEXT("runtime")));
	EXPECT_TRUE(Failures.IsEmpty());
}

TEST_F(ReaderTest, CameraAssetFindsItsRigThroughTheDirector)
{
	const TSharedPtr<FJsonObject> Camera = ReadCamera(TEXT("/Game/Cameras/CA_Hero.CA_Hero"));
	EXPECT_TRUE(Camera->GetBoolField(TEXT("recognized")));
	EXPECT_EQ(S(Camera->GetStringField(TEXT("asset_kind"))), "camera_asset");

	const TSharedPtr<FJsonObject> Director = Camera->GetObjectField(TEXT("camera_director"));
	EXPECT_EQ(S(Director->GetStringField(TEXT("object_path"))), "/Game/Cameras/CA_Hero.CA_Hero:SingleCameraDirector");
	EXPECT_EQ(S(Director->GetStringField(TEXT("role"))), "camera_director");
	EXPECT_TRUE(Director->GetBoolField(TEXT("is_gameplay_camera_object")));

	// 5.7 assets have no rig list of their own; the single director's rig stands in.
	EXPECT_EQ(S(Camera->GetStringField(TEXT("camera_rigs_source"))), "CameraDirector");
	EXPECT_EQ(Camera->GetIntegerField(TEXT("camera_rigs_count")), 1);
	const TSharedPtr<FJsonObject> Rig = Camera->GetArrayField(TEXT("camera_rigs"))[0]->AsObject();
	EXPECT_EQ(S(Rig->GetStringField(TEXT("object_path"))), "/Game/Cameras/CR_Hero.CR_Hero");
	EXPECT_EQ(S(Rig->GetStringField(TEXT("role"))), "camera_rig");

	EXPECT_EQ(Camera->GetIntegerField(TEXT("enter_transitions_count")), 1);
	EXPECT_EQ(Camera->GetIntegerField(TEXT("exit_transitions_count")), 0);
	EXPECT_EQ(Camera->GetIntegerField(TEXT("shared_transition_objects_count")), 1);
}

TEST_F(ReaderTest, CameraGraphListsEachObjectOnceAndMarksEverySecondVisit)
{
	const TSharedPtr<FJsonObject> Graph = ReadCamera(TEXT("/Game/Cameras/CA_Hero.CA_Hero"))->GetObjectField(TEXT("object_graph"));
	std::vector<std::string> Flat;
	FlattenCameraGraph(Graph, Flat);
	// The shared transition, the rig's node list and the interface parameters' targets merge
	// into objects already listed; the parameters themselves are reached inside the rig's
	// Interface struct. The deprecated rig list and the transient build status are not walked.
	EXPECT_EQ(Flat, (std::vector<std::string>{
		"asset:CA_Hero",
		"CameraDirector:SingleCameraDirector",
		"CameraRig:CR_Hero",
		"RootNode:RootArrayNode",
		"Children[0]:BoomOffset",
		"Children[1]:HeroLens",
		"AllNodeTreeObjects[0]:RootArrayNode (cycle)",
		"AllNodeTreeObjects[1]:BoomOffset (cycle)",
		"AllNodeTreeObjects[2]:HeroLens (cycle)",
		"Interface.BlendableParameters[0]:DistanceParameter",
		"Target:BoomOffset (cycle)",
		"Interface.DataParameters[0]:TargetActorParameter",
		"Target:RootArrayNode (cycle)",
		"EnterTransitions[0]:BlendIn",
		"AllSharedTransitionsObjects[0]:BlendIn (cycle)"}));

	EXPECT_EQ(Graph->GetIntegerField(TEXT("depth")), 0);
	EXPECT_EQ(Graph->GetIntegerField(TEXT("child_count")), 3);
	const TSharedPtr<FJsonObject> Lens = Child(Child(Child(Child(Graph, 0), 0), 0), 1);
	EXPECT_EQ(Lens->GetIntegerField(TEXT("depth")), 4);
	EXPECT_EQ(S(Lens->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("FieldOfView"))->GetStringField(TEXT("value"))), "75.000000");
	const TSharedPtr<FJsonObject> Cycle = Child(Child(Child(Graph, 0), 0), 1);
	EXPECT_TRUE(Cycle->GetBoolField(TEXT("cycle")));
	EXPECT_FALSE(Cycle->HasField(TEXT("depth")));
	EXPECT_FALSE(Cycle->HasField(TEXT("properties")));
}

TEST_F(ReaderTest, CameraRigListsBothKindsOfInterfaceParameters)
{
	const TSharedPtr<FJsonObject> Rig = ReadCamera(TEXT("/Game/Cameras/CR_Hero.CR_Hero"));
	EXPECT_EQ(S(Rig->GetStringField(TEXT("asset_kind"))), "camera_rig_asset");
	EXPECT_EQ(S(Rig->GetObjectField(TEXT("root_node"))->GetStringField(TEXT("name"))), "RootArrayNode");
	EXPECT_EQ(S(Rig->GetStringField(TEXT("interface_parameters_source"))), "Interface.BlendableParameters+Interface.DataParameters");
	EXPECT_EQ(ToStd(Collect(Rig->GetArrayField(TEXT("interface_parameters")), TEXT("name"))), (std::vector<std::string>{"DistanceParameter", "TargetActorParameter"}));
	EXPECT_EQ(ToStd(Collect(Rig->GetArrayField(TEXT("interface_parameters")), TEXT("role"))), (std::vector<std::string>{"interface_parameter", "interface_parameter"}));
	EXPECT_EQ(Rig->GetIntegerField(TEXT("node_tree_objects_count")), 3);
	EXPECT_EQ(Rig->GetIntegerField(TEXT("transition_objects_count")), 0);
	EXPECT_EQ(S(ReadCamera(TEXT("/Game/Cameras/CV_HeroVariables.CV_HeroVariables"))->GetStringField(TEXT("asset_kind"))), "camera_variable_collection");
	EXPECT_EQ(S(ReadCamera(TEXT("/Game/Cameras/CR_Hero.CR_Hero:HeroLens"))->GetStringField(TEXT("asset_kind"))), "gameplay_camera_object");
}

TEST(CameraReader, OlderShapesAreReadByTheirOwnNamesAndMergedNodesAreCycles)
{
	// Before 5.5 the asset listed its rigs and a rig's interface held one parameter list. Two
	// rigs here share one root node.
	const TSharedPtr<FSimulatedEditorPort> Port = LoadInlineProject(TEXT(
		"\"structs\": [{\"path\": \"/Script/GameplayCameras.CameraRigInterface\", \"properties\": [{\"name\": \"InterfaceParameters\", \"type\": \"array:object:/Script/GameplayCameras.CameraRigInterfaceParameter\"}]}],"
		"\"classes\": ["
		"{\"path\": \"/Script/GameplayCameras.CameraNode\"},"
		"{\"path\": \"/Script/GameplayCameras.CameraRigInterfaceParameter\", \"properties\": [{\"name\": \"InterfaceParameterName\", \"type\": \"FString\"}]},"
		"{\"path\": \"/Script/GameplayCameras.CameraRigAsset\", \"properties\": [{\"name\": \"RootNode\", \"type\": \"object:/Script/GameplayCameras.CameraNode\"},"
		"  {\"name\": \"Interface\", \"type\": \"struct:/Script/GameplayCameras.CameraRigInterface\"}]},"
		"{\"path\": \"/Script/GameplayCameras.CameraAsset\", \"properties\": [{\"name\": \"CameraRigs\", \"type\": \"array:object:/Script/GameplayCameras.CameraRigAsset\"}]}],"
		"\"assets\": ["
		"{\"package\": \"/Game/RigA\", \"class\": \"/Script/GameplayCameras.CameraRigAsset\", \"values\": {\"RootNode\": \"/Game/RigA.RigA:Shared\", \"Interface\": \"(InterfaceParameters=(/Game/RigA.RigA:Distance))\"},"
		"  \"subobjects\": [{\"name\": \"Shared\", \"class\": \"/Script/GameplayCameras.CameraNode\"}, {\"name\": \"Distance\", \"class\": \"/Script/GameplayCameras.CameraRigInterfaceParameter\"}]},"
		"{\"package\": \"/Game/RigB\", \"class\": \"/Script/GameplayCameras.CameraRigAsset\", \"values\": {\"RootNode\": \"/Game/RigA.RigA:Shared\"}},"
		"{\"package\": \"/Game/Cam\", \"class\": \"/Script/GameplayCameras.CameraAsset\", \"values\": {\"CameraRigs\": \"(/Game/RigA.RigA,/Game/RigB.RigB,None)\"}}]"),
		nullptr, false);
	ASSERT_TRUE(Port.IsValid());
	TArray<TSharedPtr<FJsonValue>> Failures;
	const TSharedPtr<FJsonObject> Camera = ReadGameplayCameraAsset(*Port, FindObject(*Port, TEXT("/Game/Cam.Cam")), Failures);
	EXPECT_EQ(S(Camera->GetStringField(TEXT("camera_rigs_source"))), "CameraRigs");
	EXPECT_EQ(Camera->GetIntegerField(TEXT("camera_rigs_count")), 3);
	// The null element is a node of nothing: its role, no identity.
	const TSharedPtr<FJsonObject> Nothing = Camera->GetArrayField(TEXT("camera_rigs"))[2]->AsObject();
	EXPECT_FALSE(Nothing->HasField(TEXT("object_path")));
	EXPECT_FALSE(Nothing->GetBoolField(TEXT("is_gameplay_camera_object")));
	// No director property: a director node of nothing.
	EXPECT_FALSE(Camera->GetObjectField(TEXT("camera_director"))->HasField(TEXT("name")));

	std::vector<std::string> Flat;
	FlattenCameraGraph(Camera->GetObjectField(TEXT("object_graph")), Flat);
	EXPECT_EQ(Flat, (std::vector<std::string>{"asset:Cam", "CameraRigs[0]:RigA", "RootNode:Shared", "Interface.InterfaceParameters[0]:Distance", "CameraRigs[1]:RigB", "RootNode:Shared (cycle)"}));

	const TSharedPtr<FJsonObject> Rig = ReadGameplayCameraAsset(*Port, FindObject(*Port, TEXT("/Game/RigA.RigA")), Failures);
	EXPECT_EQ(S(Rig->GetStringField(TEXT("interface_parameters_source"))), "Interface.InterfaceParameters");
	EXPECT_EQ(ToStd(Collect(Rig->GetArrayField(TEXT("interface_parameters")), TEXT("name"))), (std::vector<std::string>{"Distance"}));
	// Missing arrays are empty, not errors.
	EXPECT_EQ(Rig->GetIntegerField(TEXT("enter_transitions_count")), 0);
	EXPECT_EQ(Rig->GetIntegerField(TEXT("node_tree_objects_count")), 0);
}

TEST(CameraReader, GraphFollowsNoReferencesFromDepthSix)
{
	FString Nodes;
	for (int32 Index = 0; Index < 9; ++Index)
	{
		Nodes += FString::Printf(TEXT("%s{\"name\": \"N%d\", \"class\": \"/Script/GameplayCameras.ArrayCameraNode\", \"values\": {\"Children\": \"(%s)\"}}"),
			Index ? TEXT(",") : TEXT(""), Index, Index < 8 ? *FString::Printf(TEXT("/Game/Deep.Deep:N%d"), Index + 1) : TEXT(""));
	}
	const TSharedPtr<FSimulatedEditorPort> Port = LoadInlineProject(FString::Printf(TEXT(
		"\"assets\": [{\"package\": \"/Game/Deep\", \"class\": \"/Script/GameplayCameras.CameraRigAsset\", \"values\": {\"RootNode\": \"/Game/Deep.Deep:N0\"}, \"subobjects\": [%s]}]"), *Nodes));
	ASSERT_TRUE(Port.IsValid());
	TArray<TSharedPtr<FJsonValue>> Failures;
	TSharedPtr<FJsonObject> Node = ReadGameplayCameraAsset(*Port, FindObject(*Port, TEXT("/Game/Deep.Deep")), Failures)->GetObjectField(TEXT("object_graph"));
	for (int32 Depth = 0; Depth < 6; ++Depth)
	{
		ASSERT_EQ(Node->GetIntegerField(TEXT("child_count")), 1) << Depth;
		Node = Child(Node, 0);
	}
	EXPECT_EQ(Node->GetIntegerField(TEXT("depth")), 6);
	EXPECT_EQ(S(Node->GetStringField(TEXT("name"))), "N5");
	EXPECT_EQ(Node->GetIntegerField(TEXT("child_count")), 0);
	EXPECT_TRUE(Node->HasField(TEXT("properties")));
}

TEST_F(ReaderTest, StateTreeWalksEditorStatesAndCountsCompiledData)
{
	const TSharedPtr<FJsonObject> Tree = ReadStateTree(TEXT("/Game/AI/ST_Director.ST_Director"));
	EXPECT_TRUE(Tree->GetBoolField(TEXT("recognized")));
	EXPECT_TRUE(Tree->GetBoolField(TEXT("is_state_tree_asset")));
	EXPECT_EQ(S(Tree->GetObjectField(TEXT("asset"))->GetStringField(TEXT("class_path"))), "/Script/StateTreeModule.StateTree");
	EXPECT_EQ(S(Tree->GetObjectField(TEXT("editor_data"))->GetStringField(TEXT("class_name"))), "StateTreeEditorData");

	EXPECT_EQ(Tree->GetIntegerField(TEXT("evaluators_count")), 1);
	const TSharedPtr<FJsonObject> Evaluator = Tree->GetArrayField(TEXT("evaluators"))[0]->AsObject();
	EXPECT_EQ(Evaluator->GetIntegerField(TEXT("index")), 0);
	EXPECT_EQ(S(Evaluator->GetStringField(TEXT("struct_name"))), "StateTreeEditorNode");
	EXPECT_EQ(Tree->GetIntegerField(TEXT("global_tasks_count")), 0);

	ASSERT_EQ(Tree->GetIntegerField(TEXT("states_count")), 1);
	const TSharedPtr<FJsonObject> Root = Tree->GetArrayField(TEXT("states"))[0]->AsObject();
	EXPECT_EQ(S(Root->GetStringField(TEXT("state_name"))), "Root");
	EXPECT_EQ(S(Root->GetStringField(TEXT("state_type"))), "State");
	EXPECT_EQ(S(Root->GetStringField(TEXT("enabled"))), "True");
	EXPECT_EQ(Root->GetIntegerField(TEXT("depth")), 0);
	EXPECT_EQ(Root->GetIntegerField(TEXT("tasks_count")), 1);
	EXPECT_EQ(Root->GetIntegerField(TEXT("enter_conditions_count")), 0);
	ASSERT_EQ(Root->GetIntegerField(TEXT("transition_count")), 1);
	const TSharedPtr<FJsonObject> Transition = Root->GetArrayField(TEXT("transitions"))[0]->AsObject();
	EXPECT_EQ(S(Transition->GetStringField(TEXT("trigger"))), "OnStateCompleted");
	EXPECT_EQ(S(Transition->GetStringField(TEXT("target"))), "(Name=\"InspectCamera\",ID=5A0E003F0000103F0000203F0000303F,LinkType=GotoState)");
	EXPECT_EQ(Transition->GetIntegerField(TEXT("condition_count")), 1);

	ASSERT_EQ(Root->GetIntegerField(TEXT("child_count")), 1);
	const TSharedPtr<FJsonObject> Inspect = Child(Root, 0);
	EXPECT_EQ(S(Inspect->GetStringField(TEXT("state_name"))), "InspectCamera");
	EXPECT_EQ(Inspect->GetIntegerField(TEXT("depth")), 1);
	EXPECT_EQ(Inspect->GetIntegerField(TEXT("index")), 0);
	EXPECT_EQ(Inspect->GetIntegerField(TEXT("enter_conditions_count")), 1);
	EXPECT_EQ(S(Inspect->GetArrayField(TEXT("transitions"))[0]->AsObject()->GetStringField(TEXT("trigger"))), "OnStateSucceeded");

	const TSharedPtr<FJsonObject> Runtime = Tree->GetObjectField(TEXT("runtime"));
	EXPECT_EQ(Runtime->GetIntegerField(TEXT("compiled_state_count")), 2);
	EXPECT_EQ(Runtime->GetIntegerField(TEXT("compiled_transition_count")), 1);
	EXPECT_EQ(Runtime->GetIntegerField(TEXT("compiled_evaluator_count")), 1);
	EXPECT_EQ(Runtime->GetIntegerField(TEXT("compiled_global_task_count")), 0);
}

TEST_F(ReaderTest, StateTreeWithoutEditorDataStillCountsAndLoopsStopAtRevisits)
{
	const TSharedPtr<FJsonObject> Cooked = ReadStateTree(TEXT("/Game/AI/ST_Cooked.ST_Cooked"));
	EXPECT_EQ(S(Cooked->GetStringField(TEXT("editor_data_status"))), "not_available");
	EXPECT_FALSE(Cooked->HasField(TEXT("states")));
	const TSharedPtr<FJsonObject> Runtime = Cooked->GetObjectField(TEXT("runtime"));
	EXPECT_EQ(Runtime->GetIntegerField(TEXT("compiled_state_count")), 3);
	EXPECT_EQ(Runtime->GetIntegerField(TEXT("compiled_transition_count")), 2);
	EXPECT_EQ(Runtime->GetIntegerField(TEXT("compiled_global_task_count")), 2);

	// A child that lists its parent again: the walk ends there instead of looping.
	const TCHAR* const RootState = TEXT("/Game/AI/ST_Director.ST_Director:EditorData.RootState");
	Set(TEXT("/Game/AI/ST_Director.ST_Director:EditorData.RootState.InspectCameraState"), TEXT("Children"), *(FString(TEXT("(")) + RootState + TEXT(")")));
	const TSharedPtr<FJsonObject> Root = ReadStateTree(TEXT("/Game/AI/ST_Director.ST_Director"))->GetArrayField(TEXT("states"))[0]->AsObject();
	const TSharedPtr<FJsonObject> Loop = Child(Child(Root, 0), 0);
	EXPECT_TRUE(Loop->GetBoolField(TEXT("cycle")));
	EXPECT_EQ(Loop->GetIntegerField(TEXT("depth")), 2);
	EXPECT_FALSE(Loop->HasField(TEXT("state_name")));
}

TEST_F(ReaderTest, MaterialListsRootInputsInOrderWithUnconnectedOnes)
{
	const TSharedPtr<FJsonObject> Material = ReadMaterial(TEXT("/Game/Materials/M_Rock.M_Rock"));
	EXPECT_TRUE(Material->GetBoolField(TEXT("recognized")));
	EXPECT_EQ(S(Material->GetStringField(TEXT("asset_kind"))), "material");
	EXPECT_EQ(S(Material->GetStringField(TEXT("material_domain"))), "MD_Surface");
	EXPECT_EQ(S(Material->GetStringField(TEXT("blend_mode"))), "BLEND_Opaque");
	EXPECT_FALSE(Material->GetBoolField(TEXT("two_sided")));

	const TArray<TSharedPtr<FJsonValue>>& Roots = Material->GetArrayField(TEXT("root_inputs"));
	EXPECT_EQ(ToStd(Collect(Roots, TEXT("input_name"))), (std::vector<std::string>{"BaseColor", "Metallic", "Specular", "Roughness", "EmissiveColor", "Opacity", "Normal", "MaterialAttributes"}));
	EXPECT_EQ(Material->GetIntegerField(TEXT("root_input_count")), 8);
	const TSharedPtr<FJsonObject> BaseColor = Roots[0]->AsObject();
	EXPECT_TRUE(BaseColor->GetBoolField(TEXT("connected")));
	EXPECT_EQ(S(BaseColor->GetStringField(TEXT("root_property"))), "BaseColor");
	EXPECT_EQ(S(BaseColor->GetStringField(TEXT("target"))), "material_root");
	EXPECT_EQ(S(BaseColor->GetStringField(TEXT("source_node_title"))), "Multiply");
	EXPECT_EQ(S(BaseColor->GetStringField(TEXT("source_node_class"))), "MaterialExpressionMultiply");
	EXPECT_EQ(S(BaseColor->GetStringField(TEXT("source_node_guid"))), "5A0E000400001004000020040000300" "4");
	const TSharedPtr<FJsonObject> Normal = Roots[6]->AsObject();
	EXPECT_FALSE(Normal->GetBoolField(TEXT("connected")));
	EXPECT_FALSE(Normal->HasField(TEXT("source_node_guid")));
	EXPECT_FALSE(Normal->HasField(TEXT("source_node_title")));
	EXPECT_EQ(S(Normal->GetStringField(TEXT("raw_input_name"))), "None");

	// Two root wires, and the three wires between expressions.
	EXPECT_EQ(Material->GetIntegerField(TEXT("connection_count")), 5);
	EXPECT_EQ(Material->GetIntegerField(TEXT("comment_count")), 1);
	const TSharedPtr<FJsonObject> Comment = Material->GetArrayField(TEXT("comments"))[0]->AsObject();
	EXPECT_EQ(S(Comment->GetStringField(TEXT("node_kind"))), "comment");
	EXPECT_EQ(S(Comment->GetStringField(TEXT("node_title"))), "Rock surface");
	EXPECT_EQ(Comment->GetIntegerField(TEXT("width")), 900);
}

TEST_F(ReaderTest, MaterialExpressionNodesCarryInputsOutputsAndTextures)
{
	const TSharedPtr<FJsonObject> Material = ReadMaterial(TEXT("/Game/Materials/M_Rock.M_Rock"));
	const TArray<TSharedPtr<FJsonValue>>& Expressions = Material->GetArrayField(TEXT("expressions"));
	EXPECT_EQ(ToStd(Collect(Expressions, TEXT("expression_class"))), (std::vector<std::string>{"MaterialExpressionTextureSampleParameter2D", "MaterialExpressionTextureCoordinate",
		"MaterialExpressionVectorParameter", "MaterialExpressionMultiply", "MaterialExpressionScalarParameter", "MaterialExpressionScalarParameter"}));

	const TSharedPtr<FJsonObject> Texture = Expressions[0]->AsObject();
	EXPECT_EQ(S(Texture->GetStringField(TEXT("node_kind"))), "material_expression");
	EXPECT_EQ(S(Texture->GetStringField(TEXT("node_title"))), "'RockTexture'\nParam2D");
	EXPECT_EQ(S(Texture->GetStringField(TEXT("description"))), "Albedo of the rock");
	EXPECT_EQ(Texture->GetIntegerField(TEXT("node_pos_x")), -800);
	EXPECT_TRUE(Texture->GetBoolField(TEXT("is_parameter")));
	EXPECT_EQ(S(Texture->GetStringField(TEXT("parameter_name"))), "RockTexture");
	EXPECT_EQ(ToStd(Collect(Texture->GetArrayField(TEXT("outputs")), TEXT("output_name"))), (std::vector<std::string>{"RGB", "R", "G", "B", "A", "RGBA"}));
	const TSharedPtr<FJsonObject> Alpha = Texture->GetArrayField(TEXT("outputs"))[4]->AsObject();
	EXPECT_EQ(Alpha->GetIntegerField(TEXT("output_index")), 4);
	EXPECT_EQ(Alpha->GetIntegerField(TEXT("mask_a")), 1);
	EXPECT_EQ(Alpha->GetIntegerField(TEXT("mask_r")), 0);

	const TArray<TSharedPtr<FJsonValue>>& Inputs = Texture->GetArrayField(TEXT("inputs"));
	EXPECT_EQ(ToStd(Collect(Inputs, TEXT("input_name"))), (std::vector<std::string>{"Coordinates", "TextureObject", "MipValue"}));
	EXPECT_EQ(Inputs[0]->AsObject()->GetIntegerField(TEXT("input_index")), 0);
	EXPECT_EQ(S(Inputs[0]->AsObject()->GetStringField(TEXT("source_node_title"))), "TexCoord[0]");
	EXPECT_FALSE(Inputs[1]->AsObject()->GetBoolField(TEXT("connected")));

	ASSERT_EQ(Texture->GetIntegerField(TEXT("referenced_texture_count")), 1);
	EXPECT_EQ(S(Texture->GetArrayField(TEXT("referenced_textures"))[0]->AsObject()->GetStringField(TEXT("object_path"))), "/Game/Textures/T_M_Rock_D.T_M_Rock_D");
	EXPECT_EQ(S(Texture->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("ParameterName"))->GetStringField(TEXT("value"))), "RockTexture");
	EXPECT_EQ(Texture->GetArrayField(TEXT("references")).Num(), 1);
	EXPECT_TRUE(Texture->GetArrayField(TEXT("partial_failures")).IsEmpty());

	// The multiply's A input uses the texture's first output with its mask.
	const TSharedPtr<FJsonObject> MultiplyA = Expressions[3]->AsObject()->GetArrayField(TEXT("inputs"))[0]->AsObject();
	EXPECT_EQ(S(MultiplyA->GetStringField(TEXT("source_node_class"))), "MaterialExpressionTextureSampleParameter2D");
	EXPECT_EQ(MultiplyA->GetIntegerField(TEXT("mask")), 1);
	EXPECT_EQ(MultiplyA->GetIntegerField(TEXT("mask_b")), 1);
	EXPECT_FALSE(Expressions[3]->AsObject()->GetBoolField(TEXT("is_parameter")));
	// "Param (%.4g)" under the parameter's name (unreal-behaviour-world-assets.md §5.2).
	EXPECT_EQ(S(Expressions[4]->AsObject()->GetStringField(TEXT("node_title"))), "'Roughness'\nParam (0.6)");
	EXPECT_FALSE(Expressions[3]->AsObject()->HasField(TEXT("parameter_name")));
}

TEST_F(ReaderTest, MaterialInstanceMarksWhatItOverrides)
{
	const TSharedPtr<FJsonObject> Instance = ReadMaterial(TEXT("/Game/Materials/MI_Rock_Wet.MI_Rock_Wet"));
	EXPECT_EQ(S(Instance->GetStringField(TEXT("asset_kind"))), "material_instance_constant");
	EXPECT_EQ(S(Instance->GetObjectField(TEXT("parent"))->GetStringField(TEXT("name"))), "M_Rock");
	EXPECT_FALSE(Instance->HasField(TEXT("root_inputs")));

	// Roughness differs from the parent's default; Wetness repeats it; Puddles has no parameter
	// in the parent to fall back on.
	const TArray<TSharedPtr<FJsonValue>>& Scalars = Instance->GetArrayField(TEXT("scalar_parameters"));
	ASSERT_EQ(Scalars.Num(), 3);
	std::vector<bool> Overridden;
	for (const TSharedPtr<FJsonValue>& Scalar : Scalars)
	{
		EXPECT_EQ(S(Scalar->AsObject()->GetStringField(TEXT("parameter_kind"))), "scalar");
		Overridden.push_back(Scalar->AsObject()->GetBoolField(TEXT("overridden")));
	}
	EXPECT_EQ(Overridden, (std::vector<bool>{true, false, true}));
	EXPECT_EQ(S(Scalars[0]->AsObject()->GetStringField(TEXT("parent_value"))), "0.600000");
	EXPECT_FALSE(Scalars[2]->AsObject()->HasField(TEXT("parent_value")));
	EXPECT_EQ(S(Scalars[0]->AsObject()->GetStringField(TEXT("struct_name"))), "ScalarParameterValue");

	const TSharedPtr<FJsonObject> Tint = Instance->GetArrayField(TEXT("vector_parameters"))[0]->AsObject();
	EXPECT_EQ(S(Tint->GetStringField(TEXT("parameter_kind"))), "vector");
	EXPECT_FALSE(Tint->GetBoolField(TEXT("overridden")));
	const TSharedPtr<FJsonObject> Texture = Instance->GetArrayField(TEXT("texture_parameters"))[0]->AsObject();
	EXPECT_TRUE(Texture->GetBoolField(TEXT("overridden")));
	EXPECT_EQ(S(Texture->GetStringField(TEXT("parent_value"))), "/Script/Engine.Texture2D'/Game/Textures/T_M_Rock_D.T_M_Rock_D'");
	EXPECT_EQ(Instance->GetIntegerField(TEXT("font_parameters_count")), 0);
}

TEST_F(ReaderTest, InstanceWithoutOverridesHasSixEmptyArraysAndChainsCompareWithTheNearestParent)
{
	const TSharedPtr<FJsonObject> Plain = ReadMaterial(TEXT("/Game/Materials/MI_Rock_Plain.MI_Rock_Plain"));
	for (const TCHAR* Key : {TEXT("scalar_parameters"), TEXT("vector_parameters"), TEXT("texture_parameters"), TEXT("runtime_virtual_texture_parameters"),
			 TEXT("sparse_volume_texture_parameters"), TEXT("font_parameters")})
	{
		EXPECT_TRUE(Plain->GetArrayField(Key).IsEmpty()) << S(Key);
		EXPECT_EQ(Plain->GetIntegerField(FString(Key) + TEXT("_count")), 0) << S(Key);
	}

	// Parented to the wet instance, the same roughness is inherited rather than overridden.
	Set(TEXT("/Game/Materials/MI_Rock_Plain.MI_Rock_Plain"), TEXT("Parent"), TEXT("/Game/Materials/MI_Rock_Wet.MI_Rock_Wet"));
	Set(TEXT("/Game/Materials/MI_Rock_Plain.MI_Rock_Plain"), TEXT("ScalarParameterValues"), TEXT("((ParameterInfo=(Name=\"Roughness\"),ParameterValue=0.2),(ParameterInfo=(Name=\"RoughNESS2\"),ParameterValue=0.6))"));
	const TArray<TSharedPtr<FJsonValue>> Scalars = ReadMaterial(TEXT("/Game/Materials/MI_Rock_Plain.MI_Rock_Plain"))->GetArrayField(TEXT("scalar_parameters"));
	EXPECT_FALSE(Scalars[0]->AsObject()->GetBoolField(TEXT("overridden")));
	EXPECT_TRUE(Scalars[1]->AsObject()->GetBoolField(TEXT("overridden")));
}

TEST(MaterialReader, TitlesAreTheCaptionsTheMaterialEditorFormats)
{
	// unreal-behaviour-world-assets.md §5.2: printf numbers in the captions ("Param (%.4g)",
	// "Param (%.3g,%.3g,%.3g,%.3g)", "TexCoord[%i]", "Time (Period of %.2f)"), flag-dependent
	// pieces ("Mask ( R G )"), no constants on math nodes; the title is the lines last first.
	struct FNode
	{
		const TCHAR* Name;
		const TCHAR* Class;
		const TCHAR* Values;
		const char* Title;
	};
	const FNode Nodes[] = {
		{TEXT("Scalar"), TEXT("ScalarParameter"), TEXT("\"ParameterName\": \"Gloss\", \"DefaultValue\": \"12346\""), "'Gloss'\nParam (1.235e+04)"},
		{TEXT("Half"), TEXT("ScalarParameter"), TEXT("\"DefaultValue\": \"0.5\""), "'Param'\nParam (0.5)"},
		{TEXT("Primitive"), TEXT("ScalarParameter"), TEXT("\"ParameterName\": \"Dirt\", \"bUseCustomPrimitiveData\": \"True\", \"PrimitiveDataIndex\": \"2\""),
			"'Dirt'\nCustom Primitive Data\nIndex 2"},
		{TEXT("Tint"), TEXT("VectorParameter"), TEXT("\"ParameterName\": \"Tint\", \"DefaultValue\": \"(R=1.0,G=0.25,B=0.0,A=1.0)\""), "'Tint'\nParam (1,0.25,0,1)"},
		{TEXT("Coords"), TEXT("TextureCoordinate"), TEXT("\"CoordinateIndex\": \"1\""), "TexCoord[1]"},
		{TEXT("Clock"), TEXT("Time"), TEXT("\"Period\": \"2.5\""), "Time"},
		{TEXT("Stopped"), TEXT("Time"), TEXT("\"bOverride_Period\": \"True\""), "Time (Stopped)"},
		{TEXT("Periodic"), TEXT("Time"), TEXT("\"bOverride_Period\": \"True\", \"Period\": \"2.5\""), "Time (Period of 2.50)"},
		{TEXT("Mask"), TEXT("ComponentMask"), TEXT("\"R\": \"True\", \"G\": \"True\""), "Mask ( R G )"},
		{TEXT("NoMask"), TEXT("ComponentMask"), TEXT("\"A\": \"False\""), "Mask ( )"},
		{TEXT("Switch"), TEXT("StaticSwitchParameter"), TEXT("\"ParameterName\": \"Wet\", \"DefaultValue\": \"True\""), "'Wet'\nSwitch Param (True)"},
		{TEXT("Scale"), TEXT("Multiply"), TEXT("\"ConstA\": \"3.0\""), "Multiply"}};
	FString Subobjects;
	FString Expressions;
	for (const FNode& Node : Nodes)
	{
		Subobjects += FString::Printf(TEXT(", {\"name\": \"%s\", \"class\": \"/Script/Engine.MaterialExpression%s\", \"values\": {%s}}"), Node.Name, Node.Class, Node.Values);
		Expressions += FString::Printf(TEXT("%s/Game/M_Captions.M_Captions:%s"), Expressions.IsEmpty() ? TEXT("") : TEXT(","), Node.Name);
	}
	const TSharedPtr<FSimulatedEditorPort> Port = LoadInlineProject(FString::Printf(TEXT(
		"\"assets\": [{\"package\": \"/Game/M_Captions\", \"class\": \"/Script/Engine.Material\", \"values\": {\"EditorOnlyData\": \"/Game/M_Captions.M_Captions:EditorOnlyData\"},"
		"\"subobjects\": [{\"name\": \"EditorOnlyData\", \"class\": \"/Script/Engine.MaterialEditorOnlyData\", \"values\": {\"ExpressionCollection\": \"(Expressions=(%s))\"}}%s]}]"),
		*Expressions, *Subobjects));
	ASSERT_TRUE(Port.IsValid());
	TArray<TSharedPtr<FJsonValue>> Failures;
	const TArray<TSharedPtr<FJsonValue>> Read = ReadMaterialAsset(*Port, FindObject(*Port, TEXT("/Game/M_Captions.M_Captions")), Failures)->GetArrayField(TEXT("expressions"));
	ASSERT_EQ(Read.Num(), (int32)UE_ARRAY_COUNT(Nodes));
	for (int32 Index = 0; Index < Read.Num(); ++Index)
	{
		EXPECT_EQ(S(Read[Index]->AsObject()->GetStringField(TEXT("node_title"))), Nodes[Index].Title) << S(Nodes[Index].Name);
	}
}
