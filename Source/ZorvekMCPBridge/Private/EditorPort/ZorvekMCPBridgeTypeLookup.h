// How portable code names a class, struct or enum of the editor and asks the editor for one.
#pragma once

#include "CoreMinimal.h"

// A type object of the editor as data: enough to print it and to find it again.
struct FZorvekMCPBridgeTypeIdentity
{
	// Full path name, e.g. "/Script/Engine.Actor" or "/Game/Blueprints/BP_Door.BP_Door_C".
	FString PathName;
	// Short object name, e.g. "Actor".
	FString Name;

	FZorvekMCPBridgeTypeIdentity() = default;
	FZorvekMCPBridgeTypeIdentity(const FString& InPathName, const FString& InName)
		: PathName(InPathName)
		, Name(InName)
	{
	}

	// False for the empty identity, which stands for "no object" (or one that no longer exists).
	bool IsSet() const { return !PathName.IsEmpty(); }
};

// Finds type objects in the editor. The engine build answers through the object system; the
// host answers from its simulated project.
class IZorvekMCPBridgeTypeLookup
{
public:
	virtual ~IZorvekMCPBridgeTypeLookup() = default;

	// Loads the class at a full object path, as StaticLoadObject with UClass does: a class already
	// in memory is found, otherwise its package is loaded. An object at that path that is not a
	// class (a struct, an enum, an asset) does not count. False when nothing loads.
	virtual bool LoadClass(const FString& ClassPath, FZorvekMCPBridgeTypeIdentity& OutClass) const = 0;

	// A script struct by full object path ("/Script/CoreUObject.Vector") or by short name
	// ("Vector"). False when there is none.
	virtual bool FindStruct(const FString& PathOrName, FZorvekMCPBridgeTypeIdentity& OutStruct) const = 0;

	// An enum by full object path or by short name. False when there is none.
	virtual bool FindEnum(const FString& PathOrName, FZorvekMCPBridgeTypeIdentity& OutEnum) const = 0;
};
