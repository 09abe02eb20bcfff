// Node placement, connection, layout, compile and the action catalogue in the Unreal Editor.
// (Being built: every call answers as an engine that refuses.)
#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"

FZorvekMCPBridgeNodeSpawnResult FZorvekMCPBridgeEngineBlueprints::SpawnNode(FZorvekMCPBridgeObjectHandle, const FString&, const FZorvekMCPBridgeNodeSpawnRequest&, int32, int32, const TArray<FZorvekMCPBridgePinDefault>&)
{
	FZorvekMCPBridgeNodeSpawnResult Result;
	Result.Failure = EZorvekMCPBridgeNodeSpawnFailure::NodeNotCreated;
	return Result;
}

bool FZorvekMCPBridgeEngineBlueprints::RemoveNode(FZorvekMCPBridgeObjectHandle, const FString&, const FString&)
{
	return false;
}

FZorvekMCPBridgeConnectResult FZorvekMCPBridgeEngineBlueprints::TryCreateConnection(FZorvekMCPBridgeObjectHandle, const FString&, const FZorvekMCPBridgePinReference&, const FZorvekMCPBridgePinReference&)
{
	return FZorvekMCPBridgeConnectResult();
}

bool FZorvekMCPBridgeEngineBlueprints::SetNodePosition(FZorvekMCPBridgeObjectHandle, const FString&, const FString&, int32, int32)
{
	return false;
}

FZorvekMCPBridgeNodeSnapshot FZorvekMCPBridgeEngineBlueprints::AddComment(FZorvekMCPBridgeObjectHandle, const FString&, const FString&, int32, int32, int32, int32, int32)
{
	return FZorvekMCPBridgeNodeSnapshot();
}

FZorvekMCPBridgeCompileResult FZorvekMCPBridgeEngineBlueprints::Compile(FZorvekMCPBridgeObjectHandle, uint32)
{
	return FZorvekMCPBridgeCompileResult();
}

bool FZorvekMCPBridgeEngineBlueprints::GetMacroGraphNames(const FString&, TArray<FString>&) const
{
	return false;
}

bool FZorvekMCPBridgeEngineBlueprints::GetKeyInfo(const FString&, FZorvekMCPBridgeKeyInfo&) const
{
	return false;
}

bool FZorvekMCPBridgeEngineBlueprints::FindClassVariable(const FString&, const FString&, FZorvekMCPBridgeClassVariableInfo&) const
{
	return false;
}

void FZorvekMCPBridgeEngineBlueprints::GetNodeActions(FZorvekMCPBridgeObjectHandle, TArray<FZorvekMCPBridgeNodeAction>&) const
{
}

bool FZorvekMCPBridgeEngineBlueprints::GetNodeActionPins(FZorvekMCPBridgeObjectHandle, const FZorvekMCPBridgeNodeSpawnRequest&, TArray<FZorvekMCPBridgeGraphPinSnapshot>&) const
{
	return false;
}
