// The material authoring tools as a client calls them: class discovery and resolution, a blank
// material, expressions added, edited and wired by GUID, and the readback that shows the graph.
#include "AssetTestSupport.h"
#include "ZorvekTestSupport.h"

using namespace ZorvekAssetTests;

namespace
{
	const TCHAR* const RockMaterial = TEXT("/Game/Materials/M_Rock");

	class MaterialAuthoringTest : public ::testing::Test
	{
	protected:
		TSharedPtr<FJsonObject> Succeed(const TCHAR* Tool, const TSharedPtr<FJsonObject>& Args)
		{
			const TSharedPtr<FJsonObject> Result = Runner.Call(Tool, Args);
			EXPECT_FALSE(FToolRunner::IsError(Result)) << S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
			return FToolRunner::Payload(Result);
		}

		// The message of a failed call (a text result without structured content).
		std::string FailWith(const TCHAR* Tool, const TSharedPtr<FJsonObject>& Args)
		{
			const TSharedPtr<FJsonObject> Result = Runner.Call(Tool, Args);
			EXPECT_TRUE(FToolRunner::IsError(Result));
			EXPECT_EQ(FToolRunner::Payload(Result), nullptr);
			return S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text")));
		}

		TSharedPtr<FJsonObject> Resolve(const TCHAR* Query, bool bRequireSupported = false)
		{
			return Succeed(TEXT("material_resolve_expression_class"), Arguments({{TEXT("Query"), Text(Query)}, {TEXT("RequireSupported"), MakeShared<FJsonValueBoolean>(bRequireSupported)}}));
		}

		TSharedPtr<FJsonObject> Add(const TCHAR* Material, const TCHAR* ClassName, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Extra = {})
		{
			TSharedPtr<FJsonObject> Args = Arguments(Extra);
			Args->SetStringField(TEXT("MaterialNameOrPath"), Material);
			Args->SetStringField(TEXT("ExpressionClass"), ClassName);
			return Succeed(TEXT("material_add_expression"), Args);
		}

		FString AddGuid(const TCHAR* Material, const TCHAR* ClassName, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Extra = {})
		{
			const TSharedPtr<FJsonObject> Payload = Add(Material, ClassName, Extra);
			return Payload ? Payload->GetStringField(TEXT("node_guid")) : FString();
		}

		TSharedPtr<FJsonObject> ReadMaterial(const TCHAR* Material)
		{
			return Succeed(TEXT("material_update"), Arguments({{TEXT("MaterialNameOrPath"), Text(Material)}}))->GetObjectField(TEXT("material"));
		}

		// The graph as one string, so a test can compare it before and after a failed call.
		std::string GraphText(const TCHAR* Material)
		{
			FZorvekMCPBridgeMaterialSnapshot Snapshot;
			Runner.Port->GetMaterials().ReadMaterial(Runner.Port->GetObjects().LoadObject(FString(Material) + TEXT(".") + FString(Material).Mid(FString(Material).Find(TEXT("/"), ESearchCase::CaseSensitive, ESearchDir::FromEnd) + 1)), {TEXT("BaseColor")}, Snapshot);
			FString Text;
			for (const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression : Snapshot.Expressions)
			{
				Text += Expression.NodeGuid + TEXT(" ") + Expression.Title + TEXT(";");
				for (const FZorvekMCPBridgeMaterialInputSnapshot& Input : Expression.Inputs)
				{
					Text += Input.InputName + TEXT("<") + Input.SourceNodeGuid + TEXT(" ");
				}
			}
			return S(Text + TEXT("|base<") + Snapshot.RootInputs[0].SourceNodeGuid);
		}

		bool IsDirty(const TCHAR* PackageName) const
		{
			return Runner.Port->GetSimulatedAssetAuthoring().IsPackageDirty(PackageName);
		}

		FToolRunner Runner{LoadSampleProject()};
	};

	const TSharedPtr<FJsonObject>* FindNode(const TSharedPtr<FJsonObject>& Material, const FString& NodeGuid)
	{
		for (const TSharedPtr<FJsonValue>& Value : Material->GetArrayField(TEXT("expressions")))
		{
			if (Value->AsObject()->GetStringField(TEXT("node_guid")) == NodeGuid)
			{
				return &Value->AsObject();
			}
		}
		return nullptr;
	}
}

