// The simulated editor behaves like the engine where the tools depend on it: text forms on the
// sample project (the rules themselves are in SimulatedTextFormTests.cpp), path names, class
// lookups, registry filters and in-memory assets, and fixtures that fail loudly.
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
	// Inside containers references are quoted whole (unreal-behaviour-world-assets.md §1.4).
	EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/Cameras/CR_Hero.CR_Hero:RootArrayNode"), TEXT("Children"))),
		"(\"/Script/GameplayCameras.OffsetCameraNode'/Game/Cameras/CR_Hero.CR_Hero:BoomOffset'\",\"/Script/GameplayCameras.FieldOfViewCameraNode'/Game/Cameras/CR_Hero.CR_Hero:HeroLens'\")");
	// The transient ParentTags stay out.
	EXPECT_EQ(S(ExportOf(*Port, Rig, TEXT("GameplayTags"))), "(GameplayTags=((TagName=\"Camera.Hero.Follow\")))");
	// ImportedSize is an FIntPoint: integers (§1.4).
	EXPECT_EQ(S(ExportOf(*Port, TEXT("/Game/Textures/T_M_Rock_D.T_M_Rock_D"), TEXT("ImportedSize"))), "(X=2048,Y=2048)");
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
			if (!Editor.ExportValueText(Property, Object->Values[Index], false, Text, Object))
			{
				continue;
			}
			// Into zero memory: what the export leaves out is zero.
			FSimulatedValue Copy = Editor.MakeZeroValue(Property);
			FString Error;
			ASSERT_TRUE(Editor.ImportValueText(Property, Copy, Text, Error, Object)) << S(Asset.ObjectPath) << " " << S(Property.Name) << ": " << S(Error) << " in " << S(Text);
			FString Again;
			Editor.ExportValueText(Property, Copy, false, Again, Object);
			EXPECT_EQ(S(Again), S(Text)) << S(Property.Name);
			++Checked;
		}
	}
	EXPECT_GT(Checked, 100);
}

TEST(SimulatedEditorText, ImportRefusesOnlyWhatTheEngineRefuses)
{
	// unreal-behaviour-world-assets.md §1.9: only bad bools, integers without digits, unknown enum
	// names, broken struct and array texts and class references of the wrong meta class fail.
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	FSimulatedEditor& Editor = Port->GetEditor();
	const TCHAR* const LootPath = TEXT("/Game/Data/DA_LootTable.DA_LootTable");
	FSimulatedObject* Loot = Editor.FindObject(LootPath);
	FString Error;
	struct FCase
	{
		const TCHAR* Property;
		const TCHAR* Text;
		bool bImports;
		// The export afterwards; null when the value must be as it was.
		const char* After;
	};
	const FCase Cases[] = {
		{TEXT("InternalSeed"), TEXT("twelve"), false, nullptr},
		{TEXT("Summary"), TEXT("Value=3"), false, nullptr},
		{TEXT("Summary"), TEXT("(Value=\"unclosed)"), false, nullptr},
		{TEXT("NativeClass"), TEXT("/Script/Engine.Actor"), false, nullptr},
		// The engine writes arrays as it reads them: a failure keeps what was read.
		{TEXT("DropWeights"), TEXT("(1.0,oops)"), false, "(1.000000,0.000000)"},
		{TEXT("DropWeights"), TEXT("(1.0,2.0"), false, "(1.000000,2.000000)"},
		// A path to nothing is a null reference; a field that does not parse is skipped.
		{TEXT("FallbackTable"), TEXT("/Game/Nowhere/T.T"), true, "None"},
		{TEXT("Tiers"), TEXT("(Tier2=(Tier3=(Tier4=(Depth=x))))"), true, nullptr},
		{TEXT("InternalSeed"), TEXT("12abc"), true, "12"}};
	for (const FCase& Case : Cases)
	{
		const FString Before = ExportOf(*Port, LootPath, Case.Property);
		Error.Reset();
		EXPECT_EQ(Editor.SetPropertyText(Loot, Case.Property, Case.Text, Error), Case.bImports) << S(Case.Text);
		EXPECT_EQ(Error.IsEmpty(), Case.bImports) << S(Case.Text);
		EXPECT_EQ(S(ExportOf(*Port, LootPath, Case.Property)), Case.After ? std::string(Case.After) : S(Before)) << S(Case.Text);
	}
	// Accepted spellings: enum class names with their type, bools in any case.
	const TCHAR* const State = TEXT("/Game/AI/ST_Director.ST_Director:EditorData.RootState");
	EXPECT_TRUE(Editor.SetPropertyText(Editor.FindObject(State), TEXT("Type"), TEXT("EStateTreeStateType::Group"), Error));
	EXPECT_EQ(S(ExportOf(*Port, State, TEXT("Type"))), "Group");
	EXPECT_TRUE(Editor.SetPropertyText(Editor.FindObject(State), TEXT("bEnabled"), TEXT("false"), Error));
	EXPECT_EQ(S(ExportOf(*Port, State, TEXT("bEnabled"))), "False");
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
	// Every project entry (engine content lives under /Engine), and the loaded asset that has none.
	const size_t GameEntries = (size_t)std::count_if(Port->GetEditor().GetRegistry().begin(), Port->GetEditor().GetRegistry().end(), [](const FZorvekMCPBridgeAssetData& Asset)
	{
		return Asset.PackageName.StartsWith(TEXT("/Game/"));
	});
	EXPECT_EQ(Enumerate(*Port, Filter).size(), GameEntries + 1);

	Filter.PackagePaths = {TEXT("/Game/Mat")};
	EXPECT_TRUE(Enumerate(*Port, Filter).empty());

	Filter.PackagePaths = {TEXT("/Game")};
	Filter.ClassPaths = {TEXT("/Script/Engine.Blueprint")};
	EXPECT_EQ(Enumerate(*Port, Filter), (std::vector<std::string>{"BP_Hero", "BP_Companion", "BPI_Interactable", "BP_Showcase", "BP_NoParent", "BP_ForestTree", "BP_Retired"}));
	Filter.bRecursiveClasses = true;
	EXPECT_EQ(Enumerate(*Port, Filter), (std::vector<std::string>{"BP_Hero", "WBP_HeroHUD", "BP_Companion", "BPI_Interactable", "BP_Showcase", "BP_NoParent", "BP_ForestTree", "BP_Retired"}));

	Filter.ClassPaths = {TEXT("/Script/Engine.MaterialInterface")};
	EXPECT_EQ(Enumerate(*Port, Filter), (std::vector<std::string>{"M_Rock", "MI_Rock_Wet", "MI_Rock_Plain", "M_Emissive", "M_Broken"}));

	const TArray<FZorvekMCPBridgeAssetData> Entries = Port->GetAssetRegistry().GetAssetsByPackageName(TEXT("/Game/Materials/MI_Rock_Wet"));
	ASSERT_EQ(Entries.Num(), 1);
	EXPECT_EQ(S(Entries[0].ObjectPath), "/Game/Materials/MI_Rock_Wet.MI_Rock_Wet");
	EXPECT_EQ(S(Entries[0].PackagePath), "/Game/Materials");
}

