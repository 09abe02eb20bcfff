#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// blueprint_read_graph: one graph of a Blueprint as text and JSON, with every graph of the
// Blueprint listed for the next read. Reading never changes the Blueprint.
namespace ZorvekMCPBridgeBlueprintReadTools
{
	TSharedPtr<FJsonObject> HandleReadGraph(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
