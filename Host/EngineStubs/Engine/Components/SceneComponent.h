#pragma once

#include "CoreMinimal.h"
#include "Components/ActorComponent.h"
#include "Engine/EngineTypes.h"
#include "Math/BoxSphereBounds.h"
#include "Math/Rotator.h"
#include "Math/Transform.h"
#include "Math/Vector.h"
#include "UObject/ObjectMacros.h"
#include "UObject/ObjectPtr.h"

struct FHitResult;

UCLASS()
class USceneComponent : public UActorComponent
{
	GENERATED_BODY()

public:
	// World-space bounds; a public member, not a UPROPERTY, valid once the component is registered.
	FBoxSphereBounds Bounds;

	const FTransform& GetComponentTransform() const;
	FVector GetComponentLocation() const;
	FRotator GetComponentRotation() const;
	FTransform GetRelativeTransform() const;
	FVector GetRelativeLocation() const;
	FRotator GetRelativeRotation() const;
	FVector GetRelativeScale3D() const;
	void SetRelativeTransform(const FTransform& NewTransform, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr, ETeleportType Teleport = ETeleportType::None);
	virtual void UpdateComponentToWorld(EUpdateTransformFlags UpdateTransformFlags = EUpdateTransformFlags::None, ETeleportType Teleport = ETeleportType::None) override final;
	USceneComponent* GetAttachParent() const;
	const TArray<TObjectPtr<USceneComponent>>& GetAttachChildren() const;
	void SetupAttachment(USceneComponent* InParent, FName InSocketName = NAME_None);
};