TEST(SimulatedEditorRegistry, ListsLoadedAssetsItHasNoEntryFor)
{
	// unreal-behaviour-world-assets.md §6.2: in-memory queries build results from loaded assets,
	// so an unsaved asset is found by package, path and class, with the tags of its
	// registry-searchable properties; the in-memory results come first.
	const TSharedPtr<FSimulatedEditorPort> Port = LoadSampleProject();
	const TArray<FZorvekMCPBridgeAssetData> Unsaved = Port->GetAssetRegistry().GetAssetsByPackageName(TEXT("/Game/Scratch/DA_Unsaved"));
	ASSERT_EQ(Unsaved.Num(), 1);
	EXPECT_EQ(S(Unsaved[0].ObjectPath), "/Game/Scratch/DA_Unsaved.DA_Unsaved");
	EXPECT_EQ(S(Unsaved[0].AssetClassPath), "/Script/SampleGame.LootTableDataAsset");
	EXPECT_EQ(S(Unsaved[0].PackagePath), "/Game/Scratch");
	ASSERT_EQ(Unsaved[0].Tags.Num(), 3);
	EXPECT_EQ(S(Unsaved[0].Tags[0].Name), "TableName");
	EXPECT_EQ(S(Unsaved[0].Tags[0].Value), "Scratch");

	FZorvekMCPBridgeAssetFilter Filter;
	Filter.PackagePaths = {TEXT("/Game")};
	Filter.bRecursivePaths = true;
	Filter.ClassPaths = {TEXT("/Script/Engine.DataAsset")};
	Filter.bRecursiveClasses = true;
	EXPECT_EQ(Enumerate(*Port, Filter), (std::vector<std::string>{"DA_Unsaved", "DA_LootTable", "ST_Director", "ST_Cooked"}));

	// Packages that failed to load hold no loaded asset; registry-only entries stay listed.
	EXPECT_EQ(Port->GetAssetRegistry().GetAssetsByPackageName(TEXT("/Game/Broken/M_Broken")).Num(), 1);
	EXPECT_EQ(Port->GetAssetRegistry().GetAssetsByPackageName(TEXT("/Game/Legacy/BP_Retired")).Num(), 1);
	// Subobjects and classes are not assets.
	EXPECT_TRUE(Port->GetAssetRegistry().GetAssetsByPackageName(TEXT("/Game/Materials/M_Rock")).Num() == 1);
	EXPECT_EQ(Port->GetAssetRegistry().GetAssetsByPackageName(TEXT("/Game/Blueprints/BP_Hero")).Num(), 1);
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
		{TEXT("\"classes\": [{\"path\": \"/Script/T.C\", \"flags\": [\"Shiny\"]}]"), "has an unknown flag 'Shiny'."},
		{TEXT("\"structs\": [{\"path\": \"/Script/T.S\", \"text_form\": \"packed\"}]"), "has an unknown text_form 'packed'."},
		{TEXT("\"classes\": [{\"path\": \"/Script/T.C\", \"properties\": [{\"name\": \"P\", \"type\": \"int32\", \"default\": \"many\"}]}]"), "property P default: 'many' is not a number."},
		{TEXT("\"classes\": [{\"path\": \"/Script/T.C\", \"properties\": [{\"name\": \"P\", \"type\": \"float\"}], \"material_expression\": {\"caption\": [\"Value {Q:%.2f}\"]}}]"),
			"Caption 'Value {Q:%.2f}' names Q, which C does not have."},
		{TEXT("\"classes\": [{\"path\": \"/Script/T.C\", \"properties\": [{\"name\": \"P\", \"type\": \"FString\"}], \"material_expression\": {\"caption\": [\"{P:%d}\"]}}]"),
			"formats P with '%d', which is not one printf conversion of a number."},
		{TEXT("\"classes\": [{\"path\": \"/Script/T.C\", \"properties\": [{\"name\": \"P\", \"type\": \"bool\"}], \"material_expression\": {\"caption\": [\"{P? on\"]}}]"),
			"has an unclosed '{'."}};
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
