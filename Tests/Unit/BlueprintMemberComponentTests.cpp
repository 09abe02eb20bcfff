// blueprint_add_component on the simulated editor: class lookup, meshes and materials, the tree,
// property values, every refusal leaving the construction script as it was, and a node that
// fails halfway being taken out again.
#include "BlueprintMemberTestSupport.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintMembers.h"

using namespace ZorvekAssetTests;
using namespace ZorvekBlueprintMemberTests;

namespace
{
	class FBlueprintMemberComponentTest : public FBlueprintMemberToolsTest
	{
	protected:
		TSharedPtr<FJsonObject> AddComponent(std::initializer_list<std::pair<const TCHAR*, TSharedPtr<FJsonValue>>> Fields)
		{
			return CallOnHero(TEXT("blueprint_add_component"), Fields);
		}

		std::vector<std::string> ComponentTree() const
		{
			std::vector<std::string> Tree;
			for (const FZorvekMCPBridgeComponentSnapshot& Component : Read().Components)
			{
				Tree.push_back(S(Component.Name) + ":" + S(Component.ComponentClassName) + "<" + S(Component.ParentComponentName));
			}
			return Tree;
		}

		FString ExportTemplateValue(const TCHAR* ComponentName, const TCHAR* Property) const
		{
			for (const FZorvekMCPBridgeComponentSnapshot& Component : Read().Components)
			{
				if (Component.Name == ComponentName)
				{
					FString Text;
					Port->GetReflection().FindProperty(Component.Template, Property).ExportText(Text);
					return Text;
				}
			}
			ADD_FAILURE() << "no component " << S(ComponentName);
			return FString();
		}
	};

	// The simulated editor with one import refused: the Nth import of a property text fails, as
	// an engine import can fail on the template after it worked on the validation component.
	class FRefusingReflection : public IZorvekMCPBridgeReflection
	{
	public:
		FRefusingReflection(IZorvekMCPBridgeReflection& InInner, int32 InRefusedImport)
			: Inner(InInner)
			, RefusedImport(InRefusedImport)
		{
		}

