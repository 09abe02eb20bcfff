// Asset authoring in the simulated editor: packages and asset objects as CreatePackage and
// NewObject make them, the engine's package name rules, and saving to the package files.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeAssetAuthoringPort.h"

class FSimulatedEditor;
class IZorvekMCPBridgeObjects;

class FSimulatedAssetAuthoring : public IZorvekMCPBridgeAssetAuthoring
{
public:
	FSimulatedAssetAuthoring(FSimulatedEditor& InEditor, const IZorvekMCPBridgeObjects& InObjects);

	void EnumerateLoadedClasses(const FString& BaseClassPath, TFunctionRef<bool(const FZorvekMCPBridgeTypeInfo&)> Callback) const override;
	FString GetClassDisplayName(const FString& ClassPath) const override;
	bool IsValidLongPackageName(const FString& PackageName, FString& OutReason) const override;
	FZorvekMCPBridgeObjectHandle CreateOrFindPackage(const FString& PackageName) override;
	FZorvekMCPBridgeObjectHandle CreateAssetObject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name) override;
	FZorvekMCPBridgeObjectHandle CreateSubobject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name) override;
	void NotifyAssetCreated(FZorvekMCPBridgeObjectHandle Asset) override;
	void MarkPackageDirty(FZorvekMCPBridgeObjectHandle Object) override;
	void PostEditChange(FZorvekMCPBridgeObjectHandle Object) override;
	// How often PostEditChange reached the object.
	int32 GetPostEditChangeCount(FZorvekMCPBridgeObjectHandle Object) const { return PostEditChanges.FindRef(Object); }
	bool SavePackage(FZorvekMCPBridgeObjectHandle Asset, FString& OutFileName) override;

	// Whether the package of that name has unsaved changes.
	bool IsPackageDirty(const FString& PackageName) const;

	// The roots a package may be created under: /Game/ and /Engine/. Read-only roots (/Script/,
	// /Temp/, /Memory/) and unknown ones are refused, as the engine refuses unmounted roots.
	static const TCHAR* const WritableRoots[];

private:
	FSimulatedEditor& Editor;
	const IZorvekMCPBridgeObjects& Objects;
	TSet<FString> DirtyPackages;
	TMap<FZorvekMCPBridgeObjectHandle, int32> PostEditChanges;
};
