#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// blueprint_run_recipe: a list of Blueprint tool calls checked as a whole, then run in order
// through the same dispatch as "tools/call", with references from later steps into the results
// of earlier ones. Stops at the first failing step and rolls nothing back.
namespace ZorvekMCPBridgeRecipeTool
{
	TSharedPtr<FJsonObject> HandleRunRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
