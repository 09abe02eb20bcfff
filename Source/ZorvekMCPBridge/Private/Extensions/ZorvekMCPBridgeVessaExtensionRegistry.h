// The Vessa extension registry: one per editor process, created on first use. It finds every
// extension class (loaded classes first, then Editor Utility Blueprints not loaded yet), keeps one
// live instance of each (kept from garbage collection through the port) and answers lookups by id.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "Extensions/ZorvekMCPBridgeVessaTypes.h"
// Not in the reference notes; check against the engine (FCriticalSection, FScopeLock).
#include "HAL/CriticalSection.h"

class IZorvekMCPBridgeEditorPort;

struct FZorvekMCPBridgeVessaRegisteredExtension
{
	FZorvekMCPBridgeObjectHandle Instance;
	FZorvekMCPBridgeVessaDefinitionData Definition;
};

class FZorvekMCPBridgeVessaExtensionRegistry
{
public:
	// The registry, created on the first call.
	static FZorvekMCPBridgeVessaExtensionRegistry& Get();
	// Forgets what was discovered (module shut-down); the port releases the instances it kept.
	static void Shutdown();

	// Rebuilds the map from the editor's classes and Editor Utility Blueprints.
	void Refresh(IZorvekMCPBridgeEditorPort& Port);
	// Refreshes when nothing was discovered yet with this editor.
	void RefreshIfNeeded(IZorvekMCPBridgeEditorPort& Port);
	// Every registered instance still valid and enabled, with its definition, in registry order.
	TArray<FZorvekMCPBridgeVessaRegisteredExtension> GetEnabledExtensions(IZorvekMCPBridgeEditorPort& Port);
	// The instance whose id equals ExtensionId ignoring case, enabled or not. A miss refreshes
	// once more, so an extension compiled after the last refresh is found without restarting.
	bool FindExtension(IZorvekMCPBridgeEditorPort& Port, const FString& ExtensionId, FZorvekMCPBridgeVessaRegisteredExtension& OutExtension);

	int32 GetRegisteredCount() const;

private:
	FZorvekMCPBridgeVessaExtensionRegistry() = default;
	void RegisterInstance(IZorvekMCPBridgeEditorPort& Port, const FString& ClassPath);
	bool FindRegistered(IZorvekMCPBridgeEditorPort& Port, const FString& ExtensionId, FZorvekMCPBridgeVessaRegisteredExtension& OutExtension);
	void ReleaseLocked();

	// Guards the map and the discovered state, for the whole refresh and each read.
	mutable FCriticalSection CriticalSection;
	TMap<FString, FZorvekMCPBridgeObjectHandle> RegisteredExtensions;
	bool bDiscovered = false;
	// The editor the instances belong to; a different editor (a new port) means rediscovery.
	IZorvekMCPBridgeEditorPort* DiscoveredWith = nullptr;
};
