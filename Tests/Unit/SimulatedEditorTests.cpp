// The simulated editor behaves like the engine where the tools depend on it: text forms, path
// names, class lookups, registry filters, and fixtures that fail loudly.
#include "AssetTestSupport.h"
#include "EditorPort/ZorvekMCPBridgePortTypeLookup.h"

using namespace ZorvekAssetTests;

namespace
{
	FString ExportOf(FSimulatedEditorPort& Port, const TCHAR* ObjectPath, const TCHAR* PropertyName)
	{
		FString Text;
		Port.GetReflection().FindProperty(FindObject(Port, ObjectPath), PropertyName).ExportText(Text);
		return Text;
	}

	std::vector<std::string> Enumerate(FSimulatedEditorPort& Port, const FZorvekMCPBridgeAssetFilter& Filter)
	{
		std::vector<std::string> Names;
		Port.GetAssetRegistry().EnumerateAssets(Filter, [&Names](const FZorvekMCPBridgeAssetData& Asset)
		{
			Names.push_back(S(Asset.AssetName));
			return true;
		});
		return Names;
	}
}

TEST(SimulatedEditorText, ExportsTheEnginesTextForms)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	const TCHAR* const Rig = TEXT("/Game/Cameras/CR_Hero.CR_Hero");
	EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/Cameras/CR_Hero.CR_Hero:HeroLens"), TEXT("FieldOfView"))), "75.000000");
	EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/Cameras/CR_Hero.CR_Hero:HeroLens"), TEXT("bIsEnabled"))), "True");
	EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/Materials/M_Emissive.M_Emissive"), TEXT("BlendMode"))), "BLEND_Translucent");
	EXPECT_EQ(S(ExportOf(*Port, Rig, TEXT("Guid"))), "5A0E002800001028000020280000302" "8");
	EXPECT_EQ(S(ExportOf(*Port, Rig, TEXT("RootNode"))), "/Script/GameplayCameras.ArrayCameraNode'/Game/Cameras/CR_Hero.CR_Hero:RootArrayNode'");
	// Inside containers paths and names are quoted.
	EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/Cameras/CR_Hero.CR_Hero:RootArrayNode"), TEXT("Children"))),
		"(/Script/GameplayCameras.OffsetCameraNode'\"/Game/Cameras/CR_Hero.CR_Hero:BoomOffset\"',/Script/GameplayCameras.FieldOfViewCameraNode'\"/Game/Cameras/CR_Hero.CR_Hero:HeroLens\"')");
	EXPECT_EQ(S(ExportOf(*Port, Rig, TEXT("GameplayTags"))), "(GameplayTags=((TagName=\"Camera.Hero.Follow\")))");
	EXPECT_EQ(S(ExportOf(*Port, Rig, TEXT("EnterTransitions"))), "");
	// Enum classes export the enumerator without its type.
	EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/AI/ST_Director.ST_Director:EditorData.RootState"), TEXT("Type"))), "State");
	EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/Blueprints/BP_Hero.BP_Hero"), TEXT("GeneratedClass"))), "/Script/Engine.BlueprintGeneratedClass'/Game/Blueprints/BP_Hero.BP_Hero_C'");
}

TEST(SimulatedEditorText, EveryExportedValueImportsBackToTheSameText)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedEditor& Editor = Port->GetEditor();
	int32 Checked = 0;
	for (const FZorvekMCPBridgeAssetData& Asset : Editor.GetRegistry())
	{
		FSimulatedObject* Object = Editor.FindObject(Asset.ObjectPath);
		for (size_t Index = 0; Object && Index < Object->Values.size(); ++Index)
		{
			const FSimulatedProperty& Property = *Object->Class->AllProperties[Index];
			FString Text;
			if (!Editor.ExportValueText(Property, Object->Values[Index], false, Text))
			{
				continue;
			}
			FSimulatedValue Copy = Editor.MakeDefaultValue(Property);
			FString Error;
			ASSERT_TRUE(Editor.ImportValueText(Property, Copy, Text, Error)) << S(Asset.ObjectPath) << " " << S(Property.Name) << ": " << S(Error) << " in " << S(Text);
			FString Again;
			Editor.ExportValueText(Property, Copy, false, Again);
			EXPECT_EQ(S(Again), S(Text)) << S(Property.Name);
			++Checked;
		}
	}
	EXPECT_GT(Checked, 100);
}

