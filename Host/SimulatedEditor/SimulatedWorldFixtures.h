// The world sections of a project fixture (see SampleProject/README.md): "world_types" (mesh
// shapes and bounds, native actor classes' components, components that visualise themselves)
// and "world" (the editor world's map, PCG plug-in state, viewport and placed actors).
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

class FSimulatedEditor;

namespace SimulatedWorldFixtures
{
	// Reads the world sections of the fixture's documents, in document order, once every type,
	// asset and Blueprint exists. False, with the file and entry named, at the first problem.
	bool Load(FSimulatedEditor& Editor, const TArray<TPair<TSharedPtr<FJsonObject>, FString>>& Documents, FString& OutError);
}
