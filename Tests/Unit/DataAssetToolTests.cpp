// The Data Asset tools over a small project: discovery, creation with its checks, property paths,
// the batch, and saving to the simulated editor's package files.
#include "AISetupTestSupport.h"
#include "AssetTestSupport.h"
#include "Misc/Paths.h"
#include "SimulatedPackageFiles.h"

#include <sys/stat.h>

using namespace ZorvekAssetTests;

namespace
{
	const TCHAR* const DataAssetProject = TEXT(R"json(
		"structs": [
			{"path": "/Script/Game.ItemSummary", "properties": [
				{"name": "Name", "type": "FString", "flags": ["EditAnywhere"]},
				{"name": "Count", "type": "int32", "flags": ["EditAnywhere"]}
			]}
		],
		"classes": [
			{"path": "/Script/Game.ItemDataAsset", "super": "/Script/Engine.PrimaryDataAsset", "properties": [
				{"name": "ItemSummary", "type": "struct:/Script/Game.ItemSummary", "flags": ["EditAnywhere"]},
				{"name": "HiddenSummary", "type": "struct:/Script/Game.ItemSummary"},
				{"name": "Stats", "type": "array:int32", "flags": ["EditAnywhere"]},
				{"name": "Title", "type": "FString", "flags": ["EditAnywhere"]},
				{"name": "Scratch", "type": "FString", "flags": ["EditAnywhere", "Transient"]}
			]},
			{"path": "/Script/Game.AbstractItemData", "super": "/Script/Engine.DataAsset", "flags": ["Abstract"]},
			{"path": "/Script/Game.RetiredItemData", "super": "/Script/Engine.DataAsset", "flags": ["Deprecated"]},
			{"path": "/Game/Data/PDA_Ability.PDA_Ability_C", "super": "/Script/Game.ItemDataAsset"},
			{"path": "/Game/Actors/BP_Door.BP_Door_C", "super": "/Script/Engine.Actor"}
		],
		"assets": [
			{"package": "/Game/Data/PDA_Ability", "class": "/Script/Engine.Blueprint",
				"values": {"GeneratedClass": "/Script/Engine.BlueprintGeneratedClass'/Game/Data/PDA_Ability.PDA_Ability_C'"}},
			{"package": "/Game/Actors/BP_Door", "class": "/Script/Engine.Blueprint",
				"values": {"GeneratedClass": "/Script/Engine.BlueprintGeneratedClass'/Game/Actors/BP_Door.BP_Door_C'"}},
			{"package": "/Game/Broken/PDA_Broken", "class": "/Script/Engine.Blueprint", "loadable": false},
			{"package": "/Game/Data/DA_Sword", "class": "/Script/Game.ItemDataAsset", "values": {"Title": "Sword"}},
			{"package": "/Game/Textures/T_Rock", "class": "/Script/Engine.Texture2D"}
		]
	)json");

	// The project, with its saved packages going to a folder of the test's own.
	class FDataAssetToolTest : public ::testing::Test
	{
	protected:
		void SetUp() override
		{
			Port = LoadInlineProject(DataAssetProject);
			ASSERT_TRUE(Port.IsValid());
			Port->GetEditor().SetSavedPackagesDirectory(Folder.PathText("Saved"));
			Runner = MakeUnique<FToolRunner>(Port);
		}

		TSharedPtr<FJsonObject> Create(const TCHAR* AssetName, const TCHAR* ClassPath = TEXT("/Script/Game.ItemDataAsset"), const TCHAR* PackagePath = TEXT("/Game/Items"), bool bSave = false)
		{
			return Runner->Call(TEXT("data_asset_create"), Arguments({{TEXT("ClassPath"), Text(ClassPath)}, {TEXT("PackagePath"), Text(PackagePath)},
				{TEXT("AssetName"), Text(AssetName)}, {TEXT("Save"), MakeShared<FJsonValueBoolean>(bSave)}}));
		}

		TSharedPtr<FJsonObject> Set(const TCHAR* Asset, const TCHAR* Property, const TSharedPtr<FJsonValue>& Value, bool bSave = false)
		{
			return Runner->Call(TEXT("data_asset_set_property"), Arguments({{TEXT("AssetNameOrPath"), Text(Asset)}, {TEXT("PropertyName"), Text(Property)},
				{TEXT("Value"), Value}, {TEXT("Save"), MakeShared<FJsonValueBoolean>(bSave)}}));
		}

