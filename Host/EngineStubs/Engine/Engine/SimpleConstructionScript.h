#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

// The editor build defines each module's export macro; nothing here is linked.
#ifndef ENGINE_API
#define ENGINE_API
#endif

class UActorComponent;
class UBlueprint;
class USCS_Node;
class USceneComponent;

UCLASS(MinimalAPI)
class USimpleConstructionScript : public UObject
{
	GENERATED_BODY()

public:
	USCS_Node* CreateNode(UClass* NewComponentClass, FName NewComponentVariableName = NAME_None);
	USCS_Node* CreateNodeAndRenameComponent(UActorComponent* NewComponentTemplate);
	void AddNode(USCS_Node* Node);
	void RemoveNode(USCS_Node* Node, bool bValidateSceneRootNodes = true);
	void RemoveNodeAndPromoteChildren(USCS_Node* Node);
	USCS_Node* FindSCSNode(const FName InName) const;
	USCS_Node* FindSCSNodeByGuid(const FGuid Guid) const;
	USCS_Node* FindParentNode(USCS_Node* InNode) const;
	ENGINE_API const TArray<USCS_Node*>& GetAllNodes() const;
	const TArray<USCS_Node*>& GetRootNodes() const;
	USCS_Node* GetDefaultSceneRootNode() const;
	FName GenerateNewComponentName(const UClass* ComponentClass, FName DesiredName = NAME_None) const;
	UBlueprint* GetBlueprint() const;
	UClass* GetOwnerClass() const;
	UClass* GetParentClass() const;
	void ValidateSceneRootNodes();

	static const FString ComponentTemplateNameSuffix;
};
