#include "Extensions/ZorvekMCPBridgeVessaExtensionRegistry.h"

#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Extensions/ZorvekMCPBridgeVessaExtensionLogic.h"
#include "Misc/ScopeLock.h"
#include "ZorvekMCPBridgeLog.h"

namespace
{
	// FPackageName::ExportTextPathToObjectPath: the path between the quotes of Class'Path', or
	// the text as it is.
	FString VessaExportTextPathToObjectPath(const FString& ExportTextPath)
	{
		int32 First = INDEX_NONE;
		int32 Last = INDEX_NONE;
		if (ExportTextPath.FindChar(TEXT('\''), First) && ExportTextPath.FindLastChar(TEXT('\''), Last) && Last > First)
		{
			return ExportTextPath.Mid(First + 1, Last - First - 1);
		}
		return ExportTextPath;
	}

	TUniquePtr<FZorvekMCPBridgeVessaExtensionRegistry>& VessaRegistrySingleton()
	{
		static TUniquePtr<FZorvekMCPBridgeVessaExtensionRegistry> Registry;
		return Registry;
	}
}

FZorvekMCPBridgeVessaExtensionRegistry& FZorvekMCPBridgeVessaExtensionRegistry::Get()
{
	TUniquePtr<FZorvekMCPBridgeVessaExtensionRegistry>& Registry = VessaRegistrySingleton();
	if (!Registry.IsValid())
	{
		Registry.Reset(new FZorvekMCPBridgeVessaExtensionRegistry());
	}
	return *Registry;
}

void FZorvekMCPBridgeVessaExtensionRegistry::Shutdown()
{
	TUniquePtr<FZorvekMCPBridgeVessaExtensionRegistry>& Registry = VessaRegistrySingleton();
	if (Registry.IsValid())
	{
		// The editor port may already be gone at module shut-down; it released the instances it
		// kept alive when it went.
		FScopeLock Lock(&Registry->CriticalSection);
		Registry->RegisteredExtensions.Empty();
		Registry->bDiscovered = false;
		Registry->DiscoveredWith = nullptr;
	}
}

void FZorvekMCPBridgeVessaExtensionRegistry::ReleaseLocked()
{
	if (DiscoveredWith != nullptr && RegisteredExtensions.Num() > 0)
	{
		DiscoveredWith->GetFunctions().ReleaseExtensionInstances();
	}
	RegisteredExtensions.Empty();
	bDiscovered = false;
	DiscoveredWith = nullptr;
}

void FZorvekMCPBridgeVessaExtensionRegistry::RegisterInstance(IZorvekMCPBridgeEditorPort& Port, const FString& ClassPath)
{
	IZorvekMCPBridgeFunctions& Functions = Port.GetFunctions();
	const FZorvekMCPBridgeObjectHandle Instance = Functions.CreateExtensionInstance(ClassPath);
	FZorvekMCPBridgeVessaDefinitionData Definition;
	if (!Instance.IsValid() || !Functions.GetExtensionDefinition(Instance, Definition))
	{
		return;
	}
	RegisteredExtensions.Add(Definition.ExtensionId, Instance);
	UE_LOG(LogZorvekMCPBridge, Log, TEXT("Registered Vessa extension: %s"), *Definition.ExtensionId);
}