		void EnumerateProperties(FZorvekMCPBridgeObjectHandle Object, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const override { Inner.EnumerateProperties(Object, Callback); }
		FZorvekMCPBridgePropertyCursor FindProperty(FZorvekMCPBridgeObjectHandle Object, const FString& Name) const override { return Inner.FindProperty(Object, Name); }
		bool ImportText(const FZorvekMCPBridgePropertyCursor& Value, const FString& Text) const override
		{
			return ++ImportCount != RefusedImport && Inner.ImportText(Value, Text);
		}
		FString GetPropertyName(const FZorvekMCPBridgePropertyCursor& Value) const override { return Inner.GetPropertyName(Value); }
		FString GetPropertyCppType(const FZorvekMCPBridgePropertyCursor& Value) const override { return Inner.GetPropertyCppType(Value); }
		uint64 GetPropertyFlags(const FZorvekMCPBridgePropertyCursor& Value) const override { return Inner.GetPropertyFlags(Value); }
		EZorvekMCPBridgePropertyKind GetPropertyKind(const FZorvekMCPBridgePropertyCursor& Value) const override { return Inner.GetPropertyKind(Value); }
		bool ExportText(const FZorvekMCPBridgePropertyCursor& Value, FString& OutText) const override { return Inner.ExportText(Value, OutText); }
		FZorvekMCPBridgeObjectHandle GetReferencedObject(const FZorvekMCPBridgePropertyCursor& Value) const override { return Inner.GetReferencedObject(Value); }
		int32 GetArrayNum(const FZorvekMCPBridgePropertyCursor& Value) const override { return Inner.GetArrayNum(Value); }
		FString GetArrayElementCppType(const FZorvekMCPBridgePropertyCursor& Value) const override { return Inner.GetArrayElementCppType(Value); }
		FZorvekMCPBridgePropertyCursor GetArrayElement(const FZorvekMCPBridgePropertyCursor& Value, int32 Index) const override { return Inner.GetArrayElement(Value, Index); }
		FString GetStructName(const FZorvekMCPBridgePropertyCursor& Value) const override { return Inner.GetStructName(Value); }
		FString GetStructPath(const FZorvekMCPBridgePropertyCursor& Value) const override { return Inner.GetStructPath(Value); }
		void EnumerateStructFields(const FZorvekMCPBridgePropertyCursor& Value, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const override { Inner.EnumerateStructFields(Value, Callback); }
		FZorvekMCPBridgePropertyCursor FindStructField(const FZorvekMCPBridgePropertyCursor& Value, const FString& FieldName) const override { return Inner.FindStructField(Value, FieldName); }

		mutable int32 ImportCount = 0;

	private:
		IZorvekMCPBridgeReflection& Inner;
		int32 RefusedImport;
	};

	class FRefusingImportPort : public FSimulatedEditorPort
	{
	public:
		FRefusingImportPort(const TSharedPtr<FSimulatedEditor>& Editor, int32 RefusedImport)
			: FSimulatedEditorPort(Editor)
			, Refusing(FSimulatedEditorPort::GetReflection(), RefusedImport)
		{
		}

		IZorvekMCPBridgeReflection& GetReflection() override { return Refusing; }

		FRefusingReflection Refusing;
	};
}

TEST_F(FBlueprintMemberComponentTest, ClassesAreFoundByShortNameEngineNameOrPath)
{
	const TSharedPtr<FJsonObject> Camera = Ok(AddComponent({{TEXT("ComponentName"), Text(TEXT("Eye"))}, {TEXT("ComponentClassPath"), Text(TEXT("CameraComponent"))}}));
	EXPECT_EQ(Keys(Camera), (std::vector<std::string>{"asset_path", "component", "component_class", "parent_component", "static_mesh", "material", "properties"}));
	EXPECT_EQ(S(Camera->GetStringField(TEXT("component_class"))), "/Script/Engine.CameraComponent");
	// The legacy key is a fallback only.
	const TSharedPtr<FJsonObject> Arm = Ok(AddComponent({{TEXT("ComponentName"), Text(TEXT("Boom"))}, {TEXT("ComponentClassName"), Text(TEXT("/Script/Engine.SpringArmComponent"))}}));
	EXPECT_EQ(S(Arm->GetStringField(TEXT("component_class"))), "/Script/Engine.SpringArmComponent");
	const TSharedPtr<FJsonObject> Both = Ok(AddComponent({{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ComponentClassPath"), Text(TEXT("StaticMeshComponent"))},
		{TEXT("ComponentClassName"), Text(TEXT("CameraComponent"))}}));
	EXPECT_EQ(S(Both->GetStringField(TEXT("component_class"))), "/Script/Engine.StaticMeshComponent");

	const std::string Before = Describe();
	EXPECT_EQ(ErrorText(AddComponent({{TEXT("ComponentName"), Text(TEXT("X"))}, {TEXT("ComponentClassPath"), Text(TEXT("WarpDriveComponent"))}})),
		"Could not load component class: WarpDriveComponent");
	EXPECT_EQ(ErrorText(AddComponent({{TEXT("ComponentName"), Text(TEXT("X"))}, {TEXT("ComponentClassPath"), Text(TEXT("/Script/Engine.Actor"))}})),
		"Could not load component class: /Script/Engine.Actor");
	EXPECT_EQ(ErrorText(AddComponent({{TEXT("ComponentName"), Text(TEXT("X"))}})), "blueprint_add_component requires ComponentName and ComponentClassPath.");
	EXPECT_EQ(Describe(), Before);
}

TEST_F(FBlueprintMemberComponentTest, ParentsBuildTheTreeAndTheFirstSceneRootReplacesTheDefault)
{
	Ok(AddComponent({{TEXT("ComponentName"), Text(TEXT("Boom"))}, {TEXT("ComponentClassPath"), Text(TEXT("SpringArmComponent"))}}));
	const TSharedPtr<FJsonObject> Eye = Ok(AddComponent({{TEXT("ComponentName"), Text(TEXT("Eye"))}, {TEXT("ComponentClassPath"), Text(TEXT("CameraComponent"))},
		{TEXT("ParentComponentName"), Text(TEXT("Boom"))}}));
	EXPECT_EQ(S(Eye->GetStringField(TEXT("parent_component"))), "Boom");
	// unreal-behaviour-blueprints.md §6.2: a scene component added as a root drops DefaultSceneRoot.
	EXPECT_EQ(ComponentTree(), (std::vector<std::string>{"Boom:SpringArmComponent<", "Eye:CameraComponent<Boom"}));

	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("eye"))}, {TEXT("ComponentClassPath"), Text(TEXT("CameraComponent"))}},
		"Blueprint component already exists: eye");
	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Eye2"))}, {TEXT("ComponentClassPath"), Text(TEXT("CameraComponent"))},
		{TEXT("ParentComponentName"), Text(TEXT("Mast"))}}, "Parent component does not exist: Mast");
	Ok(CallOnHero(TEXT("blueprint_add_variable"), {{TEXT("VarName"), Text(TEXT("Lamp"))}, {TEXT("Type"), Text(TEXT("bool"))}}));
	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Lamp"))}, {TEXT("ComponentClassPath"), Text(TEXT("CameraComponent"))}},
		"Component name is already used by a variable, function or graph of /Game/MemberTests/BP_Hero.BP_Hero: Lamp");
}

