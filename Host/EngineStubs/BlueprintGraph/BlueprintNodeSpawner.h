#pragma once

#include "CoreMinimal.h"
#include "BlueprintNodeBinder.h"
#include "EdGraph/EdGraphNode.h"
#include "Templates/SubclassOf.h"
#include "UObject/Object.h"
#include "UObject/ObjectMacros.h"

class UEdGraph;

// Not in the reference notes beyond its field names (unreal-behaviour-blueprints.md §9.4): how
// the action menu shows a spawner. The icon and documentation fields are left out. Check against
// the engine.
struct FBlueprintActionUiSpec
{
	FText MenuName;
	FText Category;
	FText Tooltip;
	FText Keywords;
};

// Not in the reference notes beyond its member names (unreal-behaviour-blueprints.md §9.3-9.5);
// check against the engine.
UCLASS(Transient)
class UBlueprintNodeSpawner : public UObject, public IBlueprintNodeBinder
{
	GENERATED_BODY()

public:
	TSubclassOf<UEdGraphNode> NodeClass;
	FBlueprintActionUiSpec DefaultMenuSignature;

	FBlueprintActionUiSpec const& PrimeDefaultUiSpec(UEdGraph* TargetGraph = nullptr) const;
	virtual UEdGraphNode* GetCachedTemplateNode() const;
	UEdGraphNode* GetTemplateNode(UEdGraph* TargetGraph = nullptr, FBindingSet const& Bindings = FBindingSet()) const;
};
