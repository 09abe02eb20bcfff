#pragma once

#include "CoreMinimal.h"
#include "Layout/Margin.h"
#include "Types/SlateEnums.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SWidget.h"

class SPanel : public SWidget
{
};

class SBoxPanel : public SPanel
{
};

class SHorizontalBox : public SBoxPanel
{
public:
	class FSlot
	{
	public:
		struct FSlotArguments
		{
			FSlotArguments& AutoWidth();
			FSlotArguments& FillWidth(TAttribute<float> InStretchCoefficient);
			FSlotArguments& MaxWidth(TAttribute<float> InMaxWidth);
			FSlotArguments& Padding(TAttribute<FMargin> InPadding);
			FSlotArguments& Padding(float Uniform);
			FSlotArguments& Padding(float Horizontal, float Vertical);
			FSlotArguments& Padding(float Left, float Top, float Right, float Bottom);
			FSlotArguments& HAlign(EHorizontalAlignment InHAlignment);
			FSlotArguments& VAlign(EVerticalAlignment InVAlignment);
			FSlotArguments& operator[](TSharedRef<SWidget>&& InChildWidget);
			FSlotArguments& operator[](const TSharedRef<SWidget>& InChildWidget);
		};
	};

	static FSlot::FSlotArguments Slot();

	SLATE_BEGIN_ARGS(SHorizontalBox) {}
		WidgetArgsType& operator+(FSlot::FSlotArguments& SlotToAdd);
		WidgetArgsType& operator+(FSlot::FSlotArguments&& SlotToAdd);
	SLATE_END_ARGS()

	SHorizontalBox();
	void Construct(const FArguments& InArgs);
};

class SVerticalBox : public SBoxPanel
{
public:
	class FSlot
	{
	public:
		struct FSlotArguments
		{
			FSlotArguments& AutoHeight();
			FSlotArguments& FillHeight(TAttribute<float> InStretchCoefficient);
			FSlotArguments& MaxHeight(TAttribute<float> InMaxHeight);
			FSlotArguments& Padding(TAttribute<FMargin> InPadding);
			FSlotArguments& Padding(float Uniform);
			FSlotArguments& Padding(float Horizontal, float Vertical);
			FSlotArguments& Padding(float Left, float Top, float Right, float Bottom);
			FSlotArguments& HAlign(EHorizontalAlignment InHAlignment);
			FSlotArguments& VAlign(EVerticalAlignment InVAlignment);
			FSlotArguments& operator[](TSharedRef<SWidget>&& InChildWidget);
			FSlotArguments& operator[](const TSharedRef<SWidget>& InChildWidget);
		};
	};

	static FSlot::FSlotArguments Slot();

	SLATE_BEGIN_ARGS(SVerticalBox) {}
		WidgetArgsType& operator+(FSlot::FSlotArguments& SlotToAdd);
		WidgetArgsType& operator+(FSlot::FSlotArguments&& SlotToAdd);
	SLATE_END_ARGS()

	SVerticalBox();
	void Construct(const FArguments& InArgs);
};
