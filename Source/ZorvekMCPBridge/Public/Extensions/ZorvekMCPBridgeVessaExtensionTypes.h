// The reflected records of Vessa extensions, as Blueprint authors see them in class defaults.
#pragma once

#include "CoreMinimal.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"
#include "UObject/WeakObjectPtrTemplates.h"

#include "ZorvekMCPBridgeVessaExtensionTypes.generated.h"

UENUM(BlueprintType, meta = (DisplayName = "Vessa Extension Context Type"))
enum class EZorvekMCPBridgeVessaExtensionContextType : uint8
{
	Any = 0,
	AssetEditor = 1
};

// The values are serialized in Blueprint class defaults: never renumber.
UENUM(BlueprintType, meta = (DisplayName = "Vessa Extension Parameter Type"))
enum class EZorvekMCPBridgeVessaExtensionParameterType : uint8
{
	None = 0,
	String = 1,
	Int = 2,
	Float = 3,
	Bool = 4,
	Vector3 = 5,
	Color = 6,
	Rotator = 7,
	LinearColor = 8,
	Enum = 9,
	Array = 10,
	Transform = 11,
	CustomStruct = 12,
	Object = 13
};

USTRUCT(BlueprintType, meta = (DisplayName = "Vessa Parameter Definition"))
struct ZORVEKMCPBRIDGE_API FZorvekMCPBridgeVessaParameterDefinition
{
	GENERATED_BODY()

public:
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	FName Name;

	UPROPERTY(VisibleAnywhere, BlueprintReadOnly, Category = "Vessa")
	EZorvekMCPBridgeVessaExtensionParameterType ParameterType = EZorvekMCPBridgeVessaExtensionParameterType::None;

	UPROPERTY(VisibleAnywhere, BlueprintReadOnly, Category = "Vessa")
	EZorvekMCPBridgeVessaExtensionParameterType ArrayElementType = EZorvekMCPBridgeVessaExtensionParameterType::None;

	UPROPERTY(VisibleAnywhere, Category = "Vessa")
	TWeakObjectPtr<UScriptStruct> StructElementType;

	// Typed by the author; kept when the extension rediscovers its functions.
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	FString Description;

	UPROPERTY(VisibleAnywhere, BlueprintReadOnly, Category = "Vessa")
	FString ParameterTypeJsonString;
};

USTRUCT(BlueprintType, meta = (DisplayName = "Vessa Extension Action Definition"))
struct ZORVEKMCPBRIDGE_API FZorvekMCPBridgeVessaActionDefinition
{
	GENERATED_BODY()

public:
	UPROPERTY(VisibleAnywhere, BlueprintReadOnly, Category = "Vessa")
	FName FunctionName;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	FString Description;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	TArray<FZorvekMCPBridgeVessaParameterDefinition> ParameterDefinitions;
};

USTRUCT(BlueprintType, meta = (DisplayName = "Vessa Extension Query Definition"))
struct ZORVEKMCPBRIDGE_API FZorvekMCPBridgeVessaQueryDefinition
{
	GENERATED_BODY()

public:
	UPROPERTY(VisibleAnywhere, BlueprintReadOnly, Category = "Vessa")
	FName FunctionName;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	FString Description;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	TArray<FZorvekMCPBridgeVessaParameterDefinition> ParameterDefinitions;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	TArray<FZorvekMCPBridgeVessaParameterDefinition> ResultDefinitions;
};

USTRUCT(BlueprintType, meta = (DisplayName = "Vessa Extension Definition"))
struct ZORVEKMCPBRIDGE_API FZorvekMCPBridgeVessaExtensionDefinition
{
	GENERATED_BODY()

public:
	UPROPERTY(VisibleAnywhere, BlueprintReadOnly, Category = "Vessa")
	FString ExtensionId;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	FString ExtensionName;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	FString ExtensionDescription;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	EZorvekMCPBridgeVessaExtensionContextType ContextType = EZorvekMCPBridgeVessaExtensionContextType::Any;

	// With AssetEditor: part of the class name of the edited asset, e.g. Material.
	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	FString SelectedAssetType;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	TArray<FZorvekMCPBridgeVessaActionDefinition> Actions;

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Vessa")
	TArray<FZorvekMCPBridgeVessaQueryDefinition> Queries;

	UPROPERTY(VisibleAnywhere, BlueprintReadOnly, Category = "Vessa")
	bool bIsSystemExtension = false;
};

USTRUCT(BlueprintType, meta = (DisplayName = "Vessa Action Result"))
struct ZORVEKMCPBRIDGE_API FZorvekMCPBridgeVessaActionResult
{
	GENERATED_BODY()

public:
	UPROPERTY(BlueprintReadWrite, Category = "Vessa")
	bool bActionCalled = false;

	UPROPERTY(BlueprintReadWrite, Category = "Vessa")
	bool bSuccess = false;

	UPROPERTY(BlueprintReadWrite, Category = "Vessa")
	bool bIsAsync = false;

	UPROPERTY(BlueprintReadWrite, Category = "Vessa")
	FString Result;

	UPROPERTY(BlueprintReadWrite, Category = "Vessa")
	FString ErrorMessage;

	static FZorvekMCPBridgeVessaActionResult ExtensionSuccess(const FString& Message)
	{
		return Make(true, true, false, Message, FString());
	}
	static FZorvekMCPBridgeVessaActionResult ExtensionFailure(const FString& Message)
	{
		return Make(true, false, false, FString(), Message);
	}
	static FZorvekMCPBridgeVessaActionResult AsyncAction(const FString& Message)
	{
		return Make(true, true, true, Message, FString());
	}
	static FZorvekMCPBridgeVessaActionResult NoAction()
	{
		return FZorvekMCPBridgeVessaActionResult();
	}

private:
	static FZorvekMCPBridgeVessaActionResult Make(bool bCalled, bool bSucceeded, bool bAsync, const FString& InResult, const FString& InErrorMessage)
	{
		FZorvekMCPBridgeVessaActionResult Value;
		Value.bActionCalled = bCalled;
		Value.bSuccess = bSucceeded;
		Value.bIsAsync = bAsync;
		Value.Result = InResult;
		Value.ErrorMessage = InErrorMessage;
		return Value;
	}
};
