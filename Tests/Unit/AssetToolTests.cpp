// unreal_resolve_asset and unreal_inspect_asset as a client calls them: through the server's
// dispatch, over the sample project.
#include "AssetTestSupport.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "ZorvekTestSupport.h"

using namespace ZorvekAssetTests;

namespace
{
	class AssetToolTest : public ::testing::Test
	{
	protected:
		TSharedPtr<FJsonObject> Inspect(const TSharedPtr<FJsonObject>& Arguments, bool bExpectError = false)
		{
			const TSharedPtr<FJsonObject> Result = Runner.Call(TEXT("unreal_inspect_asset"), Arguments);
			EXPECT_EQ(FToolRunner::IsError(Result), bExpectError);
			return FToolRunner::Payload(Result);
		}

		FToolRunner Runner{LoadSampleProject()};
	};

	std::vector<std::string> Stages(const TSharedPtr<FJsonObject>& Payload)
	{
		return ToStd(Collect(Payload->GetArrayField(TEXT("partial_failures")), TEXT("stage")));
	}
}

TEST_F(AssetToolTest, ResolveDefaultsToBlueprintsAndFlagsOnlyAnEmptyBestPath)
{
	const TSharedPtr<FJsonObject> Result = Runner.Call(TEXT("unreal_resolve_asset"), Arguments({{TEXT("name_or_path"), Text(TEXT("hero"))}}));
	EXPECT_FALSE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	EXPECT_EQ(S(Payload->GetStringField(TEXT("type"))), "Blueprint");
	EXPECT_EQ(Payload->GetIntegerField(TEXT("count")), 2);
	// The text of the result is the structured payload.
	EXPECT_EQ(S(ToCondensedJson(ParseJsonObject(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text"))))), S(ToCondensedJson(Payload)));

	const TSharedPtr<FJsonObject> Missing = Runner.Call(TEXT("unreal_resolve_asset"), MakeShared<FJsonObject>());
	EXPECT_TRUE(FToolRunner::IsError(Missing));
	EXPECT_EQ(S(FToolRunner::Payload(Missing)->GetStringField(TEXT("error"))), "Asset name or path is required.");
	// A path always resolves, so it is never an error here.
	EXPECT_FALSE(FToolRunner::IsError(Runner.Call(TEXT("unreal_resolve_asset"), Arguments({{TEXT("name_or_path"), Text(TEXT("/Game/Nowhere/X"))}}))));
}

TEST_F(AssetToolTest, InspectReportsIdentityRegistryPropertiesAndEverySection)
{
	const TSharedPtr<FJsonObject> Payload = Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("BP_Hero"))}}));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("asset_path"))), "/Game/Blueprints/BP_Hero");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("object_path"))), "/Game/Blueprints/BP_Hero.BP_Hero");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("asset_name"))), "BP_Hero");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("package_path"))), "/Game/Blueprints/BP_Hero");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("class_path"))), "/Script/Engine.Blueprint");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("native_class_path"))), "/Script/Engine.Blueprint");
	EXPECT_TRUE(Payload->GetBoolField(TEXT("is_blueprint")));

	EXPECT_EQ(S(Payload->GetStringField(TEXT("asset_registry_class_path"))), "/Script/Engine.Blueprint");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("asset_registry_package_name"))), "/Game/Blueprints/BP_Hero");
	const TSharedPtr<FJsonObject> Tags = Payload->GetObjectField(TEXT("asset_registry_tags"));
	EXPECT_EQ(S(Tags->GetStringField(TEXT("ParentClass"))), "/Script/CoreUObject.Class'/Script/Engine.Actor'");
	EXPECT_EQ(S(Tags->GetStringField(TEXT("NativeParentClass"))), "/Script/CoreUObject.Class'/Script/Engine.Actor'");
	EXPECT_EQ(S(Tags->GetStringField(TEXT("BlueprintType"))), "BPTYPE_Normal");

	const TSharedPtr<FJsonObject> Properties = Payload->GetObjectField(TEXT("properties"));
	EXPECT_EQ(S(Properties->GetObjectField(TEXT("BlueprintDescription"))->GetStringField(TEXT("value"))), "The playable hero.");
	EXPECT_TRUE(Properties->HasField(TEXT("ParentClass")));
	EXPECT_FALSE(Properties->HasField(TEXT("SkeletonGeneratedClass")));
	EXPECT_EQ(Payload->GetIntegerField(TEXT("reference_count")), 1);
	EXPECT_EQ(S(Payload->GetArrayField(TEXT("references"))[0]->AsObject()->GetStringField(TEXT("property"))), "ParentClass");

	for (const TCHAR* Section : {TEXT("gameplay_cameras"), TEXT("state_tree"), TEXT("material")})
	{
		EXPECT_FALSE(Payload->GetObjectField(Section)->GetBoolField(TEXT("recognized"))) << S(Section);
	}
	EXPECT_TRUE(Payload->GetArrayField(TEXT("partial_failures")).IsEmpty());
}

