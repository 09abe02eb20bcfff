// Blueprints declared in project fixtures (SampleProject/README.md, "blueprint" entries of
// "assets"), built the way the editor builds them: CreateBlueprint, then variables, interfaces,
// functions, macros, graphs with their nodes and links, and components, each through the
// simulated Blueprint editor's operations, then a compile. A fixture Blueprint therefore holds
// exactly what one made by hand in the editor would.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

class FSimulatedBlueprints;
class FSimulatedObject;

class FSimulatedBlueprintFixtures
{
public:
	explicit FSimulatedBlueprintFixtures(FSimulatedBlueprints& InBlueprints)
		: Blueprints(InBlueprints)
	{
	}

	// The Blueprint object in the package, with its default graphs; null, with the reason, when
	// the parent class or the type is unknown or the engine would refuse.
	FSimulatedObject* CreateBlueprint(FSimulatedObject* Package, const FString& AssetName, const TSharedPtr<FJsonObject>& Json, FString& OutError);
	// Everything else the entry declares, once every object of the fixture exists; compiles the
	// Blueprint at the end. False, with the reason, at the first problem.
	bool BuildContents(FSimulatedObject* BlueprintObject, const TSharedPtr<FJsonObject>& Json, FString& OutError);

private:
	FSimulatedBlueprints& Blueprints;
};
