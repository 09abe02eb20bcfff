// The editor world, the level viewport and plug-in state in the Unreal Editor.
// (Being built: answers as an editor without a world.)
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"

bool FZorvekMCPBridgeEngineWorld::IsEditorAvailable() const { return false; }
bool FZorvekMCPBridgeEngineWorld::IsActorSubsystemAvailable() const { return false; }
bool FZorvekMCPBridgeEngineWorld::GetEditorWorld(FZorvekMCPBridgeWorldInfo&) const { return false; }
TArray<FZorvekMCPBridgeActorEntry> FZorvekMCPBridgeEngineWorld::GetAllLevelActors() const { return {}; }
TArray<FZorvekMCPBridgeObjectHandle> FZorvekMCPBridgeEngineWorld::GetSelectedLevelActors() const { return {}; }
bool FZorvekMCPBridgeEngineWorld::ReadActor(FZorvekMCPBridgeObjectHandle, FZorvekMCPBridgeActorSnapshot&) const { return false; }
FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineWorld::SpawnActorFromClass(const FString&, const FZorvekMCPBridgeVector&, const FZorvekMCPBridgeRotator&) { return FZorvekMCPBridgeObjectHandle(); }
void FZorvekMCPBridgeEngineWorld::SetActorScale3D(FZorvekMCPBridgeObjectHandle, const FZorvekMCPBridgeVector&) {}
void FZorvekMCPBridgeEngineWorld::SetActorLabel(FZorvekMCPBridgeObjectHandle, const FString&) {}
void FZorvekMCPBridgeEngineWorld::AddActorTags(FZorvekMCPBridgeObjectHandle, const TArray<FName>&) {}
void FZorvekMCPBridgeEngineWorld::SetActorTransform(FZorvekMCPBridgeObjectHandle, const FZorvekMCPBridgeTransform&) {}
bool FZorvekMCPBridgeEngineWorld::SetComponentRelativeTransform(FZorvekMCPBridgeObjectHandle, const FZorvekMCPBridgeTransform&) { return false; }
void FZorvekMCPBridgeEngineWorld::SelectNothing() {}
void FZorvekMCPBridgeEngineWorld::SetActorSelectionState(FZorvekMCPBridgeObjectHandle, bool) {}
bool FZorvekMCPBridgeEngineWorld::DestroyActors(const TArray<FZorvekMCPBridgeObjectHandle>&) { return false; }
FZorvekMCPBridgeViewportInfo FZorvekMCPBridgeEngineWorld::GetActiveViewport() const { return FZorvekMCPBridgeViewportInfo(); }
void FZorvekMCPBridgeEngineWorld::FocusActiveViewportOnBox(const FZorvekMCPBridgeBox&) {}
bool FZorvekMCPBridgeEngineWorld::ReadActiveViewportPixels(TArray<uint8>&, int32&, int32&) { return false; }
TArray<uint8> FZorvekMCPBridgeEngineWorld::CompressBgraToPng(int32, int32, const TArray<uint8>&) const { return {}; }
FZorvekMCPBridgePluginState FZorvekMCPBridgeEngineWorld::GetPluginState(const FString&) const { return FZorvekMCPBridgePluginState(); }
bool FZorvekMCPBridgeEngineWorld::ModuleExists(const FString&) const { return false; }
bool FZorvekMCPBridgeEngineWorld::IsModuleLoaded(const FString&) const { return false; }
