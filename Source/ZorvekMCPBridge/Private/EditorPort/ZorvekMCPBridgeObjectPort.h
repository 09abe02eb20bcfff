#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"

// Finding and loading objects and types, and what every object can say about itself.
class IZorvekMCPBridgeObjects
{
public:
	virtual ~IZorvekMCPBridgeObjects() = default;

	// Loads (or finds, when already loaded) any object by object path, e.g.
	// /Game/Characters/BP_Hero.BP_Hero. Invalid when nothing loads.
	virtual FZorvekMCPBridgeObjectHandle LoadObject(const FString& ObjectPath) = 0;

	// Finds an object that is already in memory; never loads.
	virtual FZorvekMCPBridgeObjectHandle FindObject(const FString& ObjectPath) const = 0;

	// The identity block of an object; all empty for an invalid handle.
	virtual FZorvekMCPBridgeObjectIdentity GetIdentity(FZorvekMCPBridgeObjectHandle Object) const = 0;

	// The class of an object, with its nearest native class.
	virtual FZorvekMCPBridgeTypeInfo GetClassInfo(FZorvekMCPBridgeObjectHandle Object) const = 0;

	// True when the object's class is the class at ClassPath or derives from it. False for an
	// invalid handle and for a class path that names no loaded class.
	virtual bool IsA(FZorvekMCPBridgeObjectHandle Object, const FString& ClassPath) const = 0;

	// Looks a loaded class, struct or enum up by path (/Script/Engine.Actor) or, when the text
	// holds no "/", by short name (Actor), native types first. Never loads.
	virtual bool FindType(EZorvekMCPBridgeTypeKind Kind, const FString& PathOrShortName, FZorvekMCPBridgeTypeInfo& OutType) const = 0;

	// Loads a class by path, as StaticLoadObject with UClass does (Blueprint classes by their
	// generated class path, /Game/A/BP_X.BP_X_C).
	virtual bool LoadClass(const FString& ClassPath, FZorvekMCPBridgeTypeInfo& OutClass) = 0;

	// True when the class at ClassPath is BaseClassPath or derives from it.
	virtual bool IsChildOf(const FString& ClassPath, const FString& BaseClassPath) const = 0;
};
