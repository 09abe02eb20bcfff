#pragma once

#include "CoreMinimal.h"
#include "Framework/Views/ITypedTableView.h"
#include "Types/SlateEnums.h"
#include "Widgets/Views/ITableRow.h"
#include "Widgets/Views/STableViewBase.h"

template <typename ArgumentType>
class TSlateDelegates
{
public:
	DECLARE_DELEGATE_RetVal_TwoParams(TSharedRef<class ITableRow>, FOnGenerateRow, ArgumentType, const TSharedRef<class STableViewBase>&);
	DECLARE_DELEGATE_TwoParams(FOnSelectionChanged, ArgumentType, ESelectInfo::Type);
};

template <typename ItemType>
class SListView : public STableViewBase
{
public:
	typedef typename TSlateDelegates<ItemType>::FOnGenerateRow FOnGenerateRow;
	typedef typename TSlateDelegates<ItemType>::FOnSelectionChanged FOnSelectionChanged;

	SLATE_BEGIN_ARGS(SListView<ItemType>) {}
		SLATE_ARGUMENT(const TArray<ItemType>*, ListItemsSource)
		SLATE_EVENT(FOnGenerateRow, OnGenerateRow)
		SLATE_EVENT(FOnSelectionChanged, OnSelectionChanged)
		SLATE_ATTRIBUTE(ESelectionMode::Type, SelectionMode)
	SLATE_END_ARGS()

	SListView();
	void Construct(const FArguments& InArgs);
	void SetSelection(ItemType SoleSelectedItem, ESelectInfo::Type SelectInfo = ESelectInfo::Direct);
	TArray<ItemType> GetSelectedItems() const;
};