TEST(SimulatedEditorText, ImportRefusesWhatTheEngineRefuses)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedEditor& Editor = Port->GetEditor();
	FSimulatedObject* Loot = Editor.FindObject(TEXT("/Game/Data/DA_LootTable.DA_LootTable"));
	FString Error;
	struct FCase
	{
		const TCHAR* Property;
		const TCHAR* Text;
	};
	const FCase Refused[] = {
		{TEXT("InternalSeed"), TEXT("twelve")},
		{TEXT("DropWeights"), TEXT("(1.0,oops)")},
		{TEXT("DropWeights"), TEXT("(1.0,2.0")},
		{TEXT("Summary"), TEXT("Value=3")},
		{TEXT("Summary"), TEXT("(Value=\"unclosed)")},
		{TEXT("BonusIcon"), TEXT("/Game/Nowhere/T.T")},
		{TEXT("NativeClass"), TEXT("/Script/Engine.Actor")},
		{TEXT("Tiers"), TEXT("(Tier2=(Tier3=(Tier4=(Depth=x))))")}};
	for (const FCase& Case : Refused)
	{
		const FString Before = ExportOf(*Port, TEXT("/Game/Data/DA_LootTable.DA_LootTable"), Case.Property);
		EXPECT_FALSE(Editor.SetPropertyText(Loot, Case.Property, Case.Text, Error)) << S(Case.Text);
		EXPECT_FALSE(Error.IsEmpty());
		EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/Data/DA_LootTable.DA_LootTable"), Case.Property)), S(Before)) << S(Case.Text);
	}
	// Accepted spellings: enum class names with their type, bools in any case, numeric prefixes.
	const TCHAR* const State = TEXT("/Game/AI/ST_Director.ST_Director:EditorData.RootState");
	EXPECT_TRUE(Editor.SetPropertyText(Editor.FindObject(State), TEXT("Type"), TEXT("EStateTreeStateType::Group"), Error));
	EXPECT_EQ(S(ExportOf(*Port, State, TEXT("Type"))), "Group");
	EXPECT_TRUE(Editor.SetPropertyText(Editor.FindObject(State), TEXT("bEnabled"), TEXT("false"), Error));
	EXPECT_EQ(S(ExportOf(*Port, State, TEXT("bEnabled"))), "False");
	EXPECT_TRUE(Editor.SetPropertyText(Loot, TEXT("InternalSeed"), TEXT("12abc"), Error));
	EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/Data/DA_LootTable.DA_LootTable"), TEXT("InternalSeed"))), "12");
}

TEST(SimulatedEditorObjects, PathsIdentityAndClassesFollowTheEngine)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	IZorvekMCPBridgeObjects& Objects = Port->GetObjects();
	const FZorvekMCPBridgeObjectIdentity Child = Objects.GetIdentity(FindObject(*Port, TEXT("/Game/AI/ST_Director.ST_Director:EditorData.RootState.InspectCameraState")));
	EXPECT_EQ(S(Child.PackagePath), "/Game/AI/ST_Director");
	EXPECT_EQ(S(Child.Name), "InspectCameraState");
	EXPECT_EQ(S(Child.ClassPath), "/Script/StateTreeEditorModule.StateTreeState");
	// Paths are names: case does not matter.
	EXPECT_TRUE(Objects.FindObject(TEXT("/game/ai/st_director.ST_DIRECTOR")).IsValid());

	const FZorvekMCPBridgeTypeInfo Generated = Objects.GetClassInfo(FindObject(*Port, TEXT("/Game/Blueprints/BP_Hero.BP_Hero_C")));
	EXPECT_EQ(S(Generated.Path), "/Script/Engine.BlueprintGeneratedClass");
	FZorvekMCPBridgeTypeInfo HeroClass;
	ASSERT_TRUE(Objects.LoadClass(TEXT("/Game/Blueprints/BP_Hero.BP_Hero_C"), HeroClass));
	EXPECT_EQ(S(HeroClass.NativeClassPath), "/Script/Engine.Actor");
	EXPECT_NE(HeroClass.ClassFlags & ZorvekMCPBridgeClassFlags::CompiledFromBlueprint, 0u);
	EXPECT_FALSE(Objects.LoadClass(TEXT("/Script/Engine.NoSuchClass"), HeroClass));

	FZorvekMCPBridgeTypeInfo Type;
	EXPECT_TRUE(Objects.FindType(EZorvekMCPBridgeTypeKind::Struct, TEXT("Vector"), Type));
	EXPECT_EQ(S(Type.Path), "/Script/CoreUObject.Vector");
	EXPECT_TRUE(Objects.FindType(EZorvekMCPBridgeTypeKind::Enum, TEXT("/Script/Engine.EBlendMode"), Type));
	EXPECT_FALSE(Objects.FindType(EZorvekMCPBridgeTypeKind::Class, TEXT("Vector"), Type));

	EXPECT_TRUE(Objects.IsA(FindObject(*Port, TEXT("/Game/Materials/MI_Rock_Wet.MI_Rock_Wet")), TEXT("/Script/Engine.MaterialInterface")));
	EXPECT_FALSE(Objects.IsA(FindObject(*Port, TEXT("/Game/Materials/MI_Rock_Wet.MI_Rock_Wet")), TEXT("/Script/Engine.Material")));
	EXPECT_FALSE(Objects.IsA(FindObject(*Port, TEXT("/Game/Materials/MI_Rock_Wet.MI_Rock_Wet")), TEXT("MaterialInterface")));
	EXPECT_TRUE(Objects.IsChildOf(TEXT("/Script/UMGEditor.WidgetBlueprint"), TEXT("/Script/Engine.Blueprint")));
	EXPECT_FALSE(Objects.LoadObject(TEXT("/Game/Broken/M_Broken.M_Broken")).IsValid());
	EXPECT_TRUE(Objects.FindObject(TEXT("/Game/Broken/M_Broken.M_Broken")).IsValid());
}

