#pragma once

#include "CoreMinimal.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"
#include "UObject/ObjectPtr.h"

class UActorComponent;
class USimpleConstructionScript;

UCLASS(NeedsDeferredDependencyLoading, MinimalAPI)
class UBlueprintGeneratedClass : public UClass
{
	GENERATED_BODY()

public:
	TArray<TObjectPtr<UActorComponent>> ComponentTemplates;
	TObjectPtr<USimpleConstructionScript> SimpleConstructionScript;

	UActorComponent* FindComponentTemplateByName(const FName& TemplateName) const;
};