// Scores come from the class matcher: exact 100, alias 94, display name 92, substring 55.
TEST_F(MaterialAuthoringTest, ResolveTakesOnlyAClearHighScoringClassAndSaysWhyNot)
{
	const TSharedPtr<FJsonObject> Lerp = Resolve(TEXT("lerp"));
	EXPECT_EQ(S(Lerp->GetStringField(TEXT("canonical_class"))), "MaterialExpressionLinearInterpolate");
	EXPECT_EQ(S(Lerp->GetStringField(TEXT("confidence"))), "high");
	EXPECT_EQ(Lerp->GetObjectField(TEXT("best"))->GetIntegerField(TEXT("score")), 94);
	EXPECT_EQ(S(Lerp->GetStringField(TEXT("next_step"))), "Use canonical_class as ExpressionClass with material_add_expression.");
	EXPECT_EQ(S(Resolve(TEXT("Texture Coordinate"))->GetStringField(TEXT("canonical_class"))), "MaterialExpressionTextureCoordinate");

	const TSharedPtr<FJsonObject> Noise = Resolve(TEXT("noise"));
	EXPECT_EQ(S(Noise->GetStringField(TEXT("confidence"))), "high_unsupported");
	EXPECT_EQ(S(Noise->GetStringField(TEXT("next_step"))), "This class is discoverable but not supported by material_add_expression yet.");
	const TSharedPtr<FJsonObject> SupportedNoise = Resolve(TEXT("noise"), true);
	EXPECT_EQ(S(SupportedNoise->GetStringField(TEXT("rejected_reason"))), "no_candidates");
	EXPECT_EQ(S(SupportedNoise->GetStringField(TEXT("confidence"))), "none");
	EXPECT_FALSE(SupportedNoise->HasField(TEXT("best")));

	// "parameter" is inside four class names, each a 55.
	const TSharedPtr<FJsonObject> Parameter = Resolve(TEXT("parameter"));
	EXPECT_EQ(Parameter->GetIntegerField(TEXT("candidate_count")), 4);
	EXPECT_EQ(S(Parameter->GetStringField(TEXT("rejected_reason"))), "ambiguous_equal_score_candidates");
	EXPECT_EQ(S(Parameter->GetStringField(TEXT("confidence"))), "low");
	EXPECT_FALSE(Parameter->HasField(TEXT("canonical_class")));
	EXPECT_EQ(S(Parameter->GetStringField(TEXT("next_step"))), "Inspect candidates and use an exact canonical supported class, or expand the allowlist in a later slice.");

	// One substring hit: below 90, no tie.
	const TSharedPtr<FJsonObject> Fres = Resolve(TEXT("fres"));
	EXPECT_EQ(S(Fres->GetStringField(TEXT("rejected_reason"))), "no_high_confidence_candidate");
	EXPECT_EQ(S(Fres->GetStringField(TEXT("confidence"))), "low");

	EXPECT_EQ(FailWith(TEXT("material_resolve_expression_class"), MakeShared<FJsonObject>()), "material_resolve_expression_class requires Query.");
}

TEST_F(MaterialAuthoringTest, FindListsTheCatalogueSupportedFirstAndFiltersLimitsAndScores)
{
	const TSharedPtr<FJsonObject> All = Succeed(TEXT("material_find_expression_classes"), MakeShared<FJsonObject>());
	EXPECT_EQ(All->GetIntegerField(TEXT("total_catalog_count")), 19);
	const TArray<TSharedPtr<FJsonValue>>& Classes = All->GetArrayField(TEXT("classes"));
	ASSERT_EQ(Classes.Num(), 19);
	// Without scores: the 16 supported classes by name, then the three others.
	EXPECT_EQ(S(Classes[0]->AsObject()->GetStringField(TEXT("class_name"))), "MaterialExpressionAdd");
	EXPECT_EQ(S(Classes[15]->AsObject()->GetStringField(TEXT("class_name"))), "MaterialExpressionVectorParameter");
	EXPECT_EQ(S(Classes[16]->AsObject()->GetStringField(TEXT("class_name"))), "MaterialExpressionFresnel");
	const TSharedPtr<FJsonObject> Fresnel = Classes[16]->AsObject();
	EXPECT_EQ(S(Fresnel->GetStringField(TEXT("match_reason"))), "listed");
	EXPECT_EQ(S(Fresnel->GetStringField(TEXT("support_reason"))), "Discoverable but not currently supported for material_add_expression mutation.");
	EXPECT_EQ(S(Fresnel->GetStringField(TEXT("class_path"))), "/Script/Engine.MaterialExpressionFresnel");
	EXPECT_EQ(S(Fresnel->GetStringField(TEXT("display_name"))), "Fresnel");
	EXPECT_FALSE(Fresnel->GetBoolField(TEXT("abstract")));

	const TSharedPtr<FJsonObject> Supported = Succeed(TEXT("material_find_expression_classes"), Arguments({{TEXT("SupportedOnly"), Text(TEXT("true"))}, {TEXT("Limit"), Number(3)}}));
	EXPECT_EQ(Supported->GetIntegerField(TEXT("result_count")), 3);
	EXPECT_TRUE(Supported->GetBoolField(TEXT("supported_only")));

	const TSharedPtr<FJsonObject> Found = Succeed(TEXT("material_find_expression_classes"), Arguments({{TEXT("Query"), Text(TEXT("mask"))}}));
	const TSharedPtr<FJsonObject> Mask = Found->GetArrayField(TEXT("classes"))[0]->AsObject();
	EXPECT_EQ(S(Mask->GetStringField(TEXT("class_name"))), "MaterialExpressionComponentMask");
	EXPECT_EQ(S(Mask->GetStringField(TEXT("match_reason"))), "alias_exact");
	EXPECT_EQ(Mask->GetIntegerField(TEXT("score")), 94);
	EXPECT_EQ(S(Mask->GetArrayField(TEXT("aliases"))[0]->AsString()), "Mask");
}

