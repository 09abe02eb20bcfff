#pragma once

#include "CoreMinimal.h"
#include "EdGraph/EdGraphNode.h"
#include "UObject/ObjectMacros.h"

// The editor build defines each module's export macro; nothing here is linked.
#ifndef BLUEPRINTGRAPH_API
#define BLUEPRINTGRAPH_API
#endif

// Not in the reference notes beyond GetThenPin: the abstract base of every Blueprint graph node.
UCLASS()
class UK2Node : public UEdGraphNode
{
	GENERATED_BODY()

public:
	UEdGraphPin* GetThenPin() const;
};
