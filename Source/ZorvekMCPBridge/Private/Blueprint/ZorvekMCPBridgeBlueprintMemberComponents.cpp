// blueprint_add_component: a node of the construction script with its template set up. Everything
// the template gets (mesh, material, properties) is first applied to a validation component of the
// same class, so a value the editor refuses stops the call before the Blueprint changes.
#include "Blueprint/ZorvekMCPBridgeBlueprintMembers.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Assets/ZorvekMCPBridgeDataAssets.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintMemberSupport.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"


namespace
{
	const TCHAR* const ComponentMemberActorComponentPath = TEXT("/Script/Engine.ActorComponent");
	const TCHAR* const ComponentMemberMeshComponentPath = TEXT("/Script/Engine.MeshComponent");
	const TCHAR* const ComponentMemberStaticMeshComponentPath = TEXT("/Script/Engine.StaticMeshComponent");
	const TCHAR* const ComponentMemberStaticMeshPath = TEXT("/Script/Engine.StaticMesh");
	const TCHAR* const ComponentMemberMaterialInterfacePath = TEXT("/Script/Engine.MaterialInterface");
	// The properties a mesh and a slot-0 material land in on the template.
	const TCHAR* const ComponentMemberStaticMeshProperty = TEXT("StaticMesh");
	const TCHAR* const ComponentMemberOverrideMaterialsProperty = TEXT("OverrideMaterials");

	// The class as it stands (a loaded class of that name or path), else a class of the engine
	// module by that short name, else the path loaded as a class.
	bool FindComponentMemberClass(IZorvekMCPBridgeObjects& Objects, const FString& ClassText, FZorvekMCPBridgeTypeInfo& OutClass)
	{
		if (Objects.FindType(EZorvekMCPBridgeTypeKind::Class, ClassText, OutClass))
		{
			return true;
		}
		if (!ClassText.StartsWith(TEXT("/Script/"), ESearchCase::IgnoreCase))
		{
			return Objects.LoadClass(FString::Printf(TEXT("/Script/Engine.%s"), *ClassText), OutClass);
		}
		return Objects.LoadClass(ClassText, OutClass);
	}

	// An asset the client named by package or object path, of the wanted class; its object path,
	// empty when nothing of that class loads.
	FString LoadComponentMemberAsset(IZorvekMCPBridgeObjects& Objects, const FString& PackageOrObjectPath, const TCHAR* ClassPath)
	{
		if (!PackageOrObjectPath.StartsWith(TEXT("/")))
		{
			return FString();
		}
		int32 DotIndex = INDEX_NONE;
		const FString ObjectPath = PackageOrObjectPath.FindChar(TEXT('.'), DotIndex) ? PackageOrObjectPath : ZorvekMCPBridgeAssets::MakeAssetObjectPath(PackageOrObjectPath);
		const FZorvekMCPBridgeObjectHandle Asset = Objects.LoadObject(ObjectPath);
		return Objects.IsA(Asset, ClassPath) ? Objects.GetIdentity(Asset).ObjectPath : FString();
	}

	// One property to set on the template: its name and the import text of the value.
	struct FComponentMemberValue
	{
		FString PropertyName;
		FString ImportText;
	};

	// Applies every value to a component (the validation component or the template); the first
	// refused import ends it with the message.
	bool ApplyComponentMemberValues(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, const TArray<FComponentMemberValue>& Values, FString& OutError)
	{
		for (const FComponentMemberValue& Value : Values)
		{
			if (!ZorvekMCPBridgeAssets::ImportPropertyText(Port, Component, Value.PropertyName, Value.ImportText, OutError))
			{
				return false;
			}
		}
		return true;
	}

	FString ExportComponentMemberValue(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, const FString& PropertyName)
	{
		FString Text;
		Port.GetReflection().FindProperty(Component, PropertyName).ExportText(Text);
		return Text;
	}

	bool HasComponentMemberNode(const FZorvekMCPBridgeBlueprintSnapshot& Blueprint, const FString& Name)
	{
		const FName Wanted(Name);
		for (const FZorvekMCPBridgeComponentSnapshot& Component : Blueprint.Components)
		{
			if (FName(Component.Name) == Wanted)
			{
				return true;
			}
		}
		return false;
	}
}

