#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

// The PCG tools that run in this build: pcg_generate asks an actor's PCG component to run its
// graph, pcg_inspect_generated reports what it and the bridge's visual output actors produced.
// The forest tools live in ZorvekMCPBridgePcgForestTools; the other pcg_* tools of the catalogue
// answer through HandleUnbuiltTool until they are built.
enum class EZorvekMCPBridgeUnbuiltPcgTool : uint8
{
	MulticlassSpawnProof
};

namespace ZorvekMCPBridgePcgTools
{
	TSharedPtr<FJsonObject> HandleGenerate(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleInspectGenerated(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

	// The catalogue name of a PCG tool this build does not implement yet.
	const TCHAR* GetUnbuiltToolName(EZorvekMCPBridgeUnbuiltPcgTool Tool);

	// Such a tool's answer: the PCG unavailable result (operation: the name after "pcg_") when
	// PCG cannot be used, otherwise the plain error that the tool is not available in this build.
	TSharedPtr<FJsonObject> AnswerUnbuiltTool(FZorvekMCPBridgeToolContext& Context, const FString& ToolName, const TSharedPtr<FJsonObject>& Arguments);

	// The table's handler for each of them.
	template <EZorvekMCPBridgeUnbuiltPcgTool Tool>
	TSharedPtr<FJsonObject> HandleUnbuiltTool(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
	{
		return AnswerUnbuiltTool(Context, GetUnbuiltToolName(Tool), Arguments);
	}
}
