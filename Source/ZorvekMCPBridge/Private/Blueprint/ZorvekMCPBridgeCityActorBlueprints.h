// City pieces as primitive actor Blueprints: a straight road segment, a four-way intersection that
// fits roads of the same lanes, and a skyscraper. Each turns its parameters into a parts list for
// the primitive actor builder and reports the footprint a layout needs to tile the pieces, the same
// numbers as the placed actor's bounds at the origin.
//
// Conventions shared by the three: centimetres; the actor's origin is the piece's centre on the
// ground (Z = 0 is the ground, everything stands on it); a road runs along X. A road's total width
// (lanes plus both sidewalks) equals the side of the intersection of the same LaneCount, LaneWidth
// and SidewalkWidth, so a grid alternates roads and intersections at a pitch of road length plus
// intersection size.
#pragma once

#include "CoreMinimal.h"
#include "Blueprint/ZorvekMCPBridgePrimitiveActors.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeCityActorBlueprints
{
	// Limits, refused with a message naming the parameter and its range.
	constexpr double MinLength = 100.0;
	constexpr double MaxLength = 1000000.0;
	constexpr int32 MaxLaneCount = 8;
	constexpr double MinLaneWidth = 100.0;
	constexpr double MaxLaneWidth = 1000.0;
	constexpr double MaxSidewalkWidth = 1000.0;
	constexpr int32 MaxFloors = 200;
	constexpr double MinFloorHeight = 200.0;
	constexpr double MaxFloorHeight = 1000.0;
	constexpr double MinBuildingSide = 100.0;
	constexpr double MaxBuildingSide = 100000.0;

	// The heights of the pieces' layers above the ground.
	constexpr double RoadSurfaceHeight = 20.0;
	constexpr double MarkingHeight = 1.0;
	constexpr double MarkingWidth = 15.0;
	constexpr double SidewalkHeight = 35.0;
	// Window bands stand out of the facade by this much on each side.
	constexpr double WindowBandDepth = 10.0;

	// What a layout needs: the extent along X (Length), along Y (Width) and up (Height), and the box
	// around the origin (the placed actor's bounds at the origin, unrotated, at unit scale).
	struct FFootprint
	{
		double Length = 0.0;
		double Width = 0.0;
		double Height = 0.0;
		FZorvekMCPBridgeBox Bounds;
	};

	struct FRoadParams
	{
		FString PackagePath;
		FString AssetName;
		double Length = 2000.0;
		int32 LaneCount = 2;
		double LaneWidth = 350.0;
		// 0: no sidewalks.
		double SidewalkWidth = 200.0;
		FString SurfaceMaterialPath;
		FString MarkingMaterialPath;
		FString SidewalkMaterialPath;
		bool bCompile = true;
	};

	struct FIntersectionParams
	{
		FString PackagePath;
		FString AssetName;
		int32 LaneCount = 2;
		double LaneWidth = 350.0;
		double SidewalkWidth = 200.0;
		// Zebra stripes on the four arms between the corner sidewalks (none without sidewalks).
		bool bCrossings = true;
		FString SurfaceMaterialPath;
		FString MarkingMaterialPath;
		FString SidewalkMaterialPath;
		bool bCompile = true;
	};

	struct FSkyscraperParams
	{
		FString PackagePath;
		FString AssetName;
		int32 Floors = 10;
		double FloorHeight = 350.0;
		// Along X and Y.
		double Width = 2000.0;
		double Depth = 2000.0;
		bool bWindowBands = true;
		bool bRoof = true;
		FString FacadeMaterialPath;
		FString WindowMaterialPath;
		FString RoofMaterialPath;
		bool bCompile = true;
	};

	// Parameters to the builder's spec; false with the message for a value out of range. The
	// material paths are checked by the builder (and by Create* first, with the parameter's name).
	bool MakeRoadSpec(const FRoadParams& Params, ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec& OutSpec, FString& OutError);
	bool MakeIntersectionSpec(const FIntersectionParams& Params, ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec& OutSpec, FString& OutError);
	bool MakeSkyscraperSpec(const FSkyscraperParams& Params, ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec& OutSpec, FString& OutError);

	// The footprint of a spec's parts.
	FFootprint GetFootprint(const ZorvekMCPBridgePrimitiveActors::FPrimitiveActorSpec& Spec);

	struct FCityActorBuild
	{
		ZorvekMCPBridgePrimitiveActors::FPrimitiveActorBuild Build;
		// Valid whenever the parameters were in range, even when the build failed later.
		FFootprint Footprint;
	};

	// Range checks, the role materials, then the builder. A refusal before the build leaves
	// Build.bAssetCreated false and Build.FailedStep "validate".
	FCityActorBuild CreateRoadActor(IZorvekMCPBridgeEditorPort& Port, const FRoadParams& Params);
	FCityActorBuild CreateIntersectionActor(IZorvekMCPBridgeEditorPort& Port, const FIntersectionParams& Params);
	FCityActorBuild CreateSkyscraperActor(IZorvekMCPBridgeEditorPort& Port, const FSkyscraperParams& Params);

	// {"length","width","height","bounds"}.
	TSharedPtr<FJsonObject> MakeFootprintJson(const FFootprint& Footprint);
}
