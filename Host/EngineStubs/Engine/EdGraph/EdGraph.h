#pragma once

#include "CoreMinimal.h"
#include "EdGraph/EdGraphNode.h"
#include "Misc/Guid.h"
#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"
#include "UObject/ObjectPtr.h"

class UEdGraphSchema;

UCLASS()
class UEdGraph : public UObject
{
	GENERATED_BODY()

public:
	TSubclassOf<UEdGraphSchema> Schema;
	TArray<TObjectPtr<UEdGraphNode>> Nodes;
	uint32 bEditable : 1;
	uint32 bAllowDeletion : 1;
	uint32 bAllowRenaming : 1;
#if WITH_EDITORONLY_DATA
	TArray<TObjectPtr<UEdGraph>> SubGraphs;
	FGuid GraphGuid;
	FGuid InterfaceGuid;
#endif

	const UEdGraphSchema* GetSchema() const;
	virtual void AddNode(UEdGraphNode* NodeToAdd, bool bUserAction = false, bool bSelectNewNode = true);
	bool RemoveNode(UEdGraphNode* NodeToRemove, bool bBreakAllLinks = true, bool bAlwaysMarkDirty = true);
	virtual void NotifyGraphChanged();
	void NotifyNodeChanged(const UEdGraphNode* Node);
	template <class T> void GetNodesOfClass(TArray<T*>& OutNodes) const;
	void GetAllChildrenGraphs(TArray<UEdGraph*>& Graphs) const;
	static UEdGraph* GetOuterGraph(UObject* Obj);
};
