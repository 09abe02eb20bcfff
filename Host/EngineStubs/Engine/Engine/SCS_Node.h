#pragma once

#include "CoreMinimal.h"
#include "Engine/Blueprint.h"
#include "Misc/Guid.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

// The editor build defines each module's export macro; nothing here is linked.
#ifndef ENGINE_API
#define ENGINE_API
#endif
#include "UObject/ObjectPtr.h"

class UActorComponent;
class UBlueprintGeneratedClass;
class USceneComponent;

UCLASS(MinimalAPI)
class USCS_Node : public UObject
{
	GENERATED_BODY()

public:
	TObjectPtr<UClass> ComponentClass;
	TObjectPtr<UActorComponent> ComponentTemplate;
	FName AttachToName;
	FName ParentComponentOrVariableName;
	FName ParentComponentOwnerClassName;
	bool bIsParentComponentNative;
	TArray<TObjectPtr<USCS_Node>> ChildNodes;
	TArray<FBPVariableMetaDataEntry> MetaDataArray;
	FGuid VariableGuid;
#if WITH_EDITORONLY_DATA
	FText CategoryName;
#endif

	FName GetVariableName() const;
	const TArray<USCS_Node*>& GetChildNodes() const;
	ENGINE_API void AddChildNode(USCS_Node* InNode, bool bAddToAllNodes = true);
	ENGINE_API void RemoveChildNode(USCS_Node* InNode, bool bRemoveFromAllNodes = true);
	ENGINE_API void SetVariableName(const FName& NewName, bool bRenameTemplate = true);
	ENGINE_API bool IsRootNode() const;
	ENGINE_API void SetParent(USCS_Node* InParentNode);
	ENGINE_API void SetParent(const USceneComponent* InParentComponent);
	ENGINE_API UActorComponent* GetActualComponentTemplate(UBlueprintGeneratedClass* ActualBPGC) const;
};
