#pragma once

#include "CoreMinimal.h"
#include "Widgets/SCompoundWidget.h"

// A row of pulsing dots that says "busy".
class SThrobber : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SThrobber) {}
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
};
