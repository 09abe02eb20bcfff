#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeAssets
{
	// Reply bounds of the value export: array items, struct fields and struct depth.
	constexpr int32 MaxExportedArrayItems = 50;
	constexpr int32 MaxExportedStructFields = 60;
	constexpr int32 MaxExportedStructDepth = 4;

	// A partial failure record: "stage", "reason" and, when a property is concerned, "property".
	TSharedPtr<FJsonValue> MakePartialFailure(const FString& Stage, const FString& Reason, const FString& PropertyName = FString());

	// The flat export of an object's inspectable properties, keyed by property name. A property
	// qualifies when it is editable, Blueprint-visible, Blueprint-read-only or registry-searchable,
	// and is neither transient, deprecated nor edit-on-defaults-only. A limit of 1 or more stops the
	// export with a "properties" note only when a further qualifying property exists; 0 or below
	// exports all. Values are the engine's always-writing export text (defaults included).
	// Referenced objects are appended to OutReferences; a value that cannot be exported at all
	// becomes a "property_export" record and never aborts the export.
	TSharedPtr<FJsonObject> ExportObjectProperties(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, int32 PropertyLimit, TArray<TSharedPtr<FJsonValue>>& OutReferences, TArray<TSharedPtr<FJsonValue>>& OutPartialFailures);

	// The recursive value export: export text always, with structure beside it (array items up to
	// 50, struct fields up to 60, structs unpacked while Depth is below MaxDepth). Callers start
	// at depth 0 with MaxExportedStructDepth. An invalid cursor yields an empty node.
	TSharedPtr<FJsonObject> ExportPropertyValueJson(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgePropertyCursor& Value, int32 Depth, int32 MaxDepth);
	TSharedPtr<FJsonObject> ExportStructJson(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgePropertyCursor& StructValue, int32 Depth, int32 MaxDepth);

	// Imports text into one top-level property of an object (found by the engine's name lookup),
	// as the material, fixture and PCG tools set values. Marks nothing dirty and notifies nobody.
	bool ImportPropertyText(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName, const FString& ValueText, FString& OutError);
}
