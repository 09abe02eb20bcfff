#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

UENUM(BlueprintType)
enum EBlendMode : int
{
	BLEND_Opaque,
	BLEND_Masked,
	BLEND_Translucent,
	BLEND_Additive,
	BLEND_Modulate,
	BLEND_AlphaComposite,
	BLEND_AlphaHoldout,
	BLEND_TranslucentColoredTransmittance,
	BLEND_MAX
};

// Not in the reference notes beyond its use as a parameter type (ETeleportType::None); the
// enumerators are the engine's, check against the engine.
UENUM()
enum class ETeleportType : uint8
{
	None,
	TeleportPhysics,
	ResetPhysics
};
