// The base class of Vessa extensions: editor objects, native or Blueprint, whose functions marked
// as actions or queries AI clients can discover and call through the vessa_* tools.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Extensions/ZorvekMCPBridgeVessaExtensionTypes.h"
#include "IAssetRegistryTagProviderInterface.h"
#include "UObject/Object.h"
#include "UObject/WeakObjectPtrTemplates.h"

#include "ZorvekMCPBridgeVessaExtension.generated.h"

struct FZorvekMCPBridgeVessaDefinitionData;
class UWorld;

UCLASS(Blueprintable, BlueprintType, meta = (DisplayName = "Vessa Extension"))
class ZORVEKMCPBRIDGE_API UZorvekMCPBridgeVessaExtension : public UObject, public IAssetRegistryTagProviderInterface
{
	GENERATED_BODY()

public:
	UPROPERTY(EditDefaultsOnly, BlueprintReadOnly, Category = "Vessa")
	FZorvekMCPBridgeVessaExtensionDefinition Definition;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	bool bEnabled = true;

	// Whether the extension wants to be offered now; Blueprints may override.
	UFUNCTION(BlueprintNativeEvent, BlueprintCallable, Category = "Vessa")
	bool IsActive() const;
	virtual bool IsActive_Implementation() const;

	bool IsEnabled() const { return bEnabled; }
	virtual bool IsSystemExtension() const;
	virtual bool MatchesContext(TWeakObjectPtr<UObject> ContextObject) const;
	TSharedPtr<FZorvekMCPBridgeVessaExtensionDefinition> GetExtensionDefinition() const;

	// Rebuilds Actions and Queries from the class's functions, keeping typed descriptions.
	UFUNCTION(CallInEditor, BlueprintCallable, Category = "Vessa")
	void DiscoverActionsAndQueries();

	FZorvekMCPBridgeVessaActionResult ExecuteAction(const TSharedPtr<FJsonObject>& Request);
	TSharedPtr<FJsonValue> ExecuteQuery(const TSharedPtr<FJsonObject>& Request);

	// The process-wide report slots: how Blueprint actions hand back their outcome.
	UFUNCTION(BlueprintCallable, Category = "Vessa")
	static void ReportExtensionError(const FString& ErrorMessage);
	UFUNCTION(BlueprintCallable, Category = "Vessa")
	static void ReportExtensionResults(const FString& ResultsMessage);
	static FString GetExtensionError();
	static FString GetExtensionResults();
	static bool HasExtensionError();
	static bool HasExtensionResults();
	static void ClearExtensionError();
	static void ClearExtensionResults();

	UFUNCTION(BlueprintCallable, BlueprintPure, Category = "Vessa", meta = (DisplayName = "Get Currently Edited Asset"))
	static UObject* GetCurrentlyEditedAsset();
	UFUNCTION(BlueprintCallable, Category = "Vessa")
	static UWorld* GetWorldEditorContext();

	// Not in the reference notes; check against the engine (UObject::PostInitProperties).
	virtual void PostInitProperties() override;
#if WITH_EDITOR
	// Not in the reference notes; check against the engine (UObject::PostCDOCompiled, 5.1+).
	virtual void PostCDOCompiled(const FPostCDOCompiledContext& Context) override;
#endif
	// Blueprint subclasses carry the class default's registry tags.
	virtual bool ShouldAddCDOTagsToBlueprintClass() const override;

	// The definition in the form the shared discovery and call code works on (and back).
	FZorvekMCPBridgeVessaDefinitionData ToDefinitionData() const;
	void FromDefinitionData(const FZorvekMCPBridgeVessaDefinitionData& Data);

private:
	// Discovery on the class default object of every subclass: the id, the name, the functions.
	void RefreshExtension();
};
