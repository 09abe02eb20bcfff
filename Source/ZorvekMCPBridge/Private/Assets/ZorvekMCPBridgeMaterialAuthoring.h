#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeMaterialPort.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"

class IZorvekMCPBridgeEditorPort;
class IZorvekMCPBridgeObjects;

// The rules of material graph authoring that do not depend on the editor: the expression class
// catalogue and its allowlist, class discovery and resolution, the root inputs authoring accepts,
// the property aliases, and finding expressions and inputs in a material's snapshot.
namespace ZorvekMCPBridgeMaterialAuthoring
{
	inline constexpr const TCHAR* MaterialClassPath = TEXT("/Script/Engine.Material");
	inline constexpr const TCHAR* TextureClassPath = TEXT("/Script/Engine.Texture");
	constexpr int32 DefaultFindLimit = 50;
	constexpr int32 MaxResolveCandidates = 10;

	// "/Script/Engine.<ClassName>".
	FString MakeExpressionClassPath(const FString& ClassName);

	// The 19 catalogue entries in catalogue order, each with "class_name", "canonical_class",
	// "class_path", "display_name", "aliases", "supported_for_authoring", "support_reason",
	// "abstract" and "deprecated" (the last two from the loaded class; false when it is not loaded).
	TArray<TSharedPtr<FJsonObject>> BuildExpressionClassCatalogue(const IZorvekMCPBridgeObjects& Objects);

	// True for the 16 classes material_add_expression creates (exact, case-sensitive class name).
	bool IsAllowlistedExpressionClass(const FString& ClassName);

	// The answers of material_find_expression_classes and material_resolve_expression_class.
	TSharedPtr<FJsonObject> FindExpressionClasses(const IZorvekMCPBridgeObjects& Objects, const FString& Query, bool bSupportedOnly, int32 Limit);
	TSharedPtr<FJsonObject> ResolveExpressionClass(const IZorvekMCPBridgeObjects& Objects, const FString& Query, bool bRequireSupported);

	// The seven root inputs authoring connects (exact, case-sensitive names).
	const TArray<FString>& GetAuthorableRootInputs();
	bool IsAuthorableRootInput(const FString& RootInputName);

	// The property a name addresses on an expression class: Power's "Exponent" is its
	// "ConstExponent" (the "Exponent" property itself is the input wire). OutAlias receives
	// "Exponent->ConstExponent" when the alias applied, else stays empty.
	FString ApplySetPropertyAlias(const FString& ClassName, const FString& PropertyName, FString& OutAlias);
	// The property DefaultValue is imported into: "ConstExponent" for Power, else "DefaultValue".
	FString GetDefaultValueProperty(const FString& ClassName, FString& OutAlias);

	// The expression whose MaterialExpressionGuid text equals Guid (hexadecimal digits compare
	// without regard to case, as FGuid text does); null when none does.
	const FZorvekMCPBridgeMaterialExpressionSnapshot* FindExpressionByGuid(const FZorvekMCPBridgeMaterialSnapshot& Snapshot, const FString& Guid);

	// The index of the input whose GetInputName equals InputName exactly (case-sensitive), or
	// INDEX_NONE.
	int32 FindInputIndex(const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression, const FString& InputName);
	// The input names a target accepts, for the "Available inputs: %s" message: each quoted in
	// single quotes and joined with ", " so an empty name still shows; "(none)" when there are none.
	FString DescribeAvailableInputs(const FZorvekMCPBridgeMaterialExpressionSnapshot& Expression);

	// Resolves MaterialNameOrPath (type Material, limit 10) and loads it as a Material. Invalid
	// when either fails; the caller answers "Could not load Material for <tool>.".
	FZorvekMCPBridgeObjectHandle LoadMaterial(IZorvekMCPBridgeEditorPort& Port, const FString& MaterialNameOrPath, FString& OutAssetPath);

	// The node object the material reader reports for the expression with that GUID (with
	// "properties", "inputs", "outputs"...), or null.
	TSharedPtr<FJsonObject> ReadExpressionNode(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Material, const FString& NodeGuid);
	// The material reader object of unreal_inspect_asset's "material" section.
	TSharedPtr<FJsonObject> ReadMaterialObject(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Material);

	// ImportPropertyText that puts the old value back when the import fails, so a failed call
	// leaves no half-imported struct or array behind.
	bool ImportPropertyTextOrRestore(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName, const FString& ValueText, FString& OutError);
}
