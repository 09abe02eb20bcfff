// The editor port over the simulated editor: what zorvek-bridge-host serves and what the tests
// drive the tools with.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "SimulatedAssetAuthoring.h"
#include "SimulatedBlueprintPort.h"
#include "SimulatedEditor.h"
#include "SimulatedFunctions.h"
#include "SimulatedMaterialAuthoring.h"
#include "SimulatedWorldPort.h"

class FSimulatedEditorPort : public IZorvekMCPBridgeEditorPort
{
public:
	explicit FSimulatedEditorPort(const TSharedPtr<FSimulatedEditor>& InEditor);
	~FSimulatedEditorPort() override;

	FString GetEditorDescription() const override;
	bool IsSimulated() const override { return true; }
	IZorvekMCPBridgeAssetRegistry& GetAssetRegistry() override;
	IZorvekMCPBridgeObjects& GetObjects() override;
	IZorvekMCPBridgeReflection& GetReflection() override;
	IZorvekMCPBridgeMaterials& GetMaterials() override;
	IZorvekMCPBridgeAssetAuthoring& GetAssetAuthoring() override;
	IZorvekMCPBridgeBlueprints& GetBlueprints() override;
	FSimulatedBlueprintPort& GetSimulatedBlueprints() const { return *Blueprints; }
	FSimulatedAssetAuthoring& GetSimulatedAssetAuthoring() const { return *AssetAuthoring; }
	IZorvekMCPBridgeFunctions& GetFunctions() override;
	FSimulatedFunctions& GetSimulatedFunctions() const { return *Functions; }
	IZorvekMCPBridgeWorld& GetWorld() override;
	FSimulatedWorldPort& GetSimulatedWorld() const { return *World; }

	FSimulatedMaterialAuthoring& GetSimulatedMaterialAuthoring() const;
	FSimulatedEditor& GetEditor() const { return *Editor; }

	// Handles and simulated objects, for tests that build their own fixtures.
	static FZorvekMCPBridgeObjectHandle ToHandle(const FSimulatedObject* Object);
	static FSimulatedObject* ToObject(FZorvekMCPBridgeObjectHandle Handle);

private:
	class FAssetRegistry;
	class FObjects;
	class FReflection;
	class FMaterials;

	TSharedPtr<FSimulatedEditor> Editor;
	TUniquePtr<FAssetRegistry> AssetRegistry;
	TUniquePtr<FObjects> Objects;
	TUniquePtr<FReflection> Reflection;
	TUniquePtr<FMaterials> Materials;
	TUniquePtr<FSimulatedAssetAuthoring> AssetAuthoring;
	TUniquePtr<FSimulatedBlueprintPort> Blueprints;
	TUniquePtr<FSimulatedFunctions> Functions;
	TUniquePtr<FSimulatedWorldPort> World;
};

// The host's choice of project: loads the fixture at FilePath (the sample project when empty)
// and keeps it as the project that CreateZorvekMCPBridgeEditorPort serves. False, with the
// reason, when the fixture does not load.
bool SelectSimulatedEditorProject(const FString& FilePath, FString& OutError);
