#pragma once

#include "CoreMinimal.h"
#include "Engine/EngineTypes.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

// Not in the reference notes beyond its use as a parameter type; the flags are the engine's,
// check against the engine.
enum class EUpdateTransformFlags : int32
{
	None = 0x0,
	SkipPhysicsUpdate = 0x1,
	PropagateFromParent = 0x2,
	OnlyUpdateIfUsingSocket = 0x4
};

// Not in the reference notes beyond its name and module; the base of every component class.
UCLASS()
class UActorComponent : public UObject
{
	GENERATED_BODY()

public:
	// Not in the reference notes on this class; USceneComponent overrides it (final).
	virtual void UpdateComponentToWorld(EUpdateTransformFlags UpdateTransformFlags = EUpdateTransformFlags::None, ETeleportType Teleport = ETeleportType::None);
	// Not in the reference notes beyond its use (components added at edit time are registered);
	// check against the engine.
	void RegisterComponent();
};