TEST_F(AssetToolTest, InspectAcceptsLegacyKeysButPascalCaseWins)
{
	EXPECT_EQ(S(Inspect(Arguments({{TEXT("name_or_path"), Text(TEXT("ST_Director"))}}))->GetStringField(TEXT("asset_name"))), "ST_Director");
	EXPECT_EQ(S(Inspect(Arguments({{TEXT("name_or_path"), Text(TEXT("ST_Director"))}, {TEXT("AssetNameOrPath"), Text(TEXT("M_Emissive"))}}))->GetStringField(TEXT("asset_name"))), "M_Emissive");
	// The type filter: lower-case fallback, Pascal case winning, "Any" by default.
	EXPECT_EQ(S(Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("hero"))}, {TEXT("type"), Text(TEXT("Blueprint"))}}))->GetStringField(TEXT("asset_name"))), "BP_Hero");
	EXPECT_EQ(S(Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("HUD"))}, {TEXT("type"), Text(TEXT("Any"))}}))->GetStringField(TEXT("asset_name"))), "WBP_HeroHUD");
	// "type" and "Type" are one key of the JSON object, so a message naming both keeps only the
	// later one (unreal-api-core.md §3.2), whichever spelling it has.
	const TSharedPtr<FJsonObject> PascalLast = ParseJsonObject(std::string("{\"AssetNameOrPath\": \"HUD\", \"type\": \"Any\", \"Type\": \"Blueprint\"}"));
	EXPECT_EQ(S(Inspect(PascalLast, true)->GetStringField(TEXT("error"))), "Could not resolve asset from query 'HUD'.");
	const TSharedPtr<FJsonObject> LowerLast = ParseJsonObject(std::string("{\"ASSETNAMEORPATH\": \"HUD\", \"Type\": \"Blueprint\", \"type\": \"Any\"}"));
	EXPECT_EQ(S(Inspect(LowerLast)->GetStringField(TEXT("asset_name"))), "WBP_HeroHUD");
}

TEST_F(AssetToolTest, IntegerArgumentsRoundClampAndNeverWrap)
{
	const auto Count = [this](const TSharedPtr<FJsonValue>& Limit)
	{
		return FToolRunner::Payload(Runner.Call(TEXT("unreal_resolve_asset"), Arguments({{TEXT("name_or_path"), Text(TEXT("_"))}, {TEXT("type"), Text(TEXT("Any"))}, {TEXT("limit"), Limit}})))->GetIntegerField(TEXT("count"));
	};
	const int32 Everything = Count(Number(1000));
	ASSERT_GT(Everything, 10) << "the query must match more assets than the default limit";

	// Fractions round half away from zero, the same for a number and its text.
	EXPECT_EQ(Count(Number(2.6)), 3);
	EXPECT_EQ(Count(Text(TEXT("2.6"))), 3);
	EXPECT_EQ(Count(Text(TEXT(" 2.5 "))), 3);
	EXPECT_EQ(Count(Number(2.4)), 2);
	// 2^32 + 1 would wrap to 1; it clamps to the int32 maximum, as text and as a number.
	EXPECT_EQ(Count(Text(TEXT("4294967297"))), Everything);
	EXPECT_EQ(Count(Number(4294967297.0)), Everything);
	// Far below the range: the lowest int32, then raised to the limit's floor of 1.
	EXPECT_EQ(Count(Text(TEXT("-4294967297"))), 1);
	EXPECT_EQ(Count(Number(0)), 1);
	// Anything that is not a number is the default of 10.
	for (const TSharedPtr<FJsonValue>& NotANumber : {Text(TEXT("ten")), Text(TEXT("")), Text(TEXT("1e3")), TSharedPtr<FJsonValue>(MakeShared<FJsonValueBoolean>(true))})
	{
		EXPECT_EQ(Count(NotANumber), 10);
	}

	// PropertyLimit: 2^32 + 2 would wrap to 2; it clamps, so every property comes with no note.
	const TSharedPtr<FJsonObject> Loot = Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("DA_LootTable"))}, {TEXT("PropertyLimit"), Text(TEXT("4294967298"))}}));
	EXPECT_EQ(Loot->GetObjectField(TEXT("properties"))->Values.Num(), 11);
	EXPECT_EQ(Stages(Loot), (std::vector<std::string>{"property_export"}));
	for (const TSharedPtr<FJsonValue>& Limit : {Number(2.6), Text(TEXT("2.6"))})
	{
		EXPECT_EQ(Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("DA_LootTable"))}, {TEXT("PropertyLimit"), Limit}}))->GetObjectField(TEXT("properties"))->Values.Num(), 3);
	}
}

