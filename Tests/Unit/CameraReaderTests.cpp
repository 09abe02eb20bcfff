// The gameplay camera reader on camera objects held inside struct properties: a 5.7 director's
// CameraRigProxyRedirectTable, arrays of entry structs, and the bound on how deep it looks.
#include "AssetTestSupport.h"
#include "Assets/ZorvekMCPBridgeAssetReaders.h"

using namespace ZorvekAssetTests;
using namespace ZorvekMCPBridgeAssets;

namespace
{
	std::vector<std::string> FlatGraphOf(const TSharedPtr<FJsonObject>& Camera)
	{
		std::vector<std::string> Flat;
		FlattenCameraGraph(Camera->GetObjectField(TEXT("object_graph")), Flat);
		return Flat;
	}
}

TEST(CameraReaderStructs, RigHeldOnlyByTheDirectorsRedirectTableIsListedAndWalked)
{
	// The sample's CA_Aim has a Blueprint director whose only rig is named by an entry of its
	// CameraRigProxyRedirectTable, beside the proxy it stands in for. Read as a user does.
	FToolRunner Runner(LoadSampleProject());
	const TSharedPtr<FJsonObject> Result = Runner.Call(TEXT("unreal_inspect_asset"), Arguments({{TEXT("AssetNameOrPath"), Text(TEXT("CA_Aim"))}}));
	ASSERT_FALSE(FToolRunner::IsError(Result));
	const TSharedPtr<FJsonObject> Camera = FToolRunner::Payload(Result)->GetObjectField(TEXT("gameplay_cameras"));

	EXPECT_EQ(S(Camera->GetObjectField(TEXT("camera_director"))->GetStringField(TEXT("class_name"))), "BlueprintCameraDirector");
	EXPECT_EQ(S(Camera->GetStringField(TEXT("camera_rigs_source"))), "CameraDirector");
	ASSERT_EQ(Camera->GetIntegerField(TEXT("camera_rigs_count")), 1);
	const TSharedPtr<FJsonObject> Rig = Camera->GetArrayField(TEXT("camera_rigs"))[0]->AsObject();
	EXPECT_EQ(S(Rig->GetStringField(TEXT("object_path"))), "/Game/Cameras/CR_Aim.CR_Aim");
	EXPECT_EQ(S(Rig->GetStringField(TEXT("role"))), "camera_rig");
	ASSERT_EQ(Camera->GetIntegerField(TEXT("camera_rig_proxies_count")), 1);
	const TSharedPtr<FJsonObject> Proxy = Camera->GetArrayField(TEXT("camera_rig_proxies"))[0]->AsObject();
	EXPECT_EQ(S(Proxy->GetStringField(TEXT("object_path"))), "/Game/Cameras/CRP_Aim.CRP_Aim");
	EXPECT_EQ(S(Proxy->GetStringField(TEXT("role"))), "camera_rig_proxy");

	// The graph reaches both through the table and goes on into the rig.
	EXPECT_EQ(FlatGraphOf(Camera), (std::vector<std::string>{
		"asset:CA_Aim",
		"CameraDirector:BlueprintCameraDirector",
		"CameraRigProxyRedirectTable.Entries[0].CameraRigProxy:CRP_Aim",
		"CameraRigProxyRedirectTable.Entries[0].CameraRig:CR_Aim",
		"RootNode:AimLens",
		"AllNodeTreeObjects[0]:AimLens (cycle)"}));
	const TSharedPtr<FJsonObject> RigNode = Camera->GetObjectField(TEXT("object_graph"))->GetArrayField(TEXT("children"))[0]->AsObject()->GetArrayField(TEXT("children"))[1]->AsObject();
	EXPECT_EQ(RigNode->GetIntegerField(TEXT("depth")), 2);
	EXPECT_TRUE(RigNode->GetObjectField(TEXT("properties"))->HasField(TEXT("GameplayTags")));
}

TEST(CameraReaderStructs, The57RigListIsDeprecatedAndNeitherListedNorWalked)
{
	// 5.7 reflects CameraRigs_DEPRECATED as "CameraRigs" with CPF_Deprecated; the camera system
	// ignores what it holds (unreal-behaviour-world-assets.md §7). Fill it as an old tool would.
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FString Error;
	ASSERT_TRUE(Port->GetEditor().SetPropertyText(Port->GetEditor().FindObject(TEXT("/Game/Cameras/CA_Aim.CA_Aim")), TEXT("CameraRigs"), TEXT("(/Game/Cameras/CR_Hero.CR_Hero)"), Error)) << S(Error);

	TArray<TSharedPtr<FJsonValue>> Failures;
	const TSharedPtr<FJsonObject> Camera = ReadGameplayCameraAsset(*Port, FindObject(*Port, TEXT("/Game/Cameras/CA_Aim.CA_Aim")), Failures);
	EXPECT_EQ(S(Camera->GetStringField(TEXT("camera_rigs_source"))), "CameraDirector");
	EXPECT_EQ(ToStd(Collect(Camera->GetArrayField(TEXT("camera_rigs")), TEXT("name"))), (std::vector<std::string>{"CR_Aim"}));
	for (const std::string& Entry : FlatGraphOf(Camera))
	{
		EXPECT_EQ(Entry.find("CR_Hero"), std::string::npos) << Entry;
	}
}

