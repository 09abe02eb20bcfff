#pragma once

#include "CoreMinimal.h"
#include "Widgets/SWindow.h"

class FSlateApplication
{
public:
	static bool IsInitialized();
	static FSlateApplication& Get();

	TSharedRef<SWindow> AddWindow(TSharedRef<SWindow> InSlateWindow, const bool bShowImmediately = true);
};
