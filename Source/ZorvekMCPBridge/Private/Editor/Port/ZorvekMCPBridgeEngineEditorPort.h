// The editor port in the Unreal Editor: each member is a few engine calls; the tool logic lives
// in the portable code that calls it.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

class AActor;
class FLevelEditorViewportClient;
class UEditorActorSubsystem;
class UObject;
class UWorld;

class FZorvekMCPBridgeEngineAssetRegistry : public IZorvekMCPBridgeAssetRegistry
{
public:
	void EnumerateAssets(const FZorvekMCPBridgeAssetFilter& Filter, TFunctionRef<bool(const FZorvekMCPBridgeAssetData&)> Callback) const override;
	TArray<FZorvekMCPBridgeAssetData> GetAssetsByPackageName(const FString& PackageName) const override;
};

class FZorvekMCPBridgeEngineObjects : public IZorvekMCPBridgeObjects
{
public:
	FZorvekMCPBridgeObjectHandle LoadObject(const FString& ObjectPath) override;
	FZorvekMCPBridgeObjectHandle FindObject(const FString& ObjectPath) const override;
	FZorvekMCPBridgeObjectIdentity GetIdentity(FZorvekMCPBridgeObjectHandle Object) const override;
	FZorvekMCPBridgeTypeInfo GetClassInfo(FZorvekMCPBridgeObjectHandle Object) const override;
	bool IsA(FZorvekMCPBridgeObjectHandle Object, const FString& ClassPath) const override;
	bool FindType(EZorvekMCPBridgeTypeKind Kind, const FString& PathOrShortName, FZorvekMCPBridgeTypeInfo& OutType) const override;
	bool LoadClass(const FString& ClassPath, FZorvekMCPBridgeTypeInfo& OutClass) override;
	bool IsChildOf(const FString& ClassPath, const FString& BaseClassPath) const override;
};

class FZorvekMCPBridgeEngineReflection : public IZorvekMCPBridgeReflection
{
public:
	void EnumerateProperties(FZorvekMCPBridgeObjectHandle Object, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const override;
	FZorvekMCPBridgePropertyCursor FindProperty(FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName) const override;
	bool ImportText(const FZorvekMCPBridgePropertyCursor& Value, const FString& Text) const override;
	FString GetPropertyName(const FZorvekMCPBridgePropertyCursor& Value) const override;
	FString GetPropertyCppType(const FZorvekMCPBridgePropertyCursor& Value) const override;
	uint64 GetPropertyFlags(const FZorvekMCPBridgePropertyCursor& Value) const override;
	EZorvekMCPBridgePropertyKind GetPropertyKind(const FZorvekMCPBridgePropertyCursor& Value) const override;
	bool ExportText(const FZorvekMCPBridgePropertyCursor& Value, FString& OutText) const override;
	FZorvekMCPBridgeObjectHandle GetReferencedObject(const FZorvekMCPBridgePropertyCursor& Value) const override;
	int32 GetArrayNum(const FZorvekMCPBridgePropertyCursor& Value) const override;
	FString GetArrayElementCppType(const FZorvekMCPBridgePropertyCursor& Value) const override;
	FZorvekMCPBridgePropertyCursor GetArrayElement(const FZorvekMCPBridgePropertyCursor& Value, int32 Index) const override;
	FString GetStructName(const FZorvekMCPBridgePropertyCursor& Value) const override;
	FString GetStructPath(const FZorvekMCPBridgePropertyCursor& Value) const override;
	void EnumerateStructFields(const FZorvekMCPBridgePropertyCursor& Value, TFunctionRef<bool(const FZorvekMCPBridgePropertyCursor&)> Callback) const override;
	FZorvekMCPBridgePropertyCursor FindStructField(const FZorvekMCPBridgePropertyCursor& Value, const FString& FieldName) const override;
};

class FZorvekMCPBridgeEngineMaterials : public IZorvekMCPBridgeMaterials
{
public:
	bool ReadMaterial(FZorvekMCPBridgeObjectHandle Material, const TArray<FString>& RootProperties, FZorvekMCPBridgeMaterialSnapshot& OutSnapshot) const override;
	FZorvekMCPBridgeObjectHandle CreateMaterial(const FString& PackageName, const FString& AssetName, FString& OutError) override;
	bool IsParameterExpressionClass(const FString& ClassPath) const override;
	FZorvekMCPBridgeObjectHandle NewExpression(FZorvekMCPBridgeObjectHandle Material, const FString& ClassPath, const FString& NodeName) override;
	void DiscardExpression(FZorvekMCPBridgeObjectHandle Expression) override;
	void SetParameterName(FZorvekMCPBridgeObjectHandle Expression, const FString& ParameterName) override;
	void SetDescription(FZorvekMCPBridgeObjectHandle Expression, const FString& Description) override;
	void AddExpression(FZorvekMCPBridgeObjectHandle Material, FZorvekMCPBridgeObjectHandle Expression, int32 PosX, int32 PosY) override;
	bool ConnectExpressionInput(FZorvekMCPBridgeObjectHandle Source, int32 OutputIndex, FZorvekMCPBridgeObjectHandle Target, int32 InputIndex) override;
	bool ConnectRootInput(FZorvekMCPBridgeObjectHandle Material, const FString& RootProperty, FZorvekMCPBridgeObjectHandle Source, int32 OutputIndex) override;
	void AddComment(FZorvekMCPBridgeObjectHandle Material, const FString& Text, int32 PosX, int32 PosY, int32 Width, int32 Height) override;
	FZorvekMCPBridgeObjectHandle CreateMaterialInstance(const FString& PackageName, const FString& AssetName, FZorvekMCPBridgeObjectHandle Parent, FString& OutError) override;
	bool SetInstanceScalarParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, float Value) override;
	bool SetInstanceTextureParameter(FZorvekMCPBridgeObjectHandle Instance, const FString& ParameterName, FZorvekMCPBridgeObjectHandle Texture) override;
	void NotifyMaterialEdited(FZorvekMCPBridgeObjectHandle Material) override;
};