TEST_F(MaterialAuthoringTest, CreateMakesABlankDirtyMaterialAndRefusesBadOrTakenNames)
{
	EXPECT_EQ(FailWith(TEXT("material_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Authored"))}})), "material_create requires PackagePath and AssetName.");

	// The legacy In* keys stand in for the PascalCase ones.
	const TSharedPtr<FJsonObject> Created = Succeed(TEXT("material_create"), Arguments({{TEXT("InPackagePath"), Text(TEXT("/Game/Authored/"))}, {TEXT("InAssetName"), Text(TEXT("M_New"))}}));
	EXPECT_EQ(S(Created->GetStringField(TEXT("asset_path"))), "/Game/Authored/M_New");
	EXPECT_EQ(S(Created->GetStringField(TEXT("object_path"))), "/Game/Authored/M_New.M_New");
	// unreal-behaviour-world-assets.md §5.5: no expressions, no connections, surface and opaque.
	const TSharedPtr<FJsonObject> Blank = Created->GetObjectField(TEXT("material"));
	EXPECT_EQ(S(Blank->GetStringField(TEXT("asset_kind"))), "material");
	EXPECT_EQ(Blank->GetIntegerField(TEXT("expression_count")), 0);
	EXPECT_EQ(Blank->GetIntegerField(TEXT("connection_count")), 0);
	EXPECT_EQ(S(Blank->GetStringField(TEXT("material_domain"))), "MD_Surface");
	EXPECT_EQ(S(Blank->GetStringField(TEXT("blend_mode"))), "BLEND_Opaque");
	EXPECT_TRUE(IsDirty(TEXT("/Game/Authored/M_New")));
	// Found by name afterwards, though never saved.
	EXPECT_EQ(S(ReadMaterial(TEXT("M_New"))->GetObjectField(TEXT("asset"))->GetStringField(TEXT("object_path"))), "/Game/Authored/M_New.M_New");

	EXPECT_EQ(FailWith(TEXT("material_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Authored"))}, {TEXT("AssetName"), Text(TEXT("M_New"))}})),
		"Could not create Material: an asset already exists at /Game/Authored/M_New.");
	EXPECT_EQ(FailWith(TEXT("material_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Materials"))}, {TEXT("AssetName"), Text(TEXT("M_Rock"))}})),
		"Could not create Material: an asset already exists at /Game/Materials/M_Rock.");
	EXPECT_EQ(FailWith(TEXT("material_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Authored"))}, {TEXT("AssetName"), Text(TEXT("M.Dot"))}})),
		"Could not create Material: asset name 'M.Dot' contains a character object names may not hold.");
	EXPECT_EQ(FailWith(TEXT("material_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Nowhere/Authored"))}, {TEXT("AssetName"), Text(TEXT("M_X"))}})).rfind("Could not create Material: '/Nowhere/Authored/M_X' is not a valid package name: ", 0), 0u);
}

