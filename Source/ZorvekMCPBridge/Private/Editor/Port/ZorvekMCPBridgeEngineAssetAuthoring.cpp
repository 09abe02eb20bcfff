#include "Editor/Port/ZorvekMCPBridgeEngineEditorPort.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "Misc/FeedbackContext.h"
#include "Misc/PackageName.h"
#include "UObject/Class.h"
#include "UObject/Object.h"
#include "UObject/Package.h"
#include "UObject/SavePackage.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UObjectHash.h"

namespace
{
	UClass* FindAuthoringClass(const FString& ClassPath)
	{
		return ClassPath.StartsWith(TEXT("/")) ? FindObject<UClass>(nullptr, *ClassPath) : nullptr;
	}
}

void FZorvekMCPBridgeEngineAssetAuthoring::EnumerateLoadedClasses(const FString& BaseClassPath, TFunctionRef<bool(const FZorvekMCPBridgeTypeInfo&)> Callback) const
{
	const UClass* Base = FindAuthoringClass(BaseClassPath);
	if (!Base)
	{
		return;
	}
	TArray<UObject*> Classes;
	GetObjectsOfClass(UClass::StaticClass(), Classes, true, RF_ClassDefaultObject, EInternalObjectFlags::None);
	FZorvekMCPBridgeEngineObjects TypeLookup;
	for (UObject* Object : Classes)
	{
		const UClass* Class = static_cast<const UClass*>(Object);
		// Blueprint skeleton classes pass every flag test but are no real classes
		// (unreal-behaviour-world-assets.md §8.7).
		if (!Class->IsChildOf(Base) || Class->GetName().StartsWith(TEXT("SKEL_")))
		{
			continue;
		}
		FZorvekMCPBridgeTypeInfo Info;
		if (TypeLookup.FindType(EZorvekMCPBridgeTypeKind::Class, Class->GetPathName(), Info) && !Callback(Info))
		{
			return;
		}
	}
}

FString FZorvekMCPBridgeEngineAssetAuthoring::GetClassDisplayName(const FString& ClassPath) const
{
	const UClass* Class = FindAuthoringClass(ClassPath);
	return Class ? Class->GetDisplayNameText().ToString() : FString();
}

bool FZorvekMCPBridgeEngineAssetAuthoring::IsValidLongPackageName(const FString& PackageName, FString& OutReason) const
{
	FText Reason;
	// The FText overload: not in the reference notes beyond its message; check against the engine.
	const bool bValid = FPackageName::IsValidLongPackageName(PackageName, false, &Reason);
	OutReason = Reason.ToString();
	return bValid;
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineAssetAuthoring::CreateOrFindPackage(const FString& PackageName)
{
	UPackage* Package = CreatePackage(*PackageName);
	if (Package)
	{
		Package->FullyLoad();
	}
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(Package);
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineAssetAuthoring::CreateAssetObject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name)
{
	UObject* OuterObject = FZorvekMCPBridgeEngineEditorPort::ToObject(Outer);
	UClass* Class = ClassPath.StartsWith(TEXT("/")) ? ::LoadObject<UClass>(nullptr, *ClassPath) : nullptr;
	if (!OuterObject || !Class || Class->HasAnyClassFlags(CLASS_Abstract))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(NewObject<UObject>(OuterObject, Class, FName(*Name), RF_Public | RF_Standalone));
}

FZorvekMCPBridgeObjectHandle FZorvekMCPBridgeEngineAssetAuthoring::CreateSubobject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name)
{
	UObject* OuterObject = FZorvekMCPBridgeEngineEditorPort::ToObject(Outer);
	UClass* Class = ClassPath.StartsWith(TEXT("/")) ? ::LoadObject<UClass>(nullptr, *ClassPath) : nullptr;
	if (!OuterObject || !Class || Class->HasAnyClassFlags(CLASS_Abstract))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	return FZorvekMCPBridgeEngineEditorPort::ToHandle(NewObject<UObject>(OuterObject, Class, FName(*Name), RF_Transactional));
}

void FZorvekMCPBridgeEngineAssetAuthoring::NotifyAssetCreated(FZorvekMCPBridgeObjectHandle Asset)
{
	if (UObject* Object = FZorvekMCPBridgeEngineEditorPort::ToObject(Asset))
	{
		FAssetRegistryModule::AssetCreated(Object);
	}
}

void FZorvekMCPBridgeEngineAssetAuthoring::MarkPackageDirty(FZorvekMCPBridgeObjectHandle Object)
{
	if (const UObject* Found = FZorvekMCPBridgeEngineEditorPort::ToObject(Object))
	{
		Found->MarkPackageDirty();
	}
}

void FZorvekMCPBridgeEngineAssetAuthoring::PostEditChange(FZorvekMCPBridgeObjectHandle Object)
{
	if (UObject* Found = FZorvekMCPBridgeEngineEditorPort::ToObject(Object))
	{
		Found->PostEditChange();
	}
}

bool FZorvekMCPBridgeEngineAssetAuthoring::SavePackage(FZorvekMCPBridgeObjectHandle Asset, FString& OutFileName)
{
	UObject* Object = FZorvekMCPBridgeEngineEditorPort::ToObject(Asset);
	UPackage* Package = Object ? Object->GetOutermost() : nullptr;
	// The checked conversion: an unmounted root is fatal in LongPackageNameToFilename.
	if (!Package || !FPackageName::TryConvertLongPackageNameToFilename(Package->GetName(), OutFileName, FPackageName::GetAssetPackageExtension()))
	{
		return false;
	}
	FSavePackageArgs Args;
	Args.TopLevelFlags = RF_Public | RF_Standalone;
	Args.SaveFlags = SAVE_NoError;
	Args.Error = GWarn;
	return UPackage::SavePackage(Package, Object, *OutFileName, Args);
}
