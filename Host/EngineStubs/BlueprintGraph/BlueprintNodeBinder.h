#pragma once

#include "CoreMinimal.h"
#include "UObject/WeakObjectPtrTemplates.h"

class UObject;

// Not in the reference notes; check against the engine. The binding set a spawner takes
// (GetTemplateNode's default argument).
class IBlueprintNodeBinder
{
public:
	typedef TSet<TWeakObjectPtr<UObject>> FBindingSet;

	virtual ~IBlueprintNodeBinder() = default;
};