TEST_F(AssetToolTest, InspectFailuresNameWhatWentWrong)
{
	const TSharedPtr<FJsonObject> Unresolved = Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("no_such_asset"))}}), true);
	EXPECT_EQ(S(Unresolved->GetStringField(TEXT("query"))), "no_such_asset");
	EXPECT_EQ(S(Unresolved->GetStringField(TEXT("error"))), "Could not resolve asset from query 'no_such_asset'.");
	EXPECT_EQ(Unresolved->GetObjectField(TEXT("resolve_result"))->GetIntegerField(TEXT("count")), 0);
	EXPECT_EQ(S(Inspect(MakeShared<FJsonObject>(), true)->GetStringField(TEXT("error"))), "Asset name or path is required.");

	// Listed by the registry but not loadable.
	const TSharedPtr<FJsonObject> Broken = Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("M_Broken"))}}), true);
	EXPECT_EQ(S(Broken->GetStringField(TEXT("error"))), "Could not load asset object: /Game/Broken/M_Broken.M_Broken");
	EXPECT_EQ(S(Broken->GetStringField(TEXT("asset_path"))), "/Game/Broken/M_Broken");
	EXPECT_EQ(S(Broken->GetStringField(TEXT("object_path"))), "/Game/Broken/M_Broken.M_Broken");
	EXPECT_TRUE(Broken->GetArrayField(TEXT("partial_failures")).IsEmpty());
	EXPECT_EQ(S(Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("BP_Retired"))}}), true)->GetStringField(TEXT("error"))), "Could not load asset object: /Game/Legacy/BP_Retired.BP_Retired");

	// A wrong path resolves, misses the registry and then fails to load.
	const TSharedPtr<FJsonObject> Wrong = Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("/Game/Nowhere/X.X"))}}), true);
	EXPECT_EQ(S(Wrong->GetStringField(TEXT("error"))), "Could not load asset object: /Game/Nowhere/X.X");
	EXPECT_EQ(Stages(Wrong), (std::vector<std::string>{"asset_registry"}));
	EXPECT_EQ(S(Wrong->GetArrayField(TEXT("partial_failures"))[0]->AsObject()->GetStringField(TEXT("reason"))), "No asset registry data found for package '/Game/Nowhere/X'.");
}

TEST_F(AssetToolTest, InspectReadsUnsavedAssetsFromMemoryAndHonoursTheLimit)
{
	// In memory but never saved: the registry's in-memory data stands in for an entry
	// (unreal-behaviour-world-assets.md §6.2), so there is a registry section and no note.
	const TSharedPtr<FJsonObject> Unsaved = Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("/Game/Scratch/DA_Unsaved"))}, {TEXT("PropertyLimit"), Text(TEXT("2"))}}));
	EXPECT_EQ(S(Unsaved->GetStringField(TEXT("asset_registry_class_path"))), "/Script/SampleGame.LootTableDataAsset");
	EXPECT_EQ(S(Unsaved->GetObjectField(TEXT("asset_registry_tags"))->GetStringField(TEXT("TableName"))), "Scratch");
	EXPECT_EQ(S(Unsaved->GetStringField(TEXT("native_class_path"))), "/Script/SampleGame.LootTableDataAsset");
	EXPECT_FALSE(Unsaved->GetBoolField(TEXT("is_blueprint")));
	EXPECT_EQ(Unsaved->GetObjectField(TEXT("properties"))->Values.Num(), 2);
	EXPECT_EQ(Stages(Unsaved), (std::vector<std::string>{"properties"}));

	// 0 means no limit; the export refusal of PreviewCache is reported either way.
	const TSharedPtr<FJsonObject> Loot = Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("DA_LootTable"))}, {TEXT("PropertyLimit"), Number(0)}}));
	EXPECT_EQ(Loot->GetObjectField(TEXT("properties"))->Values.Num(), 11);
	EXPECT_EQ(Stages(Loot), (std::vector<std::string>{"property_export"}));
	EXPECT_EQ(S(Loot->GetObjectField(TEXT("asset_registry_tags"))->GetStringField(TEXT("TableName"))), "ForestLoot");
}

