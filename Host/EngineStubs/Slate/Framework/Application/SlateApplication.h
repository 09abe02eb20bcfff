#pragma once

#include "CoreMinimal.h"
#include "Widgets/SWindow.h"

class FSlateApplication
{
public:
	static bool IsInitialized();
	static FSlateApplication& Get();

	TSharedRef<SWindow> AddWindow(TSharedRef<SWindow> InSlateWindow, const bool bShowImmediately = true);
	// The window stays above its parent and goes with it when the parent is minimised or closed.
	TSharedRef<SWindow> AddWindowAsNativeChild(TSharedRef<SWindow> InSlateWindow, TSharedRef<SWindow> InParentWindow, const bool bShowImmediately = true);
};