class FZorvekMCPBridgeEngineAssetAuthoring : public IZorvekMCPBridgeAssetAuthoring
{
public:
	void EnumerateLoadedClasses(const FString& BaseClassPath, TFunctionRef<bool(const FZorvekMCPBridgeTypeInfo&)> Callback) const override;
	FString GetClassDisplayName(const FString& ClassPath) const override;
	bool IsValidLongPackageName(const FString& PackageName, FString& OutReason) const override;
	FZorvekMCPBridgeObjectHandle CreateOrFindPackage(const FString& PackageName) override;
	FZorvekMCPBridgeObjectHandle CreateAssetObject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name) override;
	FZorvekMCPBridgeObjectHandle CreateSubobject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name) override;
	void NotifyAssetCreated(FZorvekMCPBridgeObjectHandle Asset) override;
	void MarkPackageDirty(FZorvekMCPBridgeObjectHandle Object) override;
	void PostEditChange(FZorvekMCPBridgeObjectHandle Object) override;
	bool SavePackage(FZorvekMCPBridgeObjectHandle Asset, FString& OutFileName) override;
};

class FZorvekMCPBridgeEngineBlueprints : public IZorvekMCPBridgeBlueprints
{
public:
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
	void MarkStructurallyModified(FZorvekMCPBridgeObjectHandle Blueprint) override;
	void MarkModified(FZorvekMCPBridgeObjectHandle Blueprint) override;
	bool RemoveMemberVariable(FZorvekMCPBridgeObjectHandle Blueprint, const FName& VarName) override;

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
};

class FZorvekMCPBridgeEngineFunctions : public IZorvekMCPBridgeFunctions
{
public:
	bool GetClassFunctions(const FString& ClassPath, const TArray<FString>& MetaDataKeys, TArray<FZorvekMCPBridgeFunctionInfo>& OutFunctions) const override;
	bool FindFunction(const FString& ClassPath, const FString& FunctionName, const TArray<FString>& MetaDataKeys, FZorvekMCPBridgeFunctionInfo& OutFunction) const override;
	TUniquePtr<IZorvekMCPBridgeParameterBlock> CreateParameterBlock(const FString& ClassPath, const FString& FunctionName) override;
	void CallFunction(FZorvekMCPBridgeObjectHandle Object, IZorvekMCPBridgeParameterBlock& Block) override;
	TUniquePtr<IZorvekMCPBridgeTransaction> BeginTransaction(const FText& Title) override;
	TArray<FString> GetLoadedDerivedClasses(const FString& BaseClassPath) const override;
	FString GetClassDisplayName(const FString& ClassPath) const override;
	bool IsAssetRegistryLoading() const override;
	TArray<FZorvekMCPBridgeUtilityBlueprintInfo> GetEditorUtilityBlueprints() const override;
	bool LoadBlueprintGeneratedClass(const FString& BlueprintObjectPath, FString& OutClassPath) override;
	FZorvekMCPBridgeObjectHandle CreateExtensionInstance(const FString& ClassPath) override;
	void ReleaseExtensionInstances() override;
	bool IsValidExtension(FZorvekMCPBridgeObjectHandle Extension) const override;
	bool GetExtensionDefinition(FZorvekMCPBridgeObjectHandle Extension, FZorvekMCPBridgeVessaDefinitionData& OutDefinition) const override;
	bool IsExtensionEnabled(FZorvekMCPBridgeObjectHandle Extension) const override;
};

