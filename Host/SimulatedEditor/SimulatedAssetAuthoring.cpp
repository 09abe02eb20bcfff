#include "SimulatedAssetAuthoring.h"

#include "EditorPort/ZorvekMCPBridgeObjectPort.h"
#include "SimulatedEditor.h"
#include "SimulatedEditorPort.h"
#include "SimulatedPackageFiles.h"

const TCHAR* const FSimulatedAssetAuthoring::WritableRoots[] = {TEXT("/Game/"), TEXT("/Engine/")};

FSimulatedAssetAuthoring::FSimulatedAssetAuthoring(FSimulatedEditor& InEditor, const IZorvekMCPBridgeObjects& InObjects)
	: Editor(InEditor)
	, Objects(InObjects)
{
}

void FSimulatedAssetAuthoring::EnumerateLoadedClasses(const FString& BaseClassPath, TFunctionRef<bool(const FZorvekMCPBridgeTypeInfo&)> Callback) const
{
	const FSimulatedType* Base = Editor.FindTypeByPath(BaseClassPath);
	if (!Base)
	{
		return;
	}
	bool bContinue = true;
	Editor.ForEachObject([this, Base, &Callback, &bContinue](FSimulatedObject* Object)
	{
		const FSimulatedType* Type = dynamic_cast<const FSimulatedType*>(Object);
		if (!bContinue || !Type || Type->Kind != ESimulatedTypeKind::Class || !Type->IsChildOf(Base))
		{
			return;
		}
		FZorvekMCPBridgeTypeInfo Info;
		if (Objects.FindType(EZorvekMCPBridgeTypeKind::Class, Type->GetPathName(), Info))
		{
			bContinue = Callback(Info);
		}
	});
}

FString FSimulatedAssetAuthoring::GetClassDisplayName(const FString& ClassPath) const
{
	const FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
	if (!Class || Class->Kind != ESimulatedTypeKind::Class)
	{
		return FString();
	}
	// The friendly form of the name, as FName::NameToDisplayString makes it for a class without
	// DisplayName metadata: a space before each upper-case letter that follows a lower-case one
	// or a digit, underscores as spaces, and a Blueprint class's "_C" dropped. Not in the
	// reference notes; check against the engine.
	FString Name = Class->Name;
	if ((Class->ClassFlags & ZorvekMCPBridgeClassFlags::Native) == 0 && Name.EndsWith(TEXT("_C")))
	{
		Name.LeftChopInline(2);
	}
	auto IsUpper = [](TCHAR Character) { return Character >= TEXT('A') && Character <= TEXT('Z'); };
	auto IsLower = [](TCHAR Character) { return Character >= TEXT('a') && Character <= TEXT('z'); };
	FString Display;
	for (int32 Index = 0; Index < Name.Len(); ++Index)
	{
		const TCHAR Character = Name[Index];
		if (Index > 0 && IsUpper(Character) && (IsLower(Name[Index - 1]) || FChar::IsDigit(Name[Index - 1])))
		{
			Display += TEXT(' ');
		}
		Display += Character == TEXT('_') ? TEXT(' ') : Character;
	}
	return Display;
}

bool FSimulatedAssetAuthoring::IsValidLongPackageName(const FString& PackageName, FString& OutReason) const
{
	// FPackageName::IsValidTextForLongPackageName, in the engine's order.
	if (PackageName.Len() < 4)
	{
		OutReason = TEXT("PathTooShort");
		return false;
	}
	if (!PackageName.StartsWith(TEXT("/")))
	{
		OutReason = TEXT("PathWithNoStartingSlash");
		return false;
	}
	if (PackageName.EndsWith(TEXT("/")))
	{
		OutReason = TEXT("PathWithTrailingSlash");
		return false;
	}
	if (PackageName.Contains(TEXT("//")))
	{
		OutReason = TEXT("PathWithDoubleSlash");
		return false;
	}
	const FString InvalidCharacters = TEXT("\\:*?\"<>|' ,.&!~\n\r\t@#");
	for (const TCHAR Character : PackageName)
	{
		int32 Unused = INDEX_NONE;
		if (InvalidCharacters.FindChar(Character, Unused))
		{
			OutReason = TEXT("PackageNameContainsInvalidCharacters");
			return false;
		}
	}
	// The mount check; a root itself without its slash (/Game) counts as under it.
	for (const TCHAR* Root : WritableRoots)
	{
		const FString RootText(Root);
		if (PackageName.StartsWith(RootText) || PackageName.Equals(RootText.LeftChop(1)))
		{
			return true;
		}
	}
	OutReason = TEXT("PackageNamePathNotMounted");
	return false;
}

