// The camera and StateTree fixture: what it builds on the 5.7 engine types, read back through
// the inspector as a user would.
#include "AISetupTestSupport.h"
#include "AssetTestSupport.h"
#include "Assets/ZorvekMCPBridgeReproAssets.h"

using namespace ZorvekAssetTests;

namespace
{
	TSharedPtr<FJsonObject> Inspect(FToolRunner& Runner, const FString& ObjectPath, const TCHAR* Section)
	{
		const TSharedPtr<FJsonObject> Result = Runner.Call(TEXT("unreal_inspect_asset"), Arguments({{TEXT("AssetNameOrPath"), MakeShared<FJsonValueString>(ObjectPath)}}));
		EXPECT_FALSE(FToolRunner::IsError(Result)) << S(ObjectPath);
		return FToolRunner::Payload(Result)->GetObjectField(Section);
	}

	std::vector<std::string> FailureLines(const TSharedPtr<FJsonObject>& Result)
	{
		std::vector<std::string> Lines;
		for (const TSharedPtr<FJsonValue>& Failure : Result->GetArrayField(TEXT("partial_failures")))
		{
			Lines.push_back(S(Failure->AsObject()->GetStringField(TEXT("stage")) + TEXT(": ") + Failure->AsObject()->GetStringField(TEXT("reason"))));
		}
		return Lines;
	}
}

