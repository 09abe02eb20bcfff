// Spline bounds actors: an actor whose spline component is a closed rectangle of four linear
// points that marks where a road may go. The spline is the engine's USplineComponent
// (/Script/Engine.SplineComponent), reached through its UFUNCTIONs by reflection; the rectangle is
// only ever used as bounds, never sampled along its curve.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgePcgSplineBounds
{
	inline constexpr const TCHAR* SplineComponentClassPath = TEXT("/Script/Engine.SplineComponent");
	inline constexpr const TCHAR* ActorClassPath = TEXT("/Script/Engine.Actor");
	// Carried besides the repro tags, so the set tool changes only actors the create tool made.
	inline constexpr const TCHAR* SplineBoundsTag = TEXT("ZorvekPCGSplineBounds");
	inline constexpr const TCHAR* ComponentName = TEXT("BoundsSpline");
	inline constexpr const TCHAR* DefaultLabel = TEXT("ZorvekPCGSplineBounds");
	inline constexpr int32 RectanglePointCount = 4;
	// Along X (Length) and Y (Width), in centimetres.
	inline constexpr double DefaultLength = 4000.0;
	inline constexpr double DefaultWidth = 2000.0;
	// One metre to ten kilometres: smaller cannot hold a road, larger is no editor-sized level.
	inline constexpr double MinSize = 100.0;
	inline constexpr double MaxSize = 1000000.0;

	struct FRectangle
	{
		double Length = DefaultLength;
		double Width = DefaultWidth;
	};

	// The four points in the component's space, centred on it, counter-clockwise seen from above
	// starting at (-Length/2, -Width/2).
	TArray<FZorvekMCPBridgeVector> MakeRectanglePoints(const FRectangle& Rectangle);

	// The spline as the component reports it through its UFUNCTIONs.
	struct FSplineState
	{
		int32 PointCount = 0;
		bool bClosedLoop = false;
		double SplineLength = 0.0;
		TArray<FZorvekMCPBridgeVector> LocalPoints;
		TArray<FZorvekMCPBridgeVector> WorldPoints;
	};

	// The actor's first component of the spline component class (subclasses included); invalid
	// when it has none or the class does not load.
	FZorvekMCPBridgeObjectHandle FindSplineComponent(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeActorSnapshot& Actor);

	// SetSplinePoints in local space, each point made linear, the loop closed; the spline is
	// updated once, by the last call. False with the reason when a function is missing.
	bool WriteRectangle(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, const FRectangle& Rectangle, FString& OutError);

	// GetNumberOfSplinePoints, IsClosedLoop, GetSplineLength and each point's location in local
	// and world space. False with the reason when a function is missing.
	bool ReadSpline(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, FSplineState& OutState, FString& OutError);

	// The rectangle the local points span (their extent along X and Y).
	FRectangle MeasureRectangle(const FSplineState& State);

	// "component_name", "point_count", "closed_loop", "spline_length", "rectangle" {"length",
	// "width"}, "points" (per point "index", "local", "world"), "world_bounds" (the box of the
	// world points).
	TSharedPtr<FJsonObject> MakeSplineBoundsJson(const FString& ComponentName, const FSplineState& State);
}