FZorvekMCPBridgeObjectHandle FSimulatedAssetAuthoring::CreateOrFindPackage(const FString& PackageName)
{
	FString Reason;
	if (!IsValidLongPackageName(PackageName, Reason))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	return FSimulatedEditorPort::ToHandle(Editor.FindOrCreatePackage(PackageName));
}

FZorvekMCPBridgeObjectHandle FSimulatedAssetAuthoring::CreateAssetObject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name)
{
	FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
	FSimulatedObject* OuterObject = FSimulatedEditorPort::ToObject(Outer);
	// NewObject of an abstract class is a fatal check in the engine; the caller refuses it first.
	check(!Class || (Class->ClassFlags & ZorvekMCPBridgeClassFlags::Abstract) == 0);
	FString Error;
	return FSimulatedEditorPort::ToHandle(Class && OuterObject ? Editor.CreateObject(Class, OuterObject, Name, Error) : nullptr);
}

FZorvekMCPBridgeObjectHandle FSimulatedAssetAuthoring::CreateSubobject(FZorvekMCPBridgeObjectHandle Outer, const FString& ClassPath, const FString& Name)
{
	FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
	FSimulatedObject* OuterObject = FSimulatedEditorPort::ToObject(Outer);
	if (!Class || !OuterObject || (Class->ClassFlags & ZorvekMCPBridgeClassFlags::Abstract) != 0)
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	FString Error;
	return FSimulatedEditorPort::ToHandle(Editor.CreateObject(Class, OuterObject, Name, Error));
}

void FSimulatedAssetAuthoring::NotifyAssetCreated(FZorvekMCPBridgeObjectHandle /*Asset*/)
{
	// Nothing to record: the registry's in-memory queries list every loaded asset already
	// (unreal-behaviour-world-assets.md §6.2).
}

void FSimulatedAssetAuthoring::MarkPackageDirty(FZorvekMCPBridgeObjectHandle Object)
{
	if (const FSimulatedObject* Found = FSimulatedEditorPort::ToObject(Object))
	{
		DirtyPackages.Add(Found->GetOutermost()->Name);
	}
}

void FSimulatedAssetAuthoring::PostEditChange(FZorvekMCPBridgeObjectHandle Object)
{
	// Nothing the simulation caches depends on settings text; the call is counted for tests.
	if (Object.IsValid())
	{
		++PostEditChanges.FindOrAdd(Object);
	}
}

bool FSimulatedAssetAuthoring::SavePackage(FZorvekMCPBridgeObjectHandle Asset, FString& OutFileName)
{
	const FSimulatedObject* Object = FSimulatedEditorPort::ToObject(Asset);
	if (!Object || Object->IsPackage())
	{
		return false;
	}
	const FSimulatedObject* Package = Object->GetOutermost();
	if (!SimulatedPackageFiles::SavePackage(Editor, *Package, OutFileName))
	{
		return false;
	}
	// Saving clears the dirty flag (unreal-behaviour-world-assets.md §6.3).
	DirtyPackages.Remove(Package->Name);
	return true;
}

bool FSimulatedAssetAuthoring::IsPackageDirty(const FString& PackageName) const
{
	return DirtyPackages.Contains(PackageName);
}