TEST_F(MaterialAuthoringTest, BuildsAGraphByGuidThatTheReaderShowsWithItsWires)
{
	Succeed(TEXT("material_create"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Authored"))}, {TEXT("AssetName"), Text(TEXT("M_Graph"))}}));
	const TCHAR* const Graph = TEXT("/Game/Authored/M_Graph");
	const FString Coordinates = AddGuid(Graph, TEXT("MaterialExpressionTextureCoordinate"), {{TEXT("NodePosX"), Number(-600)}, {TEXT("NodePosY"), Text(TEXT("40"))}});
	const TSharedPtr<FJsonObject> ScalarAdded = Add(Graph, TEXT("MaterialExpressionScalarParameter"), {{TEXT("ParameterName"), Text(TEXT("Tiling"))}, {TEXT("DefaultValue"), Number(2)}, {TEXT("Description"), Text(TEXT("UV scale"))}});
	const FString Scalar = ScalarAdded->GetStringField(TEXT("node_guid"));
	const FString Multiply = AddGuid(Graph, TEXT("MaterialExpressionMultiply"));
	const TSharedPtr<FJsonObject> PowerAdded = Add(Graph, TEXT("MaterialExpressionPower"), {{TEXT("DefaultValue"), Text(TEXT("3"))}, {TEXT("PropertyValues"), MakeShared<FJsonValueObject>(Arguments({{TEXT("Desc"), Text(TEXT("curve"))}}))}});
	const FString Power = PowerAdded->GetStringField(TEXT("node_guid"));
	EXPECT_EQ(ToStd({PowerAdded->GetArrayField(TEXT("property_aliases_applied"))[0]->AsString()}), std::vector<std::string>{"DefaultValue->ConstExponent"});

	// The add result already carries the reader's node.
	const TSharedPtr<FJsonObject> ScalarNode = ScalarAdded->GetObjectField(TEXT("expression"));
	EXPECT_EQ(S(ScalarNode->GetStringField(TEXT("node_title"))), "'Tiling'\nParam (2)");
	EXPECT_EQ(S(ScalarNode->GetStringField(TEXT("parameter_name"))), "Tiling");
	EXPECT_EQ(S(ScalarNode->GetStringField(TEXT("description"))), "UV scale");
	EXPECT_EQ(Coordinates.Len(), 32);
	EXPECT_NE(S(Coordinates), S(Scalar));

	Succeed(TEXT("material_connect_expressions"), Arguments({{TEXT("MaterialNameOrPath"), Text(Graph)}, {TEXT("SourceNodeGuid"), Text(*Coordinates)}, {TEXT("TargetNodeGuid"), Text(*Multiply)}, {TEXT("TargetInputName"), Text(TEXT("A"))}}));
	// GUID text compares without regard to case, as FGuid text does.
	const TSharedPtr<FJsonObject> Wired = Succeed(TEXT("material_connect_expressions"), Arguments({{TEXT("MaterialNameOrPath"), Text(Graph)}, {TEXT("SourceNodeGuid"), Text(*Scalar.ToLower())}, {TEXT("TargetNodeGuid"), Text(*Multiply)}, {TEXT("TargetInputName"), Text(TEXT("B"))}}));
	EXPECT_TRUE(Wired->GetBoolField(TEXT("connected")));
	EXPECT_EQ(S(Wired->GetStringField(TEXT("source_node_guid"))), S(Scalar));
	Succeed(TEXT("material_connect_expressions"), Arguments({{TEXT("MaterialNameOrPath"), Text(Graph)}, {TEXT("SourceNodeGuid"), Text(*Multiply)}, {TEXT("TargetNodeGuid"), Text(*Power)}, {TEXT("TargetInputName"), Text(TEXT("Base"))}}));
	const TSharedPtr<FJsonObject> Root = Succeed(TEXT("material_connect_root"), Arguments({{TEXT("MaterialNameOrPath"), Text(Graph)}, {TEXT("SourceNodeGuid"), Text(*Power)}, {TEXT("RootInputName"), Text(TEXT("EmissiveColor"))}}));
	EXPECT_EQ(S(Root->GetStringField(TEXT("root_input_name"))), "EmissiveColor");

	const TSharedPtr<FJsonObject> Material = ReadMaterial(Graph);
	EXPECT_EQ(Material->GetIntegerField(TEXT("expression_count")), 4);
	std::vector<std::string> Wires;
	for (const TSharedPtr<FJsonValue>& Connection : Material->GetArrayField(TEXT("connections")))
	{
		const TSharedPtr<FJsonObject> Wire = Connection->AsObject();
		Wires.push_back(S(Wire->GetStringField(TEXT("source_node_title")) + TEXT(" -> ") + Wire->GetStringField(TEXT("target")) + TEXT(".") + Wire->GetStringField(TEXT("target_input_name"))));
	}
	EXPECT_EQ(Wires, (std::vector<std::string>{"Power -> material_root.EmissiveColor", "TexCoord[0] -> expression.A", "'Tiling'\nParam (2) -> expression.B", "Multiply -> expression.Base"}));
	const TSharedPtr<FJsonObject> CoordinatesNode = *FindNode(Material, Coordinates);
	EXPECT_EQ(CoordinatesNode->GetIntegerField(TEXT("node_pos_x")), -600);
	EXPECT_EQ(CoordinatesNode->GetIntegerField(TEXT("node_pos_y")), 40);
	// Connect copies the output's mask into the input: TexCoord's output is R and G.
	const TSharedPtr<FJsonObject> InputA = (*FindNode(Material, Multiply))->GetArrayField(TEXT("inputs"))[0]->AsObject();
	EXPECT_EQ(InputA->GetIntegerField(TEXT("mask_g")), 1);
	EXPECT_EQ(InputA->GetIntegerField(TEXT("mask_b")), 0);
	EXPECT_EQ(S((*FindNode(Material, Power))->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("ConstExponent"))->GetStringField(TEXT("value"))), "3.000000");
	EXPECT_EQ(S((*FindNode(Material, Power))->GetStringField(TEXT("description"))), "curve");
	// Every change ran PostEditChange: 4 adds, 3 wires, 1 root wire, 1 update.
	EXPECT_EQ(Runner.Port->GetSimulatedMaterialAuthoring().GetPostEditChangeCount(Runner.Port->GetObjects().FindObject(TEXT("/Game/Authored/M_Graph.M_Graph"))), 9);
}

// unreal-behaviour-world-assets.md §5.2 and §5.3: what CreateMaterialExpression does to a new node.
TEST_F(MaterialAuthoringTest, NewExpressionsGetEngineNamesUniqueParameterNamesAndAnRGMask)
{
	const TSharedPtr<FJsonObject> First = Add(RockMaterial, TEXT("MaterialExpressionMultiply"));
	const TSharedPtr<FJsonObject> Second = Add(RockMaterial, TEXT("MaterialExpressionMultiply"));
	EXPECT_EQ(S(First->GetObjectField(TEXT("expression"))->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("ConstB"))->GetStringField(TEXT("value"))), "1.000000");
	EXPECT_TRUE(Runner.Port->GetObjects().FindObject(TEXT("/Game/Materials/M_Rock.M_Rock:MaterialExpressionMultiply_0")).IsValid());
	EXPECT_TRUE(Runner.Port->GetObjects().FindObject(TEXT("/Game/Materials/M_Rock.M_Rock:MaterialExpressionMultiply_1")).IsValid());
	EXPECT_NE(S(First->GetStringField(TEXT("node_guid"))), S(Second->GetStringField(TEXT("node_guid"))));

	// The class default "Param" is renamed when taken; a ParameterName given later is not checked.
	EXPECT_EQ(S(Add(RockMaterial, TEXT("MaterialExpressionScalarParameter"))->GetObjectField(TEXT("expression"))->GetStringField(TEXT("parameter_name"))), "Param");
	EXPECT_EQ(S(Add(RockMaterial, TEXT("MaterialExpressionScalarParameter"))->GetObjectField(TEXT("expression"))->GetStringField(TEXT("parameter_name"))), "Param_1");
	EXPECT_EQ(S(Add(RockMaterial, TEXT("MaterialExpressionScalarParameter"), {{TEXT("ParameterName"), Text(TEXT("Param"))}})->GetObjectField(TEXT("expression"))->GetStringField(TEXT("parameter_name"))), "Param");

	EXPECT_EQ(S(Add(RockMaterial, TEXT("MaterialExpressionComponentMask"))->GetObjectField(TEXT("expression"))->GetStringField(TEXT("node_title"))), "Mask ( R G )");
	EXPECT_EQ(S(Add(RockMaterial, TEXT("MaterialExpressionTextureSampleParameter2D"), {{TEXT("TexturePath"), Text(TEXT("/Game/Textures/T_Rock_Wet_D"))}, {TEXT("NodeName"), Text(TEXT("WetSample"))}})
		->GetObjectField(TEXT("expression"))->GetArrayField(TEXT("referenced_textures"))[0]->AsObject()->GetStringField(TEXT("object_path"))), "/Game/Textures/T_Rock_Wet_D.T_Rock_Wet_D");
	EXPECT_TRUE(Runner.Port->GetObjects().FindObject(TEXT("/Game/Materials/M_Rock.M_Rock:WetSample")).IsValid());
}