TEST(SimulatedEditorRegistry, FiltersByFolderAndClassAsTheEngineDoes)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FZorvekMCPBridgeAssetFilter Filter;
	EXPECT_TRUE(Enumerate(*Port, Filter).empty());

	Filter.PackagePaths = {TEXT("/Game")};
	EXPECT_TRUE(Enumerate(*Port, Filter).empty());
	Filter.bRecursivePaths = true;
	EXPECT_EQ(Enumerate(*Port, Filter).size(), Port->GetEditor().GetRegistry().size());

	Filter.PackagePaths = {TEXT("/Game/Mat")};
	EXPECT_TRUE(Enumerate(*Port, Filter).empty());

	Filter.PackagePaths = {TEXT("/Game")};
	Filter.ClassPaths = {TEXT("/Script/Engine.Blueprint")};
	EXPECT_EQ(Enumerate(*Port, Filter), (std::vector<std::string>{"BP_Hero", "BP_Companion", "BP_Retired"}));
	Filter.bRecursiveClasses = true;
	EXPECT_EQ(Enumerate(*Port, Filter), (std::vector<std::string>{"BP_Hero", "WBP_HeroHUD", "BP_Companion", "BP_Retired"}));

	Filter.ClassPaths = {TEXT("/Script/Engine.MaterialInterface")};
	EXPECT_EQ(Enumerate(*Port, Filter), (std::vector<std::string>{"M_Rock", "MI_Rock_Wet", "MI_Rock_Plain", "M_Emissive", "M_Broken"}));

	const TArray<FZorvekMCPBridgeAssetData> Entries = Port->GetAssetRegistry().GetAssetsByPackageName(TEXT("/Game/Materials/MI_Rock_Wet"));
	ASSERT_EQ(Entries.Num(), 1);
	EXPECT_EQ(S(Entries[0].ObjectPath), "/Game/Materials/MI_Rock_Wet.MI_Rock_Wet");
	EXPECT_EQ(S(Entries[0].PackagePath), "/Game/Materials");
	EXPECT_TRUE(Port->GetAssetRegistry().GetAssetsByPackageName(TEXT("/Game/Scratch/DA_Unsaved")).IsEmpty());
}

TEST(SimulatedEditorFixtures, LoadErrorsNameTheEntry)
{
	struct FCase
	{
		const TCHAR* Body;
		const char* Expected;
	};
	const FCase Cases[] = {
		{TEXT("\"assets\": [{\"package\": \"/Game/A\", \"class\": \"/Script/Engine.Nope\"}]"), "assets[0] (/Game/A) has class /Script/Engine.Nope, which is not defined."},
		{TEXT("\"classes\": [{\"path\": \"/Script/T.C\", \"properties\": [{\"name\": \"P\", \"type\": \"vector\"}]}]"), "Unknown property type 'vector'."},
		{TEXT("\"classes\": [{\"path\": \"/Script/T.C\", \"super\": \"/Script/T.Later\"}]"), "Super class /Script/T.Later of /Script/T.C is not defined (define it first)."},
		{TEXT("\"assets\": [{\"package\": \"/Game/A\", \"class\": \"/Script/Engine.Texture2D\", \"values\": {\"SRGB\": \"maybe\"}}]"), "value SRGB: 'maybe' is not a bool."},
		{TEXT("\"classes\": [{\"path\": \"/Script/T.C\", \"flags\": [\"Shiny\"]}]"), "has an unknown flag 'Shiny'."}};
	for (const FCase& Case : Cases)
	{
		FString Error;
		EXPECT_FALSE(LoadInlineProject(Case.Body, &Error).IsValid());
		EXPECT_TRUE(Error.Contains(UECompatFromUtf8(Case.Expected))) << S(Error);
	}

	FSimulatedEditor Editor;
	FString Error;
	EXPECT_FALSE(Editor.LoadProjectFile(TEXT("/nonexistent/project.json"), Error));
	EXPECT_EQ(S(Error), "Cannot read the project file /nonexistent/project.json.");
}

TEST(SimulatedEditorObjects, ServeThePinTypeLookup)
{
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	const FZorvekMCPBridgePortTypeLookup Lookup(Port->GetObjects());
	FZorvekMCPBridgeTypeIdentity Type;
	ASSERT_TRUE(Lookup.LoadClass(TEXT("/Script/Engine.Actor"), Type));
	EXPECT_EQ(S(Type.PathName), "/Script/Engine.Actor");
	EXPECT_EQ(S(Type.Name), "Actor");
	// A struct at a class path is not a class.
	EXPECT_FALSE(Lookup.LoadClass(TEXT("/Script/CoreUObject.Vector"), Type));
	ASSERT_TRUE(Lookup.FindStruct(TEXT("Rotator"), Type));
	EXPECT_EQ(S(Type.PathName), "/Script/CoreUObject.Rotator");
	ASSERT_TRUE(Lookup.FindEnum(TEXT("/Script/Engine.EBlendMode"), Type));
	EXPECT_FALSE(Lookup.FindEnum(TEXT("Rotator"), Type));
}
