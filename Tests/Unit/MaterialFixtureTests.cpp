// unreal_create_material_repro_assets: the fixture it builds, read back with unreal_inspect_asset.
#include "AssetTestSupport.h"
#include "ZorvekTestSupport.h"

using namespace ZorvekAssetTests;

namespace
{
	class MaterialFixtureTest : public ::testing::Test
	{
	protected:
		TSharedPtr<FJsonObject> CreateFixture(const TSharedPtr<FJsonObject>& Args)
		{
			const TSharedPtr<FJsonObject> Result = Runner.Call(TEXT("unreal_create_material_repro_assets"), Args);
			EXPECT_FALSE(FToolRunner::IsError(Result));
			return FToolRunner::Payload(Result);
		}

		TSharedPtr<FJsonObject> InspectMaterialSection(const FString& AssetPath)
		{
			const TSharedPtr<FJsonObject> Result = Runner.Call(TEXT("unreal_inspect_asset"), Arguments({{TEXT("AssetNameOrPath"), Text(*AssetPath)}, {TEXT("Type"), Text(TEXT("Any"))}}));
			EXPECT_FALSE(FToolRunner::IsError(Result));
			const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
			EXPECT_EQ(Payload->GetArrayField(TEXT("partial_failures")).Num(), 0);
			return Payload->GetObjectField(TEXT("material"));
		}

		FToolRunner Runner{LoadSampleProject()};
	};

	TSharedPtr<FJsonObject> FindByKey(const TArray<TSharedPtr<FJsonValue>>& Items, const TCHAR* Key, const TCHAR* Value)
	{
		for (const TSharedPtr<FJsonValue>& Item : Items)
		{
			if (Item->AsObject()->GetStringField(Key) == Value)
			{
				return Item->AsObject();
			}
		}
		return nullptr;
	}

	// The entry's fields in order: ParameterInfo, ParameterValue, ExpressionGUID.
	std::string FieldText(const TSharedPtr<FJsonObject>& Entry, int32 FieldIndex)
	{
		return S(Entry->GetArrayField(TEXT("fields"))[FieldIndex]->AsObject()->GetStringField(TEXT("value")));
	}
}

