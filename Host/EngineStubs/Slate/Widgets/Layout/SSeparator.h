#pragma once

#include "CoreMinimal.h"
#include "Widgets/Layout/SBorder.h"

class SSeparator : public SBorder
{
public:
	SLATE_BEGIN_ARGS(SSeparator) {}
		SLATE_ATTRIBUTE(float, Thickness)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
};
