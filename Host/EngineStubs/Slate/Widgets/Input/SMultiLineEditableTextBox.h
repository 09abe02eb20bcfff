#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Widgets/Layout/SBorder.h"

class SMultiLineEditableTextBox : public SBorder
{
public:
	SLATE_BEGIN_ARGS(SMultiLineEditableTextBox) {}
		SLATE_ATTRIBUTE(FText, Text)
		SLATE_ATTRIBUTE(bool, IsReadOnly)
		SLATE_ATTRIBUTE(bool, AutoWrapText)
		SLATE_ATTRIBUTE(bool, AllowContextMenu)
		SLATE_ATTRIBUTE(FSlateFontInfo, Font)
	SLATE_END_ARGS()

	SMultiLineEditableTextBox();
	void Construct(const FArguments& InArgs);
	FText GetText() const;
	void SetText(const TAttribute<FText>& InNewText);
};