		FString Export(const TCHAR* ObjectPath, const TCHAR* Property) const
		{
			FString Value;
			Port->GetReflection().FindProperty(Port->GetObjects().FindObject(ObjectPath), Property).ExportText(Value);
			return Value;
		}

		static FString Error(const TSharedPtr<FJsonObject>& Result)
		{
			return FToolRunner::Payload(Result)->GetStringField(TEXT("error"));
		}

		FTemporaryFolder Folder;
		TSharedPtr<FSimulatedEditorPort> Port;
		TUniquePtr<FToolRunner> Runner;
	};
}

TEST_F(FDataAssetToolTest, FindClassesListsNativeAndBlueprintClassesOnceAndReportsBlueprintsThatDoNotLoad)
{
	const TSharedPtr<FJsonObject> Result = Runner->Call(TEXT("data_asset_find_classes"), Arguments({}));
	ASSERT_FALSE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	// The abstract engine classes, the abstract and the deprecated one are skipped; StateTree is
	// a Data Asset class in the engine too; the Blueprint class is found through its Blueprint,
	// the Actor Blueprint is not a Data Asset class.
	EXPECT_EQ(ToStd(Collect(Payload->GetArrayField(TEXT("results")), TEXT("class_path"))),
		(std::vector<std::string>{"/Script/StateTreeModule.StateTree", "/Script/Game.ItemDataAsset", "/Game/Data/PDA_Ability.PDA_Ability_C"}));
	const TSharedPtr<FJsonObject> Blueprint = Payload->GetArrayField(TEXT("results"))[2]->AsObject();
	EXPECT_EQ(S(Blueprint->GetStringField(TEXT("source"))), "blueprint_generated_class");
	EXPECT_EQ(S(Blueprint->GetStringField(TEXT("asset_path"))), "/Game/Data/PDA_Ability");
	EXPECT_EQ(S(Blueprint->GetStringField(TEXT("parent_class_path"))), "/Script/Game.ItemDataAsset");
	EXPECT_EQ(S(Blueprint->GetStringField(TEXT("display_name"))), "PDA Ability");
	EXPECT_TRUE(Blueprint->GetBoolField(TEXT("is_primary_data_asset")));
	EXPECT_TRUE(Blueprint->GetBoolField(TEXT("is_blueprint_class")));
	EXPECT_EQ(S(Blueprint->GetStringField(TEXT("creation_warning"))), "Use this class for a real Data Asset instance. Do not use blueprint_create; that creates a Blueprint Class child, not a Data Asset asset instance.");
	const TArray<TSharedPtr<FJsonValue>> Failures = Payload->GetArrayField(TEXT("partial_failures"));
	ASSERT_EQ(Failures.Num(), 1);
	EXPECT_EQ(S(Failures[0]->AsObject()->GetStringField(TEXT("asset_path"))), "/Game/Broken/PDA_Broken");
	EXPECT_EQ(S(Failures[0]->AsObject()->GetStringField(TEXT("reason"))), "failed_to_load_blueprint_for_data_asset_class_discovery");
}

TEST_F(FDataAssetToolTest, FindClassesFiltersByQueryFlagsOriginAndLimit)
{
	auto ClassPaths = [this](const TSharedPtr<FJsonObject>& Arguments)
	{
		return ToStd(Collect(FToolRunner::Payload(Runner->Call(TEXT("data_asset_find_classes"), Arguments))->GetArrayField(TEXT("results")), TEXT("class_path")));
	};
	const std::vector<std::string> All = ClassPaths(Arguments({{TEXT("OnlyInstantiable"), Text(TEXT("false"))}, {TEXT("IncludeBlueprint"), Text(TEXT("false"))}}));
	EXPECT_NE(std::find(All.begin(), All.end(), "/Script/Game.AbstractItemData"), All.end());
	EXPECT_NE(std::find(All.begin(), All.end(), "/Script/Game.RetiredItemData"), All.end());
	EXPECT_NE(std::find(All.begin(), All.end(), "/Script/Engine.PrimaryDataAsset"), All.end());
	EXPECT_EQ(ClassPaths(Arguments({{TEXT("Query"), Text(TEXT("ability"))}})), (std::vector<std::string>{"/Game/Data/PDA_Ability.PDA_Ability_C"}));
	EXPECT_EQ(ClassPaths(Arguments({{TEXT("IncludeNative"), MakeShared<FJsonValueBoolean>(false)}, {TEXT("PackagePaths"), Text(TEXT("/Game/Actors"))}})), std::vector<std::string>{});
	EXPECT_EQ(ClassPaths(Arguments({{TEXT("Limit"), Number(1)}})).size(), 1u);
}

