// The Vessa registry's rooted object in the editor: it holds the live extension instances, so
// garbage collection never removes them. The lookup itself is the shared registry's
// (Extensions/ZorvekMCPBridgeVessaExtensionRegistry.h).
#pragma once

#include "CoreMinimal.h"
#include "Extensions/ZorvekMCPBridgeVessaExtension.h"
#include "UObject/Object.h"
#include "UObject/ObjectPtr.h"

#include "ZorvekMCPBridgeVessaExtensionRegistryObject.generated.h"

UCLASS(Transient)
class UZorvekMCPBridgeVessaExtensionRegistry : public UObject
{
	GENERATED_BODY()

public:
	// The one object of the editor process, created in the transient package and rooted.
	static UZorvekMCPBridgeVessaExtensionRegistry* Get();

	UPROPERTY(Transient)
	TMap<FString, TObjectPtr<UZorvekMCPBridgeVessaExtension>> RegisteredExtensions;
};
