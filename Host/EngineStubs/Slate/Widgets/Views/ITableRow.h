#pragma once

#include "CoreMinimal.h"

class SWidget;

class ITableRow
{
public:
	virtual ~ITableRow() = default;
	virtual TSharedRef<SWidget> AsWidget() = 0;
};