TEST_F(FDataAssetToolTest, CreateChecksItsArgumentsInOrderAndChangesNothingOnFailure)
{
	const int32 ObjectsBefore = Port->GetEditor().GetObjectCount();
	EXPECT_EQ(S(Error(Create(TEXT("")))), "data_asset_create requires ClassPath, PackagePath, and AssetName.");
	EXPECT_EQ(S(Error(Create(TEXT("DA_A"), TEXT("/Script/Nope.Missing"), TEXT("/Game/Items/")))), "PackagePath must be a long package path such as /Game/Corvale/DataAssets, got '/Game/Items/'.");
	// unreal-behaviour-world-assets.md §6.4: spaces and unmounted roots are refused.
	EXPECT_EQ(S(Error(Create(TEXT("DA_A"), TEXT("/Script/Game.ItemDataAsset"), TEXT("/Game/My Items")))), "PackagePath must be a long package path such as /Game/Corvale/DataAssets, got '/Game/My Items'.");
	EXPECT_EQ(S(Error(Create(TEXT("DA_A"), TEXT("/Script/Game.ItemDataAsset"), TEXT("/Script/Game")))), "PackagePath must be a long package path such as /Game/Corvale/DataAssets, got '/Script/Game'.");
	EXPECT_EQ(S(Error(Create(TEXT("DA_A"), TEXT("/Script/Nope.Missing")))), "Could not load Data Asset class: /Script/Nope.Missing. Call data_asset_find_classes first and pass its class_path.");
	EXPECT_EQ(S(Error(Create(TEXT("DA_A"), TEXT("/Script/Engine.Actor")))), "Class '/Script/Engine.Actor' is not a UDataAsset/UPrimaryDataAsset class.");
	// unreal-behaviour-world-assets.md §6.1: NewObject of an abstract class is fatal, so it is refused first.
	EXPECT_EQ(S(Error(Create(TEXT("DA_A"), TEXT("/Script/Engine.PrimaryDataAsset")))), "Class '/Script/Engine.PrimaryDataAsset' is not instantiable because it is abstract or deprecated.");
	EXPECT_EQ(S(Error(Create(TEXT("DA_A"), TEXT("/Script/Game.RetiredItemData")))), "Class '/Script/Game.RetiredItemData' is not instantiable because it is abstract or deprecated.");
	EXPECT_EQ(S(Error(Create(TEXT("DA.A")))), "Could not create or load package: /Game/Items/DA.A");
	EXPECT_EQ(Port->GetEditor().GetObjectCount(), ObjectsBefore);
}

TEST_F(FDataAssetToolTest, CreateMakesARealInstanceOnceAndRefusesTheSameNameAgain)
{
	const TSharedPtr<FJsonObject> Result = Create(TEXT("DA_Shield"), TEXT("/Game/Data/PDA_Ability.PDA_Ability_C"));
	ASSERT_FALSE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	EXPECT_EQ(S(Payload->GetStringField(TEXT("object_path"))), "/Game/Items/DA_Shield.DA_Shield");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("class_name"))), "PDA_Ability_C");
	EXPECT_TRUE(Payload->GetBoolField(TEXT("is_primary_data_asset")));
	EXPECT_FALSE(Payload->GetBoolField(TEXT("is_blueprint_asset")));
	EXPECT_FALSE(Payload->GetBoolField(TEXT("created_blueprint_class")));
	EXPECT_FALSE(Payload->GetBoolField(TEXT("saved")));
	EXPECT_TRUE(Port->GetSimulatedAssetAuthoring().IsPackageDirty(TEXT("/Game/Items/DA_Shield")));
	// The registry lists the new asset, so the resolver and the inspector find it by name.
	const TSharedPtr<FJsonObject> Inspected = Runner->Call(TEXT("unreal_inspect_asset"), Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("DA_Shield"))}}));
	EXPECT_EQ(S(FToolRunner::Payload(Inspected)->GetStringField(TEXT("class_path"))), "/Game/Data/PDA_Ability.PDA_Ability_C");

	const int32 ObjectsBefore = Port->GetEditor().GetObjectCount();
	EXPECT_EQ(S(Error(Create(TEXT("DA_Shield")))), "Asset already exists: /Game/Items/DA_Shield.DA_Shield");
	EXPECT_EQ(Port->GetEditor().GetObjectCount(), ObjectsBefore);
	EXPECT_EQ(S(Port->GetObjects().GetIdentity(Port->GetObjects().FindObject(TEXT("/Game/Items/DA_Shield.DA_Shield"))).ClassName), "PDA_Ability_C");
}

