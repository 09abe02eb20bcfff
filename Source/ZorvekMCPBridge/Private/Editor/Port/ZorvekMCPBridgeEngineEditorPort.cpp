#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"

#include "Misc/EngineVersion.h"
#include "UObject/Object.h"

FString FZorvekMCPBridgeEngineEditorPort::GetEditorDescription() const
{
	return FString::Printf(TEXT("Unreal Editor %s"), *FEngineVersion::Current().ToString());
}

UObject* FZorvekMCPBridgeEngineEditorPort::ToObject(FZorvekMCPBridgeObjectHandle Handle)
{
	return static_cast<UObject*>(Handle.GetRaw());
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineEditorPort::ToHandle(const UObject* Object)
{
	return FZorvekMCPBridgeObjectHandle(const_cast<UObject*>(Object));
}

TSharedPtr<IZorvekMCPBridgeEditorPort> CreateZorvekMCPBridgeEditorPort()
{
	return MakeShared<FZorvekMCPBridgeEngineEditorPort>();
}
