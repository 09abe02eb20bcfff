#pragma once

#include "CoreMinimal.h"
#include "Widgets/Input/SButton.h"

class SHyperlink : public SButton
{
public:
	SLATE_BEGIN_ARGS(SHyperlink) {}
		SLATE_ATTRIBUTE(FText, Text)
		SLATE_EVENT(FSimpleDelegate, OnNavigate)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);
};