TEST_F(FDataAssetToolTest, SetPropertyWritesTopLevelAndNestedStructFieldsWithBeforeAndAfter)
{
	const TSharedPtr<FJsonObject> Nested = Set(TEXT("DA_Sword"), TEXT(" ItemSummary . Count "), Number(7));
	ASSERT_FALSE(FToolRunner::IsError(Nested)) << S(Error(Nested));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Nested);
	EXPECT_EQ(S(Payload->GetStringField(TEXT("scope"))), "nested_struct_property");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("property_path"))), "ItemSummary.Count");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("property_cpp_type"))), "int32");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("before_value"))), "0");
	EXPECT_EQ(S(Payload->GetStringField(TEXT("after_value"))), "7");
	EXPECT_EQ(S(Export(TEXT("/Game/Data/DA_Sword.DA_Sword"), TEXT("ItemSummary"))), "(Count=7)");

	const TSharedPtr<FJsonObject> TopLevel = FToolRunner::Payload(Set(TEXT("/Game/Data/DA_Sword"), TEXT("Title"), Text(TEXT("Long Sword"))));
	EXPECT_EQ(S(TopLevel->GetStringField(TEXT("scope"))), "top_level_editable_property");
	EXPECT_EQ(S(TopLevel->GetStringField(TEXT("before_value"))), "Sword");
	EXPECT_EQ(S(TopLevel->GetStringField(TEXT("after_value"))), "Long Sword");
}

TEST_F(FDataAssetToolTest, SetPropertyRefusesIndexingHiddenPathsBlueprintsAndOtherAssetsWithoutChangingThem)
{
	// Indexing is refused before the asset is looked up: the name resolves to nothing.
	EXPECT_EQ(S(Error(Set(TEXT("NoSuchAsset"), TEXT("Stats[0].Health"), Number(1)))), "Data Asset property paths support nested structs only. Array/map indexing is not supported in this slice.");
	EXPECT_EQ(S(Error(Set(TEXT("DA_Sword"), TEXT("HiddenSummary.Count"), Number(3)))), "Property path 'HiddenSummary.Count' starts at 'HiddenSummary', which is not editor-editable.");
	EXPECT_EQ(S(Error(Set(TEXT("DA_Sword"), TEXT("Title.Length"), Number(3)))), "Property path 'Title.Length' is unsupported. Segment 'Title' is FString, not a reflected struct.");
	EXPECT_EQ(S(Error(Set(TEXT("DA_Sword"), TEXT("ItemSummary.Weight"), Number(3)))), "Property path 'ItemSummary.Weight' could not be resolved. Segment 'Weight' was not found on ItemSummary.");
	EXPECT_EQ(S(Error(Set(TEXT("DA_Sword"), TEXT("Damage"), Number(3)))), "Property path 'Damage' could not be resolved. Segment 'Damage' was not found on ItemDataAsset.");
	EXPECT_EQ(S(Error(Set(TEXT("DA_Sword"), TEXT(" . "), Number(3)))), "PropertyName must include at least one property segment.");
	EXPECT_EQ(S(Error(Set(TEXT("/Game/Data/PDA_Ability"), TEXT("BlueprintDescription"), Text(TEXT("x"))))), "Asset '/Game/Data/PDA_Ability' is a Blueprint asset, not a real Data Asset instance.");
	EXPECT_EQ(S(Error(Set(TEXT("/Game/Textures/T_Rock"), TEXT("SRGB"), Text(TEXT("False"))))), "Asset '/Game/Textures/T_Rock' is not a Data Asset instance.");
	const TSharedPtr<FJsonObject> Unresolved = FToolRunner::Payload(Set(TEXT("NoSuchAsset"), TEXT("Title"), Text(TEXT("x"))));
	EXPECT_TRUE(Unresolved->HasField(TEXT("resolve_result")));
	EXPECT_EQ(S(Error(Runner->Call(TEXT("data_asset_set_property"), Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("DA_Sword"))}, {TEXT("PropertyName"), Text(TEXT("Title"))}})))),
		"data_asset_set_property requires AssetNameOrPath, PropertyName, and Value.");

	EXPECT_EQ(S(Export(TEXT("/Game/Data/DA_Sword.DA_Sword"), TEXT("HiddenSummary"))), "()");
	EXPECT_EQ(S(Export(TEXT("/Game/Data/DA_Sword.DA_Sword"), TEXT("Title"))), "Sword");
	EXPECT_FALSE(Port->GetSimulatedAssetAuthoring().IsPackageDirty(TEXT("/Game/Data/DA_Sword")));
}

