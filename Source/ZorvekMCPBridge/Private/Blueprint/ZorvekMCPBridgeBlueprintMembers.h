// Creating Blueprints and adding members to them: variables, function graphs, event graphs,
// custom events, implemented interfaces with their events, and construction-script components.
// Each operation validates every input before the first change and then asks the editor port's
// Blueprint domain to apply it; a failed call leaves the Blueprint as it was. Results are tool
// results (the answer object, or the error message).
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeBlueprintMembers
{
	// The parent class of a new Blueprint when the caller names none.
	extern const TCHAR* const DefaultParentClassPath;
	// The free row below a graph's nodes is this far under the lowest node, as the editor
	// stacks its default events, and snapped to this grid.
	constexpr int32 EventRowGap = 200;
	constexpr int32 EventRowGrid = 16;

	struct FCreateBlueprintParams
	{
		FString PackagePath;
		FString AssetName;
		FString ParentClassPath;
	};

	struct FCreateInterfaceParams
	{
		FString PackagePath;
		FString AssetName;
	};

	struct FAddVariableParams
	{
		FString BlueprintNameOrPath;
		FString VarName;
		// As received; the answer echoes it.
		FString Type;
		FString ObjectClassPath;
		FString DefaultValue;
		FString Category;
	};

	// Descriptor arrays ("Inputs", "Outputs", "Parameters") are read from Request after the
	// Blueprint has loaded, so their messages come in the tools' order of checks.
	struct FCreateFunctionParams
	{
		FString BlueprintNameOrPath;
		FString FunctionName;
		TSharedPtr<FJsonObject> Request;
	};

	struct FCreateEventGraphParams
	{
		FString BlueprintNameOrPath;
		FString GraphName;
	};

	struct FAddCustomEventParams
	{
		FString BlueprintNameOrPath;
		FString GraphName;
		FString EventName;
		bool bCallInEditor = false;
		TSharedPtr<FJsonObject> Request;
	};

	struct FImplementInterfaceParams
	{
		FString BlueprintNameOrPath;
		FString InterfaceNameOrPath;
	};

	struct FAddInterfaceEventParams
	{
		FString BlueprintNameOrPath;
		FString GraphName;
		FString InterfaceNameOrPath;
		FString FunctionName;
		int32 NodePosX = 0;
		int32 NodePosY = 0;
	};

	struct FAddComponentParams
	{
		FString BlueprintNameOrPath;
		FString ComponentName;
		FString ComponentClassPath;
		FString ParentComponentName;
		// Property name -> JSON value, in the request's order; null when none were given.
		TSharedPtr<FJsonObject> Properties;
		FString PrimitiveShape;
		FString StaticMeshPath;
		FString MaterialPath;
	};

	TSharedPtr<FJsonObject> CreateBlueprint(IZorvekMCPBridgeEditorPort& Port, const FCreateBlueprintParams& Params);
	// The checks CreateBlueprint makes before it creates anything (the names, with RequiredMessage
	// when one is empty; an asset already there; the parent class; the package name), with its
	// messages, for composite tools that must refuse before their first change. Null when the
	// Blueprint could be created; then the package name and the loaded parent class's path.
	TSharedPtr<FJsonObject> CheckCreateBlueprint(IZorvekMCPBridgeEditorPort& Port, const FCreateBlueprintParams& Params, const TCHAR* RequiredMessage,
		FString& OutPackageName, FString& OutParentClassPath);
	TSharedPtr<FJsonObject> CreateBlueprintInterface(IZorvekMCPBridgeEditorPort& Port, const FCreateInterfaceParams& Params);
	TSharedPtr<FJsonObject> AddVariable(IZorvekMCPBridgeEditorPort& Port, const FAddVariableParams& Params);
	TSharedPtr<FJsonObject> CreateFunction(IZorvekMCPBridgeEditorPort& Port, const FCreateFunctionParams& Params);
	TSharedPtr<FJsonObject> CreateEventGraph(IZorvekMCPBridgeEditorPort& Port, const FCreateEventGraphParams& Params);
	TSharedPtr<FJsonObject> AddCustomEvent(IZorvekMCPBridgeEditorPort& Port, const FAddCustomEventParams& Params);
	TSharedPtr<FJsonObject> ImplementInterface(IZorvekMCPBridgeEditorPort& Port, const FImplementInterfaceParams& Params);
	TSharedPtr<FJsonObject> AddInterfaceEvent(IZorvekMCPBridgeEditorPort& Port, const FAddInterfaceEventParams& Params);
	TSharedPtr<FJsonObject> AddComponent(IZorvekMCPBridgeEditorPort& Port, const FAddComponentParams& Params);

	// A mesh or material as blueprint_add_component resolves StaticMeshPath and MaterialPath: a
	// package or object path that loads as a StaticMesh / MaterialInterface; its object path,
	// empty when nothing of that class loads there.
	FString ResolveStaticMeshPath(IZorvekMCPBridgeEditorPort& Port, const FString& PackageOrObjectPath);
	FString ResolveMaterialPath(IZorvekMCPBridgeEditorPort& Port, const FString& PackageOrObjectPath);

	// "/Engine/BasicShapes/Cube" for "cube" (any case); empty for a word that names no shape.
	FString GetPrimitiveShapeMeshPath(const FString& ShapeWord);
}
