#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"

class IZorvekMCPBridgeEditorPort;

// The specialised readers of unreal_inspect_asset. Each decides by itself whether the asset is
// one of its family ("recognized"), never fails the tool, and reaches asset properties by name
// through reflection, so none needs the camera, StateTree or material modules' own types.
// Property export problems are appended to OutPartialFailures.
namespace ZorvekMCPBridgeAssets
{
	// Gameplay camera objects: the object graph and the camera asset and camera rig sections.
	TSharedPtr<FJsonObject> ReadGameplayCameraAsset(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Asset, TArray<TSharedPtr<FJsonValue>>& OutPartialFailures);

	// StateTree assets: editor data with its state tree, and the compiled counts.
	TSharedPtr<FJsonObject> ReadStateTreeAsset(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Asset, TArray<TSharedPtr<FJsonValue>>& OutPartialFailures);

	// Materials, material instances and material functions.
	TSharedPtr<FJsonObject> ReadMaterialAsset(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Asset, TArray<TSharedPtr<FJsonValue>>& OutPartialFailures);

	// Shared by the readers: a named array is the array under Key and its size under "Key_count",
	// or under CountKey where the reply names the count in the singular ("root_input_count").
	void SetNamedArray(const TSharedPtr<FJsonObject>& Target, const FString& Key, const TArray<TSharedPtr<FJsonValue>>& Items, const TCHAR* CountKey = nullptr);

	// The elements of an array of structs, each exported with ExportStructJson (depth 0, maximum
	// 4) plus "index"; at most MaxExportedArrayItems. OutTotalCount receives the full count.
	TArray<TSharedPtr<FJsonValue>> ExportStructArrayElements(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgePropertyCursor& ArrayValue, int32& OutTotalCount);

	// SetNamedArray of ExportStructArrayElements, with "Key_truncated_after" and
	// "Key_total_count" when the array is longer than the export bound.
	void SetStructElementArray(IZorvekMCPBridgeEditorPort& Port, const TSharedPtr<FJsonObject>& Target, const FString& Key, const FZorvekMCPBridgePropertyCursor& ArrayValue);

	// The export text of a value, or an empty string for an invalid cursor.
	FString GetExportText(const FZorvekMCPBridgePropertyCursor& Value);
}
