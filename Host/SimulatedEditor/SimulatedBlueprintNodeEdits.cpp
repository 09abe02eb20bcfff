// Node placement, connection, layout, compile and the action catalogue of the simulated
// Blueprint port. (Being built: every call answers as an engine that refuses.)
#include "SimulatedBlueprintPort.h"

FZorvekMCPBridgeNodeSpawnResult FSimulatedBlueprintPort::SpawnNode(FZorvekMCPBridgeObjectHandle, const FString&, const FZorvekMCPBridgeNodeSpawnRequest&, int32, int32, const TArray<FZorvekMCPBridgePinDefault>&)
{
	FZorvekMCPBridgeNodeSpawnResult Result;
	Result.Failure = EZorvekMCPBridgeNodeSpawnFailure::NodeNotCreated;
	return Result;
}

bool FSimulatedBlueprintPort::RemoveNode(FZorvekMCPBridgeObjectHandle, const FString&, const FString&)
{
	return false;
}

FZorvekMCPBridgeConnectResult FSimulatedBlueprintPort::TryCreateConnection(FZorvekMCPBridgeObjectHandle, const FString&, const FZorvekMCPBridgePinReference&, const FZorvekMCPBridgePinReference&)
{
	return FZorvekMCPBridgeConnectResult();
}

bool FSimulatedBlueprintPort::SetNodePosition(FZorvekMCPBridgeObjectHandle, const FString&, const FString&, int32, int32)
{
	return false;
}

FZorvekMCPBridgeNodeSnapshot FSimulatedBlueprintPort::AddComment(FZorvekMCPBridgeObjectHandle, const FString&, const FString&, int32, int32, int32, int32, int32)
{
	return FZorvekMCPBridgeNodeSnapshot();
}

FZorvekMCPBridgeCompileResult FSimulatedBlueprintPort::Compile(FZorvekMCPBridgeObjectHandle, uint32)
{
	return FZorvekMCPBridgeCompileResult();
}

bool FSimulatedBlueprintPort::GetMacroGraphNames(const FString&, TArray<FString>&) const
{
	return false;
}

bool FSimulatedBlueprintPort::GetKeyInfo(const FString&, FZorvekMCPBridgeKeyInfo&) const
{
	return false;
}

bool FSimulatedBlueprintPort::FindClassVariable(const FString&, const FString&, FZorvekMCPBridgeClassVariableInfo&) const
{
	return false;
}

void FSimulatedBlueprintPort::GetNodeActions(FZorvekMCPBridgeObjectHandle, TArray<FZorvekMCPBridgeNodeAction>&) const
{
}

bool FSimulatedBlueprintPort::GetNodeActionPins(FZorvekMCPBridgeObjectHandle, const FZorvekMCPBridgeNodeSpawnRequest&, TArray<FZorvekMCPBridgeGraphPinSnapshot>&) const
{
	return false;
}