class FZorvekMCPBridgeEngineWorld : public IZorvekMCPBridgeWorld
{
public:
	bool IsEditorAvailable() const override;
	bool IsActorSubsystemAvailable() const override;
	bool GetEditorWorld(FZorvekMCPBridgeWorldInfo& OutWorld) const override;
	TArray<FZorvekMCPBridgeActorEntry> GetAllLevelActors() const override;
	TArray<FZorvekMCPBridgeObjectHandle> GetSelectedLevelActors() const override;
	bool ReadActor(FZorvekMCPBridgeObjectHandle Actor, FZorvekMCPBridgeActorSnapshot& OutActor) const override;
	FZorvekMCPBridgeObjectHandle SpawnActorFromClass(const FString& ClassPath, const FZorvekMCPBridgeVector& Location, const FZorvekMCPBridgeRotator& Rotation) override;
	void SetActorScale3D(FZorvekMCPBridgeObjectHandle Actor, const FZorvekMCPBridgeVector& Scale) override;
	void SetActorLabel(FZorvekMCPBridgeObjectHandle Actor, const FString& Label) override;
	void AddActorTags(FZorvekMCPBridgeObjectHandle Actor, const TArray<FName>& Tags) override;
	void SetActorTransform(FZorvekMCPBridgeObjectHandle Actor, const FZorvekMCPBridgeTransform& Transform) override;
	bool SetComponentRelativeTransform(FZorvekMCPBridgeObjectHandle Component, const FZorvekMCPBridgeTransform& Transform) override;
	void SelectNothing() override;
	void SetActorSelectionState(FZorvekMCPBridgeObjectHandle Actor, bool bSelected) override;
	bool DestroyActors(const TArray<FZorvekMCPBridgeObjectHandle>& Actors) override;
	FZorvekMCPBridgeObjectHandle AddInstanceComponent(FZorvekMCPBridgeObjectHandle Actor, const FString& ComponentClassPath, const FString& ComponentName) override;
	FZorvekMCPBridgeViewportInfo GetActiveViewport() const override;
	void FocusActiveViewportOnBox(const FZorvekMCPBridgeBox& Box) override;
	bool ReadActiveViewportPixels(TArray<uint8>& OutBgraPixels, int32& OutWidth, int32& OutHeight) override;
	TArray<uint8> CompressBgraToPng(int32 Width, int32 Height, const TArray<uint8>& BgraPixels) const override;
	FZorvekMCPBridgePluginState GetPluginState(const FString& PluginName) const override;
	bool ModuleExists(const FString& ModuleName) const override;
	bool IsModuleLoaded(const FString& ModuleName) const override;

private:
	// The editor world context's world (never a play-in-editor world); null without GEditor.
	static UWorld* GetEditorWorldObject();
	static UEditorActorSubsystem* GetActorSubsystem();
	// The handle's actor when it is a live actor of the editor world, else null.
	static AActor* ToEditorActor(FZorvekMCPBridgeObjectHandle Handle);
	// The client of the Level Editor's active viewport; null when no level editor is open.
	static FLevelEditorViewportClient* GetActiveViewportClient();
};

class FZorvekMCPBridgeEngineEditorPort : public IZorvekMCPBridgeEditorPort
{
public:
	FString GetEditorDescription() const override;
	bool IsSimulated() const override { return false; }
	IZorvekMCPBridgeAssetRegistry& GetAssetRegistry() override { return AssetRegistry; }
	IZorvekMCPBridgeObjects& GetObjects() override { return Objects; }
	IZorvekMCPBridgeReflection& GetReflection() override { return Reflection; }
	IZorvekMCPBridgeMaterials& GetMaterials() override { return Materials; }
	IZorvekMCPBridgeAssetAuthoring& GetAssetAuthoring() override { return AssetAuthoring; }
	IZorvekMCPBridgeBlueprints& GetBlueprints() override { return Blueprints; }
	IZorvekMCPBridgeFunctions& GetFunctions() override { return Functions; }
	IZorvekMCPBridgeWorld& GetWorld() override { return World; }

	static UObject* ToObject(FZorvekMCPBridgeObjectHandle Handle);
	static FZorvekMCPBridgeObjectHandle ToHandle(const UObject* Object);

private:
	FZorvekMCPBridgeEngineAssetRegistry AssetRegistry;
	FZorvekMCPBridgeEngineObjects Objects;
	FZorvekMCPBridgeEngineReflection Reflection;
	FZorvekMCPBridgeEngineMaterials Materials;
	FZorvekMCPBridgeEngineAssetAuthoring AssetAuthoring;
	FZorvekMCPBridgeEngineBlueprints Blueprints;
	FZorvekMCPBridgeEngineFunctions Functions;
	FZorvekMCPBridgeEngineWorld World;
};
