// blueprint_add_component_motion: makes a scene component of an Actor Blueprint rotate, bob or
// orbit, built without a timeline from Event Tick - Rotate adds speed * Delta Seconds about the
// axis each frame (AddLocalRotation); Bob and Orbit set the relative location from the game time
// (base location + amplitude * sin, or base location + radius * (cos, sin) in the plane normal to
// the axis). The parameters are editable float variables named after the component, so a designer
// tunes them without touching the graph.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeComponentMotion
{
	enum class EMotionType : uint8
	{
		Rotate,
		Bob,
		Orbit
	};

	enum class EMotionAxis : uint8
	{
		X,
		Y,
		Z
	};

	// The defaults of the numbers the client leaves out.
	constexpr double DefaultRotateSpeed = 90.0;
	constexpr double DefaultBobSpeed = 0.5;
	constexpr double DefaultBobAmplitude = 20.0;
	constexpr double DefaultOrbitSpeed = 45.0;
	constexpr double DefaultOrbitRadius = 100.0;

	// "Rotate", "Bob", "Orbit" / "X", "Y", "Z" without regard to case; false for other words.
	bool ParseMotionType(const FString& Word, EMotionType& OutType);
	bool ParseMotionAxis(const FString& Word, EMotionAxis& OutAxis);

	struct FComponentMotionParams
	{
		FString BlueprintNameOrPath;
		FString ComponentName;
		EMotionType MotionType = EMotionType::Rotate;
		EMotionAxis Axis = EMotionAxis::Z;
		// Degrees per second for Rotate and Orbit, cycles per second for Bob; unset means the
		// motion's default.
		ZorvekMCPBridgeWorldTransformArguments::FNumberOverride Speed;
		ZorvekMCPBridgeWorldTransformArguments::FNumberOverride Amplitude;
		ZorvekMCPBridgeWorldTransformArguments::FNumberOverride Radius;
		FString GraphName;
		bool bCompile = true;
		// The first argument that could not be read; the call is refused with it before anything
		// is loaded.
		FString ArgumentError;
	};

	TSharedPtr<FJsonObject> AddComponentMotion(IZorvekMCPBridgeEditorPort& Port, const FComponentMotionParams& Params);
}
