#pragma once

#include "CoreMinimal.h"
#include "Layout/Visibility.h"
#include "Misc/Attribute.h"

class SWidget : public TSharedFromThis<SWidget>
{
public:
	virtual ~SWidget();
	void SetVisibility(TAttribute<EVisibility> InVisibility);
	void SetEnabled(TAttribute<bool> InEnabledState);
	void SetToolTipText(const TAttribute<FText>& ToolTipText);

protected:
	SWidget();
};
