// What the Blueprint member operations share: how they fail.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"

namespace ZorvekMCPBridgeBlueprintMemberSupport
{
	// Every member tool fails with its message as the tool's error text.
	inline TSharedPtr<FJsonObject> FailMemberTool(const FString& Message)
	{
		return ZorvekMCPBridgeTools::MakeTextToolResult(Message, true);
	}
}
