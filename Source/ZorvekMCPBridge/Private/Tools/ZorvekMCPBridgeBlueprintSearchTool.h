#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// blueprint_search_project: finds Blueprints by name, folder and parent class, and inside them
// graphs, nodes, variables, components, comments, custom events, interfaces and functions, each
// hit with the next tool calls to read it. Reading only; nothing is changed.
namespace ZorvekMCPBridgeBlueprintSearchTool
{
	TSharedPtr<FJsonObject> HandleSearchProject(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
