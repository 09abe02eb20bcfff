#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeAssetAuthoringPort.h"
#include "EditorPort/ZorvekMCPBridgeAssetRegistryPort.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"
#include "EditorPort/ZorvekMCPBridgeFunctionPort.h"
#include "EditorPort/ZorvekMCPBridgeMaterialPort.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "EditorPort/ZorvekMCPBridgeObjectPort.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"

// Everything the tools read from or change in the live editor goes through this port. It speaks
// in data (paths, names, handles, snapshots, error texts), one interface per domain. The editor
// build implements it with engine calls (Editor/Port/), the headless host with the simulated
// editor (Host/SimulatedEditor/). A new domain adds its interface here and an accessor below.
class IZorvekMCPBridgeEditorPort
{
public:
	virtual ~IZorvekMCPBridgeEditorPort() = default;

	// Says which editor answers: the Unreal Editor, or the simulated editor and its project.
	virtual FString GetEditorDescription() const = 0;
	virtual bool IsSimulated() const = 0;

	virtual IZorvekMCPBridgeAssetRegistry& GetAssetRegistry() = 0;
	virtual IZorvekMCPBridgeObjects& GetObjects() = 0;
	virtual IZorvekMCPBridgeReflection& GetReflection() = 0;
	virtual IZorvekMCPBridgeMaterials& GetMaterials() = 0;
	virtual IZorvekMCPBridgeAssetAuthoring& GetAssetAuthoring() = 0;
	virtual IZorvekMCPBridgeBlueprints& GetBlueprints() = 0;
	virtual IZorvekMCPBridgeFunctions& GetFunctions() = 0;
	virtual IZorvekMCPBridgeWorld& GetWorld() = 0;
};

// Creates the port of this build: defined once by the editor build (Editor/Port/) and once by
// the headless host (Host/SimulatedEditor/). Null when no editor can be reached.
TSharedPtr<IZorvekMCPBridgeEditorPort> CreateZorvekMCPBridgeEditorPort();