TEST_F(MaterialFixtureTest, TheMaterialGivesEveryGraphSectionOfTheReaderSomethingToRead)
{
	const TSharedPtr<FJsonObject> Fixture = CreateFixture(Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Repro/Mat/"))}, {TEXT("AssetPrefix"), Text(TEXT("Probe"))}}));
	EXPECT_TRUE(Fixture->GetBoolField(TEXT("created")));
	EXPECT_EQ(Fixture->GetArrayField(TEXT("partial_failures")).Num(), 0);
	EXPECT_EQ(S(Fixture->GetStringField(TEXT("package_path"))), "/Game/Repro/Mat");
	EXPECT_EQ(S(Fixture->GetStringField(TEXT("material_object_path"))), "/Game/Repro/Mat/M_Probe_Base.M_Probe_Base");
	EXPECT_EQ(S(Fixture->GetStringField(TEXT("material_instance_asset_path"))), "/Game/Repro/Mat/MI_Probe_Override");

	const TSharedPtr<FJsonObject> Material = InspectMaterialSection(Fixture->GetStringField(TEXT("material_asset_path")));
	EXPECT_EQ(S(Material->GetStringField(TEXT("asset_kind"))), "material");
	EXPECT_EQ(Material->GetIntegerField(TEXT("expression_count")), 5);
	EXPECT_EQ(Material->GetIntegerField(TEXT("comment_count")), 1);
	EXPECT_EQ(S(Material->GetArrayField(TEXT("comments"))[0]->AsObject()->GetStringField(TEXT("node_title"))), "Base color: texture times tint");

	std::vector<std::string> Wires;
	for (const TSharedPtr<FJsonValue>& Connection : Material->GetArrayField(TEXT("connections")))
	{
		const TSharedPtr<FJsonObject> Wire = Connection->AsObject();
		Wires.push_back(S(Wire->GetStringField(TEXT("source_node_title")).Replace(TEXT("\n"), TEXT(" ")) + TEXT(" -> ") + Wire->GetStringField(TEXT("target_input_name"))));
	}
	EXPECT_EQ(Wires, (std::vector<std::string>{"Multiply -> BaseColor", "'Roughness' Param (0.35) -> Roughness", "TexCoord[0] -> Coordinates", "'BaseTexture' Param2D -> A",
		"'Tint' Param (1,0.5,0.25,1) -> B"}));

	const TArray<TSharedPtr<FJsonValue>>& Expressions = Material->GetArrayField(TEXT("expressions"));
	std::vector<std::string> Parameters;
	for (const TSharedPtr<FJsonValue>& Expression : Expressions)
	{
		if (Expression->AsObject()->GetBoolField(TEXT("is_parameter")))
		{
			Parameters.push_back(S(Expression->AsObject()->GetStringField(TEXT("parameter_name"))));
		}
	}
	EXPECT_EQ(Parameters, (std::vector<std::string>{"BaseTexture", "Tint", "Roughness"}));
	const TSharedPtr<FJsonObject> Sample = FindByKey(Expressions, TEXT("expression_class"), TEXT("MaterialExpressionTextureSampleParameter2D"));
	ASSERT_TRUE(Sample.IsValid());
	EXPECT_EQ(S(Sample->GetArrayField(TEXT("referenced_textures"))[0]->AsObject()->GetStringField(TEXT("object_path"))), "/Engine/EngineResources/DefaultTexture.DefaultTexture");
	// A texture sample's RGB output carries its mask into the multiply's A input.
	const TSharedPtr<FJsonObject> Multiply = FindByKey(Expressions, TEXT("expression_class"), TEXT("MaterialExpressionMultiply"));
	EXPECT_EQ(Multiply->GetArrayField(TEXT("inputs"))[0]->AsObject()->GetIntegerField(TEXT("mask_b")), 1);
	EXPECT_EQ(Multiply->GetArrayField(TEXT("inputs"))[0]->AsObject()->GetIntegerField(TEXT("mask_a")), 0);
}

TEST_F(MaterialFixtureTest, TheInstanceOverridesSomeParametersAndInheritsTheRest)
{
	const TSharedPtr<FJsonObject> Fixture = CreateFixture(Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Repro/Mat"))}}));
	const TSharedPtr<FJsonObject> Instance = InspectMaterialSection(Fixture->GetStringField(TEXT("material_instance_asset_path")));
	EXPECT_EQ(S(Instance->GetStringField(TEXT("asset_kind"))), "material_instance_constant");
	EXPECT_EQ(S(Instance->GetObjectField(TEXT("parent"))->GetStringField(TEXT("object_path"))), "/Game/Repro/Mat/M_ZorvekMat_Base.M_ZorvekMat_Base");

	const TArray<TSharedPtr<FJsonValue>>& Scalars = Instance->GetArrayField(TEXT("scalar_parameters"));
	ASSERT_EQ(Scalars.Num(), 1);
	const TSharedPtr<FJsonObject> Roughness = Scalars[0]->AsObject();
	EXPECT_EQ(FieldText(Roughness, 0), "(Name=\"Roughness\",Association=GlobalParameter,Index=-1)");
	EXPECT_EQ(FieldText(Roughness, 1), "0.800000");
	EXPECT_TRUE(Roughness->GetBoolField(TEXT("overridden")));
	EXPECT_EQ(S(Roughness->GetStringField(TEXT("parent_value"))), "0.350000");

	const TArray<TSharedPtr<FJsonValue>>& Textures = Instance->GetArrayField(TEXT("texture_parameters"));
	ASSERT_EQ(Textures.Num(), 1);
	EXPECT_EQ(FieldText(Textures[0]->AsObject(), 0), "(Name=\"BaseTexture\",Association=GlobalParameter,Index=-1)");
	EXPECT_EQ(FieldText(Textures[0]->AsObject(), 1), "/Engine/EngineResources/WhiteSquareTexture.WhiteSquareTexture");
	EXPECT_TRUE(Textures[0]->AsObject()->GetBoolField(TEXT("overridden")));
	// Tint is not overridden, so the instance holds no entry for it.
	EXPECT_EQ(Instance->GetIntegerField(TEXT("vector_parameters_count")), 0);
	EXPECT_TRUE(Runner.Port->GetSimulatedAssetAuthoring().IsPackageDirty(TEXT("/Game/Repro/Mat/MI_ZorvekMat_Override")));
}

TEST_F(MaterialFixtureTest, ARunIntoTakenNamesReportsItsStagesAndLeavesTheFirstAssetsAlone)
{
	CreateFixture(Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Repro/Twice"))}}));
	const TSharedPtr<FJsonObject> Second = CreateFixture(Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Repro/Twice"))}}));
	EXPECT_FALSE(Second->GetBoolField(TEXT("created")));
	const TArray<TSharedPtr<FJsonValue>>& Failures = Second->GetArrayField(TEXT("partial_failures"));
	ASSERT_EQ(Failures.Num(), 1);
	EXPECT_EQ(S(Failures[0]->AsObject()->GetStringField(TEXT("stage"))), "asset_create");
	EXPECT_EQ(S(Failures[0]->AsObject()->GetStringField(TEXT("reason"))), "Could not create M_ZorvekMat_Base: an asset already exists at /Game/Repro/Twice/M_ZorvekMat_Base.");
	EXPECT_EQ(InspectMaterialSection(TEXT("/Game/Repro/Twice/M_ZorvekMat_Base"))->GetIntegerField(TEXT("expression_count")), 5);

	// Without a folder, a timestamped one under /Game/ZorvekRepro.
	const FString Default = CreateFixture(MakeShared<FJsonObject>())->GetStringField(TEXT("package_path"));
	EXPECT_TRUE(Default.StartsWith(TEXT("/Game/ZorvekRepro/MaterialRepro_"))) << S(Default);
	EXPECT_EQ(Default.Len(), FString(TEXT("/Game/ZorvekRepro/MaterialRepro_20260101_120000")).Len());

	const TSharedPtr<FJsonObject> Refused = CreateFixture(Arguments({{TEXT("PackagePath"), Text(TEXT("/Nowhere/Repro"))}}));
	EXPECT_EQ(S(Refused->GetArrayField(TEXT("partial_failures"))[0]->AsObject()->GetStringField(TEXT("stage"))), "asset_create");
	EXPECT_FALSE(Refused->GetBoolField(TEXT("created")));
}
