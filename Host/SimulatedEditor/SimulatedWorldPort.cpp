#include "SimulatedWorldPort.h"

#include "SimulatedEditor.h"

FSimulatedWorldPort::FSimulatedWorldPort(FSimulatedEditor&)
{
}

bool FSimulatedWorldPort::IsEditorAvailable() const { return true; }
bool FSimulatedWorldPort::IsActorSubsystemAvailable() const { return false; }
bool FSimulatedWorldPort::GetEditorWorld(FZorvekMCPBridgeWorldInfo&) const { return false; }
TArray<FZorvekMCPBridgeActorEntry> FSimulatedWorldPort::GetAllLevelActors() const { return {}; }
TArray<FZorvekMCPBridgeObjectHandle> FSimulatedWorldPort::GetSelectedLevelActors() const { return {}; }
bool FSimulatedWorldPort::ReadActor(FZorvekMCPBridgeObjectHandle, FZorvekMCPBridgeActorSnapshot&) const { return false; }
FZorvekMCPBridgeObjectHandle FSimulatedWorldPort::SpawnActorFromClass(const FString&, const FZorvekMCPBridgeVector&, const FZorvekMCPBridgeRotator&) { return FZorvekMCPBridgeObjectHandle(); }
void FSimulatedWorldPort::SetActorScale3D(FZorvekMCPBridgeObjectHandle, const FZorvekMCPBridgeVector&) {}
void FSimulatedWorldPort::SetActorLabel(FZorvekMCPBridgeObjectHandle, const FString&) {}
void FSimulatedWorldPort::AddActorTags(FZorvekMCPBridgeObjectHandle, const TArray<FName>&) {}
void FSimulatedWorldPort::SetActorTransform(FZorvekMCPBridgeObjectHandle, const FZorvekMCPBridgeTransform&) {}
bool FSimulatedWorldPort::SetComponentRelativeTransform(FZorvekMCPBridgeObjectHandle, const FZorvekMCPBridgeTransform&) { return false; }
void FSimulatedWorldPort::SelectNothing() {}
void FSimulatedWorldPort::SetActorSelectionState(FZorvekMCPBridgeObjectHandle, bool) {}
bool FSimulatedWorldPort::DestroyActors(const TArray<FZorvekMCPBridgeObjectHandle>&) { return false; }
FZorvekMCPBridgeViewportInfo FSimulatedWorldPort::GetActiveViewport() const { return FZorvekMCPBridgeViewportInfo(); }
void FSimulatedWorldPort::FocusActiveViewportOnBox(const FZorvekMCPBridgeBox&) {}
bool FSimulatedWorldPort::ReadActiveViewportPixels(TArray<uint8>&, int32&, int32&) { return false; }
TArray<uint8> FSimulatedWorldPort::CompressBgraToPng(int32, int32, const TArray<uint8>&) const { return {}; }
FZorvekMCPBridgePluginState FSimulatedWorldPort::GetPluginState(const FString&) const { return FZorvekMCPBridgePluginState(); }
bool FSimulatedWorldPort::ModuleExists(const FString&) const { return false; }
bool FSimulatedWorldPort::IsModuleLoaded(const FString&) const { return false; }
