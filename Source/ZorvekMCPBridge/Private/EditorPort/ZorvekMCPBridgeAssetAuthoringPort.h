#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "Templates/Function.h"

// Making new assets: packages, asset objects and the registry's and the disk's view of them.
// Each member is what the editor does in a call or two; the checks and their messages live in the
// portable code that calls it, which validates everything before the first change.
class IZorvekMCPBridgeAssetAuthoring
{
public:
	virtual ~IZorvekMCPBridgeAssetAuthoring() = default;

	// Walks every loaded class that is BaseClassPath or derives from it (native classes and
	// Blueprint-generated classes alike, flags unfiltered), until the callback returns false.
	virtual void EnumerateLoadedClasses(const FString& BaseClassPath, TFunctionRef<bool(const FZorvekMCPBridgeTypeInfo&)> Callback) const = 0;

	// The class's display name as the editor shows it (its DisplayName metadata, else the
	// friendly form of its name); empty when no class has that path.
	virtual FString GetClassDisplayName(const FString& ClassPath) const = 0;

	// FPackageName::IsValidLongPackageName without read-only roots: text rules, then a mounted,
	// writable root. OutReason says why not.
	virtual bool IsValidLongPackageName(const FString& PackageName, FString& OutReason) const = 0;

	// CreatePackage: the package of that long name, the one in memory when there is one.
	// Invalid when the editor refuses the name.
	virtual FZorvekMCPBridgeObjectHandle CreateOrFindPackage(const FString& PackageName) = 0;

	// NewObject of the class inside Outer with RF_Public | RF_Standalone. The caller has checked
	// that nothing of that name is in Outer (the engine would replace it in place) and that the
	// class is concrete. Invalid when the class does not load.
	virtual FZorvekMCPBridgeObjectHandle CreateAssetObject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name) = 0;

	// NewObject of the class inside Outer with RF_Transactional: an object an asset holds (a
	// node, a director, a state). The caller has checked the name is free. Invalid when the class
	// does not load or is abstract.
	virtual FZorvekMCPBridgeObjectHandle CreateSubobject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name) = 0;

	// FAssetRegistryModule::AssetCreated: the registry lists the new asset from now on.
	virtual void NotifyAssetCreated(FZorvekMCPBridgeObjectHandle Asset) = 0;

	// MarkPackageDirty on the object's package.
	virtual void MarkPackageDirty(FZorvekMCPBridgeObjectHandle Object) = 0;

	// UObject::PostEditChange: the object rebuilds what it derives from its properties after they
	// were set by text (PCG node settings refresh their cached state, unreal-behaviour-world-assets.md §4.4).
	virtual void PostEditChange(FZorvekMCPBridgeObjectHandle Object) = 0;

	// UPackage::SavePackage of the asset's package to its file, with RF_Public | RF_Standalone
	// as top-level flags and errors logged rather than shown. False when the engine returns
	// false; OutFileName names the file it wrote or tried to write.
	virtual bool SavePackage(FZorvekMCPBridgeObjectHandle Asset, FString& OutFileName) = 0;
};
