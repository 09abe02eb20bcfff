// The engine's USplineComponent (/Script/Engine.SplineComponent, a primitive component) in the
// simulated editor, with the UFUNCTIONs the spline bounds tools call and the state they change:
// the points in the component's space with their point types, and the closed-loop flag. A new
// component starts as the engine's does, with two curve points (0,0,0) and (100,0,0), open.
// Lengths follow the segments: linear segments exactly, curve segments as Catmull-Rom Hermite
// curves (the engine's automatic tangents) summed over fine steps. Bounds are the box of the
// points, kept on the component so actor bounds include it.
#pragma once

#include "CoreMinimal.h"
#include "SimulatedWorldMath.h"

#include <unordered_map>
#include <vector>

class FSimulatedEditor;
class FSimulatedObject;
class FSimulatedWorld;
struct FSimulatedComponent;

namespace SimulatedWorldSpline
{
	extern const TCHAR* const SplineComponentClassPath;
	// ESplinePointType values.
	constexpr uint8 LinearPoint = 0;
	constexpr uint8 CurvePoint = 1;
}

struct FSimulatedSplineState
{
	std::vector<FSimulatedVector> Points;
	std::vector<uint8> PointTypes;
	bool bClosedLoop = false;
};

class FSimulatedSplines
{
public:
	explicit FSimulatedSplines(FSimulatedWorld& InWorld);

	// Declares the class, its two enums and its functions with their bodies; a no-op when the
	// class exists already or the primitive component class it derives from does not.
	void RegisterClass(FSimulatedEditor& Editor);
	// A spline component was created on an actor: the engine's default two points.
	void OnComponentCreated(FSimulatedComponent& Component);

	const FSimulatedSplineState* FindState(const FSimulatedObject* Component) const;
	double GetSplineLength(const FSimulatedSplineState& State) const;

private:
	FSimulatedSplineState& StateOf(FSimulatedObject& Component);
	// The component's bounds follow its points.
	void UpdateBounds(FSimulatedObject& Component);
	FSimulatedComponent* FindComponent(FSimulatedObject& Component) const;

	FSimulatedWorld& World;
	std::unordered_map<const FSimulatedObject*, FSimulatedSplineState> States;
};