FString ZorvekMCPBridgeBlueprintMembers::GetPrimitiveShapeMeshPath(const FString& ShapeWord)
{
	static const TCHAR* const Shapes[] = { TEXT("Cube"), TEXT("Sphere"), TEXT("Cylinder"), TEXT("Cone"), TEXT("Plane") };
	for (const TCHAR* Shape : Shapes)
	{
		if (ShapeWord.Equals(Shape, ESearchCase::IgnoreCase))
		{
			return FString::Printf(TEXT("/Engine/BasicShapes/%s"), Shape);
		}
	}
	return FString();
}

FString ZorvekMCPBridgeBlueprintMembers::ResolveStaticMeshPath(IZorvekMCPBridgeEditorPort& Port, const FString& PackageOrObjectPath)
{
	return LoadComponentMemberAsset(Port.GetObjects(), PackageOrObjectPath, ComponentMemberStaticMeshPath);
}

FString ZorvekMCPBridgeBlueprintMembers::ResolveMaterialPath(IZorvekMCPBridgeEditorPort& Port, const FString& PackageOrObjectPath)
{
	return LoadComponentMemberAsset(Port.GetObjects(), PackageOrObjectPath, ComponentMemberMaterialInterfacePath);
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintMembers::AddComponent(IZorvekMCPBridgeEditorPort& Port, const FAddComponentParams& Params)
{
	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	FString Error;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	if (Params.ComponentName.IsEmpty() || Params.ComponentClassPath.IsEmpty())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("blueprint_add_component requires ComponentName and ComponentClassPath."));
	}
	if (!Loaded.Snapshot.bHasConstructionScript)
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("Blueprint has no SimpleConstructionScript."));
	}

	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	FZorvekMCPBridgeTypeInfo ComponentClass;
	// The construction script only makes nodes of component classes (the engine asserts on others).
	if (!FindComponentMemberClass(Objects, Params.ComponentClassPath, ComponentClass) || !Objects.IsChildOf(ComponentClass.Path, ComponentMemberActorComponentPath))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not load component class: %s"), *Params.ComponentClassPath));
	}

	TArray<FComponentMemberValue> Values;
	FString StaticMeshPath;
	if (!Params.PrimitiveShape.IsEmpty() && !Params.StaticMeshPath.IsEmpty())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("Specify either PrimitiveShape or StaticMeshPath, not both."));
	}
	if (!Params.PrimitiveShape.IsEmpty() || !Params.StaticMeshPath.IsEmpty())
	{
		if (!Objects.IsChildOf(ComponentClass.Path, ComponentMemberStaticMeshComponentPath))
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("StaticMeshPath/PrimitiveShape can only be used with StaticMeshComponent or a subclass."));
		}
		FString MeshRequest = Params.StaticMeshPath;
		if (!Params.PrimitiveShape.IsEmpty())
		{
			MeshRequest = GetPrimitiveShapeMeshPath(Params.PrimitiveShape);
			if (MeshRequest.IsEmpty())
			{
				return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Unsupported PrimitiveShape '%s'. Supported shapes: Cube, Sphere, Cylinder, Cone, Plane."), *Params.PrimitiveShape));
			}
		}
		StaticMeshPath = LoadComponentMemberAsset(Objects, MeshRequest, ComponentMemberStaticMeshPath);
		if (StaticMeshPath.IsEmpty())
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not resolve StaticMesh asset: %s"), *MeshRequest));
		}
		Values.Add({ComponentMemberStaticMeshProperty, StaticMeshPath});
	}
	FString MaterialPath;
	if (!Params.MaterialPath.IsEmpty())
	{
		if (!Objects.IsChildOf(ComponentClass.Path, ComponentMemberMeshComponentPath))
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(TEXT("MaterialPath can only be used with MeshComponent or a subclass."));
		}
		MaterialPath = LoadComponentMemberAsset(Objects, Params.MaterialPath, ComponentMemberMaterialInterfacePath);
		if (MaterialPath.IsEmpty())
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not resolve Material asset: %s"), *Params.MaterialPath));
		}
		// Slot 0 of a fresh template: the override list holds just this material.
		Values.Add({ComponentMemberOverrideMaterialsProperty, FString::Printf(TEXT("(\"%s\")"), *MaterialPath)});
	}

	if (HasComponentMemberNode(Loaded.Snapshot, Params.ComponentName))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Blueprint component already exists: %s"), *Params.ComponentName));
	}
	IZorvekMCPBridgeBlueprints& Blueprints = Port.GetBlueprints();
	// The engine would rename a node whose name a variable, function or graph already uses
	// (unreal-behaviour-blueprints.md §6.1), so the answer would name a component that does not exist.
	if (!Blueprints.IsGraphNameUnique(Loaded.Blueprint, Params.ComponentName))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Component name is already used by a variable, function or graph of %s: %s"), *Loaded.AssetPath, *Params.ComponentName));
	}
	if (!Params.ParentComponentName.IsEmpty() && !HasComponentMemberNode(Loaded.Snapshot, Params.ParentComponentName))
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Parent component does not exist: %s"), *Params.ParentComponentName));
	}

	const int32 FirstPropertyValue = Values.Num();
	if (Params.Properties.IsValid())
	{
		for (const TPair<FString, TSharedPtr<FJsonValue>>& Property : Params.Properties->Values)
		{
			Values.Add({Property.Key, ZorvekMCPBridgeDataAssets::JsonValueToImportText(Property.Value)});
		}
	}
	if (!Values.IsEmpty())
	{
		const FZorvekMCPBridgeObjectHandle Validation = Blueprints.CreateComponentValidationObject(ComponentClass.Path);
		if (!Validation.IsValid())
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not create validation component for class: %s"), *ComponentClass.Path));
		}
		for (int32 Index = FirstPropertyValue; Index < Values.Num(); ++Index)
		{
			const FZorvekMCPBridgePropertyCursor Property = Port.GetReflection().FindProperty(Validation, Values[Index].PropertyName);
			if (!Property.IsValid())
			{
				return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Component property does not exist on %s: %s"), *ComponentClass.Name, *Values[Index].PropertyName));
			}
			if (!Property.HasAnyFlags(ZorvekMCPBridgePropertyFlags::Edit))
			{
				return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Component property is not editable on %s: %s"), *ComponentClass.Name, *Values[Index].PropertyName));
			}
		}
		if (!ApplyComponentMemberValues(Port, Validation, Values, Error))
		{
			return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
		}
	}

	FZorvekMCPBridgeObjectHandle Template;
	const FZorvekMCPBridgeObjectHandle Node = Blueprints.CreateComponentNode(Loaded.Blueprint, ComponentClass.Path, Params.ComponentName, Template);
	if (!Node.IsValid() || !Template.IsValid())
	{
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(FString::Printf(TEXT("Could not create component node '%s' of class %s."), *Params.ComponentName, *ComponentClass.Path));
	}
	if (!ApplyComponentMemberValues(Port, Template, Values, Error))
	{
		// The node is not in the tree yet; removing it leaves the Blueprint as it was.
		Blueprints.RemoveComponentNode(Loaded.Blueprint, Node);
		return ZorvekMCPBridgeBlueprintMemberSupport::FailMemberTool(Error);
	}
	Blueprints.AttachComponentNode(Loaded.Blueprint, Node, Params.ParentComponentName);
	Blueprints.MarkStructurallyModified(Loaded.Blueprint);

	TSharedPtr<FJsonObject> Properties = MakeShared<FJsonObject>();
	for (int32 Index = FirstPropertyValue; Index < Values.Num(); ++Index)
	{
		Properties->SetStringField(Values[Index].PropertyName, ExportComponentMemberValue(Port, Template, Values[Index].PropertyName));
	}
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Result->SetStringField(TEXT("component"), Params.ComponentName);
	Result->SetStringField(TEXT("component_class"), ComponentClass.Path);
	Result->SetStringField(TEXT("parent_component"), Params.ParentComponentName);
	Result->SetStringField(TEXT("static_mesh"), StaticMeshPath);
	Result->SetStringField(TEXT("material"), MaterialPath);
	Result->SetObjectField(TEXT("properties"), Properties);
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Result, false);
}
