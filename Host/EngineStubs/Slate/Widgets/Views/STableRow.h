#pragma once

#include "CoreMinimal.h"
#include "Layout/Margin.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Views/ITableRow.h"
#include "Widgets/Views/STableViewBase.h"

template <typename ItemType>
class STableRow : public ITableRow, public SBorder
{
public:
	SLATE_BEGIN_ARGS(STableRow<ItemType>) {}
		SLATE_ATTRIBUTE(FMargin, Padding)
		SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, const TSharedRef<STableViewBase>& InOwnerTableView);
	virtual TSharedRef<SWidget> AsWidget() override;
};
