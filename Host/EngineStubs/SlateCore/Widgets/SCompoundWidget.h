#pragma once

#include "CoreMinimal.h"
#include "Layout/Margin.h"
#include "Types/SlateEnums.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SWidget.h"

class SCompoundWidget : public SWidget
{
public:
	// The engine's TSingleWidgetChildrenWithBasicLayoutSlot, as the compound widget's one slot.
	struct FCompoundWidgetOneChildSlot
	{
		FCompoundWidgetOneChildSlot& HAlign(EHorizontalAlignment InHAlignment);
		FCompoundWidgetOneChildSlot& VAlign(EVerticalAlignment InVAlignment);
		FCompoundWidgetOneChildSlot& Padding(TAttribute<FMargin> InPadding);
		FCompoundWidgetOneChildSlot& operator[](TSharedRef<SWidget> InChildWidget);
	};

protected:
	SCompoundWidget();

	FCompoundWidgetOneChildSlot ChildSlot;
};
