#pragma once

#include "CoreMinimal.h"
#include "Math/Vector2D.h"
#include "Widgets/SCompoundWidget.h"

enum class ESizingRule : uint8
{
	FixedSize,
	Autosized,
	UserSized,
};

class SWindow : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SWindow) {}
		SLATE_ATTRIBUTE(FText, Title)
		// UE::Slate::FDeprecateVector2DParameter in the engine, made from an FVector2D.
		SLATE_ARGUMENT(FVector2D, ClientSize)
		SLATE_ARGUMENT(ESizingRule, SizingRule)
		SLATE_ARGUMENT(bool, SupportsMaximize)
		SLATE_ARGUMENT(bool, SupportsMinimize)
		SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_END_ARGS()

	SWindow();
	void Construct(const FArguments& InArgs);
	void SetContent(TSharedRef<SWidget> InContent);
	void BringToFront(bool bForce = false);
	void RequestDestroyWindow();
};
