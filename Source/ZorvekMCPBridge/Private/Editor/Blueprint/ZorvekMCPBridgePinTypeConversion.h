// Moves pin types between the engine's FEdGraphPinType and the portable type the tools work with.
#pragma once

#include "CoreMinimal.h"
#include "Blueprint/ZorvekMCPBridgePinTypes.h"
#include "EdGraph/EdGraphPin.h"

class UObject;
struct FUserPinInfo;

namespace ZorvekMCPBridgePinTypeConversion
{
	// The empty identity for null.
	FZorvekMCPBridgeTypeIdentity MakeTypeIdentity(const UObject* Object);

	FZorvekMCPBridgeTerminalType FromEngineTerminalType(const FEdGraphTerminalType& TerminalType);
	FZorvekMCPBridgePinType FromEnginePinType(const FEdGraphPinType& PinType);

	// Finds (or loads) the objects the portable type names. False with OutError when one of them
	// does not load; OutPinType is then left as it was.
	bool ToEngineTerminalType(const FZorvekMCPBridgeTerminalType& TerminalType, FEdGraphTerminalType& OutTerminalType, FString& OutError);
	bool ToEnginePinType(const FZorvekMCPBridgePinType& PinType, FEdGraphPinType& OutPinType, FString& OutError);

	FZorvekMCPBridgePinSnapshot MakePinSnapshot(const UEdGraphPin& Pin);
	FZorvekMCPBridgeUserPinInfo MakeUserPinInfo(const FUserPinInfo& UserPin);
}
