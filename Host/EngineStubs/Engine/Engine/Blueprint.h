#pragma once

#include "CoreMinimal.h"
#include "Containers/EnumAsByte.h"
#include "EdGraph/EdGraphPin.h"
#include "Misc/Guid.h"
#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"
#include "UObject/ObjectPtr.h"

class UActorComponent;
class UEdGraph;
class UInterface;
class USimpleConstructionScript;

enum EBlueprintStatus : int
{
	BS_Unknown = 0,
	BS_Dirty = 1,
	BS_Error = 2,
	BS_UpToDate = 3,
	BS_BeingCreated = 4,
	BS_UpToDateWithWarnings = 5,
	BS_MAX
};

enum EBlueprintType : int
{
	BPTYPE_Normal,
	BPTYPE_Const,
	BPTYPE_MacroLibrary,
	BPTYPE_Interface,
	BPTYPE_LevelScript,
	BPTYPE_FunctionLibrary,
	BPTYPE_MAX
};

USTRUCT()
struct FBPVariableMetaDataEntry
{
	GENERATED_USTRUCT_BODY()

	FName DataKey;
	FString DataValue;
};

USTRUCT()
struct FBPVariableDescription
{
	GENERATED_USTRUCT_BODY()

	FName VarName;
	FGuid VarGuid;
	FEdGraphPinType VarType;
	FString FriendlyName;
	FText Category;
	uint64 PropertyFlags;
	FName RepNotifyFunc;
	TArray<FBPVariableMetaDataEntry> MetaDataArray;
	FString DefaultValue;

	void SetMetaData(FName Key, FString Value);
	const FString& GetMetaData(FName Key) const;
	void RemoveMetaData(FName Key);
	int32 FindMetaDataEntryIndexForKey(FName Key) const;
	bool HasMetaData(FName Key) const;
};

USTRUCT()
struct FBPInterfaceDescription
{
	GENERATED_USTRUCT_BODY()

	TSubclassOf<UInterface> Interface;
	TArray<TObjectPtr<UEdGraph>> Graphs;
};

UCLASS()
class UBlueprintCore : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(Transient)
	TSubclassOf<UObject> SkeletonGeneratedClass;
	UPROPERTY()
	TSubclassOf<UObject> GeneratedClass;
};

UCLASS()
class UBlueprint : public UBlueprintCore
{
	GENERATED_BODY()

public:
	TSubclassOf<UObject> ParentClass;
	TEnumAsByte<EBlueprintType> BlueprintType;
	TObjectPtr<USimpleConstructionScript> SimpleConstructionScript;
	TArray<TObjectPtr<UActorComponent>> ComponentTemplates;
#if WITH_EDITORONLY_DATA
	TEnumAsByte<EBlueprintStatus> Status;
	TArray<TObjectPtr<UEdGraph>> UbergraphPages;
	TArray<TObjectPtr<UEdGraph>> FunctionGraphs;
	TArray<TObjectPtr<UEdGraph>> DelegateSignatureGraphs;
	TArray<TObjectPtr<UEdGraph>> MacroGraphs;
	TArray<TObjectPtr<UEdGraph>> IntermediateGeneratedGraphs;
	TArray<TObjectPtr<UEdGraph>> EventGraphs;
	TArray<FBPVariableDescription> NewVariables;
	TArray<FBPInterfaceDescription> ImplementedInterfaces;
#endif

	bool IsUpToDate() const;
	bool IsPossiblyDirty() const;
	void GetAllGraphs(TArray<UEdGraph*>& Graphs) const;
	virtual UClass* GetBlueprintClass() const;
	static UBlueprint* GetBlueprintFromClass(const UClass* InClass);
};
