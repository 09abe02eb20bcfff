// The road side of PCG: spline bounds actors (create an actor whose closed rectangular spline
// marks road bounds, read it back, resize it) the straight road strip recipe and the grid city recipe. Like every PCG tool they answer the PCG unavailable
// result when PCG cannot be used; the two that change the level need AllowCurrentLevel=true and
// tag what they place for editor_cleanup_repro_actors.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

struct FZorvekMCPBridgeToolContext;

namespace ZorvekMCPBridgePcgCityTools
{
	TSharedPtr<FJsonObject> HandleCreateSplineBoundsActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleInspectSplineBoundsActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
	TSharedPtr<FJsonObject> HandleSetSplineBoundsActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

	// A straight strip of road segment actors: one road Blueprint made (or reused) for the lanes
	// and length, placed once per segment with the repro tags and the recipe's own tag.
	TSharedPtr<FJsonObject> HandleRunRoadRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

	// A grid city: intersections at the corners, roads between them, a skyscraper in each block
	// with floors varied by a seed; one Blueprint per distinct piece, made or reused.
	TSharedPtr<FJsonObject> HandleRunCityLayoutRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

	// A city of that recipe made bigger or smaller (Columns, Rows) or redrawn taller (floors, seed)
	// in place: pieces that still fit keep their actors, missing ones are added, towers of other
	// floors replaced and pieces outside the new grid removed; never a duplicate.
	TSharedPtr<FJsonObject> HandleUpdateCityLayoutRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);

	// A straight road strip laid along a spline bounds actor's rectangle, through its centre and
	// inside it; the spline gives the rectangle only and is never sampled along its curve.
	TSharedPtr<FJsonObject> HandleRunSplineRoadProof(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments);
}
