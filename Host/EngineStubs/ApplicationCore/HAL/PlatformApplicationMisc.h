#pragma once

#include "CoreMinimal.h"

struct FPlatformApplicationMisc
{
	static void ClipboardCopy(const TCHAR* Str);
	static void ClipboardPaste(FString& Dest);
};