// Everything is checked before the material changes; a failed import throws the new node away.
TEST_F(MaterialAuthoringTest, AFailedAddLeavesTheGraphNamesAndDirtyFlagAsTheyWere)
{
	const std::string Before = GraphText(RockMaterial);
	ASSERT_FALSE(IsDirty(RockMaterial));
	auto AddFails = [this](const TCHAR* ClassName, std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Extra)
	{
		TSharedPtr<FJsonObject> Args = Arguments(Extra);
		Args->SetStringField(TEXT("MaterialNameOrPath"), RockMaterial);
		Args->SetStringField(TEXT("ExpressionClass"), ClassName);
		return FailWith(TEXT("material_add_expression"), Args);
	};

	EXPECT_EQ(AddFails(TEXT("MaterialExpressionNoise"), {}), "Unsupported material expression class 'MaterialExpressionNoise'. Use an allowlisted canonical class name.");
	EXPECT_EQ(AddFails(TEXT("materialexpressionadd"), {}), "Unsupported material expression class 'materialexpressionadd'. Use an allowlisted canonical class name.");
	EXPECT_EQ(AddFails(TEXT("MaterialExpressionMultiply"), {{TEXT("ParameterName"), Text(TEXT("Gain"))}}), "Expression class 'MaterialExpressionMultiply' does not support ParameterName.");
	EXPECT_EQ(AddFails(TEXT("MaterialExpressionMultiply"), {{TEXT("PropertyValues"), MakeShared<FJsonValueObject>(Arguments({{TEXT(""), Text(TEXT("1"))}}))}}), "PropertyValues contains an empty property name.");
	EXPECT_EQ(AddFails(TEXT("MaterialExpressionMultiply"), {{TEXT("TexturePath"), Text(TEXT("/Game/Textures/T_Missing"))}}), "Could not load texture: /Game/Textures/T_Missing");
	EXPECT_EQ(AddFails(TEXT("MaterialExpressionMultiply"), {{TEXT("NodeName"), Text(TEXT("Tint"))}}), "Could not create material expression: /Game/Materials/M_Rock.M_Rock already holds an object named 'Tint'.");
	// These fail after the node exists, so it is thrown away again.
	EXPECT_EQ(AddFails(TEXT("MaterialExpressionMultiply"), {{TEXT("NodeName"), Text(TEXT("Doomed"))}, {TEXT("TexturePath"), Text(TEXT("/Game/Textures/T_Rock_Wet_D"))}}), "Expression class 'MaterialExpressionMultiply' does not expose a Texture property.");
	EXPECT_EQ(AddFails(TEXT("MaterialExpressionMultiply"), {{TEXT("NodeName"), Text(TEXT("Doomed"))}, {TEXT("PropertyValues"), MakeShared<FJsonValueObject>(Arguments({{TEXT("ConstA"), Text(TEXT("0.5"))}, {TEXT("NoSuchProperty"), Text(TEXT("1"))}}))}}),
		"Property 'NoSuchProperty' was not found on MaterialExpressionMultiply.");
	EXPECT_EQ(AddFails(TEXT("MaterialExpressionAdd"), {{TEXT("NodeName"), Text(TEXT("Doomed"))}, {TEXT("DefaultValue"), Text(TEXT("1"))}}), "Property 'DefaultValue' was not found on MaterialExpressionAdd.");
	EXPECT_EQ(FailWith(TEXT("material_add_expression"), Arguments({{TEXT("MaterialNameOrPath"), Text(TEXT("/Game/Textures/T_M_Rock_D"))}, {TEXT("ExpressionClass"), Text(TEXT("MaterialExpressionAdd"))}})), "Could not load Material for material_add_expression.");

	EXPECT_EQ(GraphText(RockMaterial), Before);
	EXPECT_FALSE(IsDirty(RockMaterial));
	// The thrown-away name is free again.
	Add(RockMaterial, TEXT("MaterialExpressionMultiply"), {{TEXT("NodeName"), Text(TEXT("Doomed"))}});
	EXPECT_TRUE(IsDirty(RockMaterial));
}

