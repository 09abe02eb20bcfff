#pragma once

#include "CoreMinimal.h"
#include "Widgets/SWidget.h"

// The shared empty widget, for a slot that shows nothing.
class SNullWidget
{
public:
	static TSharedRef<SWidget> NullWidget;
};
