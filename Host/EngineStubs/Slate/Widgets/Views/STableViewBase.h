#pragma once

#include "CoreMinimal.h"
#include "Widgets/SCompoundWidget.h"

class STableViewBase : public SCompoundWidget
{
public:
	void RequestListRefresh();
};