TEST_F(AssetToolTest, InspectFillsTheSectionOfEachFamily)
{
	EXPECT_EQ(S(Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("CA_Hero"))}}))->GetObjectField(TEXT("gameplay_cameras"))->GetStringField(TEXT("asset_kind"))), "camera_asset");
	EXPECT_TRUE(Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("ST_Director"))}}))->GetObjectField(TEXT("state_tree"))->GetBoolField(TEXT("is_state_tree_asset")));
	const TSharedPtr<FJsonObject> Emissive = Inspect(Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("M_Emissive"))}}))->GetObjectField(TEXT("material"));
	EXPECT_EQ(S(Emissive->GetStringField(TEXT("blend_mode"))), "BLEND_Translucent");
	EXPECT_TRUE(Emissive->GetBoolField(TEXT("two_sided")));
	EXPECT_EQ(Emissive->GetIntegerField(TEXT("expression_count")), 3);
	EXPECT_EQ(S(Emissive->GetArrayField(TEXT("root_inputs"))[4]->AsObject()->GetStringField(TEXT("source_node_title"))), "4,1.5,0.2");
}

TEST_F(AssetToolTest, InspectingEveryAssetChangesNothing)
{
	FSimulatedEditor& Editor = Runner.Port->GetEditor();
	const auto Snapshot = [&Editor]()
	{
		FString All;
		for (const FZorvekMCPBridgeAssetData& Asset : Editor.GetRegistry())
		{
			const FSimulatedObject* Object = Editor.FindObject(Asset.ObjectPath);
			for (size_t Index = 0; Object && Index < Object->Values.size(); ++Index)
			{
				FString Text;
				Editor.ExportValueText(*Object->Class->AllProperties[Index], Object->Values[Index], false, Text);
				All += Text + TEXT("|");
			}
		}
		return S(All);
	};
	const std::string Before = Snapshot();
	for (const FZorvekMCPBridgeAssetData& Asset : Editor.GetRegistry())
	{
		const TSharedPtr<FJsonObject> Result = Runner.Call(TEXT("unreal_inspect_asset"), Arguments({{TEXT("AssetNameOrPath"), Text(*Asset.PackageName)}, {TEXT("PropertyLimit"), Number(0)}}));
		const bool bLoadable = Editor.FindObject(Asset.ObjectPath) && Editor.FindObject(Asset.ObjectPath)->bLoadable;
		EXPECT_EQ(FToolRunner::IsError(Result), !bLoadable) << S(Asset.PackageName);
	}
	EXPECT_EQ(Snapshot(), Before);
}

TEST(AssetTools, SayPlainlyWhenNoEditorIsConnected)
{
	const TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
	for (const TCHAR* Tool : {TEXT("unreal_resolve_asset"), TEXT("unreal_inspect_asset")})
	{
		const TSharedPtr<FJsonObject> Result = Server->ExecuteTool(Tool, Arguments({{TEXT("name_or_path"), Text(TEXT("hero"))}}));
		ASSERT_TRUE(Result.IsValid());
		EXPECT_TRUE(Result->GetBoolField(TEXT("isError")));
		EXPECT_EQ(S(Result->GetArrayField(TEXT("content"))[0]->AsObject()->GetStringField(TEXT("text"))), S(FString(Tool) + TEXT(" cannot run: no editor is connected to the bridge in this process.")));
	}
}
