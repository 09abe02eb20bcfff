#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectKey.h"

class UBlueprintNodeSpawner;

// Not in the reference notes beyond Get and GetAllActions (unreal-behaviour-blueprints.md §9.1);
// the engine class also derives from FGCObject and FTickableEditorObject. Check against the
// engine.
class FBlueprintActionDatabase
{
public:
	typedef TArray<UBlueprintNodeSpawner*> FActionList;
	typedef TMap<FObjectKey, FActionList> FActionRegistry;

	static FBlueprintActionDatabase& Get();
	FActionRegistry const& GetAllActions();
};