TEST_F(MaterialAuthoringTest, SetPropertyChecksInOrderAndAppliesThePowerAliasToPowerOnly)
{
	const FString Power = AddGuid(RockMaterial, TEXT("MaterialExpressionPower"));
	auto Set = [&](std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Extra)
	{
		TSharedPtr<FJsonObject> Args = Arguments(Extra);
		Args->SetStringField(TEXT("MaterialNameOrPath"), RockMaterial);
		return Args;
	};
	const TCHAR* const Tool = TEXT("material_set_expression_property");
	EXPECT_EQ(FailWith(Tool, Set({})), "material_set_expression_property requires NodeGuid.");
	EXPECT_EQ(FailWith(Tool, Set({{TEXT("NodeGuid"), Text(*Power)}})), "material_set_expression_property requires PropertyName.");
	EXPECT_EQ(FailWith(Tool, Set({{TEXT("NodeGuid"), Text(*Power)}, {TEXT("PropertyName"), Text(TEXT("Exponent"))}})), "material_set_expression_property requires Value.");
	EXPECT_EQ(FailWith(Tool, Set({{TEXT("NodeGuid"), Text(TEXT("00000000000000000000000000000BAD"))}, {TEXT("PropertyName"), Text(TEXT("Exponent"))}, {TEXT("Value"), Number(4)}})),
		"Could not resolve material expression by NodeGuid '00000000000000000000000000000BAD'.");

	const TSharedPtr<FJsonObject> Result = Succeed(Tool, Set({{TEXT("NodeGuid"), Text(*Power)}, {TEXT("PropertyName"), Text(TEXT("Exponent"))}, {TEXT("Value"), Number(4.5)}}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("property_name"))), "Exponent");
	EXPECT_EQ(S(Result->GetStringField(TEXT("effective_property_name"))), "ConstExponent");
	EXPECT_EQ(S(Result->GetStringField(TEXT("imported_value"))), "4.5");
	EXPECT_EQ(S(Result->GetArrayField(TEXT("property_aliases_applied"))[0]->AsString()), "Exponent->ConstExponent");
	EXPECT_EQ(S(Result->GetObjectField(TEXT("expression"))->GetObjectField(TEXT("properties"))->GetObjectField(TEXT("ConstExponent"))->GetStringField(TEXT("value"))), "4.500000");

	// The engine writes a struct as it reads it, so a text broken after two fields would leave R
	// and G changed (unreal-behaviour-world-assets.md §1.7); the tool puts the old value back.
	const TSharedPtr<FJsonObject> TintAdded = Add(RockMaterial, TEXT("MaterialExpressionVectorParameter"), {{TEXT("DefaultValue"), Text(TEXT("(R=1.0,G=1.0,B=1.0,A=1.0)"))}});
	const FString Tint = TintAdded->GetStringField(TEXT("node_guid"));
	const std::string TintBefore = S(TintAdded->GetObjectField(TEXT("expression"))->GetStringField(TEXT("node_title")));
	EXPECT_EQ(FailWith(Tool, Set({{TEXT("NodeGuid"), Text(*Tint)}, {TEXT("PropertyName"), Text(TEXT("DefaultValue"))}, {TEXT("Value"), Text(TEXT("(R=0.5,G=0.25"))}})),
		"Could not import value '(R=0.5,G=0.25' for property 'DefaultValue'.");
	const TSharedPtr<FJsonObject> TintNode = *FindNode(ReadMaterial(RockMaterial), Tint);
	EXPECT_EQ(S(TintNode->GetStringField(TEXT("node_title"))), TintBefore);

	// The alias is Power's only; a bool is imported as its text.
	const FString Mask = AddGuid(RockMaterial, TEXT("MaterialExpressionComponentMask"));
	const TSharedPtr<FJsonObject> Blue = Succeed(Tool, Set({{TEXT("NodeGuid"), Text(*Mask)}, {TEXT("PropertyName"), Text(TEXT("B"))}, {TEXT("Value"), MakeShared<FJsonValueBoolean>(true)}}));
	EXPECT_EQ(Blue->GetArrayField(TEXT("property_aliases_applied")).Num(), 0);
	EXPECT_EQ(S(Blue->GetObjectField(TEXT("expression"))->GetStringField(TEXT("node_title"))), "Mask ( R G B )");
	EXPECT_EQ(FailWith(Tool, Set({{TEXT("NodeGuid"), Text(*Mask)}, {TEXT("PropertyName"), Text(TEXT("Exponent"))}, {TEXT("Value"), Number(2)}})), "Property 'Exponent' was not found on MaterialExpressionComponentMask.");
}