TEST_F(FDataAssetToolTest, BatchStopsAtTheFirstFailureUnlessToldToContinueAndRollsNothingBack)
{
	auto Items = []()
	{
		TArray<TSharedPtr<FJsonValue>> List;
		TSharedPtr<FJsonObject> First = MakeShared<FJsonObject>();
		First->SetStringField(TEXT("AssetName"), TEXT("DA_One"));
		TSharedPtr<FJsonObject> Properties = MakeShared<FJsonObject>();
		Properties->SetStringField(TEXT("ItemSummary.Name"), TEXT("One"));
		Properties->SetNumberField(TEXT("Title"), 1);
		First->SetObjectField(TEXT("Properties"), Properties);
		List.Add(MakeShared<FJsonValueObject>(First));
		TSharedPtr<FJsonObject> Second = MakeShared<FJsonObject>();
		Second->SetStringField(TEXT("AssetName"), TEXT("DA_Two"));
		Second->SetStringField(TEXT("ClassPath"), TEXT("/Script/Game.AbstractItemData"));
		List.Add(MakeShared<FJsonValueObject>(Second));
		TSharedPtr<FJsonObject> Third = MakeShared<FJsonObject>();
		Third->SetStringField(TEXT("AssetName"), TEXT("DA_Three"));
		List.Add(MakeShared<FJsonValueObject>(Third));
		return List;
	};
	auto RunBatch = [this, &Items](bool bContinue, const TCHAR* Folder)
	{
		return Runner->Call(TEXT("data_asset_create_batch"), Arguments({{TEXT("Items"), MakeShared<FJsonValueArray>(Items())},
			{TEXT("DefaultClassPath"), Text(TEXT("/Script/Game.ItemDataAsset"))}, {TEXT("DefaultPackagePath"), Text(Folder)},
			{TEXT("Save"), Text(TEXT("false"))}, {TEXT("ContinueOnError"), MakeShared<FJsonValueBoolean>(bContinue)}}));
	};

	const TSharedPtr<FJsonObject> Stopped = RunBatch(false, TEXT("/Game/Stop"));
	EXPECT_TRUE(FToolRunner::IsError(Stopped));
	const TSharedPtr<FJsonObject> StoppedPayload = FToolRunner::Payload(Stopped);
	EXPECT_EQ(StoppedPayload->GetIntegerField(TEXT("requested_count")), 3);
	EXPECT_EQ(StoppedPayload->GetIntegerField(TEXT("processed_count")), 2);
	EXPECT_EQ(StoppedPayload->GetIntegerField(TEXT("created_count")), 1);
	EXPECT_EQ(StoppedPayload->GetIntegerField(TEXT("property_set_count")), 2);
	EXPECT_EQ(StoppedPayload->GetIntegerField(TEXT("failed_count")), 1);
	EXPECT_EQ(S(StoppedPayload->GetStringField(TEXT("mutation_policy"))), "sequential_no_rollback");
	const TSharedPtr<FJsonObject> Failed = StoppedPayload->GetArrayField(TEXT("items"))[1]->AsObject();
	EXPECT_EQ(S(Failed->GetStringField(TEXT("error"))), "Data Asset creation failed.");
	EXPECT_EQ(S(Failed->GetObjectField(TEXT("create_result"))->GetStringField(TEXT("error"))), "Class '/Script/Game.AbstractItemData' is not instantiable because it is abstract or deprecated.");
	EXPECT_TRUE(Failed->GetObjectField(TEXT("raw_create_tool_result"))->GetBoolField(TEXT("isError")));
	EXPECT_FALSE(Port->GetObjects().FindObject(TEXT("/Game/Stop/DA_Three.DA_Three")).IsValid());
	// The first item stays created with its properties: nothing is rolled back.
	EXPECT_EQ(S(Export(TEXT("/Game/Stop/DA_One.DA_One"), TEXT("ItemSummary"))), "(Name=\"One\")");
	EXPECT_EQ(S(Export(TEXT("/Game/Stop/DA_One.DA_One"), TEXT("Title"))), "1");

	const TSharedPtr<FJsonObject> Continued = FToolRunner::Payload(RunBatch(true, TEXT("/Game/Go")));
	EXPECT_EQ(Continued->GetIntegerField(TEXT("processed_count")), 3);
	EXPECT_EQ(Continued->GetIntegerField(TEXT("created_count")), 2);
	EXPECT_EQ(Continued->GetIntegerField(TEXT("failed_count")), 1);
	EXPECT_TRUE(Port->GetObjects().FindObject(TEXT("/Game/Go/DA_Three.DA_Three")).IsValid());

	TArray<TSharedPtr<FJsonValue>> Malformed;
	Malformed.Add(MakeShared<FJsonValueString>(TEXT("DA_Four")));
	Malformed.Add(MakeShared<FJsonValueObject>(MakeShared<FJsonObject>()));
	const TSharedPtr<FJsonObject> Bad = FToolRunner::Payload(Runner->Call(TEXT("data_asset_create_batch"), Arguments({{TEXT("Items"), MakeShared<FJsonValueArray>(Malformed)}, {TEXT("ContinueOnError"), Text(TEXT("true"))}})));
	EXPECT_EQ(S(Bad->GetArrayField(TEXT("items"))[0]->AsObject()->GetStringField(TEXT("error"))), "Batch item must be an object.");
	EXPECT_EQ(S(Bad->GetArrayField(TEXT("items"))[1]->AsObject()->GetStringField(TEXT("error"))), "Each batch item requires AssetName plus ClassPath/PackagePath or matching defaults.");
}