TEST_F(FBlueprintMemberComponentTest, MeshesAndMaterialsGoOnStaticMeshTemplates)
{
	const TSharedPtr<FJsonObject> Result = Ok(AddComponent({{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ComponentClassPath"), Text(TEXT("StaticMeshComponent"))},
		{TEXT("PrimitiveShape"), Text(TEXT("cUBE"))}, {TEXT("MaterialPath"), Text(TEXT("/Game/Materials/M_Rock"))}}));
	EXPECT_EQ(S(Result->GetStringField(TEXT("static_mesh"))), "/Engine/BasicShapes/Cube.Cube");
	EXPECT_EQ(S(Result->GetStringField(TEXT("material"))), "/Game/Materials/M_Rock.M_Rock");
	EXPECT_NE(S(ExportTemplateValue(TEXT("Body"), TEXT("StaticMesh"))).find("/Engine/BasicShapes/Cube.Cube"), std::string::npos);
	EXPECT_NE(S(ExportTemplateValue(TEXT("Body"), TEXT("OverrideMaterials"))).find("/Game/Materials/M_Rock.M_Rock"), std::string::npos);

	const TSharedPtr<FJsonObject> ByPath = Ok(AddComponent({{TEXT("ComponentName"), Text(TEXT("Ball"))}, {TEXT("ComponentClassPath"), Text(TEXT("StaticMeshComponent"))},
		{TEXT("StaticMeshPath"), Text(TEXT("/Engine/BasicShapes/Sphere.Sphere"))}}));
	EXPECT_EQ(S(ByPath->GetStringField(TEXT("static_mesh"))), "/Engine/BasicShapes/Sphere.Sphere");
}

TEST_F(FBlueprintMemberComponentTest, MeshAndMaterialRefusalsChangeNothing)
{
	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Eye"))}, {TEXT("ComponentClassPath"), Text(TEXT("CameraComponent"))},
		{TEXT("PrimitiveShape"), Text(TEXT("Cube"))}}, "StaticMeshPath/PrimitiveShape can only be used with StaticMeshComponent or a subclass.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ComponentClassPath"), Text(TEXT("StaticMeshComponent"))},
		{TEXT("PrimitiveShape"), Text(TEXT("Cube"))}, {TEXT("StaticMeshPath"), Text(TEXT("/Engine/BasicShapes/Cube"))}}, "Specify either PrimitiveShape or StaticMeshPath, not both.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ComponentClassPath"), Text(TEXT("StaticMeshComponent"))},
		{TEXT("PrimitiveShape"), Text(TEXT("Torus"))}}, "Unsupported PrimitiveShape 'Torus'. Supported shapes: Cube, Sphere, Cylinder, Cone, Plane.");
	// A material is not a mesh.
	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ComponentClassPath"), Text(TEXT("StaticMeshComponent"))},
		{TEXT("StaticMeshPath"), Text(TEXT("/Game/Materials/M_Rock"))}}, "Could not resolve StaticMesh asset: /Game/Materials/M_Rock");
	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Eye"))}, {TEXT("ComponentClassPath"), Text(TEXT("CameraComponent"))},
		{TEXT("MaterialPath"), Text(TEXT("/Game/Materials/M_Rock"))}}, "MaterialPath can only be used with MeshComponent or a subclass.");
	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Body"))}, {TEXT("ComponentClassPath"), Text(TEXT("StaticMeshComponent"))},
		{TEXT("MaterialPath"), Text(TEXT("/Game/Materials/M_Broken"))}}, "Could not resolve Material asset: /Game/Materials/M_Broken");
}

