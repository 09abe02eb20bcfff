// The nine flat transform arguments of the world tools (LocationX/Y/Z, RotationPitch/Yaw/Roll,
// ScaleX/Y/Z). They are read once, checked, and kept as overrides: each key that is present
// replaces its part of a transform the caller supplies (zero location, zero rotation and unit
// scale for placement; the current transform for the set-transform tools).
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeWorldPort.h"

namespace ZorvekMCPBridgeWorldTransformArguments
{
	// Numbers beyond this magnitude are refused: the engine clamps worlds at 2.1e7 and misbehaves
	// long before that.
	inline constexpr double MaxMagnitude = 10000000.0;

	// One argument: present or not, and its value when present.
	struct FNumberOverride
	{
		bool bPresent = false;
		double Value = 0.0;
	};

	struct FTransformOverrides
	{
		FNumberOverride LocationX;
		FNumberOverride LocationY;
		FNumberOverride LocationZ;
		FNumberOverride RotationPitch;
		FNumberOverride RotationYaw;
		FNumberOverride RotationRoll;
		FNumberOverride ScaleX;
		FNumberOverride ScaleY;
		FNumberOverride ScaleZ;
		// The first refusal in key order; empty when every present key holds a usable number.
		FString Error;

		bool IsValid() const { return Error.IsEmpty(); }

		// The transform with every present key replacing its part (rotation in degrees).
		FZorvekMCPBridgeTransform ApplyTo(const FZorvekMCPBridgeTransform& Current) const;
	};

	// Reads the nine keys. A value is a JSON number or a number written as text ("12.5", " -3",
	// "1e3"), since every scalar parameter is declared as a string. Refusals, with the key's name:
	// "%s must be a number." for anything else (other text, booleans, objects, arrays, null),
	// "%s must be a finite number." for NaN and infinities (a JSON number too large for a double,
	// or the texts "nan" and "inf"), "%s is out of range (at most 10000000 in magnitude)." beyond
	// MaxMagnitude. A scale of 0 is allowed, as the engine allows it.
	FTransformOverrides Read(const TSharedPtr<FJsonObject>& Arguments);

	// One number argument under any key, with the same forms and refusals: the refusal naming the
	// key, empty when the key is absent (bPresent stays false) or holds a usable number.
	FString ReadNumber(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, FNumberOverride& OutNumber);
}