TEST_F(FDataAssetToolTest, SavedPackagesReachTheDiskAndLoadIntoTheNextEditor)
{
	ASSERT_FALSE(FToolRunner::IsError(Create(TEXT("DA_Saved"), TEXT("/Script/Game.ItemDataAsset"), TEXT("/Game/Items"), true)));
	const TSharedPtr<FJsonObject> Set1 = FToolRunner::Payload(Set(TEXT("DA_Saved"), TEXT("ItemSummary.Name"), Text(TEXT("Kept")), true));
	ASSERT_TRUE(Set1->GetBoolField(TEXT("saved")));
	Set(TEXT("DA_Saved"), TEXT("Scratch"), Text(TEXT("not saved")), true);
	EXPECT_FALSE(Port->GetSimulatedAssetAuthoring().IsPackageDirty(TEXT("/Game/Items/DA_Saved")));
	EXPECT_TRUE(std::filesystem::exists(Folder.Path("Saved/Game/Items/DA_Saved.json")));

	const TSharedPtr<FSimulatedEditorPort> Next = LoadInlineProject(DataAssetProject);
	Next->GetEditor().SetSavedPackagesDirectory(Folder.PathText("Saved"));
	TArray<FString> Errors;
	EXPECT_EQ(SimulatedPackageFiles::LoadSavedPackages(Next->GetEditor(), Errors), 1);
	EXPECT_TRUE(Errors.IsEmpty());
	const FZorvekMCPBridgeObjectHandle Reloaded = Next->GetObjects().LoadObject(TEXT("/Game/Items/DA_Saved.DA_Saved"));
	ASSERT_TRUE(Reloaded.IsValid());
	FString Summary;
	Next->GetReflection().FindProperty(Reloaded, TEXT("ItemSummary")).ExportText(Summary);
	EXPECT_EQ(S(Summary), "(Name=\"Kept\")");
	// Transient properties are not saved.
	FString Scratch;
	Next->GetReflection().FindProperty(Reloaded, TEXT("Scratch")).ExportText(Scratch);
	EXPECT_EQ(S(Scratch), "");
}