TEST(ReproAssets, BuildsEverySectionTheReadersPromiseWithThe57SuccessorsAndSavesNothing)
{
	FTemporaryFolder Folder;
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	Port->GetEditor().SetSavedPackagesDirectory(Folder.PathText("Saved"));
	FToolRunner Runner(Port);
	const TSharedPtr<FJsonObject> Result = FToolRunner::Payload(Runner.Call(TEXT("unreal_create_mossbank_repro_assets"),
		Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/Probe"))}, {TEXT("AssetPrefix"), Text(TEXT("Probe"))}})));

	EXPECT_TRUE(Result->GetBoolField(TEXT("created")));
	EXPECT_EQ(S(Result->GetStringField(TEXT("camera_asset_object_path"))), "/Game/Probe/CA_Probe_Camera.CA_Probe_Camera");
	EXPECT_EQ(S(Result->GetStringField(TEXT("camera_rig_asset_path"))), "/Game/Probe/CR_Probe_Camera");
	EXPECT_EQ(S(Result->GetStringField(TEXT("state_tree_object_path"))), "/Game/Probe/ST_Probe_Director.ST_Probe_Director");
	// unreal-behaviour-world-assets.md §7: the recipe's parameter class is gone in 5.7; the
	// deprecated CameraRigs still takes the rig in memory.
	EXPECT_EQ(FailureLines(Result), (std::vector<std::string>{"class_load: Could not load /Script/GameplayCameras.CameraRigInterfaceParameter."}));

	const TSharedPtr<FJsonObject> Camera = Inspect(Runner, Result->GetStringField(TEXT("camera_asset_object_path")), TEXT("gameplay_cameras"));
	EXPECT_EQ(S(Camera->GetObjectField(TEXT("camera_director"))->GetStringField(TEXT("class_name"))), "SingleCameraDirector");
	ASSERT_EQ(Camera->GetIntegerField(TEXT("camera_rigs_count")), 1);
	EXPECT_EQ(S(Camera->GetStringField(TEXT("camera_rigs_source"))), "CameraDirector");
	EXPECT_EQ(S(Camera->GetArrayField(TEXT("camera_rigs"))[0]->AsObject()->GetStringField(TEXT("object_path"))), "/Game/Probe/CR_Probe_Camera.CR_Probe_Camera");

	const TSharedPtr<FJsonObject> Rig = Inspect(Runner, Result->GetStringField(TEXT("camera_rig_object_path")), TEXT("gameplay_cameras"));
	EXPECT_EQ(S(Rig->GetObjectField(TEXT("root_node"))->GetStringField(TEXT("object_path"))), "/Game/Probe/CR_Probe_Camera.CR_Probe_Camera:RootArrayNode");
	ASSERT_EQ(Rig->GetIntegerField(TEXT("interface_parameters_count")), 1);
	const TSharedPtr<FJsonObject> Parameter = Rig->GetArrayField(TEXT("interface_parameters"))[0]->AsObject();
	EXPECT_EQ(S(Parameter->GetStringField(TEXT("class_name"))), "CameraObjectInterfaceBlendableParameter");
	EXPECT_EQ(S(Rig->GetStringField(TEXT("interface_parameters_source"))), "Interface.BlendableParameters+Interface.DataParameters");
	FString ParameterName;
	Port->GetReflection().FindProperty(Port->GetObjects().FindObject(Parameter->GetStringField(TEXT("object_path"))), TEXT("InterfaceParameterName")).ExportText(ParameterName);
	EXPECT_EQ(S(ParameterName), "DummyDistance");

	const TSharedPtr<FJsonObject> Tree = Inspect(Runner, Result->GetStringField(TEXT("state_tree_object_path")), TEXT("state_tree"));
	EXPECT_EQ(S(Tree->GetStringField(TEXT("editor_data_status"))), "available");
	ASSERT_EQ(Tree->GetIntegerField(TEXT("states_count")), 1);
	const TSharedPtr<FJsonObject> Root = Tree->GetArrayField(TEXT("states"))[0]->AsObject();
	EXPECT_EQ(S(Root->GetStringField(TEXT("state_name"))), "Root");
	ASSERT_EQ(Root->GetIntegerField(TEXT("child_count")), 1);
	EXPECT_EQ(S(Root->GetArrayField(TEXT("children"))[0]->AsObject()->GetStringField(TEXT("state_name"))), "InspectCamera");

	// Nothing is saved: the packages stay dirty and no file is written.
	EXPECT_TRUE(Port->GetSimulatedAssetAuthoring().IsPackageDirty(TEXT("/Game/Probe/CA_Probe_Camera")));
	EXPECT_FALSE(std::filesystem::exists(Folder.Path("Saved")));
}

TEST(ReproAssets, RunsASecondApartLandInTwoFoldersAndARepeatInOneFolderReplacesNothing)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	ZorvekMCPBridgeReproAssets::FParams Params;
	Params.Now = FDateTime(2026, 3, 4, 5, 6, 7);
	const TSharedPtr<FJsonObject> First = ZorvekMCPBridgeReproAssets::CreateMossbankReproAssets(*Port, Params);
	Params.Now = FDateTime(2026, 3, 4, 5, 6, 8);
	const TSharedPtr<FJsonObject> Second = ZorvekMCPBridgeReproAssets::CreateMossbankReproAssets(*Port, Params);
	EXPECT_EQ(S(First->GetStringField(TEXT("package_path"))), "/Game/ZorvekRepro/MossbankHG_20260304_050607");
	EXPECT_EQ(S(Second->GetStringField(TEXT("package_path"))), "/Game/ZorvekRepro/MossbankHG_20260304_050608");
	EXPECT_EQ(S(Second->GetStringField(TEXT("camera_asset_object_path"))), "/Game/ZorvekRepro/MossbankHG_20260304_050608/CA_ZorvekHG_Camera.CA_ZorvekHG_Camera");
	EXPECT_TRUE(Second->GetBoolField(TEXT("created")));

	const int32 ObjectsBefore = Port->GetEditor().GetObjectCount();
	const TSharedPtr<FJsonObject> Repeat = ZorvekMCPBridgeReproAssets::CreateMossbankReproAssets(*Port, Params);
	EXPECT_FALSE(Repeat->GetBoolField(TEXT("created")));
	// No asset was made, so no setup step runs.
	EXPECT_EQ(FailureLines(Repeat), (std::vector<std::string>{
		"asset_create: Could not create dummy CameraAsset.",
		"asset_create: Could not create dummy CameraRigAsset.",
		"asset_create: Could not create dummy StateTree."}));
	EXPECT_EQ(Port->GetEditor().GetObjectCount(), ObjectsBefore);
}
