#pragma once

#include "CoreMinimal.h"
#include "Engine/EngineTypes.h"
#include "Math/Box.h"
#include "Math/Quat.h"
#include "Math/Rotator.h"
#include "Math/Transform.h"
#include "Math/Vector.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

class UActorComponent;
class USceneComponent;
struct FHitResult;

UCLASS()
class AActor : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(EditAnywhere, BlueprintReadWrite)
	TArray<FName> Tags;

	bool ActorHasTag(FName Tag) const;
	USceneComponent* GetRootComponent() const;
	const FTransform& GetActorTransform() const;
	FVector GetActorLocation() const;
	FRotator GetActorRotation() const;
	FQuat GetActorQuat() const;
	FVector GetActorScale3D() const;
	bool SetActorTransform(const FTransform& NewTransform, bool bSweep = false, FHitResult* OutSweepHitResult = nullptr, ETeleportType Teleport = ETeleportType::None);
	void SetActorScale3D(FVector NewScale3D);
	virtual void GetActorBounds(bool bOnlyCollidingComponents, FVector& Origin, FVector& BoxExtent, bool bIncludeFromChildActors = false) const;
	virtual FBox GetComponentsBoundingBox(bool bNonColliding = false, bool bIncludeFromChildActors = false) const;
	const TSet<UActorComponent*>& GetComponents() const;
	void AddInstanceComponent(UActorComponent* Component);
	void RemoveInstanceComponent(UActorComponent* Component);
	const TArray<UActorComponent*>& GetInstanceComponents() const;
	// Not in the reference notes; check against the engine.
	bool SetRootComponent(USceneComponent* NewRootComponent);
#if WITH_EDITOR
	const FString& GetActorLabel(bool bCreateIfNone = true) const;
	void SetActorLabel(const FString& NewActorLabel, bool bMarkDirty = true);
#endif
};
