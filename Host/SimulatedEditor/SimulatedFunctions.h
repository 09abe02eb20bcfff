// Functions and calls in the simulated editor: UFunction snapshots with parameter flags and
// metadata, parameter blocks, ProcessEvent (a function's C++ body stands in for its native code or
// bytecode), the engine's JSON <-> property converters over simulated values, transactions, and the
// Vessa extension classes with their class defaults and live instances.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeFunctionPort.h"
#include "SimulatedEditor.h"

#include <unordered_map>

class FSimulatedAssetAuthoring;

// What the editor keeps for an extension class besides its reflected properties: its class
// default Definition (the engine's CDO property, refreshed at load and at each compile) and the
// class default of bEnabled.
struct FSimulatedVessaClassDefault
{
	FZorvekMCPBridgeVessaDefinitionData Definition;
	bool bEnabled = true;
	bool bRefreshed = false;
};

struct FSimulatedVessaState
{
	std::unordered_map<const FSimulatedType*, FSimulatedVessaClassDefault> ClassDefaults;
	// Live extension instances (kept from collection by the registry) and their Definition copies.
	std::unordered_map<const FSimulatedObject*, FZorvekMCPBridgeVessaDefinitionData> Instances;
	// Editor Utility Blueprints in the registry whose class appears only once they load, by
	// Blueprint object path; the loader creates the Blueprint, its class and its functions.
	TMap<FString, TFunction<bool(FSimulatedEditor&)>> PendingBlueprintLoads;
	int32 InstanceCounter = 0;
	// True while the asset registry's first scan "runs" (tests set it).
	bool bAssetRegistryLoading = false;
};

namespace SimulatedVessa
{
	extern const TCHAR* const ExtensionBaseClassPath;
	extern const TCHAR* const SystemExtensionClassPath;
	extern const TCHAR* const EditorUtilityBlueprintClassPath;
	// The plug-in's own classes: the extension base class and the built-in system extension.
	void EnsurePluginClasses(FSimulatedEditor& Editor);
	// The sample project's extensions (SimulatedVessaSamples.cpp).
	void RegisterSamples(FSimulatedEditor& Editor);
	// Adds a function to a class; parameters as (name, type text, CPF flags besides CPF_Parm).
	struct FParameterSpec
	{
		const TCHAR* Name;
		const TCHAR* TypeText;
		uint64 Flags;
	};
	FSimulatedFunction* AddFunction(FSimulatedEditor& Editor, FSimulatedType* Class, const FString& Name, uint32 FunctionFlags,
		std::initializer_list<FParameterSpec> Parameters, std::initializer_list<std::pair<const TCHAR*, const TCHAR*>> MetaData, FSimulatedFunctionBody Body);
}

class FSimulatedFunctions : public IZorvekMCPBridgeFunctions
{
public:
	FSimulatedFunctions(FSimulatedEditor& InEditor, const FSimulatedAssetAuthoring& InAssetAuthoring);

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

	// The class default Definition, refreshed as PostInitProperties does when the class loads;
	// null for a class that is no extension. Tests edit it as the class defaults editor would.
	FSimulatedVessaClassDefault* GetClassDefault(const FString& ClassPath);
	// PostCDOCompiled: a recompiled extension class rediscovers its actions and queries.
	void RecompileExtensionClass(const FString& ClassPath);

	// The converters FJsonObjectConverter applies, over simulated values.
	bool JsonValueToProperty(const FSimulatedProperty& Property, const TSharedPtr<FJsonValue>& JsonValue, FSimulatedValue& OutValue) const;
	bool JsonObjectToStruct(const FSimulatedType& Struct, const TSharedPtr<FJsonObject>& JsonObject, FSimulatedValue& OutValue) const;
	TSharedPtr<FJsonValue> PropertyToJsonValue(const FSimulatedProperty& Property, const FSimulatedValue& Value) const;

private:
	FSimulatedEditor& Editor;
	const FSimulatedAssetAuthoring& AssetAuthoring;
};