TEST_F(FDataAssetToolTest, AFailedSaveIsReportedAndTheAssetStaysCreatedAndChanged)
{
	Folder.WriteBytes("Saved/Game/Items/DA_Locked.json", "{}");
	::chmod(Folder.Path("Saved/Game/Items/DA_Locked.json").c_str(), 0444);

	const TSharedPtr<FJsonObject> Result = Create(TEXT("DA_Locked"), TEXT("/Script/Game.ItemDataAsset"), TEXT("/Game/Items"), true);
	EXPECT_FALSE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Payload = FToolRunner::Payload(Result);
	EXPECT_FALSE(Payload->GetBoolField(TEXT("saved")));
	EXPECT_TRUE(Payload->GetBoolField(TEXT("save_requested")));
	EXPECT_EQ(S(Payload->GetStringField(TEXT("save_error"))), "UPackage::SavePackage returned false for /Game/Items/DA_Locked.");
	EXPECT_TRUE(Port->GetObjects().FindObject(TEXT("/Game/Items/DA_Locked.DA_Locked")).IsValid());

	const TSharedPtr<FJsonObject> SetResult = FToolRunner::Payload(Set(TEXT("DA_Locked"), TEXT("Title"), Text(TEXT("Changed")), true));
	EXPECT_EQ(S(SetResult->GetStringField(TEXT("save_error"))), "UPackage::SavePackage returned false for /Game/Items/DA_Locked.");
	EXPECT_EQ(S(Export(TEXT("/Game/Items/DA_Locked.DA_Locked"), TEXT("Title"))), "Changed");
	EXPECT_TRUE(Port->GetSimulatedAssetAuthoring().IsPackageDirty(TEXT("/Game/Items/DA_Locked")));
	EXPECT_EQ(Folder.ReadBytes("Saved/Game/Items/DA_Locked.json"), "{}");
}

TEST(DataAssetSaving, TheHostsNextEditorStartsWithWhatTheLastOneSaved)
{
	// The host's editor saves under the project's Saved folder and reads it back on start.
	FTemporaryFolder Folder;
	FPaths::SetProjectDirForHost(Folder.PathText("Project") + TEXT("/"));
	struct FProjectDirReset
	{
		~FProjectDirReset() { FPaths::SetProjectDirForHost(FString()); }
	} ProjectDirReset;
	{
		const TSharedPtr<IZorvekMCPBridgeEditorPort> First = CreateZorvekMCPBridgeEditorPort();
		ASSERT_TRUE(First.IsValid());
		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		Server->SetEditorPort(First);
		const TSharedPtr<FJsonObject> Created = Server->ExecuteTool(TEXT("data_asset_create"), Arguments({{TEXT("ClassPath"), Text(TEXT("/Script/SampleGame.LootTableDataAsset"))},
			{TEXT("PackagePath"), Text(TEXT("/Game/Saved"))}, {TEXT("AssetName"), Text(TEXT("DA_Kept"))}}));
		ASSERT_TRUE(FToolRunner::Payload(Created)->GetBoolField(TEXT("saved")));
		Server->ExecuteTool(TEXT("data_asset_set_property"), Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("/Game/Data/DA_LootTable"))}, {TEXT("PropertyName"), Text(TEXT("TableName"))}, {TEXT("Value"), Text(TEXT("Renamed"))}}));
	}
	EXPECT_TRUE(std::filesystem::exists(Folder.Path("Project/Saved/SimulatedContent/Game/Saved/DA_Kept.json")));
	const TSharedPtr<IZorvekMCPBridgeEditorPort> Next = CreateZorvekMCPBridgeEditorPort();
	ASSERT_TRUE(Next.IsValid());
	EXPECT_TRUE(Next->GetObjects().LoadObject(TEXT("/Game/Saved/DA_Kept.DA_Kept")).IsValid());
	FString TableName;
	Next->GetReflection().FindProperty(Next->GetObjects().LoadObject(TEXT("/Game/Data/DA_LootTable.DA_LootTable")), TEXT("TableName")).ExportText(TableName);
	EXPECT_EQ(S(TableName), "Renamed");
}
