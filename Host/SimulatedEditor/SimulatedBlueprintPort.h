// The Blueprint domain of the editor port over the simulated editor's Blueprints.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

class FSimulatedAssetAuthoring;
class FSimulatedEditor;
class FSimulatedBlueprints;
struct FSimulatedBlueprint;
struct FSimulatedNode;
struct FSimulatedGraph;

class FSimulatedBlueprintPort : public IZorvekMCPBridgeBlueprints
{
public:
	// Packages are dirtied through the asset authoring port, which keeps the dirty flags.
	FSimulatedBlueprintPort(FSimulatedEditor& InEditor, FSimulatedAssetAuthoring& InAssetAuthoring);

	bool ReadBlueprint(FZorvekMCPBridgeObjectHandle Blueprint, FZorvekMCPBridgeBlueprintSnapshot& OutSnapshot) const override;
	bool IsGraphNameUnique(FZorvekMCPBridgeObjectHandle Blueprint, const FString& Name) const override;
	bool GetInterfaceFunctions(const FString& InterfaceClassPath, TArray<FZorvekMCPBridgeInterfaceFunction>& OutFunctions) const override;
	FString GetGeneratedInterfaceClassPath(FZorvekMCPBridgeObjectHandle Blueprint) const override;
	FZorvekMCPBridgeObjectHandle CreateBlueprint(FZorvekMCPBridgeObjectHandle Package, const FString& AssetName, const FString& ParentClassPath, EZorvekMCPBridgeBlueprintType BlueprintType) override;
	bool AddMemberVariable(FZorvekMCPBridgeObjectHandle Blueprint, const FName& VarName, const FZorvekMCPBridgePinType& PinType, const FString& DefaultValue) override;
	void SetVariableCategory(FZorvekMCPBridgeObjectHandle Blueprint, const FName& VarName, const FString& Category) override;
	FZorvekMCPBridgeFunctionGraphResult CreateFunctionGraph(FZorvekMCPBridgeObjectHandle Blueprint, const FString& FunctionName,
		const TArray<FBlueprintParamSpec>& Inputs, const TArray<FBlueprintParamSpec>& Outputs) override;
	bool CreateEventGraph(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName) override;
	FString AddCustomEvent(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName, const FString& EventName, bool bCallInEditor,
		const TArray<FBlueprintParamSpec>& Parameters, int32 PosX, int32 PosY, FName& OutFailedParameter) override;
	bool ImplementInterface(FZorvekMCPBridgeObjectHandle Blueprint, const FString& InterfaceClassPath) override;
	FString AddInterfaceEvent(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName, const FString& InterfaceClassPath,
		const FString& FunctionName, int32 PosX, int32 PosY) override;
	FZorvekMCPBridgeObjectHandle CreateComponentValidationObject(const FString& ComponentClassPath) override;
	FZorvekMCPBridgeObjectHandle CreateComponentNode(FZorvekMCPBridgeObjectHandle Blueprint, const FString& ComponentClassPath, const FString& ComponentName,
		FZorvekMCPBridgeObjectHandle& OutTemplate) override;
	void AttachComponentNode(FZorvekMCPBridgeObjectHandle Blueprint, FZorvekMCPBridgeObjectHandle Node, const FString& ParentComponentName) override;
	void RemoveComponentNode(FZorvekMCPBridgeObjectHandle Blueprint, FZorvekMCPBridgeObjectHandle Node) override;
	FZorvekMCPBridgeNodeSpawnResult SpawnNode(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName,
		const FZorvekMCPBridgeNodeSpawnRequest& Request, int32 PosX, int32 PosY, const TArray<FZorvekMCPBridgePinDefault>& PinDefaults) override;
	bool RemoveNode(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName, const FString& NodeGuid) override;
	FZorvekMCPBridgeConnectResult TryCreateConnection(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName,
		const FZorvekMCPBridgePinReference& PinA, const FZorvekMCPBridgePinReference& PinB) override;
	bool SetNodePosition(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName, const FString& NodeGuid, int32 PosX, int32 PosY) override;
	FZorvekMCPBridgeNodeSnapshot AddComment(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName, const FString& CommentText,
		int32 PosX, int32 PosY, int32 Width, int32 Height, int32 FontSize) override;
	FZorvekMCPBridgeCompileResult Compile(FZorvekMCPBridgeObjectHandle Blueprint, uint32 CompileFlags) override;
	bool GetMacroGraphNames(const FString& LibraryObjectPath, TArray<FString>& OutMacroNames) const override;
	bool GetKeyInfo(const FString& KeyName, FZorvekMCPBridgeKeyInfo& OutKey) const override;
	bool FindClassVariable(const FString& ClassPath, const FString& VariableName, FZorvekMCPBridgeClassVariableInfo& OutVariable) const override;
	void GetNodeActions(FZorvekMCPBridgeObjectHandle BlueprintScope, TArray<FZorvekMCPBridgeNodeAction>& OutActions) const override;
	bool GetNodeActionPins(FZorvekMCPBridgeObjectHandle BlueprintScope, const FZorvekMCPBridgeNodeSpawnRequest& Request,
		TArray<FZorvekMCPBridgeGraphPinSnapshot>& OutPins) const override;
	void MarkStructurallyModified(FZorvekMCPBridgeObjectHandle Blueprint) override;
	void MarkModified(FZorvekMCPBridgeObjectHandle Blueprint) override;
	bool RemoveMemberVariable(FZorvekMCPBridgeObjectHandle Blueprint, const FName& VarName) override;

	// The notifications ImplementNewInterface wrote (log lines in an unattended editor), for tests.
	const TArray<FString>& GetNotifications() const { return Notifications; }

private:
	FSimulatedBlueprint* FindBlueprint(FZorvekMCPBridgeObjectHandle Handle) const;
	// The node as ReadBlueprint reports it.
	FZorvekMCPBridgeNodeSnapshot SnapshotNode(const FSimulatedBlueprint& Blueprint, const FSimulatedNode& Node) const;
	// The graph of that name in the Blueprint; null when either is missing.
	FSimulatedGraph* FindGraph(FZorvekMCPBridgeObjectHandle Blueprint, const FString& GraphName) const;
	FSimulatedBlueprints& GetModel() const;
	// MarkBlueprintAsModified dirties the package: done after each edit that left the Blueprint Dirty.
	void DirtyPackageIfModified(const FSimulatedBlueprint* Blueprint);

	FSimulatedEditor& Editor;
	FSimulatedAssetAuthoring& AssetAuthoring;
	TArray<FString> Notifications;
	int32 ValidationObjectCount = 0;
};
