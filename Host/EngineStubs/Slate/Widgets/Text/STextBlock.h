#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Widgets/SWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class STextBlock : public SWidget
{
public:
	SLATE_BEGIN_ARGS(STextBlock) {}
		SLATE_ATTRIBUTE(FText, Text)
		SLATE_ATTRIBUTE(bool, AutoWrapText)
		SLATE_ATTRIBUTE(float, WrapTextAt)
		SLATE_ATTRIBUTE(FSlateFontInfo, Font)
	SLATE_END_ARGS()

	STextBlock();
	void Construct(const FArguments& InArgs);
	const FText& GetText() const;
	void SetText(TAttribute<FText> InText);
};
