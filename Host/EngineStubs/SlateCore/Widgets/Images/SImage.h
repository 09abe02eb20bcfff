#pragma once

#include "CoreMinimal.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SWidget.h"

struct FSlateBrush;

class SImage : public SWidget
{
public:
	SLATE_BEGIN_ARGS(SImage) {}
		SLATE_ATTRIBUTE(const FSlateBrush*, Image)
	SLATE_END_ARGS()

	SImage();
	void Construct(const FArguments& InArgs);
};
