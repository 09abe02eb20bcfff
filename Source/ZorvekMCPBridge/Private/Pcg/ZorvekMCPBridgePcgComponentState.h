// What a PCG component has generated, read by property name through reflection. The names the
// tools report are the long-standing PCG member names; where 5.7 moved a member the reader
// follows its successor first and the old name second:
// - GeneratedGraphOutput.TaggedData[i].Data is a wrapper struct (FPCGDataPtrWrapper) whose Data
//   field is the data object; older engines hold the object in Data itself.
// - Point counts come from the data object's GetNumPoints() UFUNCTION through ProcessEvent
//   (point storage is not reflected); point data is any UPCGBasePointData (5.6+) or UPCGPointData.
// - A managed actors resource lists its actors in GeneratedActorsArray (5.6+); the reflected
//   GeneratedActors is dead there and is read only when GeneratedActorsArray does not exist.
// - bWasGeneratedThisSession is not reflected in 5.7 and reads false.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgePcgComponentState
{
	// The component's bGenerated; false when it cannot be read.
	bool ReadGenerated(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component);

	// "tagged_data_count", "point_data_count", "total_point_count", "items" and "status"
	// ("generated_graph_output_inspected", or "generated_graph_output_unavailable" with zero
	// counts when the property or its TaggedData array cannot be read).
	TSharedPtr<FJsonObject> MakeGeneratedGraphOutput(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component);

	// The "pcg_component" object: "generated", "dirty_generated", "was_generated_this_session",
	// "generated_resource_count", "last_generated_bounds", "generated_graph_output",
	// "generated_actor_count", "generated_actors", "native_spawned_actor_count",
	// "native_spawned_actors", "generated_resources".
	TSharedPtr<FJsonObject> MakeComponentState(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component);
}
