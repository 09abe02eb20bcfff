// Saved packages of the simulated editor: what UPackage::SavePackage writes to disk in the editor,
// one JSON file per package under the editor's saved-packages directory
// (<dir>/Game/Data/DA_Loot.json for /Game/Data/DA_Loot), read back when the next editor starts.
//
// A file lists the package's objects, outers first, each with its path, its class and the export
// text of every property the engine would save (transient and deprecated properties are not).
#pragma once

#include "CoreMinimal.h"

class FSimulatedEditor;
class FSimulatedObject;

namespace SimulatedPackageFiles
{
	// The file of a package under Directory.
	FString GetPackageFileName(const FString& Directory, const FString& PackageName);

	// Writes the package's file, creating missing folders. False, as the engine's save, when the
	// file is read-only or cannot be written; OutFileName names it either way.
	bool SavePackage(const FSimulatedEditor& Editor, const FSimulatedObject& Package, FString& OutFileName);

	// Reads every saved package under the editor's saved-packages directory into it: objects that
	// are missing are created, then every saved value is imported. A package in memory already
	// (a sample asset saved after a change) takes the saved values. Returns the number of
	// packages read; a file that cannot be read adds to OutErrors and is skipped.
	int32 LoadSavedPackages(FSimulatedEditor& Editor, TArray<FString>& OutErrors);
}