TEST(CameraReaderStructs, ReferencesInNestedStructsAndArraysAreFoundDownToFourLevels)
{
	// A director with a chain of nested structs (a rig at four levels below the property and
	// one at five), an array of entry structs each holding an array of rigs, and a transient
	// field that is not followed.
	const TSharedPtr<FSimulatedEditorPort> Port = LoadInlineProject(TEXT(
		"\"structs\": ["
		"{\"path\": \"/Script/Probe.Nest1\", \"properties\": [{\"name\": \"Inner\", \"type\": \"struct:/Script/Probe.Nest2\"}]},"
		"{\"path\": \"/Script/Probe.Nest2\", \"properties\": [{\"name\": \"Inner\", \"type\": \"struct:/Script/Probe.Nest3\"}]},"
		"{\"path\": \"/Script/Probe.Nest3\", \"properties\": [{\"name\": \"Inner\", \"type\": \"struct:/Script/Probe.Nest4\"}]},"
		"{\"path\": \"/Script/Probe.Nest4\", \"properties\": [{\"name\": \"Rig\", \"type\": \"object:/Script/GameplayCameras.CameraRigAsset\"}, {\"name\": \"Inner\", \"type\": \"struct:/Script/Probe.Nest5\"}]},"
		"{\"path\": \"/Script/Probe.Nest5\", \"properties\": [{\"name\": \"Rig\", \"type\": \"object:/Script/GameplayCameras.CameraRigAsset\"}]},"
		"{\"path\": \"/Script/Probe.Slot\", \"properties\": [{\"name\": \"Rigs\", \"type\": \"array:object:/Script/GameplayCameras.CameraRigAsset\"},"
		"  {\"name\": \"Cached\", \"type\": \"object:/Script/GameplayCameras.CameraRigAsset\", \"flags\": [\"Transient\"]}]}],"
		"\"classes\": [{\"path\": \"/Script/GameplayCameras.ProbeCameraDirector\", \"super\": \"/Script/GameplayCameras.CameraDirector\", \"properties\": ["
		"  {\"name\": \"Chain\", \"type\": \"struct:/Script/Probe.Nest1\"}, {\"name\": \"Slots\", \"type\": \"array:struct:/Script/Probe.Slot\"}]}],"
		"\"assets\": ["
		"{\"package\": \"/Game/RigA\", \"class\": \"/Script/GameplayCameras.CameraRigAsset\"},"
		"{\"package\": \"/Game/RigTooDeep\", \"class\": \"/Script/GameplayCameras.CameraRigAsset\"},"
		"{\"package\": \"/Game/RigC\", \"class\": \"/Script/GameplayCameras.CameraRigAsset\"},"
		"{\"package\": \"/Game/RigCached\", \"class\": \"/Script/GameplayCameras.CameraRigAsset\"},"
		"{\"package\": \"/Game/Cam\", \"class\": \"/Script/GameplayCameras.CameraAsset\", \"values\": {\"CameraDirector\": \"/Game/Cam.Cam:Director\"},"
		"  \"subobjects\": [{\"name\": \"Director\", \"class\": \"/Script/GameplayCameras.ProbeCameraDirector\", \"values\": {"
		"    \"Chain\": \"(Inner=(Inner=(Inner=(Rig=/Game/RigA.RigA,Inner=(Rig=/Game/RigTooDeep.RigTooDeep)))))\","
		"    \"Slots\": \"((Rigs=(/Game/RigC.RigC,None),Cached=/Game/RigCached.RigCached),(Rigs=(/Game/RigA.RigA)))\"}}]}]"));
	ASSERT_TRUE(Port.IsValid());
	TArray<TSharedPtr<FJsonValue>> Failures;
	const TSharedPtr<FJsonObject> Camera = ReadGameplayCameraAsset(*Port, FindObject(*Port, TEXT("/Game/Cam.Cam")), Failures);

	// Each rig once, in property order; the null element, the rig five levels down and the
	// transient field's rig are not there.
	EXPECT_EQ(ToStd(Collect(Camera->GetArrayField(TEXT("camera_rigs")), TEXT("name"))), (std::vector<std::string>{"RigA", "RigC"}));
	EXPECT_EQ(Camera->GetIntegerField(TEXT("camera_rig_proxies_count")), 0);
	EXPECT_EQ(FlatGraphOf(Camera), (std::vector<std::string>{
		"asset:Cam",
		"CameraDirector:Director",
		"Chain.Inner.Inner.Inner.Rig:RigA",
		"Slots[0].Rigs[0]:RigC",
		"Slots[1].Rigs[0]:RigA (cycle)"}));
}