TEST_F(MaterialAuthoringTest, ConnectNamesTheInputsItAcceptsAndRefusesUnknownGuidsOutputsAndRoots)
{
	const FString Clamp = AddGuid(RockMaterial, TEXT("MaterialExpressionClamp"));
	const FString Lerp = AddGuid(RockMaterial, TEXT("MaterialExpressionLinearInterpolate"));
	const FString Vector = AddGuid(RockMaterial, TEXT("MaterialExpressionVectorParameter"));
	const std::string Before = GraphText(RockMaterial);
	auto Connect = [&](const FString& Source, const FString& Target, const TCHAR* Input, int32 OutputIndex = 0)
	{
		return Arguments({{TEXT("MaterialNameOrPath"), Text(RockMaterial)}, {TEXT("SourceNodeGuid"), Text(*Source)}, {TEXT("TargetNodeGuid"), Text(*Target)}, {TEXT("TargetInputName"), Text(Input)}, {TEXT("SourceOutputIndex"), Number(OutputIndex)}});
	};
	const TCHAR* const Tool = TEXT("material_connect_expressions");
	// Inputs are matched by their raw GetInputName, not the editor's shortened pin labels
	// (unreal-behaviour-world-assets.md §5.1): Clamp's first input is "Input", never "".
	EXPECT_EQ(FailWith(Tool, Connect(Vector, Clamp, TEXT(""))), "Target input '' was not found. Available inputs: 'Input', 'Min', 'Max'");
	EXPECT_EQ(FailWith(Tool, Connect(Vector, Lerp, TEXT("alpha"))), "Target input 'alpha' was not found. Available inputs: 'A', 'B', 'Alpha'");
	EXPECT_EQ(FailWith(Tool, Connect(Lerp, Vector, TEXT("A"))), "Target input 'A' was not found. Available inputs: (none)");
	EXPECT_EQ(FailWith(Tool, Connect(Vector, TEXT("FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"), TEXT("A"))), "Could not resolve source or target material expression by GUID.");
	EXPECT_EQ(FailWith(Tool, Connect(Vector, Lerp, TEXT("Alpha"), 5)), "Source output index 5 is out of range: the source expression has 5 output(s).");
	EXPECT_EQ(FailWith(TEXT("material_connect_root"), Arguments({{TEXT("MaterialNameOrPath"), Text(RockMaterial)}, {TEXT("SourceNodeGuid"), Text(*Vector)}, {TEXT("RootInputName"), Text(TEXT("MaterialAttributes"))}})),
		"Unsupported or unavailable material root input 'MaterialAttributes'.");
	EXPECT_EQ(FailWith(TEXT("material_connect_root"), Arguments({{TEXT("MaterialNameOrPath"), Text(RockMaterial)}, {TEXT("SourceNodeGuid"), Text(TEXT("nope"))}, {TEXT("RootInputName"), Text(TEXT("BaseColor"))}})),
		"Could not resolve source material expression by GUID.");
	EXPECT_EQ(FailWith(TEXT("material_connect_root"), Arguments({{TEXT("MaterialNameOrPath"), Text(TEXT("M_Nothing"))}})), "Could not load Material for material_connect_root.");
	EXPECT_EQ(FailWith(TEXT("material_update"), Arguments({{TEXT("MaterialNameOrPath"), Text(TEXT("/Game/Materials/MI_Rock_Wet"))}})), "Could not load Material for material_update.");
	EXPECT_EQ(GraphText(RockMaterial), Before);

	// The vector parameter's G output (index 2) into Clamp's "Input", and its RGB into BaseColor.
	Succeed(Tool, Connect(Vector, Clamp, TEXT("Input"), 2));
	Succeed(TEXT("material_connect_root"), Arguments({{TEXT("MaterialNameOrPath"), Text(RockMaterial)}, {TEXT("SourceNodeGuid"), Text(*Vector)}, {TEXT("RootInputName"), Text(TEXT("BaseColor"))}}));
	const TSharedPtr<FJsonObject> Material = ReadMaterial(RockMaterial);
	const TSharedPtr<FJsonObject> ClampInput = (*FindNode(Material, Clamp))->GetArrayField(TEXT("inputs"))[0]->AsObject();
	EXPECT_EQ(ClampInput->GetIntegerField(TEXT("output_index")), 2);
	EXPECT_EQ(ClampInput->GetIntegerField(TEXT("mask_g")), 1);
	EXPECT_EQ(ClampInput->GetIntegerField(TEXT("mask_r")), 0);
	EXPECT_EQ(S(Material->GetArrayField(TEXT("root_inputs"))[0]->AsObject()->GetStringField(TEXT("source_node_guid"))), S(Vector));
}
