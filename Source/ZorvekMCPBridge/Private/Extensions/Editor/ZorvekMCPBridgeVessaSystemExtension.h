// The built-in extension: the bridge's own status as a Vessa query.
#pragma once

#include "CoreMinimal.h"
#include "Extensions/ZorvekMCPBridgeVessaExtension.h"

#include "ZorvekMCPBridgeVessaSystemExtension.generated.h"

UCLASS()
class UZorvekMCPBridgeVessaSystemExtension : public UZorvekMCPBridgeVessaExtension
{
	GENERATED_BODY()

public:
	UZorvekMCPBridgeVessaSystemExtension();

	virtual bool IsSystemExtension() const override;

	/** Return standalone MCP Bridge/Vessa extension system status. */
	UFUNCTION(BlueprintCallable, Category = "Vessa Queries")
	void GetStatus(FString& Backend, FString& UnrealVersion, bool& bStandalone) const;
};
