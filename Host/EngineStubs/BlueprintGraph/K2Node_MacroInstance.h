#pragma once

#include "CoreMinimal.h"
#include "K2Node_Tunnel.h"
#include "UObject/ObjectMacros.h"

class UBlueprint;
class UEdGraph;

UCLASS()
class UK2Node_MacroInstance : public UK2Node_Tunnel
{
	GENERATED_BODY()

public:
	void SetMacroGraph(UEdGraph* Graph);
	UEdGraph* GetMacroGraph() const;
	UBlueprint* GetSourceBlueprint() const;
};