TEST_F(FBlueprintMemberComponentTest, PropertiesAreCheckedOnAValidationComponentFirst)
{
	const TSharedPtr<FJsonObject> Result = Ok(AddComponent({{TEXT("ComponentName"), Text(TEXT("Boom"))}, {TEXT("ComponentClassPath"), Text(TEXT("SpringArmComponent"))},
		{TEXT("Properties"), Object(Arguments({{TEXT("TargetArmLength"), Number(350)}, {TEXT("bDoCollisionTest"), Bool(false)}}))}}));
	const TSharedPtr<FJsonObject> Properties = Result->GetObjectField(TEXT("properties"));
	EXPECT_EQ(Keys(Properties), (std::vector<std::string>{"TargetArmLength", "bDoCollisionTest"}));
	EXPECT_EQ(S(Properties->GetStringField(TEXT("TargetArmLength"))), "350.000000");
	EXPECT_EQ(S(ExportTemplateValue(TEXT("Boom"), TEXT("bDoCollisionTest"))), "False");

	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Arm2"))}, {TEXT("ComponentClassPath"), Text(TEXT("SpringArmComponent"))},
		{TEXT("Properties"), Object(Arguments({{TEXT("ArmSpin"), Number(1)}}))}}, "Component property does not exist on SpringArmComponent: ArmSpin");
	ExpectRefusedUnchanged(TEXT("blueprint_add_component"), {{TEXT("ComponentName"), Text(TEXT("Arm2"))}, {TEXT("ComponentClassPath"), Text(TEXT("SpringArmComponent"))},
		{TEXT("Properties"), Object(Arguments({{TEXT("TargetArmLength"), Number(90)}, {TEXT("bDoCollisionTest"), Text(TEXT("maybe"))}}))}},
		"Could not import value 'maybe' for property 'bDoCollisionTest'.");
}

TEST_F(FBlueprintMemberComponentTest, BlueprintsWithoutConstructionScriptAreRefused)
{
	Ok(Call(TEXT("blueprint_create_interface"), Arguments({{TEXT("PackagePath"), Text(TEXT("/Game/MemberTests"))}, {TEXT("AssetName"), Text(TEXT("BPI_Lamp"))}})));
	EXPECT_EQ(ErrorText(Call(TEXT("blueprint_add_component"), Arguments({{TEXT("BlueprintNameOrPath"), Text(TEXT("BPI_Lamp"))}, {TEXT("ComponentName"), Text(TEXT("Eye"))},
		{TEXT("ComponentClassPath"), Text(TEXT("CameraComponent"))}}))), "Blueprint has no SimpleConstructionScript.");
}

TEST_F(FBlueprintMemberComponentTest, ANodeThatFailsOnItsTemplateIsRemovedAgain)
{
	const std::string Before = Describe();
	// Import 1 is the validation component's, import 2 the template's.
	FRefusingImportPort Refusing(Editor, 2);
	ZorvekMCPBridgeBlueprintMembers::FAddComponentParams Params;
	Params.BlueprintNameOrPath = HeroPath;
	Params.ComponentName = TEXT("Boom");
	Params.ComponentClassPath = TEXT("SpringArmComponent");
	Params.Properties = Arguments({{TEXT("TargetArmLength"), Number(350)}});
	const TSharedPtr<FJsonObject> Result = ZorvekMCPBridgeBlueprintMembers::AddComponent(Refusing, Params);
	EXPECT_EQ(ErrorText(Result), "Could not import value '350' for property 'TargetArmLength'.");
	EXPECT_EQ(Refusing.Refusing.ImportCount, 2);
	EXPECT_EQ(Describe(), Before);
	// The name is free again.
	EXPECT_FALSE(FToolRunner::IsError(AddComponent({{TEXT("ComponentName"), Text(TEXT("Boom"))}, {TEXT("ComponentClassPath"), Text(TEXT("SpringArmComponent"))}})));
}
