// The world domain of the editor port over the simulated editor's level (SimulatedWorld.h), its
// viewport (SimulatedViewport.h) and PCG plug-in state (SimulatedPcg.h). Handles are the
// simulated objects of actors and components. The port ticks the simulated world from the core
// ticker, as the editor ticks every frame, so scheduled PCG generations complete and viewports
// redraw between requests.
#pragma once

#include "CoreMinimal.h"
#include "Containers/Ticker.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"

class FSimulatedEditor;
class FSimulatedObject;
class FSimulatedWorld;
struct FSimulatedActor;
struct FSimulatedComponent;

class FSimulatedWorldPort : public IZorvekMCPBridgeWorld
{
public:
	explicit FSimulatedWorldPort(FSimulatedEditor& InEditor);
	~FSimulatedWorldPort() override;
	FSimulatedWorldPort(const FSimulatedWorldPort&) = delete;
	FSimulatedWorldPort& operator=(const FSimulatedWorldPort&) = delete;

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

	// Tests model an editor whose actor subsystem or editor world is missing (without a world the
	// subsystem lists no actors, as the engine's does).
	void SetActorSubsystemAvailable(bool bAvailable) { bActorSubsystemAvailable = bAvailable; }
	void SetEditorWorldAvailable(bool bAvailable) { bEditorWorldAvailable = bAvailable; }
	FSimulatedWorld& GetSimulatedWorld() const;

private:
	FSimulatedActor* ToActor(FZorvekMCPBridgeObjectHandle Handle) const;
	FSimulatedComponent* ToComponent(FZorvekMCPBridgeObjectHandle Handle) const;
	// The editor redraws level viewports after a change to the level.
	void NoteLevelChanged() const;

	FSimulatedEditor& Editor;
	bool bActorSubsystemAvailable = true;
	bool bEditorWorldAvailable = true;
	FTSTicker::FDelegateHandle TickHandle;
};
