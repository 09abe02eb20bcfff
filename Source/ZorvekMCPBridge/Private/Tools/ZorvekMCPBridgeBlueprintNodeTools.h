#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

struct FZorvekMCPBridgeToolContext;

// The Blueprint node tools: placing a node from a spawner id, wiring two pins, moving a node,
// drawing a comment box and compiling.
namespace ZorvekMCPBridgeBlueprintNodeTools
{
	// The compile option flags blueprint_compile passes (EBlueprintCompileOptions::SkipSave).
	constexpr uint32 CompileFlags = 32;

	TSharedPtr<FJsonObject> HandleAddNode(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleConnectNodes(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleSetNodePosition(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleAddComment(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleCompile(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

	// The status word of blueprint_compile's answer: "up_to_date", "up_to_date_with_warnings",
	// "error", "dirty", "being_created" or "unknown".
	const TCHAR* GetStatusWord(EZorvekMCPBridgeBlueprintStatus Status);

	// PinDefaults as the node placement takes them: each value a string, number (its JSON text)
	// or boolean ("true" / "false"), in the request's order. An absent or null PinDefaults is
	// none. False with the message for anything else, before anything is made.
	bool ReadPinDefaults(const TSharedPtr<FJsonObject>& Arguments, TArray<FZorvekMCPBridgePinDefault>& OutPinDefaults, FString& OutError);
}
