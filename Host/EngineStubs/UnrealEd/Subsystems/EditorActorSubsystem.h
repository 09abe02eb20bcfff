#pragma once

#include "CoreMinimal.h"
#include "Math/Rotator.h"
#include "Math/Transform.h"
#include "Math/Vector.h"
#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

class AActor;
class UActorComponent;
class USceneComponent;
class UWorld;

// The engine's base is UEditorSubsystem (module EditorSubsystem); nothing here uses it.
UCLASS(MinimalAPI)
class UEditorActorSubsystem : public UObject
{
	GENERATED_BODY()

public:
	TArray<AActor*> GetAllLevelActors();
	TArray<UActorComponent*> GetAllLevelActorsComponents();
	TArray<AActor*> GetSelectedLevelActors();
	void SetSelectedLevelActors(const TArray<AActor*>& ActorsToSelect);
	void SelectNothing();
	void ClearActorSelectionSet();
	void SetActorSelectionState(AActor* Actor, bool bShouldBeSelected);
	AActor* SpawnActorFromClass(TSubclassOf<AActor> ActorClass, FVector Location, FRotator Rotation = FRotator::ZeroRotator, bool bTransient = false);
	AActor* SpawnActorFromObject(UObject* ObjectToUse, FVector Location, FRotator Rotation = FRotator::ZeroRotator, bool bTransient = false);
	bool DestroyActor(AActor* ActorToDestroy);
	bool DestroyActors(const TArray<AActor*>& ActorsToDestroy);
	bool SetActorTransform(AActor* InActor, const FTransform& InWorldTransform);
	bool SetComponentTransform(USceneComponent* InSceneComponent, const FTransform& InWorldTransform);
	AActor* GetActorReference(FString PathToActor);
};
