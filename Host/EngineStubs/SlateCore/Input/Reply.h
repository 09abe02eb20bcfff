#pragma once

#include "CoreMinimal.h"

class FReply
{
public:
	static FReply Handled();
	static FReply Unhandled();
	bool IsEventHandled() const;
};