void FZorvekMCPBridgeVessaExtensionRegistry::Refresh(IZorvekMCPBridgeEditorPort& Port)
{
	FScopeLock Lock(&CriticalSection);
	if (DiscoveredWith != &Port)
	{
		// Instances of another editor went with it.
		RegisteredExtensions.Empty();
		DiscoveredWith = nullptr;
	}
	ReleaseLocked();
	DiscoveredWith = &Port;
	bDiscovered = true;

	IZorvekMCPBridgeFunctions& Functions = Port.GetFunctions();
	const FString BaseClassPath = ZorvekMCPBridgeVessa::ExtensionBaseClassPath;
	for (const FString& ClassPath : Functions.GetLoadedDerivedClasses(BaseClassPath))
	{
		RegisterInstance(Port, ClassPath);
	}

	// Blueprint extensions nobody has loaded yet; an incomplete registry is not scanned.
	if (Functions.IsAssetRegistryLoading())
	{
		return;
	}
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	for (const FZorvekMCPBridgeUtilityBlueprintInfo& Blueprint : Functions.GetEditorUtilityBlueprints())
	{
		const FString ParentClassPath = VessaExportTextPathToObjectPath(Blueprint.ParentClassTag);
		FZorvekMCPBridgeTypeInfo ParentClass;
		if (ParentClassPath.IsEmpty() || !Objects.LoadClass(ParentClassPath, ParentClass) || !Objects.IsChildOf(ParentClass.Path, BaseClassPath))
		{
			continue;
		}
		FString GeneratedClassPath;
		if (!Functions.LoadBlueprintGeneratedClass(Blueprint.ObjectPath, GeneratedClassPath))
		{
			continue;
		}
		// Loading it made it a loaded class; the first pass may have registered it already.
		if (!RegisteredExtensions.Contains(GeneratedClassPath))
		{
			RegisterInstance(Port, GeneratedClassPath);
		}
	}
}

void FZorvekMCPBridgeVessaExtensionRegistry::RefreshIfNeeded(IZorvekMCPBridgeEditorPort& Port)
{
	bool bNeeded = false;
	{
		FScopeLock Lock(&CriticalSection);
		bNeeded = !bDiscovered || DiscoveredWith != &Port;
	}
	if (bNeeded)
	{
		Refresh(Port);
	}
}

TArray<FZorvekMCPBridgeVessaRegisteredExtension> FZorvekMCPBridgeVessaExtensionRegistry::GetEnabledExtensions(IZorvekMCPBridgeEditorPort& Port)
{
	RefreshIfNeeded(Port);
	IZorvekMCPBridgeFunctions& Functions = Port.GetFunctions();
	TArray<FZorvekMCPBridgeVessaRegisteredExtension> Enabled;
	FScopeLock Lock(&CriticalSection);
	for (const TPair<FString, FZorvekMCPBridgeObjectHandle>& Entry : RegisteredExtensions)
	{
		FZorvekMCPBridgeVessaRegisteredExtension Extension;
		Extension.Instance = Entry.Value;
		if (Functions.IsValidExtension(Entry.Value) && Functions.IsExtensionEnabled(Entry.Value) && Functions.GetExtensionDefinition(Entry.Value, Extension.Definition))
		{
			Enabled.Add(MoveTemp(Extension));
		}
	}
	return Enabled;
}

bool FZorvekMCPBridgeVessaExtensionRegistry::FindRegistered(IZorvekMCPBridgeEditorPort& Port, const FString& ExtensionId, FZorvekMCPBridgeVessaRegisteredExtension& OutExtension)
{
	IZorvekMCPBridgeFunctions& Functions = Port.GetFunctions();
	FScopeLock Lock(&CriticalSection);
	for (const TPair<FString, FZorvekMCPBridgeObjectHandle>& Entry : RegisteredExtensions)
	{
		if (Entry.Key.Equals(ExtensionId, ESearchCase::IgnoreCase))
		{
			OutExtension.Instance = Entry.Value;
			return Functions.IsValidExtension(Entry.Value) && Functions.GetExtensionDefinition(Entry.Value, OutExtension.Definition);
		}
	}
	return false;
}

bool FZorvekMCPBridgeVessaExtensionRegistry::FindExtension(IZorvekMCPBridgeEditorPort& Port, const FString& ExtensionId, FZorvekMCPBridgeVessaRegisteredExtension& OutExtension)
{
	RefreshIfNeeded(Port);
	if (FindRegistered(Port, ExtensionId, OutExtension))
	{
		return true;
	}
	Refresh(Port);
	return FindRegistered(Port, ExtensionId, OutExtension);
}

int32 FZorvekMCPBridgeVessaExtensionRegistry::GetRegisteredCount() const
{
	FScopeLock Lock(&CriticalSection);
	return RegisteredExtensions.Num();
}
