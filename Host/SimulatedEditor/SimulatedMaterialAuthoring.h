// Material graph authoring in the simulated editor, as the material editor's library and
// UMaterial do it: blank materials, expressions with engine-picked names, new GUIDs and unique
// parameter names, wires with the output's mask, the dirty flag and PostEditChange.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"

#include <unordered_map>

class FSimulatedEditor;
class FSimulatedEditorPort;
class FSimulatedObject;
class FSimulatedType;

class FSimulatedMaterialAuthoring
{
public:
	FSimulatedMaterialAuthoring(FSimulatedEditor& InEditor, FSimulatedEditorPort& InPort);

	FZorvekMCPBridgeObjectHandle CreateMaterial(const FString& PackageName, const FString& AssetName, FString& OutError);
	bool IsParameterExpressionClass(const FString& ClassPath) const;
	FZorvekMCPBridgeObjectHandle NewExpression(FZorvekMCPBridgeObjectHandle Material, const FString& ClassPath, const FString& NodeName);
	void DiscardExpression(FZorvekMCPBridgeObjectHandle Expression);
	void SetParameterName(FZorvekMCPBridgeObjectHandle Expression, const FString& ParameterName);
	void SetDescription(FZorvekMCPBridgeObjectHandle Expression, const FString& Description);
	void AddExpression(FZorvekMCPBridgeObjectHandle Material, FZorvekMCPBridgeObjectHandle Expression, int32 PosX, int32 PosY);
	bool ConnectExpressionInput(FZorvekMCPBridgeObjectHandle Source, int32 OutputIndex, FZorvekMCPBridgeObjectHandle Target, int32 InputIndex);
	bool ConnectRootInput(FZorvekMCPBridgeObjectHandle Material, const FString& RootProperty, FZorvekMCPBridgeObjectHandle Source, int32 OutputIndex);
	void AddComment(FZorvekMCPBridgeObjectHandle Material, const FString& Text, int32 PosX, int32 PosY, int32 Width, int32 Height);
	FZorvekMCPBridgeObjectHandle CreateMaterialInstance(const FString& PackageName, const FString& AssetName, FZorvekMCPBridgeObjectHandle Parent, FString& OutError);
	bool SetInstanceScalarParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, float Value);
	bool SetInstanceTextureParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, FZorvekMCPBridgeObjectHandle Texture);
	void NotifyMaterialEdited(FZorvekMCPBridgeObjectHandle Material);

	// How often PostEditChange ran on the material, for tests.
	int32 GetPostEditChangeCount(FZorvekMCPBridgeObjectHandle Material) const;

private:
	FSimulatedObject* GetEditorOnlyData(FSimulatedObject* Material) const;
	void MarkPackageDirty(FSimulatedObject* Object);
	// The new expression's place in the graph is not needed: uniqueness is against the
	// parameter expressions already in the material's collection.
	bool IsParameterNameTaken(FSimulatedObject* Material, const FSimulatedObject* Except, const FString& Name) const;
	FString MakeNewGuidText();
	// Set*ParameterValueEditorOnly: the entry of that name in the instance's array, added when
	// missing, takes the value text.
	bool SetInstanceParameter(FSimulatedObject* Instance, const TCHAR* ArrayName, const FString& ParameterName, const FString& ValueText);

	FSimulatedEditor& Editor;
	FSimulatedEditorPort& Port;
	// The engine's per-class counter of MakeUniqueObjectName (UClass::ClassUnique).
	std::unordered_map<const FSimulatedType*, int32> ClassUnique;
	std::unordered_map<const FSimulatedObject*, int32> PostEditChangeCounts;
	uint32 GuidSeed = 0;
};
