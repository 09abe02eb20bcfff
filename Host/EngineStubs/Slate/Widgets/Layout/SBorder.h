#pragma once

#include "CoreMinimal.h"
#include "Layout/Margin.h"
#include "Widgets/SCompoundWidget.h"

struct FSlateBrush;

class SBorder : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SBorder) {}
		SLATE_ATTRIBUTE(const FSlateBrush*, BorderImage)
		SLATE_ATTRIBUTE(FMargin, Padding)
		SLATE_ARGUMENT(EHorizontalAlignment, HAlign)
		SLATE_ARGUMENT(EVerticalAlignment, VAlign)
		SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_END_ARGS()

	SBorder();
	void Construct(const FArguments& InArgs);
	void SetContent(TSharedRef<SWidget> InContent);
};
